#include "written/music_xml_reader.h"

#include "protocol/text.h"
#include "written/part_reader.h"

#include <algorithm>
#include <pugixml.hpp>
#include <string_view>
#include <tuple>
#include <utility>

namespace kelo::engine {

namespace {

constexpr int mostParts = 64;
constexpr int latest = 1 << 30; ///< ticks: more than ten hours

/// A first bar that is shorter than its metre is the upbeat of the one after it.
void joinUpbeat(WrittenPiece &piece)
{
    auto &bars = piece.bars;
    if (bars.size() < 2 || bars[0].repeatEnds > 0
        || bars[0].length >= bars[0].beats * bars[0].beatLength())
        return;
    const int upbeat = bars[0].length;
    const auto shift = [&](auto &list) {
        for (auto &each : list) {
            each.at += each.bar == 1 ? upbeat : 0;
            each.bar = std::max(0, each.bar - 1);
        }
    };
    shift(piece.notes);
    shift(piece.signs);
    bars[1].upbeat = upbeat;
    bars[1].length += upbeat;
    bars[1].repeatBegins = bars[1].repeatBegins || bars[0].repeatBegins;
    bars.erase(bars.begin());
}

void placeBars(WrittenPiece &piece)
{
    int at = 0;
    for (WrittenBar &bar : piece.bars) {
        bar.at = at;
        at = std::min(latest, at + bar.length);
    }
    const auto place = [&](auto &list) {
        for (auto &each : list)
            each.at += piece.bars[static_cast<std::size_t>(each.bar)].at;
    };
    place(piece.notes);
    place(piece.signs);
    std::ranges::stable_sort(piece.notes, {}, [](const WrittenNote &note) {
        const bool grace = note.length == 0; // these follow each other
        return std::tuple(note.at, !grace, grace ? 0 : int{note.pitch});
    });
    std::ranges::stable_sort(piece.signs, {}, &WrittenSign::at);
    // Every part may have the same tempo.
    const auto same = [](const WrittenSign &a, const WrittenSign &b) {
        return a.at == b.at && a.kind == b.kind && a.text == b.text && a.tempo == b.tempo;
    };
    piece.signs.erase(std::unique(piece.signs.begin(), piece.signs.end(), same), piece.signs.end());
}

/// A part of two staves is the player's, the upper for the right hand; of parts with one staff the
/// highest and the lowest. What is left is for others to play.
void giveHands(WrittenPiece &piece, const std::vector<int> &staves)
{
    struct Height {
        double sum = 0;
        int count = 0;
        int part = 0;
        [[nodiscard]] double mean() const { return count == 0 ? 0 : sum / count; }
    };
    const auto grand = std::ranges::find_if(staves, [](int count) { return count >= 2; });
    if (grand != staves.end()) {
        const int part = static_cast<int>(grand - staves.begin());
        for (WrittenNote &note : piece.notes) {
            if (note.part == part)
                note.hand = note.staff == 0 ? Hands::Right : Hands::Left;
        }
        return;
    }
    std::vector<Height> heights(staves.size());
    for (const WrittenNote &note : piece.notes) {
        if (!note.rest()) {
            Height &height = heights[static_cast<std::size_t>(note.part)];
            height.sum += note.pitch;
            height.part = note.part;
            ++height.count;
        }
    }
    std::erase_if(heights, [](const Height &height) { return height.count == 0; });
    if (heights.empty())
        return;
    constexpr double bass = 50; // below it a single staff is the left hand's
    const Height high = *std::ranges::max_element(heights, {}, &Height::mean);
    const Height low = *std::ranges::min_element(heights, {}, &Height::mean);
    const bool alone = heights.size() == 1;
    for (WrittenNote &note : piece.notes) {
        if (alone)
            note.hand = high.mean() < bass ? Hands::Left : Hands::Right;
        else if (note.part == high.part)
            note.hand = Hands::Right;
        else if (note.part == low.part)
            note.hand = Hands::Left;
    }
}

std::string textOf(const pugi::xml_node &node)
{
    return oneLine(node.text().get(), longestWrittenText);
}

} // namespace

std::variant<WrittenPiece, ReadFault> readMusicXml(std::span<const std::uint8_t> bytes)
{
    if (bytes.size() > largestScore)
        return ReadFault::TooLarge;
    pugi::xml_document document;
    document.load_buffer(bytes.data(), bytes.size());
    if (document.child("score-timewise"))
        return ReadFault::Unsupported;
    const pugi::xml_node score = document.child("score-partwise");
    if (!score)
        return ReadFault::Unknown;

    WrittenPiece piece;
    piece.title = textOf(score.child("work").child("work-title"));
    if (piece.title.empty())
        piece.title = textOf(score.child("movement-title"));
    for (const pugi::xml_node creator : score.child("identification").children("creator")) {
        if (std::string_view(creator.attribute("type").value()) == "composer")
            piece.composer = textOf(creator);
    }
    std::vector<int> staves;
    for (const pugi::xml_node part : score.children("part")) {
        const int number = static_cast<int>(staves.size());
        if (number == mostParts)
            break;
        PartReader reader(piece, number);
        reader.read(part);
        staves.push_back(reader.staves());
    }
    joinUpbeat(piece);
    placeBars(piece);
    giveHands(piece, staves);
    if (std::ranges::all_of(piece.notes, &WrittenNote::rest))
        return ReadFault::Empty;
    return piece;
}

} // namespace kelo::engine
