#include "assistant/piano_input.h"

#include "assistant/keys.h"
#include "protocol/text.h"

namespace kelo::engine {

PianoInput::PianoInput(Session &session, Settings &settings, Instrument &keys,
    const std::unique_ptr<Activity> &current)
    : session_(session)
    , settings_(settings)
    , keys_(keys)
    , current_(current)
    , commandKeys_(settings->topKey)
{
}

void PianoInput::show(std::string_view name)
{
    name_ = oneLine(name);
    session_.pianoPresent = !name_.empty();
    session_.wire.send("kbd", name_);
    tellCommandKeys();
    keys_.silence();
    for (int pitch = 0; pitch < 128; ++pitch) {
        if (down_[static_cast<std::size_t>(pitch)])
            session_.wire.send("on", {pitch, 0});
    }
    down_.reset();
}

void PianoInput::change(std::string_view name, const Moment &now)
{
    const std::string before = name_;
    show(name);
    if (name_.empty()) {
        if (!current_->paused())
            current_->pause(now);
        session_.say(before + " is gone.", now);
    } else {
        session_.say(name_ + " is here.", now);
    }
}

void PianoInput::take(ChannelMessage message, std::string_view mode, const Moment &now)
{
    const int pitch = message.first & 0x7f;
    const bool release = message.releases();
    const bool note = release || message.presses();
    const int velocity = release ? 0 : message.second;
    const bool shown = down_[static_cast<std::size_t>(pitch)];
    if (note && (takeCommandKey(pitch, velocity, mode, now) || (release && !shown)))
        return;
    if (settings_->keysSound)
        keys_.play(0, {static_cast<unsigned char>(message.kind()), message.first, message.second});
    session_.recorder.play(message, now.uptime);
    if (!note)
        return;
    session_.wire.send("on", {pitch, velocity});
    down_[static_cast<std::size_t>(pitch)] = velocity > 0;
    current_->note(pitch, velocity, now);
}

/// False where the key is music.
bool PianoInput::takeCommandKey(int pitch, int velocity, std::string_view mode, const Moment &now)
{
    if (settingTopKey_ && velocity > 0) {
        settingTopKey_ = false;
        commandKeys_.setTop(pitch);
        settings_.change(
            [this](Profile &profile) { profile.topKey = commandKeys_.pitches().front(); });
        tellCommandKeys();
        session_.say("This is the top key now.", now);
        return true;
    }
    setRule();
    const auto [music, command] =
        velocity > 0 ? commandKeys_.press(pitch, now.uptime) : commandKeys_.release(pitch);
    if (command)
        session_.host.perform({commandKeyActions(mode)[static_cast<std::size_t>(*command)]}, now);
    return !music;
}

void PianoInput::setRule()
{
    commandKeys_.setRule(!commandKeysOn_  ? CommandKeys::Rule::Off
            : current_->everyKeyIsMusic() ? CommandKeys::Rule::AfterHold
                                          : CommandKeys::Rule::AtOnce);
}

void PianoInput::advance(const Moment &now)
{
    setRule();
    if (!commandKeys_.advance(now.uptime))
        return;
    const int held = commandKeys_.pitches().back();
    session_.recorder.takeBack(held);
    current_->takeBack(held, now);
    constexpr ChannelMessage softTick{0x99, 76, 45};
    keys_.play(0, softTick);
}

void PianoInput::setTopKey(const Request &, const Moment &now)
{
    settingTopKey_ = !name_.empty();
    session_.say(
        settingTopKey_ ? "Press the highest key of your piano." : "I don't see a piano.", now);
}

void PianoInput::switchCommandKeys(const Request &request, const Moment &now)
{
    commandKeysOn_ = request.on.value_or(!commandKeysOn_);
    tellCommandKeys();
    session_.say(commandKeysOn_ ? "The highest keys give commands." : "All keys are music.", now);
}

void PianoInput::tellCommandKeys()
{
    std::string keys;
    if (!name_.empty() && commandKeysOn_) {
        for (const int pitch : commandKeys_.pitches())
            keys += (keys.empty() ? "" : " ") + std::to_string(pitch);
    }
    session_.wire.send("buttons", keys);
}

} // namespace kelo::engine
