#pragma once

#include "studio/midi_port.h"
#include "studio/studio_control.h"

#include <initializer_list>

namespace kelo::engine {

/// Any workstation that knows Mackie Control: this end is the surface, with its buttons and lights.
/// The other end answers where it lights something, or asks who is there, and goes on doing so when
/// a button is pressed. Seconds of the monotonic clock.
class MackieControl : public StudioControl {
public:
    static constexpr double patience = 2; ///< for an answer to a button

    explicit MackieControl(MidiPort &port)
        : port_(port)
    {
    }

    [[nodiscard]] bool connected() const override { return connected_; }

    /// There is no button for the tempo.
    bool send(StudioCommand command) override;

    void advance(double now);

private:
    void take(const MidiPort::Message &message);
    void answer(const MidiPort::Message &message);
    void press(std::initializer_list<int> buttons);
    void selectTrack(int step);

    MidiPort &port_;
    int selected_ = 0; ///< of the eight tracks that the surface shows
    bool connected_ = false;
    bool waits_ = false; ///< a button was pressed and nothing has come since
    double now_ = 0;
    double pressedAt_ = 0;
};

} // namespace kelo::engine
