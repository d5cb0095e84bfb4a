#pragma once

#include "piano/midi_system.h"

#include <memory>

namespace kelo::engine {

/// Listens to what the system's MIDI announces of its clients. A port that went and came back
/// between two looks at the list is found in no other way: its name and its number are the same,
/// but whoever was connected to it hears nothing any more.
class PortWatch {
public:
    PortWatch();
    ~PortWatch();
    PortWatch(const PortWatch &) = delete;
    PortWatch &operator=(const PortWatch &) = delete;

    /// -1 where nothing is announced.
    [[nodiscard]] int file() const;
    [[nodiscard]] MidiSystem::News take();

private:
    struct Client;
    std::unique_ptr<Client> client_;
};

} // namespace kelo::engine
