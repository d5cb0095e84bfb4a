#include "frame_meter.h"

#include "support/figures.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QQuickWindow>

#include <pthread.h>
#include <time.h>

#include <algorithm>
#include <mutex>
#include <optional>
#include <vector>

using namespace Qt::StringLiterals;

namespace kelo::bench {

namespace {

double seconds(clockid_t clock)
{
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

clockid_t clockOf(pthread_t thread)
{
    clockid_t clock{};
    pthread_getcpuclockid(thread, &clock);
    return clock;
}

/// Notes when each frame came and which thread rendered it.
class Watch {
public:
    explicit Watch(QQuickWindow &window)
        : connection_(QObject::connect(
            &window, &QQuickWindow::afterRendering, &window, [this] { frame(); },
            Qt::DirectConnection))
    {
    }
    ~Watch() { QObject::disconnect(connection_); }
    Q_DISABLE_COPY_MOVE(Watch)

    std::vector<double> times()
    {
        const std::scoped_lock lock(mutex_);
        return times_;
    }
    std::optional<pthread_t> renderer()
    {
        const std::scoped_lock lock(mutex_);
        return renderer_;
    }
    void clear()
    {
        const std::scoped_lock lock(mutex_);
        times_.clear();
    }

private:
    void frame()
    {
        const std::scoped_lock lock(mutex_);
        times_.push_back(seconds(CLOCK_MONOTONIC));
        renderer_ = pthread_self();
    }

    std::mutex mutex_;
    std::vector<double> times_;
    std::optional<pthread_t> renderer_;
    QMetaObject::Connection connection_;
};

struct Cpu {
    double gui = 0;
    double render = 0;
    double all = 0;

    static Cpu now(pthread_t renderer)
    {
        const bool threaded = !pthread_equal(renderer, pthread_self());
        return {seconds(CLOCK_THREAD_CPUTIME_ID), threaded ? seconds(clockOf(renderer)) : 0,
            seconds(CLOCK_PROCESS_CPUTIME_ID)};
    }
};

void run(double time, const std::function<void()> &tick)
{
    QElapsedTimer timer;
    timer.start();
    while (static_cast<double>(timer.elapsed()) < time * 1000) {
        if (tick)
            tick();
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
}

} // namespace

FrameCost measure(
    QQuickWindow &window, double time, const std::function<void()> &tick, double settling)
{
    Watch watch(window);
    window.show();
    window.update();
    run(settling, tick);
    if (!watch.renderer())
        return {};
    watch.clear();
    const Cpu before = Cpu::now(*watch.renderer());
    run(time, tick);
    const Cpu after = Cpu::now(*watch.renderer());

    const std::vector<double> times = watch.times();
    FrameCost cost{.frames = static_cast<int>(times.size())};
    const double frames = std::max<double>(1, cost.frames);
    const double ours = after.gui - before.gui + after.render - before.render;
    cost.ours = ours / frames * 1000;
    cost.raster = (after.all - before.all - ours) / frames * 1000;
    cost.cpu = (after.all - before.all) / time * 100;
    std::vector<double> gaps;
    for (std::size_t i = 1; i < times.size(); ++i)
        gaps.push_back((times[i] - times[i - 1]) * 1000);
    if (!gaps.empty()) {
        const auto nth = gaps.begin() + static_cast<std::ptrdiff_t>(gaps.size() * 95 / 100);
        std::ranges::nth_element(gaps, nth);
        cost.p95 = *nth;
    }
    return cost;
}

void print(const QString &what, const FrameCost &cost)
{
    print(what + u": our two threads"_s, cost.ours, u"ms/frame"_s);
    print(what + u": raster"_s, cost.raster, u"ms/frame"_s);
    print(what + u": p95 frame"_s, cost.p95, u"ms"_s);
}

} // namespace kelo::bench
