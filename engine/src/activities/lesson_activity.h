#pragma once

#include "activities/teaching_activity.h"
#include "lessons/lesson.h"

namespace kelo::engine {

/// A lesson on a song.
class LessonActivity : public TeachingActivity {
public:
    /// At `bars`, or where the lesson on this song was left.
    LessonActivity(Session &shared, Lesson lesson, std::optional<BarRange> bars);

    void enter(const Moment &now) override;
    void leave(const Moment &now) override;
    bool request(const Request &request, const Moment &now) override;
    void advance(const Moment &now) override;
    [[nodiscard]] std::optional<double> deadline() const override
    {
        return paused() ? std::nullopt : earliest({lesson_.deadline(), exampleDeadline()});
    }

    [[nodiscard]] std::string_view mode() const override { return "teach"; }
    [[nodiscard]] unsigned where() const override { return InLesson; }
    [[nodiscard]] std::string place() const override;
    [[nodiscard]] std::string_view help() const override;
    [[nodiscard]] std::string_view suggestions() const override;
    [[nodiscard]] std::optional<Beat> beat(const Moment &now) const override;

private:
    [[nodiscard]] bool givesCues() const override { return true; }
    [[nodiscard]] Piece example() const override { return lesson_.demo(); }
    void listen(const Moment &now) override { lesson_.listen(now.uptime); }
    [[nodiscard]] bool entersWith(int pitch) const override { return lesson_.entersWith(pitch); }
    [[nodiscard]] bool listening() const override { return lesson_.listening(); }
    [[nodiscard]] Reply press(int pitch, const Moment &now) override
    {
        return lesson_.press(pitch, now.uptime);
    }
    void over(const Moment &now) override;
    void keepPlayed(const Moment &now);

    void repeat(const Request &request, const Moment &now);
    void next(const Request &request, const Moment &now);
    void previous(const Request &request, const Moment &now);
    void startOver(const Request &request, const Moment &now);
    void toBars(const Request &request, const Moment &now);
    void carryOn(const Request &request, const Moment &now);
    void stop(const Request &request, const Moment &now);
    void names(const Request &request, const Moment &now);
    void hands(const Request &request, const Moment &now);
    void nextHands(const Request &request, const Moment &now);
    void drop(const Request &request, const Moment &now);

    Lesson lesson_;
    std::optional<BarRange> bars_;
    bool dropped_ = false;
};

} // namespace kelo::engine
