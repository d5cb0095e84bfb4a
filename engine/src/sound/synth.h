#pragma once

#include "midi/channel_message.h"

#include <memory>
#include <span>
#include <string>

namespace kelo::engine {

/// Sixteen of the synthesiser's channels, with drums on the tenth.
enum class SynthPart { Music, Keys, Rhythm };

/// The instruments. Whoever renders owns it: no two threads may call it at a time; nothing but
/// the constructor allocates or waits.
class Synth {
public:
    /// Loads the first soundfont that can be loaded.
    explicit Synth(std::span<const std::string> soundfonts);
    ~Synth();
    Synth(const Synth &) = delete;
    Synth &operator=(const Synth &) = delete;

    /// False without a soundfont: it then renders silence.
    [[nodiscard]] bool sounds() const { return loaded_; }

    void play(SynthPart part, ChannelMessage message);

    /// Lets go of every key and pedal of a part.
    void release(SynthPart part);

    /// Writes the next samples of both sides.
    void render(std::span<float> left, std::span<float> right);

private:
    struct Library;
    std::unique_ptr<Library> library_;
    bool loaded_ = false;
};

} // namespace kelo::engine
