#pragma once

#include "link/time_source.h"

#include <QPointer>

#include <vector>

namespace kelo {

/// A clock that stands until it is turned by hand; delayed work runs while it is turned, each at
/// its own moment and in order. Starts at 1000 seconds, so that no time stamp equals its default.
/// For tests, and for pictures that must come out the same each time.
class ManualTime final : public TimeSource {
public:
    [[nodiscard]] double now() const override { return now_; }
    /// Noon, plus what the clock was turned.
    [[nodiscard]] QString timeOfDay() const override;
    void after(double seconds, QObject *context, std::function<void()> work) override;

    /// Turns the clock on by `seconds`. Work that the due work asks for runs too if it is due.
    void advance(double seconds);

    /// Pieces of work that wait, those of vanished contexts included.
    [[nodiscard]] std::size_t waiting() const { return works_.size(); }

private:
    struct Work {
        double due;
        QPointer<QObject> context;
        std::function<void()> run;
    };

    static constexpr double start = 1000;

    double now_ = start;
    std::vector<Work> works_; // by due time; equal ones in the order they were asked for
};

} // namespace kelo
