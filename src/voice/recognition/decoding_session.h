#pragma once

#include "voice/recognition/decoding_task.h"
#include "voice/recognition/partial_stabiliser.h"
#include "voice/recognition/sound_cleaner.h"
#include "voice/recognition/speech_decoder.h"

namespace kelo {

/// The worker's side of a task: one utterance, from the sound to the transcripts of it.
class DecodingSession {
public:
    DecodingSession(
        SpeechDecoder &decoder, SoundCleaner &cleaner, std::shared_ptr<DecodingTask> task);
    ~DecodingSession();
    Q_DISABLE_COPY_MOVE(DecodingSession)

    [[nodiscard]] const std::shared_ptr<DecodingTask> &task() const { return task_; }

    /// Takes sound that passed the gate.
    void hear(const Samples &samples);
    /// There is no more sound.
    void finish();

private:
    void begin();
    void conclude();
    void close();
    [[nodiscard]] QString written(QStringList words) const;

    SpeechDecoder &decoder_;
    SoundCleaner &cleaner_;
    std::shared_ptr<DecodingTask> task_;
    QString name_;
    QString token_;
    PartialStabiliser steady_;
    QStringList lastShown_;
    QStringList words_; // of ended utterances
    double heard_ = 0; // seconds of sound in this utterance
    double asked_ = 0; // when its words were last asked for
    bool ended_ = false;
};

} // namespace kelo
