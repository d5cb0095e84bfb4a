#include "listen/job_tables.h"

namespace kelo::engine {

namespace {

constexpr Job songsTable[] = {
    {Action::OpenMenu, Everywhere, "M", "Opens the song menu.",
        {{{"songs|menu ?song ?open ?show", "song menu"}}}},
    {Action::PlayNote, InIdle | InTalk | InMenu | InCompose, "", "Plays one note.",
        {{{"play|sound|hear $note", "play middle c"}, {"how|what sound $note ?like ?does", ""}}}},
    {Action::PlayBars, InLesson | InIdle | InMenu | InScore, "",
        "Goes to these bars and plays them.",
        {{{"play|hear|go|repeat|practise|practice|work|take|from|start $bars ?from|it",
              "play bar #"},
            {"$bars", "bar #"}, {"bars $bars", ""}}},
        TakesHands},
    {Action::PlaySong, Everywhere, "", "Plays a song, by its number or its name.",
        {{{"play|hear ?song|piece|number #", "play song #"},
            {"song|piece|number ?number #", "song #"},
            {"play|hear|hearing|put @ ?love|feel", "play @"}, {"@", ""},
            {"play|hear it|this|song|one", "play it"}}}},
    {Action::Learn, Everywhere, "SPACE", "Starts the lesson for a song.",
        {{{"learn|teach|practise|practice|study ?song|piece|number #", "teach me song #"},
            {"learn|teach|practise|practice|study|work @ ?help", "teach me @"},
            {"how play @ ?show|teach|learn", ""},
            {"learn|teach|practise|practice|study it|this|that|song|piece|one|lesson",
                "teach me this"},
            {"lesson|lessons ?start ?begin", "start the lesson"},
            {"learn|teach|practise|practice", ""}}},
        TakesHands | TakesBars},
    {Action::GoOnLearning, InIdle | InMenu | InTalk, "",
        "Goes on with the lesson that you left last.",
        {{{"go|carry on lesson ?with|in|my|the|last", "go on with my lesson"},
            {"continue|resume lesson ?my|the|last", "continue my lesson"},
            {"go|carry on where i ?stopped|left|off|was", "go on where I stopped"}}}},
    {Action::ListSongs, Everywhere, "L", "Reads the list of songs.",
        {{{"list ?songs|pieces|music ?song", "list the songs"},
            {"which|what songs|pieces|music ?learn|play|have|know", "what songs are there"},
            {"tell|read songs|pieces", ""}}}},
    {Action::ListChoices, InIdle, "", "Says what can be opened here.",
        {{{"choices ?list|what|which", "list the choices"}}}},
    {Action::CountSongs, InMenu | InIdle, "", "Says how many songs there are.",
        {{{"how many ?songs|pieces", "how many songs"}, {"count songs|pieces", ""}}}},
    {Action::Next, InMenu | InIdle | InLesson | InJazz | InStudio | InScore, "→",
        "The next song or choice; skips ahead in a lesson or a piece.",
        {{{"next ?song|one|piece|part|phrase|choice|note|lesson|track", "next"},
            {"skip ?this|song|part|phrase|ahead", "skip ahead"}, {"forward|forwards ?go", ""}}}},
    {Action::Previous, InMenu | InIdle | InLesson | InJazz | InStudio | InScore, "←",
        "The song or choice before; goes back in a lesson or a piece.",
        {{{"previous|last ?song|one|piece|part|phrase|choice|lesson|track", "previous"},
            {"back|backwards ?go", "go back"}, {"before ?one|part|phrase", ""}}}},
    {Action::Start, InMenu | InIdle | InLesson, "SPACE", "Starts or opens what was named last.",
        {{{"start|begin|open ?it|this|song", "start"}, {"ready ?i'm", ""}}}},
    {Action::Agree, InMenu | InIdle, "", "Takes what was offered.",
        {{{"yes|yeah|okay|sure ?do|it|please", ""}}}},
};

constexpr Job playingTable[] = {
    {Action::Pause, InLesson | InMenu | InIdle, "RETURN", "Pauses; RETURN also carries on.",
        {{{"pause|wait ?music|song|playing|moment|second|minute", "pause"}, {"hold on", ""}}}},
    {Action::CarryOn, InLesson | InMenu | InIdle, "RETURN", "Carries on after a pause.",
        {{{"carry on", "carry on"}, {"go on", ""}, {"continue|resume|unpause ?playing", "continue"},
            {"keep going|playing", ""}, {"play", ""}}}},
    {Action::Stop, Everywhere, "", "Stops whatever sounds.",
        {{{"stop|quiet|silence|enough|hush ?playing|music|talking|song|now|sound", "stop"},
            {"shut up", ""}, {"be quiet", ""}}}},
    {Action::Home, Everywhere, "0", "Leaves any mode.",
        {{{"home ?go|take", "go home"}, {"leave|quit|exit ?mode|menu|lesson|training", "leave"},
            {"stop lesson|lessons|training|menu|course|jam|jamming|composing", ""}}}},
    {Action::Again, Everywhere, "SPACE", "Says or plays the last thing again.",
        {{{"again|repeat ?play|say|hear|part|phrase|once|more|song|it|that", "repeat"},
            {"once more", ""}, {"didn't catch|hear|understand ?that|it|you", ""},
            {"pardon|sorry", ""}, {"what did you say", ""}}}},
    {Action::StartOver, Everywhere, "", "From the beginning again: the piece, or the lesson.",
        {{{"start over", "start over"}, {"begin anew", ""},
            {"from|back beginning|top|start ?play|go|again|to", "from the beginning"}}}},
    {Action::Slower, Everywhere, "−", "Slower: the piece, the metronome or the band.",
        {{{"slower|slowly ?play|more|bit|little|much|piece|song|metronome|band", "slower"},
            {"slow down ?not|so|fast|bit|little", ""}, {"too fast", ""}}}},
    {Action::Faster, Everywhere, "=", "Faster: the piece, the metronome or the band.",
        {{{"faster|quicker ?play|more|bit|little|much|piece|song|metronome|band", "faster"},
            {"speed up", ""}, {"too slow", ""}}}},
    {Action::Tempo, Everywhere, "", "Sets the tempo, as a part of a hundred.",
        {{{"tempo|speed ?percent|play|set #", "tempo #"}, {"normal|original|full tempo|speed", ""},
            {"percent #", ""}}}},
    {Action::Transpose, InIdle | InMenu | InCompose, "",
        "Plays the piece higher or lower, or in another key.",
        {{{"transpose|shift ?it|piece|song|semitones|semitone|steps up|higher", "transpose up",
              true},
            {"transpose|shift ?it|piece|song|semitones|semitone|steps down|lower", "transpose down",
                false},
            {"transpose|shift $key", "transpose it to g"}, {"put|play it|this|that $key", ""},
            {"transpose", ""}}},
        TakesNumber | TakesKey},
    {Action::Keep, Everywhere, "S", "Keeps what you just played as a MIDI file.",
        {{{"keep|save ?what|that|this|it|piece|i|played|playing|just|recording", "keep that"}}}},
    {Action::PlayKept, Everywhere, "", "Plays back what you just played, as fast as you like.",
        {{{"play back ?it|what|i|played|that|recording|at|tempo|speed|percent", "play it back"},
            {"play back half tempo|speed ?it|what|i|played|that|at", "play it back at half tempo"},
            {"play|hear what i played ?just|at|tempo|speed|percent", ""}}},
        TakesNumber},
    {Action::PlayWithMe, Everywhere, "",
        "Plays what you played last, again and again, after counting in: play along.",
        {{{"play with me ?it|what|i|played|that|recording|my", "play it with me"},
            {"duet ?play|with|me|myself|start|let's", "duet with myself"}}},
        TakesNumber},
    {Action::PlayDownload, Everywhere, "", "Plays the newest music in your folder of downloads.",
        {{{"play|open|hear downloaded|download|downloads "
           "?file|last|latest|newest|i|just|from|my|one",
              "play the file I downloaded last"},
            {"downloaded|download last|latest|newest ?file|play|i", ""}}}},
    {Action::Album, InIdle | InTalk | InMenu, "ALBUM", "Plays every piece that you kept.",
        {{{"album ?play|my", "play my album"},
            {"everything|pieces|songs i kept|saved ?play|all", ""}}}},
};

constexpr Job scoreTable[] = {
    {Action::ReadScore, Everywhere, "W", "Walks through the score of a piece, step by step.",
        {{{"score ?read|open|talking|show|walk|through", "read the score"},
            {"score|through @ ?read|open|walk", "read the score of @"},
            {"walk through ?it|this|piece|song", ""}}},
        TakesHands | TakesBars | TakesNumber},
    {Action::ByNote, InScore, "1", "Steps from note to note.",
        {{{"by note|notes ?walk|go|step|read|note", "by note"}}}},
    {Action::ByBeat, InScore, "2", "Steps from beat to beat.",
        {{{"by beat|beats ?walk|go|step|read|beat", "by beat"}}}},
    {Action::ByBar, InScore, "3", "Steps from bar to bar.",
        {{{"by bar|bars|measure|measures ?walk|go|step|read|bar|measure", "by bar"}}}},
    {Action::ByPhrase, InScore, "4", "Steps from phrase to phrase.",
        {{{"by phrase|phrases ?walk|go|step|read|phrase", "by phrase"}}}},
    {Action::ReadBars, InScore, "D", "Reads bars out, and stays where it is.",
        {{{"read ?out|what|written $bars", "read me bar #"},
            {"read $hands ?out|here|bar|this", "read me the left hand"},
            {"read ?this|the bar|measure ?out", "read this bar"}}},
        TakesHands | TakesBars},
    {Action::WhatBefore, InScore, "I", "What comes before, without going there.",
        {{{"what comes|came|was|is before ?just|this|that|here", "what comes before"}}}},
    {Action::WhichKey, InScore | InMenu, "K", "The key and the metre.",
        {{{"which|what key ?is|this|it|are|we|in", "which key"},
            {"which|what metre|signature ?time|key|is", ""}}}},
    {Action::SpellChord, InScore, "X", "All notes that sound here, and their chord.",
        {{{"spell ?chord|that|this|notes|it|out", "spell the chord"},
            {"what|which chord ?is|this|that", "which chord"}}}},
    {Action::BrailleBar, InScore, "Y",
        "Shows this bar in braille music, on a braille display and as a caption.",
        {{{"braille ?in|this|bar|measure|show|the|music|read|me", "in braille"}}}},
    {Action::SaveBraille, InScore, "BRF", "Writes the piece in braille music beside your songs.",
        {{{"save|write|export|print braille ?as|in|this|it|piece|score|music|file|a",
            "save as braille"}}}},
    {Action::SilentScore, InScore, "Z", "Only the notes sound, or words follow them.",
        {{{"only|just notes ?play|sound", "only the notes", true},
            {"silent mode|score|reading", "silent mode"},
            {"words with|again|on ?say|the", "with words", false}}}},
};

} // namespace

std::span<const Job> songsJobs()
{
    return songsTable;
}

std::span<const Job> playingJobs()
{
    return playingTable;
}

std::span<const Job> scoreJobs()
{
    return scoreTable;
}

} // namespace kelo::engine
