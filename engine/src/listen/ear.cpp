#include "listen/ear.h"

#include <algorithm>
#include <utility>

namespace kelo::engine {

namespace {

/// Lines of a session that has been dealt with may still be on their way for this long, ...
constexpr double late = 1.5;
/// ... and one that nobody renews goes on for as long as this.
constexpr double sessionRest = 8;

std::string joined(std::span<const Word> words)
{
    std::string text;
    for (const Word &word : words)
        text += (text.empty() ? "" : " ") + word.text;
    return text;
}

bool silences(std::string_view command)
{
    return command == "stop" || command.starts_with("stop ");
}

} // namespace

void Ear::setName(std::string_view spoken)
{
    name.clear();
    for (const Word &word : wordsOf(spoken))
        name += word.text;
}

/// How many of `words` belong to an utterance that has been dealt with. A shorter transcript
/// is the next utterance.
std::size_t Ear::spentWords(std::span<const Word> words, bool final, double now)
{
    if (spent.empty())
        return 0;
    const auto differs = std::mismatch(words.begin(), words.end(), spent.begin(), spent.end(),
        [](const Word &a, const Word &b) { return a.text == b.text; });
    const auto common = static_cast<std::size_t>(differs.second - spent.begin());
    const bool extends = common == spent.size();
    const bool soon = now - spentAt < late;
    const bool same = words.size() >= spent.size()
        && (spentFinal ? soon && extends
                       : (soon && common > 0) || (extends && now - spentAt < sessionRest));
    if (!same) {
        spent.clear();
        return 0;
    }
    spentAt = now;
    spentFinal = spentFinal || final;
    return spent.size();
}

void Ear::spend(std::vector<Word> words, bool final, double now)
{
    spent = std::move(words);
    spentFinal = final;
    spentAt = now;
    pending.reset();
}

std::optional<std::string> Ear::commandIn(std::span<const Word> words, double now) const
{
    if (const auto found = findCommand(words, name, understands))
        return joined(words.subspan(found->first, found->count));
    if (!words.empty() && (open || now < answerUntil) && understandsAll(words))
        return joined(words);
    return {};
}

std::optional<std::string> Ear::hear(
    bool final, std::string_view transcript, bool speaking, double now)
{
    std::vector<Word> words = wordsOf(transcript);
    const auto fresh = std::span(words).subspan(spentWords(words, final, now));
    if (speaking) {
        overheard = true;
        const auto found = findCommand(fresh, name, understands);
        std::string command = found ? joined(fresh.subspan(found->first, found->count)) : "";
        spend(std::move(words), final, now);
        return silences(command) ? std::optional("stop") : std::nullopt;
    }
    auto command = commandIn(fresh, now);
    if (!command) {
        pending.reset();
        return {};
    }
    if (!pending || pending->command != *command)
        pending = Pending{*command, now};
    latest = std::move(words);
    if (!final)
        return {};
    answerUntil = -1;
    spend(std::move(latest), true, now);
    return command;
}

std::optional<std::string> Ear::expire(double now)
{
    const auto due = deadline();
    if (!due || now < *due)
        return {};
    std::string command = std::move(pending->command);
    answerUntil = -1;
    spend(std::move(latest), false, now);
    return command;
}

std::optional<double> Ear::deadline() const
{
    return pending ? std::optional(pending->since + settle) : std::nullopt;
}

} // namespace kelo::engine
