#include "listen/song_match.h"

#include "listen/sound_alike.h"

#include <algorithm>
#include <string>
#include <utility>

namespace kelo::engine {

namespace {

/// Said without changing what is meant.
constexpr std::string_view courtesies[] = {"a", "an", "the", "please", "me", "my", "i", "you",
    "your", "to", "of", "for", "in", "at", "it", "its", "it's", "that", "this", "is", "are", "am",
    "be", "do", "does", "can", "could", "would", "will", "like", "want", "wanna", "let", "let's",
    "us", "we", "and", "then", "now", "just", "some", "by", "with", "one", "on", "off", "up",
    "there", "uh", "um", "er", "oh", "okay", "well", "i'd", "i'm", "give", "go", "get", "kindly",
    "quickly", "here", "from", "into", "those", "these", "know", "did"};

/// The words of a title that nobody has to say: they tell which one of several it is, "number 1",
/// or how much of it, "the opening". A title of nothing else has none.
std::vector<bool> labelsOf(const std::vector<Word> &title)
{
    static constexpr std::string_view names[] = {
        "number", "no", "opus", "op", "opening", "beginning", "movement"};
    std::vector<bool> labels;
    for (const Word &word : title) {
        const bool digits = word.text.find_first_not_of("0123456789") == std::string::npos;
        labels.push_back((digits && !labels.empty() && labels.back())
            || std::ranges::find(names, word.text) != std::end(names));
    }
    bool anythingElse = false;
    for (std::size_t i = 0; i < title.size(); ++i)
        anythingElse = anythingElse || (!labels[i] && !isCourtesy(title[i].text));
    return anythingElse ? labels : std::vector<bool>(title.size());
}

/// How the words name one title or composer.
class Naming {
public:
    Naming(std::span<const Word> heard, Spoken how)
        : words_(heard)
    {
        for (const Word &word : how == Spoken::Roughly ? heard : std::span<const Word>{})
            sounds_.push_back(soundsOf(word.text));
    }

    /// The part of `name` that was said and not counted before.
    double share(std::string_view name, std::vector<bool> &named) const
    {
        constexpr double labelWeight = 0.01; // between titles that are named alike otherwise
        int said = 0;
        int all = 0;
        int labels = 0;
        const std::vector<Word> parts = wordsOf(name);
        const std::vector<bool> isLabel = labelsOf(parts);
        for (std::size_t i = 0; i < parts.size(); ++i) {
            if (isCourtesy(parts[i].text))
                continue;
            all += isLabel[i] ? 0 : 1;
            const auto at = find(parts[i].text, named);
            if (at)
                named[*at] = true;
            // What a title has twice need be said but once.
            const auto here = parts.begin() + static_cast<std::ptrdiff_t>(i);
            const bool again = std::any_of(parts.begin(), here, [&](const Word &part) {
                return part.text == here->text && saidBefore(part.text, named);
            });
            if (at || again)
                ++(isLabel[i] ? labels : said);
        }
        return said == 0 ? 0.0 : static_cast<double>(said) / all + labelWeight * labels;
    }

private:
    [[nodiscard]] std::optional<std::size_t> find(
        const std::string &part, const std::vector<bool> &named) const
    {
        for (std::size_t i = 0; i < words_.size(); ++i) {
            if (!named[i] && words_[i].text == part)
                return i;
        }
        for (std::size_t i = 0; i < sounds_.size(); ++i) {
            if (!named[i] && sounds_[i] == soundsOf(part))
                return i;
        }
        return {};
    }

    [[nodiscard]] bool saidBefore(const std::string &part, const std::vector<bool> &named) const
    {
        for (std::size_t i = 0; i < words_.size(); ++i) {
            if (named[i] && words_[i].text == part)
                return true;
        }
        return false;
    }

    std::span<const Word> words_;
    std::vector<std::string> sounds_; ///< of each word, where they count
};

} // namespace

bool isCourtesy(std::string_view word)
{
    return std::ranges::find(courtesies, word) != std::end(courtesies);
}

std::optional<SongFound> songIn(
    std::span<const Word> words, std::span<const SongName> songs, Spoken how)
{
    const Naming naming(words, how);
    std::optional<SongFound> best;
    double bestShare = 0;
    int ties = 0;
    for (std::size_t song = 0; song < songs.size(); ++song) {
        std::vector<bool> named(words.size());
        const double title = naming.share(songs[song].title, named);
        const std::string_view composer = songs[song].composer;
        const auto surname = composer.rfind(' ') + 1; // 0 where there is one name alone
        const double by = naming.share(composer.substr(surname), named);
        const double share = (title >= 0.5 ? title : 0) + by;
        static_cast<void>(naming.share(composer.substr(0, surname), named));
        if (share < 0.5 || share < bestShare)
            continue;
        if (share == bestShare) {
            ++ties;
            if (!best->other)
                best->other = song;
            continue;
        }
        ties = 0;
        bestShare = share;
        best = SongFound{song, std::move(named)};
    }
    return ties > 1 && bestShare < 1 ? std::nullopt : best;
}

} // namespace kelo::engine
