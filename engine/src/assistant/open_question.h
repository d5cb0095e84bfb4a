#pragma once

#include "listen/request.h"
#include "listen/words.h"
#include "songs/song_name.h"

#include <optional>
#include <span>

namespace kelo::engine {

/// A question with two answers that awaits one of them. Seconds of the monotonic clock.
class OpenQuestion {
public:
    /// Seconds in which it can be answered.
    static constexpr double patience = 20;

    OpenQuestion(const Request &first, const Request &second, double now)
        : first_(first)
        , second_(second)
        , until_(now + patience)
    {
    }

    [[nodiscard]] bool expired(double now) const { return now > until_; }

    /// What the words choose: "the first", "the other one", or what only one of the two songs is
    /// called. Nothing where they choose neither.
    [[nodiscard]] std::optional<Request> chosen(
        std::span<const Word> words, std::span<const SongName> songs) const;

private:
    Request first_;
    Request second_;
    double until_;
};

} // namespace kelo::engine
