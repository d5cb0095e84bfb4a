// Any bytes as a score, packed or not: what is read of it must be in order, can be played and
// walked through, and is told in words.

#include "reading/description.h"
#include "written/music_xml_reader.h"
#include "written/performance.h"
#include "written/score_package.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

using namespace kelo::engine;

namespace {

void check(bool holds)
{
    if (!holds)
        std::abort();
}

void check(const WrittenPiece &written)
{
    check(!written.bars.empty() && std::ranges::is_sorted(written.bars, {}, &WrittenBar::at));
    check(std::ranges::is_sorted(written.notes, {}, &WrittenNote::at));
    check(std::ranges::is_sorted(written.signs, {}, &WrittenSign::at));
    for (const WrittenNote &note : written.notes) {
        check(note.pitch >= -1 && note.pitch < 128 && note.length >= 0);
        check(note.bar >= 0 && std::cmp_less(note.bar, written.bars.size()));
    }
}

void check(const Piece &piece)
{
    check(std::ranges::is_sorted(piece.notes, {}, &Note::at) && std::isfinite(piece.length));
    check(piece.marks.size() == piece.notes.size());
    check(piece.barNumbers.size() == piece.bars.size());
    for (const Note &note : piece.notes)
        check(note.at >= 0 && note.duration >= 0 && note.velocity > 0 && note.velocity < 128);
}

void walkThrough(const std::shared_ptr<const WrittenPiece> &written)
{
    constexpr int mostSteps = 200;
    Walk walk(written);
    for (const WalkUnit unit : {WalkUnit::Note, WalkUnit::Beat, WalkUnit::Bar, WalkUnit::Phrase}) {
        walk.setUnit(unit);
        Description description;
        for (int i = 0; i < mostSteps; ++i) {
            check(!description.tell(walk, walk.here(), walk.hands()).empty());
            const int before = walk.here().from;
            if (!walk.step(1))
                break;
            check(walk.here().from > before);
        }
        check(!spelledChord(walk, walk.here().from).empty());
        static_cast<void>(walk.toBar(walk.lastBar()));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, size_t size)
{
    auto unpacked = isPackage({bytes, size}) ? unpackScore({bytes, size})
                                             : std::vector<std::uint8_t>(bytes, bytes + size);
    const auto *xml = std::get_if<std::vector<std::uint8_t>>(&unpacked);
    if (!xml)
        return 0;
    auto read = readMusicXml(*xml);
    if (std::holds_alternative<ReadFault>(read))
        return 0;
    const auto written =
        std::make_shared<const WrittenPiece>(std::move(std::get<WrittenPiece>(read)));
    check(*written);
    check(performed(written, Repeats::Played));
    check(performed(written, Repeats::Skipped));
    walkThrough(written);
    return 0;
}
