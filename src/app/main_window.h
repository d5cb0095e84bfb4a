#pragma once

#include "app/window_sight.h"

#include <QQuickView>
#include <QTimer>

#include <functional>

class QSettings;

namespace kelo {

/// The main window: comes forward and goes away, keeps where it stands in the settings when it has
/// moved and when it hides, and lets nothing move in it while other windows cover it.
class MainWindow : public QQuickView {
    Q_OBJECT

public:
    /// Is shown each key press before the display is; true when it consumed the key.
    using KeyTaker = std::function<bool(const QKeyEvent &)>;

    /// Stands where it stood last; the first time it is `scale` times its designed size. `settings`
    /// must outlive it.
    explicit MainWindow(QSettings &settings, double scale);

    void setKeyTaker(KeyTaker taker) { keyTaker_ = std::move(taker); }

    /// To the front with the keyboard focus, from wherever it was.
    void bringForward();
    void minimise();
    /// Ignored while the window does not show.
    void setFullScreen(bool on);

Q_SIGNALS:
    /// The user has closed it.
    void closed();

protected:
    bool event(QEvent *event) override;

private:
    void keepPlace();
    void look();

    QSettings &settings_;
    KeyTaker keyTaker_;
    QTimer sightTimer_;
    QTimer placeTimer_;
};

} // namespace kelo
