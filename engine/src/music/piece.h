#pragma once

#include "midi/channel_message.h"
#include "music/hands.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kelo::engine {

/// A note of a piece; seconds from its beginning. Long pieces have a million of them: 16 bytes
/// each.
struct Note {
    Note() = default;
    Note(double start, double lasting, int key, int strength, int trackNumber = 0,
        int channelNumber = 0);

    void endAt(double time);
    void transpose(int semitones)
    {
        pitch = static_cast<std::uint8_t>(std::clamp(pitch + semitones, 0, 127));
    }

    double at = 0;
    float duration = 0;
    std::uint8_t pitch = 0;
    std::uint8_t velocity = 0;
    std::uint8_t track = 0; ///< of more tracks than fit the last ones are one
    std::uint8_t channel = 0;

    friend bool operator==(const Note &, const Note &) = default;
};

/// What is known of a note besides, where somebody wrote it down.
struct NoteMark {
    Hands hand = Hands::Both; ///< Both: no hand's
    std::int8_t finger = 0; ///< 1 to 5; 0 where none is given
    bool grace = false;
    bool trill = false; ///< its neighbours may sound, too
    bool rolled = false;
};

struct WrittenPiece;

/// What an instrument is told, and when.
struct TimedMessage {
    double at = 0;
    ChannelMessage message;
};

/// How the black keys are called: C sharp, D flat, or each by its commoner name.
enum class Spelling { Sharps, Flats, Mixed };

/// A piece of music. Notes and messages are in the order of time; what presses and lets go of the
/// keys of the notes is not among the messages, MessageFeed adds it.
struct Piece {
    std::vector<Note> notes;
    std::vector<TimedMessage> messages;
    double length = 0; ///< seconds until the last note has ended
    std::vector<double> bars; ///< when each bar begins; an upbeat is part of the first
    std::vector<int> barNumbers; ///< as they are printed; empty where they only count
    std::vector<NoteMark> marks; ///< one a note; empty where nothing is known of them
    std::vector<std::string> trackNames; ///< those that are given, by track
    std::shared_ptr<const WrittenPiece> written; ///< where it was read from a score
    int beats = 4; ///< of a bar
    int unit = 4; ///< of a beat: 4 is a quarter, 8 an eighth
    Spelling spelling = Spelling::Mixed;
    bool endsEarly = false; ///< it was cut off: a file that is not whole
};

/// Where the bar with this number begins in the list of bars; nothing where there is none.
[[nodiscard]] std::optional<std::size_t> barPlace(const Piece &piece, int number);

/// Sets the length to the end of the last note.
void measureLength(Piece &piece);

/// A piece that several may hold and none changes.
class SharedPiece {
public:
    SharedPiece(
        Piece piece = {}) // NOLINT(google-explicit-constructor): one is as good as the other
        : piece_(std::make_shared<const Piece>(std::move(piece)))
    {
    }

    operator const Piece &() const { return *piece_; } // NOLINT(google-explicit-constructor)
    const Piece &operator*() const { return *piece_; }
    const Piece *operator->() const { return piece_.get(); }

private:
    std::shared_ptr<const Piece> piece_;
};

} // namespace kelo::engine
