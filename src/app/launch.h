#pragma once

#include <QByteArray>

namespace kelo {

/// What decides whether the main window shows at launch.
struct LaunchFacts {
    bool askedToHide = false; ///< on the command line
    bool askedToShow = false; ///< likewise; stronger than the session
    bool startedByLogin = false; ///< the desktop's session started us
    bool loginItemOn = false; ///< start at login is switched on
    double uptime = 0; ///< seconds since the system started
};

/// A window that opens by itself at login is in the way of what the user is about to do. Where
/// the session does not say that it started us, an early start with the login item on counts.
[[nodiscard]] constexpr bool startsHidden(const LaunchFacts &facts)
{
    constexpr double loginIsOver = 120.0; // seconds
    if (facts.askedToHide || facts.askedToShow)
        return facts.askedToHide;
    return facts.startedByLogin || (facts.loginItemOn && facts.uptime < loginIsOver);
}

/// The session's mark on what it starts at login: `autostartId` is the variable of session
/// managers, empty when it is not set; `cgroup` the process's own, as the system lists it. Only
/// the unit of our own login entry counts: a terminal that was started at login passes its unit
/// on to all that is started from it.
[[nodiscard]] bool markedByLogin(const QByteArray &autostartId, const QByteArray &cgroup);

/// Reads the marks of this process, and takes the variable out of the environment so that nothing
/// started from here bears it.
[[nodiscard]] bool takeLoginMarks();

/// Starts the program anew once this process has had the time to end; `hidden` stands whatever the
/// session's marks say, which are on this process alone.
void startAgain(bool hidden);

} // namespace kelo
