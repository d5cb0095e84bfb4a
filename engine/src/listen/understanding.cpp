#include "listen/understanding.h"

#include "listen/details.h"
#include "listen/near_words.h"
#include "listen/song_match.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace kelo::engine {

namespace {

constexpr int songsNamedByNumber = 10;
constexpr int songsNamedByTitle = 40;
constexpr std::array<std::string_view, 5> moodsNamed{"sad", "happy", "calm", "slow", "mysterious"};

/// What a number after it is the tempo of.
constexpr std::array timed{Action::Metronome, Action::Tempo, Action::Follow};

/// Nothing goes so slowly: "nineteen" is how "ninety" was heard.
int likelyTempo(int heard)
{
    return heard > 12 && heard < 20 ? (heard - 10) * 10 : heard;
}

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

/// All details that the words may have.
struct Details {
    Details(std::span<const Word> words, std::span<const SongName> songs, Spoken how)
        : on(switchIn(words))
        , hands(handsIn(words))
        , bars(barsIn(words))
        , metre(metreIn(words))
        , parts(partsIn(words))
        , pitch(pitchIn(words))
        , key(keyIn(words))
        , mood(moodIn(words))
        , microphone(microphoneIn(words))
        , number(numberIn(words))
        , songNumber(songNumberIn(words))
        , song(songIn(words, songs, how))
    {
        std::vector<Word> rest(words.begin(), words.end());
        const auto strike = [&](std::size_t at, std::size_t count) {
            for (std::size_t i = at; i < at + count; ++i)
                rest[i].text.clear();
        };
        if (bars)
            strike(bars->at, bars->words);
        otherNumber = numberIn(rest);
        if (songNumber) {
            std::vector<Word> besides = rest;
            for (std::size_t i = 0; i < songNumber->words; ++i)
                besides[songNumber->at + i].text.clear();
            numberBesideSong = numberIn(besides);
        }
        if (metre)
            strike(metre->at, metre->words);
        if (parts)
            strike(parts->at, parts->words);
        numberBesideMetre = numberIn(rest);
    }

    std::optional<Detail<bool>> on;
    std::optional<Detail<Hands>> hands;
    std::optional<Detail<BarRange>> bars;
    std::optional<Detail<Metre>> metre;
    std::optional<Detail<int>> parts;
    std::optional<Detail<int>> pitch;
    std::optional<Detail<Tonality>> key;
    std::optional<Detail<Mood>> mood;
    std::optional<Detail<std::string_view>> microphone;
    std::optional<Detail<int>> number;
    std::optional<Detail<std::size_t>> songNumber;
    std::optional<Detail<int>> otherNumber; ///< beside the bars
    std::optional<Detail<int>> numberBesideSong; ///< and beside the bars
    std::optional<Detail<int>> numberBesideMetre;
    std::optional<SongFound> song;
};

/// How the words fit one phrase of a job.
class Fit {
public:
    Fit(std::span<const Word> heard, const Details &found, const Job &job)
        : words_(heard)
        , details_(found)
        , job_(job)
        , used_(heard.size())
        , request_{job.action}
    {
    }

    /// False where something that the phrase needs was not said.
    bool covers(const Phrase &phrase)
    {
        bool complete = !phrase.words.empty();
        split(phrase.words, ' ', [&](std::string_view group) {
            if (group.front() == '?')
                take(group.substr(1), true);
            else {
                ++needed_;
                complete = complete && take(group, false);
            }
        });
        if (phrase.words == "@" && request_.other)
            return false; // a word of two titles is no request
        if (complete)
            takeDetails(phrase);
        return complete;
    }

    /// Words explained less words that are not; more is better, below 1 is no fit. Among phrases
    /// that explain as much, the one that needs more to be said is the likelier.
    [[nodiscard]] std::pair<int, int> score() const
    {
        int explained = 0;
        for (const bool used : used_)
            explained += used;
        const int rest = unexplained();
        return {2 * (explained - rest) + (explained > rest ? 1 : 0), needed_};
    }

    [[nodiscard]] Request request() const
    {
        Request request = request_;
        request.whole = unexplained() == 0;
        return request;
    }

private:
    [[nodiscard]] int unexplained() const
    {
        int count = 0;
        for (std::size_t i = 0; i < words_.size(); ++i)
            count += !used_[i] && !isCourtesy(stem(words_[i].text));
        return count;
    }

