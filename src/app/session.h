#pragma once

#include <filesystem>
#include <functional>

class QObject;

/// The process within its desktop session.
namespace kelo::session {

/// To be called first: opens those of the three standard streams that were closed on the null
/// device, lest a file or socket of ours takes the place and gets what is meant for the stream.
void openMissingStreams();

/// To be called before the application object is made: choices of the window system that must
/// stand by then. False, and told why on standard error, when there is no display to show anything
/// on.
[[nodiscard]] bool prepareDisplay();

/// Whether a file in `folder`, which need not be there yet, may be mapped and written to without a
/// look at what the disk has left.
[[nodiscard]] bool hasRoom(std::filesystem::path folder);

/// To be called once something has been drawn: from then on a disk that fills is survived.
void takeRoomForShaders();

/// From here on, the system's requests to end the process (SIGTERM, SIGINT, SIGHUP) wait for
/// `onEndRequested`. One that is not followed within seconds ends the process all the same.
void catchEndRequests();
[[nodiscard]] bool endRequested();
/// Calls `quit` on the GUI thread for such a request, earlier ones too, for as long as `context`
/// lives.
void onEndRequested(QObject *context, std::function<void()> quit);

} // namespace kelo::session
