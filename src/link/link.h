#pragma once

#include "link/caption.h"
#include "link/crash_window.h"
#include "link/inbound.h"
#include "link/published.h"
#include "link/records.h"
#include "link/time_source.h"
#include "link/voice_bands.h"

#include <QHash>
#include <QMap>
#include <QObject>
#include <QPointer>
#include <QProcessEnvironment>
#include <QSet>
#include <QSettings>
#include <QStringList>
#include <QUrl>

#include <memory>
#include <optional>
#include <vector>

namespace kelo {

class Ears;
class EngineProcess;
class NoteStage;
class Shell;

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
/// It starts, watches, restarts and stops the engine, turns every line the engine prints into
/// fields here, and sends it commands. Views observe the published fields: `willChange` comes
/// before a value is stored, the field's own signal after. The plain fields are polled by what is
/// drawn every frame. Everything happens on the GUI thread. Times are seconds of uptime; text
/// offsets count UTF-16 code units.
class Link : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString rollName MEMBER rollName NOTIFY rollNameChanged)
    Q_PROPERTY(bool rolling MEMBER rolling NOTIFY rollingChanged)
    Q_PROPERTY(QString assistant MEMBER assistant NOTIFY assistantChanged)
    Q_PROPERTY(QString user MEMBER user NOTIFY userChanged)
    Q_PROPERTY(QString updateVersion MEMBER updateVersion NOTIFY updateVersionChanged)
    Q_PROPERTY(QString updateNotes MEMBER updateNotes NOTIFY updateNotesChanged)
    Q_PROPERTY(bool welcome MEMBER welcome NOTIFY welcomeChanged)
    Q_PROPERTY(QString caption MEMBER caption NOTIFY captionChanged)
    Q_PROPERTY(qint64 spokenTo MEMBER spokenTo NOTIFY spokenToChanged)
    Q_PROPERTY(bool speaking MEMBER speaking NOTIFY speakingChanged)
    Q_PROPERTY(QString mode MEMBER mode NOTIFY modeChanged)
    Q_PROPERTY(QString modeName READ modeName NOTIFY modeChanged)
    Q_PROPERTY(QString keyboards MEMBER keyboards NOTIFY keyboardsChanged)
    Q_PROPERTY(QString voice MEMBER voice NOTIFY voiceChanged)
    Q_PROPERTY(bool daw MEMBER daw NOTIFY dawChanged)
    Q_PROPERTY(QString state MEMBER state NOTIFY stateChanged)
    Q_PROPERTY(QStringList jazz MEMBER jazz NOTIFY jazzChanged)
    Q_PROPERTY(bool visual MEMBER visual NOTIFY visualChanged)
    Q_PROPERTY(bool typing MEMBER typing NOTIFY typingChanged)
    Q_PROPERTY(bool paused MEMBER paused NOTIFY pausedChanged)
    Q_PROPERTY(bool live MEMBER live NOTIFY liveChanged)
    Q_PROPERTY(QString bandStyle MEMBER bandStyle NOTIFY bandStyleChanged)
    Q_PROPERTY(QString now MEMBER now NOTIFY nowChanged)
    Q_PROPERTY(QString bandLevel MEMBER bandLevel NOTIFY bandLevelChanged)
    Q_PROPERTY(QString heard MEMBER heard NOTIFY heardChanged)
    Q_PROPERTY(QString hands MEMBER hands NOTIFY handsChanged)
    Q_PROPERTY(bool large MEMBER large NOTIFY largeChanged)
    Q_PROPERTY(bool contrast MEMBER contrast NOTIFY contrastChanged)
    Q_PROPERTY(QString flash MEMBER flash NOTIFY flashChanged)
    Q_PROPERTY(double flashAt MEMBER flashAt NOTIFY flashAtChanged)
    Q_PROPERTY(qint64 beat MEMBER beat NOTIFY beatChanged)
    Q_PROPERTY(bool captionLive MEMBER captionLive NOTIFY captionLiveChanged)

    template <typename T> using Field = Published<T, Link>;

