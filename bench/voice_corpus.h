#pragma once

#include <QStringList>

#include <random>

/// What is said to the recogniser when it is measured.
namespace kelo::bench {

/// The names that the first-run questions offer, and three that no dictionary knows.
[[nodiscard]] QStringList names();

/// Sentences that call an assistant by `name`.
[[nodiscard]] QStringList phrasesWith(const QString &name);

/// Words that sound much like one of the names.
[[nodiscard]] QStringList soundAlikes();

/// What the engine has the recogniser expect when nothing is going on.
[[nodiscard]] QStringList expectedPhrases();

/// What people ask assistants or each other in a few words, none of which this one can do.
[[nodiscard]] QStringList otherQuestions();

/// A sentence of everyday talk without any of the names or of what sounds like them.
[[nodiscard]] QString everydaySentence(std::mt19937 &random);

} // namespace kelo::bench
