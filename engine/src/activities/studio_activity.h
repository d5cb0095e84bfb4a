#pragma once

#include "activities/activity.h"
#include "studio/studio_control.h"

namespace kelo::engine {

/// Controls an audio workstation: groups of commands, one level deep.
class StudioActivity : public Activity {
public:
    enum class Program { Logic, Reaper };

    StudioActivity(Session &shared, Program program);

    void enter(const Moment &now) override;
    void leave(const Moment &now) override;
    bool request(const Request &request, const Moment &now) override;
    bool pause(const Moment &now) override;
    void resume(const Moment &now) override;
    [[nodiscard]] bool paused() const override { return !rolling_; }
    void advance(const Moment &now) override;

    [[nodiscard]] std::string_view mode() const override;
    [[nodiscard]] unsigned where() const override { return InStudio; }
    [[nodiscard]] std::string place() const override;
    [[nodiscard]] std::string_view help() const override;
    [[nodiscard]] std::string_view suggestions() const override;

private:
    void choose(const Request &request, const Moment &now);
    void back(const Request &request, const Moment &now);
    void next(const Request &request, const Moment &now);
    void previous(const Request &request, const Moment &now);
    void stop(const Request &request, const Moment &now);
    void faster(const Request &request, const Moment &now);
    void slower(const Request &request, const Moment &now);
    void step(std::size_t by, const Moment &now);
    void give(StudioCommand command, std::string_view name, const Moment &now);
    [[nodiscard]] bool connected() const { return control_ && control_->connected(); }
    [[nodiscard]] std::string_view programName() const;

    Program program_;
    StudioControl *control_;
    bool answered_ = false;
    bool rolling_ = false;
    bool inGroup_ = false;
    std::size_t group_ = 0;
    std::size_t item_ = 0;
};

} // namespace kelo::engine
