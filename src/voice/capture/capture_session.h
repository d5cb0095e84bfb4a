#pragma once

#include "voice/capture/microphone.h"

#include <functional>
#include <memory>

namespace kelo {

class TimeSource;

/// Keeps one microphone open while sound is wanted: finds out which there are, chooses one, opens
/// it, and looks for one again when there is none or it is lost; ever more seldom, but at once when
/// devices come or go. On the GUI thread.
class CaptureSession final : public QObject {
    Q_OBJECT

public:
    /// `log` takes lines for the voice log. What fails again and again is logged once.
    CaptureSession(std::unique_ptr<Microphone> microphone, TimeSource &time,
        std::function<void(const QString &)> log);
    ~CaptureSession() override;

    /// Begins to capture into `sink`, or goes on; tells the outcome by a signal.
    void start(Microphone::Sink sink);
    void stop();
    [[nodiscard]] bool isRunning() const { return running_; }

    /// The microphones that were there when last looked for.
    [[nodiscard]] const QList<MicrophoneDevice> &devices() const { return devices_; }
    /// Looks for them anew, whether sound is wanted or not; `then` is called when that is done.
    void refresh(const std::function<void()> &then = {});
    /// The one in use, or last in use.
    [[nodiscard]] const MicrophoneDevice &microphone() const { return device_; }
    /// The one to use whenever it is there, by its id; empty for none in particular.
    void prefer(const QString &id);

Q_SIGNALS:
    void started();
    /// No microphone can be used for now.
    void unavailable();
    /// `devices` or `microphone` are new.
    void changed();

private:
    void look();
    void found(const QList<MicrophoneDevice> &devices);
    void attach();
    void opened(Microphone::Opening opening);
    void failed(const QString &line);
    void lost();
    void lookLater();
    void review();

    std::unique_ptr<Microphone> microphone_;
    TimeSource &time_;
    std::function<void(const QString &)> log_;
    Microphone::Sink sink_;
    QList<MicrophoneDevice> devices_;
    QString preferred_;
    MicrophoneDevice device_; // that was opened last
    bool wanted_ = false;
    bool running_ = false;
    bool opening_ = false;
    int turn_ = 0; // answers to earlier questions are not wanted any more
    int attempts_ = 0; // since capture last stood
    int brief_ = 0; // captures in a row that did not stand
    double startedAt_ = 0;
    bool quiet_ = false; // that there is none has been logged
    std::unique_ptr<QObject> retry_; // while it exists, the next search is due
    std::unique_ptr<QObject> standing_; // while it exists, a capture is watched
    std::unique_ptr<QObject> reviewDue_;
};

} // namespace kelo
