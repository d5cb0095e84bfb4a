#pragma once

#include "activities/activity.h"
#include "assistant/open_question.h"
#include "assistant/typing_line.h"
#include "listen/ear.h"
#include "protocol/input.h"
#include "setup/settings.h"

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace kelo::engine {

/// What is heard, typed or clicked, in words: makes requests of it.
class WordInput {
public:
    /// `current` is the activity that the user is in, never empty.
    WordInput(Session &session, const Settings &settings, const std::unique_ptr<Activity> &current);

    /// The assistant listens to the name that the settings have.
    void nameChanged() { ear_.setName(settings_->assistant); }

    /// Talk mode: whatever is said may be meant for the assistant.
    void setOpen(bool on) { ear_.setOpen(on); }

    /// What the recogniser makes of the microphone: "1 words" where they are final, else "0 words".
    void hear(std::string_view line, const Moment &now);

    /// Does what `text` asks for, or says that it was not understood.
    void obey(std::string_view text, const Moment &now);

    /// The next words may choose one of two requests, without the name.
    void ask(const Request &first, const Request &second, const Moment &now);

    /// Whatever the assistant says from here on asks for nothing.
    void expectNothing() { answerExpected_ = false; }

    /// A line is typed from here on, key by key.
    void beginTyping(const Moment &now);
    [[nodiscard]] bool typing() const { return typing_.has_value(); }
    void type(Key pressed, const Moment &now);

    /// A command may have stood for long enough.
    void advance(const Moment &now);
    [[nodiscard]] std::optional<double> deadline() const { return ear_.deadline(); }

    /// The assistant has finished speaking.
    void spoken(const Moment &now);

private:
    [[nodiscard]] bool understands(std::span<const Word> words, bool allOfIt) const;
    [[nodiscard]] std::optional<OpenQuestion::Answer> chosen(std::span<const Word> words) const;
    void heard(const std::string &command, const Moment &now);
    void undertake(const Request &request, const Moment &now);
    void suppose(Sounded meant, const Moment &now);

    Session &session_;
    const Settings &settings_;
    const std::unique_ptr<Activity> &current_;
    Ear ear_;
    bool answerExpected_ = false; ///< once the assistant has finished speaking
    std::optional<OpenQuestion> question_;
    std::optional<TypingLine> typing_;
};

} // namespace kelo::engine
