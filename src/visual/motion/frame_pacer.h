#pragma once

#include "visual/motion/frame_timing.h"

#include <QPointer>
#include <QQuickWindow>
#include <QTimer>

class QQuickItem;

namespace kelo {

/// Tells an item when to prepare a frame: in step with its screen up to a rate, and never while
/// its window cannot be seen.
class FramePacer : public QObject {
    Q_OBJECT

public:
    explicit FramePacer(QQuickItem &item);
    ~FramePacer() override;

    /// Says that other windows cover all of `window`, which neither it nor its items can tell.
    static void setCovered(QQuickWindow &window, bool covered);

    [[nodiscard]] bool canBeSeen() const;
    /// Frames a second; 0 for none. Takes effect at once.
    void setRate(double rate);
    /// Seconds that the item's screen shows a frame.
    [[nodiscard]] double period() const;

Q_SIGNALS:
    /// It is time for a frame: by the rate, or since the item has come into sight.
    void frame();

protected:
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    class Beat;

    void setWindow(QQuickWindow *window);
    void apply();
    void beat();

    QQuickItem &item_;
    QPointer<QQuickWindow> window_;
    double rate_ = 0;
    bool seen_ = false;
    FrameCadence cadence_;
    std::unique_ptr<Beat> beat_; // runs with the frames of the window
    QTimer timer_; // for low rates: Qt renders for as long as a beat runs, changes or not
};

} // namespace kelo
