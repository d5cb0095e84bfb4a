#include "assistant/assistant.h"
#include "protocol/input.h"
#include "protocol/wire.h"
#include "sound/mixer.h"
#include "sound/output.h"
#include "speech/speaker.h"
#include "speech/synthesiser.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

using namespace kelo::engine;

namespace {

/// Takes standard output for the protocol alone: what libraries print goes to standard error.
int claimStandardOutput()
{
    const int lines = dup(STDOUT_FILENO);
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
    return {monotonicNow(), local.tm_hour, local.tm_min};
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

std::string_view troubleWith(const Output &output, const Synth &synth)
{
    if (!output.audible())
        return "I found no way to make sound, so I keep time in silence.";
    if (!synth.sounds())
        return "I found no soundfont, so you won't hear music. The package timgm6mb-soundfont has "
               "one.";
    return {};
}

/// Sleeps until there is input, news or `deadline`, a second at most. True when there is input.
bool wait(int news, const std::optional<double> &deadline)
{
    const double left = deadline ? std::clamp(*deadline - monotonicNow(), 0.0, 1.0) : 1.0;
    std::array<pollfd, 2> sources{{{STDIN_FILENO, POLLIN, 0}, {news, POLLIN, 0}}};
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

} // namespace

int main()
{
    const int lines = claimStandardOutput();
    std::signal(SIGPIPE, SIG_IGN);
    const int news = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
    bool open = true;
    Wire wire([&](std::string_view line) { open = open && writeAll(lines, line); });

    AudioClock clock(monotonicNow());
    const auto fonts = soundfonts();
    Synth synth(fonts);
    Mixer mixer(synth, clock);
    Output output(mixer, clock, setting("KELO_SOUND"));
    Synthesiser voice([news] { eventfd_write(news, 1); });
    Speaker speaker(wire, voice, mixer, clock);
    Player player(wire, mixer.music(), clock);
    Assistant assistant(wire, speaker, player);
    InputReader input;

    assistant.greet("x", troubleWith(output, synth), currentMoment());
    std::array<char, 65536> bytes{};
    while (open && !assistant.finished()) {
        std::vector<Input> inputs;
        if (wait(news, earlier(assistant.deadline(), input.deadline()))) {
            const ssize_t count = read(STDIN_FILENO, bytes.data(), bytes.size());
            if (count == 0 || (count < 0 && errno != EINTR && errno != EAGAIN))
                break;
            const auto size = static_cast<std::size_t>(std::max<ssize_t>(count, 0));
            inputs = input.feed({bytes.data(), size}, monotonicNow());
        } else if (const auto key = input.expire(monotonicNow())) {
            inputs.push_back(*key);
        }
        for (auto next = inputs.begin(); next != inputs.end() && !assistant.finished(); ++next)
            assistant.take(*next, currentMoment());
        assistant.advance(currentMoment());
    }
    leaveWithinASecond();
    return 0;
}
