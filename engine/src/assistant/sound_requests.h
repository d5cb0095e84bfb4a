#pragma once

#include "activities/activity.h"
#include "piano/midi_thru.h"
#include "setup/settings.h"
#include "speech/text_to_speech.h"

#include <functional>

namespace kelo::engine {

/// Tempo, loudness, voice, the band's sound and the player's own keys, whatever the activity.
class SoundRequests {
public:
    SoundRequests(Session &session, Settings &settings, TextToSpeech &speech, MidiThru &through,
        Instrument &keys, std::function<void(float)> setVoiceLoudness);

    /// Applies the settings and tells the display.
    void begin();

    void slower(const Request &request, const Moment &now);
    void faster(const Request &request, const Moment &now);
    void tempo(const Request &request, const Moment &now);
    void bandStyle(const Request &request, const Moment &now);
    void bandSimple(const Request &request, const Moment &now);
    void bandFull(const Request &request, const Moment &now);
    void bandLouder(const Request &request, const Moment &now);
    void bandQuieter(const Request &request, const Moment &now);
    void voiceLouder(const Request &request, const Moment &now);
    void voiceQuieter(const Request &request, const Moment &now);
    void changeVoice(const Request &request, const Moment &now);
    void throughPiano(const Request &request, const Moment &now);
    void keysSound(const Request &request, const Moment &now);

    static constexpr Handler<SoundRequests> handlers[] = {
        {Action::Slower, &SoundRequests::slower},
        {Action::Faster, &SoundRequests::faster},
        {Action::Tempo, &SoundRequests::tempo},
        {Action::BandStyle, &SoundRequests::bandStyle},
        {Action::BandSimple, &SoundRequests::bandSimple},
        {Action::BandFull, &SoundRequests::bandFull},
        {Action::BandLouder, &SoundRequests::bandLouder},
        {Action::BandQuieter, &SoundRequests::bandQuieter},
        {Action::VoiceLouder, &SoundRequests::voiceLouder},
        {Action::VoiceQuieter, &SoundRequests::voiceQuieter},
        {Action::ChangeVoice, &SoundRequests::changeVoice},
        {Action::ThroughPiano, &SoundRequests::throughPiano},
        {Action::KeysSound, &SoundRequests::keysSound},
    };

private:
    void setTempo(int percent, const Moment &now);
    void setBandStyle(Band::Style style, const Moment &now);
    void changeBandLoudness(int by, std::string_view words, const Moment &now);
    void changeVoiceLoudness(
        int percent, std::string_view words, std::string_view atTheEnd, const Moment &now);
    void tellBandLevel() const;

    Session &session_;
    Settings &settings_;
    TextToSpeech &speech_;
    MidiThru &through_;
    Instrument &keys_;
    std::function<void(float)> setVoiceLoudness_;
};

} // namespace kelo::engine
