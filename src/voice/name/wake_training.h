#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace kelo {

/// How the assistant's name is pronounced, in X-SAMPA.
struct CustomPronunciation {
    QString grapheme;
    QStringList phonemes;
};

struct PhraseCount {
    QString phrase;
    int count = 0;
};

/// What a recogniser is taught about a name: what is said with it, and how often.
struct WakeTraining {
    QString name;
    QString locale;
    QString identifier;
    QList<PhraseCount> phrases;
    std::optional<CustomPronunciation> pronunciation; ///< where spelling would mislead

    static WakeTraining of(const QString &name);
    /// As a text file.
    [[nodiscard]] QByteArray exported() const;
};

/// The files of a name's model, in the folder of such models.
struct SpeechModelFiles {
    QString trainingData;
    QString languageModel;
    QString vocabulary;

    /// Named by the letters of `name`, lower-cased; so "Kelo" and "Kelo 2" share theirs.
    static SpeechModelFiles of(const QString &folder, const QString &name);
};

/// A model of a name that a recogniser has prepared, as its files on disk.
struct TaughtModel {
    QString name; ///< the name as the user writes it
    QString languageModel; ///< paths
    QString vocabulary;
    QByteArray digest; ///< of both files' contents

    friend bool operator==(const TaughtModel &, const TaughtModel &) = default;
};

/// `writeWhole` that throws std::runtime_error.
void saveWhole(const QString &path, const QByteArray &contents);

} // namespace kelo
