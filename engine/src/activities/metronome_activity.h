#pragma once

#include "activities/activity.h"

namespace kelo::engine {

/// The metronome by itself.
class MetronomeActivity : public Activity {
public:
    MetronomeActivity(Session &shared, const Request &wanted)
        : Activity(shared)
        , wanted_(wanted)
    {
    }

    void enter(const Moment &now) override;
    bool request(const Request &request, const Moment &now) override;
    bool pause(const Moment &now) override;
    void resume(const Moment &now) override;
    [[nodiscard]] bool paused() const override { return !session_.metronome.ticking(); }

    [[nodiscard]] std::string place() const override;
    [[nodiscard]] std::string_view help() const override;
    [[nodiscard]] std::string_view suggestions() const override;

private:
    void set(const Request &request, const Moment &now);
    void slower(const Request &request, const Moment &now);
    void faster(const Request &request, const Moment &now);
    void moreParts(const Request &request, const Moment &now);
    void nextMetre(const Request &request, const Moment &now);
    void again(const Request &request, const Moment &now);
    void start(int tempo, int beats, const Moment &now);

    Request wanted_;
};

} // namespace kelo::engine
