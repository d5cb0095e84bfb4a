#pragma once

#include "music/message_feed.h"
#include "protocol/wire.h"
#include "sound/mixer.h"
#include "speech/speaker.h"
#include "speech/synthesiser.h"

#include <ebur128.h>

#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

inline const std::vector<std::string> noSoundfont;

/// What would be heard, rendered into memory with a clock that goes by the samples.
struct Rendered {
    static constexpr std::size_t block = 128;

    explicit Rendered(
        const std::vector<std::string> &fonts = {"/usr/share/sounds/sf2/TimGM6mb.sf2"})
        : mixer(std::make_unique<kelo::engine::Synth>(fonts), clock)
    {
    }

    kelo::engine::AudioClock clock{0};
    kelo::engine::Mixer mixer;
    std::vector<float> left;
    std::vector<float> right;

    [[nodiscard]] double now() const
    {
        return kelo::engine::seconds(static_cast<kelo::engine::Frame>(left.size()));
    }

    void renderBlock()
    {
        const double time = now();
        left.resize(left.size() + block);
        right.resize(right.size() + block);
        mixer.render(std::span(left).last(block), std::span(right).last(block), time);
    }
    void render(double seconds)
    {
        for (const double end = now() + seconds; now() < end;)
            renderBlock();
    }

    /// Plays a piece's first `length` seconds.
    void play(kelo::engine::Instrument &instrument, const kelo::engine::Piece &piece, double length)
    {
        const kelo::engine::Frame origin = clock.frameAt(now() + 0.1);
        const double end = now() + 0.1 + length;
        for (kelo::engine::MessageFeed feed(piece); const auto next = feed.next(); feed.pop()) {
            const kelo::engine::Frame frame = origin + kelo::engine::frames(next->at);
            while (next->at < length && !instrument.play(frame, next->message))
                renderBlock();
        }
        while (now() < end)
            renderBlock();
        instrument.silence();
    }

    /// Says it to the end.
    void say(std::string_view text, const kelo::engine::SpeechStyle &style = {})
    {
        kelo::engine::Wire wire([](std::string_view) {});
        kelo::engine::SpeechDispatcher none(false, [] {});
        // One for all, as in the engine: the library does not begin anew.
        static kelo::engine::Synthesiser voice([] {});
        kelo::engine::Speaker speaker(wire, none, voice, mixer, clock);
        speaker.setStyle(style);
        speaker.say(text, now());
        while (speaker.speaking()) {
            renderBlock();
            std::this_thread::sleep_for(std::chrono::microseconds(100)); // it has a thread
            speaker.advance(now());
        }
    }

    [[nodiscard]] float peak() const
    {
        float highest = 0;
        for (const auto *side : {&left, &right}) {
            for (const float sample : *side)
                highest = std::max(highest, std::abs(sample));
        }
        return highest;
    }

    /// Loudness from `from` seconds on, as EBU R128 has it, in LUFS.
    [[nodiscard]] double loudness(double from = 0, double to = 1e9) const
    {
        const auto begin = static_cast<std::size_t>(kelo::engine::frames(from));
        const auto end =
            std::min(left.size(), static_cast<std::size_t>(to * kelo::engine::sampleRate));
        std::vector<float> sides;
        for (std::size_t i = begin; i < end; ++i)
            sides.insert(sides.end(), {left[i], right[i]});
        ebur128_state *state = ebur128_init(2, 44100, EBUR128_MODE_I);
        ebur128_add_frames_float(state, sides.data(), sides.size() / 2);
        double value = 0;
        ebur128_loudness_global(state, &value);
        ebur128_destroy(&state);
        return value;
    }
};
