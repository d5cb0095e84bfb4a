// An hour of lessons, as fast as it goes: the assistant with all that it works with, a clock that
// goes by the samples, and a pupil who plays back what is played, and now and then something else.
// Prints what the pupil got through and how much the memory grew.

#include "support/figures.h"
#include "support/offline_engine.h"

#include <QCoreApplication>

#include <random>
#include <vector>

using namespace Qt::StringLiterals;
using namespace kelo::engine;
using kelo::bench::print;
using kelo::bench::privateMemory;

namespace {

constexpr double hour = 3600;
constexpr double warm = 600; ///< seconds after which everything has been used once
constexpr double mebibyte = 1024 * 1024;

class Hour {
public:
    void run();

private:
    void take(std::string_view line);
    void play();

    // The pupil.
    std::vector<int> shown; ///< keys of the part that was played
    bool another = true; ///< what is played next is another part
    double lastShown = 0;
    double nextKey = 0;
    std::size_t place = 0;
    std::mt19937 random{11};
    int good = 0;
    int wrong = 0;
    int songs = 0;
    bool ended = true;

    kelo::bench::OfflineEngine engine{[this](std::string_view line) { take(line); }};
};

void Hour::take(std::string_view line)
{
    const auto begins = [&](std::string_view what) { return line.starts_with(what); };
    if (begins("@say")) {
        another = true;
        ended = ended || line.find("That was the whole") != std::string_view::npos;
        songs += line.find("That was the whole") != std::string_view::npos;
    } else if (begins("@out") && !line.ends_with(" 0\n")) {
        if (std::exchange(another, false))
            shown.clear();
        shown.push_back(std::atoi(line.data() + 5));
        lastShown = engine.now();
        place = 0;
    } else if (begins("@flash good")) {
        ++good;
    } else if (begins("@flash wrong")) {
        ++wrong;
        place = 0;
        nextKey = engine.now() + 6; // listens to what is said of it
    }
}

void Hour::play()
{
    const double now = engine.now();
    if (engine.speaking() || shown.empty() || now < lastShown + 2 || now < nextKey)
        return;
    place %= shown.size(); // from the beginning again, where that was not it
    const int pitch = shown[place++] + static_cast<int>(random() % 40 == 0);
    engine.press(pitch, 80);
    engine.press(pitch, 0);
    nextKey = now + (place == shown.size() ? 4 : 0.25);
}

void Hour::run()
{
    engine.begin();
    double before = 0;
    for (int song = 0; engine.now() < hour;) {
        if (std::exchange(ended, false))
            engine.take(Command{"say teach me song " + std::to_string(1 + song++ % 8)});
        engine.step();
        play();
        if (before == 0 && engine.now() > warm)
            before = privateMemory();
    }
    print(u"parts played right in an hour"_s, good, u"parts"_s);
    print(u"wrong"_s, wrong, u"times"_s);
    print(u"songs learnt to their end"_s, songs, u"songs"_s);
    print(u"memory after ten minutes"_s, before / mebibyte, u"MiB"_s);
    print(u"more after the hour"_s, (privateMemory() - before) / mebibyte, u"MiB"_s);
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    kelo::bench::printMachine();
    Hour().run();
    return 0;
}
