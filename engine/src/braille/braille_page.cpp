#include "braille/braille_page.h"

#include "braille/braille_bar.h"

#include <algorithm>
#include <array>
#include <utility>

namespace kelo::engine {

namespace {

constexpr std::size_t width = 40; ///< cells of a line
constexpr std::size_t linesOfPage = 25;
constexpr char32_t hyphen = U'⠐'; ///< a bar goes on in the next line
constexpr std::size_t indent = 2;

Cells spaces(std::size_t count)
{
    return Cells(count, emptyCell);
}

Cells centred(const Cells &text)
{
    const Cells shown = text.substr(0, width);
    return spaces((width - shown.size()) / 2) + shown;
}

/// Lines of one hand for a bar that is longer than a line.
std::vector<Cells> folded(const BrailleBar &bar, const Cells &head)
{
    std::vector<Cells> lines{head};
    bool opens = true;
    for (const BrailleSign &sign : bar) {
        Cells cells = cellsOf({sign}, opens);
        if (!opens && lines.back().size() + cells.size() + 1 > width) {
            lines.back() += hyphen;
            lines.push_back(spaces(indent));
            cells = cellsOf({sign}, true);
        }
        lines.back() += cells;
        opens = false;
    }
    return lines;
}

/// Both hands, line over line.
class Page {
public:
    explicit Page(const WrittenPiece &piece)
        : piece_(piece)
        , right_(brailleBars(piece, Hands::Right))
        , left_(brailleBars(piece, Hands::Left))
    {
    }

    std::vector<Cells> lines()
    {
        std::vector<Cells> all;
        if (!piece_.title.empty())
            all.push_back(centred(cellsOfText(piece_.title)));
        if (!piece_.composer.empty())
            all.push_back(centred(cellsOfText(piece_.composer)));
        all.push_back(centred(signatureOf(piece_.bars.front())));
        for (std::size_t bar = 0; bar < right_.size();)
            bar = parallel(bar, all);
        return all;
    }

private:
    /// As many bars as a line has room for; the place of the next one.
    std::size_t parallel(std::size_t first, std::vector<Cells> &lines)
    {
        const Cells number = upperFigures(piece_.bars[first].number);
        Cells above = number + emptyCell + handSign(Hands::Right, cellsOf(right_[first], true));
        Cells below =
            spaces(number.size() + 1) + handSign(Hands::Left, cellsOf(left_[first], true));
        if (std::max(above.size(), below.size()) > width) {
            // The sign of a hand is followed by a dot 3 where need be, before the first note alone.
            const auto head = [](const Cells &whole, const BrailleBar &bar) {
                return whole.substr(0, whole.size() - cellsOf(bar, true).size());
            };
            for (Cells &line : folded(right_[first], head(above, right_[first])))
                lines.push_back(std::move(line));
            for (Cells &line : folded(left_[first], head(below, left_[first])))
                lines.push_back(std::move(line));
            return first + 1;
        }
        std::size_t bar = first + 1;
        for (; bar < right_.size(); ++bar) {
            const std::size_t column = std::max(above.size(), below.size()) + 1;
            const Cells more = cellsOf(right_[bar], false);
            const Cells beneath = cellsOf(left_[bar], false);
            if (column + std::max(more.size(), beneath.size()) > width)
                break;
            above += spaces(column - above.size()) + more;
            below += spaces(column - below.size()) + beneath;
        }
        lines.push_back(std::move(above));
        lines.push_back(std::move(below));
        return bar;
    }

    const WrittenPiece &piece_;
    std::vector<BrailleBar> right_;
    std::vector<BrailleBar> left_;
};

} // namespace

std::string brailleOfBar(const WrittenPiece &piece, std::size_t bar, Hands hands)
{
    Cells cells;
    for (const Hands hand : {Hands::Right, Hands::Left}) {
        if (hands != Hands::Both && hands != hand)
            continue;
        const auto bars = brailleBars(piece, hand);
        if (bar < bars.size())
            cells +=
                (cells.empty() ? Cells() : spaces(1)) + handSign(hand, cellsOf(bars[bar], true));
    }
    return utf8Of(cells);
}

std::string brfOf(const WrittenPiece &piece)
{
    std::string text;
    std::size_t line = 0;
    for (const Cells &cells : piece.bars.empty() ? std::vector<Cells>() : Page(piece).lines()) {
        if (line == linesOfPage) {
            text += '\f';
            line = 0;
        }
        text += brfOf(cells) + "\r\n";
        ++line;
    }
    return text;
}

} // namespace kelo::engine
