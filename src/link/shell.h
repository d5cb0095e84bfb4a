#pragma once

#include <QString>
#include <QStringList>

#include <functional>

namespace kelo {

/// What the link asks of the application around it: windows, the overlay, start at login.
class Shell {
public:
    virtual ~Shell() = default;

    /// The main window exists and is not on screen (closed or hidden).
    [[nodiscard]] virtual bool mainWindowHidden() const = 0;
    /// Brings the main window to the front with the keyboard focus.
    virtual void showMainWindow() = 0;
    virtual void hideMainWindow() = 0;
    virtual void setFullScreen(bool on) = 0;
    /// Shows the floating caption panel for `seconds`, if the main window cannot be seen.
    virtual void showOverlay(double seconds) = 0;
    /// Switches start at login; false when that failed.
    virtual bool setLoginItem(bool on) = 0;
    [[nodiscard]] virtual bool loginItemOn() const = 0;
    /// The process-wide contrast switch of the theme.
    virtual void setHighContrast(bool on) = 0;
    /// Lets the user choose a MIDI file, starting in `folder` unless that is empty. `chosen` is
    /// called with its absolute path, or never.
    virtual void chooseMidiFile(
        const QString &folder, std::function<void(const QString &path)> chosen) = 0;
    /// Starts the application anew a moment from now and ends this one.
    virtual void relaunch() = 0;
    /// Ends the application.
    virtual void quit() = 0;

protected:
    Shell() = default;
    Q_DISABLE_COPY_MOVE(Shell)
};

/// What the link asks of voice control.
class Ears {
public:
    virtual ~Ears() = default;

    [[nodiscard]] virtual bool isOn() const = 0;
    virtual void begin() = 0;
    virtual void stop() = 0;
    /// Starts a fresh recognition session on the microphone in use.
    virtual void listen() = 0;
    /// Phrases that the recogniser should expect from the next session on.
    virtual void setVocabulary(const QStringList &phrases) = 0;

protected:
    Ears() = default;
    Q_DISABLE_COPY_MOVE(Ears)
};

/// What the link asks of the falling-notes scene.
class NoteStage {
public:
    virtual ~NoteStage() = default;

    /// A note began (`strength` above 0, velocity / 127) or ended, played by the user (`mine`) or
    /// by the engine.
    virtual void note(qint64 pitch, double strength, bool mine) = 0;
    /// The roll was replaced or stopped.
    virtual void clearRoll() = 0;

protected:
    NoteStage() = default;
    Q_DISABLE_COPY_MOVE(NoteStage)
};

} // namespace kelo
