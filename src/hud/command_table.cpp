#include "hud/command_table.h"

#include "link/link.h"

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

struct Commands {
    Q_DECLARE_TR_FUNCTIONS(Commands)

public:
    static QList<CommandGroup> table(const QString &assistant);
    static CommandGroup practice();
};

QList<CommandGroup> Commands::table(const QString &assistant)
{
    return {
        {tr("ASSISTANT"),
            {
                {u"♪"_s, u"~say play me something\n"_s, tr("Play me something it makes up")},
                {u"ALBUM"_s, u"~say play my album\n"_s, tr("Play my album: every piece I saved")},
                {u"JAM"_s, u"~say jam with me\n"_s, tr("Jam: I play, it answers")},
                {u"LULL"_s, u"~say make it a lullaby\n"_s, tr("My piece as a lullaby")},
                {u"8BIT"_s, u"~say make it a video game\n"_s, tr("My piece as a video game")},
                {u"EPIC"_s, u"~say make it epic\n"_s, tr("My piece as a film score")},
                {u"?!"_s, u"~say surprise me\n"_s, tr("Surprise me")},
            }},
        {tr("PLAY"),
            {
                {u"⌫"_s, u"\x7f"_s, tr("Start over, without saving"), {.only = u"compose"_s}},
                {u"STOP"_s, u"~drop\n"_s, tr("Stop learning this song for good"),
                    {.only = u"teach"_s}},
                {u"SPACE"_s, u" "_s, tr("Start the lesson, or hear the part again"),
                    {.compose = tr("Play it back as a band")}},
                {u"N"_s, u"n"_s, tr("Say the notes of the part"),
                    {.compose = tr("Say what you wrote")}},
                {u"→"_s, u"\x1b[C"_s, tr("Skip ahead"), {.compose = tr("Play the next variation")}},
                {u"←"_s, u"\x1b[D"_s, tr("Go back"), {.compose = tr("Save it as a MIDI file")}},
                {u"RETURN"_s, u"\n"_s, tr("Pause, and carry on"),
                    {.compose = tr("Stop the sound")}},
                {u"S"_s, u"s"_s, tr("Keep what you just played")},
                {u"0"_s, u"0"_s, tr("Home: leave any mode")},
                {u"H"_s, u"h"_s, tr("Spoken help")},
            }},
        {tr("MODES"),
            {
                {u"C"_s, u"c"_s, tr("New composition")},
                {u"B"_s, u"b"_s, tr("Live band: it follows you as you play")},
                {u"STYLE"_s, u"~bandstyle\n"_s, tr("Band style: simple or full")},
                {u"T"_s, u"t"_s, tr("Talk mode on or off"),
                    {.compose = tr("Learn a new composing idea")}},
                {u"J"_s, u"j"_s, tr("Jazz course")},
                {u"M"_s, u"m"_s, tr("Song menu")},
                {u"L"_s, u"l"_s, tr("List the songs")},
                {u"G"_s, u"g"_s, tr("Logic control")},
                {u"R"_s, u"r"_s, tr("REAPER control")},
            }},
        {tr("SOUND"),
            {
                {u"−"_s, u"-"_s, tr("Slower demo")},
                {u"="_s, u"="_s, tr("Faster demo")},
                {u"["_s, u"["_s, tr("Band quieter")},
                {u"]"_s, u"]"_s, tr("Band louder")},
                {u","_s, u","_s, tr("Voice quieter")},
                {u"."_s, u"."_s, tr("Voice louder")},
                {u"V"_s, u"v"_s, tr("Change the voice")},
                {u"P"_s, u"p"_s, tr("Also play through the piano")},
            }},
        {tr("ACCESS"),
            {
                {u"MIC"_s, u"#voice"_s,
                    tr("Voice control: say %1, then what you want").arg(assistant)},
                {u"A"_s, u"a"_s, tr("Type to %1: a command or a question").arg(assistant)},
                {u"BIG"_s, u"#large"_s, tr("Large captions, on or off")},
                {u"HC"_s, u"#contrast"_s, tr("High contrast, on or off")},
                {u"HAND"_s, u"~hands\n"_s, tr("Lessons for both hands, right only or left only")},
                {u"EAR"_s, u"~ear\n"_s, tr("Ear training: find the note I play")},
                {u"TICK"_s, u"~metronome\n"_s, tr("Metronome on (say a speed by voice)")},
            }},
        {tr("SYSTEM"),
            {
                {u"/"_s, u"/"_s, tr("Open the large-print command page")},
                {u"⇧K"_s, u"K"_s, tr("Set the top key again")},
            }},
    };
}

