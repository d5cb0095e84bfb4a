#include "assistant/keys.h"

namespace kelo::engine {

namespace {

template <typename Name> struct Meaning {
    Name name;
    Action action;
};

constexpr Meaning<Key> keys[] = {
    {Key::Return, Action::PauseOrCarryOn},
    {Key::Right, Action::Next},
    {Key::Left, Action::Previous},
    {key(' '), Action::Start},
    {key('s'), Action::Keep},
    {key('0'), Action::Home},
    {key('h'), Action::Help},
    {key('c'), Action::Compose},
    {key('b'), Action::Band},
    {key('t'), Action::TalkMode},
    {key('j'), Action::Jazz},
    {key('m'), Action::OpenMenu},
    {key('l'), Action::ListSongs},
    {key('g'), Action::Studio},
    {key('r'), Action::Studio},
    {key('-'), Action::Slower},
    {key('='), Action::Faster},
    {key('['), Action::BandQuieter},
    {key(']'), Action::BandLouder},
    {key(','), Action::VoiceQuieter},
    {key('.'), Action::VoiceLouder},
    {key('v'), Action::ChangeVoice},
    {key('p'), Action::ThroughPiano},
    {key('a'), Action::Type},
    {key('/'), Action::CommandPage},
    {key('K'), Action::TopKey},
};

constexpr Meaning<std::string_view> commands[] = {
    {"bandstyle", Action::BandStyle},
    {"drop", Action::Drop},
    {"ear", Action::EarTraining},
    {"hands", Action::Hands},
    {"jazz", Action::Jazz},
    {"metronome", Action::Metronome},
};

} // namespace

std::optional<Action> actionFor(Key pressed, Mode mode)
{
    if (pressed == key('n'))
        return commandKeyActions(mode)[1];
    for (const auto &[name, action] : keys) {
        if (name == pressed)
            return action;
    }
    return {};
}

std::optional<Action> actionFor(std::string_view command)
{
    for (const auto &[name, action] : commands) {
        if (name == command)
            return action;
    }
    return {};
}

} // namespace kelo::engine
