#pragma once

#include "listen/sounded_request.h"
#include "listen/words.h"
#include "songs/song_name.h"

#include <optional>
#include <span>
#include <string>

namespace kelo::engine {

/// A question that awaits one of one or two answers. Seconds of the monotonic clock.
class OpenQuestion {
public:
    /// Seconds in which it can be answered.
    static constexpr double patience = 20;

    /// Which of two songs, or where there are none, whether to do the first (yes) or the second
    /// (no).
    OpenQuestion(const Request &first, const Request &second, double now)
        : first_{first, {}}
        , second_(Wording{second, {}})
        , until_(now + patience)
    {
    }

    /// Whether that was meant.
    OpenQuestion(Sounded meant, double now)
        : first_(std::move(meant.likeliest))
        , second_(std::move(meant.other))
        , until_(now + patience)
    {
    }

    struct Answer {
        std::optional<Request> request; ///< none where it was a no
    };

    [[nodiscard]] bool expired(double now) const { return now > until_; }

    /// What the words choose: "the first", "the other one", what only one of the two songs is
    /// called, or what sounds most like what was asked about. Nothing where they choose none.
    [[nodiscard]] std::optional<Answer> chosen(
        std::span<const Word> words, std::span<const SongName> songs) const;

private:
    [[nodiscard]] std::optional<Answer> song(
        std::span<const Word> words, std::span<const SongName> songs) const;

    Wording first_;
    std::optional<Wording> second_;
    double until_;
};

} // namespace kelo::engine
