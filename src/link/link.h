#pragma once

#include "link/engine_supervisor.h"
#include "link/link_state.h"
#include "link/reading.h"
#include "link/time_source.h"

#include <QObject>
#include <QProcessEnvironment>
#include <QSettings>
#include <QUrl>

#include <initializer_list>
#include <memory>

namespace kelo {

class Inbound;
class NoteListener;
class Shell;
class VoiceInput;

/// What a `Link` is made of; tests bring their own.
struct LinkSetup {
    QString baseDir; ///< the data directory
    QString payload; ///< the directory that holds the engine
    QProcessEnvironment environment; ///< what the engine inherits
    std::unique_ptr<QSettings> settings;
    TimeSource &time = TimeSource::system();

    /// As this process was started.
    static LinkSetup ofThisProcess();
};

/// The one shared state of the display, and its line to the engine.
///
/// It has the engine started, watched, restarted and stopped, turns every line the engine prints
/// into state, and sends it commands. Everybody reads the state; it changes by the engine's lines
/// and by the operations here alone. Views observe the published values: `willChange` comes before
/// values are stored, each one's own signal when all that change together are new; equal values
/// are announced too. The others are polled by what is drawn every frame. Everything happens on
/// the GUI thread. Times are seconds of uptime; text offsets count UTF-16 code units.
class Link : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString rollName READ rollName NOTIFY rollNameChanged)
    Q_PROPERTY(bool rolling READ rolling NOTIFY rollingChanged)
    Q_PROPERTY(QString assistant READ assistant NOTIFY assistantChanged)
    Q_PROPERTY(QString user READ user NOTIFY userChanged)
    Q_PROPERTY(QString updateVersion READ updateVersion NOTIFY updateVersionChanged)
    Q_PROPERTY(QString updateNotes READ updateNotes NOTIFY updateNotesChanged)
    Q_PROPERTY(bool welcome READ welcome NOTIFY welcomeChanged)
    Q_PROPERTY(QString caption READ caption NOTIFY captionChanged)
    Q_PROPERTY(qint64 spokenTo READ spokenTo NOTIFY spokenToChanged)
    Q_PROPERTY(bool speaking READ speaking NOTIFY speakingChanged)
    Q_PROPERTY(QString mode READ mode NOTIFY modeChanged)
    Q_PROPERTY(QString modeName READ modeName NOTIFY modeChanged)
    Q_PROPERTY(QString keyboards READ keyboards NOTIFY keyboardsChanged)
    Q_PROPERTY(QString voice READ voice NOTIFY voiceChanged)
    Q_PROPERTY(bool daw READ daw NOTIFY dawChanged)
    Q_PROPERTY(QString state READ state NOTIFY stateChanged)
    Q_PROPERTY(QStringList jazz READ jazz NOTIFY jazzChanged)
    Q_PROPERTY(bool visual READ visual NOTIFY visualChanged)
    Q_PROPERTY(bool typing READ typing NOTIFY typingChanged)
    Q_PROPERTY(bool paused READ paused NOTIFY pausedChanged)
    Q_PROPERTY(bool live READ live NOTIFY liveChanged)
    Q_PROPERTY(QString bandStyle READ bandStyle NOTIFY bandStyleChanged)
    Q_PROPERTY(QString now READ now NOTIFY nowChanged)
    Q_PROPERTY(QString bandLevel READ bandLevel NOTIFY bandLevelChanged)
    Q_PROPERTY(QString heard READ heard NOTIFY heardChanged)
    Q_PROPERTY(QString hands READ hands NOTIFY handsChanged)
    Q_PROPERTY(bool large READ large NOTIFY largeChanged)
    Q_PROPERTY(bool contrast READ contrast NOTIFY contrastChanged)
    Q_PROPERTY(bool settingsKept READ settingsKept NOTIFY settingsKeptChanged)
    Q_PROPERTY(QString flash READ flash NOTIFY flashChanged)
    Q_PROPERTY(double flashAt READ flashAt NOTIFY flashAtChanged)
    Q_PROPERTY(qint64 beat READ beat NOTIFY beatChanged)
    Q_PROPERTY(bool captionLive READ captionLive NOTIFY captionLiveChanged)

    LinkState state_; // first: everything that can be read stands for a part of it

