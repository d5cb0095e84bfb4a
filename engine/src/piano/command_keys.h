#pragma once

#include <array>
#include <optional>

namespace kelo::engine {

/// The ten highest white keys of the piano, from the top: they give commands instead of notes,
/// eight that depend on the mode, then home and keep.
class CommandKeys {
public:
    static constexpr int count = 10;

    /// `top` is the highest key; a black one counts as the white one below it.
    explicit CommandKeys(int top) { setTop(top); }

    void setTop(int top);

    /// Which of the command keys a pitch is, from 0.
    [[nodiscard]] std::optional<int> place(int pitch) const;

    [[nodiscard]] const std::array<int, count> &pitches() const { return keys_; }

private:
    std::array<int, count> keys_{};
};

} // namespace kelo::engine
