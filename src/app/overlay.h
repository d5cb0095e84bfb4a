#pragma once

#include "app/overlay_rules.h"

#include <QObject>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <memory>

class QQmlEngine;
class QQuickView;
class QSettings;

namespace kelo {

class DisplayScale;
class Link;
class VoiceControl;

/// The caption panel: a small window at the bottom of the screen, above all others, that shows
/// what Kelo is doing while the main window cannot be seen. It takes neither clicks nor focus.
class Overlay : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("handed to the panel by the application")
    Q_PROPERTY(bool visible READ visible NOTIFY visibleChanged)
    Q_PROPERTY(bool seeThrough READ seeThrough NOTIFY visibleChanged)

public:
    /// What the panel shows and asks. `sight` tells what the user sees of the main window.
    struct Parts {
        Link *link = nullptr;
        VoiceControl *voice = nullptr;
        DisplayScale *scale = nullptr;
        QSettings *settings = nullptr;
        QQmlEngine *engine = nullptr;
        std::function<WindowSight()> sight;
    };

    explicit Overlay(Parts parts, QObject *parent = nullptr);
    ~Overlay() override;

    /// From here on the panel shows itself when speech starts or ends, when something is heard and
    /// when something went well.
    void setUp();
    /// Shows the panel for `seconds`, unless the user sees the main window or wants no panel. A
    /// panel that stands stays for that time from now.
    void show(double seconds);

    /// The user wants the panel: user default "overlay".
    [[nodiscard]] bool enabled() const;
    void setEnabled(bool on);

    /// The panel stands or fades in. Not before its first frame is on the screen, or the fade would
    /// be over by then.
    [[nodiscard]] bool visible() const { return rules_.visible() && drawn_; }
    /// The desktop can show what is behind the panel.
    [[nodiscard]] bool seeThrough() const { return seeThrough_; }
    /// The panel's window; null until it is first shown.
    [[nodiscard]] QQuickView *window() const { return window_.get(); }

Q_SIGNALS:
    void visibleChanged();
    void enabledChanged();

private:
    [[nodiscard]] PanelFacts facts() const;
    void makeWindow();
    void place();
    void check();
    void firstFrameShown();
    void leave();

    Parts parts_;
    OverlayRules rules_;
    QTimer checks_;
    QTimer fadeOut_;
    std::unique_ptr<QQuickView> window_;
    bool seeThrough_ = true;
    bool drawn_ = false; // since it was last hidden
};

} // namespace kelo
