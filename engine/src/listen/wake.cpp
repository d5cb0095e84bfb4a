#include "listen/wake.h"

#include "listen/sound_alike.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace kelo::engine {

namespace {

constexpr std::string_view before[] = {"hey", "okay", "ok", "hi", "hello", "oh", "um", "uh", "er",
    "ah", "and", "so", "now", "please", "the", "a"};

struct Candidate {
    std::size_t after = 0; ///< the word that follows it
    std::size_t begin = 0;
    bool exact = false;
};

std::vector<Candidate> candidates(std::span<const Word> words, const std::string &name)
{
    std::vector<Candidate> found;
    for (std::size_t i = 0; i < words.size(); ++i) {
        std::string joined;
        for (std::size_t taken = 1; taken <= 2 && i + taken <= words.size(); ++taken) {
            joined += words[i + taken - 1].text;
            const bool exact = joined == name;
            if (exact || soundsLike(joined, name))
                found.push_back({i + taken, i, exact});
        }
    }
    return found;
}

/// Nothing but what people say before a name stands between the sentence's beginning and `at`.
bool opensSentence(std::span<const Word> words, std::size_t at)
{
    while (at > 0 && !words[at].opens) {
        --at;
        if (std::ranges::find(before, words[at].text) == std::end(before))
            return false;
    }
    return true;
}

} // namespace

std::optional<Found> findCommand(
    std::span<const Word> words, const std::string &name, const Understands &understands)
{
    if (name.empty())
        return {};
    const auto all = candidates(words, name);
    std::optional<Found> unclear;
    for (auto it = all.rbegin(); it != all.rend(); ++it) {
        const auto rest = words.subspan(it->after);
        const auto again =
            std::ranges::find_if(rest, [&](const Word &word) { return word.text == name; });
        const Found found{it->after, static_cast<std::size_t>(again - rest.begin())};
        if (found.count > 0 && understands(rest.first(found.count)))
            return found;
        if (it->exact && opensSentence(words, it->begin) && (!unclear || unclear->count == 0))
            unclear = found;
    }
    return unclear;
}

} // namespace kelo::engine
