#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace kelo::engine {

/// A key of the computer keyboard: a printable ASCII character as itself, or one of these.
enum class Key : std::uint8_t { Return = '\n', Escape = 27, Delete = 127, Left = 128, Right };

[[nodiscard]] constexpr Key key(char character)
{
    return static_cast<Key>(character);
}

/// A command line without its leading "~" and its line feed.
struct Command {
    std::string text;

    friend bool operator==(const Command &, const Command &) = default;
};

using Input = std::variant<Command, Key>;

/// Tells apart what arrives on standard input: "~" begins a command that a line feed ends, any
/// other byte is a keystroke of its own, and the arrows are ESC "[C" and ESC "[D". An ESC before
/// anything but "[" was the key itself, and so was a "~" or ESC after which nothing follows for a
/// moment. Seconds throughout.
class InputReader {
public:
    [[nodiscard]] std::vector<Input> feed(std::string_view bytes, double now);

    /// What a pending "~" or ESC has turned out to be, once `deadline` has passed.
    [[nodiscard]] std::optional<Input> expire(double now);
    [[nodiscard]] std::optional<double> deadline() const;

private:
    [[nodiscard]] std::optional<Input> take(char byte);

    enum class State { Keys, Command, Escape, Sequence };

    State state_ = State::Keys;
    std::string line_;
    bool overflow_ = false;
    double lastByte_ = 0;
};

} // namespace kelo::engine
