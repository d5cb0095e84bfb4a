#pragma once

#include "activities/lesson_teaching.h"

namespace kelo::engine {

/// A lesson on a song.
class LessonActivity : public LessonTeaching {
public:
    /// At `bars`, or where the lesson on this song was left.
    LessonActivity(Session &shared, Lesson lesson, std::optional<BarRange> bars);

    void enter(const Moment &now) override;
    void leave(const Moment &now) override;
    bool request(const Request &request, const Moment &now) override;
    void advance(const Moment &now) override;

    [[nodiscard]] std::string place() const override;
    [[nodiscard]] std::string_view help() const override;
    [[nodiscard]] std::string_view suggestions() const override;

private:
    [[nodiscard]] const Lesson &current() const override { return lesson_; }
    [[nodiscard]] Lesson &current() override { return lesson_; }
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
