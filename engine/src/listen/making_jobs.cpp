#include "listen/job_tables.h"

namespace kelo::engine {

namespace {

constexpr Job makingTable[] = {
    {Action::MakeUp, InIdle | InTalk | InMenu, "♪", "Plays something that it makes up.",
        {{{"play something|anything ?me|nice|music|new", "play me something"},
            {"play|something|hear $mood ?something|me|piece|music|hear|love", "play something ~"},
            {"play music ?some", ""}, {"make|think up ?something|piece|music|tune", ""},
            {"improvise ?something|me", "improvise"}, {"song random|any ?play", ""}}},
        TakesMood | TakesKey},
    {Action::Surprise, InIdle | InTalk | InMenu, "?!", "Surprises you.",
        {{{"surprise ?me", "surprise me"}}}},
    {Action::Compose, InIdle | InTalk | InMenu, "C", "A new composition of yours.",
        {{{"compose|composition|composing ?new|piece|song|music|let's|start", "compose"},
            {"write song|piece|music|composition|tune ?new|let's|together", ""}}},
        TakesMetre},
    {Action::PlayAsBand, InCompose, "SPACE", "Plays your piece as a band.",
        {{{"play as band ?it|my|piece", "play it as a band"},
            {"band piece|composition my|it", ""}}}},
    {Action::ReadBack, InCompose, "N", "Says what you wrote.",
        {{{"what i wrote|write ?did|say", "say what I wrote"},
            {"read back|it|piece ?back|my|piece", "read it back"}}}},
    {Action::Variation, InCompose, "→", "The next variation of your piece.",
        {{{"variation|vary ?next|play|another|it", "next variation"}}}},
    {Action::SavePiece, InCompose, "←", "Saves your piece as MIDI and as a score.",
        {{{"save piece|composition|score|midi ?my|this|it|file|as", "save my piece"}}}},
    {Action::NewPiece, InCompose, "⌫", "Starts over, without saving.",
        {{{"new piece|tune", "new piece"}}}, TakesMetre},
    {Action::ComposingIdea, InCompose, "T", "Teaches a composing idea on your own theme.",
        {{{"idea ?composing|learn|new|teach|another|next|give", "a composing idea"}}}},
    {Action::Lullaby, InIdle | InTalk | InCompose, "LULL", "Your piece as a lullaby.",
        {{{"lullaby ?make|turn|into|as|my|piece|song", "make it a lullaby"}}}},
    {Action::VideoGame, InIdle | InTalk | InCompose, "8BIT", "Your piece as a video game.",
        {{{"game ?make|turn|into|as|my|piece|video|like|song", "make it a video game"},
            {"video ?make|turn|into|as|my|piece|like|song", ""}}}},
    {Action::FilmScore, InIdle | InTalk | InCompose, "EPIC", "Your piece as a film score.",
        {{{"epic ?make|turn|into|as|my|piece|sound|song", "make it epic"},
            {"film|movie ?score|make|turn|into|as|like|sound|my|piece|music",
                "make it a film score"}}}},
    {Action::Jam, InIdle | InTalk, "JAM", "You play, it answers.",
        {{{"jam|jamming ?with|me|let's", "jam with me"}, {"trade|trading bars|fours|eights", ""}}}},
    {Action::JamAgain, InJazz, "", "Plays the band again.",
        {{{"jam again ?band|once", "jam again"}}}},
    {Action::Jazz, InIdle | InTalk | InMenu | InJazz, "J", "The jazz course.",
        {{{"jazz ?course|lesson|lessons|learn|teach|open|start #", "jazz lesson three"},
            {"jazz ?course|lesson|lessons|learn|teach|open|start", "jazz course"}}}},
    {Action::JazzIdea, InJazz, "N", "The idea of the jazz lesson.",
        {{{"idea lesson ?what|tell|again", "the idea of the lesson"}}}},
};

constexpr Job studioTable[] = {
    {Action::LogicControl, InIdle | InTalk, "G", "Controls Logic, or what speaks its protocol.",
        {{{"logic ?control|open|start", "logic control"}}}},
    {Action::ReaperControl, InIdle | InTalk, "R", "Controls REAPER.",
        {{{"reaper ?control|open|start", "reaper control"}}}},
    {Action::BackALevel, InStudio, "", "Back to the level above.",
        {{{"level back|up", "back a level"}}}},
};

} // namespace

std::span<const Job> makingJobs()
{
    return makingTable;
}

std::span<const Job> studioJobs()
{
    return studioTable;
}

} // namespace kelo::engine
