#include "assistant/assistant.h"
#include "assistant/demo.h"
#include "piano/piano.h"
#include "piano/through.h"
#include "protocol/input.h"
#include "protocol/wire.h"
#include "setup/voice_log.h"
#include "songs/library.h"
#include "sound/mixer.h"
#include "sound/output.h"
#include "speech/speaker.h"
#include "speech/synthesiser.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <functional>
#include <optional>
#include <random>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

using namespace kelo::engine;

namespace {

/// Takes standard output for the protocol alone: what libraries print goes to standard error.
int claimStandardOutput()
{
    const int lines = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0);
    dup2(STDERR_FILENO, STDOUT_FILENO);
    return lines;
}

/// Writes all of `text`; false when nobody reads any more.
bool writeAll(int file, std::string_view text)
{
    while (!text.empty()) {
        const ssize_t written = write(file, text.data(), text.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return false;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

Moment currentMoment()
{
    const std::time_t wall = std::time(nullptr);
    std::tm local{};
    localtime_r(&wall, &local);
    return {monotonicNow(), {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday}, local.tm_hour,
        local.tm_min};
}

std::string setting(const char *name)
{
    const char *value = std::getenv(name);
    return value ? value : "";
}

/// KELO_SOUNDFONT, where it is set, or what Debian installs.
std::vector<std::string> soundfonts()
{
    if (std::getenv("KELO_SOUNDFONT"))
        return {setting("KELO_SOUNDFONT")};
    return {"/usr/share/sounds/sf2/default-GM.sf2", "/usr/share/sounds/sf2/FluidR3_GM.sf2",
        "/usr/share/sounds/sf2/TimGM6mb.sf2", "/usr/share/sounds/sf3/default-GM.sf3"};
}

std::string troubleWith(const Output &output, const Synth &synth, const Piano &piano)
{
    std::string trouble;
    if (!output.audible())
        trouble += "I found no way to make sound, so I keep time in silence. ";
    if (!synth.sounds())
        trouble += "I found no soundfont, so you won't hear music. The package timgm6mb-soundfont "
                   "has one. ";
    return trouble.append(piano.trouble());
}

/// Where the engine keeps its files.
std::filesystem::path homeFolder()
{
    if (std::getenv("KELO_HOME"))
        return setting("KELO_HOME");
    return std::filesystem::path(setting("HOME")) / ".local" / "share" / "Kelo";
}

/// Shows a page with whatever the desktop has for it.
bool openWithDesktop(const std::filesystem::path &page)
{
    std::string program = "xdg-open";
    std::string file = page.string();
    const std::array<char *, 3> arguments{program.data(), file.data(), nullptr};
    pid_t child = 0;
    return posix_spawnp(&child, program.c_str(), nullptr, nullptr, arguments.data(), environ) == 0;
}

/// Sleeps until there is input, news, something from the piano or `deadline`, a second at most.
/// True when there is input.
bool wait(int news, int piano, const std::optional<double> &deadline)
{
    const double left = deadline ? std::clamp(*deadline - monotonicNow(), 0.0, 1.0) : 1.0;
    std::array<pollfd, 3> sources{
        {{STDIN_FILENO, POLLIN, 0}, {news, POLLIN, 0}, {piano, POLLIN, 0}}};
    const int ready =
        poll(sources.data(), sources.size(), static_cast<int>(std::ceil(left * 1000)));
    eventfd_t count = 0;
    eventfd_read(news, &count);
    return ready > 0 && sources[0].revents != 0;
}

std::optional<double> earlier(std::optional<double> a, std::optional<double> b)
{
    return a && b ? std::min(a, b) : a ? a : b;
}

/// A sound driver that will not close must not keep the display waiting.
void leaveWithinASecond()
{
    std::signal(SIGALRM, [](int) { _exit(0); });
    alarm(1);
}

/// The assistant and all that it works with.
class Engine {
public:
    Engine(Wire &lines, std::function<void()> news, bool showsItself)
        : wire(lines)
        , output(mixer, clock, setting("KELO_SOUND"), news)
        , dispatcher(setting("KELO_SPEECH") == "speech-dispatcher", news)
        , voice(news)
        , piano(std::move(news), setting("KELO_PIANO"))
    {
        piano.look(monotonicNow());
        if (showsItself)
            demo.emplace(monotonicNow());
        const Moment now = currentMoment();
        audible = output.audible();
        assistant.begin(demo ? "Demo piano" : piano.name(), !demo, now);
        if (!demo)
            assistant.greet(troubleWith(output, synth, piano), now);
    }

    void advance(std::span<const Input> inputs)
    {
        for (const ChannelMessage message : piano.take())
            assistant.takePiano(message, currentMoment());
        for (auto next = inputs.begin(); next != inputs.end() && !finished(); ++next)
            assistant.take(*next, currentMoment());
        if (piano.look(monotonicNow()) && !demo)
            assistant.pianoChanged(piano.name());
        if (!std::exchange(audible, output.audible()) && audible)
            assistant.soundCame(currentMoment());
        if (demo)
            show();
        assistant.advance(currentMoment());
    }

    [[nodiscard]] std::optional<double> deadline() const
    {
        const auto own = demo ? demo->deadline() : std::nullopt;
        return earlier(earlier(assistant.deadline(), own), piano.deadline());
    }
    [[nodiscard]] bool finished() const { return assistant.finished(); }
    [[nodiscard]] int pianoFile() const { return piano.file(); }

private:
    void setVoiceLoudness(float loudness)
    {
        mixer.setVoiceLoudness(loudness);
        dispatcher.setLoudness(loudness);
    }

    void show()
    {
        while (const auto step = demo->advance(assistant.quiet(), monotonicNow())) {
            if (const auto *message = std::get_if<ChannelMessage>(&*step))
                assistant.takePiano(*message, currentMoment());
            else
                assistant.take(std::get<Command>(*step), currentMoment());
        }
    }

    Wire &wire;
    AudioClock clock{monotonicNow()};
    Synth synth{soundfonts()};
    Mixer mixer{synth, clock};
    Output output;
    Dispatcher dispatcher;
    Synthesiser voice;
    Piano piano;
    Through through{mixer.music(), clock, [this](ChannelMessage message) { piano.send(message); }};
    Speaker speaker{wire, dispatcher, voice, mixer, clock};
    Player player{wire, through, clock};
    Metronome metronome{wire, mixer.rhythm(), clock};
    Band band{wire, mixer.rhythm(), clock};
    const std::filesystem::path home = homeFolder();
    const std::filesystem::path songs = songsFolder(setting("HOME"));
    Library library{songs};
    Assistant assistant{
        {wire, speaker, player, metronome, band, through, mixer.keys(), library,
            [this](float loudness) { setVoiceLoudness(loudness); }, openWithDesktop},
        {home / "profile.json", home / "commands.html", songs}, std::random_device{}()};
    std::optional<Demo> demo;
    bool audible = false;
};

} // namespace

int main(int argc, char *argv[])
{
    const int lines = claimStandardOutput();
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGCHLD, SIG_IGN);
    const int news = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
    bool open = true;
    Wire wire([&](std::string_view line) { open = open && writeAll(lines, line); });
    const bool demo =
        (argc > 1 && std::string_view(argv[1]) == "--demo") || std::getenv("KELO_DEMO");

    prepareVoiceLog(homeFolder());
    Engine engine(
        wire, [news] { eventfd_write(news, 1); }, demo);
    InputReader input;
    std::array<char, 65536> bytes{};
    while (open && !engine.finished()) {
        std::vector<Input> inputs;
        if (wait(news, engine.pianoFile(), earlier(engine.deadline(), input.deadline()))) {
            const ssize_t count = read(STDIN_FILENO, bytes.data(), bytes.size());
            if (count == 0 || (count < 0 && errno != EINTR && errno != EAGAIN))
                break;
            const auto size = static_cast<std::size_t>(std::max<ssize_t>(count, 0));
            inputs = input.feed({bytes.data(), size}, monotonicNow());
        } else if (const auto key = input.expire(monotonicNow())) {
            inputs.push_back(*key);
        }
        engine.advance(inputs);
    }
    leaveWithinASecond();
    return 0;
}
