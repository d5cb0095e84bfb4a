#pragma once

#include "midi/channel_message.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace kelo::engine {

/// What keyboards come and go on: the system's MIDI, with at most one of its ports open.
class MidiSystem {
public:
    MidiSystem() = default;
    MidiSystem(const MidiSystem &) = delete;
    MidiSystem &operator=(const MidiSystem &) = delete;
    virtual ~MidiSystem() = default;

    /// All ports that can be heard: "Stage Piano:Stage Piano MIDI 1 20:0", which ends with the
    /// numbers of its client and of the port.
    virtual std::vector<std::string> ports() = 0;

    /// Hears a port by its place among `ports`, and plays on the one of the same name if there is
    /// one. False where it cannot be opened.
    virtual bool open(std::size_t place) = 0;
    virtual void close() = 0;

    /// What the system told since the last call.
    struct News {
        bool stirred = false; ///< something came or went
        std::vector<int> gone; ///< clients that went; another may have their number by now
    };
    virtual News news() { return {}; }
    /// A file that can be read from when there is news; -1 for none.
    [[nodiscard]] virtual int file() const { return -1; }

    [[nodiscard]] virtual std::vector<ChannelMessage> take() = 0;
    virtual void send(ChannelMessage message) = 0;
};

/// The system's own; nothing where it has none. `ready` is called on a thread of its own when
/// there is something to `take`.
[[nodiscard]] std::unique_ptr<MidiSystem> systemMidi(std::function<void()> ready);

} // namespace kelo::engine
