#pragma once

#include "activities/activity.h"

#include <vector>

namespace kelo::engine {

/// Jamming: it listens to a phrase of four or eight bars, answers with as many in the same key and
/// tempo, and leaves room for the next.
class JamActivity : public Activity {
public:
    using Activity::Activity;

    void enter(const Moment &now) override;
    bool request(const Request &request, const Moment &now) override;
    void note(int pitch, int velocity, const Moment &now) override;
    void takeBack(int pitch, const Moment &now) override;
    void advance(const Moment &now) override;
    [[nodiscard]] std::optional<double> deadline() const override;

    [[nodiscard]] std::string place() const override { return "We are jamming."; }
    [[nodiscard]] std::string_view help() const override;
    [[nodiscard]] std::string_view suggestions() const override;
    [[nodiscard]] bool everyKeyIsMusic() const override { return true; }

private:
    void again(const Request &request, const Moment &now);
    void slower(const Request &request, const Moment &now);
    void faster(const Request &request, const Moment &now);
    void changeTempo(int by, const Moment &now);
    void answer(const Moment &now);

    std::vector<Note> phrase_; ///< seconds of the monotonic clock
    double lastKey_ = 0;
    int held_ = 0;
    std::optional<Score> last_; ///< the answer before
    int faster_ = 0; ///< quarters a minute that answers are faster than what was played
};

} // namespace kelo::engine
