#include "listen/sounded_request.h"

#include "listen/near_words.h"
#include "listen/song_match.h"
#include "listen/sound_alike.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>
#include <vector>

namespace kelo::engine {

namespace {

// Differences, as parts of the sounds. Chosen with what a recogniser made of 143 calls, and 236
// sentences that are no requests, so that none of these is done.
constexpr double certain = 0.15;
constexpr double ahead = 0.1; ///< of anything else, to be certain
constexpr double worthAsking = 0.3;
constexpr double asLikely = 0.06;

constexpr double answered = 0.3; ///< with one of two things to choose from
constexpr double answeredAhead = 0.1;

double difference(const std::string &heard, std::string_view phrase)
{
    const std::string sounds = soundsOfWords(wordsOf(phrase));
    const auto length = std::max({sounds.size(), heard.size(), std::size_t{1}});
    return distanceOfSounds(heard, sounds) / static_cast<double>(length);
}

/// The words of one that the other lacks.
std::vector<Word> only(std::span<const Word> words, std::span<const Word> others)
{
    std::vector<Word> rest;
    std::ranges::copy_if(words, std::back_inserter(rest), [&](const Word &word) {
        return std::ranges::find(others, word.text, &Word::text) == others.end();
    });
    return rest;
}

/// What is said about a song is the same for all of them: its title has to sound like it.
bool mayName(std::span<const Word> words, const Wording &wording)
{
    const auto phrase = wordsOf(wording.words);
    const std::string heard = soundsOfWords(only(words, phrase));
    const std::string title = soundsOfWords(only(phrase, words));
    const auto length = std::max({heard.size(), title.size(), std::size_t{1}});
    return !wording.request.song
        || distanceOfSounds(heard, title) <= worthAsking * static_cast<double>(length);
}

/// With words put right that only sound like others.
std::optional<Wording> putRight(std::span<const Word> words, std::span<const SongName> songs)
{
    const auto near = nearWords(words, songs);
    const auto request = understand(near, songs, Spoken::Roughly);
    if (!request || !request->whole)
        return {};
    std::string text;
    for (const Word &word : near) {
        if (!isCourtesy(word.text))
            text += (text.empty() ? "" : " ") + word.text;
    }
    return Wording{*request, std::move(text)};
}

} // namespace

std::optional<Sounded> soundedRequest(
    std::span<const Word> words, unsigned where, std::span<const SongName> songs)
{
    const std::string heard = soundsOfWords(words);
    std::vector<std::pair<double, std::string>> near;
    for (std::string &phrase : vocabulary(where, songs)) {
        const double distance = difference(heard, phrase);
        if (distance <= worthAsking + ahead)
            near.emplace_back(distance, std::move(phrase));
    }
    std::ranges::sort(near);
    std::optional<Sounded> found;
    double least = 0;
    for (const auto &[distance, phrase] : near) {
        const auto request = understand(wordsOf(phrase), songs);
        if (!request || (!found && distance > worthAsking)
            || !mayName(words, Wording{*request, phrase}))
            continue;
        if (!found) {
            least = distance;
            found = Sounded{{*request, phrase}, {}, distance <= certain};
        } else if (request != found->likeliest.request) {
            found->certain = found->certain && distance >= least + ahead;
            if (distance < least + asLikely)
                found->other = Wording{*request, phrase};
            break;
        }
    }
    if (found)
        return found;
    auto meant = putRight(words, songs);
    return meant ? std::optional(Sounded{std::move(*meant), {}, false}) : std::nullopt;
}

std::optional<Wording> likelierOf(
    std::span<const Word> words, const Wording &first, const std::optional<Wording> &second)
{
    const std::string heard = soundsOfWords(words);
    const double one = difference(heard, first.words);
    const double other = second ? difference(heard, second->words) : 1.0;
    if (std::min(one, other) > answered || std::abs(one - other) < answeredAhead)
        return {};
    return one < other ? first : *second;
}

} // namespace kelo::engine
