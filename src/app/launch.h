#pragma once

namespace kelo {

/// What decides whether the main window shows at launch.
struct LaunchFacts {
    bool askedToHide = false; ///< on the command line
    bool startedByLogin = false; ///< the desktop's session started us
    bool loginItemOn = false; ///< start at login is switched on
    double uptime = 0; ///< seconds since the system started
};

/// A window that opens by itself at login is in the way of what the user is about to do. Where
/// the session does not say that it started us, an early start with the login item on counts.
[[nodiscard]] constexpr bool startsHidden(const LaunchFacts &facts)
{
    constexpr double loginIsOver = 120.0; // seconds
    return facts.askedToHide || facts.startedByLogin
        || (facts.loginItemOn && facts.uptime < loginIsOver);
}

} // namespace kelo
