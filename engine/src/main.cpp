#include "activities/moment.h"
#include "log/log.h"
#include "program/engine.h"
#include "program/environment.h"
#include "protocol/input.h"
#include "protocol/wire.h"
#include "setup/voice_log.h"
#include "sound/monotonic_time.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <optional>
#include <string_view>
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

/// A sound driver that will not close must not keep the display waiting.
void leaveWithinASecond()
{
    std::signal(SIGALRM, [](int) { _exit(0); });
    alarm(1);
}

} // namespace

int main(int argc, char *argv[])
{
    const int lines = claimStandardOutput();
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN); // a write beyond what the user may write fails, and no more
    std::signal(SIGCHLD, SIG_IGN);
    const int news = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
    bool open = true;
    Wire wire([&](std::string_view line) { open = open && writeAll(lines, line); });
    const bool demo =
        (argc > 1 && std::string_view(argv[1]) == "--demo") || std::getenv("KELO_DEMO");

    setLogLevel(setting("KELO_LOG"));
    prepareVoiceLog(homeFolder());
    Engine engine(
        wire, [news] { eventfd_write(news, 1); }, demo);
    InputReader input;
    std::array<char, 65536> bytes{};
    while (open && !engine.finished()) {
        std::vector<Input> inputs;
        if (wait(news, engine.pianoFile(), earliest({engine.deadline(), input.deadline()}))) {
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
