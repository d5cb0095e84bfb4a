#pragma once

#include "activities/lesson_teaching.h"
#include "practice/practice_plan.h"

#include <deque>

namespace kelo::engine {

/// Practice that is led, for some minutes: a scale to warm up, the bars that need it most, and a
/// piece that is known.
class PracticeActivity : public LessonTeaching {
public:
    PracticeActivity(Session &shared, int minutes);

    void enter(const Moment &now) override;
    void leave(const Moment &now) override;
    bool request(const Request &request, const Moment &now) override;
    void note(int pitch, int velocity, const Moment &now) override;
    void advance(const Moment &now) override;
    [[nodiscard]] std::optional<double> deadline() const override;

    [[nodiscard]] std::string place() const override;
    [[nodiscard]] std::string_view help() const override;
    [[nodiscard]] std::string_view suggestions() const override;

private:
    enum class Part { WarmUp, Weakest, Known };

    struct Station {
        Part part;
        std::string opening;
        Lesson lesson;
    };

    [[nodiscard]] const Lesson &current() const override { return stations_.front().lesson; }
    [[nodiscard]] Lesson &current() override { return stations_.front().lesson; }
    [[nodiscard]] Reply press(int pitch, const Moment &now) override;
    void over(const Moment &now) override;

    void again(const Request &request, const Moment &now);
    void next(const Request &request, const Moment &now);
    void names(const Request &request, const Moment &now);
    void stop(const Request &request, const Moment &now);

    void plan(const Moment &now);
    void warmUp(const Moment &now);
    void add(Part part, const std::string &piece, Hands hands, const Assignment *bars);
    [[nodiscard]] Reply goOn(Reply reply, const Moment &now);
    [[nodiscard]] std::string farewell() const;
    void keep(const Moment &now);

    int minutes_;
    double until_ = 0;
    double lastKey_ = 0;
    std::deque<Station> stations_; ///< the first one is on
    int played_ = 0; ///< bars
    int clean_ = 0; ///< of them
};

} // namespace kelo::engine
