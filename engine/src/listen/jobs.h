#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace kelo::engine {

/// What can be asked for, by voice or by key.
enum class Action : std::uint8_t {
    OpenMenu,
    PlaySong,
    Learn,
    ListSongs,
    ListChoices,
    CountSongs,
    Next,
    Previous,
    Start,
    PauseOrCarryOn,
    CarryOn,
    Stop,
    Home,
    Again,
    NoteNames,
    Hands,
    BothHands,
    RightHand,
    LeftHand,
    Drop,
    Slower,
    Faster,
    Tempo,
    EarTraining,
    Metronome,
    Band,
    BandStyle,
    BandSimple,
    BandFull,
    BandLouder,
    BandQuieter,
    Keep,
    PlayKept,
    ThroughPiano,
    KeysSound,
    TopKey,
    VoiceLouder,
    VoiceQuieter,
    ChangeVoice,
    TalkMode,
    Type,
    StopListening,
    LargeCaptions,
    HighContrast,
    FullScreen,
    Visualiser,
    ShowWindow,
    HideWindow,
    StartAtLogin,
    Time,
    Date,
    WhereAmI,
    Help,
    WhatCanISay,
    CommandPage,
    WhoAreYou,
    Thanks,
    Greet,
    MakeUp,
    Compose,
    Jam,
    Album,
    Jazz,
    Studio,
    World,
    NaturalVoice,
};

/// Where something is worth offering. It is understood everywhere.
enum Where : unsigned { InIdle = 1, InMenu = 2, InLesson = 4, InEar = 8, InTalk = 16 };
inline constexpr unsigned Everywhere = InIdle | InMenu | InLesson | InEar | InTalk;

/// One way to ask. `words` are what must be said, in any order: alternatives are separated by
/// "|"; "?" marks what may be left out, "#" is a number and "@" the name of a song.
struct Phrase {
    std::string_view words;
    std::string_view example; ///< how the command page and the recogniser have it, if at all
    std::optional<bool> on{}; ///< for what is switched on or off by this very phrase
};

/// What one action is called, on keys and aloud.
struct Job {
    Action action;
    unsigned where;
    std::string_view key; ///< as it stands on the key; empty where there is none
    std::string_view meaning;
    std::array<Phrase, 6> phrases{};
};

/// Some jobs that belong together.
struct JobGroup {
    std::string_view title;
    std::span<const Job> jobs;
};

/// Everything that can be asked for: what listens, what the recogniser is told to expect and
/// what the command page shows all come from here.
[[nodiscard]] std::span<const JobGroup> jobGroups();

} // namespace kelo::engine
