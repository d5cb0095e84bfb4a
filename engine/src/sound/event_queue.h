#pragma once

#include "sound/instrument.h"
#include "sound/spsc_ring.h"
#include "sound/synth.h"

#include <atomic>
#include <cstdint>
#include <optional>
#include <vector>

namespace kelo::engine {

/// Sixteen channels of the synthesiser and what waits to be played on them. `play` and `silence`
/// are one thread's; everything else is the audio thread's and neither locks, allocates nor
/// waits.
class EventQueue : public Instrument {
public:
    explicit EventQueue(SynthPart part);

    bool play(Frame frame, ChannelMessage message) override;
    void setGain(float gain) override { gain_.store(gain, std::memory_order_relaxed); }
    void silence() override;

    [[nodiscard]] float gain() const { return gain_.load(std::memory_order_relaxed); }

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

    SynthPart part_;
    SpscRing<Note, notesWaiting> notes_;
    std::atomic<std::uint32_t> epoch_ = 0;
    std::atomic<float> gain_ = 1;
    std::uint64_t noteOrder_ = 0;

    // The audio thread's own.
    std::uint32_t heardEpoch_ = 0;
    std::vector<Note> pending_; ///< a heap, soonest first
};

} // namespace kelo::engine
