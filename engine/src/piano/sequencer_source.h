#pragma once

#include "piano/keyboard_source.h"
#include "piano/midi_system.h"

#include <memory>
#include <string>
#include <vector>

namespace kelo::engine {

/// The ports of the system's MIDI: the first that a keyboard plays on. One that went and came back
/// is connected anew, however fast that was.
class SequencerSource : public KeyboardSource {
public:
    /// Nothing where the system has no MIDI.
    explicit SequencerSource(std::unique_ptr<MidiSystem> system)
        : system_(std::move(system))
    {
    }

    bool look() override;
    [[nodiscard]] bool stirred() override;
    [[nodiscard]] std::string_view trouble() const override;
    [[nodiscard]] int file() const override { return system_ ? system_->file() : -1; }
    [[nodiscard]] std::vector<ChannelMessage> take() override;
    void send(ChannelMessage message) override;

private:
    std::unique_ptr<MidiSystem> system_;
    std::string port_; ///< the full name of the port that is open
    bool lost_ = false; ///< that port has gone, whether or not one of its name is there
};

} // namespace kelo::engine
