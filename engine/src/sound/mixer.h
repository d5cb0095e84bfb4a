#pragma once

#include "sound/audio_clock.h"
#include "sound/section.h"
#include "sound/spsc_ring.h"
#include "sound/synth.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <span>

namespace kelo::engine {

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
class Mixer : public Mouth {
public:
    Mixer(Synth &instruments, AudioClock &audioClock);

    /// Pieces that are played, the player's own keys, and what keeps time: each can be silenced
    /// without the others.
    [[nodiscard]] Instrument &music() { return sections[0]; }
    [[nodiscard]] Instrument &keys() { return sections[1]; }
    [[nodiscard]] Instrument &rhythm() { return sections[2]; }

    /// 1 is how loud the voice is by itself.
    void setVoiceLoudness(float value) { voiceLoudness.store(value, std::memory_order_relaxed); }

    bool speak(std::uint32_t utterance, Frame frame, std::span<const float> samples) override;
    void listenTo(std::uint32_t utterance) override;

    /// The next block of both sides, at `now` (seconds).
    void render(std::span<float> left, std::span<float> right, double now);

private:
    struct Block {
        std::uint32_t utterance = 0;
        Frame frame = 0;
        std::size_t count = 0;
        std::array<float, blockSize> samples{};
    };

    void renderNotes(std::span<float> left, std::span<float> right);
    void renderVoice(std::span<float> left, std::span<float> right);

    static constexpr std::size_t blocksWaiting = 256;

    Synth &synth;
    AudioClock &clock;
    std::array<Section, 3> sections{
        Section(SynthPart::Music), Section(SynthPart::Keys), Section(SynthPart::Rhythm)};
    SpscRing<Block, blocksWaiting> blocks;
    std::atomic<std::uint32_t> wanted = 0;
    std::atomic<float> voiceLoudness = 1;

    // The audio thread's own.
    Frame position = 0;
    std::uint32_t heardUtterance = 0;
    float voiceGain = 0;
};

} // namespace kelo::engine
