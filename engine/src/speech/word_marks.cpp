#include "speech/word_marks.h"

#include "protocol/text.h"

#include <algorithm>
#include <cctype>

namespace kelo::engine {

namespace {

bool punctuation(char c)
{
    return std::ispunct(static_cast<unsigned char>(c)) != 0;
}

} // namespace

WordMarks::WordMarks(std::string_view text)
    : offsets_(utf16Offsets(text))
{
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if ((byte & 0xc0) != 0x80)
            letters_ += byte < 0x80 ? c : 'x';
    }
}

std::optional<WordMark> WordMarks::begin(int character, double at)
{
    const int count = static_cast<int>(letters_.size());
    const auto letter = [this](int i) { return letters_[static_cast<std::size_t>(i)]; };
    int from = std::max(character, 0);
    while (from < count && letter(from) == ' ')
        ++from;
    if (from < told_ || from >= count)
        return {};
    while (from > told_ && letter(from - 1) != ' ')
        --from;
    int end = from;
    while (end < count && letter(end) != ' ')
        ++end;
    told_ = end;
    int first = from;
    int last = end;
    while (first < last && punctuation(letter(first)))
        ++first;
    while (last > first && punctuation(letter(last - 1)))
        --last;
    if (first == last) { // punctuation that is spoken
        first = from;
        last = end;
    }
    const int start = offsets_[static_cast<std::size_t>(first)];
    return WordMark{start, offsets_[static_cast<std::size_t>(last)] - start, at};
}

} // namespace kelo::engine
