#pragma once

#include "activities/teaching_activity.h"
#include "training/ear_trainer.h"

namespace kelo::engine {

/// Ear training.
class EarTrainingActivity : public TeachingActivity {
public:
    explicit EarTrainingActivity(Session &shared, std::uint32_t seed)
        : TeachingActivity(shared)
        , trainer_(seed)
    {
    }

    void enter(const Moment &now) override;
    void leave(const Moment &now) override;
    bool request(const Request &request, const Moment &now) override;

    [[nodiscard]] std::string_view mode() const override { return "ear"; }
    [[nodiscard]] unsigned where() const override { return InEar; }
    [[nodiscard]] std::string place() const override { return "This is ear training."; }
    [[nodiscard]] std::string_view help() const override;
    [[nodiscard]] std::string_view suggestions() const override;

private:
    [[nodiscard]] Piece example() const override { return trainer_.demo(); }
    void listen(const Moment &) override { trainer_.listen(); }
    [[nodiscard]] bool listening() const override { return trainer_.listening(); }
    [[nodiscard]] Reply press(int pitch, const Moment &) override { return trainer_.press(pitch); }

    void repeat(const Request &request, const Moment &now);
    void next(const Request &request, const Moment &now);
    void answer(const Request &request, const Moment &now);
    void stop(const Request &request, const Moment &now);
    void home(const Request &request, const Moment &now);

    EarTrainer trainer_;
};

} // namespace kelo::engine
