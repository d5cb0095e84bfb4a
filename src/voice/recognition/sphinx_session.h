#pragma once

#include "voice/recognition/partial_stabiliser.h"
#include "voice/recognition/sphinx_decoder.h"
#include "voice/recognition/sphinx_task.h"

namespace kelo {

/// The worker's side of a task: one utterance, from the sound to the transcripts of it.
class SphinxSession {
public:
    SphinxSession(SphinxDecoder &decoder, std::shared_ptr<SphinxTask> task);
    ~SphinxSession();
    Q_DISABLE_COPY_MOVE(SphinxSession)

    [[nodiscard]] const std::shared_ptr<SphinxTask> &task() const { return task_; }

    /// Takes sound that passed the gate.
    void hear(const Samples &samples);
    /// There is no more sound.
    void finish();

private:
    void conclude();
    void close();
    [[nodiscard]] QString written(QStringList words) const;

    SphinxDecoder &decoder_;
    std::shared_ptr<SphinxTask> task_;
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
