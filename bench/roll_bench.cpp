// A roll of a million notes: how long it takes to come in, what it weighs, and how fast the
// falling-notes scene finds its place in it.

#include "link/link.h"
#include "support/figures.h"
#include "visual/notes/rain_scene.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <random>

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::bench;

namespace {

constexpr int notes = 1'000'000;
constexpr double length = 3600; // seconds

QByteArrayList lines()
{
    QByteArrayList list;
    for (int i = 0; i < notes;) {
        QByteArray line = "rolln ";
        for (int n = 0; n < 100; ++n, ++i) {
            line += QByteArray::number(length * i / notes, 'f', 4) + ",0.25,"
                + QByteArray::number(21 + i % 88) + ",90," + QByteArray::number(i % 3) + ';';
        }
        list << line;
    }
    return list;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication app(argc, argv);
    printMachine();
    const QTemporaryDir home;
    Link link{LinkSetup{home.path(), home.path(), {},
        std::make_unique<QSettings>(home.filePath(u"s.ini"_s), QSettings::IniFormat)}};
    RainScene scene(link);
    scene.resize(1240, 840);
    const QByteArrayList roll = lines();

    const double before = privateMemory();
    QElapsedTimer timer;
    timer.start();
    link.handle("rollnew A Million");
    for (const QByteArray &line : roll)
        link.handle(line);
    link.handle("rollstart 0 3600");
    print(u"a roll of 1,000,000 notes arrives in"_s, static_cast<double>(timer.elapsed()), u"ms"_s);
    print(u"memory"_s, (privateMemory() - before) / notes, u"bytes a note"_s);

    // Scrubbing: each frame somewhere else, as often back as forth.
    std::mt19937 random(3);
    std::vector<double> times;
    for (int i = 0; i < 300; ++i) {
        link.handle("rollstart -" + QByteArray::number(random() % 3600) + " 3600");
        timer.restart();
        scene.update(link.uptime());
        times.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
    }
    std::ranges::sort(times);
    print(u"a frame while scrubbing, median"_s, times[times.size() / 2], u"ms"_s);
    print(u"a frame while scrubbing, worst"_s, times.back(), u"ms"_s);
    return 0;
}
