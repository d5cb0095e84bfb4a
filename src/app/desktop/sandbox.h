#pragma once

namespace kelo {

/// The process runs in a Flatpak, where files outside it and other programs are reached by portals.
[[nodiscard]] bool insideSandbox();

} // namespace kelo
