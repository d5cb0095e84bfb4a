#pragma once

#include "activities/activity.h"

#include <vector>

namespace kelo::engine {

/// Composing: what is played becomes a theme in bars, phrase by phrase, to be read back, played as
/// a band, varied and saved.
class ComposeActivity : public Activity {
public:
    ComposeActivity(Session &shared, std::optional<Metre> metre)
        : Activity(shared)
        , metre_(metre)
    {
    }

    void enter(const Moment &now) override;
    void leave(const Moment &now) override;
    bool request(const Request &request, const Moment &now) override;
    void note(int pitch, int velocity, const Moment &now) override;
    void takeBack(int pitch, const Moment &now) override;
    void advance(const Moment &now) override;
    [[nodiscard]] std::optional<double> deadline() const override;

    [[nodiscard]] std::string_view mode() const override { return "compose"; }
    [[nodiscard]] unsigned where() const override { return InCompose; }
    [[nodiscard]] std::string place() const override;
    [[nodiscard]] std::string_view help() const override;
    [[nodiscard]] std::string_view suggestions() const override;
    [[nodiscard]] bool everyKeyIsMusic() const override { return true; }

    static constexpr double phraseEnds = 2.5; ///< seconds without a key

private:
    void playAsBand(const Request &request, const Moment &now);
    void readBack(const Request &request, const Moment &now);
    void variation(const Request &request, const Moment &now);
    void save(const Request &request, const Moment &now);
    void newPiece(const Request &request, const Moment &now);
    void nextPiece(const Request &request, const Moment &now);
    void idea(const Request &request, const Moment &now);
    void again(const Request &request, const Moment &now);
    void stop(const Request &request, const Moment &now);
    void lullaby(const Request &request, const Moment &now);
    void videoGame(const Request &request, const Moment &now);
    void filmScore(const Request &request, const Moment &now);

    void writeDown(const Moment &now);
    bool hasPiece(const Moment &now);
    void play(const Score &score, const Moment &now);
    [[nodiscard]] Score forTwoHands() const;
    bool saveFiles(const Moment &now) const;

    std::optional<Metre> metre_;
    std::vector<Note> phrase_; ///< not written down yet; seconds of the monotonic clock
    double lastKey_ = 0;
    int variation_ = -1;
    std::size_t idea_ = 0;
    std::optional<Score> example_; ///< waits for the words before it
};

} // namespace kelo::engine
