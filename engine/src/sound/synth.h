#pragma once

#include "midi/channel_message.h"
#include "sound/fader.h"

#include <array>
#include <memory>
#include <span>
#include <string>

namespace kelo::engine {

/// Sixteen of the synthesiser's channels, with drums on the tenth; named by what plays on them.
using SynthPart = Fader;

inline constexpr std::size_t synthParts = 4;

/// Both sides of a stretch of sound.
struct Stereo {
    std::span<float> left;
    std::span<float> right;

    [[nodiscard]] Stereo part(std::size_t from, std::size_t count) const
    {
        return {left.subspan(from, count), right.subspan(from, count)};
    }
};

/// The instruments of a soundfont, brought to one loudness whatever the soundfont's own is.
/// Whoever renders owns it: no two threads may call it at a time; nothing but the constructor
/// allocates or waits.
class Synth {
public:
    /// Loads the first soundfont that can be loaded.
    explicit Synth(std::span<const std::string> soundfonts);
    ~Synth();
    Synth(const Synth &) = delete;
    Synth &operator=(const Synth &) = delete;

    /// False without a soundfont: it then renders silence.
    [[nodiscard]] bool sounds() const { return !soundfont_.empty(); }

    /// The file that was loaded.
    [[nodiscard]] const std::string &soundfont() const { return soundfont_; }

    void play(SynthPart part, ChannelMessage message);

    /// Lets go of every key and pedal of a part.
    void release(SynthPart part);

    /// Goes on where `other` is: the instruments and controllers of its channels.
    void adopt(const Synth &other);

    /// Writes the next samples of each part, with its reverberation; all are equally long.
    void render(const std::array<Stereo, synthParts> &parts);

private:
    struct Library;

    void resetChannels();
    void calibrate();

    std::unique_ptr<Library> library_;
    std::string soundfont_;
};

} // namespace kelo::engine
