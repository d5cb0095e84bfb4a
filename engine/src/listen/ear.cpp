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
    name_.clear();
    for (const Word &word : wordsOf(spoken))
        name_ += word.text;
}

/// How many of `words` belong to an utterance that has been dealt with. A shorter transcript
/// is the next utterance.
std::size_t Ear::spentWords(std::span<const Word> words, bool final, double now)
{
    if (spent_.empty())
        return 0;
    const auto differs = std::mismatch(words.begin(), words.end(), spent_.begin(), spent_.end(),
        [](const Word &a, const Word &b) { return a.text == b.text; });
    const auto common = static_cast<std::size_t>(differs.second - spent_.begin());
    const bool extends = common == spent_.size();
    const bool soon = now - spentAt_ < late;
    const bool same = words.size() >= spent_.size()
        && (spentFinal_ ? soon && extends
                        : (soon && common > 0) || (extends && now - spentAt_ < sessionRest));
    if (!same) {
        spent_.clear();
        return 0;
    }
    spentAt_ = now;
    spentFinal_ = spentFinal_ || final;
    return spent_.size();
}

void Ear::spend(std::vector<Word> words, bool final, double now)
{
    spent_ = std::move(words);
    spentFinal_ = final;
    spentAt_ = now;
    pending_.reset();
}

std::optional<std::string> Ear::commandIn(std::span<const Word> words, double now) const
{
    if (const auto found = findCommand(words, name_, understands_))
        return joined(words.subspan(found->first, found->count));
    if (!words.empty() && (open_ || now < answerUntil_) && understandsAll_(words))
        return joined(words);
    return {};
}

std::optional<std::string> Ear::hear(
    bool final, std::string_view transcript, bool speaking, double now)
{
    std::vector<Word> words = wordsOf(transcript);
    const auto fresh = std::span(words).subspan(spentWords(words, final, now));
    if (speaking) {
        overheard_ = true;
        const auto found = findCommand(fresh, name_, understands_);
        std::string command = found ? joined(fresh.subspan(found->first, found->count)) : "";
        spend(std::move(words), final, now);
        return silences(command) ? std::optional("stop") : std::nullopt;
    }
    auto command = commandIn(fresh, now);
    if (!command) {
        pending_.reset();
        return {};
    }
    if (!pending_ || pending_->command != *command)
        pending_ = Pending{*command, now, command->empty() || understands_(wordsOf(*command))};
    latest_ = std::move(words);
    if (!final)
        return {};
    answerUntil_ = -1;
    spend(std::move(latest_), true, now);
    return command;
}

std::optional<std::string> Ear::expire(double now)
{
    const auto due = deadline();
    if (!due || now < *due)
        return {};
    std::string command = std::move(pending_->command);
    answerUntil_ = -1;
    spend(std::move(latest_), false, now);
    return command;
}

std::optional<double> Ear::deadline() const
{
    if (!pending_)
        return {};
    return pending_->since + (pending_->understood ? settle : settleUnknown);
}

} // namespace kelo::engine
