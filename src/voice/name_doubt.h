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

/// How clear the name at `place` must be to be believed: how much better it has to fit the sound
/// than any row of sounds does, as a natural logarithm a frame. Minus infinity in most calls, where
/// "hey" or a pause leads up to it and a request or a pause follows. In the middle of other talk a
/// word that sounds like the name is likelier than the name, most so when nothing is asked for.
[[nodiscard]] double clarityWanted(const std::vector<AccountedWord> &account, std::size_t place);

/// Whether, as far as it was heard, nothing around the name at `place` speaks for a call.
[[nodiscard]] bool isLone(const std::vector<AccountedWord> &account, std::size_t place);

} // namespace kelo
