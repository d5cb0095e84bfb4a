#pragma once

#include "music/written.h"

#include <cstddef>
#include <cstdint>
#include <pugixml.hpp>
#include <string>
#include <vector>

namespace kelo::engine {

/// What a score may have at most; the rest of a larger one is left out.
inline constexpr std::size_t mostWrittenNotes = 200000;
inline constexpr std::size_t mostWrittenBars = 5000;
inline constexpr std::size_t longestWrittenText = 200; ///< bytes
inline constexpr int longestWrittenBar = 32 * writtenQuarter;

/// Reads the measures of one part into a piece. Places count from the beginning of their bar until
/// all parts have been read and it is known how long each bar is.
class PartReader {
public:
    PartReader(WrittenPiece &piece, int part)
        : piece_(piece)
        , part_(part)
    {
    }

    void read(const pugi::xml_node &part);

    /// The most staves that it had.
    [[nodiscard]] int staves() const { return staves_; }

private:
    void measure(const pugi::xml_node &measure);
    void attributes(const pugi::xml_node &node);
    void note(const pugi::xml_node &node);
    void direction(const pugi::xml_node &node);
    void harmony(const pugi::xml_node &node);
    void barline(const pugi::xml_node &node);
    void sound(const pugi::xml_node &node);
    void sign(WrittenSign::Kind kind, std::string text, double tempo = 0);
    void move(int by);
    [[nodiscard]] int durationOf(const pugi::xml_node &node) const;
    [[nodiscard]] WrittenBar &bar() { return piece_.bars[bar_]; }

    WrittenPiece &piece_;
    int part_;
    int staves_ = 1;
    double divisions_ = 1; ///< of a quarter
    int velocity_ = 80;
    std::size_t bar_ = 0;
    int now_ = 0; ///< in the bar
    int chordAt_ = 0; ///< where the note before began
    int reached_ = 0; ///< how far notes go in this bar
    std::uint32_t ending_ = 0; ///< that has not been closed
    WrittenBar signature_{}; ///< metre and key that hold
};

} // namespace kelo::engine
