#pragma once

#include "activities/activity.h"

#include <optional>

namespace kelo::engine {

/// A note that is held under what is played, so that one hears how each tone stands to it. A key
/// that is played by itself is named with its interval.
class DroneActivity : public Activity {
public:
    /// `wanted` may say a note or a key; else it is C.
    DroneActivity(Session &shared, const Request &wanted);

    void enter(const Moment &now) override;
    bool request(const Request &request, const Moment &now) override;
    void note(int pitch, int velocity, const Moment &now) override;
    void takeBack(int pitch, const Moment &now) override;
    void advance(const Moment &now) override;
    [[nodiscard]] std::optional<double> deadline() const override;

    [[nodiscard]] std::string place() const override;
    [[nodiscard]] std::string_view help() const override;
    [[nodiscard]] std::string_view suggestions() const override;
    [[nodiscard]] bool everyKeyIsMusic() const override { return true; }

private:
    void set(const Request &request, const Moment &now);
    void higher(const Request &request, const Moment &now);
    void lower(const Request &request, const Moment &now);
    void again(const Request &request, const Moment &now);
    void stop(const Request &request, const Moment &now);
    void moveTo(int note, const Moment &now);
    void sound(const Moment &now);

    int root_;
    bool sounding_ = false;
    std::optional<int> key_; ///< played by itself, not yet named
    int keys_ = 0; ///< since it was quiet
    double lastKey_ = 0;
};

} // namespace kelo::engine
