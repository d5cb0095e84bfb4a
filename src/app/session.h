#pragma once

#include <functional>

class QObject;

/// The process within its desktop session.
namespace kelo::session {

/// To be called first: opens those of the three standard streams that were closed on the null
/// device, lest a file or socket of ours takes the place and gets what is meant for the stream.
void openMissingStreams();

/// To be called before the application object is made: choices of the window system that must
/// stand by then. False when there is no display to show anything on.
[[nodiscard]] bool prepareDisplay();

/// Calls `quit` on the GUI thread when the system asks the process to end (SIGTERM, SIGINT,
/// SIGHUP), for as long as `context` lives.
void onEndRequested(QObject *context, std::function<void()> quit);

} // namespace kelo::session
