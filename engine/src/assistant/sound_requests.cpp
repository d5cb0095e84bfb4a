#include "assistant/sound_requests.h"

#include "speech/voices.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kelo::engine {

namespace {

constexpr int slowestPercent = 30;
constexpr int fastestPercent = 200;
constexpr int percentStep = 10;
constexpr int quietest = 20; ///< percent of the voice
constexpr int loudest = 200;
constexpr int voiceStep = 20;
constexpr int bandStep = 15; ///< of 127

} // namespace

SoundRequests::SoundRequests(Session &session, Settings &settings, TextToSpeech &speech,
    MidiThru &through, Instrument &keys, std::function<void(float)> setVoiceLoudness)
    : session_(session)
    , settings_(settings)
    , speech_(speech)
    , through_(through)
    , keys_(keys)
    , setVoiceLoudness_(std::move(setVoiceLoudness))
{
}

void SoundRequests::begin()
{
    const auto voice = static_cast<std::size_t>(settings_->voice) % voices.size();
    speech_.setVoice(voice);
    setVoiceLoudness_(static_cast<float>(settings_->voiceLoudness) / 100);
    session_.wire.send("voice", voices[voice].name);
    session_.wire.send(
        "bandstyle", session_.band.style() == Band::Style::Simple ? "simple" : "full");
    tellBandLevel();
}

void SoundRequests::slower(const Request &, const Moment &now)
{
    setTempo(static_cast<int>(std::lround(session_.player.tempo() * 100)) - percentStep, now);
}

void SoundRequests::faster(const Request &, const Moment &now)
{
    setTempo(static_cast<int>(std::lround(session_.player.tempo() * 100)) + percentStep, now);
}

void SoundRequests::tempo(const Request &request, const Moment &now)
{
    setTempo(request.number.value_or(100), now);
}

void SoundRequests::setTempo(int percent, const Moment &now)
{
    const int kept = std::clamp(percent, slowestPercent, fastestPercent);
    const bool ticked = session_.metronome.ticking();
    session_.player.setTempo(kept / 100.0, now.uptime);
    if (ticked) {
        session_.metronome.stop();
        session_.host.perform({.action = Action::Metronome, .on = true}, now);
    }
    session_.say("Tempo " + std::to_string(kept) + " percent.", now);
}

void SoundRequests::bandStyle(const Request &, const Moment &now)
{
    setBandStyle(
        session_.band.style() == Band::Style::Full ? Band::Style::Simple : Band::Style::Full, now);
}

void SoundRequests::bandSimple(const Request &, const Moment &now)
{
    setBandStyle(Band::Style::Simple, now);
}

void SoundRequests::bandFull(const Request &, const Moment &now)
{
    setBandStyle(Band::Style::Full, now);
}

void SoundRequests::setBandStyle(Band::Style style, const Moment &now)
{
    session_.band.setStyle(style);
    session_.say(style == Band::Style::Simple ? "Simple band." : "Full band.", now);
}

void SoundRequests::bandLouder(const Request &, const Moment &now)
{
    changeBandLoudness(bandStep, "Band louder.", now);
}

void SoundRequests::bandQuieter(const Request &, const Moment &now)
{
    changeBandLoudness(-bandStep, "Band quieter.", now);
}

void SoundRequests::changeBandLoudness(int by, std::string_view words, const Moment &now)
{
    session_.band.setLoudness(session_.band.loudness() + by);
    tellBandLevel();
    session_.say(words, now);
}

void SoundRequests::tellBandLevel() const
{
    session_.wire.send(
        "bandlevel", std::to_string((session_.band.loudness() * 100 + 63) / 127) + "%");
}

void SoundRequests::voiceLouder(const Request &, const Moment &now)
{
    changeVoiceLoudness(voiceStep, "Louder.", "As loud as I can.", now);
}

void SoundRequests::voiceQuieter(const Request &, const Moment &now)
{
    changeVoiceLoudness(-voiceStep, "Quieter.", "As quiet as I can.", now);
}

void SoundRequests::changeVoiceLoudness(
    int percent, std::string_view words, std::string_view atTheEnd, const Moment &now)
{
    const int wanted = settings_->voiceLoudness + percent;
    const int kept = std::clamp(wanted, quietest, loudest);
    settings_.change([kept](Profile &profile) { profile.voiceLoudness = kept; });
    setVoiceLoudness_(static_cast<float>(kept) / 100);
    session_.say(kept == loudest || kept == quietest ? atTheEnd : words, now);
}

void SoundRequests::changeVoice(const Request &, const Moment &now)
{
    settings_.change([](Profile &profile) {
        profile.voice = (profile.voice + 1) % static_cast<int>(voices.size());
    });
    const auto index = static_cast<std::size_t>(settings_->voice);
    speech_.setVoice(index);
    session_.wire.send("voice", voices[index].name);
    session_.say(std::string(voices[index].name) + ".", now);
}

void SoundRequests::throughPiano(const Request &request, const Moment &now)
{
    through_.setOn(request.on.value_or(!through_.on()));
    session_.say(!through_.on()      ? "I don't play through the piano."
            : !session_.pianoPresent ? "I'll play through the piano, as soon as I see one."
                                     : "I also play through the piano.",
        now);
}

void SoundRequests::keysSound(const Request &request, const Moment &now)
{
    const bool sound = request.on.value_or(true);
    settings_.change([sound](Profile &profile) { profile.keysSound = sound; });
    if (!sound)
        keys_.silence();
    session_.say(sound ? "Your keys sound from here, too." : "Your keys are silent here.", now);
}

} // namespace kelo::engine
