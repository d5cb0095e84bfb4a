#pragma once

#include <QMap>
#include <QString>

namespace kelo {

/// `words` contain `name` as whole words, whatever their case and punctuation.
[[nodiscard]] bool namesIt(const QString &words, const QString &name);

/// `words` end with what `phrase` asks for after the name, whatever their case and punctuation.
[[nodiscard]] bool requestIsIn(const QString &words, const QString &phrase, const QString &name);

/// How often a name was heard in one pass over the samples, and what was asked for after it.
class PassResult {
public:
    void count(const QString &phrase, bool named, bool asked);
    [[nodiscard]] int hits() const { return all_.hits; }
    [[nodiscard]] int requests() const { return all_.requests; }
    [[nodiscard]] int samples() const { return all_.samples; }
    /// Such as "17 of 18".
    [[nodiscard]] QString ofPhrase(const QString &phrase) const;

private:
    struct Tally {
        int hits = 0;
        int requests = 0;
        int samples = 0;
    };
    Tally all_;
    QMap<QString, Tally> phrases_;
};

/// Tells the user what to expect of the name, and how little the `seconds` of other talk say, in
/// which it was heard `falseNames` times.
[[nodiscard]] QString adviceOn(
    const QString &name, const PassResult &taught, int falseNames, int seconds);

} // namespace kelo
