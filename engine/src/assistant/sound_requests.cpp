#include "assistant/sound_requests.h"

#include "speech/voices.h"

#include <algorithm>
#include <cmath>

namespace kelo::engine {

namespace {

constexpr int slowestPercent = 30;
constexpr int fastestPercent = 200;
constexpr int percentStep = 10;
constexpr int quietest = 20; ///< percent
constexpr int loudnessStep = 20;
constexpr int rateStep = 35; ///< words a minute
constexpr int pitchStep = 10;

} // namespace

SoundRequests::SoundRequests(Session &session, Settings &settings, TextToSpeech &speech,
    MidiThru &through, Instrument &keys, SoundDesk &desk)
    : session_(session)
    , settings_(settings)
    , speech_(speech)
    , through_(through)
    , keys_(keys)
    , desk_(desk)
{
}

void SoundRequests::begin()
{
    const auto voice = static_cast<std::size_t>(settings_->voice) % voices.size();
    speech_.setVoice(voice);
    speech_.setLoudness(static_cast<float>(settings_->voiceLoudness) / 100);
    applyStyle();
    if (settings_->systemVoice)
        speech_.useSystemVoice(true);
    desk_.setLoudness(Fader::Voice, settings_->voiceLoudness);
    desk_.setLoudness(Fader::Pieces, settings_->piecesLoudness);
    desk_.setLoudness(Fader::Keys, settings_->keysLoudness);
    desk_.setLoudness(Fader::Band, settings_->bandLoudness);
    desk_.setLoudness(Fader::Ticks, settings_->ticksLoudness);
    const auto &soundfonts = desk_.soundfonts();
    for (std::size_t i = 0; i < soundfonts.size(); ++i) {
        if (soundfonts[i].file == settings_->soundfont && desk_.playing() != i)
            desk_.choose(i);
    }
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
    changeLoudness(Fader::Band, &Profile::bandLoudness, loudnessStep, now);
    tellBandLevel();
}

void SoundRequests::bandQuieter(const Request &, const Moment &now)
{
    changeLoudness(Fader::Band, &Profile::bandLoudness, -loudnessStep, now);
    tellBandLevel();
}

void SoundRequests::tellBandLevel() const
{
    session_.wire.send("bandlevel", std::to_string(desk_.loudness(Fader::Band)) + "%");
}

void SoundRequests::voiceLouder(const Request &, const Moment &now)
{
    changeLoudness(Fader::Voice, &Profile::voiceLoudness, loudnessStep, now);
}

void SoundRequests::voiceQuieter(const Request &, const Moment &now)
{
    changeLoudness(Fader::Voice, &Profile::voiceLoudness, -loudnessStep, now);
}

void SoundRequests::piecesLouder(const Request &, const Moment &now)
{
    changeLoudness(Fader::Pieces, &Profile::piecesLoudness, loudnessStep, now);
}

void SoundRequests::piecesQuieter(const Request &, const Moment &now)
{
    changeLoudness(Fader::Pieces, &Profile::piecesLoudness, -loudnessStep, now);
}

void SoundRequests::ownKeysLouder(const Request &, const Moment &now)
{
    changeLoudness(Fader::Keys, &Profile::keysLoudness, loudnessStep, now);
}

void SoundRequests::ownKeysQuieter(const Request &, const Moment &now)
{
    changeLoudness(Fader::Keys, &Profile::keysLoudness, -loudnessStep, now);
}

void SoundRequests::ticksLouder(const Request &, const Moment &now)
{
    changeLoudness(Fader::Ticks, &Profile::ticksLoudness, loudnessStep, now);
}

void SoundRequests::ticksQuieter(const Request &, const Moment &now)
{
    changeLoudness(Fader::Ticks, &Profile::ticksLoudness, -loudnessStep, now);
}

void SoundRequests::changeLoudness(Fader fader, int Profile::*kept, int by, const Moment &now)
{
    const int percent = std::clamp((*settings_).*kept + by, quietest, SoundDesk::loudest);
    settings_.change([kept, percent](Profile &profile) { profile.*kept = percent; });
    desk_.setLoudness(fader, percent);
    if (fader == Fader::Voice)
        speech_.setLoudness(static_cast<float>(percent) / 100);
    session_.say(percent == SoundDesk::loudest ? "As loud as it goes."
            : percent == quietest              ? "As quiet as it goes."
            : by > 0                           ? "Louder."
                                               : "Quieter.",
        now);
}

void SoundRequests::speakFaster(const Request &, const Moment &now)
{
    changeStyle(rateStep, 0, now);
}

void SoundRequests::speakSlower(const Request &, const Moment &now)
{
    changeStyle(-rateStep, 0, now);
}

void SoundRequests::voiceHigher(const Request &, const Moment &now)
{
    changeStyle(0, pitchStep, now);
}

void SoundRequests::voiceLower(const Request &, const Moment &now)
{
    changeStyle(0, -pitchStep, now);
}

void SoundRequests::changeStyle(int rate, int pitch, const Moment &now)
{
    settings_.change([&](Profile &profile) {
        profile.speechRate =
            std::clamp(profile.speechRate + rate, SpeechStyle::slowest, SpeechStyle::fastest);
        profile.speechPitch = std::clamp(profile.speechPitch + pitch, 0, 100);
    });
    applyStyle();
    session_.say(rate != 0 ? std::to_string(settings_->speechRate) + " words a minute."
                           : "Pitch " + std::to_string(settings_->speechPitch) + ".",
        now);
}

void SoundRequests::applyStyle()
{
    speech_.setStyle({settings_->speechRate, settings_->speechPitch});
}

void SoundRequests::systemVoice(const Request &request, const Moment &now)
{
    const bool wanted = request.on.value_or(true);
    settings_.change([wanted](Profile &profile) { profile.systemVoice = wanted; });
    speech_.useSystemVoice(wanted);
    session_.say(wanted && speech_.usesSystemVoice() ? "I speak with your system's voice."
            : wanted                                 ? "Your system has no voice that I can use."
                                                     : "I speak with my own voice.",
        now);
}

/// The next soundfont that is installed.
void SoundRequests::changeSound(const Request &, const Moment &now)
{
    const auto &all = desk_.soundfonts();
    if (all.size() < 2) {
        session_.say("I have no other instruments. The package fluid-soundfont-gm has some.", now);
        return;
    }
    const std::size_t next = desk_.playing() ? (*desk_.playing() + 1) % all.size() : 0;
    session_.say(desk_.choose(next) ? "One moment." : "I am still changing the instruments.", now);
}

void SoundRequests::advance(const Moment &now)
{
    const auto loaded = desk_.advance();
    if (!loaded)
        return;
    const Soundfont &soundfont = desk_.soundfonts()[loaded->soundfont];
    const std::string file = soundfont.file.string();
    if (!loaded->works)
        session_.say("I cannot read the instruments of " + soundfont.name + ".", now);
    else if (settings_->soundfont != file) {
        settings_.change([&](Profile &profile) { profile.soundfont = file; });
        session_.say("Instruments: " + soundfont.name + ".", now);
    }
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
