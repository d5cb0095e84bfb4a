#include "assistant/modes.h"

namespace kelo::engine {

std::string_view nameOf(Mode mode)
{
    constexpr std::array<std::string_view, 5> names{"idle", "menu", "teach", "ear", "talk"};
    return names[static_cast<std::size_t>(mode)];
}

unsigned whereOf(Mode mode)
{
    constexpr std::array<unsigned, 5> bits{InIdle, InMenu, InLesson, InEar, InTalk};
    return bits[static_cast<std::size_t>(mode)];
}

std::array<Action, 10> commandKeyActions(Mode mode)
{
    const Action second = mode == Mode::Menu ? Action::CountSongs
        : mode == Mode::Idle                 ? Action::ListChoices
                                             : Action::NoteNames;
    const Action sixth = mode == Mode::Idle ? Action::Stop : Action::PauseOrCarryOn;
    return {Action::Start, second, Action::Next, Action::Previous, Action::TalkMode, sixth,
        Action::Compose, Action::Help, Action::Home, Action::Keep};
}

} // namespace kelo::engine
