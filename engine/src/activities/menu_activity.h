#pragma once

#include "activities/activity.h"

namespace kelo::engine {

/// The song menu: one song at a time, to be heard or learnt.
class MenuActivity : public Activity {
public:
    /// Whether it says where the user is.
    enum class Entry { Spoken, Quiet };

    MenuActivity(Session &shared, Entry entry)
        : Activity(shared)
        , entry_(entry)
    {
    }

    void enter(const Moment &now) override;
    bool request(const Request &request, const Moment &now) override;
    /// Plays what the menu has come to where nothing plays.
    void pauseOrCarryOn(const Moment &now) override;

    [[nodiscard]] std::string_view mode() const override { return "menu"; }
    [[nodiscard]] unsigned where() const override { return InMenu; }
    [[nodiscard]] std::string place() const override;
    [[nodiscard]] std::string_view help() const override;
    [[nodiscard]] std::string_view suggestions() const override;
    [[nodiscard]] std::optional<Beat> beat(const Moment &now) const override;

private:
    void learn(const Request &request, const Moment &now);
    void next(const Request &request, const Moment &now);
    void previous(const Request &request, const Moment &now);
    void again(const Request &request, const Moment &now);
    void carryOn(const Request &request, const Moment &now);
    void stop(const Request &request, const Moment &now);
    void describe(const Moment &now);
    void play(const Moment &now);

    Entry entry_;
};

} // namespace kelo::engine
