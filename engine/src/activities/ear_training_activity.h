#pragma once

#include "activities/teaching_activity.h"
#include "training/ear_game.h"

#include <memory>
#include <utility>

namespace kelo::engine {

/// Training by ear, whichever game it is.
class EarTrainingActivity : public TeachingActivity {
public:
    EarTrainingActivity(Session &shared, std::unique_ptr<EarGame> game)
        : TeachingActivity(shared)
        , game_(std::move(game))
    {
    }

    void enter(const Moment &now) override;
    void leave(const Moment &now) override;
    bool request(const Request &request, const Moment &now) override;

    [[nodiscard]] std::string_view mode() const override { return "ear"; }
    [[nodiscard]] unsigned where() const override { return InEar; }
    [[nodiscard]] std::string place() const override { return std::string(game_->place()); }
    [[nodiscard]] std::string_view help() const override { return game_->help(); }
    [[nodiscard]] std::string_view suggestions() const override;

private:
    [[nodiscard]] Piece example() const override { return game_->demo(); }
    void listen(const Moment &) override { game_->listen(); }
    [[nodiscard]] bool listening() const override { return game_->listening(); }
    [[nodiscard]] Reply press(int pitch, const Moment &) override { return game_->press(pitch); }

    void repeat(const Request &request, const Moment &now);
    void next(const Request &request, const Moment &now);
    void answer(const Request &request, const Moment &now);
    void stop(const Request &request, const Moment &now);
    void home(const Request &request, const Moment &now);

    std::unique_ptr<EarGame> game_; ///< never empty
};

} // namespace kelo::engine
