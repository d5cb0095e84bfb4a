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

/// All of them are in `text`, in any order: what is heard of oneself has gaps.
bool isIn(std::span<const Word> words, std::string_view text)
{
    const auto said = wordsOf(text);
    return std::ranges::all_of(words, [&](const Word &word) {
        return std::ranges::find(said, word.text, &Word::text) != said.end();
    });
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

/// Said while the assistant speaks.
std::optional<std::string> Ear::commandOver(std::span<const Word> words, const Saying &saying) const
{
    std::span<const Word> command;
    if (const auto found = findCommand(words, name_, understandsAll_))
        command = words.subspan(found->first, found->count);
    else if (saying.asks)
        command = words;
    const std::string text = joined(command);
    const bool certain = silences(text)
        || (!command.empty() && understandsAll_(command) && !isIn(command, saying.text));
    return certain ? std::optional(text) : std::nullopt;
}

/// How many of `words` will never ask for anything: what comes before the name, unless no name is
/// needed, and all of it where the rest is what the assistant says itself.
std::size_t Ear::ownWords(std::span<const Word> words, const Saying &saying) const
{
    const auto name = std::ranges::find(words.rbegin(), words.rend(), name_, &Word::text);
    std::size_t own = words.size();
    if (saying.asks)
        own = 0;
    else if (name != words.rend())
        own = static_cast<std::size_t>(words.rend() - name) - 1;
    return isIn(words.subspan(own), saying.text) ? words.size() : own;
}

std::optional<std::string> Ear::hear(
    bool final, std::string_view transcript, const std::optional<Saying> &saying, double now)
{
    std::vector<Word> words = wordsOf(transcript);
    const std::size_t spent = spentWords(words, final, now);
    const auto fresh = std::span(words).subspan(spent);
    auto command = saying ? commandOver(fresh, *saying) : commandIn(fresh, now);
    if (!command) {
        pending_.reset();
        if (!saying)
            return {};
        const std::size_t own = final ? fresh.size() : ownWords(fresh, *saying);
        overheard_ = own == fresh.size();
        words.resize(spent + own);
        spend(std::move(words), final, now);
        return {};
    }
    if (!pending_ || pending_->command != *command)
        pending_ = Pending{*command, now, command->empty() || understands_(wordsOf(*command))};
    latest_ = std::move(words);
    overheard_ = false;
    if (!final && !(saying && silences(*command)))
        return {};
    answerUntil_ = -1;
    spend(std::move(latest_), final, now);
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
