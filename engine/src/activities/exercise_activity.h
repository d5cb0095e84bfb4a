#pragma once

#include "activities/lesson_teaching.h"
#include "theory/tonality.h"

#include <optional>

namespace kelo::engine {

/// Scales, arpeggios, cadences and finger exercises: in one key with each hand, then with both,
/// then in the next key, a fifth higher. It says the fingers and goes on until it is left.
class ExerciseActivity : public LessonTeaching {
public:
    /// `wanted` names the exercise, and its key and hands where somebody wants certain ones; a
    /// number is that of the finger exercise.
    ExerciseActivity(Session &shared, const Request &wanted);

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
    [[nodiscard]] Reply press(int pitch, const Moment &now) override;

    void change(const Request &request, const Moment &now);
    void again(const Request &request, const Moment &now);
    void nextKey(const Request &request, const Moment &now);
    void previousKey(const Request &request, const Moment &now);
    void startOver(const Request &request, const Moment &now);
    void names(const Request &request, const Moment &now);
    void setHands(const Request &request, const Moment &now);
    void nextHands(const Request &request, const Moment &now);
    void stop(const Request &request, const Moment &now);

    void take(const Request &request);
    [[nodiscard]] Piece piece() const;
    [[nodiscard]] std::string title() const;
    [[nodiscard]] std::string opening() const;
    [[nodiscard]] Lesson lesson() const;
    void show(const std::string &before, const Moment &now);
    void moveBy(int fifths);
    [[nodiscard]] Reply goOn(Reply reply, const Moment &now);
    void keep(const Moment &now);

    Action kind_ = Action::Scale;
    Tonality key_;
    bool keyGiven_ = false;
    int pattern_ = 0; ///< which finger exercise, from 0 on
    std::optional<Hands> only_; ///< nothing else is wanted
    Hands hands_ = Hands::Right;
    Lesson lesson_;
};

} // namespace kelo::engine