public:
    explicit Link(LinkSetup setup, QObject *parent = nullptr);
    ~Link() override;

    /// The instance of this process, made on first use; it needs the application object.
    static Link &shared();
    /// Seconds of monotonic system uptime.
    static double clock() { return TimeSource::system().now(); }
    /// The same by this instance's own clock: what everything drawn from it goes by.
    [[nodiscard]] double uptime() const { return setup_.time.now(); }
    using KeyTaker = kelo::KeyTaker;
    static constexpr int barCount = kelo::barCount;

    /// The rooms above; each may be absent, which skips the calls into it. None is owned.
    void setShell(Shell *shell) { shell_ = shell; }
    void setVoiceInput(VoiceInput *input) { voiceInput_ = input; }
    /// The falling-notes scene; `clearScene` only when it still is this one.
    void setScene(NoteListener *listener) { scene_ = listener; }
    void clearScene(const NoteListener *listener);
    [[nodiscard]] NoteListener *scene() const { return scene_; }

    // ---- the engine's process ----

    /// Launches the engine. "OFFLINE" when that fails; nothing is retried then.
    void start() { engine_.start(); }
    /// Asks the engine to quit and makes sure that it will; blocks for at most 1.5 seconds.
    void stop() { engine_.stop(); }
    /// Lets go of an engine that still runs, where this object is not to be freed before the end.
    void leaveEngine() { engine_.leave(); }
    /// Stops the engine and starts a new one 0.4 seconds later.
    Q_INVOKABLE void restart() { engine_.restart(); }
    /// What is known of the engine's process is this now, for those who stand in for it.
    void engineIs(EngineState known);

    // ---- what the engine says ----

    /// One line of the engine without its "@" and line feed, valid UTF-8. Malformed lines change
    /// nothing but `state`.
    void handle(QByteArrayView line);

    // ---- what the engine is told ----

    /// Writes `text` to the engine as it is, or switches something of our own when it is "#large",
    /// "#contrast" or "#voice". Dropped while the link is offline.
    Q_INVOKABLE void send(const QString &text);
    /// Has the engine say `text`, one line, aloud.
    void speak(const QString &text);
    /// Lets the user choose a MIDI file, then plays it.
    Q_INVOKABLE void chooseFile();
    /// Has the engine play the MIDI file at `path` while the visualiser shows it.
    void playFile(const QString &path);
    /// The same for a file that was dropped onto the display. Has the engine say why an address of
    /// the net is not played.
    Q_INVOKABLE void playUrl(const QUrl &url);

    // ---- what the display asks for ----

    /// Stores a display setting and applies it when it is "large" or "contrast".
    void setAccess(const QString &key, bool on);
    /// Shows high contrast because the desktop does; not stored, so that it goes on following it.
    void followContrast(bool on);
    /// Whether the disk takes the display's settings; speaks of it when that changes.
    void setSettingsKept(bool kept);
    Q_INVOKABLE void showVisualiser(bool shown = true);
    /// Asks the first-run questions.
    void askWelcome();
    /// They are answered: what is shown now goes by these names.
    void finishWelcome(const QString &assistantName, const QString &userName);
    /// Who is offered the keys while the questions show; nobody when empty.
    void setWelcomeKey(KeyTaker taker);
    void setWelcomeStepForSnapshot(int step) { state_.display.welcomeStepForSnapshot = step; }
    /// The ring shows the voice's loudness smoothed in its own way.
    void setLevel(double shown) { state_.voiceLevel.level = shown; }

    /// The display name of `mode`.
    [[nodiscard]] QString modeName() const;

    // ---- the caption at an instant ----

    [[nodiscard]] qsizetype segmentIndex(double position) const;
    [[nodiscard]] double spokenExact(double at) const { return state_.speech.spokenExact(at); }
    /// Moves the caption's cursor on towards `target` and returns where it is.
    double glide(double target, double at) { return state_.speech.glide(target, at); }

    // ---- the voice at an instant ----

    /// Its spectrum; nothing while the assistant is silent.
    [[nodiscard]] std::optional<VoiceFrame> voiceBands(double at) const;
    /// Brings `bars` and `level` to this instant.
    void updateBars(double at);

    // ---- published ----

    Reading<QString> state{state_.engine}; ///< "STARTING", "ONLINE", "RESTARTING", "OFFLINE"
    Reading<QString> assistant{state_.names.assistant};
    Reading<QString> user{state_.names.user};
    Reading<QString> caption{state_.speech.caption};
    Reading<bool> captionLive{state_.speech.captionLive};
    Reading<bool> speaking{state_.speech.speaking};
    Reading<qint64> spokenTo{state_.speech.spokenTo};
    Reading<QList<Spoken>> transcript{state_.log.lines};
    Reading<QString> heard{state_.readouts.heard};
    Reading<QString> mode{state_.readouts.mode};
    Reading<QString> keyboards{state_.readouts.keyboards};
    Reading<QString> voice{state_.readouts.voice};
    Reading<bool> daw{state_.readouts.daw};
    Reading<QStringList> jazz{state_.readouts.jazz};
    Reading<bool> typing{state_.readouts.typing};
    Reading<bool> paused{state_.readouts.paused};
    Reading<bool> live{state_.readouts.live};
    Reading<QString> bandStyle{state_.readouts.bandStyle};
    Reading<QString> bandLevel{state_.readouts.bandLevel};
    Reading<QString> hands{state_.readouts.hands};
    Reading<QString> now{state_.readouts.now};
    Reading<QString> updateVersion{state_.update.version};
    Reading<QString> updateNotes{state_.update.notes};
    Reading<QString> rollName{state_.roll.name};
    Reading<bool> rolling{state_.roll.rolling};
    Reading<QString> flash{state_.flash.kind};
    Reading<double> flashAt{state_.flash.at};
    Reading<qint64> beat{state_.flash.beat};
    Reading<bool> visual{state_.display.visual};
    Reading<bool> welcome{state_.display.welcome};
    Reading<KeyTaker> welcomeKey{state_.display.welcomeKey};
    Reading<bool> large{state_.display.large};
    Reading<bool> contrast{state_.display.contrast};
    Reading<bool> settingsKept{state_.display.settingsKept};

    // ---- polled ----

    const std::vector<Segment> &segments = state_.speech.segments;
    const double &sayStarted = state_.speech.sayStarted;
    const double &doneAt = state_.speech.doneAt;
    const bool &gotWord = state_.speech.gotWord;
    const double &wordAt = state_.speech.wordAt;
    const double &wordTime = state_.speech.wordTime;
    const qint64 &wordFrom = state_.speech.wordFrom;
    const qint64 &wordLen = state_.speech.wordLen;
    const qint64 &voiceId = state_.spectrum.id;
    const std::vector<VoiceFrame> &voiceFrames = state_.spectrum.frames;
    const std::optional<double> &voiceAnchor = state_.spectrum.anchor;
    const double &voiceStart = state_.spectrum.start;
    const double &level = state_.voiceLevel.level;
    const double &levelAt = state_.voiceLevel.levelAt;
    const Bars &bars = state_.voiceLevel.bars;
    const double &barsAt = state_.voiceLevel.barsAt;
    const double &pulseAt = state_.pulseAt;
    const QHash<qint64, qint64> &down = state_.keyboard.down;
    const QSet<qint64> &played = state_.keyboard.played;
    const QList<Ripple> &ripples = state_.keyboard.ripples;
    const QList<Ripple> &echoes = state_.keyboard.echoes;
    const QList<qint64> &buttons = state_.keyboard.buttons;
    const QString &chord = state_.keyboard.chord;
    const double &chordAt = state_.keyboard.chordAt;
    const std::vector<RollNote> &roll = state_.roll.notes;
    const std::optional<double> &rollZero = state_.roll.zero;
    const double &rollLength = state_.roll.length;
    const int &welcomeStepForSnapshot = state_.display.welcomeStepForSnapshot;

