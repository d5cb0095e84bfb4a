#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <vector>

namespace kelo {

/// Words that may follow each other, as a graph: every way from `start` to `end` is something that
/// can be said.
struct WordGraph {
    struct Arc {
        int from = 0;
        int to = 0;
        QString word;
        double weight =
            0; ///< added to the likelihood of what is said this way, a natural logarithm
    };
    static constexpr int start = 0;
    static constexpr int end = 1;

    int states = 2;
    std::vector<Arc> arcs;
};

/// Sentences that are as likely as each other.
struct WeighedSentences {
    QList<QStringList> sentences;
    double weight = 0; ///< a natural logarithm
    bool exact = false; ///< no other number or note is meant
};

/// A call: `name`, a courtesy or none, then one of the sentences; of equal ones the first counts.
/// Where one has a number, any number up to 299 may be said; where it has a note, "c" or "b flat",
/// any note, and either of major and minor; where it has a hand, either. A note in capitals is part
/// of a title and stays.
[[nodiscard]] WordGraph graphOfCalls(
    const QString &name, const QList<WeighedSentences> &alternatives);

/// The words of a phrase with its notes in capitals, where it has one in capitals: "Minuet in G".
[[nodiscard]] QStringList withTitledNotes(const QString &phrase, QStringList words);

/// The words that numbers are made of.
[[nodiscard]] QStringList numberWords();

} // namespace kelo
