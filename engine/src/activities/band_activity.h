#pragma once

#include "activities/activity.h"

namespace kelo::engine {

/// The live band: it follows the chords that are played.
class BandActivity : public Activity {
public:
    BandActivity(Session &shared, std::optional<int> tempo)
        : Activity(shared)
        , tempo_(tempo)
    {
    }

    void enter(const Moment &now) override;
    void leave(const Moment &now) override;
    bool request(const Request &request, const Moment &now) override;
    bool pause(const Moment &now) override;
    void resume(const Moment &now) override;
    [[nodiscard]] bool paused() const override { return !session_.band.on(); }
    void note(int pitch, int velocity, const Moment &now) override;
    void advance(const Moment &now) override { session_.band.advance(now.uptime); }
    [[nodiscard]] std::optional<double> deadline() const override
    {
        return session_.band.deadline();
    }

    [[nodiscard]] std::string place() const override { return "The live band plays with you."; }
    [[nodiscard]] std::string_view help() const override;
    [[nodiscard]] std::string_view suggestions() const override;
    [[nodiscard]] bool everyKeyIsMusic() const override { return true; }

private:
    void set(const Request &request, const Moment &now);
    void start(const Request &request, const Moment &now);
    void slower(const Request &request, const Moment &now);
    void faster(const Request &request, const Moment &now);
    void tempo(const Request &request, const Moment &now);
    void setTempo(int tempo, const Moment &now);

    std::optional<int> tempo_;
};

} // namespace kelo::engine
