#pragma once

#include "activities/activity.h"
#include "assistant/activity_requests.h"
#include "assistant/display_requests.h"
#include "assistant/mode_display.h"
#include "assistant/piano_input.h"
#include "assistant/practice_requests.h"
#include "assistant/score_requests.h"
#include "assistant/song_requests.h"
#include "assistant/sound_requests.h"
#include "assistant/talk_requests.h"
#include "assistant/transport_requests.h"
#include "assistant/word_input.h"
#include "piano/midi_thru.h"
#include "protocol/input.h"
#include "setup/settings.h"
#include "speech/text_to_speech.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelo::engine {

/// What the assistant works with.
struct Equipment {
    Wire &wire;
    TextToSpeech &speech;
    Player &player;
    Metronome &metronome;
    Band &band;
    MidiThru &through;
    Instrument &keys; ///< what the player's own keys sound on
    Library &library;
    SoundDesk &desk;
    std::function<bool(const std::filesystem::path &)> openPage; ///< shows it to the user
    StudioControl *logic = nullptr; ///< where there is one
    StudioControl *reaper = nullptr;
};

/// Where the assistant keeps things.
struct Places {
    std::filesystem::path profile;
    std::filesystem::path page; ///< of all commands
    std::filesystem::path songs; ///< what is to be kept goes there
    std::filesystem::path takes; ///< what was played last
    std::filesystem::path draft; ///< of the composition that is not saved yet
    std::filesystem::path progress; ///< in lessons
    std::filesystem::path practice; ///< what was played, bar by bar
    std::filesystem::path downloads; ///< the user's
};

/// Takes what comes in, by key, by voice, from the piano or from the display, makes requests of
/// it and gives each to the current activity or, where that has no use for it, to who does the
/// same everywhere. It knows nothing of threads or devices.
class Assistant : private Host {
public:
    Assistant(const Equipment &equipment, const Places &places, std::uint32_t seed);
    Assistant(const Assistant &) = delete;
    Assistant &operator=(const Assistant &) = delete;
    ~Assistant() override;

    /// What is said where files cannot be written.
    static constexpr std::string_view takesNothing =
        "I can't write to my folder, so what you set and play now won't be kept. ";

    /// Tells the display how things are. Who has never been here is asked the first questions,
    /// if `asksQuestions`.
    void begin(std::string_view piano, bool asksQuestions, const Moment &now);

    /// Greets who has been here before; `trouble` follows in the same breath, where there is any.
    void greet(std::string_view trouble, const Moment &now);

    void take(const Input &input, const Moment &now);

    /// Something was played on the piano.
    void takePiano(ChannelMessage message, const Moment &now);

    /// The piano was found, or lost where `name` is empty.
    void pianoChanged(std::string_view name, const Moment &now) { piano_.change(name, now); }

    /// What is said can be heard, which it could not be before.
    void soundCame(const Moment &now) { say("I have sound now.", now); }

    /// It neither speaks nor shows anything: the next move is the player's.
    [[nodiscard]] bool quiet() const { return !speech_.speaking() && !activity_->presenting(); }

    void advance(const Moment &now);
    [[nodiscard]] std::optional<double> deadline() const;

    /// It has been asked to quit.
    [[nodiscard]] bool finished() const { return quit_; }

    void goHome(const Request &request, const Moment &now);
    void sayAgain(const Request &request, const Moment &now);
    void switchTalk(const Request &request, const Moment &now);
    void type(const Request &, const Moment &now) { words_.beginTyping(now); }

private:
    void say(std::string_view text, const Moment &now) override;
    [[nodiscard]] bool speaking() const override { return speech_.speaking(); }
    [[nodiscard]] std::string_view lastSaid() const override { return lastSaid_; }
    void begin(std::unique_ptr<Activity> next, const Moment &now) override;
    void perform(const Request &request, const Moment &now) override;
    void ask(std::string_view question, const Request &first, const Request &second,
        const Moment &now) override;

    void obey(std::string_view line, const Moment &now);
    void press(Key pressed, const Moment &now);
    void setUp(std::string_view fields, const Moment &now);
    void hush() override;
    void showMode();
    void tellNames();
    bool keepAll();
    void keep(const Moment &now);

    Wire &wire_;
    TextToSpeech &speech_;
    Player &player_;
    Metronome &metronome_;
    MidiThru &through_;
    Settings settings_;
    Session session_;

    std::unique_ptr<Activity> activity_; ///< never empty
    std::vector<std::unique_ptr<Activity>> left_; ///< until what they were doing has returned
    TransportRequests transportRequests_;
    ActivityRequests activityRequests_;
    SongRequests songRequests_;
    ScoreRequests scoreRequests_;
    PracticeRequests practiceRequests_;
    SoundRequests soundRequests_;
    DisplayRequests displayRequests_;
    TalkRequests talkRequests_;

    WordInput words_;
    PianoInput piano_;
    ModeDisplay modeDisplay_;
    bool talking_ = false; ///< talk mode, beside whatever the activity is
    std::string lastSaid_;
    bool greeted_ = false;
    bool toldOfFolder_ = false; // that it takes nothing
    bool kept_ = true; // all there is, the last time
    double nextKeeping_ = 0;
    std::string troubleLeft_; // to tell of once the questions are answered
    bool quit_ = false;
};

} // namespace kelo::engine
