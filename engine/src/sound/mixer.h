#pragma once

#include "sound/audio_clock.h"
#include "sound/spsc_ring.h"
#include "sound/synth.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <span>
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

/// What speaks asks of the sound below it.
class Mouth {
public:
    virtual ~Mouth() = default;

    /// One block of an utterance: mono samples that sound from `frame` on. Samples whose time
    /// is past are left out. False when enough is waiting already.
    static constexpr std::size_t blockSize = 256;
    virtual bool speak(std::uint32_t utterance, Frame frame, std::span<const float> samples) = 0;

    /// Only this utterance is heard from now on; another one's rest is faded out at once.
    virtual void listenTo(std::uint32_t utterance) = 0;
};

/// Mixes the instruments and the voice. `render` is the audio thread's and neither locks,
/// allocates nor waits; everything else belongs to one other thread.
class Mixer : public Instrument, public Mouth {
public:
    Mixer(Synth &instruments, AudioClock &audioClock);

    bool play(Frame frame, ChannelMessage message) override;
    void silence() override;
    bool speak(std::uint32_t utterance, Frame frame, std::span<const float> samples) override;
    void listenTo(std::uint32_t utterance) override;

    /// The next block of both sides, at `now` (seconds).
    void render(std::span<float> left, std::span<float> right, double now);

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
    struct Block {
        std::uint32_t utterance = 0;
        Frame frame = 0;
        std::size_t count = 0;
        std::array<float, blockSize> samples{};
    };

    void gatherNotes();
    void renderNotes(std::span<float> left, std::span<float> right);
    void renderVoice(std::span<float> left, std::span<float> right);

    static constexpr std::size_t notesWaiting = 4096;
    static constexpr std::size_t blocksWaiting = 256;

    Synth &synth;
    AudioClock &clock;
    SpscRing<Note, notesWaiting> notes;
    SpscRing<Block, blocksWaiting> blocks;
    std::atomic<std::uint32_t> epoch = 0;
    std::atomic<std::uint32_t> wanted = 0;
    std::uint64_t noteOrder = 0;

    // The audio thread's own.
    Frame position = 0;
    std::uint32_t heardEpoch = 0;
    std::vector<Note> pending; ///< a heap, soonest first
    std::uint32_t heardUtterance = 0;
    float voiceGain = 0;
};

} // namespace kelo::engine
