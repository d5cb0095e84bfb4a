#include "activities/activity.h"

#include <algorithm>
#include <cmath>

namespace kelo::engine {

Beat beatOf(const Piece &piece, const Player &player, const Moment &now)
{
    constexpr double soon = 0.1;
    Beat beat{100, piece.beats, now.uptime + soon};
    // The first bar may be longer, by an upbeat.
    if (const std::size_t bars = piece.bars.size(); bars > 2) {
        const double bar = piece.bars[2] - piece.bars[1];
        const double tempo = std::clamp(beat.beats * 60 / bar * player.tempo(), 1.0, 10'000.0);
        beat.tempo = static_cast<int>(std::lround(tempo));
    }
    if (player.playing()) {
        const auto next = std::ranges::find_if(
            piece.bars, [&](double bar) { return player.timeOf(bar) > now.uptime + soon; });
        if (next != piece.bars.end())
            beat.nextBar = player.timeOf(*next);
    }
    return beat;
}

void Activity::leave(const Moment &)
{
    session_.player.stop();
    session_.metronome.stop();
}

bool Activity::pause(const Moment &now)
{
    const bool playing = session_.player.playing();
    session_.player.pause(now.uptime);
    if (playing)
        session_.metronome.stop();
    return playing;
}

void Activity::resume(const Moment &now)
{
    session_.player.carryOn(now.uptime);
}

void Activity::pauseOrCarryOn(const Moment &now)
{
    if (paused())
        resume(now);
    else
        pause(now);
}

} // namespace kelo::engine
