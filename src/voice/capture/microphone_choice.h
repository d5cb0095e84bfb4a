#pragma once

#include "voice/capture/capture_session.h"

#include <QCoreApplication>

class QSettings;

namespace kelo {

/// Which microphone the user listens with: chosen in a menu or by voice, told by name, kept across
/// launches. On the GUI thread.
class MicrophoneChoice {
    Q_DECLARE_TR_FUNCTIONS(MicrophoneChoice)

public:
    /// Prefers what `settings` keep; where they are null, nothing is kept.
    MicrophoneChoice(CaptureSession &capture, QSettings *settings);

    /// The id of the one to use whenever it is there; empty for the one that suggests itself
    /// (`chosenMicrophone`).
    [[nodiscard]] const QString &wanted() const { return wanted_; }
    void choose(const QString &id);
    /// The name of the one that is listened with; empty while nothing is.
    [[nodiscard]] QString inUse() const;

    /// Chooses by a word of the user's: "usual" for the one that suggests itself, otherwise as
    /// `wishedMicrophone` has it. Returns what the user is to hear of it; without a word only that.
    QString follow(const QString &word);

private:
    CaptureSession &capture_;
    QSettings *settings_;
    QString wanted_;
};

} // namespace kelo