    /// Explains the words of a detail and keeps its value.
    template <typename Value>
    bool keep(const std::optional<Detail<Value>> &detail, std::optional<Value> &place)
    {
        if (!detail)
            return false;
        place = detail->value;
        for (std::size_t i = 0; i < detail->words; ++i)
            used_[detail->at + i] = true;
        return true;
    }

    bool takeNumber()
    {
        const bool named = details_.songNumber && request_.song == details_.songNumber->value;
        const bool found = keep(named            ? details_.numberBesideSong
                : (job_.takes & TakesMetre) != 0 ? details_.numberBesideMetre
                : (job_.takes & TakesBars) != 0  ? details_.otherNumber
                                                 : details_.number,
            request_.number);
        if (found && std::ranges::find(timed, job_.action) != std::end(timed))
            request_.number = likelyTempo(*request_.number);
        return found;
    }

    bool takeSong()
    {
        if (!details_.song)
            return false;
        request_.song = details_.song->song;
        request_.other = details_.song->other;
        for (std::size_t i = 0; i < words_.size(); ++i)
            used_[i] = used_[i] || details_.song->named[i];
        return true;
    }

    bool take(std::string_view group, bool every)
    {
        if (group == "#")
            return takeNumber();
        if (group == "@")
            return takeSong();
        if (group == "$song")
            return keep(details_.songNumber, request_.song);
        if (group == "$bars")
            return keep(details_.bars, request_.bars);
        if (group == "$note")
            return keep(details_.pitch, request_.pitch);
        if (group == "$metre")
            return keep(details_.metre, request_.metre);
        if (group == "$parts")
            return keep(details_.parts, request_.parts);
        if (group == "$key")
            return keep(details_.key, request_.key);
        if (group == "$mood")
            return keep(details_.mood, request_.mood);
        if (group == "$microphone")
            return keep(details_.microphone, request_.microphone);
        if (group == "$hands")
            return keep(details_.hands, request_.hands);
        bool found = false;
        for (std::size_t i = 0; i < words_.size() && (every || !found); ++i) {
            if (!used_[i] && isOneOf(stem(words_[i].text), group)) {
                used_[i] = true;
                found = true;
            }
        }
        return found;
    }

    /// What may be said besides.
    void takeDetails(const Phrase &phrase)
    {
        if (phrase.on)
            request_.on = phrase.on;
        else if ((job_.takes & TakesSwitch) != 0 && details_.on && !used_[details_.on->at])
            keep(details_.on, request_.on);
        if ((job_.takes & TakesHands) != 0)
            keep(details_.hands, request_.hands);
        if ((job_.takes & TakesBars) != 0)
            keep(details_.bars, request_.bars);
        if ((job_.takes & TakesMetre) != 0)
            keep(details_.metre, request_.metre);
        if ((job_.takes & TakesParts) != 0)
            keep(details_.parts, request_.parts);
        if ((job_.takes & TakesKey) != 0)
            keep(details_.key, request_.key);
        if ((job_.takes & TakesMood) != 0)
            keep(details_.mood, request_.mood);
        if ((job_.takes & TakesNumber) != 0)
            takeNumber();
    }

    std::span<const Word> words_;
    const Details &details_;
    const Job &job_;
    std::vector<bool> used_;
    int needed_ = 0; ///< groups of words that must be said
    Request request_;
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
    const Details details(words, songs, how);
    std::optional<Request> best;
    std::pair bestScore{0, 1000};
    for (const JobGroup &group : jobGroups()) {
        for (const Job &job : group.jobs) {
            for (const Phrase &phrase : job.phrases) {
                Fit fit(words, details, job);
                if (!fit.covers(phrase) || fit.score() <= bestScore)
                    continue;
                bestScore = fit.score();
                best = fit.request();
            }
        }
    }
    return best;
}

std::optional<Request> understandKindly(
    std::span<const Word> words, std::span<const SongName> songs)
{
    auto exactly = understand(words, songs);
    if (exactly && exactly->whole)
        return exactly;
    const auto near = nearWords(words, songs);
    auto roughly = understand(near, songs, Spoken::Roughly);
    return roughly && roughly->whole && soundTheSame(words, near) ? roughly : exactly;
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
                const bool mood = phrase.example.find('~') != std::string_view::npos;
                const bool number = phrase.example.find('#') != std::string_view::npos;
                if (song) {
                    for (std::size_t i = 0;
                         i < std::min<std::size_t>(songs.size(), songsNamedByTitle); ++i)
                        add(filled(phrase.example, "@", songs[i].title));
                } else if (mood) {
                    for (const std::string_view name : moodsNamed)
                        add(filled(phrase.example, "~", name));
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
