#pragma once

#include "voice/capture/audio.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <random>

/// Speech made by a synthesiser, to measure a recogniser with.
namespace kelo {

/// Names of English voices of the synthesiser: women and men of several countries.
[[nodiscard]] const QStringList &sampleVoices();

/// Has the synthesiser speak `text` into the WAV file `path` and waits for it. False when there is
/// no synthesiser or it fails.
bool speakToFile(
    const QString &text, const QString &voice, int wordsPerMinute, const QString &path);

/// A 16-bit WAV file as 16 kHz mono; nothing for another kind of file.
[[nodiscard]] std::optional<Samples> readSpeech(const QString &path);

/// `speech` with half a second of silence before it and one after it, and with white noise that
/// is `signalToNoise` decibels weaker over all of that. The same `random` makes the same noise.
[[nodiscard]] Samples inRoom(
    const Samples &speech, std::optional<double> signalToNoise, std::mt19937 &random);

} // namespace kelo
