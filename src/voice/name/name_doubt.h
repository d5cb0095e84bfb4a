#pragma once

#include <QString>

#include <vector>

namespace kelo {

/// A word in the decoder's account of an utterance.
struct AccountedWord {
    QString token; ///< empty where there is no word: a pause, a noise
    int first = 0; ///< frame
    int last = 0; ///< frame
    double likelihood = 0; ///< of the word after those before it, by the language model
};

/// Whether something leads up to the name at `place` as to a call: "hey", a pause, the beginning.
[[nodiscard]] bool isLedUpTo(const std::vector<AccountedWord> &account, std::size_t place);

/// How clear a name that is led up to must be to be believed at once: how much better it has to fit
/// the sound than any row of sounds does, as a natural logarithm a frame.
inline constexpr double clearName = -0.8;

/// How much likelier an utterance must be with the name than without to be believed otherwise, by
/// sound and language model as the decoder weighs them, as a natural logarithm. The longer the talk
/// around it, the more of it may by chance go better with a name in it.
[[nodiscard]] double advantageWanted(
    const std::vector<AccountedWord> &account, const QString &name);

/// Whether, as far as it was heard, nothing around the name at `place` speaks for a call.
[[nodiscard]] bool isLone(const std::vector<AccountedWord> &account, std::size_t place);

} // namespace kelo
