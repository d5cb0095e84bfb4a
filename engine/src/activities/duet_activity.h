#pragma once

#include "activities/activity.h"

#include <optional>

namespace kelo::engine {

/// What the player played comes again and again, after a bar that is counted in, so that one can
/// play along with oneself. What is played meanwhile is a recording of its own.
class DuetActivity : public Activity {
public:
    /// At `percent` of the tempo in which it was played.
    DuetActivity(Session &shared, Piece take, int percent);

    void enter(const Moment &now) override;
    void leave(const Moment &now) override;
    bool request(const Request &request, const Moment &now) override;
    void advance(const Moment &now) override;
    [[nodiscard]] std::optional<double> deadline() const override;

    [[nodiscard]] std::string place() const override { return "I play what you played, with you."; }
    [[nodiscard]] std::string_view help() const override;
    [[nodiscard]] std::string_view suggestions() const override;
    [[nodiscard]] std::optional<Beat> beat(const Moment &now) const override;
    [[nodiscard]] bool everyKeyIsMusic() const override { return true; }

private:
    enum class State { Waiting, CountingIn, Playing, Stopped };

    void again(const Request &request, const Moment &now);
    void stop(const Request &request, const Moment &now);
    void countIn(const Moment &now);

    SharedPiece take_;
    int percent_;
    double tempoBefore_ = 1;
    State state_ = State::Waiting;
    double next_ = 0; ///< when it goes on by itself
};

} // namespace kelo::engine