public:
    explicit Link(LinkSetup setup, QObject *parent = nullptr);
    ~Link() override;

    /// The instance of this process, made on first use; it needs the application object.
    static Link &shared();
    /// Seconds of monotonic system uptime.
    static double clock() { return TimeSource::system().now(); }
    /// The same by this instance's own clock: what everything drawn from it goes by.
    [[nodiscard]] double uptime() const { return setup_.time.now(); }
    /// Is offered a key (a Qt::Key and what it types); true when it consumed it.
    using KeyTaker = std::function<bool(int key, const QString &text)>;
    static constexpr int barCount = kelo::barCount;

    /// The rooms above; each may be absent, which skips the calls into it. None is owned.
    void setShell(Shell *shell) { shell_ = shell; }
    void setEars(Ears *ears) { ears_ = ears; }

    // ---- the engine's process ----

    /// Launches the engine. "OFFLINE" when that fails; nothing is retried then.
    void start();
    /// Asks the engine to quit and makes sure that it does; blocks for at most 1.5 seconds.
    void stop();
    /// Stops the engine and starts a new one 0.4 seconds later.
    Q_INVOKABLE void restart();

    // ---- what the engine says ----

    /// One line of the engine without its "@" and line feed, valid UTF-8. Malformed lines change
    /// nothing but `state`.
    void handle(QByteArrayView line);

    // ---- what the engine is told ----

    /// Writes `text` to the engine as it is, or switches something of our own when it is "#large",
    /// "#contrast" or "#voice". Dropped while the link is offline.
    Q_INVOKABLE void send(const QString &text);
    /// Stores a display setting and applies it when it is "large" or "contrast".
    void setAccess(const QString &key, bool on);
    /// Lets the user choose a MIDI file, then plays it.
    Q_INVOKABLE void chooseFile();
    /// Has the engine play the MIDI file at `path` while the visualiser shows it.
    void playFile(const QString &path);
    /// The same for a file that was dropped onto the display.
    Q_INVOKABLE void playUrl(const QUrl &url);
    /// The display name of `mode`.
    [[nodiscard]] QString modeName() const;

    // ---- the caption at an instant ----

    [[nodiscard]] qsizetype segmentIndex(double position) const;
    [[nodiscard]] qint64 spokenIndex(double at) const;
    [[nodiscard]] double spokenExact(double at) const;
    /// Moves the caption's cursor on towards `target` and returns where it is.
    double glide(double target, double at);

    // ---- the voice at an instant ----

    [[nodiscard]] std::optional<VoiceFrame> voiceBands(double at) const;
    double easedLevel(double at);
    void updateBars(double at);
    double spin(double at);

    // ---- published state; who sets it is said by keyword in inbound.h ----

    Field<QString> rollName{*this, &Link::rollNameChanged}; ///< the piece that is playing
    Field<bool> rolling{*this, &Link::rollingChanged};
    Field<QString> assistant{*this, &Link::assistantChanged};
    Field<QString> user{*this, &Link::userChanged};
    Field<QString> updateVersion{*this, &Link::updateVersionChanged};
    Field<QString> updateNotes{*this, &Link::updateNotesChanged};
    Field<bool> welcome{*this, &Link::welcomeChanged}; ///< the first-run questions show
    Field<KeyTaker> welcomeKey{*this, &Link::welcomeKeyChanged}; ///< set while they show
    Field<QString> caption{*this, &Link::captionChanged};
    Field<qint64> spokenTo{*this, &Link::spokenToChanged};
    Field<bool> speaking{*this, &Link::speakingChanged};
    Field<QList<Spoken>> transcript{*this, &Link::transcriptChanged}; ///< oldest first
    Field<QString> mode{*this, &Link::modeChanged, QStringLiteral("idle")};
    Field<QString> keyboards{*this, &Link::keyboardsChanged};
    Field<QString> voice{*this, &Link::voiceChanged};
    Field<bool> daw{*this, &Link::dawChanged};
    /// "STARTING", "ONLINE", "RESTARTING" or "OFFLINE".
    Field<QString> state{*this, &Link::stateChanged, QStringLiteral("STARTING")};
    Field<QStringList> jazz{*this, &Link::jazzChanged};
    Field<bool> visual{*this, &Link::visualChanged}; ///< the visualiser screen shows
    Field<bool> typing{*this, &Link::typingChanged}; ///< letters go to the engine as text
    Field<bool> paused{*this, &Link::pausedChanged};
    Field<bool> live{*this, &Link::liveChanged};
    Field<QString> bandStyle{*this, &Link::bandStyleChanged, QStringLiteral("full")};
    Field<QString> now{*this, &Link::nowChanged}; ///< the time of day, as the engine words it
    Field<QString> bandLevel{*this, &Link::bandLevelChanged};
    Field<QString> heard{*this, &Link::heardChanged};
    Field<QString> hands{*this, &Link::handsChanged, QStringLiteral("both")};
    Field<bool> large{*this, &Link::largeChanged};
    Field<bool> contrast{*this, &Link::contrastChanged};
    Field<QString> flash{*this, &Link::flashChanged}; ///< "beat", "good", "wrong", ...
    Field<double> flashAt{*this, &Link::flashAtChanged};
    Field<qint64> beat{*this, &Link::beatChanged, -1};
    Field<bool> captionLive{*this, &Link::captionLiveChanged};

    // ---- plain state, polled ----

    std::vector<RollNote> roll; ///< ascending by time, as the engine sends it
    std::optional<double> rollZero; ///< when the roll's time 0 falls
    double rollLength = 0; ///< seconds
    int welcomeStepForSnapshot = 0;
    NoteStage *scene = nullptr; ///< set and cleared by the falling-notes scene
    QHash<qint64, qint64> down; ///< keys the player holds, with their velocity
    QSet<qint64> played; ///< keys the engine sounds
    QList<qint64> buttons; ///< piano keys that act as command keys, in order
    QList<Ripple> ripples; ///< the player's key presses, newest last
    QList<Ripple> echoes; ///< the engine's notes, newest last
    double pulseAt = 0;
    double sayStarted = 0;
    bool gotWord = false;
    double wordAt = 0;
    double wordTime = 0;
    qint64 wordFrom = 0;
    qint64 wordLen = 0;
    double level = 0.05; ///< smoothed loudness of the voice, 0 to 1
    double levelAt = 0;
    QString chord;
    double chordAt = 0;
    qint64 voiceId = 0;
    std::vector<VoiceFrame> voiceFrames;
    std::optional<double> voiceAnchor;
    double voiceStart = 0;
    Bars bars{};
    double barsAt = 0;
    std::vector<Segment> segments;
    double doneAt = 0;

