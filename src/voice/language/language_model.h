#pragma once

#include <QByteArray>
#include <QList>
#include <QStringList>

namespace kelo {

/// A sentence and how often it is said.
struct CountedSentence {
    QStringList words;
    double count = 1;
};

/// A trigram model of `sentences` as an ARPA file, by absolute discounting: half of the smallest
/// count that follows a history is taken from each of its words and given to the shorter history.
/// Words on their own are made `loneWord` times as likely as they were counted, which decides how
/// readily one is heard where no sentence leads up to it. Where one does, probabilities are raised
/// to the power of `begunWord`: below 1 a sentence that was begun is preferred however many there
/// are. There is no word for the unknown.
[[nodiscard]] QByteArray arpaModel(
    const QList<CountedSentence> &sentences, double loneWord, double begunWord = 1);

} // namespace kelo
