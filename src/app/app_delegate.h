#pragma once

#include "app/desktop/login_item.h"
#include "app/display_scale.h"
#include "app/key_handler.h"
#include "app/main_window.h"
#include "app/menu_bar.h"
#include "app/midi_chooser.h"
#include "app/settings_keeper.h"
#include "app/window_menu.h"
#include "link/shell.h"
#include "welcome/welcome_questions.h"

#include <QObject>
#include <QQmlEngine>
#include <QSettings>

#include <memory>

namespace kelo {

class Announcer;
class DesktopTies;
class Link;
class Overlay;
class VoiceControl;
struct Arguments;

/// The application around the display: the main window and its keys, the caption panel, the tray,
/// what the link asks of them all, the order of launch and of the end.
class AppDelegate : public QObject, public Shell {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes the only one.")

public:
    AppDelegate(Link &link, VoiceControl &voice, QObject *parent = nullptr);
    ~AppDelegate() override;

    /// The one of this process; null before launch and after the end.
    static AppDelegate *shared();

    /// Makes the main window, shows it unless this start is to stay hidden, then starts the
    /// engine and, where the user wants it, voice control. False when the process has been asked to
    /// end meanwhile: then there is nothing to go on with.
    [[nodiscard]] bool launch(const Arguments &arguments, bool startedByLogin = false);

    [[nodiscard]] MainWindow *window() const { return window_.get(); }
    [[nodiscard]] Overlay &overlay() { return *overlay_; }
    Q_INVOKABLE void showWindow();
    Q_INVOKABLE void hideWindow() { window_->hide(); }
    Q_INVOKABLE void minimiseWindow() { window_->minimise(); }
    Q_INVOKABLE void closeWindow() { window_->close(); }
    /// The menu of the window, at `place` in it.
    Q_INVOKABLE void openMenu(QPoint place);
    /// Ends the application; the engine is asked to quit first.
    Q_INVOKABLE void quit() override;

    // What the link asks for
    [[nodiscard]] bool mainWindowHidden() const override;
    void showMainWindow() override { showWindow(); }
    void hideMainWindow() override { hideWindow(); }
    void setFullScreen(bool on) override;
    void showOverlay(double seconds) override;
    bool setLoginItem(bool on) override;
    [[nodiscard]] bool loginItemOn() const override;
    void setHighContrast(bool on) override;
    void chooseMidiFile(const QString &folder, MidiChooser::Chosen chosen) override;
    void relaunch() override;

private:
    void makeWindow();
    void windowClosed();
    void tellHowToComeBack();
    void end();
    [[nodiscard]] MenuFacts menuFacts() const;
    void choose(MenuAction action, const QString &id);
    /// True when the key was consumed.
    bool handleKey(const KeyPress &press);

    Link &link_;
    VoiceControl &voice_;
    QSettings settings_;
    SettingsKeeper keeper_{settings_};
    WelcomeQuestions questions_;
    DisplayScale scale_;
    std::unique_ptr<LoginItem> loginItem_ = LoginItem::make(settings_);
    std::unique_ptr<DesktopTies> desktop_;
    MenuBar menuBar_;
    WindowMenu windowMenu_{[this] { return menuFacts(); }};
    MidiChooser midiChooser_;
    std::unique_ptr<MainWindow> window_;
    std::unique_ptr<Overlay> overlay_;
    std::unique_ptr<Announcer> announcer_;
    bool toldBackground_ = false; // the engine knows that the display was closed
    bool closedHalfWay_ = false; // while the first-run questions showed
};

} // namespace kelo
