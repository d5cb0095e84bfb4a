#include "listen/job_tables.h"

namespace kelo::engine {

namespace {

constexpr Job voiceTable[] = {
    {Action::VoiceLouder, Everywhere, ".", "My voice louder.",
        {{{"louder ?voice|talk|speak|bit|little|much|make", "louder"},
            {"speak|voice|turn|volume up", ""}, {"can't hear ?you", ""}}}},
    {Action::VoiceQuieter, Everywhere, ",", "My voice quieter.",
        {{{"quieter|softer ?voice|talk|speak|bit|little|much|make", "quieter"},
            {"voice|turn|volume down", ""}, {"too loud", ""}}}},
    {Action::ChangeVoice, Everywhere, "V", "Another voice.",
        {{{"voice change|other|another|different|next|new", "change the voice"}}}},
    {Action::SystemVoice, Everywhere, "", "The voice of your system, or mine.",
        {{{"system|system's|computer's|desktop's voice ?use|speak|with", "use the system's voice"},
            {"own voice ?use|your|speak|with", "use your own voice", false}}},
        TakesSwitch},
    {Action::SpeakFaster, Everywhere, "", "I speak faster.",
        {{{"speak|talk faster|quicker ?bit|little|much", "speak faster"},
            {"voice faster|quicker", ""}}}},
    {Action::SpeakSlower, Everywhere, "", "I speak slower.",
        {{{"speak|talk slower|slowly ?more|bit|little|much", "speak slower"},
            {"voice slower", ""}}}},
    {Action::VoiceHigher, Everywhere, "", "My voice higher.",
        {{{"voice higher ?speak", "higher voice"}}}},
    {Action::VoiceLower, Everywhere, "", "My voice lower.",
        {{{"voice lower|deeper ?speak", "lower voice"}}}},
    {Action::TalkMode, Everywhere, "T", "Talk mode: I listen without my name, on or off.",
        {{{"talk mode ?start", "talk mode"}, {"talk|talking ?with|let's", ""},
            {"conversation ?mode", ""}}},
        TakesSwitch},
    {Action::Type, InIdle | InTalk, "A", "Type a command instead of saying it.",
        {{{"type|typing ?command|line", "type a command"}}}},
    {Action::StopListening, Everywhere, "MIC", "Switches the microphone off.",
        {{{"stop listening|hearing", "stop listening"},
            {"microphone|mic off|stop ?switch|turn", "", false}, {"ears off", "", false}}}},
    {Action::Time, Everywhere, "", "What time it is.",
        {{{"time what|tell|is", "what time is it"}, {"clock what|tell", ""}}}},
    {Action::Date, Everywhere, "", "What day it is.",
        {{{"date|day what|which|today's|tell ?today", "what day is it"},
            {"today what|date|day", ""}}}},
    {Action::WhereAmI, Everywhere, "", "Where you are, and what plays.",
        {{{"where am i", "where am I"},
            {"how many parts|phrases ?are|there|left|lesson|in|the|this",
                "how many parts are there"},
            {"what song|playing|piece this|that|playing", "what is this song"},
            {"what playing", ""}, {"what mode", ""}, {"what doing", ""}}}},
    {Action::Help, Everywhere, "H", "Help for where you are.",
        {{{"help ?need|me", "help"}, {"what do now", ""}, {"how work|use|go", ""}}}},
    {Action::WhatCanISay, Everywhere, "", "Some things that you can say now.",
        {{{"what can|could i say|do|ask ?else", "what can I say"}, {"what can you do", ""},
            {"commands ?list|say|tell", ""}}}},
    {Action::CommandPage, Everywhere, "/", "Opens this page.",
        {{{"command|commands page ?open|show|large|print", "command page"}}}},
    {Action::WhoAreYou, Everywhere, "", "Who I am.",
        {{{"who are you", "who are you"}, {"what your|you name|called", ""}}}},
    {Action::Thanks, Everywhere, "", "", {{{"thanks|thank ?you|very|much", ""}}}},
    {Action::Greet, Everywhere, "", "",
        {{{"hello|hi|hey", ""}, {"good morning|afternoon|evening", ""}, {"how are you", ""}}}},
};

constexpr Job pianoTable[] = {
    {Action::ThroughPiano, InIdle | InTalk, "P", "I also play through the piano.",
        {{{"through|from|on piano|keyboard ?play|also", "play through the piano"}}}, TakesSwitch},
    {Action::KeysSound, InIdle | InTalk, "", "Whether your keys sound from this computer, too.",
        {{{"keys sound", "sound my keys"},
            {"keys silent|silence|mute|don't ?sound", "silence my keys", false},
            {"echo ?keys", ""}}},
        TakesSwitch},
    {Action::TopKey, InIdle | InTalk, "⇧K", "Sets the top key of your piano again.",
        {{{"top|highest key ?set|again", "set the top key"}}}},
    {Action::CommandKeysOn, InIdle | InTalk, "",
        "Whether the ten highest white keys give commands.",
        {{{"command keys|key", "command keys off"}}}, TakesSwitch},
};

constexpr Job loudnessTable[] = {
    {Action::PiecesLouder, Everywhere, "", "The music that I play louder.",
        {{{"music|piece|song louder ?make|play|bit|little|much", "music louder"},
            {"music|piece|song turn up", ""}}}},
    {Action::PiecesQuieter, Everywhere, "", "The music that I play quieter.",
        {{{"music|piece|song quieter|softer ?make|play|bit|little|much", "music quieter"},
            {"music|piece|song turn down", ""}, {"music|piece|song too loud", ""}}}},
    {Action::OwnKeysLouder, Everywhere, "", "Your own keys louder.",
        {{{"keys|keyboard|piano louder ?make|bit|little|much", "keys louder"},
            {"keys|keyboard|piano turn up", ""}}}},
    {Action::OwnKeysQuieter, Everywhere, "", "Your own keys quieter.",
        {{{"keys|keyboard|piano quieter|softer ?make|bit|little|much", "keys quieter"},
            {"keys|keyboard|piano turn down", ""}, {"keys|keyboard|piano too loud", ""}}}},
    {Action::TicksLouder, Everywhere, "", "The metronome louder.",
        {{{"metronome|ticks|clicks louder ?make|bit|little|much", "metronome louder"},
            {"metronome|ticks|clicks turn up", ""}}}},
    {Action::TicksQuieter, Everywhere, "", "The metronome quieter.",
        {{{"metronome|ticks|clicks quieter|softer ?make|bit|little|much", "metronome quieter"},
            {"metronome|ticks|clicks turn down", ""}, {"metronome|ticks|clicks too loud", ""}}}},
    {Action::ChangeSound, Everywhere, "", "Other instruments, where some are installed.",
        {{{"better|another|other|different|next sound|sounds|soundfont|instruments ?use|play|with",
              "another sound"},
            {"sound|sounds|soundfont|instruments change", ""}}}},
};

constexpr Job displayTable[] = {
    {Action::LargeCaptions, InIdle | InTalk, "BIG", "Large captions, on or off.",
        {{{"large|larger|big|bigger captions|caption|letters|text|type|print ?make",
              "large captions on"},
            {"normal|small|smaller captions|caption|letters|text|type", "", false}}},
        TakesSwitch},
    {Action::HighContrast, InIdle | InTalk, "HC", "High contrast, on or off.",
        {{{"contrast ?high|more", "high contrast on"}, {"normal|low|less contrast", "", false}}},
        TakesSwitch},
    {Action::UseMicrophone, InIdle | InTalk, "", "Listens with another microphone.",
        {{{"microphone|mic $microphone ?in|use|with|listen|hear|take|try|switch|change|back|to",
              "next microphone"},
            {"microphone|mic use $microphone ?in", "use the usb microphone"},
            {"microphone|mic change|switch|use", "change the microphone"}}}},
    {Action::WhichMicrophone, InIdle | InTalk, "", "Which microphone I listen with.",
        {{{"microphone|mic which|what ?use|using|hear|listen|with", "which microphone"}}}},
    {Action::FullScreen, InIdle | InTalk, "", "Full screen, on or off.",
        {{{"full screen", "full screen on"}, {"fullscreen", ""}}}, TakesSwitch},
    {Action::Visualiser, InIdle | InTalk, "F", "The visualiser, on or off.",
        {{{"visualiser|visualizer|visuals|visual|light|lights ?show", "visualiser on"},
            {"visualiser|visualizer|visuals|visual|light|lights hide|close", "", false}}},
        TakesSwitch},
    {Action::ShowWindow, InIdle | InTalk, "", "Brings my window forward.",
        {{{"show window|yourself", "show the window"}}}},
    {Action::HideWindow, InIdle | InTalk, "", "Hides my window.",
        {{{"hide window|yourself", "hide the window"}, {"background ?go|in", ""}}}},
    {Action::StartAtLogin, InIdle | InTalk, "", "Whether I start when you log in.",
        {{{"login|startup ?start", "start at login on"}, {"start log in", ""}}}, TakesSwitch},
};

/// Asked for often enough to deserve an honest answer.
constexpr Job beyondTable[] = {
    {Action::World, 0, "", "",
        {{{"weather|news|forecast|temperature|rain ?what", ""},
            {"open|start safari|browser|mail|email|program", ""},
            {"alarm|timer|reminder|shopping|message|call ?set|add|list|remind", ""},
            {"remember|remind|brief|search ?me|that", ""},
            {"read window|screen|mail|email|news", ""}, {"joke|story ?tell", ""}}}},
    {Action::NaturalVoice, 0, "", "", {{{"natural|human voice ?install|download", ""}}}},
};

} // namespace

std::span<const Job> voiceJobs()
{
    return voiceTable;
}

std::span<const Job> pianoJobs()
{
    return pianoTable;
}

std::span<const Job> loudnessJobs()
{
    return loudnessTable;
}

std::span<const Job> displayJobs()
{
    return displayTable;
}

std::span<const Job> beyondJobs()
{
    return beyondTable;
}

} // namespace kelo::engine
