#pragma once

#include "listen/wake.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kelo::engine {

/// Follows what the recogniser makes of the microphone, line by line, and gives each command
/// once, when no more words are to be expected. While the assistant speaks it may hear itself:
/// nothing counts then but its name with what is wholly understood, or such an answer where it
/// asks for one, and never what it is saying. Seconds throughout.
class Ear {
public:
    /// How long words must have stood before they are taken, final ones aside.
    static constexpr double settle = 0.7;
    /// The same for words that mean nothing: they may be the half of what is meant, or misheard,
    /// and final ones come within about a second.
    static constexpr double settleUnknown = 2.5;

    /// Of what is said without the name only that counts which `understandsAll` of.
    Ear(Understands understands, Understands understandsAll)
        : understands_(std::move(understands))
        , understandsAll_(std::move(understandsAll))
    {
    }

    void setName(std::string_view name);

    /// Whatever is said may be meant for the assistant, without its name.
    void setOpen(bool on) { open_ = on; }

    /// What is said next needs no name, if it comes soon.
    void expectAnswer(double now) { answerUntil_ = now + answerTime; }

    /// What the assistant is saying, and whether that wants an answer.
    struct Saying {
        std::string_view text;
        bool asks = false;
    };

    /// The whole of what this session of the recogniser has understood so far. Gives the words
    /// of a command that is complete; none of them where only the name was said.
    [[nodiscard]] std::optional<std::string> hear(
        bool final, std::string_view transcript, const std::optional<Saying> &saying, double now);

    /// A command that has stood for long enough.
    [[nodiscard]] std::optional<std::string> expire(double now);
    [[nodiscard]] std::optional<double> deadline() const;

    /// Whether it listened to the assistant itself since this was last asked.
    [[nodiscard]] bool takeOverheard() { return std::exchange(overheard_, false); }

private:
    struct Pending {
        std::string command;
        double since = 0;
        bool understood = false;
    };

    static constexpr double answerTime = 8;

    [[nodiscard]] std::size_t spentWords(std::span<const Word> words, bool final, double now);
    [[nodiscard]] std::optional<std::string> commandIn(
        std::span<const Word> words, double now) const;
    [[nodiscard]] std::optional<std::string> commandOver(
        std::span<const Word> words, const Saying &saying) const;
    [[nodiscard]] std::size_t ownWords(std::span<const Word> words, const Saying &saying) const;
    void spend(std::vector<Word> words, bool final, double now);

    Understands understands_;
    Understands understandsAll_;
    std::string name_ = "kelo";
    bool open_ = false;
    bool overheard_ = false;
    double answerUntil_ = -1;
    std::optional<Pending> pending_;
    std::vector<Word> latest_; ///< of the pending command's utterance

    // What has been dealt with: the words of one utterance.
    std::vector<Word> spent_;
    bool spentFinal_ = false;
    double spentAt_ = 0;
};

} // namespace kelo::engine
