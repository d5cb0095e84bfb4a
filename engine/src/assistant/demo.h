#pragma once

#include "midi/channel_message.h"
#include "protocol/input.h"

#include <cstddef>
#include <optional>
#include <variant>

namespace kelo::engine {

/// Three minutes in which one of each activity happens by itself, for someone who has neither
/// keyboard nor microphone: what a user would have said, pressed and played. Seconds throughout.
class Demo {
public:
    using Step = std::variant<Command, ChannelMessage>;

    explicit Demo(double now)
        : last_(now)
    {
    }

    /// The next step, if it is due; some wait until the assistant is `quiet`.
    [[nodiscard]] std::optional<Step> advance(bool quiet, double now);

    [[nodiscard]] std::optional<double> deadline() const;
    [[nodiscard]] bool over() const;

private:
    std::size_t next_ = 0;
    double last_; ///< when the step before was taken, or the assistant last was not quiet
};

} // namespace kelo::engine
