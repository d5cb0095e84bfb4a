// How many lines of the engine the link takes in a second: handed over directly, and through a
// real child and its pipe. This program is its own child: with "--print" it prints the lines.

#include "link/line_splitter.h"
#include "link/link.h"
#include "support/figures.h"

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>
#include <QTextStream>

#include <cstdio>
#include <vector>

using namespace Qt::StringLiterals;
using namespace kelo;

namespace {

constexpr int linesOfAKind = 200'000;
constexpr int linesOfGrowth = 10'000'000;
constexpr int linesThroughThePipe = 2'000'000;
constexpr auto printing = "KELO_BENCH_PRINTS"; // makes this program the engine

/// Lines as an engine prints them while it speaks and plays, "@" and line feed included.
QByteArray streamOf(QByteArrayView keyword, int count)
{
    QByteArray stream;
    for (int i = 0; i < count; ++i) {
        const QByteArray n = QByteArray::number(i % 60);
        stream += '@';
        stream += keyword;
        if (keyword == "on" || keyword == "out") {
            // Three keys down, three up, so that chords are named and ripples end.
            const int pitch = 60 + 4 * (i % 3);
            stream += ' ' + QByteArray::number(pitch) + (i % 6 < 3 ? " 90" : " 0");
        } else if (keyword == "word") {
            stream += ' ' + n + " 7 250";
        } else if (keyword == "spec") {
            stream += " 0 " + n + ' ' + QByteArray("abcdefghijklmnopabcdefghijklmnop");
        } else {
            stream += " Here is what comes next, and it takes some time to say it. Number " + n;
        }
        stream += '\n';
    }
    return stream;
}

std::vector<QByteArrayView> split(LineSplitter &splitter, const QByteArray &stream)
{
    splitter.append(stream);
    std::vector<QByteArrayView> lines;
    while (const auto line = splitter.next())
        lines.push_back(line->sliced(1));
    return lines;
}

class Bench {
public:
    Bench()
        : link_({folder_.path(), folder_.path(), environment(),
            std::make_unique<QSettings>(folder_.filePath(u"settings.ini"_s), QSettings::IniFormat)})
    {
    }

    void handling()
    {
        for (const char *keyword : {"on", "out", "word", "spec", "say"}) {
            const QByteArray stream = streamOf(keyword, linesOfAKind);
            LineSplitter splitter;
            const auto lines = split(splitter, stream);
            const double rate = bench::perSecond(linesOfAKind, [&] {
                for (const QByteArrayView line : lines)
                    link_.handle(line);
            });
            bench::print(QLatin1StringView(keyword), rate, u"lines/s"_s);
        }
    }

    static void floor()
    {
        const QByteArray stream = streamOf("word", linesOfAKind);
        const double rate = bench::perSecond(linesOfAKind, [&] {
            LineSplitter splitter;
            splitter.append(stream);
            qsizetype bytes = 0;
            while (const auto line = splitter.next())
                bytes += line->size();
            if (bytes + linesOfAKind != stream.size())
                qFatal("bytes were lost");
        });
        bench::print(u"floor: the words split into lines, no more"_s, rate, u"lines/s"_s);
    }

    void growth()
    {
        QByteArray stream;
        for (const char *keyword : {"on", "out", "word", "spec"})
            stream += streamOf(keyword, linesOfAKind / 4);
        LineSplitter splitter;
        const auto lines = split(splitter, stream);
        double before = 0;
        for (int handled = 0; handled <= linesOfGrowth; handled += linesOfAKind) {
            for (const QByteArrayView line : lines)
                link_.handle(line);
            if (handled == 0) // the lists have filled
                before = bench::privateMemory();
        }
        bench::print(u"memory grown by over ten million of the first four"_s,
            (bench::privateMemory() - before) / 1024, u"KiB"_s);
        bench::print(u"to"_s, bench::privateMemory() / 1024, u"KiB"_s);
    }

    void throughThePipe()
    {
        const QString engine = folder_.filePath(u"kelo-engine"_s);
        QFile::link(QCoreApplication::applicationFilePath(), engine);
        double began = 0;
        QObject::connect(&link_, &Link::handsChanged, &link_, [&] {
            if (began == 0) {
                began = Link::clock();
                return;
            }
            bench::print(u"a mixture of the five through a child's pipe"_s,
                linesThroughThePipe / (Link::clock() - began), u"lines/s"_s);
            link_.stop();
            QCoreApplication::quit();
        });
        link_.start();
        QCoreApplication::exec();
    }

private:
    static QProcessEnvironment environment()
    {
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QLatin1StringView(printing), u"1"_s);
        return environment;
    }

    QTemporaryDir folder_;
    Link link_;
};

/// What the child does: a mark, the lines, a mark.
int printLines()
{
    QByteArray stream;
    for (const char *keyword : {"on", "out", "word", "spec", "say"})
        stream += streamOf(keyword, linesOfAKind / 5);
    std::fputs("@hands begin\n", stdout);
    for (int printed = 0; printed < linesThroughThePipe; printed += linesOfAKind)
        std::fwrite(stream.constData(), 1, static_cast<std::size_t>(stream.size()), stdout);
    std::fputs("@hands end\n", stdout);
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsSet(printing))
        return printLines();
    const QCoreApplication application(argc, argv);
    bench::printMachine();
    Bench::floor();
    Bench bench;
    bench.handling();
    bench.growth();
    bench.throughThePipe();
}
