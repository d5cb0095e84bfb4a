#include "link/time_source.h"

#include <QTime>
#include <QTimer>

#include <chrono>

namespace kelo {

namespace {

class SystemTime final : public TimeSource {
public:
    double now() const override
    {
        // The steady clock counts from the start of the system on every platform we build for.
        using Seconds = std::chrono::duration<double>;
        return Seconds(std::chrono::steady_clock::now().time_since_epoch()).count();
    }

    void after(double seconds, QObject *context, std::function<void()> work) override
    {
        const auto delay = std::chrono::duration<double>(seconds);
        QTimer::singleShot(std::chrono::round<std::chrono::milliseconds>(delay), Qt::PreciseTimer,
            context, std::move(work));
    }
};

} // namespace

QString TimeSource::timeOfDay() const
{
    return QTime::currentTime().toString(u"HH:mm:ss");
}

TimeSource &TimeSource::system()
{
    static SystemTime time;
    return time;
}

} // namespace kelo
