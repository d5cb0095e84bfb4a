#pragma once

#include <QObject>
#include <QString>

#include <functional>

namespace kelo {

/// Where time comes from: the uptime, and work to be done later on the GUI thread.
/// Tests put a clock of their own in its place and turn it by hand.
class TimeSource {
public:
    virtual ~TimeSource() = default;

    /// Seconds of monotonic system uptime.
    [[nodiscard]] virtual double now() const = 0;

    /// Runs `work` on the GUI thread `seconds` from now, unless `context` is gone by then.
    virtual void after(double seconds, QObject *context, std::function<void()> work) = 0;

    /// The local time of day, "HH:mm:ss".
    [[nodiscard]] virtual QString timeOfDay() const;

    /// The real one.
    static TimeSource &system();

protected:
    TimeSource() = default;
    Q_DISABLE_COPY_MOVE(TimeSource)
};

} // namespace kelo
