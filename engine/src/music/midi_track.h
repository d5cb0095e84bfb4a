#pragma once

#include "midi/channel_message.h"
#include "music/midi_reader.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kelo::engine {

using Ticks = std::uint64_t;

/// What happens in a track.
struct MidiEvent {
    Ticks at = 0;
    int track = 0;
    ChannelMessage message{}; ///< status 0 where something else is meant, or the track's end
    double tempo = 0; ///< seconds a quarter note
    int beats = 0; ///< of a bar from here on; 0 where nothing is said of it
    int unit = 4; ///< of a beat
    std::optional<int> sharps{}; ///< of the key signature; below 0 flats
    std::string name{}; ///< of the track; as much of it as anybody reads
};

/// Reads the events of a track up to its end, or to where it is damaged.
class MidiTrack {
public:
    MidiTrack(MidiReader part, int number)
        : reader_(std::move(part))
        , number_(number)
    {
    }

    /// The next event; the last one is the track's end.
    [[nodiscard]] std::optional<MidiEvent> next();

    /// It ended before its end.
    [[nodiscard]] bool broken() const { return state_ == State::Broken; }
    [[nodiscard]] std::size_t bytesLeft() const { return reader_.left(); }

private:
    enum class State { Reading, Ended, Broken };

    [[nodiscard]] std::optional<MidiEvent> meta(int kind, const std::string &data) const;
    MidiEvent end(State state);

    MidiReader reader_;
    int number_;
    Ticks now_ = 0;
    std::uint8_t running_ = 0;
    State state_ = State::Reading;
};

/// The events of all tracks in the order of time, without holding more than one of each.
class MidiTracks {
public:
    /// `oneAfterTheOther`: each track begins where the one before it ends, instead of all at once.
    MidiTracks(std::vector<MidiTrack> tracks, bool oneAfterTheOther);

    [[nodiscard]] std::optional<MidiEvent> next();

    /// One of the tracks ended before its end; known when all have been read.
    [[nodiscard]] bool broken() const;
    [[nodiscard]] std::size_t bytesLeft() const;

private:
    struct Waiting {
        MidiEvent event;
        std::size_t track = 0;
    };
    struct Later {
        bool sequence;
        bool operator()(const Waiting &a, const Waiting &b) const
        {
            if (!sequence && a.event.at != b.event.at)
                return a.event.at > b.event.at;
            return a.track > b.track;
        }
    };

    void read(std::size_t track);
    [[nodiscard]] Later later() const;

    std::vector<MidiTrack> tracks_;
    bool sequence_;
    std::vector<Waiting> waiting_; ///< a heap, soonest first
    std::size_t current_ = 0; ///< of those that follow each other
    Ticks offset_ = 0;
    Ticks last_ = 0;
};

} // namespace kelo::engine
