#pragma once

#include "activities/moment.h"
#include "composing/score.h"
#include "lessons/talk.h"
#include "listen/request.h"
#include "music/player.h"
#include "piano/recorder.h"
#include "practice/practice_log.h"
#include "protocol/wire.h"
#include "setup/progress.h"
#include "songs/library.h"
#include "songs/song_list.h"
#include "training/band.h"
#include "training/metronome.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace kelo::engine {

class Activity;
class StudioControl;

/// What an activity asks of the assistant.
class Host {
public:
    virtual ~Host() = default;

    virtual void say(std::string_view text, const Moment &now) = 0;
    [[nodiscard]] virtual bool speaking() const = 0;
    /// What was said last, whether that is over or not.
    [[nodiscard]] virtual std::string_view lastSaid() const = 0;
    virtual void hush() = 0;

    /// Leaves the current activity, which lives on until what it is doing has returned.
    virtual void begin(std::unique_ptr<Activity> next, const Moment &now) = 0;

    /// As if it had been asked for.
    virtual void perform(const Request &request, const Moment &now) = 0;

    /// A short question with two answers: "first" and "second" are performed.
    virtual void ask(std::string_view question, const Request &first, const Request &second,
        const Moment &now) = 0;
};

/// A piece that was heard: what "this" means.
struct Heard {
    std::string title;
    SharedPiece piece;
};

/// What every activity works with, and what outlives each of them.
struct Session {
    Host &host;
    Wire &wire;
    Player &player;
    Metronome &metronome;
    Band &band;
    Library &library;
    std::filesystem::path songsFolder; ///< what is to be kept goes there
    std::filesystem::path downloads; ///< where the user's browser writes
    std::filesystem::path draft; ///< of the composition that is not saved yet
    std::uint32_t seed = 0; ///< of all that is chosen by chance
    StudioControl *logic = nullptr; ///< where there is one
    StudioControl *reaper = nullptr;

    SongList songs{}; ///< with the song that was chosen last
    Hands hands = Hands::Both;
    Talk talk = Talk::All; ///< in lessons
    Attention attention{}; ///< the same
    Recorder recorder{};
    std::optional<Heard> heard{}; ///< what was played last
    Progress progress{};
    PracticeLog practice{};
    std::optional<Score> composition{}; ///< the user's theme
    bool draftKept = true; ///< as it is
    std::map<Action, double> done{}; ///< when something was last asked for
    bool pianoPresent = false;

    void say(std::string_view text, const Moment &now) const { host.say(text, now); }

    /// A number for what is chosen by chance at a moment.
    [[nodiscard]] std::uint32_t seedAt(const Moment &now) const
    {
        return seed + static_cast<std::uint32_t>(now.uptime * 1000);
    }
};

} // namespace kelo::engine
