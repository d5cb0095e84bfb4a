#pragma once

#include "app/display_scale.h"
#include "app/key_handler.h"
#include "app/menu_bar.h"
#include "link/shell.h"
#include "welcome/welcome_questions.h"

#include <QObject>
#include <QPointer>
#include <QQmlEngine>
#include <QQuickView>
#include <QSettings>
#include <QTimer>

#include <memory>

class QFileDialog;

namespace kelo {

class Announcer;
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
    /// engine and, where the user wants it, voice control.
    void launch(const Arguments &arguments);

    [[nodiscard]] QQuickView *window() const { return window_.get(); }
    [[nodiscard]] Overlay &overlay() { return *overlay_; }
    [[nodiscard]] MenuBar &menuBar() { return menuBar_; }
    Q_INVOKABLE void showWindow();
    Q_INVOKABLE void hideWindow();
    Q_INVOKABLE void minimiseWindow();
    Q_INVOKABLE void closeWindow();
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
    void chooseMidiFile(
        const QString &folder, std::function<void(const QString &path)> chosen) override;
    void relaunch() override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void makeWindow();
    /// Lets nothing move in a window that other windows cover.
    void watchSight();
    void windowClosed();
    void tellHowToComeBack();
    void end();
    [[nodiscard]] TrayFacts trayFacts() const;
    void choose(TrayAction action);
    /// True when the key was consumed.
    bool handleKey(const KeyPress &press);

    Link &link_;
    VoiceControl &voice_;
    QSettings settings_;
    WelcomeQuestions questions_;
    DisplayScale scale_;
    MenuBar menuBar_;
    std::unique_ptr<QQuickView> window_;
    std::unique_ptr<Overlay> overlay_;
    std::unique_ptr<Announcer> announcer_;
    QPointer<QFileDialog> fileDialog_;
    QTimer sightTimer_;
    bool toldBackground_ = false; // the engine knows that the display was closed
    bool closedHalfWay_ = false; // while the first-run questions showed
};

} // namespace kelo