Q_SIGNALS:
    /// Some published field, or what depends on the theme, is about to change.
    void willChange();

    void rollNameChanged();
    void rollingChanged();
    void assistantChanged();
    void userChanged();
    void updateVersionChanged();
    void updateNotesChanged();
    void welcomeChanged();
    void welcomeKeyChanged();
    void captionChanged();
    void spokenToChanged();
    void speakingChanged();
    void transcriptChanged();
    void modeChanged();
    void keyboardsChanged();
    void voiceChanged();
    void dawChanged();
    void stateChanged();
    void jazzChanged();
    void visualChanged();
    void typingChanged();
    void pausedChanged();
    void liveChanged();
    void bandStyleChanged();
    void nowChanged();
    void bandLevelChanged();
    void heardChanged();
    void handsChanged();
    void largeChanged();
    void contrastChanged();
    void flashChanged();
    void flashAtChanged();
    void beatChanged();
    void captionLiveChanged();

    /// `buttons` was replaced. Not a published field, but the display lists it.
    void buttonsChanged();
    /// A key of the player or a note of the engine went down or up.
    void keysChanged();

private:
    friend class Inbound;

    [[nodiscard]] SpeechClock speechClock() const;
    [[nodiscard]] Liveliness liveliness() const;
    void installBridge() const;
    void engineEnded(bool clean);
    void goOffline();
    void releaseEngine();

    LinkSetup setup_;
    Inbound inbound_{*this};
    Shell *shell_ = nullptr;
    Ears *ears_ = nullptr;
    EngineProcess *process_ = nullptr; // a child of ours; the identity of the current run
    CrashWindow crashes_;
    bool stopping_ = false;
    qint64 counter_ = 0; // last id of the voice log
    qint64 captionMark_ = 0; // serial number of the caption
    double cursor_ = 0;
    double cursorAt_ = 0;
    double spinExtra_ = 0;
    double spinAt_ = 0;
};

} // namespace kelo
