// How well the engine finds its name and what follows it in what the recogniser really wrote down:
//   engine_wake_bench [-v]
// replays the recorded sessions of heard.tsv, which heard_table makes, each line a session: "wake"
// or "talk", the name, whether the recogniser had been taught it, what was said after it, and all
// that was understood of it, step by step, "=" before what is final. -v prints the sessions that
// went wrong.

#include "listen/ear.h"
#include "listen/understanding.h"
#include "songs/library.h"
#include "support/figures.h"

#include <QCoreApplication>
#include <QFile>
#include <QStringList>
#include <QTextStream>

#include <map>

using namespace Qt::StringLiterals;
using namespace kelo::engine;

namespace {

struct Tally {
    int sessions = 0;
    int written = 0; ///< the name stood in the final transcript
    int found = 0; ///< a command was taken
    int right = 0; ///< and it was the one that was said
    int literal = 0; ///< and it would be, if only its very words counted
    int other = 0; ///< and it was understood as another
};

std::optional<Request> meaning(const QString &text, const Library &library)
{
    return understandKindly(wordsOf(text.toStdString()), library.names());
}

std::optional<Request> literalMeaning(const QString &text, const Library &library)
{
    return understand(wordsOf(text.toStdString()), library.names());
}

/// The commands that a session gives; a step comes every tenth of a second.
QStringList commandsIn(const QStringList &steps, const QString &name, const Library &library)
{
    const auto understands = [&](std::span<const Word> words) {
        return understand(words, library.names()).has_value();
    };
    Ear ear(understands, understands);
    ear.setName(name.toStdString());
    QStringList commands;
    double now = 0;
    for (const QString &step : steps) {
        const bool final = step.startsWith(u'=');
        const std::string words = step.mid(final ? 1 : 0).toStdString();
        if (const auto command = ear.hear(final, words, {}, now))
            commands << QString::fromStdString(*command);
        now += 0.1;
    }
    if (const auto command = ear.expire(now + 1))
        commands << QString::fromStdString(*command);
    return commands;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    kelo::bench::printMachine();
    const bool verbose = application.arguments().contains(u"-v"_s);
    const Library library{{}};
    QFile file(QStringLiteral(HEARD));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("no recorded sessions");
    std::map<QString, Tally> tallies;
    for (const QByteArray &line : file.readAll().split('\n')) {
        const QStringList fields = QString::fromUtf8(line).split(u'\t');
        if (fields.size() != 5)
            continue;
        const bool called = fields[0] == u"wake";
        const QStringList steps = fields[4].split(u" / "_s);
        const QStringList commands = commandsIn(steps, fields[1], library);
        Tally &tally =
            tallies[(called ? u"called %1, %2"_s : u"other talk, %1, %2"_s)
                        .arg(fields[1], fields[2] == u"1" ? u"taught"_s : u"not taught"_s)];
        ++tally.sessions;
        tally.written += steps.last().contains(fields[1], Qt::CaseInsensitive);
        tally.found += !commands.isEmpty();
        const auto said = meaning(fields[3], library);
        const auto taken = commands.size() == 1 ? meaning(commands[0], library) : std::nullopt;
        const bool right = taken && taken == said;
        tally.right += right;
        tally.literal += right && literalMeaning(commands[0], library) == said;
        tally.other += taken && !right;
        if (verbose && called != right)
            QTextStream(stdout) << line << "\n    -> " << commands.join(u" | "_s) << '\n';
    }
    for (const auto &[what, tally] : tallies) {
        const auto percent = [&](int count) { return 100.0 * count / tally.sessions; };
        kelo::bench::print(what, tally.sessions, u"sessions"_s);
        kelo::bench::print(u"  the name is written"_s, percent(tally.written), u"%"_s);
        kelo::bench::print(u"  a command is taken"_s, percent(tally.found), u"%"_s);
        kelo::bench::print(u"  and understood as another"_s, percent(tally.other), u"%"_s);
        if (what.startsWith(u"called")) {
            kelo::bench::print(u"  and the right one"_s, percent(tally.right), u"%"_s);
            kelo::bench::print(u"  ... by its very words"_s, percent(tally.literal), u"%"_s);
        }
    }
    return 0;
}
