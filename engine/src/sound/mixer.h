#pragma once

#include "sound/audio_clock.h"
#include "sound/ducker.h"
#include "sound/event_queue.h"
#include "sound/fader.h"
#include "sound/limiter.h"
#include "sound/speech_output.h"
#include "sound/spsc_ring.h"
#include "sound/synth.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace kelo::engine {

/// Mixes the instruments and the voice, each at its own loudness. Music that is played goes down
/// under speech, and no sample ever clips. `render` is the audio thread's and neither locks,
/// allocates nor waits; everything else belongs to one other thread.
class Mixer : public SpeechOutput {
public:
    Mixer(std::unique_ptr<Synth> instruments, AudioClock &audioClock);
    ~Mixer() override;
    Mixer(const Mixer &) = delete;
    Mixer &operator=(const Mixer &) = delete;

    /// Pieces that are played, the player's own keys, the band and what keeps time: each can be
    /// silenced without the others.
    [[nodiscard]] Instrument &music() { return queues_[0]; }
    [[nodiscard]] Instrument &keys() { return queues_[1]; }
    [[nodiscard]] Instrument &band() { return queues_[2]; }
    [[nodiscard]] Instrument &ticks() { return queues_[3]; }

    /// There is a soundfont: this file.
    [[nodiscard]] bool sounds() const { return !soundfont_.empty(); }
    [[nodiscard]] const std::string &soundfont() const { return soundfont_; }

    /// 1 is the balance that everything has by itself, 2 twice as loud. Follows smoothly.
    void setLoudness(Fader fader, float value);

    /// Plays on with other instruments. Those that they replace are kept until
    /// `dropReplacedInstruments`, for only another thread than the audio thread may delete them.
    void setInstruments(std::unique_ptr<Synth> instruments);
    void dropReplacedInstruments();

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

    void takeInstruments();
    void renderBlock(Stereo out);
    void renderNotes(const std::array<Stereo, synthParts> &parts);
    [[nodiscard]] bool renderVoice(std::span<float> voice);

    static constexpr std::size_t blocksWaiting = 256;

    static constexpr std::size_t longestBlock = 256;

    AudioClock &clock_;
    std::array<EventQueue, synthParts> queues_{EventQueue(SynthPart::Pieces),
        EventQueue(SynthPart::Keys), EventQueue(SynthPart::Band), EventQueue(SynthPart::Ticks)};
    SpscRing<Block, blocksWaiting> blocks_;
    std::atomic<std::uint32_t> wanted_ = 0;
    std::array<std::atomic<float>, faders> loudness_;
    std::string soundfont_;
    std::atomic<Synth *> incoming_ = nullptr; ///< owned, until the audio thread takes it
    std::atomic<Synth *> outgoing_ = nullptr; ///< owned, until somebody else deletes it

    // The audio thread's own.
    std::unique_ptr<Synth> synth_;
    Frame position_ = 0;
    std::uint32_t heardUtterance_ = 0;
    float voiceGain_ = 0;
    std::array<float, faders> gains_; ///< at the end of the last block
    Ducker ducker_;
    Limiter limiter_;
    std::array<std::array<float, longestBlock>, 2 * synthParts + 1> scratch_{};
};

} // namespace kelo::engine
