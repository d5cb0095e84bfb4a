#pragma once

#include "assistant/assistant.h"
#include "assistant/demo.h"
#include "piano/midi_thru.h"
#include "protocol/input.h"
#include "sound/sound_desk.h"
#include "stage.h"
#include "studio/studio_control.h"

#include <QStringList>
#include <QTemporaryDir>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

/// Speech without a voice: each text lasts as long as it has letters.
class SilentSpeech : public kelo::engine::TextToSpeech {
public:
    explicit SilentSpeech(kelo::engine::Wire &wire)
        : wire_(wire)
    {
    }
    void say(std::string_view text, double now) override;
    void stop() override;
    [[nodiscard]] bool speaking() const override { return end_.has_value(); }
    void setVoice(std::size_t value) override { voice = value; }
    void setStyle(const kelo::engine::SpeechStyle &value) override { style = value; }
    void setLoudness(float value) override { loudness = value; }
    void useSystemVoice(bool value) override { system = value; }
    [[nodiscard]] bool usesSystemVoice() const override { return system; }
    void advance(double now) override;
    [[nodiscard]] std::optional<double> deadline() const override { return end_; }

    kelo::engine::SpeechStyle style;
    std::size_t voice = 0;
    float loudness = 0;
    bool system = false;

private:
    kelo::engine::Wire &wire_;
    std::optional<double> end_;
};

/// A workstation that answers only while it is there.
class Workstation : public kelo::engine::StudioControl {
public:
    [[nodiscard]] bool connected() const override { return there; }
    bool send(kelo::engine::StudioCommand command) override
    {
        asked += QByteArray::number(int(command)) + ' ';
        return there;
    }

    bool there = false;
    QByteArray asked;
};

/// The assistant with all its music, in a time of its own: an hour passes in a moment, and always
/// in the same way.
class Rig {
public:
    Rig();

    /// Someone called Ann has been here before, unless `known` is false.
    void start(bool known = true);

    /// Runs by the assistant's own deadlines.
    void run(double seconds);
    /// Lines, keys and bytes as a display sends them.
    void send(const QByteArray &bytes);
    void press(int pitch, int velocity = 80);
    /// Plays what the assistant plays next, but for some notes, so much higher and slower; where it
    /// plays nothing, the same again.
    void playAfter(int skipped, int higher, double slower, int most);
    void control(int number, int value);
    void plug(const QString &piano);

    /// The next line that matches, within a virtual minute; empty where there is none.
    QString waitFor(const QString &pattern, double seconds = 60);

    /// Notes begun by the player, the player's own keys or the rhythm since the last `send`.
    [[nodiscard]] int notes(const QString &section) const;
    /// Instruments that were chosen for pieces since the last `send`.
    [[nodiscard]] QList<int> programs() const;
    [[nodiscard]] QString path(const QString &name) const { return folder_.filePath(name); }
    /// What is kept in files, but for takes, which are written while other things go on; and how
    /// everything is set.
    [[nodiscard]] QByteArray keeps() const;

    QStringList lines; ///< without "@"
    QByteArrayList times; ///< when each line came
    std::size_t answered = 0; ///< messages of the music that have been played back
    int turns = 0; ///< how often it was asked to go on
    qsizetype seen = 0; ///< lines that have matched, and those before them
    double now = 10;
    kelo::engine::AudioClock clock{0};
    Recording music;
    Recording rhythm;
    Recording keys;
    kelo::engine::Wire wire{[this](std::string_view line) { write(line); }};
    SilentSpeech speech{wire};
    QByteArray passedOn; ///< to the piano
    kelo::engine::MidiThru through{
        music, clock, [this](kelo::engine::ChannelMessage message) {
            passedOn += QByteArray::number(message.status * 128 + message.first) + ' ';
        }};
    kelo::engine::Player player{wire, through, clock};
    kelo::engine::Metronome metronome{wire, rhythm, clock};
    kelo::engine::Band band{wire, rhythm, clock};
    std::unique_ptr<kelo::engine::Library> library;
    std::unique_ptr<kelo::engine::Assistant> assistant;
    kelo::engine::Mixer mixer{
        std::make_unique<kelo::engine::Synth>(std::span<const std::string>{}), clock};
    kelo::engine::SoundDesk desk{mixer, {}, {}, [] {}};
    Workstation studio;

private:
    void write(std::string_view line);
    [[nodiscard]] kelo::engine::Moment moment() const;

    QTemporaryDir folder_;
    kelo::engine::InputReader input_;
    double sentAt_ = 0;
    std::vector<Recording::Played> heard_; ///< that is played back
};

/// Goes through a script, a line a step, and says which step failed and how; empty where none did.
///
///     > ~say TEXT     sends it as a line; other text as keys, with C escapes
///     < PATTERN       this line follows, sooner or later
///     ! PATTERN       no such line has come since the last ">", nor comes for two seconds
///     tap 60 64       presses these keys one after the other; "hold 48 52 2" together, for seconds
///     press 60 64     presses these and lets none go
///     echo 2 12 1.5 9 what it plays next is played back without two notes, an octave higher,
///     slower
///                     and no further than nine notes; all of these may be left out
///     wait 3          seconds pass
///     studio          the workstations answer, or do no longer
///     give FROM > TO  a file that is kept becomes another one
///     deny NAME       that file cannot be written; "allow NAME": it can again
///     restart         the engine is gone without a word, and another begins
///     piano NAME      one is plugged in; without a name it is pulled out
///     sounds music    notes are begun there ("music", "rhythm", "keys"); "silent music": none
///     kept TEXT       the profile's file has this in it
///     file PATTERN    there is a file of such a name, or "songs/" and a name; "nofile": none
///     top 3           the third command key of the piano is pressed
///     mode NAME       the mode now
///     program 33      an instrument that was chosen since the last ">"
///     tempo 90        percent; "loudness 80": of the voice; "thru": the piano plays, too
///     pedal 64 127    a controller of the piano is moved
[[nodiscard]] QString failureOf(Rig &rig, const QStringList &steps);

/// All that was told and played from a line on. What a display takes in lines one after the other
/// is one line here, with a number that changes with any of it.
[[nodiscard]] QString toldBy(const Rig &rig, qsizetype from);

/// What an assistant has ever told and played, in a file with a part an evening.
/// With KELO_WRITE_SCRIPTS set, what it tells and plays now is kept instead.
class KeptEvenings {
public:
    explicit KeptEvenings(QString file);
    ~KeptEvenings();
    Q_DISABLE_COPY(KeptEvenings)

    /// How it differs, from one of the rig's lines on; empty where it doesn't.
    QString unlikeKept(const QString &name, const Rig &rig, qsizetype from = 0);
    QString unlikeKept(const QString &name, const QString &evening);
    [[nodiscard]] QStringList names() const;
    [[nodiscard]] QStringList kept(const QString &name) const;

private:
    QString file_;
    QString kept_;
    QString now_;
    bool writes_;
};
