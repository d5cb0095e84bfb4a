#include "piano/command_keys.h"

#include <algorithm>

namespace kelo::engine {

namespace {

constexpr int lowestTop = 36;

bool isBlack(int pitch)
{
    return (0b010101001010 >> (pitch % 12) & 1) != 0;
}

} // namespace

void CommandKeys::setTop(int top)
{
    int pitch = std::clamp(top, lowestTop, 127);
    for (int &key : keys_) {
        while (isBlack(pitch))
            --pitch;
        key = pitch--;
    }
}

void CommandKeys::setRule(Rule rule)
{
    if (rule == rule_)
        return;
    rule_ = rule;
    heldSince_.reset();
    openUntil_.reset();
}

CommandKeys::Meaning CommandKeys::press(int pitch, double now)
{
    const auto which = place(pitch);
    const bool open = openUntil_ && now <= *openUntil_;
    openUntil_.reset();
    if (!which || rule_ == Rule::Off) {
        heldSince_.reset(); // other keys with it: that is music
        return {};
    }
    if (rule_ == Rule::AtOnce || open) {
        commanded_.set(static_cast<std::size_t>(pitch));
        return {false, which};
    }
    heldSince_ = *which == count - 1 ? std::optional(now) : std::nullopt;
    return {};
}

CommandKeys::Meaning CommandKeys::release(int pitch)
{
    if (pitch == keys_.back())
        heldSince_.reset();
    const auto key = static_cast<std::size_t>(pitch);
    const bool music = !commanded_[key];
    commanded_.reset(key);
    return {music, {}};
}

bool CommandKeys::advance(double now)
{
    if (!heldSince_ || now < *heldSince_ + holdFor)
        return false;
    heldSince_.reset();
    openUntil_ = now + openFor;
    return true;
}

std::optional<double> CommandKeys::deadline() const
{
    return heldSince_ ? std::optional(*heldSince_ + holdFor) : std::nullopt;
}

std::optional<int> CommandKeys::place(int pitch) const
{
    const auto found = std::ranges::find(keys_, pitch);
    if (found == keys_.end())
        return {};
    return static_cast<int>(found - keys_.begin());
}

} // namespace kelo::engine
