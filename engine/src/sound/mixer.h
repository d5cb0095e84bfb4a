#pragma once

#include "sound/audio_clock.h"
#include "sound/event_queue.h"
#include "sound/speech_output.h"
#include "sound/spsc_ring.h"
#include "sound/synth.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <span>

namespace kelo::engine {

/// Mixes the instruments and the voice. `render` is the audio thread's and neither locks,
/// allocates nor waits; everything else belongs to one other thread.
class Mixer : public SpeechOutput {
public:
    Mixer(Synth &instruments, AudioClock &audioClock);

    /// Pieces that are played, the player's own keys, and what keeps time: each can be silenced
    /// without the others.
    [[nodiscard]] Instrument &music() { return queues_[0]; }
    [[nodiscard]] Instrument &keys() { return queues_[1]; }
    [[nodiscard]] Instrument &rhythm() { return queues_[2]; }

    /// 1 is how loud the voice is by itself.
    void setVoiceLoudness(float value) { voiceLoudness_.store(value, std::memory_order_relaxed); }

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

    Synth &synth_;
    AudioClock &clock_;
    std::array<EventQueue, 3> queues_{
        EventQueue(SynthPart::Music), EventQueue(SynthPart::Keys), EventQueue(SynthPart::Rhythm)};
    SpscRing<Block, blocksWaiting> blocks_;
    std::atomic<std::uint32_t> wanted_ = 0;
    std::atomic<float> voiceLoudness_ = 1;

    // The audio thread's own.
    Frame position_ = 0;
    std::uint32_t heardUtterance_ = 0;
    float voiceGain_ = 0;
};

} // namespace kelo::engine
