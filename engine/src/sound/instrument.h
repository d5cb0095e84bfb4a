#pragma once

#include "midi/channel_message.h"
#include "sound/audio_clock.h"

namespace kelo::engine {

/// What plays music asks of the sound below it.
class Instrument {
public:
    virtual ~Instrument() = default;

    /// Plays `message` when `frame` sounds, or at once if that is past. False when too much is
    /// waiting already: try again soon.
    virtual bool play(Frame frame, ChannelMessage message) = 0;

    /// How loud it plays from now on, beside everybody's own wishes; 1 is as it is.
    virtual void setGain(float gain) { static_cast<void>(gain); }

    /// Forgets what is waiting and lets go of every key.
    virtual void silence() = 0;
};

} // namespace kelo::engine
