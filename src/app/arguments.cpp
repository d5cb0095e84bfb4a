#include "app/arguments.h"

#include <QCommandLineParser>
#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

struct CommandLine {
    Q_DECLARE_TR_FUNCTIONS(CommandLine)

public:
    CommandLine()
    {
        parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
        parser.setApplicationDescription(tr("Voice-controlled help for people who play the piano"));
        parser.addOptions({hidden, show, snapshot, wakeTest, quick, help, version});
        parser.addPositionalArgument(u"NAME"_s,
            tr("with --snapshot: only the pictures whose names begin with it; with --wake-test: "
               "the name that is listened for (Kelo)"),
            u"[NAME]"_s);
    }

    [[nodiscard]] std::optional<QString> value(const QCommandLineOption &option) const
    {
        const QStringList values = parser.values(option); // none where nothing follows it
        return values.isEmpty() ? std::nullopt : std::optional(values.constLast());
    }

    QCommandLineOption hidden{u"hidden"_s, tr("Start with the main window hidden.")};
    QCommandLineOption show{u"show"_s, tr("Start with the main window, at login too.")};
    QCommandLineOption snapshot{
        u"snapshot"_s, tr("Write a picture of every screen into FOLDER and end."), u"FOLDER"_s};
    QCommandLineOption wakeTest{u"wake-test"_s,
        tr("Measure how well the name is heard, write it to REPORT and end."), u"REPORT"_s};
    QCommandLineOption quick{u"quick"_s, tr("With --wake-test: without teaching the name first.")};
    QCommandLineOption help{{u"h"_s, u"help"_s}, tr("Show this and end.")};
    QCommandLineOption version{{u"v"_s, u"version"_s}, tr("Show the version and end.")};
    QCommandLineParser parser;
};

} // namespace

Arguments Arguments::read(const QStringList &list)
{
    CommandLine line;
    line.parser.parse(list); // false for what is unknown, which is ignored
    Arguments read;
    read.help = line.parser.isSet(line.help);
    read.version = line.parser.isSet(line.version);
    read.hidden = line.parser.isSet(line.hidden);
    read.show = line.parser.isSet(line.show);
    read.quick = line.parser.isSet(line.quick);
    read.snapshotFolder = line.value(line.snapshot);
    read.wakeTestReport = line.value(line.wakeTest);
    const QString name = line.parser.positionalArguments().value(0);
    read.snapshotNames = name;
    read.wakeTestName = name.isEmpty() ? u"Kelo"_s : name;
    return read;
}

QString Arguments::helpText()
{
    return CommandLine().parser.helpText();
}

} // namespace kelo
