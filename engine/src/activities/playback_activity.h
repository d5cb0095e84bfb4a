#pragma once

#include "activities/activity.h"

namespace kelo::engine {

/// Listening to a piece: a song, a file, or what the user played.
class PlaybackActivity : public Activity {
public:
    /// What was made up is kept by S, as long as nothing is played on it.
    enum class Kind { Known, MadeUp };

    /// `percent` is a tempo for this piece alone.
    PlaybackActivity(Session &shared, Heard what, std::string announcement, Kind kind = Kind::Known,
        std::optional<int> percent = {});

    void enter(const Moment &now) override;
    void leave(const Moment &now) override;
    bool request(const Request &request, const Moment &now) override;
    void note(int pitch, int velocity, const Moment &now) override;
    void advance(const Moment &now) override;

    [[nodiscard]] std::string place() const override;
    [[nodiscard]] std::string_view help() const override;
    [[nodiscard]] std::string_view suggestions() const override;
    [[nodiscard]] std::optional<Beat> beat(const Moment &now) const override;

protected:
    /// Plays another piece in its place.
    void play(Heard what, const Moment &now);
    /// The piece has come to its end.
    virtual void ended(const Moment &) { }
    virtual void next(const Request &request, const Moment &now);
    virtual void previous(const Request &request, const Moment &now);

private:
    void again(const Request &request, const Moment &now);
    void toBars(const Request &request, const Moment &now);
    void skip(int bars, const Moment &now);
    void transpose(const Request &request, const Moment &now);
    void keep(const Moment &now);

    Heard first_; ///< until it is played
    std::string announcement_;
    Kind kind_;
    std::optional<int> percent_;
    double tempoBefore_ = 1;
    bool playing_ = false;
};

/// A piece with every note this many semitones higher; drums stay.
[[nodiscard]] Piece transposed(Piece piece, int semitones);

} // namespace kelo::engine
