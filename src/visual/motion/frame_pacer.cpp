#include "visual/motion/frame_pacer.h"

#include "link/time_source.h"

#include <QAbstractAnimation>
#include <QQuickItem>
#include <QScreen>

#include <utility>

namespace kelo {

namespace {

constexpr double slow = 30; // frames a second, up to which a timer serves
constexpr double verySlow = 10; // up to which it need not be precise
constexpr const char *coveredProperty = "keloCovered";

} // namespace

/// An animation without an end: Qt advances it once for each frame that the screen can show.
class FramePacer::Beat final : public QAbstractAnimation {
public:
    explicit Beat(FramePacer &pacer)
        : pacer_(pacer)
    {
    }
    [[nodiscard]] int duration() const override { return -1; }

protected:
    void updateCurrentTime(int) override { pacer_.beat(); }

private:
    FramePacer &pacer_;
};

FramePacer::FramePacer(QQuickItem &item)
    : item_(item)
    , beat_(std::make_unique<Beat>(*this))
{
    connect(&timer_, &QTimer::timeout, this, &FramePacer::frame);
    connect(&item, &QQuickItem::windowChanged, this, &FramePacer::setWindow);
    connect(&item, &QQuickItem::visibleChanged, this, &FramePacer::apply);
    setWindow(item.window());
}

FramePacer::~FramePacer() = default;

void FramePacer::setWindow(QQuickWindow *window)
{
    if (window_)
        window_->removeEventFilter(this);
    window_ = window;
    if (window_)
        window_->installEventFilter(this);
    apply();
}

bool FramePacer::eventFilter(QObject *object, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Expose:
    case QEvent::Show:
    case QEvent::Hide:
    case QEvent::WindowStateChange:
    case QEvent::DynamicPropertyChange:
        // The window itself has not seen the event yet.
        QMetaObject::invokeMethod(this, &FramePacer::apply, Qt::QueuedConnection);
        break;
    default:
        break;
    }
    return QObject::eventFilter(object, event);
}

void FramePacer::setCovered(QQuickWindow &window, bool covered)
{
    window.setProperty(coveredProperty, covered);
}

bool FramePacer::canBeSeen() const
{
    return window_ && !window_->property(coveredProperty).toBool() && item_.isVisible()
        && window_->isExposed() && !(window_->windowStates() & Qt::WindowMinimized);
}

void FramePacer::setRate(double rate)
{
    if (rate == rate_)
        return;
    rate_ = rate;
    apply();
}

void FramePacer::apply()
{
    const bool wasSeen = std::exchange(seen_, canBeSeen());
    const double rate = seen_ ? rate_ : 0;
    if (rate > slow) {
        timer_.stop();
        beat_->start();
    } else if (rate > 0) {
        beat_->stop();
        timer_.setTimerType(rate > verySlow ? Qt::PreciseTimer : Qt::CoarseTimer);
        timer_.start(static_cast<int>(1000 / rate));
    } else {
        beat_->stop();
        timer_.stop();
    }
    if (seen_ && !wasSeen)
        Q_EMIT frame();
}

double FramePacer::period() const
{
    const double refresh = window_ && window_->screen() ? window_->screen()->refreshRate() : 0;
    return refresh >= 20 && refresh <= 1000 ? 1 / refresh : 1.0 / 60;
}

void FramePacer::beat()
{
    if (cadence_.isDue(TimeSource::system().now(), period(), rate_))
        Q_EMIT frame();
}

} // namespace kelo
