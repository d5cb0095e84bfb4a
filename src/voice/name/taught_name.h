#pragma once

#include "voice/language/pronunciation.h"
#include "voice/name/wake_training.h"

#include <optional>
#include <stop_token>

namespace kelo {

/// A word that the decoder has to know, and the ways to say it.
struct VocabularyEntry {
    QString token; ///< as the decoder writes it: lower case, no spaces
    QList<Phones> pronunciations;
};

/// `text` as the decoder's words. The assistant's name is one word, however it is written; other
/// words lose their case and what surrounds them.
[[nodiscard]] QStringList tokensOf(const QString &text, const QString &name);

/// The decoder's word for a name: its letters and digits in lower case, joined where something
/// else stands between them. Empty for a name without any.
[[nodiscard]] QString nameToken(const QString &name);

/// The ways to say words that `dictionary` may know; every word has one.
[[nodiscard]] QList<VocabularyEntry> pronounced(
    const QStringList &tokens, const QString &dictionary, const std::stop_token &stop = {});

/// Works out a language model and the words it needs from `training` and writes both to `files`.
/// `dictionary` is the path of the decoder's own. Throws std::runtime_error.
[[nodiscard]] TaughtModel prepareTaughtModel(const WakeTraining &training,
    const SpeechModelFiles &files, const QString &dictionary, const std::stop_token &stop = {});

/// What a taught model's files hold.
struct TaughtWords {
    QByteArray languageModel; ///< ARPA
    QList<VocabularyEntry> vocabulary;
};

/// The files of `model`, if they still are what was written: the decoder's library must never see
/// a damaged one.
[[nodiscard]] std::optional<TaughtWords> readTaughtModel(const TaughtModel &model);

} // namespace kelo
