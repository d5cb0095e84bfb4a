#pragma once

#include "activities/playback_activity.h"
#include "songs/piece_loader.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>

namespace kelo::engine {

/// Every piece of the songs folder, one after the other, each announced. Each is read while the one
/// before it plays.
class AlbumActivity : public PlaybackActivity {
public:
    /// `song`: the place of its first piece in the library.
    AlbumActivity(Session &shared, std::size_t song, const Heard &piece);

    void enter(const Moment &now) override;
    void advance(const Moment &now) override;
    [[nodiscard]] std::optional<double> deadline() const override;
    [[nodiscard]] std::string place() const override;
    [[nodiscard]] std::string_view help() const override;

private:
    /// A piece that is being read.
    struct Coming {
        std::size_t song = 0;
        std::string title;
        std::unique_ptr<PieceLoader> loader;
    };

    void ended(const Moment &now) override;
    void next(const Request &request, const Moment &now) override;
    void previous(const Request &request, const Moment &now) override;
    void turnTo(std::size_t song, bool forward, const Moment &now);
    void read(std::size_t song);
    void look(double patience, const Moment &now);

    std::size_t first_;
    std::size_t song_;
    std::optional<Coming> coming_;
    bool wanted_ = false; ///< it is to be played once it has been read
    bool forward_ = true; ///< the way over files that hold no music
    bool goesOn_ = false; ///< to the next piece, once it can be announced
    double nextLook_ = 0;
};

/// Plays the album from its first file on that holds music; says so where none does.
void playAlbum(Session &session, const Moment &now);

} // namespace kelo::engine
