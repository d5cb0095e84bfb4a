#pragma once

#include "assistant/assistant.h"
#include "sound/mixer.h"
#include "sound/sound_desk.h"
#include "speech/speaker.h"
#include "speech/speech_dispatcher.h"
#include "speech/synthesiser.h"

#include <QTemporaryDir>

#include <array>
#include <filesystem>
#include <functional>
#include <span>
#include <string_view>

namespace kelo::bench {

/// The assistant with all that it works with, sound and voice included, by a clock that goes by the
/// samples: an hour passes in minutes, and nothing is heard of it.
class OfflineEngine {
public:
    static constexpr std::size_t block = 512; ///< frames

    /// `lines` is given what the display would read.
    explicit OfflineEngine(std::function<void(std::string_view)> lines);

    /// Someone presses keys on a "Stage Piano".
    void begin();

    void take(const engine::Input &input);
    void press(int pitch, int velocity);

    /// Renders one block and lets the assistant do what is due; seconds that this took it.
    double step();

    /// Seconds of processor time that a block took to render at most; it lasts 11.6 ms.
    [[nodiscard]] double longestRender() const { return longestRender_; }

    [[nodiscard]] double now() const { return now_; }
    [[nodiscard]] bool speaking() const { return speaker_.speaking(); }
    [[nodiscard]] std::span<const float> left() const { return left_; }
    [[nodiscard]] std::span<const float> right() const { return right_; }

private:
    [[nodiscard]] engine::Moment moment() const;

    double now_ = 0;
    double longestRender_ = 0;
    std::array<float, block> left_{};
    std::array<float, block> right_{};
    QTemporaryDir folder_;
    std::filesystem::path home_{folder_.path().toStdString()};
    engine::Wire wire_;
    engine::AudioClock clock_{0};
    engine::Mixer mixer_;
    engine::SoundDesk desk_{mixer_, {}, {}, [] {}};
    engine::SpeechDispatcher dispatcher_{false, [] {}};
    engine::Synthesiser voice_{[] {}};
    engine::MidiThru through_{mixer_.music(), clock_, [](engine::ChannelMessage) {}};
    engine::Speaker speaker_{wire_, dispatcher_, voice_, mixer_, clock_};
    engine::Player player_{wire_, through_, clock_};
    engine::Metronome metronome_{wire_, mixer_.ticks(), clock_};
    engine::Band band_{wire_, mixer_.band(), clock_};
    engine::Library library_{home_ / "songs"};
    engine::Assistant assistant_;
};

} // namespace kelo::bench
