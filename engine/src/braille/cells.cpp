#include "braille/cells.h"

#include <array>
#include <string_view>

namespace kelo::engine {

namespace {

/// By the dots of a cell, dot 1 the lowest bit.
constexpr std::string_view ascii =
    " A1B'K2L@CIF/MSP\"E3H9O6R^DJG>NTQ,*5<-U8V.%[$+X!&;:4\\0Z7(_?W]#Y)=";

constexpr std::u32string_view letters = U"⠁⠃⠉⠙⠑⠋⠛⠓⠊⠚⠅⠇⠍⠝⠕⠏⠟⠗⠎⠞⠥⠧⠺⠭⠽⠵";
constexpr std::u32string_view upper = U"⠚⠁⠃⠉⠙⠑⠋⠛⠓⠊";
constexpr std::u32string_view lower = U"⠴⠂⠆⠒⠲⠢⠖⠶⠦⠔";
constexpr char32_t numberSign = U'⠼';
constexpr char32_t letterSign = U'⠰';

Cells figures(int number, std::u32string_view signs)
{
    Cells cells;
    for (const char digit : std::to_string(number < 0 ? 0 : number))
        cells += signs[static_cast<std::size_t>(digit - '0')];
    return cells;
}

} // namespace

std::string utf8Of(const Cells &cells)
{
    std::string text;
    for (const char32_t cell : cells) {
        text += static_cast<char>(0xe0 | (cell >> 12));
        text += static_cast<char>(0x80 | ((cell >> 6) & 0x3f));
        text += static_cast<char>(0x80 | (cell & 0x3f));
    }
    return text;
}

std::string brfOf(const Cells &cells)
{
    std::string text;
    for (const char32_t cell : cells)
        text += ascii[cell & 0x3f];
    return text;
}

Cells cellsOfText(const std::string &text)
{
    Cells cells;
    bool number = false;
    for (const char c : text) {
        const bool digit = c >= '0' && c <= '9';
        const bool small = c >= 'a' && c <= 'z';
        const bool capital = c >= 'A' && c <= 'Z';
        if (digit && !number)
            cells += numberSign;
        if (number && ((c >= 'a' && c <= 'j') || (c >= 'A' && c <= 'J')))
            cells += letterSign; // it would be a figure
        number = digit;
        if (digit)
            cells += upper[static_cast<std::size_t>(c - '0')];
        else if (small)
            cells += letters[static_cast<std::size_t>(c - 'a')];
        else if (capital)
            cells += letters[static_cast<std::size_t>(c - 'A')];
        else if (c == ' ' && !cells.empty() && cells.back() != emptyCell)
            cells += emptyCell;
    }
    return cells;
}

Cells upperFigures(int number)
{
    return figures(number, upper);
}

Cells lowerFigures(int number)
{
    return figures(number, lower);
}

} // namespace kelo::engine
