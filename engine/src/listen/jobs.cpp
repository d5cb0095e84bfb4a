#include "listen/jobs.h"

namespace kelo::engine {

namespace {

constexpr Job songs[] = {
    {Action::OpenMenu, Everywhere, "M", "Opens the song menu.",
        {{{"songs|menu ?song ?open ?show", "song menu"}}}},
    {Action::PlaySong, Everywhere, "", "Plays a song, by its number or its name.",
        {{{"play|hear ?song|piece|number #", "play song #"}, {"song|piece|number #", "song #"},
            {"play|hear @", "play @"}, {"@", ""}, {"play|hear it|this|song|one", "play it"}}}},
    {Action::Learn, Everywhere, "SPACE", "Starts the lesson for a song.",
        {{{"learn|teach|practise|practice|study ?song|piece|number #", "teach me song #"},
            {"learn|teach|practise|practice|study @", "teach me @"},
            {"learn|teach|practise|practice|study it|this|song|piece|one|lesson", "teach me this"},
            {"lesson|lessons ?start ?begin", "start the lesson"},
            {"learn|teach|practise|practice", ""}}}},
    {Action::ListSongs, Everywhere, "L", "Reads the list of songs.",
        {{{"list ?songs|pieces|music ?song", "list the songs"},
            {"which|what songs|pieces|music", "what songs are there"},
            {"tell|read songs|pieces", ""}}}},
    {Action::CountSongs, InMenu | InIdle, "", "Says how many songs there are.",
        {{{"how many ?songs|pieces", "how many songs"}, {"count ?songs|pieces", ""}}}},
    {Action::Next, InMenu | InIdle | InLesson, "→",
        "The next song or choice; skips ahead in a lesson.",
        {{{"next ?song|one|piece|part|phrase|choice|note|lesson", "next"},
            {"skip ?this|song|part|phrase|ahead", "skip ahead"}, {"forward|forwards ?go", ""}}}},
    {Action::Previous, InMenu | InIdle | InLesson, "←",
        "The song or choice before; goes back in a lesson.",
        {{{"previous|last ?song|one|piece|part|phrase|choice|lesson", "previous"},
            {"back|backwards ?go", "go back"}, {"before ?one|part|phrase", ""}}}},
    {Action::Start, InMenu | InIdle | InLesson, "SPACE", "Starts or opens what was named last.",
        {{{"start|begin|open ?it|this|song", "start"}, {"ready|yes|okay|sure ?i'm", ""}}}},
};

constexpr Job playing[] = {
    {Action::PauseOrCarryOn, InLesson | InMenu, "RETURN", "Pauses, and carries on.",
        {{{"pause|wait ?music|song|playing", "pause"}, {"hold on", ""}}}},
    {Action::CarryOn, InLesson | InMenu, "RETURN", "Carries on after a pause.",
        {{{"carry on", "carry on"}, {"go on", ""}, {"continue|resume|unpause ?playing", "continue"},
            {"play", ""}}}},
    {Action::Stop, Everywhere, "", "Stops whatever sounds.",
        {{{"stop|quiet|silence|enough|hush ?playing|music|talking|song|now", "stop"},
            {"shut up", ""}, {"be quiet", ""}}}},
    {Action::Home, Everywhere, "0", "Leaves any mode.",
        {{{"home ?go", "go home"}, {"leave|quit|exit ?mode|menu|lesson|training", "leave"},
            {"stop lesson|lessons|training|menu", ""}}}},
    {Action::Again, Everywhere, "SPACE", "Says or plays the last thing again.",
        {{{"again|repeat ?play|say|hear|part|phrase|once|more|song|it|that", "repeat"},
            {"once more", ""}, {"pardon|sorry", ""}, {"what did you say", ""}}}},
    {Action::Slower, Everywhere, "−", "Slower.",
        {{{"slower|slowly ?play|more|bit|little|much", "slower"},
            {"slow down ?not|so|fast|bit|little", ""}, {"too fast", ""}}}},
    {Action::Faster, Everywhere, "=", "Faster.",
        {{{"faster|quicker ?play|more|bit|little|much", "faster"}, {"speed up", ""},
            {"too slow", ""}}}},
    {Action::Tempo, Everywhere, "", "Sets the tempo, as a part of a hundred.",
        {{{"tempo|speed ?percent #", "tempo #"}, {"normal|original|full tempo|speed", ""},
            {"percent #", ""}}}},
    {Action::Keep, Everywhere, "S", "Keeps what you just played as a MIDI file.",
        {{{"keep|save ?what|that|i|played|playing|just|recording", "keep that"}}}},
    {Action::PlayKept, Everywhere, "", "Plays back what you just played.",
        {{{"play back ?it|what|i|played|that", "play it back"},
            {"play what i played ?just|hear", ""}}}},
};

constexpr Job lessons[] = {
    {Action::NoteNames, InLesson | InMenu | InEar, "N", "Says the notes of the part.",
        {{{"note|notes names|name ?say|part", "note names"},
            {"what|which notes|note", "what notes"},
            {"say|tell|name notes|note", "say the notes"}}}},
    {Action::Hands, InLesson, "HAND", "Changes the hands that are practised.",
        {{{"hands|hand ?change|other|switch", "change hands"}}}},
    {Action::BothHands, InLesson, "", "Both hands together.",
        {{{"both hands|hand ?play", "both hands"}, {"hands together", ""}}}},
    {Action::RightHand, InLesson, "", "The right hand alone.",
        {{{"right hand ?only|alone|play|just", "right hand"}}}},
    {Action::LeftHand, InLesson, "", "The left hand alone.",
        {{{"left hand ?only|alone|play|just", "left hand"}}}},
    {Action::Drop, InLesson, "STOP", "Stops learning this song for good.",
        {{{"drop ?song|this|it|lesson", "drop this song"}, {"stop learning ?song|this|it", ""},
            {"forget song|this", ""}}}},
};

constexpr Job training[] = {
    {Action::EarTraining, InIdle | InMenu | InTalk, "EAR", "Ear training: find the note I play.",
        {{{"ear|ears training|train|exercise|practice|game ?start", "ear training"},
            {"train ear|ears|hearing", ""}}}},
    {Action::Metronome, Everywhere, "TICK", "The metronome, on or off, at any speed.",
        {{{"metronome|click|tick ?at|tempo|speed #", "metronome at ninety"},
            {"metronome|click|tick stop|away|quiet", "metronome off", false},
            {"metronome|click|tick ?start|beat", "metronome"}, {"beats|bpm #", ""}}}},
    {Action::Band, InIdle | InTalk | InMenu, "B", "The live band: it follows the chords you hold.",
        {{{"band ?live|start|play|with|me|drums", "live band"},
            {"band stop|leave|quiet", "", false}, {"drums|bass ?play|with|me", ""}}}},
    {Action::BandStyle, InIdle | InTalk, "STYLE", "The band's style: simple or full.",
        {{{"band style|change ?other", "band style"}}}},
    {Action::BandSimple, InIdle | InTalk, "", "", {{{"simple band|style|drums", "simple band"}}}},
    {Action::BandFull, InIdle | InTalk, "", "", {{{"full|rich band|style|drums", "full band"}}}},
    {Action::BandLouder, InIdle | InTalk, "]", "The band louder.",
        {{{"louder|up band|drums|bass ?turn", "band louder"}}}},
    {Action::BandQuieter, InIdle | InTalk, "[", "The band quieter.",
        {{{"quieter|softer|down band|drums|bass ?turn", "band quieter"}}}},
};

constexpr Job voice[] = {
    {Action::VoiceLouder, Everywhere, ".", "My voice louder.",
        {{{"louder ?voice|talk|speak|bit|much", "louder"}, {"speak|voice|turn|volume up", ""},
            {"can't hear ?you", ""}}}},
    {Action::VoiceQuieter, Everywhere, ",", "My voice quieter.",
        {{{"quieter|softer ?voice|talk|speak|bit|much", "quieter"}, {"voice|turn|volume down", ""},
            {"too loud", ""}}}},
    {Action::ChangeVoice, Everywhere, "V", "Another voice.",
        {{{"voice change|other|another|different|next|new", "change the voice"}}}},
    {Action::TalkMode, Everywhere, "T", "Talk mode: I listen without my name, on or off.",
        {{{"talk mode ?start", "talk mode"}, {"talk|talking ?with|let's", ""},
            {"conversation ?mode", ""}}}},
    {Action::Type, InIdle | InTalk, "A", "Type a command instead of saying it.",
        {{{"type|typing ?command|line", "type a command"}}}},
    {Action::StopListening, Everywhere, "MIC", "Switches the microphone off.",
        {{{"stop listening|hearing", "stop listening"}, {"microphone|mic off|stop", "", false},
            {"ears off", "", false}}}},
    {Action::Time, Everywhere, "", "What time it is.",
        {{{"time what|tell|is", "what time is it"}, {"clock what|tell", ""}}}},
    {Action::Date, Everywhere, "", "What day it is.",
        {{{"date|day what|which|today's|tell", "what day is it"}, {"today what|date|day", ""}}}},
    {Action::WhereAmI, Everywhere, "", "Where you are, and what plays.",
        {{{"where am i", "where am I"},
            {"what song|playing|piece this|that|playing", "what is this song"},
            {"what mode", ""}}}},
    {Action::Help, Everywhere, "H", "Help for where you are.",
        {{{"help ?need|me", "help"}, {"what do now", ""}, {"how work|use|go", ""}}}},
    {Action::WhatCanISay, Everywhere, "", "Some things that you can say now.",
        {{{"what can|could i say|do|ask", "what can I say"}, {"what can you do", ""},
            {"commands ?list|say|tell", ""}}}},
    {Action::CommandPage, Everywhere, "/", "Opens this page.",
        {{{"command|commands page ?open|show|large|print", "command page"}}}},
    {Action::WhoAreYou, Everywhere, "", "Who I am.",
        {{{"who are you", "who are you"}, {"what your|you name|called", ""}}}},
    {Action::Thanks, Everywhere, "", "", {{{"thanks|thank ?you|very|much", ""}}}},
};

constexpr Job piano[] = {
    {Action::ThroughPiano, InIdle | InTalk, "P", "I also play through the piano.",
        {{{"through|from|on piano|keyboard ?play|also", "play through the piano"}}}},
    {Action::KeysSound, InIdle | InTalk, "", "Whether your keys sound from this computer, too.",
        {{{"keys sound", "sound my keys"},
            {"keys silent|silence|mute|don't ?sound", "silence my keys", false},
            {"echo ?keys", ""}}}},
    {Action::TopKey, InIdle | InTalk, "⇧K", "Sets the top key of your piano again.",
        {{{"top|highest key ?set|again", "set the top key"}}}},
};

constexpr Job display[] = {
    {Action::LargeCaptions, InIdle | InTalk, "BIG", "Large captions, on or off.",
        {{{"large|larger|big|bigger captions|caption|letters|text|type|print", "large captions on"},
            {"normal|small|smaller captions|caption|letters|text|type", "", false}}}},
    {Action::HighContrast, InIdle | InTalk, "HC", "High contrast, on or off.",
        {{{"contrast ?high|more", "high contrast on"}, {"normal|low|less contrast", "", false}}}},
    {Action::FullScreen, InIdle | InTalk, "", "Full screen, on or off.",
        {{{"full screen", "full screen on"}, {"fullscreen", ""}}}},
    {Action::Visualiser, InIdle | InTalk, "F", "The visualiser, on or off.",
        {{{"visualiser|visualizer|visuals|visual|light|lights ?show", "visualiser on"},
            {"visualiser|visualizer|visuals|visual|light|lights hide|close", "", false}}}},
    {Action::ShowWindow, InIdle | InTalk, "", "Brings my window forward.",
        {{{"show window|yourself", "show the window"}}}},
    {Action::HideWindow, InIdle | InTalk, "", "Hides my window.",
        {{{"hide window|yourself", "hide the window"}, {"background ?go|in", ""}}}},
    {Action::StartAtLogin, InIdle | InTalk, "", "Whether I start when you log in.",
        {{{"login|startup ?start", "start at login on"}, {"start log in", ""}}}},
};

/// Asked for often enough to deserve an honest answer.
constexpr Job beyond[] = {
    {Action::MakeUp, 0, "", "",
        {{{"play something|anything ?me|nice|music", ""}, {"surprise ?me", ""},
            {"play music ?some", ""}, {"song random|any ?play", ""}}}},
    {Action::Compose, 0, "", "",
        {{{"compose|composition|improvise|variation ?new|piece|song|music", ""},
            {"make|turn lullaby|game|epic|score|film|song|piece|happy|sad", ""},
            {"jam ?with|me", ""}, {"album ?play|my", ""},
            {"write song|piece|music|composition", ""}}}},
    {Action::Jazz, 0, "", "", {{{"jazz ?course|lesson|lessons|learn|teach", ""}}}},
    {Action::Studio, 0, "", "", {{{"logic|reaper ?control|open|start", ""}}}},
    {Action::World, 0, "", "",
        {{{"weather|news|forecast|temperature|rain ?what", ""},
            {"open|start safari|browser|mail|email|program", ""},
            {"alarm|timer|reminder|shopping|message|call ?set|add|list|remind", ""},
            {"remember|remind|brief|search ?me|that", ""}, {"read window|screen|mail|news", ""}}}},
    {Action::NaturalVoice, 0, "", "", {{{"natural|human voice ?install|download", ""}}}},
};

constexpr JobGroup groups[] = {
    {"Songs", songs},
    {"While something plays", playing},
    {"Lessons", lessons},
    {"Training and the band", training},
    {"Talking with me", voice},
    {"Your piano", piano},
    {"The display", display},
    {"", beyond},
};

} // namespace

std::span<const JobGroup> jobGroups()
{
    return groups;
}

} // namespace kelo::engine
