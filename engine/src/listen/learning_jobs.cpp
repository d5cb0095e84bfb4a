#include "listen/job_tables.h"

namespace kelo::engine {

namespace {

constexpr Job lessonsTable[] = {
    {Action::Follow, Everywhere, "U",
        "Follows you: you play some bars with one hand, the other waits for you.",
        {{{"follow|accompany me ?bars|in|with|count|loop|percent|tempo|at|play", "follow me"},
            {"loop $bars ?count|in|me|percent|tempo|at|play", "loop bars five to eight"},
            {"loop ?it|this|that|again", "loop it"},
            {"follow|accompany me $song ?in|with|percent|tempo|at|play", ""},
            {"follow|accompany me @ ?in|with", "follow me in @"}}},
        TakesHands | TakesBars | TakesNumber},
    {Action::NoteNames, InLesson | InMenu | InEar | InScore, "N", "Says the notes of the part.",
        {{{"note|notes names|name ?say|part", "note names"},
            {"what|which notes|note ?bar|part|here", "what notes"},
            {"say|tell|name notes|note ?again", "say the notes"}}}},
    {Action::Hands, InLesson | InScore, "HAND", "Changes the hands that are practised.",
        {{{"hands|hand change|other|switch", "change hands"}}}},
    {Action::SetHands, InLesson | InScore, "",
        "The right hand alone, the left hand alone, or both.",
        {{{"$hands ?only|alone|just", "right hand"},
            {"play|practise|practice|use $hands ?alone", ""}, {"hands both", "both hands"},
            {"left hand", "left hand"}}},
        TakesHands},
    {Action::ChooseHands, InLesson, "",
        "Which of two ways to share the hands is right, where I asked.",
        {{{"way|reading # ?the|take|use|is|right", "the second way"}}}},
    {Action::Drop, InLesson, "STOP", "Stops learning this song for good.",
        {{{"drop ?song|this|it|lesson", "drop this song"}, {"stop learning ?song|this|it", ""},
            {"forget song|this ?song", ""}}}},
};

constexpr Job talkTable[] = {
    {Action::SayAll, InLesson, "", "In lessons I say all that may help.",
        {{{"say|tell everything ?me|again|in|lessons", "say everything"}}}},
    {Action::SayChanges, InLesson, "", "In lessons I say only what was wrong and what changes.",
        {{{"only|just changes ?say|me|tell|what|in|lessons", "only say changes"},
            {"less say|talk ?to|please|in|lessons", ""}}}},
    {Action::SoundsOnly, InLesson, "", "In lessons sounds tell it, and I say nothing unasked.",
        {{{"only|just sounds ?make|use|with|in|lessons", "only sounds"}}}},
    {Action::JudgeLoudness, InLesson, "", "In lessons I judge how loud you play, too, or not.",
        {{{"judge|judging|check|hear loudness|dynamics ?my|the|to|listen|please|again",
              "judge my loudness"},
            {"listen to loudness|dynamics ?my|the|please", ""},
            {"stop judge|judging|checking|hearing loudness|dynamics ?my|the", "", false}}},
        TakesSwitch},
    {Action::JudgeLegato, InLesson, "", "In lessons I judge how you join the notes, too, or not.",
        {{{"judge|judging|check|hear legato|joining ?my|the|to|listen|please|again", ""},
            {"listen to legato|joining ?my|the|please", "listen to my legato"},
            {"stop judge|judging|checking|hearing|listening legato|joining ?my|the|to", "",
                false}}},
        TakesSwitch},
};

constexpr Job practiceTable[] = {
    {Action::PracticePlan, InIdle | InTalk | InMenu | InLesson, "PLAN",
        "Says which bars need you most, and what has waited for long.",
        {{{"what practise|practice ?shall|should|could|must|i|do|today|now|next|me|to",
              "what shall I practise"},
            {"practice plan ?my|what|is|say", "practice plan"}}}},
    {Action::PracticeReport, InIdle | InTalk | InMenu | InLesson, "", "How your practice goes.",
        {{{"how am i doing ?today|this|week|now", "how am I doing"},
            {"how practice|practising ?is|my|going|am|i", "how is my practice"},
            {"progress ?my|what|is|how|say|tell", ""}}}},
    {Action::LeadPractice, InIdle | InTalk | InMenu, "LEAD",
        "Leads you through some minutes of practice: a scale, the weakest bars, a piece you know.",
        {{{"minutes|minute practice|practise|practising "
           "?of|let's|do|start|lead|me|for|i|want|to|through "
           "#",
              "fifteen minutes of practice"},
            {"practice session ?start|let's|do|led", "practice session"},
            {"lead me|my|practice ?through|practice|my", "lead me through practice"}}}},
    {Action::ForgetPiece, InIdle | InTalk | InMenu | InLesson, "",
        "Forgets what you practised of a piece, after asking twice.",
        {{{"forget piece ?this|that|the|my|practice|of|all|about", "forget this piece"},
            {"forget practice ?this|that|the|my|of|all|about|piece", ""},
            {"forget @ ?all|everything|about|my|practice|of", ""}}}},
    {Action::ExportPractice, InIdle | InTalk | InMenu, "",
        "Writes all that you practised to a table beside your songs.",
        {{{"export|write|save practice ?my|to|a|file|table|as|out|down", "export my practice"}}}},
};

constexpr Job exercisesTable[] = {
    {Action::Scale, InIdle | InTalk | InMenu | InLesson, "",
        "A scale with its fingers, hand by hand, in any key.",
        {{{"scale|scales ?practise|practice|play|teach|learn|exercise|major|minor|work|another",
            "practise the b flat major scale"}}},
        TakesKey | TakesHands},
    {Action::Arpeggio, InIdle | InTalk | InMenu | InLesson, "",
        "An arpeggio with its fingers, in any key.",
        {{{"arpeggio|arpeggios ?practise|practice|play|teach|learn|exercise|major|minor|work",
            "arpeggio of f minor"}}},
        TakesKey | TakesHands},
    {Action::Cadence, InIdle | InTalk | InMenu | InLesson, "",
        "The chords that end a piece, in any key.",
        {{{"cadence|cadences ?practise|practice|play|teach|learn|exercise|major|minor|work",
            "cadence in g major"}}},
        TakesKey | TakesHands},
    {Action::FingerPattern, InIdle | InTalk | InMenu | InLesson, "",
        "An exercise for all five fingers that climbs the scale, in any key.",
        {{{"finger|fingers|hanon exercise|exercises|pattern|patterns|drill "
           "?practise|practice|play|teach|learn|major|minor|work|another",
              "finger exercise in d major"},
            {"technique ?practise|practice|exercise|exercises", ""}}},
        TakesKey | TakesHands | TakesNumber},
};

constexpr Job trainingTable[] = {
    {Action::EarTraining, InIdle | InMenu | InTalk, "EAR", "Ear training: find the note I play.",
        {{{"ear|ears training|train|exercise|practice|game ?start", "ear training"},
            {"train|test ear|ears|hearing", ""}, {"training", ""}}}},
    {Action::EchoGame, InIdle | InMenu | InTalk | InEar, "",
        "Play back what you hear: a melody that grows.",
        {{{"echo|memory game ?start|play", "echo game"}, {"echo training ?start", ""}}}},
    {Action::IntervalTraining, InIdle | InMenu | InTalk | InEar, "", "Intervals by ear.",
        {{{"interval|intervals ?training|train|trainer|game|exercise|practise|practice|start",
            "interval training"}}}},
    {Action::ChordTraining, InIdle | InMenu | InTalk | InEar, "", "Chords by ear.",
        {{{"chord|chords training|train|trainer|game|ear ?start|practise|practice|my",
            "chord training"}}}},
    {Action::Drone, InIdle | InMenu | InTalk, "",
        "A note that is held under what you play; it names your intervals above it.",
        {{{"drone ?start|play|hold|with|note $note", "drone on d"},
            {"drone $key ?start|play|hold|with|note", ""}, {"drone ?start|play|hold|with", "drone"},
            {"drone stop|end|quiet", "", false}}},
        TakesSwitch},
    {Action::Metronome, Everywhere, "TICK",
        "The metronome, on or off, at any speed, in any metre, in eighths, triplets or sixteenths.",
        {{{"metronome|click|tick ?at|tempo|speed|beats|set #", "metronome at ninety"},
            {"metronome|click|tick stop|away|quiet", "metronome off", false},
            {"metronome|click|tick ?start|beat|turn|switch", "metronome"}, {"beats|bpm #", ""},
            {"metronome|click|tick $metre", "metronome in three four"}, {"time $metre", ""},
            {"metronome|click|tick $parts", "metronome in triplets"}, {"$parts", ""}}},
        TakesMetre | TakesParts | TakesNumber | TakesSwitch},
    {Action::MetronomeAccent, Everywhere, "", "Whether the first beat of a bar stands out.",
        {{{"accent|accents ?metronome|first|beat|bar|turn|switch", "metronome without accent"}}},
        TakesSwitch},
    {Action::CountIn, Everywhere, "", "Counts a bar in before it plays.",
        {{{"count in ?me|us", "count me in"}, {"count off", ""}}}, TakesMetre | TakesNumber},
    {Action::Band, InIdle | InTalk | InMenu, "B", "The live band: it follows the chords you hold.",
        {{{"band ?live|start|play|with|me|drums", "live band"},
            {"band stop|leave|quiet", "", false}, {"drums|bass ?play|with|me", ""}}},
        TakesNumber | TakesSwitch},
    {Action::BandStyle, InIdle | InTalk, "STYLE", "The band's style: simple or full.",
        {{{"band style|change ?other", "band style"}}}},
    {Action::BandSimple, InIdle | InTalk, "", "", {{{"simple band|style|drums", "simple band"}}}},
    {Action::BandFull, InIdle | InTalk, "", "", {{{"full|rich band|style|drums", "full band"}}}},
    {Action::BandLouder, InIdle | InTalk, "]", "The band louder.",
        {{{"louder|up band|drums|bass ?turn|make|bit|little|much", "band louder"},
            {"band|drums|bass too quiet|soft", ""}}}},
    {Action::BandQuieter, InIdle | InTalk, "[", "The band quieter.",
        {{{"quieter|softer|down band|drums|bass ?turn|make|bit|little|much", "band quieter"},
            {"band|drums|bass too loud", ""}}}},
};

} // namespace

std::span<const Job> lessonsJobs()
{
    return lessonsTable;
}

std::span<const Job> talkJobs()
{
    return talkTable;
}

std::span<const Job> practiceJobs()
{
    return practiceTable;
}

std::span<const Job> exercisesJobs()
{
    return exercisesTable;
}

std::span<const Job> trainingJobs()
{
    return trainingTable;
}

} // namespace kelo::engine
