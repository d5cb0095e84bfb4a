#include "app/session.h"

#include <QSocketNotifier>

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <csignal>

namespace kelo::session {

namespace {

// A signal handler may do no more than write a byte; the event loop reads it at the other end.
std::array<int, 2> signalSockets{-1, -1};

void reportSignal(int)
{
    const char byte = 1;
    [[maybe_unused]] const auto written = ::write(signalSockets[0], &byte, sizeof byte);
}

} // namespace

void openMissingStreams()
{
    // Each opens as the lowest number that is free.
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
        if (::fcntl(stream, F_GETFD) == -1 && ::open("/dev/null", O_RDWR) == -1)
            return;
    }
}

bool prepareDisplay()
{
    if (qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        return true;
    // Only X11 lets a program place a window of its own, which the caption panel needs.
    if (qEnvironmentVariableIsSet("DISPLAY"))
        return qputenv("QT_QPA_PLATFORM", "xcb");
    return qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
}

void onEndRequested(QObject *context, std::function<void()> quit)
{
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, signalSockets.data()) != 0)
        return;
    auto *notifier = new QSocketNotifier(signalSockets[1], QSocketNotifier::Read, context);
    QObject::connect(
        notifier, &QSocketNotifier::activated, context, [notifier, quit = std::move(quit)] {
            notifier->setEnabled(false);
            quit();
        });
    struct sigaction action { };
    action.sa_handler = reportSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (const int signal : {SIGTERM, SIGINT, SIGHUP})
        sigaction(signal, &action, nullptr);
}

} // namespace kelo::session
