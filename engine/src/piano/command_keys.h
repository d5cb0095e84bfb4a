#pragma once

#include <array>
#include <bitset>
#include <optional>

namespace kelo::engine {

/// The ten highest white keys of the piano, from the top: they give commands instead of notes,
/// eight that depend on the mode, then home and keep. Where somebody may be playing a piece with
/// them they are music until the lowest of them has been held for a second; the next of them that
/// is pressed then gives its command. Seconds of the monotonic clock.
class CommandKeys {
public:
    static constexpr int count = 10;
    static constexpr double holdFor = 1;
    static constexpr double openFor = 5; ///< seconds after the hold in which a command is awaited

    enum class Rule { AtOnce, AfterHold, Off };

    /// What a key of the piano means.
    struct Meaning {
        bool music = true; ///< it sounds; else it is swallowed
        std::optional<int> command{}; ///< which of the command keys gives its command, from 0
    };

    /// `top` is the highest key; a black one counts as the white one below it.
    explicit CommandKeys(int top) { setTop(top); }

    void setTop(int top);
    void setRule(Rule rule);

    [[nodiscard]] Meaning press(int pitch, double now);
    [[nodiscard]] Meaning release(int pitch);

    /// True once, when the lowest key has been held for long enough: a soft tick says so.
    [[nodiscard]] bool advance(double now);
    [[nodiscard]] std::optional<double> deadline() const;

    /// Which of the command keys a pitch is, from 0.
    [[nodiscard]] std::optional<int> place(int pitch) const;

    [[nodiscard]] const std::array<int, count> &pitches() const { return keys_; }

private:
    std::array<int, count> keys_{};
    Rule rule_ = Rule::AtOnce;
    std::bitset<128> commanded_; ///< keys that are down and gave a command
    std::optional<double> heldSince_; ///< the lowest key
    std::optional<double> openUntil_;
};

} // namespace kelo::engine
