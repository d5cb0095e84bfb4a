#include "app/session.h"

#include <QFile>
#include <QSocketNotifier>
#include <QStandardPaths>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <memory>
#include <system_error>

using namespace Qt::StringLiterals;

namespace kelo::session {

namespace {

constexpr unsigned longestEnd = 10; // seconds, far more than an end in order takes

// A signal handler may do next to nothing; the event loop reads its byte at the other end.
std::array<int, 2> signalSockets{-1, -1};
volatile std::sig_atomic_t signalled = 0;

void reportSignal(int)
{
    signalled = 1;
    ::alarm(longestEnd); // ends a program whose event loop hangs
    const char byte = 1;
    [[maybe_unused]] const auto written = ::write(signalSockets[0], &byte, sizeof byte);
}

QString caches()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
}

bool xAnswers()
{
    if (!qEnvironmentVariableIsSet("DISPLAY"))
        return false;
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(
        xcb_connect(nullptr, nullptr), &xcb_disconnect);
    return xcb_connection_has_error(connection.get()) == 0;
}

bool waylandAnswers()
{
    if (qEnvironmentVariableIsSet("WAYLAND_SOCKET"))
        return true; // an open connection, for nobody else
    if (!qEnvironmentVariableIsSet("WAYLAND_DISPLAY"))
        return false;
    QByteArray path = qgetenv("WAYLAND_DISPLAY");
    if (!path.startsWith('/'))
        path = qgetenv("XDG_RUNTIME_DIR") + '/' + path;
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= static_cast<qsizetype>(sizeof address.sun_path))
        return false;
    std::copy(path.cbegin(), path.cend(), static_cast<char *>(address.sun_path));
    const int file = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool answers =
        ::connect(file, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
    ::close(file);
    return answers;
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

bool hasRoom(std::filesystem::path folder)
{
    constexpr std::uintmax_t enough = 64 << 20; // bytes
    std::error_code error;
    auto room = std::filesystem::space(folder, error);
    while (error && folder.has_relative_path()) {
        folder = folder.parent_path();
        room = std::filesystem::space(folder, error);
    }
    return !error && room.available >= enough;
}

void takeRoomForShaders()
{
    // There by now, and full of holes.
    const int index =
        ::open(QFile::encodeName(caches() + "/mesa_shader_cache/index"_L1).constData(),
            O_WRONLY | O_CLOEXEC);
    struct stat found { };
    if (index >= 0 && ::fstat(index, &found) == 0 && S_ISREG(found.st_mode))
        ::fallocate(index, FALLOC_FL_KEEP_SIZE, 0, found.st_size);
    if (index >= 0)
        ::close(index);
}

bool prepareDisplay()
{
    // Mesa maps the index of the shaders that it keeps, and a page of it that a full disk cannot
    // hold ends the process.
    if (!hasRoom(caches().toStdString()))
        qputenv("MESA_SHADER_CACHE_DISABLE", "true");
    if (qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        return true;
    // Only X11 lets a program place a window of its own, which the caption panel needs. What does
    // not answer is not left to the toolkit, which would abort.
    if (xAnswers())
        return qputenv("QT_QPA_PLATFORM", "xcb");
    if (waylandAnswers())
        return qputenv("QT_QPA_PLATFORM", "wayland");
    std::fputs("kelo: there is no display to show anything on\n", stderr);
    for (const char *variable : {"DISPLAY", "WAYLAND_DISPLAY"}) {
        if (const QByteArray named = qgetenv(variable); !named.isEmpty())
            std::fprintf(stderr, "kelo: nobody answers at %s=%s\n", variable, named.constData());
    }
    return false;
}

void catchEndRequests()
{
    // A write beyond what the user may write fails, as on a full disk, and ends nothing.
    std::signal(SIGXFSZ, SIG_IGN);
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, signalSockets.data()) != 0)
        return;
    struct sigaction action { };
    action.sa_handler = reportSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (const int signal : {SIGTERM, SIGINT, SIGHUP})
        sigaction(signal, &action, nullptr);
}

bool endRequested()
{
    return signalled != 0;
}

void onEndRequested(QObject *context, std::function<void()> quit)
{
    auto *notifier = new QSocketNotifier(signalSockets[1], QSocketNotifier::Read, context);
    QObject::connect(
        notifier, &QSocketNotifier::activated, context, [notifier, quit = std::move(quit)] {
            notifier->setEnabled(false);
            quit();
        });
}

} // namespace kelo::session
