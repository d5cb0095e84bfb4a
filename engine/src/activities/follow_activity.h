#pragma once

#include "activities/activity.h"
#include "following/accompaniment_part.h"
#include "following/score_follower.h"

#include <map>
#include <vector>

namespace kelo::engine {

/// The player plays some bars, with one hand or both; the other hand accompanies and waits. At the
/// end it begins again.
class FollowActivity : public Activity {
public:
    /// `request` may say hands, bars and a tempo in percent.
    FollowActivity(Session &shared, Heard what, const Request &request);

    /// Why it cannot be done: bars that are not there, or hands that have no notes in them. Empty
    /// where it can.
    [[nodiscard]] std::string fault() const;

    void enter(const Moment &now) override;
    void leave(const Moment &now) override;
    bool request(const Request &request, const Moment &now) override;
    bool pause(const Moment &now) override;
    /// Shows the part, or silences it.
    void pauseOrCarryOn(const Moment &now) override;
    void note(int pitch, int velocity, const Moment &now) override;
    void advance(const Moment &now) override;
    [[nodiscard]] std::optional<double> deadline() const override;

    [[nodiscard]] unsigned where() const override { return InLesson; }
    [[nodiscard]] std::string_view mode() const override { return "follow"; }
    [[nodiscard]] std::string place() const override;
    [[nodiscard]] std::string_view help() const override;
    [[nodiscard]] std::string_view suggestions() const override;
    [[nodiscard]] std::optional<Beat> beat(const Moment &now) const override;
    [[nodiscard]] bool everyKeyIsMusic() const override { return true; }

private:
    struct Held {
        int pitch;
        double until;
    };

    void again(const Request &request, const Moment &now);
    void show(const Request &request, const Moment &now);
    void toBars(const Request &request, const Moment &now);
    void next(const Request &request, const Moment &now);
    void previous(const Request &request, const Moment &now);
    void setHands(const Request &request, const Moment &now);
    void nextHands(const Request &request, const Moment &now);
    void tempo(const Request &request, const Moment &now);
    void slower(const Request &request, const Moment &now);
    void faster(const Request &request, const Moment &now);

    void shift(int by, const Moment &now);
    void change(BarRange bars, Hands hands, const Moment &now);
    void setTempo(int percent, const Moment &now);
    void begin(const std::string &words, const Moment &now);
    void passed(const Moment &now);
    [[nodiscard]] int barAt(double at) const;
    void release(double until);
    [[nodiscard]] std::string task() const;

    Heard what_;
    Piece piece_; ///< each bar once, with the hands of its notes
    BarRange bars_; ///< as they are printed
    Hands hands_; ///< the player's
    int tempo_; ///< percent of what is written
    ScoreFollower follower_;
    AccompanimentPart part_;
    std::vector<Held> held_; ///< keys of the accompaniment
    std::size_t lastKeys_ = 0; ///< of the last step
    int wrong_ = 0; ///< keys in this pass
    std::map<int, int> wrongKeys_; ///< the same by bar
    int badPasses_ = 0;
};

} // namespace kelo::engine
