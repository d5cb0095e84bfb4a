#include "listen/phrases.h"

#include "listen/near_words.h"
#include "listen/song_match.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace kelo::engine {

namespace {

constexpr int songsNamedByNumber = 10;
constexpr int songsNamedByTitle = 40;

/// "what's" and "today's" are what they begin with.
std::string_view stem(std::string_view word)
{
    return word.ends_with("'s") ? word.substr(0, word.size() - 2) : word;
}

/// Calls `take` for each piece of `text` between separators.
template <typename Take> void split(std::string_view text, char separator, Take take)
{
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(separator), text.size());
        if (end > 0)
            take(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

bool isOneOf(std::string_view word, std::string_view alternatives)
{
    bool found = false;
    split(alternatives, '|', [&](std::string_view alternative) { found |= word == alternative; });
    return found;
}

struct Flag {
    bool on;
    std::size_t at;
};

std::optional<Flag> flagIn(std::span<const Word> words)
{
    for (std::size_t i = words.size(); i-- > 0;) {
        if (isOneOf(words[i].text, "off|disable|without|no"))
            return Flag{false, i};
        if (isOneOf(words[i].text, "on|enable"))
            return Flag{true, i};
    }
    return {};
}

struct HandsFound {
    Hands hands;
    std::size_t at; ///< of two words
};

std::optional<HandsFound> handsIn(std::span<const Word> words)
{
    for (std::size_t i = 0; i + 1 < words.size(); ++i) {
        if (!isOneOf(words[i + 1].text, "hand|hands"))
            continue;
        if (words[i].text == "left")
            return HandsFound{Hands::Left, i};
        if (words[i].text == "right")
            return HandsFound{Hands::Right, i};
        if (words[i].text == "both")
            return HandsFound{Hands::Both, i};
    }
    return {};
}

struct NumberFound {
    SpokenNumber number;
    std::size_t at;
};

/// Number words, or after "song" and the like what sounds the same. "This one" is no number.
std::optional<NumberFound> numberIn(std::span<const Word> words)
{
    const auto counts = [&](std::size_t i) {
        return i > 0 && isOneOf(words[i - 1].text, "song|piece|number|lesson|at");
    };
    for (std::size_t i = 0; i < words.size(); ++i) {
        const auto number = numberAt(words.subspan(i));
        if (number && (counts(i) || number->words > 1 || words[i].text != "one"))
            return NumberFound{*number, i};
    }
    for (std::size_t i = 1; i < words.size(); ++i) {
        if (!counts(i))
            continue;
        const std::string_view word = words[i].text;
        const int value = isOneOf(word, "to|too") ? 2 : word == "for" ? 4 : word == "won" ? 1 : 0;
        if (value > 0)
            return NumberFound{{value, 1}, i};
    }
    return {};
}

/// How the words fit one phrase.
class Fit {
public:
    Fit(std::span<const Word> heard, const std::optional<NumberFound> &number,
        const std::optional<SongFound> &song)
        : words(heard)
        , used(heard.size())
        , numberFound(number)
        , songFound(song)
    {
    }

    /// False where something that the phrase needs was not said.
    bool covers(const Phrase &phrase)
    {
        bool complete = !phrase.words.empty();
        split(phrase.words, ' ', [&](std::string_view group) {
            if (group.front() == '?')
                take(group.substr(1), true);
            else
                complete = complete && take(group, false);
        });
        return complete;
    }

    /// Explains one more word; false where the phrase did that already.
    bool use(std::size_t at)
    {
        const bool before = used[at];
        used[at] = true;
        return !before;
    }

    /// Words explained less words that are not; more is better, below 1 is no fit.
    [[nodiscard]] int score() const
    {
        int explained = 0;
        int unexplained = 0;
        for (std::size_t i = 0; i < words.size(); ++i) {
            explained += used[i];
            unexplained += !used[i] && !isCourtesy(stem(words[i].text));
        }
        return 2 * (explained - unexplained) + (explained > unexplained ? 1 : 0);
    }

    bool usesNumber = false;
    bool usesSong = false;

private:
    bool take(std::string_view group, bool every)
    {
        if (group == "#") {
            if (!numberFound)
                return false;
            usesNumber = true;
            for (std::size_t i = 0; i < numberFound->number.words; ++i)
                used[numberFound->at + i] = true;
            return true;
        }
        if (group == "@") {
            if (!songFound)
                return false;
            usesSong = true;
            for (std::size_t i = 0; i < words.size(); ++i)
                used[i] = used[i] || songFound->named[i];
            return true;
        }
        bool found = false;
        for (std::size_t i = 0; i < words.size() && (every || !found); ++i) {
            if (!used[i] && isOneOf(stem(words[i].text), group)) {
                used[i] = true;
                found = true;
            }
        }
        return found;
    }

    std::span<const Word> words;
    std::vector<bool> used;
    const std::optional<NumberFound> &numberFound;
    const std::optional<SongFound> &songFound;
};

std::string filled(std::string_view example, std::string_view mark, std::string_view with)
{
    std::string text(example);
    if (const auto at = text.find(mark); at != std::string::npos)
        text.replace(at, mark.size(), with);
    return text;
}

} // namespace

std::optional<Request> understand(
    std::span<const Word> words, std::span<const SongName> songs, Spoken how)
{
    const auto flag = flagIn(words);
    const auto hands = handsIn(words);
    const auto number = numberIn(words);
    const auto song = songIn(words, songs, how);
    std::optional<Request> best;
    int bestScore = 0;
    for (const JobGroup &group : jobGroups()) {
        for (const Job &job : group.jobs) {
            for (const Phrase &phrase : job.phrases) {
                Fit fit(words, number, song);
                if (!fit.covers(phrase))
                    continue;
                const bool switches = flag && fit.use(flag->at);
                const bool handed = hands && job.action == Action::Learn && fit.use(hands->at)
                    && fit.use(hands->at + 1);
                const int score = fit.score();
                if (score <= bestScore)
                    continue;
                bestScore = score;
                best = Request{job.action};
                best->on = phrase.on ? phrase.on
                    : switches       ? std::optional(flag->on)
                                     : std::nullopt;
                if (handed)
                    best->hands = hands->hands;
                if (fit.usesNumber)
                    best->number = number->number.value;
                if (fit.usesSong)
                    best->song = song->song;
            }
        }
    }
    return best;
}

std::optional<Request> understandKindly(
    std::span<const Word> words, std::span<const SongName> songs)
{
    if (auto request = understand(words, songs))
        return request;
    return understand(nearWords(words, songs), songs, Spoken::Roughly);
}

std::vector<std::string> vocabulary(unsigned where, std::span<const SongName> songs)
{
    std::vector<std::string> phrases;
    const auto add = [&](std::string phrase) {
        std::ranges::replace(phrase, '|', ' ');
        if (!phrase.empty() && std::ranges::find(phrases, phrase) == phrases.end())
            phrases.push_back(std::move(phrase));
    };
    for (const JobGroup &group : jobGroups()) {
        for (const Job &job : group.jobs) {
            if ((job.where & where) == 0)
                continue;
            for (const Phrase &phrase : job.phrases) {
                const bool song = phrase.example.find('@') != std::string_view::npos;
                const bool number = phrase.example.find('#') != std::string_view::npos;
                if (song) {
                    for (std::size_t i = 0;
                         i < std::min<std::size_t>(songs.size(), songsNamedByTitle); ++i)
                        add(filled(phrase.example, "@", songs[i].title));
                } else if (number) {
                    for (int i = 1; i <= songsNamedByNumber; ++i)
                        add(filled(phrase.example, "#", numberInWords(i)));
                } else {
                    add(std::string(phrase.example));
                }
            }
        }
    }
    return phrases;
}

} // namespace kelo::engine
