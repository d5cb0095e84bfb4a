#pragma once

#include "piano/keyboard_source.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace kelo::engine {

/// The player's piano: the first real keyboard that the MIDI system has, looked for again and
/// again, so that it may come, go and come back. Seconds of the monotonic clock.
class Piano {
public:
    static constexpr double lookEvery = 2;

    /// `ready` is called on a thread of its own when there is something to `take`. `device`, if
    /// not empty, is a raw MIDI device or a pipe that is read instead.
    Piano(std::function<void()> ready, std::string device);

    /// Looks whether the piano is (still) there, if it is time to. True when that has changed.
    bool look(double now);
    [[nodiscard]] double deadline() const { return nextLook_; }

    /// What it is called; empty while there is none.
    [[nodiscard]] const std::string &name() const { return source_->name(); }

    /// Why no piano can ever be found here; empty where one may be.
    [[nodiscard]] std::string_view trouble() const;

    /// A file to wait for, besides `ready`; -1 for none.
    [[nodiscard]] int file() const;

    /// What was played since the last call.
    [[nodiscard]] std::vector<ChannelMessage> take();

    /// Plays on the piano itself, where it can.
    void send(ChannelMessage message);

private:
    std::unique_ptr<KeyboardSource> source_;
    double nextLook_ = 0;
};

} // namespace kelo::engine
