#include "listen/details.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace kelo::engine {

namespace {

constexpr int middleOctave = 4;
constexpr int mostBars = 9999;

template <typename Value> using Names = std::span<const std::pair<std::string_view, Value>>;

template <typename Value> std::optional<Value> named(std::string_view word, Names<Value> names)
{
    const auto found = std::ranges::find(names, word, &std::pair<std::string_view, Value>::first);
    return found == names.end() ? std::nullopt : std::optional(found->second);
}

constexpr std::pair<std::string_view, bool> switches[] = {{"off", false}, {"disable", false},
    {"without", false}, {"no", false}, {"on", true}, {"enable", true}};
constexpr std::pair<std::string_view, Hands> sides[] = {
    {"left", Hands::Left}, {"right", Hands::Right}, {"both", Hands::Both}};
constexpr std::pair<std::string_view, int> soundAlike[] = {
    {"to", 2}, {"too", 2}, {"for", 4}, {"won", 1}};
constexpr std::pair<std::string_view, int> letters[] = {
    {"c", 0}, {"d", 2}, {"e", 4}, {"f", 5}, {"g", 7}, {"a", 9}, {"b", 11}};
constexpr std::pair<std::string_view, int> accidentals[] = {{"sharp", 1}, {"flat", -1}};
constexpr std::pair<std::string_view, Metre> metres[] = {
    {"waltz", {3, 4}}, {"common", {4, 4}}, {"march", {2, 4}}};
constexpr std::pair<std::string_view, int> noteValues[] = {
    {"quarter", 4}, {"quarters", 4}, {"eighth", 8}, {"eighths", 8}, {"half", 2}, {"halves", 2}};
constexpr std::pair<std::string_view, int> partsOfBeats[] = {{"crotchets", 1}, {"quarters", 1},
    {"eighth", 2}, {"eighths", 2}, {"quaver", 2}, {"quavers", 2}, {"triplet", 3}, {"triplets", 3},
    {"sixteenth", 4}, {"sixteenths", 4}, {"semiquaver", 4}, {"semiquavers", 4}};
constexpr std::pair<std::string_view, Mood> moods[] = {{"sad", Mood::Sad},
    {"melancholy", Mood::Sad}, {"sorrowful", Mood::Sad}, {"happy", Mood::Happy},
    {"cheerful", Mood::Happy}, {"bright", Mood::Happy}, {"merry", Mood::Happy},
    {"joyful", Mood::Happy}, {"fast", Mood::Happy}, {"lively", Mood::Happy}, {"calm", Mood::Calm},
    {"gentle", Mood::Calm}, {"peaceful", Mood::Calm}, {"slow", Mood::Calm},
    {"relaxing", Mood::Calm}, {"waltz", Mood::Waltz}, {"march", Mood::March},
    {"proud", Mood::March}, {"mysterious", Mood::Mysterious}, {"spooky", Mood::Mysterious},
    {"dark", Mood::Mysterious}, {"strange", Mood::Mysterious}};
constexpr std::pair<std::string_view, std::string_view> microphones[] = {{"next", "next"},
    {"other", "next"}, {"another", "next"}, {"different", "next"}, {"usb", "usb"},
    {"built", "built-in"}, {"internal", "built-in"}, {"laptop", "built-in"},
    {"computer", "built-in"}, {"bluetooth", "bluetooth"}, {"headset", "headset"},
    {"headphone", "headset"}, {"headphones", "headset"}, {"webcam", "camera"}, {"camera", "camera"},
    {"usual", "usual"}, {"default", "usual"}, {"system", "usual"}};

std::string_view at(std::span<const Word> words, std::size_t index)
{
    return index < words.size() ? std::string_view(words[index].text) : std::string_view{};
}

bool isOneOf(std::string_view word, std::initializer_list<std::string_view> all)
{
    return std::ranges::find(all, word) != all.end();
}

std::optional<SpokenNumber> numberFrom(std::span<const Word> words, std::size_t index)
{
    return index < words.size() ? numberAt(words.subspan(index)) : std::nullopt;
}

} // namespace

std::optional<Detail<bool>> switchIn(std::span<const Word> words)
{
    std::optional<Detail<bool>> found;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const auto on = named<bool>(words[i].text, switches);
        if (on && (!found || found->value))
            found = Detail<bool>{*on, i};
    }
    return found;
}

std::optional<Detail<Hands>> handsIn(std::span<const Word> words)
{
    for (std::size_t i = 0; i + 1 < words.size(); ++i) {
        const bool hand = isOneOf(words[i + 1].text, {"hand", "hands"});
        if (const auto side = named<Hands>(words[i].text, sides); side && hand)
            return Detail<Hands>{*side, i, 2};
        if (words[i].text == "hands" && words[i + 1].text == "together")
            return Detail<Hands>{Hands::Both, i, 2};
    }
    return {};
}

std::optional<Detail<BarRange>> barsIn(std::span<const Word> words)
{
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (!isOneOf(words[i].text, {"bar", "bars", "measure", "measures"}))
            continue;
        std::size_t next = i + 1 + (at(words, i + 1) == "number" ? 1 : 0);
        auto first = numberFrom(words, next);
        if (!first) {
            if (const auto value = named<int>(at(words, next), soundAlike))
                first = SpokenNumber{*value, 1};
        }
        if (!first || first->value < 1)
            continue;
        next += first->words;
        BarRange range{first->value, first->value};
        if (isOneOf(at(words, next), {"to", "through", "until", "till", "and"})) {
            const auto last = numberFrom(words, next + 1);
            if (last && last->value >= range.first) {
                range.last = std::min(last->value, mostBars);
                next += 1 + last->words;
            }
        }
        return Detail<BarRange>{range, i, next - i};
    }
    return {};
}

