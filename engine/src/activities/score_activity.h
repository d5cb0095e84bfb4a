#pragma once

#include "activities/activity.h"
#include "reading/description.h"
#include "reading/walk.h"

namespace kelo::engine {

/// The talking score: a walk through a piece, step by step. Each step sounds what is written there
/// and then says it, or is silent about it.
class ScoreActivity : public Activity {
public:
    ScoreActivity(Session &shared, Heard what, std::optional<BarRange> bars);

    void enter(const Moment &now) override;
    bool request(const Request &request, const Moment &now) override;
    bool pause(const Moment &now) override;
    /// Plays on from here, or stops.
    void pauseOrCarryOn(const Moment &now) override;
    void advance(const Moment &now) override;

    [[nodiscard]] std::string_view mode() const override { return "score"; }
    [[nodiscard]] unsigned where() const override { return InScore; }
    [[nodiscard]] std::string place() const override;
    [[nodiscard]] std::string_view help() const override;
    [[nodiscard]] std::string_view suggestions() const override;

private:
    void next(const Request &request, const Moment &now);
    void previous(const Request &request, const Moment &now);
    void again(const Request &request, const Moment &now);
    void stop(const Request &request, const Moment &now);
    void toBars(const Request &request, const Moment &now);
    void readBars(const Request &request, const Moment &now);
    void before(const Request &request, const Moment &now);
    void key(const Request &request, const Moment &now);
    void chord(const Request &request, const Moment &now);
    void silent(const Request &request, const Moment &now);
    void braille(const Request &request, const Moment &now);
    void saveBraille(const Request &request, const Moment &now);
    void byNote(const Request &request, const Moment &now);
    void byBeat(const Request &request, const Moment &now);
    void byBar(const Request &request, const Moment &now);
    void byPhrase(const Request &request, const Moment &now);
    void setHands(const Request &request, const Moment &now);
    void nextHands(const Request &request, const Moment &now);

    void step(int by, const Moment &now);
    void walkBy(WalkUnit unit, std::string_view name, const Moment &now);
    /// Sounds a stretch; the words follow.
    void show(Stretch stretch, Hands hands, std::string words, const Moment &now);
    [[nodiscard]] Piece soundOf(Stretch stretch, Hands hands, double longest) const;

    Heard what_;
    Piece piece_; ///< each bar once
    Walk walk_;
    std::optional<BarRange> bars_;
    Description description_;
    std::string words_; ///< for when the notes have sounded
    std::string braille_; ///< for when the words have been said
    bool silent_ = false;
};

} // namespace kelo::engine