Q_SIGNALS:
    /// Some published value, or what depends on the theme, is about to change.
    void willChange();

    void stateChanged();
    void assistantChanged();
    void userChanged();
    void captionChanged();
    void captionLiveChanged();
    void speakingChanged();
    void spokenToChanged();
    void transcriptChanged();
    void heardChanged();
    void modeChanged();
    void keyboardsChanged();
    void voiceChanged();
    void dawChanged();
    void jazzChanged();
    void typingChanged();
    void pausedChanged();
    void liveChanged();
    void bandStyleChanged();
    void bandLevelChanged();
    void handsChanged();
    void nowChanged();
    void updateVersionChanged();
    void updateNotesChanged();
    void rollNameChanged();
    void rollingChanged();
    void flashChanged();
    void flashAtChanged();
    void beatChanged();
    void visualChanged();
    void welcomeChanged();
    void welcomeKeyChanged();
    void largeChanged();
    void contrastChanged();
    void settingsKeptChanged();

    /// `buttons` was replaced. Not a published value, but the display lists it.
    void buttonsChanged();
    /// A key of the player or a note of the engine went down or up.
    void keysChanged();

private:
    friend class LinkEditor;

    using Changed = void (Link::*)();
    template <typename Edit> void change(std::initializer_list<Changed> fields, Edit edit)
    {
        Q_EMIT willChange();
        edit(state_);
        for (const Changed field : fields)
            Q_EMIT(this->*field)();
    }

    [[nodiscard]] Liveliness liveliness() const;
    void engineGone(bool byItself);

    LinkSetup setup_;
    EngineSupervisor engine_;
    std::unique_ptr<Inbound> inbound_;
    Shell *shell_ = nullptr;
    VoiceInput *voiceInput_ = nullptr;
    NoteListener *scene_ = nullptr;
};

} // namespace kelo