std::optional<Detail<Metre>> metreIn(std::span<const Word> words)
{
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::size_t time = at(words, i + 1) == "time" ? 1 : 0;
        if (const auto metre = named<Metre>(words[i].text, metres); metre && time > 0)
            return Detail<Metre>{*metre, i, 2};
        const auto beats = numberFrom(words, i);
        if (!beats || beats->words != 1 || beats->value < 1 || beats->value > 12)
            continue;
        auto unit = named<int>(at(words, i + 1), noteValues);
        if (const auto number = numberFrom(words, i + 1); number && number->words == 1)
            unit = unit ? unit : std::optional(number->value);
        if (!unit || !(*unit == 2 || *unit == 4 || *unit == 8))
            continue;
        const std::size_t count = at(words, i + 2) == "time" ? 3 : 2;
        return Detail<Metre>{{beats->value, *unit}, i, count};
    }
    return {};
}

std::optional<Detail<int>> partsIn(std::span<const Word> words)
{
    for (std::size_t i = 0; i < words.size(); ++i) {
        const auto parts = named<int>(words[i].text, partsOfBeats);
        const auto beats = i > 0 ? numberFrom(words, i - 1) : std::nullopt;
        if (!parts || (beats && beats->value <= 12)) // "three eighths" is a metre
            continue;
        return Detail<int>{*parts, i, isOneOf(at(words, i + 1), {"note", "notes"}) ? 2U : 1U};
    }
    return {};
}

std::optional<Detail<int>> pitchIn(std::span<const Word> words)
{
    for (std::size_t i = 0; i < words.size(); ++i) {
        const auto letter = named<int>(words[i].text, letters);
        if (!letter)
            continue;
        const std::string_view before = i > 0 ? at(words, i - 1) : std::string_view{};
        const auto shift = named<int>(at(words, i + 1), accidentals);
        const bool middle = before == "middle";
        const bool kind = isOneOf(at(words, i + 1), {"major", "minor"});
        if (words[i].text == "a" && !shift && !middle && !kind
            && !isOneOf(before, {"note", "an", "key", "the", "in", "of"})
            && (before != "on" || i + 1 < words.size()))
            continue;
        std::size_t end = i + (shift ? 2 : 1);
        int octave = middleOctave;
        if (const auto number = numberFrom(words, end); number && number->value <= 8 && !middle) {
            octave = number->value;
            end += number->words;
        }
        const std::size_t from = i - (middle || before == "note" ? 1 : 0);
        return Detail<int>{12 * (octave + 1) + *letter + shift.value_or(0), from, end - from};
    }
    return {};
}

std::optional<Detail<Tonality>> keyIn(std::span<const Word> words)
{
    for (std::size_t from = 0; from < words.size(); ++from) {
        const auto pitch = pitchIn(words.subspan(from));
        if (!pitch)
            return {};
        const std::size_t first = from + pitch->at;
        const std::size_t end = first + pitch->words;
        const bool kind = isOneOf(at(words, end), {"major", "minor"});
        const bool introduced =
            first > 0 && isOneOf(words[first - 1].text, {"in", "to", "of", "into"});
        if (kind || introduced)
            return Detail<Tonality>{{pitch->value % 12, at(words, end) == "minor"}, first,
                pitch->words + (kind ? 1 : 0)};
        from = end - 1;
    }
    return {};
}

std::optional<Detail<Mood>> moodIn(std::span<const Word> words)
{
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (const auto mood = named<Mood>(words[i].text, moods))
            return Detail<Mood>{*mood, i};
    }
    return {};
}

std::optional<Detail<std::string_view>> microphoneIn(std::span<const Word> words)
{
    for (std::size_t i = 0; i < words.size(); ++i) {
        std::string_view word = words[i].text;
        if (word.ends_with("'s"))
            word.remove_suffix(2);
        if (const auto known = named<std::string_view>(word, microphones))
            return Detail<std::string_view>{*known, i};
    }
    return {};
}

std::optional<Detail<std::size_t>> songNumberIn(std::span<const Word> words)
{
    for (std::size_t i = 0; i + 1 < words.size(); ++i) {
        const auto number = numberAt(words.subspan(i + 1));
        if (words[i].text == "song" && number && number->value > 0)
            return Detail<std::size_t>{
                static_cast<std::size_t>(number->value) - 1, i, number->words + 1};
    }
    return {};
}

std::optional<Detail<int>> numberIn(std::span<const Word> words)
{
    const auto counts = [&](std::size_t i) {
        return i > 0 && isOneOf(words[i - 1].text, {"song", "piece", "number", "lesson", "at"});
    };
    for (std::size_t i = 0; i < words.size(); ++i) {
        const auto number = numberAt(words.subspan(i));
        const bool one = words[i].text == "one" && at(words, i + 1) != "minute";
        if (number && (counts(i) || number->words > 1 || !one))
            return Detail<int>{number->value, i, number->words};
    }
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (words[i].text == "half" && isOneOf(at(words, i + 1), {"speed", "tempo"}))
            return Detail<int>{50, i};
    }
    for (std::size_t i = 1; i < words.size(); ++i) {
        if (const auto value = named<int>(words[i].text, soundAlike); value && counts(i))
            return Detail<int>{*value, i};
    }
    return {};
}

} // namespace kelo::engine
