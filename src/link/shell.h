#pragma once

#include <QString>

#include <functional>

namespace kelo {

/// What the link asks of the application around it: windows, the overlay, start at login.
class Shell {
public:
    virtual ~Shell() = default;

    /// The main window is not on screen (closed or hidden).
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

} // namespace kelo
