#include "assistant/keys.h"

#include <algorithm>
#include <span>

namespace kelo::engine {

namespace {

struct KeyMeaning {
    Key key;
    Action action;
    Action whileComposing = action;
};

constexpr KeyMeaning keys[] = {
    {Key::Return, Action::PauseOrCarryOn, Action::Stop},
    {Key::Delete, Action::StartOver, Action::NewPiece},
    {Key::Right, Action::Next, Action::Variation},
    {Key::Left, Action::Previous, Action::SavePiece},
    {key(' '), Action::Start, Action::PlayAsBand},
    {key('n'), Action::NoteNames, Action::ReadBack},
    {key('t'), Action::TalkMode, Action::ComposingIdea},
    {key('s'), Action::Keep},
    {key('0'), Action::Home},
    {key('h'), Action::Help},
    {key('c'), Action::Compose},
    {key('b'), Action::Band},
    {key('j'), Action::Jazz},
    {key('m'), Action::OpenMenu},
    {key('l'), Action::ListSongs},
    {key('w'), Action::ReadScore},
    {key('u'), Action::Follow},
    {key('g'), Action::LogicControl},
    {key('r'), Action::ReaperControl},
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

constexpr KeyMeaning scoreKeys[] = {
    {key('1'), Action::ByNote},
    {key('2'), Action::ByBeat},
    {key('3'), Action::ByBar},
    {key('4'), Action::ByPhrase},
    {key('d'), Action::ReadBars},
    {key('i'), Action::WhatBefore},
    {key('k'), Action::WhichKey},
    {key('x'), Action::SpellChord},
    {key('y'), Action::BrailleBar},
    {key('z'), Action::SilentScore},
};

struct CommandMeaning {
    std::string_view command;
    Action action;
};

constexpr CommandMeaning commands[] = {
    {"bandstyle", Action::BandStyle},
    {"drop", Action::Drop},
    {"ear", Action::EarTraining},
    {"hands", Action::Hands},
    {"metronome", Action::Metronome},
};

struct Legend {
    std::string_view mode;
    std::array<Action, 10> actions;
};

constexpr std::array<Action, 10> inLessons{Action::Start, Action::NoteNames, Action::Next,
    Action::Previous, Action::TalkMode, Action::PauseOrCarryOn, Action::Compose, Action::Help,
    Action::Home, Action::Keep};
constexpr std::array<Action, 10> inStudio{Action::Start, Action::BackALevel, Action::Next,
    Action::Previous, Action::TalkMode, Action::Stop, Action::Compose, Action::Help, Action::Home,
    Action::Keep};

constexpr Legend legends[] = {
    {"compose",
        {Action::PlayAsBand, Action::ReadBack, Action::Variation, Action::SavePiece,
            Action::ComposingIdea, Action::Stop, Action::NewPiece, Action::Help, Action::Home,
            Action::Keep}},
    {"menu",
        {Action::Start, Action::CountSongs, Action::Next, Action::Previous, Action::TalkMode,
            Action::PauseOrCarryOn, Action::Compose, Action::Help, Action::Home, Action::Keep}},
    {"idle",
        {Action::OpenChoice, Action::ListChoices, Action::NextChoice, Action::PreviousChoice,
            Action::TalkMode, Action::Stop, Action::Compose, Action::Help, Action::Home,
            Action::Keep}},
    {"jazz",
        {Action::JamAgain, Action::JazzIdea, Action::Next, Action::Previous, Action::TalkMode,
            Action::Stop, Action::Compose, Action::Help, Action::Home, Action::Keep}},
    {"logic", inStudio},
    {"reaper", inStudio},
};

} // namespace

std::optional<Action> actionFor(Key pressed, std::string_view mode)
{
    const auto in = [&](std::span<const KeyMeaning> table) -> std::optional<Action> {
        const auto found = std::ranges::find(table, pressed, &KeyMeaning::key);
        if (found == table.end())
            return {};
        return mode == "compose" ? found->whileComposing : found->action;
    };
    const auto special = mode == "score" ? in(scoreKeys) : std::nullopt;
    return special ? special : in(keys);
}

std::optional<Action> actionFor(std::string_view command)
{
    for (const CommandMeaning &meaning : commands) {
        if (meaning.command == command)
            return meaning.action;
    }
    return {};
}

const std::array<Action, 10> &commandKeyActions(std::string_view mode)
{
    for (const Legend &legend : legends) {
        if (legend.mode == mode)
            return legend.actions;
    }
    return inLessons;
}

} // namespace kelo::engine
