#pragma once

#include "assistant/modes.h"
#include "assistant/typing_line.h"
#include "lessons/lesson.h"
#include "listen/ear.h"
#include "listen/phrases.h"
#include "music/player.h"
#include "piano/command_keys.h"
#include "piano/midi_thru.h"
#include "piano/recorder.h"
#include "protocol/input.h"
#include "protocol/wire.h"
#include "setup/profile.h"
#include "songs/library.h"
#include "songs/menu.h"
#include "speech/speaker.h"
#include "training/band.h"
#include "training/ear_trainer.h"
#include "training/metronome.h"

#include <bitset>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace kelo::engine {

/// A moment: seconds of the monotonic clock, and the local day and time.
struct Moment {
    double uptime = 0;
    Day today;
    int hour = 0;
    int minute = 0;
};

/// What the assistant works with.
struct Equipment {
    Wire &wire;
    Speaker &speaker;
    Player &player;
    Metronome &metronome;
    Band &band;
    MidiThru &through;
    Instrument &keys; ///< what the player's own keys sound on
    Library &library;
    std::function<void(float)> setVoiceLoudness; ///< 1 is as the voice is
    std::function<bool(const std::filesystem::path &)> openPage; ///< shows it to the user
};

/// Where the assistant keeps things.
struct Places {
    std::filesystem::path profile;
    std::filesystem::path page; ///< of all commands
    std::filesystem::path songs; ///< what is to be kept goes there
};

/// What the assistant does when it is asked, by key, by voice, by the piano's top keys or by the
/// display: every mode, and what it answers. It knows nothing of threads or devices. Beside this
/// file's own each kind of request has a file.
class Assistant {
public:
    Assistant(const Equipment &equipment, Places whereThingsAre, std::uint32_t seed);
    Assistant(const Assistant &) = delete;
    Assistant &operator=(const Assistant &) = delete;
    ~Assistant() = default;

    /// Tells the display how things are. Who has never been here is asked the first questions,
    /// if `asksQuestions`.
    void begin(std::string_view piano, bool asksQuestions, const Moment &now);

    /// Greets who has been here before; `trouble` follows in the same breath, where there is any.
    void greet(std::string_view trouble, const Moment &now);

    void take(const Input &input, const Moment &now);

    /// Something was played on the piano.
    void takePiano(ChannelMessage message, const Moment &now);

    /// The piano was found, or lost where `name` is empty.
    void pianoChanged(std::string_view name);

    /// What is said can be heard, which it could not be before.
    void soundCame(const Moment &now) { say("I have sound now.", now); }

    /// It neither speaks nor shows anything: the next move is the player's.
    [[nodiscard]] bool quiet() const { return !speaker.speaking() && !demoWaits; }

    void advance(const Moment &now);
    [[nodiscard]] std::optional<double> deadline() const;

    /// It has been asked to quit.
    [[nodiscard]] bool finished() const { return quit; }

private:
    // What comes in.
    void obey(std::string_view line, const Moment &now);
    void press(Key pressed, const Moment &now);
    void type(Key pressed, const Moment &now);
    void hear(std::string_view rest, const Moment &now);
    void heard(const std::string &command, const Moment &now);
    void answer(std::string_view words, const Moment &now);
    void setUp(std::string_view fields, const Moment &now);
    void perform(const Request &request, const Moment &now);

    // What is done, by kind of request; false where it is of another kind.
    bool performSongs(const Request &request, const Moment &now);
    bool performTeaching(const Request &request, const Moment &now);
    bool performSound(const Request &request, const Moment &now);
    bool performDisplay(const Request &request, const Moment &now);
    bool performTalk(const Request &request, const Moment &now);

    // Songs.
    void openMenu(const Moment &now);
    void start(const Moment &now);
    void step(bool forward, const Moment &now);
    bool choose(const Request &request, const Moment &now);
    void playChosen(const Moment &now);
    void play(std::variant<Piece, MidiFault> read, const std::string &name,
        std::string_view announcement, const Moment &now);
    void pauseOrCarryOn(const Moment &now);
    void keep(const Moment &now);
    void home(const Moment &now);
    void silence(const Moment &now);

    // Teaching.
    void learnChosen(const Moment &now);
    void trainEars(const Moment &now);
    void teach(const Reply &reply, const Moment &now);
    void demonstrate(const Moment &now);
    void listenToPlayer(const Moment &now);
    void setHands(Hands which, const Moment &now);
    void useHands(Hands which);
    void stopTeaching(Mode next);
    [[nodiscard]] bool teaching() const { return lesson || trainer; }

    // Sound.
    void changeTempo(int direction, const Moment &now);
    void changeLoudness(int percent, const Moment &now);
    void tick(const Request &request, const Moment &now);
    void playAlong(const Request &request, const Moment &now);

    // Talking.
    void say(std::string_view text, const Moment &now);
    void hush();
    void setMode(Mode value);
    void tellButtons();
    void tellVocabulary();
    void rememberProfile();
    void openPage(const Moment &now);
    void sendNames();
    [[nodiscard]] std::string whereWeAre() const;

    Equipment tools;
    Places places;
    Wire &wire;
    Speaker &speaker;
    Player &player;
    std::uint32_t randomSeed;

    std::optional<Mode> shownMode;
    Mode mode = Mode::Idle;
    std::optional<Profile> profile; ///< of who has answered the first questions
    Profile settings; ///< the profile, or what holds without one
    std::size_t choice = 0; ///< among those that are offered at home
    bool pieceIsNews = false; ///< a piece was played since a choice was last made
    SongMenu menu;
    std::optional<Lesson> lesson;
    std::map<std::string, int> reached; ///< bars of songs whose lessons were left
    std::optional<EarTrainer> trainer;
    Hands hands = Hands::Both;
    bool demoWaits = false; ///< for the words before it
    Ear ear;
    bool answerExpected = false; ///< once it has finished speaking
    std::optional<TypingLine> typing;
    std::string lastSaid;
    std::string title; ///< of what was played last

    std::string pianoName;
    CommandKeys commandKeys;
    bool settingTopKey = false;
    std::bitset<128> down; ///< keys that are shown as held
    Recorder recorder;

    int shownMinute = -1;
    bool quit = false;
};

} // namespace kelo::engine
