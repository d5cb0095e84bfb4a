#include "listen/near_words.h"

#include "listen/jobs.h"
#include "listen/song_match.h"
#include "listen/sound_alike.h"

#include <algorithm>
#include <optional>
#include <set>
#include <string>

namespace kelo::engine {

namespace {

constexpr std::size_t certainSounds = 3; ///< shorter words sound like too many others
/// From so many sounds on, one in ten may be another. Of shorter phrases, those that sounded nearly
/// like one in 300 sentences, called and talked, none was meant.
constexpr std::size_t manySounds = 11;
constexpr double allowedPerSound = 0.1;
constexpr std::size_t longestPhrase = 40; ///< words; nobody asks for anything at such length

using Words = std::set<std::string, std::less<>>;

Words wordsOfPhrases()
{
    Words all;
    for (const JobGroup &group : jobGroups()) {
        for (const Job &job : group.jobs) {
            for (const Phrase &phrase : job.phrases) {
                for (Word &word : wordsOf(phrase.words)) // its marks are no letters
                    all.insert(std::move(word.text));
            }
        }
    }
    for (int number = 1; number < 100; ++number) {
        for (Word &word : wordsOf(numberInWords(number)))
            all.insert(std::move(word.text));
    }
    return all;
}

/// All words that mean something: those of the phrases, and those of the songs.
class Dictionary {
public:
    explicit Dictionary(std::span<const SongName> songs)
    {
        for (const SongName &song : songs) {
            for (Word &word : wordsOf(song.title + ' ' + song.composer))
                ofSongs_.insert(std::move(word.text));
        }
    }

    [[nodiscard]] bool knows(const std::string &word) const
    {
        return isCourtesy(word) || ofPhrases().contains(word) || ofSongs_.contains(word);
    }

    /// The known word that sounds most like `word`.
    [[nodiscard]] std::optional<std::string> nearest(const std::string &word) const
    {
        std::optional<std::string> best;
        double least = 0;
        forEach([&](const std::string &known) {
            if (isCourtesy(known))
                return; // the word would count for nothing, and what is left be done
            const double distance = soundDistance(word, known);
            const bool alike =
                soundsOf(known).size() < certainSounds ? distance <= 0 : soundsLike(word, known);
            const bool sooner = distance == least && best && known < *best;
            if (alike && (!best || distance < least || sooner)) {
                best = known;
                least = distance;
            }
        });
        return best;
    }

    /// The known word that sounds the same.
    [[nodiscard]] std::optional<std::string> homophone(const std::string &word) const
    {
        const std::string sounds = soundsOf(word);
        std::optional<std::string> first;
        forEach([&](const std::string &known) {
            if (sounds.size() >= certainSounds && soundsOf(known) == sounds
                && (!first || known < *first))
                first = known;
        });
        return first;
    }

private:
    /// They are the same at any time.
    static const Words &ofPhrases()
    {
        static const Words words = wordsOfPhrases();
        return words;
    }

    template <typename Take> void forEach(Take take) const
    {
        std::ranges::for_each(ofPhrases(), take);
        std::ranges::for_each(ofSongs_, take);
    }

    Words ofSongs_;
};

} // namespace

std::vector<Word> nearWords(std::span<const Word> words, std::span<const SongName> songs)
{
    const Dictionary dictionary(songs);
    std::vector<Word> near;
    words = words.first(std::min(words.size(), longestPhrase));
    for (std::size_t i = 0; i < words.size(); ++i) {
        Word word = words[i];
        const bool known = dictionary.knows(word.text);
        const bool nextIsKnown = i + 1 >= words.size() || dictionary.knows(words[i + 1].text);
        const auto same = known ? std::nullopt : dictionary.homophone(word.text);
        if (same) {
            word.text = *same;
        } else if (!known || !nextIsKnown) {
            auto whole = i + 1 < words.size() ? dictionary.nearest(word.text + words[i + 1].text)
                                              : std::nullopt;
            if (whole) {
                word.text = std::move(*whole);
                ++i;
            } else if (!known) {
                word.text = dictionary.nearest(word.text).value_or(word.text);
            }
        }
        near.push_back(std::move(word));
    }
    return near;
}

std::string soundsOfWords(std::span<const Word> words)
{
    std::string sounds;
    for (const Word &word : words.first(std::min(words.size(), longestPhrase)))
        sounds += soundsOf(word.text);
    return sounds;
}

bool soundTheSame(std::span<const Word> words, std::span<const Word> others)
{
    const std::string one = soundsOfWords(words);
    const std::string other = soundsOfWords(others);
    const std::size_t sounds = std::min(one.size(), other.size());
    return one == other
        || (sounds >= manySounds
            && distanceOfSounds(one, other) <= allowedPerSound * static_cast<double>(sounds));
}

} // namespace kelo::engine
