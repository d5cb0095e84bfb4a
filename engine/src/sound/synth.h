#pragma once

#include <memory>
#include <span>
#include <string>

namespace kelo::engine {

/// A MIDI channel message as it stands in a file or comes from a keyboard.
struct ChannelMessage {
    unsigned char status = 0; ///< kind in the high half, channel in the low one
    unsigned char first = 0;
    unsigned char second = 0;

    [[nodiscard]] int channel() const { return status & 0x0f; }
    [[nodiscard]] int kind() const { return status & 0xf0; }

    friend bool operator==(const ChannelMessage &, const ChannelMessage &) = default;
};

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
    [[nodiscard]] bool sounds() const { return loaded; }

    void play(SynthPart part, ChannelMessage message);

    /// Lets go of every key and pedal of a part.
    void release(SynthPart part);

    /// Writes the next samples of both sides.
    void render(std::span<float> left, std::span<float> right);

private:
    struct Library;
    std::unique_ptr<Library> library;
    bool loaded = false;
};

} // namespace kelo::engine
