#include "assistant/open_question.h"

#include "listen/understanding.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace kelo::engine {

std::optional<Request> OpenQuestion::chosen(
    std::span<const Word> words, std::span<const SongName> songs) const
{
    const auto said = [&](std::initializer_list<std::string_view> answers) {
        return std::ranges::any_of(words, [&](const Word &word) {
            return std::ranges::find(answers, word.text) != answers.end();
        });
    };
    const bool yesOrNo = !first_.song && !second_.song;
    if (yesOrNo && said({"no", "don't", "not", "never"}))
        return second_;
    if (yesOrNo && said({"yes", "yeah", "sure"}))
        return first_;
    if (said({"first", "former", "one"}))
        return first_;
    if (said({"second", "latter", "two", "other"}))
        return second_;
    if (words.empty() || !first_.song || !second_.song)
        return {};
    const std::array both{songs[*first_.song], songs[*second_.song]};
    const auto request = understand(words, both);
    if (!request || !request->song || request->other)
        return {};
    return *request->song == 0 ? first_ : second_;
}

} // namespace kelo::engine
