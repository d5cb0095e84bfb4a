#pragma once

#include "activities/teaching_activity.h"
#include "lessons/lesson.h"

namespace kelo::engine {

/// Teachers who go by a lesson: what is shown, when the player enters, what a key means.
class LessonTeaching : public TeachingActivity {
public:
    using TeachingActivity::TeachingActivity;

    [[nodiscard]] std::string_view mode() const override { return "teach"; }
    [[nodiscard]] unsigned where() const override { return InLesson; }
    [[nodiscard]] std::optional<double> deadline() const override
    {
        return paused() ? std::nullopt : earliest({current().deadline(), exampleDeadline()});
    }
    [[nodiscard]] std::optional<Beat> beat(const Moment &now) const override
    {
        Beat beat = beatOf(current().wholePiece(), session_.player, now);
        beat.nextBar = now.uptime; // an example is no part of the piece's time
        return beat;
    }

protected:
    /// The lesson that is on.
    [[nodiscard]] virtual const Lesson &current() const = 0;
    [[nodiscard]] virtual Lesson &current() = 0;

    [[nodiscard]] bool givesCues() const override { return true; }
    [[nodiscard]] Piece example() const override { return current().demo(); }
    void listen(const Moment &now) override { current().listen(now.uptime); }
    [[nodiscard]] bool entersWith(int pitch) const override { return current().entersWith(pitch); }
    [[nodiscard]] bool listening() const override { return current().listening(); }
    void touch(int pitch, int velocity, const Moment &now) override
    {
        current().touch(pitch, velocity, now.uptime);
    }
    [[nodiscard]] Reply press(int pitch, const Moment &now) override
    {
        return current().press(pitch, now.uptime);
    }
};

} // namespace kelo::engine
