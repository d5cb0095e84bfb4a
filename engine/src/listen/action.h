#pragma once

#include <cstddef>
#include <cstdint>

namespace kelo::engine {

/// What can be asked for, by voice, by key or by the piano's top keys.
enum class Action : std::uint8_t {
    // Songs.
    OpenMenu,
    PlaySong,
    Learn,
    ListSongs,
    ListChoices,
    CountSongs,
    Keep,
    PlayKept,
    Album,
    // What runs now.
    Start,
    Next,
    Previous,
    OpenChoice,
    NextChoice,
    PreviousChoice,
    PauseOrCarryOn,
    Pause,
    CarryOn,
    Stop,
    Home,
    Again,
    StartOver,
    PlayBars,
    Slower,
    Faster,
    Tempo,
    Transpose,
    // Lessons.
    NoteNames,
    Hands,
    SetHands,
    Drop,
    // Training.
    EarTraining,
    Metronome,
    MetronomeAccent,
    CountIn,
    PlayNote,
    Band,
    BandStyle,
    BandSimple,
    BandFull,
    BandLouder,
    BandQuieter,
    // Music of its own.
    MakeUp,
    Surprise,
    Compose,
    PlayAsBand,
    ReadBack,
    Variation,
    SavePiece,
    NewPiece,
    ComposingIdea,
    Lullaby,
    VideoGame,
    FilmScore,
    Jam,
    JamAgain,
    Jazz,
    JazzIdea,
    // Other programs.
    LogicControl,
    ReaperControl,
    BackALevel,
    // Talking.
    VoiceLouder,
    VoiceQuieter,
    ChangeVoice,
    SystemVoice,
    SpeakFaster,
    SpeakSlower,
    VoiceHigher,
    VoiceLower,
    // How loud the rest is, and whose instruments play.
    PiecesLouder,
    PiecesQuieter,
    OwnKeysLouder,
    OwnKeysQuieter,
    TicksLouder,
    TicksQuieter,
    ChangeSound,
    TalkMode,
    Type,
    StopListening,
    Time,
    Date,
    WhereAmI,
    Help,
    WhatCanISay,
    CommandPage,
    WhoAreYou,
    Thanks,
    Greet,
    // The piano.
    ThroughPiano,
    KeysSound,
    TopKey,
    CommandKeysOn,
    // The display.
    LargeCaptions,
    HighContrast,
    FullScreen,
    Visualiser,
    ShowWindow,
    HideWindow,
    StartAtLogin,
    // What there is none of.
    World,
    NaturalVoice,
};

inline constexpr std::size_t actionCount = static_cast<std::size_t>(Action::NaturalVoice) + 1;

} // namespace kelo::engine
