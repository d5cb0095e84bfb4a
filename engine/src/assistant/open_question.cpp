#include "assistant/open_question.h"

#include "listen/understanding.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace kelo::engine {

std::optional<OpenQuestion::Answer> OpenQuestion::chosen(
    std::span<const Word> words, std::span<const SongName> songs) const
{
    const auto said = [&](std::initializer_list<std::string_view> answers) {
        return std::ranges::any_of(words, [&](const Word &word) {
            return std::ranges::find(answers, word.text) != answers.end();
        });
    };
    const bool meant = !first_.words.empty();
    if (meant) {
        if (const auto wording = likelierOf(words, first_, second_))
            return Answer{wording->request};
    }
    const bool yesOrNo = meant || (!first_.request.song && !second_->request.song);
    if (yesOrNo && said({"no", "don't", "not", "never", "neither"}))
        return meant ? Answer{} : Answer{second_->request};
    if (yesOrNo && said({"yes", "yeah", "sure"}))
        return Answer{first_.request};
    if (said({"first", "former", "one"}))
        return Answer{first_.request};
    if (second_ && said({"second", "latter", "two", "other"}))
        return Answer{second_->request};
    return yesOrNo ? std::nullopt : song(words, songs);
}

std::optional<OpenQuestion::Answer> OpenQuestion::song(
    std::span<const Word> words, std::span<const SongName> songs) const
{
    if (words.empty() || !first_.request.song || !second_->request.song)
        return {};
    const std::array both{songs[*first_.request.song], songs[*second_->request.song]};
    const auto request = understand(words, both);
    if (!request || !request->song || request->other)
        return {};
    return Answer{*request->song == 0 ? first_.request : second_->request};
}

} // namespace kelo::engine
