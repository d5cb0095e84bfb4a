#pragma once

#include "voice/capture/microphone.h"

#include <QThread>

namespace kelo {

/// Captures through Qt Multimedia, which reaches every system's sound in some way. Used where
/// nothing better is at hand: it cannot tell which devices are built in, and does not notice a
/// restart of the sound system, so a device that delivers nothing for a while counts as lost.
class QtMicrophone final : public Microphone {
    Q_OBJECT

public:
    QtMicrophone();
    ~QtMicrophone() override;

    QFuture<QList<MicrophoneDevice>> discover() override;
    QFuture<Opening> open(const MicrophoneDevice &device, Sink sink) override;
    void close() override;

private:
    class Capture;
    struct Outlet;

    void ended(qint64 serial);

    QThread thread_;
    std::unique_ptr<QObject> context_; // lives on the thread; what is done there goes through it
    std::unique_ptr<Capture> capture_; // on the thread
    std::shared_ptr<Outlet> outlet_; // of the capture that is open
    qint64 serial_ = 0; // of the capture that is open; tells a late loss from ours
};

} // namespace kelo
