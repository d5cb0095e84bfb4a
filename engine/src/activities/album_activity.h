#pragma once

#include "activities/playback_activity.h"

namespace kelo::engine {

/// Every piece of the songs folder, one after the other, each announced.
class AlbumActivity : public PlaybackActivity {
public:
    /// `first`: the place of the first piece in the library.
    AlbumActivity(Session &shared, std::size_t first, const Heard &piece);

    void advance(const Moment &now) override;
    [[nodiscard]] std::string place() const override;
    [[nodiscard]] std::string_view help() const override;

private:
    void ended(const Moment &now) override;
    void next(const Request &request, const Moment &now) override;
    void previous(const Request &request, const Moment &now) override;
    void toTrack(std::size_t song, bool forward, const Moment &now);

    std::size_t first_;
    std::size_t song_;
    bool goesOn_ = false; ///< to the next piece, once it can be announced
};

} // namespace kelo::engine
