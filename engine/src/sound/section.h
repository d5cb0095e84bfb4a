#pragma once

#include "sound/audio_clock.h"
#include "sound/spsc_ring.h"
#include "sound/synth.h"

#include <atomic>
#include <cstdint>
#include <optional>
#include <vector>

namespace kelo::engine {

/// What plays music asks of the sound below it.
class Instrument {
public:
    virtual ~Instrument() = default;

    /// Plays `message` when `frame` sounds, or at once if that is past. False when too much is
    /// waiting already: try again soon.
    virtual bool play(Frame frame, ChannelMessage message) = 0;

    /// Forgets what is waiting and lets go of every key.
    virtual void silence() = 0;
};

/// Sixteen channels of the synthesiser and what waits to be played on them. `play` and `silence`
/// are one thread's; everything else is the audio thread's and neither locks, allocates nor
/// waits.
class Section : public Instrument {
public:
    explicit Section(SynthPart part);

    bool play(Frame frame, ChannelMessage message) override;
    void silence() override;

    /// Takes in what has been asked for since the last call.
    void gather(Synth &synth);

    /// When the next message is due, if one waits.
    [[nodiscard]] std::optional<Frame> due() const;

    /// Plays that message.
    void playNext(Synth &synth);

private:
    struct Note {
        Frame frame = 0;
        std::uint64_t order = 0;
        std::uint32_t epoch = 0;
        ChannelMessage message;
    };
    struct Later {
        bool operator()(const Note &a, const Note &b) const
        {
            return a.frame != b.frame ? a.frame > b.frame : a.order > b.order;
        }
    };

    static constexpr std::size_t notesWaiting = 4096;

    SynthPart part;
    SpscRing<Note, notesWaiting> notes;
    std::atomic<std::uint32_t> epoch = 0;
    std::uint64_t noteOrder = 0;

    // The audio thread's own.
    std::uint32_t heardEpoch = 0;
    std::vector<Note> pending; ///< a heap, soonest first
};

} // namespace kelo::engine
