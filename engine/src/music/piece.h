#pragma once

#include "midi/channel_message.h"

#include <vector>

namespace kelo::engine {

/// A note of a piece; seconds from its beginning.
struct Note {
    double at = 0;
    double duration = 0;
    int pitch = 0;
    int velocity = 0;
    int track = 0;
    int channel = 0;

    friend bool operator==(const Note &, const Note &) = default;
};

/// What an instrument is told, and when.
struct TimedMessage {
    double at = 0;
    ChannelMessage message;
};

/// How the black keys are called: C sharp, D flat, or each by its commoner name.
enum class Spelling { Sharps, Flats, Mixed };

/// A piece of music. Both lists are in the order of time.
struct Piece {
    std::vector<Note> notes;
    std::vector<TimedMessage> messages;
    double length = 0; ///< seconds until the last note has ended
    std::vector<double> bars; ///< when each bar begins; an upbeat is part of the first
    int beats = 4; ///< of a bar
    Spelling spelling = Spelling::Mixed;
    bool endsEarly = false; ///< it was cut off: a file that is not whole
};

/// Adds what a piano is told to play the notes, and the length.
void addMessages(Piece &piece);

} // namespace kelo::engine
