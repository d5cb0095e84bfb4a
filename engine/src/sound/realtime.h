#pragma once

#include <sys/types.h>

namespace kelo::engine {

/// How far above other work the sound goes: as the sound servers themselves.
inline constexpr int soundPriority = 5;

/// Lets the calling thread go before all others, by its user's own right; false where that is not
/// given.
[[nodiscard]] bool favourThisThread();

/// The same for any thread of this process, as the system's broker allows it: RealtimeKit, or the
/// desktop's portal for what runs in a sandbox. Waits for their answers. A thread that then works
/// for too long without a pause loses it again, lest the machine stand still.
[[nodiscard]] bool askBroker(pid_t thread);

} // namespace kelo::engine
