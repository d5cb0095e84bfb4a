#include "sound/realtime.h"

#include <sched.h>
#include <sys/resource.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <csignal>
#include <cstdint>
#include <memory>

namespace kelo::engine {

namespace {

constexpr std::uint64_t patience = 300'000; ///< microseconds for each answer
constexpr std::int64_t longestWork = 200'000; ///< microseconds without a pause, as brokers have it

struct Broker {
    int (*open)(sd_bus **);
    const char *name;
    const char *path;
    const char *interface;
};

constexpr std::array brokers{
    Broker{sd_bus_open_system, "org.freedesktop.RealtimeKit1", "/org/freedesktop/RealtimeKit1",
        "org.freedesktop.RealtimeKit1"},
    Broker{sd_bus_open_user, "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop",
        "org.freedesktop.portal.Realtime"},
};

std::atomic<pid_t> favoured = 0; // NOLINT(*-avoid-non-const-global-variables): a signal handler's

/// The thread has used up its right; one more such time and the system would kill us.
void giveRightBack(int)
{
    const sched_param usual{};
    sched_setscheduler(favoured, SCHED_OTHER, &usual);
}

/// Brokers ask of whom they favour that the system can stop them.
void boundWork(std::int64_t most)
{
    struct sigaction action { };
    action.sa_handler = giveRightBack;
    sigaction(SIGXCPU, &action, nullptr);
    rlimit bound{};
    getrlimit(RLIMIT_RTTIME, &bound);
    const auto hard = static_cast<rlim_t>(std::clamp<std::int64_t>(most, 1, longestWork));
    bound.rlim_max = std::min(bound.rlim_max, hard);
    bound.rlim_cur = bound.rlim_max / 2;
    setrlimit(RLIMIT_RTTIME, &bound);
}

bool allows(const Broker &broker, pid_t thread)
{
    sd_bus *opened = nullptr;
    if (broker.open(&opened) < 0)
        return false;
    const std::unique_ptr<sd_bus, sd_bus *(*)(sd_bus *)> bus(opened, sd_bus_flush_close_unref);
    sd_bus_set_method_call_timeout(bus.get(), patience);
    std::int64_t most = longestWork;
    sd_bus_get_property_trivial(bus.get(), broker.name, broker.path, broker.interface,
        "RTTimeUSecMax", nullptr, 'x', &most);
    boundWork(most);
    return sd_bus_call_method(bus.get(), broker.name, broker.path, broker.interface,
               "MakeThreadRealtimeWithPID", nullptr, nullptr, "ttu",
               static_cast<std::uint64_t>(getpid()), static_cast<std::uint64_t>(thread),
               static_cast<std::uint32_t>(soundPriority))
        >= 0;
}

} // namespace

bool askBroker(pid_t thread)
{
    favoured = thread;
    return std::ranges::any_of(
        brokers, [thread](const Broker &each) { return allows(each, thread); });
}

} // namespace kelo::engine
