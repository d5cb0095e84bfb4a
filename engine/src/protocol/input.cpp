#include "protocol/input.h"

namespace kelo::engine {

namespace {

constexpr std::size_t longestCommand = 1 << 20;

/// A display writes a command in one piece; a person's next key takes longer than this.
constexpr double keyAlone = 0.1;

} // namespace

std::vector<Input> InputReader::feed(std::string_view bytes, double now)
{
    std::vector<Input> inputs;
    for (const char byte : bytes) {
        if (auto input = take(byte))
            inputs.push_back(std::move(*input));
    }
    lastByte = now;
    return inputs;
}

std::optional<Input> InputReader::take(char byte)
{
    switch (state) {
    case State::Command:
        if (byte != '\n') {
            overflow = overflow || line.size() >= longestCommand;
            if (!overflow)
                line += byte;
            return {};
        }
        state = State::Keys;
        return overflow ? std::nullopt : std::optional<Input>(Command{std::move(line)});
    case State::Escape:
        state = byte == '[' ? State::Sequence : State::Keys;
        if (state == State::Sequence)
            return {};
        break;
    case State::Sequence:
        state = State::Keys;
        if (byte == 'C')
            return Key::Right;
        if (byte == 'D')
            return Key::Left;
        return {};
    case State::Keys:
        break;
    }
    if (byte == '~') {
        state = State::Command;
        line.clear();
        overflow = false;
        return {};
    }
    if (byte == 27) {
        state = State::Escape;
        return {};
    }
    if (byte == '\n' || byte == 127 || (byte >= ' ' && byte <= '~'))
        return key(byte);
    return {};
}

std::optional<double> InputReader::deadline() const
{
    const bool lone =
        (state == State::Command && line.empty() && !overflow) || state == State::Escape;
    return lone ? std::optional(lastByte + keyAlone) : std::nullopt;
}

std::optional<Input> InputReader::expire(double now)
{
    const auto due = deadline();
    if (!due || now < *due)
        return {};
    const Key alone = state == State::Escape ? Key::Escape : key('~');
    state = State::Keys;
    return alone;
}

} // namespace kelo::engine
