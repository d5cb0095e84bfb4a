#include "assistant/assistant.h"
#include "speech/voices.h"

#include <algorithm>
#include <cmath>

namespace kelo::engine {

namespace {

constexpr int slowestPercent = 30;
constexpr int fastestPercent = 200;
constexpr int quietest = 20;
constexpr int loudest = 200;

} // namespace

bool Assistant::performSound(const Request &request, const Moment &now)
{
    Band &band = tools.band;
    switch (request.action) {
    case Action::Slower:
        changeTempo(-1, now);
        return true;
    case Action::Faster:
        changeTempo(1, now);
        return true;
    case Action::Tempo: {
        const int percent =
            std::clamp(request.number.value_or(100), slowestPercent, fastestPercent);
        player.setTempo(percent / 100.0, now.uptime);
        say("Tempo " + std::to_string(percent) + " percent.", now);
        return true;
    }
    case Action::Metronome:
        tick(request, now);
        return true;
    case Action::Band:
        playAlong(request, now);
        return true;
    case Action::BandStyle:
    case Action::BandSimple:
    case Action::BandFull: {
        const bool simple = request.action == Action::BandSimple
            || (request.action == Action::BandStyle && band.style() == Band::Style::Full);
        band.setStyle(simple ? Band::Style::Simple : Band::Style::Full);
        say(simple ? "Simple band." : "Full band.", now);
        return true;
    }
    case Action::BandLouder:
    case Action::BandQuieter: {
        const bool louder = request.action == Action::BandLouder;
        band.setLoudness(band.loudness() + (louder ? 15 : -15));
        const std::string level = std::to_string((band.loudness() * 100 + 63) / 127) + "%";
        wire.send("bandlevel", level);
        say(louder ? "Band louder." : "Band quieter.", now);
        return true;
    }
    case Action::VoiceLouder:
        changeLoudness(20, now);
        return true;
    case Action::VoiceQuieter:
        changeLoudness(-20, now);
        return true;
    case Action::ChangeVoice: {
        settings.voice = (settings.voice + 1) % static_cast<int>(voices.size());
        const auto index = static_cast<std::size_t>(settings.voice);
        speaker.setVoice(index);
        wire.send("voice", voices[index].name);
        rememberProfile();
        say(std::string(voices[index].name) + ".", now);
        return true;
    }
    case Action::ThroughPiano:
        tools.through.setOn(request.on.value_or(!tools.through.on()));
        say(!tools.through.on()     ? "I don't play through the piano."
                : pianoName.empty() ? "I'll play through the piano, as soon as I see one."
                                    : "I also play through the piano.",
            now);
        return true;
    case Action::KeysSound:
        settings.keysSound = request.on.value_or(true);
        if (!settings.keysSound)
            tools.keys.silence();
        rememberProfile();
        say(settings.keysSound ? "Your keys sound from here, too." : "Your keys are silent here.",
            now);
        return true;
    case Action::TopKey:
        settingTopKey = !pianoName.empty();
        say(settingTopKey ? "Press the highest key of your piano." : "I don't see a piano.", now);
        return true;
    default:
        return false;
    }
}

void Assistant::changeTempo(int direction, const Moment &now)
{
    if (tools.metronome.ticking() && !player.playing()) {
        tools.metronome.start(tools.metronome.tempo() + 4 * direction, 4, now.uptime);
        say(std::to_string(tools.metronome.tempo()) + ".", now);
    } else if (tools.band.on()) {
        tools.band.setTempo(tools.band.tempo() + 5 * direction);
        say("The band at " + std::to_string(tools.band.tempo()) + ".", now);
    } else {
        const int percent = static_cast<int>(std::lround(player.tempo() * 100)) + 10 * direction;
        perform({Action::Tempo, percent}, now);
    }
}

void Assistant::changeLoudness(int percent, const Moment &now)
{
    settings.voiceLoudness = std::clamp(settings.voiceLoudness + percent, quietest, loudest);
    tools.setVoiceLoudness(static_cast<float>(settings.voiceLoudness) / 100);
    rememberProfile();
    const bool bound = settings.voiceLoudness == loudest || settings.voiceLoudness == quietest;
    say(percent > 0 ? (bound ? "As loud as I can." : "Louder.")
                    : (bound ? "As quiet as I can." : "Quieter."),
        now);
}

void Assistant::tick(const Request &request, const Moment &now)
{
    Metronome &metronome = tools.metronome;
    const bool on = request.on.value_or(request.number.has_value() || !metronome.ticking());
    if (!on) {
        metronome.stop();
        say("Metronome off.", now);
        return;
    }
    metronome.start(request.number.value_or(metronome.tempo()), 4, now.uptime);
    say("Metronome at " + std::to_string(metronome.tempo()) + ".", now);
}

void Assistant::playAlong(const Request &request, const Moment &now)
{
    Band &band = tools.band;
    if (!request.on.value_or(!band.on())) {
        band.stop();
        say("The band is off.", now);
        return;
    }
    stopTeaching(Mode::Idle);
    player.stop();
    tools.metronome.stop();
    band.start();
    say(pianoName.empty() ? "The band is ready, but I don't see a piano yet."
                          : "The band is ready. Hold a chord, and it comes in.",
        now);
}

} // namespace kelo::engine
