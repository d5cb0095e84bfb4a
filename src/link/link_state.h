#pragma once

#include "link/keyboard.h"
#include "link/piano_roll.h"
#include "link/speech.h"
#include "link/voice_level.h"
#include "link/voice_log.h"
#include "link/voice_spectrum.h"

#include <QStringList>

#include <functional>

namespace kelo {

/// Is offered a key (a Qt::Key and what it types); true when it consumed it.
using KeyTaker = std::function<bool(int key, const QString &text)>;

/// What the engine tells of itself, to be read off the display.
struct Readouts {
    QString mode = QStringLiteral("idle");
    QString keyboards; ///< the piano that is connected; empty for none
    QString voice; ///< the speaking voice
    bool daw = false; ///< the audio workstation is connected
    QStringList jazz; ///< jazz lessons on offer
    bool typing = false; ///< letters go to the engine as text
    bool paused = false;
    bool live = false; ///< it listens to the player
    QString bandStyle = QStringLiteral("full");
    QString bandLevel;
    QString hands = QStringLiteral("both"); ///< that are practised
    QString now; ///< the time of day, as the engine words it
    QString heard; ///< the last utterance that it heard
};

struct Names {
    QString assistant = QStringLiteral("Kelo");
    QString user;
};

struct UpdateOffer {
    QString version; ///< empty when none is offered
    QString notes;
};

/// The flash of the display's frame, and the beat.
struct Flash {
    QString kind; ///< "beat", "good", "wrong", ...
    double at = 0; ///< seconds of uptime
    qint64 beat = -1; ///< 0 for the first of a bar, -1 for none
};

/// How the display shows itself.
struct Display {
    bool visual = false; ///< the visualiser screen shows
    bool welcome = false; ///< the first-run questions show
    KeyTaker welcomeKey; ///< set while they are there to take keys
    int welcomeStepForSnapshot = 0;
    bool large = false;
    bool contrast = false;
    bool settingsKept = true;
};

/// Everything that `Link` shares. Nobody but the link holds one.
struct LinkState {
    QString engine = QStringLiteral("STARTING"); ///< or "ONLINE", "RESTARTING", "OFFLINE"
    Names names;
    Speech speech;
    VoiceSpectrum spectrum;
    VoiceLevel voiceLevel;
    double pulseAt = 0; ///< when the ring was last struck
    VoiceLog log;
    Readouts readouts;
    UpdateOffer update;
    Flash flash;
    Keyboard keyboard;
    PianoRoll roll;
    Display display;
};

} // namespace kelo
