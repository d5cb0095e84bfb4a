// An hour of lessons, as fast as it goes: the assistant with all that it works with, a clock that
// goes by the samples, and a pupil who plays back what is played, and now and then something else.
// Prints what the pupil got through and how much the memory grew.

#include "assistant/assistant.h"
#include "sound/mixer.h"
#include "sound/sound_desk.h"
#include "speech/speaker.h"
#include "speech/speech_dispatcher.h"
#include "speech/synthesiser.h"
#include "support/figures.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <QThread>

#include <array>
#include <random>
#include <vector>

using namespace Qt::StringLiterals;
using namespace kelo::engine;
using kelo::bench::print;
using kelo::bench::privateMemory;

namespace {

constexpr double hour = 3600;
constexpr double warm = 600; ///< seconds after which everything has been used once
constexpr std::size_t block = 512;

constexpr double mebibyte = 1024 * 1024;

class Hour {
public:
    void run();

private:
    void take(std::string_view line);
    void play();
    [[nodiscard]] Moment moment() const
    {
        using namespace std::chrono;
        constexpr auto evening = local_days(year(2026) / 3 / 7) + hours(20);
        return {now, evening + std::chrono::seconds(static_cast<int>(now))};
    }

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

    double now = 0;
    QTemporaryDir folder;
    std::filesystem::path home{folder.path().toStdString()};
    Wire wire{[this](std::string_view line) { take(line); }};
    AudioClock clock{0};
    Mixer mixer{std::make_unique<Synth>(std::vector<std::string>{
                    "/usr/share/sounds/sf2/default-GM.sf2", "/usr/share/sounds/sf2/TimGM6mb.sf2"}),
        clock};
    SoundDesk desk{mixer, {}, {}, [] {}};
    SpeechDispatcher dispatcher{false, {}};
    Synthesiser voice{[] {}};
    MidiThru through{mixer.music(), clock, [](ChannelMessage) {}};
    Speaker speaker{wire, dispatcher, voice, mixer, clock};
    Player player{wire, through, clock};
    Metronome metronome{wire, mixer.ticks(), clock};
    Band band{wire, mixer.band(), clock};
    Library library{{}};
    Assistant assistant{{wire, speaker, player, metronome, band, through, mixer.keys(), library,
                            desk, [](const std::filesystem::path &) { return false; }},
        {home / "profile.json", home / "commands.html", home, home / "takes",
            home / "composition.json"},
        1};
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
        lastShown = now;
        place = 0;
    } else if (begins("@flash good")) {
        ++good;
    } else if (begins("@flash wrong")) {
        ++wrong;
        place = 0;
        nextKey = now + 6; // listens to what is said of it
    }
}

void Hour::play()
{
    if (speaker.speaking() || shown.empty() || now < lastShown + 2 || now < nextKey)
        return;
    place %= shown.size(); // from the beginning again, where that was not it
    const auto error = static_cast<int>(random() % 40 == 0);
    const auto pitch = static_cast<unsigned char>(shown[place++] + error);
    assistant.takePiano({0x90, pitch, 80}, moment());
    assistant.takePiano({0x80, pitch, 0}, moment());
    nextKey = now + (place == shown.size() ? 4 : 0.25);
}

void Hour::run()
{
    assistant.begin("Stage Piano", false, moment());
    double before = 0;
    for (int song = 0; now < hour;) {
        if (std::exchange(ended, false)) {
            const std::string line = "say teach me song " + std::to_string(1 + song++ % 8);
            assistant.take(Command{line}, moment());
        }
        std::array<float, block> left{};
        std::array<float, block> right{};
        mixer.render(left, right, now);
        now += seconds(block);
        assistant.advance(moment());
        play();
        if (speaker.speaking())
            QThread::usleep(100); // the voice is made on a thread of its own
        if (before == 0 && now > warm)
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
