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
        if (state_ == State::Escape
            && byte != '[') { // the key itself, with another right behind it
            inputs.emplace_back(Key::Escape);
            state_ = State::Keys;
        }
        if (auto input = take(byte))
            inputs.push_back(std::move(*input));
    }
    lastByte_ = now;
    return inputs;
}

std::optional<Input> InputReader::take(char byte)
{
    switch (state_) {
    case State::Command:
        if (byte != '\n') {
            overflow_ = overflow_ || line_.size() >= longestCommand;
            if (!overflow_)
                line_ += byte;
            return {};
        }
        state_ = State::Keys;
        return overflow_ ? std::nullopt : std::optional<Input>(Command{std::move(line_)});
    case State::Escape:
        state_ = State::Sequence;
        return {};
    case State::Sequence:
        state_ = State::Keys;
        if (byte == 'C')
            return Key::Right;
        if (byte == 'D')
            return Key::Left;
        return {};
    case State::Keys:
        break;
    }
    if (byte == '~') {
        state_ = State::Command;
        line_.clear();
        overflow_ = false;
        return {};
    }
    if (byte == 27) {
        state_ = State::Escape;
        return {};
    }
    if (byte == '\n' || byte == 127 || (byte >= ' ' && byte <= '~'))
        return key(byte);
    return {};
}

std::optional<double> InputReader::deadline() const
{
    const bool lone = (state_ == State::Command && line_.empty()) || state_ == State::Escape;
    return lone ? std::optional(lastByte_ + keyAlone) : std::nullopt;
}

std::optional<Input> InputReader::expire(double now)
{
    const auto due = deadline();
    if (!due || now < *due)
        return {};
    const Key alone = state_ == State::Escape ? Key::Escape : key('~');
    state_ = State::Keys;
    return alone;
}

} // namespace kelo::engine
