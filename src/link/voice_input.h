#pragma once

#include <QStringList>

namespace kelo {

/// What the link asks of voice control.
class VoiceInput {
public:
    virtual ~VoiceInput() = default;

    [[nodiscard]] virtual bool isOn() const = 0;
    virtual void begin() = 0;
    virtual void stop() = 0;
    /// Starts a fresh recognition session on the microphone in use.
    virtual void listen() = 0;
    /// Phrases that the recogniser should expect from the next session on.
    virtual void setVocabulary(const QStringList &phrases) = 0;
    /// Listens with another microphone from now on: "next", or a word for the kind that is wanted;
    /// says which one that is, as it does when nothing is wanted.
    virtual void useMicrophone(const QString &wanted) = 0;

protected:
    VoiceInput() = default;
    Q_DISABLE_COPY_MOVE(VoiceInput)
};

} // namespace kelo
