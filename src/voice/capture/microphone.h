#pragma once

#include "voice/capture/audio.h"

#include <QFuture>
#include <QList>
#include <QObject>

#include <functional>
#include <memory>

namespace kelo {

/// A source of sound that speech may come from; what an output plays is none.
struct MicrophoneDevice {
    QString id; ///< how its `Microphone` finds it again
    QString name; ///< as the user knows it
    bool builtIn = false;
    bool systemDefault = false;

    friend bool operator==(const MicrophoneDevice &, const MicrophoneDevice &) = default;
};

/// The device to listen with: the one called `preferred` (an id) if it is there, then a built-in
/// one before the system's default before any other. Null when there is none.
[[nodiscard]] const MicrophoneDevice *chosenMicrophone(
    const QList<MicrophoneDevice> &devices, const QString &preferred);

/// Captures from one device at a time. Used on the GUI thread, which it never keeps waiting:
/// whatever takes time happens on a thread of its own.
class Microphone : public QObject {
    Q_OBJECT

public:
    /// Called on the microphone's thread for every buffer, never after `close` has returned.
    using Sink = std::function<void(const AudioBuffer &)>;

    enum class Opening {
        Started, ///< sound comes, until `close` or `lost`
        NoInput, ///< the device cannot be used
        NotAttached, ///< the device is there and cannot be captured from
    };

    /// Every device that is there now; none when there is no working sound system. Answered within
    /// a second or so.
    virtual QFuture<QList<MicrophoneDevice>> discover() = 0;
    /// Starts to capture, 16 kHz mono if the device can be had so. Answered as soon as sound can
    /// come or cannot, within a second or so; never when it is closed before.
    virtual QFuture<Opening> open(const MicrophoneDevice &device, Sink sink) = 0;
    virtual void close() = 0;

    /// What this system captures with.
    static std::unique_ptr<Microphone> ofThisSystem();
    /// There is none to be found.
    static std::unique_ptr<Microphone> none();

Q_SIGNALS:
    /// Capture ended by itself: the device was pulled or the sound system went away. It is closed.
    void lost();
    /// Devices may have come or gone. Not told by every sound system.
    void devicesChanged();
};

} // namespace kelo
