#pragma once

#include <cstdint>

namespace kelo::engine {

/// What can be asked of an audio workstation.
enum class StudioCommand : std::uint8_t {
    Play,
    Stop,
    Record,
    ToStart,
    NextTrack,
    PreviousTrack,
    Arm,
    Undo,
    AddMarker,
    NextMarker,
    Faster,
    Slower,
};

/// An audio workstation at the other end of a line.
class StudioControl {
public:
    virtual ~StudioControl() = default;

    /// The other end has answered lately.
    [[nodiscard]] virtual bool connected() const = 0;

    /// False where nobody would hear it.
    virtual bool send(StudioCommand command) = 0;
};

} // namespace kelo::engine
