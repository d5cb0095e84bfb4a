#pragma once

#include "protocol/wire.h"
#include "sound/speech_output.h"
#include "speech/speech_dispatcher.h"
#include "speech/speech_maker.h"
#include "speech/text_to_speech.h"

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace kelo::engine {

/// Says one thing at a time and tells the display how far it has come, in step with the sound:
/// what is said, its spectrum a little ahead, its beginning, each word, its end. Where the
/// desktop's speech service is wanted and works, that speaks, and there is no spectrum. Times are
/// seconds of the monotonic clock.
class Speaker : public TextToSpeech {
public:
    Speaker(Wire &lines, SpeechDispatcher &desktop, SpeechMaker &voice, SpeechOutput &output,
        const AudioClock &clock);

    void say(std::string_view text, double now) override;

    void setVoice(std::size_t index) override { synthesiser_.setVoice(index); }

    void setStyle(const SpeechStyle &style) override;
    void setLoudness(float value) override { dispatcher_.setLoudness(value); }
    void useSystemVoice(bool value) override;
    [[nodiscard]] bool usesSystemVoice() const override { return dispatcher_.works(); }

    void stop() override;
    [[nodiscard]] bool speaking() const override { return utterance_.has_value(); }

    void advance(double now) override;

    /// When `advance` is next needed, unless the synthesiser has news before.
    [[nodiscard]] std::optional<double> deadline() const override;

private:
    struct Utterance {
        explicit Utterance(std::uint32_t number)
            : id(number)
        {
        }

        std::uint32_t id;
        std::string dispatched; ///< the text, while the desktop's service says it
        double silentEnd = 0; ///< when it is over unless a voice tells of more
        bool synthesised = false; ///< everything has come from the synthesiser
        bool begun = false; ///< "@start" is out
        std::optional<Frame> origin; ///< of its first sample
        Frame queued = 0; ///< samples passed on to the output
        std::vector<float> samples; ///< not yet passed on, from `queued` on
        std::deque<WordMark> words; ///< not yet told
        std::string bands; ///< not yet told, from frame `bandsTold` on
        std::optional<int> bandsShift; ///< frames that the display's count is ahead of the sound's
        int bandsTold = 0;
        double length = 0; ///< seconds synthesised so far
    };

    void speak(std::string text, double now);
    void followDispatcher(double now);
    void gather(double now);
    void feedOutput(double now);
    void tellBands(double now);
    void tellWords(double now);
    [[nodiscard]] double timeOf(double position) const;

    Wire &wire_;
    SpeechDispatcher &dispatcher_;
    SpeechMaker &synthesiser_;
    SpeechOutput &output_;
    const AudioClock &clock_;
    std::optional<Utterance> utterance_;
    std::uint32_t lastId_ = 0;
    double nextFeed_ = 0;
};

} // namespace kelo::engine