CommandGroup Commands::practice()
{
    const CommandVariants inScore{.only = u"score"_s};
    return {tr("PRACTICE"),
        {
            {u"W"_s, u"w"_s, tr("Read the score: walk through it, step by step")},
            {u"U"_s, u"u"_s, tr("Follow me: the other hand waits for mine")},
            {u"PLAN"_s, u"~say what shall I practise\n"_s, tr("What shall I practise?")},
            {u"LEAD"_s, u"~say practice session\n"_s,
                tr("Fifteen minutes of practice that is led")},
            {u"1"_s, u"1"_s, tr("Walk by notes"), inScore},
            {u"2"_s, u"2"_s, tr("Walk by beats"), inScore},
            {u"3"_s, u"3"_s, tr("Walk by bars"), inScore},
            {u"4"_s, u"4"_s, tr("Walk by phrases"), inScore},
            {u"D"_s, u"d"_s, tr("Read this bar out"), inScore},
            {u"I"_s, u"i"_s, tr("What comes before"), inScore},
            {u"K"_s, u"k"_s, tr("Which key and metre"), inScore},
            {u"X"_s, u"x"_s, tr("Spell the chord"), inScore},
            {u"Y"_s, u"y"_s, tr("This bar in braille music"), inScore},
            {u"BRF"_s, u"~say save as braille\n"_s, tr("Save the piece as braille music"), inScore},
            {u"Z"_s, u"z"_s, tr("Only the notes, or words too"), inScore},
        }};
}

/// What the first eight command keys do, by mode.
struct PianoKeys {
    Q_DECLARE_TR_FUNCTIONS(PianoKeys)

public:
    static QStringList jobs(QStringView mode);
};

QStringList PianoKeys::jobs(QStringView mode)
{
    if (mode == u"compose") {
        return {tr("PLAY AS BAND"), tr("SAY WHAT I WROTE"), tr("VARIATION"), tr("SAVE"),
            tr("LEARN AN IDEA"), tr("STOP SOUND"), tr("NEW PIECE"), tr("HELP")};
    }
    if (mode == u"menu") {
        return {tr("START IT"), tr("COUNT SONGS"), tr("NEXT"), tr("PREVIOUS"), tr("TALK MODE"),
            tr("PAUSE"), tr("COMPOSE"), tr("HELP")};
    }
    if (mode == u"idle") {
        return {tr("OPEN IT"), tr("LIST CHOICES"), tr("NEXT CHOICE"), tr("PREVIOUS"),
            tr("TALK MODE"), tr("STOP"), tr("COMPOSE"), tr("HELP")};
    }
    if (mode == u"jazz") {
        return {tr("JAM AGAIN"), tr("THE IDEA"), tr("NEXT LESSON"), tr("PREVIOUS"), tr("TALK MODE"),
            tr("STOP BAND"), tr("COMPOSE"), tr("HELP")};
    }
    if (mode == u"logic" || mode == u"reaper") {
        return {tr("CHOOSE"), tr("BACK A LEVEL"), tr("NEXT"), tr("PREVIOUS"), tr("TALK MODE"),
            tr("STOP"), tr("COMPOSE"), tr("HELP")};
    }
    if (mode == u"score") {
        return {tr("SAY EVERYTHING"), tr("SAY THE NOTES"), tr("STEP ON"), tr("STEP BACK"),
            tr("TALK MODE"), tr("PLAY ON / STOP"), tr("COMPOSE"), tr("HELP")};
    }
    if (mode == u"follow") {
        return {tr("BEGIN ANEW"), tr("PLAY MY PART"), tr("NEXT BARS"), tr("BARS BEFORE"),
            tr("TALK MODE"), tr("PLAY PART / STOP"), tr("COMPOSE"), tr("HELP")};
    }
    return {tr("START / HEAR AGAIN"), tr("SAY THE NOTES"), tr("SKIP AHEAD"), tr("GO BACK"),
        tr("TALK MODE"), tr("PAUSE"), tr("COMPOSE"), tr("HELP")};
}

} // namespace

Command::Command(QString capLabel, QString sentText, QString description, CommandVariants variants)
    : id(QUuid::createUuid())
    , key(std::move(capLabel))
    , send(std::move(sentText))
    , lesson(std::move(description))
    , compose(std::move(variants.compose))
    , only(std::move(variants.only))
{
}

QString Command::description(bool composing) const
{
    return composing ? compose.value_or(lesson) : lesson;
}

bool Command::listed(const QString &mode) const
{
    return !only || *only == mode;
}

const QList<CommandGroup> &commandGroups()
{
    static const QList<CommandGroup> groups = Commands::table(Link::shared().assistant);
    return groups;
}

const CommandGroup &practiceGroup()
{
    static const CommandGroup group = Commands::practice();
    return group;
}

QList<Command> jazzLessons(const QStringList &names)
{
    QList<Command> lessons;
    for (const QString &name : names) {
        const QString number = QString::number(lessons.size() + 1);
        lessons.append({number, u"~jazz "_s + number + u'\n', name});
    }
    return lessons;
}

QList<ButtonJob> buttonJobs(const QString &mode)
{
    QList<ButtonJob> result;
    for (const QString &job : PianoKeys::jobs(mode))
        result.append({QString::number(result.size() + 1), job});
    result.append({u"H"_s, PianoKeys::tr("HOME")});
    result.append({u"K"_s, PianoKeys::tr("KEEP")});
    return result;
}

} // namespace kelo
