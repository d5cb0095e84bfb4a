#pragma once

#include "activities/activity.h"
#include "written/hand_division.h"

namespace kelo::engine {

/// Asks which hand plays what where nothing tells for sure: plays both ways, and goes on with what
/// was wanted once one of them is chosen. The choice is kept with the piece.
class HandsActivity : public Activity {
public:
    HandsActivity(Session &shared, Heard what, HandsInDoubt doubt, const Request &wanted);

    void enter(const Moment &now) override;
    bool request(const Request &request, const Moment &now) override;
    void advance(const Moment &now) override;

    [[nodiscard]] std::string_view mode() const override { return "teach"; }
    [[nodiscard]] unsigned where() const override { return InLesson; }
    [[nodiscard]] std::string place() const override;
    [[nodiscard]] std::string_view help() const override;
    [[nodiscard]] std::string_view suggestions() const override;

private:
    /// What comes next once it is quiet.
    enum class Step { Nothing, PlayFirst, SaySecond, PlaySecond, Ask };

    void answer(const Request &request, const Moment &now);
    void playBoth(const Request &request, const Moment &now);
    void takeFirst(const Request &request, const Moment &now);
    void takeSecond(const Request &request, const Moment &now);
    void stop(const Request &request, const Moment &now);
    void take(int reading, const Moment &now);
    void show(int reading, const Moment &now);

    Heard what_;
    HandsInDoubt doubt_;
    Request wanted_;
    Step next_ = Step::Nothing;
};

/// Begins the question where there is one that was not answered before; false where there is none.
bool askForHands(Session &session, const Heard &what, const Request &wanted, const Moment &now);

} // namespace kelo::engine
