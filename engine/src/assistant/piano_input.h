#pragma once

#include "activities/activity.h"
#include "piano/command_keys.h"
#include "setup/settings.h"
#include "sound/instrument.h"

#include <bitset>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace kelo::engine {

/// What is played on the piano: its top keys give commands, everything else sounds, is recorded
/// and goes to the current activity. Tells the display which piano there is, which of its keys
/// give commands and which are down.
class PianoInput {
public:
    /// `keys` is what the player's own keys sound on; `current` the activity that the user is in,
    /// never empty.
    PianoInput(Session &session, Settings &settings, Instrument &keys,
        const std::unique_ptr<Activity> &current);

    /// The piano that is there; empty for none.
    void show(std::string_view name);

    /// The piano was found, or lost where `name` is empty: what is going on waits for it.
    void change(std::string_view name, const Moment &now);

    /// `mode`: which legend the command keys have.
    void take(ChannelMessage message, std::string_view mode, const Moment &now);

    /// Something else was asked for than the top key, which is no longer waited for.
    void forgetTopKey() { settingTopKey_ = false; }

    void advance(const Moment &now);
    [[nodiscard]] std::optional<double> deadline() const { return commandKeys_.deadline(); }

    void setTopKey(const Request &request, const Moment &now);
    void switchCommandKeys(const Request &request, const Moment &now);

    static constexpr Handler<PianoInput> handlers[] = {
        {Action::TopKey, &PianoInput::setTopKey},
        {Action::CommandKeysOn, &PianoInput::switchCommandKeys},
    };

private:
    bool takeCommandKey(int pitch, int velocity, std::string_view mode, const Moment &now);
    void setRule();
    void tellCommandKeys();

    Session &session_;
    Settings &settings_;
    Instrument &keys_;
    const std::unique_ptr<Activity> &current_;
    std::string name_;
    CommandKeys commandKeys_;
    bool commandKeysOn_ = true;
    bool settingTopKey_ = false; ///< the next key is the top key
    std::bitset<128> down_; ///< keys that are shown as held
};

} // namespace kelo::engine
