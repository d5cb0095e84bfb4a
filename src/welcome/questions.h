#pragma once

#include <QString>

namespace kelo {

/// One of the first-run questions as it is shown and spoken.
struct Question {
    QString title;
    QString sub; ///< why it is asked, in a sentence or two
    QString hint; ///< the keys that answer it
};

/// The questions in their order, by what they ask for.
enum class Step { Greeting, Name, AssistantName, Town, Birthday, Needs, Listening };

inline constexpr int questionCount = 7;

/// The question of `step`. `chosen` is the assistant's name so far.
[[nodiscard]] Question question(Step step, const QString &chosen);

} // namespace kelo
