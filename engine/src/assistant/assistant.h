#pragma once

#include "music/player.h"
#include "protocol/input.h"
#include "protocol/wire.h"
#include "speech/speaker.h"

#include <optional>
#include <string_view>

namespace kelo::engine {

/// A moment: seconds of the monotonic clock, and the local time of day.
struct Moment {
    double uptime = 0;
    int hour = 0;
    int minute = 0;
};

/// What the assistant does when it is asked: every command and key that it knows, and what it
/// answers. It knows nothing of threads, devices or files' whereabouts but the paths it is told.
class Assistant {
public:
    Assistant(Wire &lines, Speaker &voice, Player &music);

    /// Introduces itself; `trouble` follows in the same breath, where there is any.
    void greet(std::string_view voiceName, std::string_view trouble, const Moment &now);

    void take(const Input &input, const Moment &now);

    void advance(const Moment &now);
    [[nodiscard]] std::optional<double> deadline() const;

    /// It has been asked to quit.
    [[nodiscard]] bool finished() const { return quit; }

private:
    void obey(std::string_view line, const Moment &now);
    void press(Key pressed, const Moment &now);
    void answer(std::string_view request, const Moment &now);
    void playFile(std::string_view path, const Moment &now);
    void playAgain(const Moment &now);
    void pauseOrCarryOn(const Moment &now);
    void home(const Moment &now);
    void tellTime(const Moment &now);

    Wire &wire;
    Speaker &speaker;
    Player &player;
    int shownMinute = -1;
    bool quit = false;
};

} // namespace kelo::engine
