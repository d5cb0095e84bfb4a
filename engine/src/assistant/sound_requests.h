#pragma once

#include "activities/activity.h"
#include "piano/midi_thru.h"
#include "setup/settings.h"
#include "sound/sound_desk.h"
#include "speech/text_to_speech.h"

namespace kelo::engine {

/// Tempo, loudness, voice, the band's sound and the player's own keys, whatever the activity.
class SoundRequests {
public:
    SoundRequests(Session &session, Settings &settings, TextToSpeech &speech, MidiThru &through,
        Instrument &keys, SoundDesk &desk);

    /// Applies the settings and tells the display.
    void begin();

    /// Says what has come of what takes time.
    void advance(const Moment &now);

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
    void piecesLouder(const Request &request, const Moment &now);
    void piecesQuieter(const Request &request, const Moment &now);
    void ownKeysLouder(const Request &request, const Moment &now);
    void ownKeysQuieter(const Request &request, const Moment &now);
    void ticksLouder(const Request &request, const Moment &now);
    void ticksQuieter(const Request &request, const Moment &now);
    void speakFaster(const Request &request, const Moment &now);
    void speakSlower(const Request &request, const Moment &now);
    void voiceHigher(const Request &request, const Moment &now);
    void voiceLower(const Request &request, const Moment &now);
    void systemVoice(const Request &request, const Moment &now);
    void changeSound(const Request &request, const Moment &now);
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
        {Action::PiecesLouder, &SoundRequests::piecesLouder},
        {Action::PiecesQuieter, &SoundRequests::piecesQuieter},
        {Action::OwnKeysLouder, &SoundRequests::ownKeysLouder},
        {Action::OwnKeysQuieter, &SoundRequests::ownKeysQuieter},
        {Action::TicksLouder, &SoundRequests::ticksLouder},
        {Action::TicksQuieter, &SoundRequests::ticksQuieter},
        {Action::SpeakFaster, &SoundRequests::speakFaster},
        {Action::SpeakSlower, &SoundRequests::speakSlower},
        {Action::VoiceHigher, &SoundRequests::voiceHigher},
        {Action::VoiceLower, &SoundRequests::voiceLower},
        {Action::SystemVoice, &SoundRequests::systemVoice},
        {Action::ChangeSound, &SoundRequests::changeSound},
        {Action::ChangeVoice, &SoundRequests::changeVoice},
        {Action::ThroughPiano, &SoundRequests::throughPiano},
        {Action::KeysSound, &SoundRequests::keysSound},
    };

private:
    void setTempo(int percent, const Moment &now);
    void setBandStyle(Band::Style style, const Moment &now);
    /// `kept`: where the profile has it, in percent.
    void changeLoudness(Fader fader, int Profile::*kept, int by, const Moment &now);
    void changeStyle(int rate, int pitch, const Moment &now);
    void applyStyle();
    void tellBandLevel() const;

    Session &session_;
    Settings &settings_;
    TextToSpeech &speech_;
    MidiThru &through_;
    Instrument &keys_;
    SoundDesk &desk_;
};

} // namespace kelo::engine
