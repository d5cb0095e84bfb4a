#pragma once

#include "piano/keyboard_source.h"

#include <functional>
#include <memory>

namespace kelo::engine {

/// The ports of the system's MIDI sequencer: the first that a keyboard plays on.
class SequencerSource : public KeyboardSource {
public:
    /// `ready` is called on a thread of its own when there is something to `take`.
    explicit SequencerSource(std::function<void()> ready);
    ~SequencerSource() override;

    bool look() override;
    [[nodiscard]] std::string_view trouble() const override;
    [[nodiscard]] std::vector<ChannelMessage> take() override;
    void send(ChannelMessage message) override;

private:
    struct Ports;
    void connect(unsigned number);

    std::unique_ptr<Ports> ports_;
    bool refused_ = false;
};

} // namespace kelo::engine
