#pragma once

#include "reading/walk.h"

#include <array>
#include <map>
#include <string>
#include <vector>

namespace kelo::engine {

/// "C sharp".
[[nodiscard]] std::string nameOf(const WrittenNote &note);

/// "G major, one sharp".
[[nodiscard]] std::string keyOf(const WrittenBar &bar);

/// "bar five, beat two"; the upbeat has no number.
[[nodiscard]] std::string placeOf(const WrittenBar &bar, int at);

/// Says what is written, step by step: of name, octave, length, finger, hand, bar, key, metre and
/// loudness only what has changed since the step before.
class Description {
public:
    /// What a reader hears of a stretch, and has heard from then on.
    [[nodiscard]] std::string tell(const Walk &walk, Stretch stretch, Hands hands);

    /// The next telling says everything.
    void forget() { *this = {}; }

private:
    /// What a hand was last said to be at.
    struct Said {
        int octave = -1;
        int length = -1;
    };

    [[nodiscard]] std::string signsOf(const Walk &walk, Stretch stretch);
    [[nodiscard]] std::string notesOf(const Walk &walk, Stretch stretch, Hands hand);
    [[nodiscard]] std::string eventOf(
        const WrittenBar &bar, const std::vector<const WrittenNote *> &notes, Said &said);

    int bar_ = -1;
    int fifths_ = 99;
    bool minor_ = false;
    int beats_ = 0;
    int unit_ = 0;
    std::string loudness_;
    std::string hands_; ///< the hand that was named last
    std::array<Said, 3> said_; ///< by hand
};

/// All notes that sound at a place, from low to high, with their octaves and what chord they make.
[[nodiscard]] std::string spelledChord(const Walk &walk, int at);

} // namespace kelo::engine
