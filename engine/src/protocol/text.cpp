#include "protocol/text.h"

#include <algorithm>

namespace kelo::engine {

namespace {

using Byte = unsigned char;

/// The bytes of the valid UTF-8 character that begins at `at`, or 0 where none does.
std::size_t characterLength(std::string_view text, std::size_t at)
{
    const auto byte = [&](std::size_t i) { return i < text.size() ? Byte(text[i]) : Byte(0); };
    const Byte first = byte(at);
    if (first < 0x80)
        return 1;
    const std::size_t length = first < 0xc2 ? 0
        : first < 0xe0                      ? 2
        : first < 0xf0                      ? 3
        : first < 0xf5                      ? 4
                                            : 0;
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(at + i) & 0xc0) != 0x80)
            return 0;
    }
    const Byte second = byte(at + 1);
    const bool overlong = (first == 0xe0 && second < 0xa0) || (first == 0xf0 && second < 0x90);
    const bool surrogate = first == 0xed && second >= 0xa0;
    const bool beyond = first == 0xf4 && second >= 0x90;
    return overlong || surrogate || beyond ? 0 : length;
}

} // namespace

std::string oneLine(std::string_view text, std::size_t most)
{
    std::string line;
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t length = characterLength(text, i);
        const std::size_t taken = length == 0 ? 1 : length;
        if (line.size() + taken > most)
            break;
        if (length == 0)
            line += '?';
        else if (length == 1 && (Byte(text[i]) < 0x20 || text[i] == 0x7f))
            line += ' ';
        else
            line += text.substr(i, length);
        i += taken;
    }
    const auto first = line.find_first_not_of(' ');
    if (first == std::string::npos)
        return {};
    return line.substr(first, line.find_last_not_of(' ') - first + 1);
}

std::string lowered(std::string text)
{
    std::ranges::transform(text, text.begin(),
        [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return text;
}

std::vector<int> utf16Offsets(std::string_view text)
{
    std::vector<int> offsets;
    int units = 0;
    for (const char c : text) {
        if ((Byte(c) & 0xc0) == 0x80)
            continue;
        offsets.push_back(units);
        units += Byte(c) >= 0xf0 ? 2 : 1;
    }
    offsets.push_back(units);
    return offsets;
}

} // namespace kelo::engine
