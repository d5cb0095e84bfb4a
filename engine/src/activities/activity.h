#pragma once

#include "activities/session.h"
#include "listen/jobs.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace kelo::engine {

/// How fast and in which metre something goes.
struct Beat {
    int tempo = 100; ///< beats a minute
    int beats = 4; ///< in a bar
    double nextBar = 0; ///< seconds of the monotonic clock
};

/// The beat of a piece that `player` plays or will play.
[[nodiscard]] Beat beatOf(const Piece &piece, const Player &player, const Moment &now);

/// What the user is doing. There is one at a time: it owns all that sounds, and leaving it ends
/// that. What it does not do itself the assistant does.
class Activity {
public:
    explicit Activity(Session &shared)
        : session_(shared)
    {
    }
    Activity(const Activity &) = delete;
    Activity &operator=(const Activity &) = delete;
    virtual ~Activity() = default;

    virtual void enter(const Moment &) { }
    virtual void leave(const Moment &now);

    /// False where nothing runs that could be paused.
    virtual bool pause(const Moment &now);
    virtual void resume(const Moment &now);
    /// What RETURN does.
    virtual void pauseOrCarryOn(const Moment &now);
    [[nodiscard]] virtual bool paused() const { return session_.player.paused(); }

    /// Does what was asked for; false where that is not this activity's.
    virtual bool request(const Request &, const Moment &) { return false; }

    /// A key of the piano was pressed, or released where `velocity` is 0.
    virtual void note(int, int, const Moment &) { }

    /// The key that was pressed last was no music after all.
    virtual void takeBack(int, const Moment &) { }

    virtual void advance(const Moment &) { }
    [[nodiscard]] virtual std::optional<double> deadline() const { return {}; }

    /// The word of "@mode".
    [[nodiscard]] virtual std::string_view mode() const { return "idle"; }
    /// Its bit of Where.
    [[nodiscard]] virtual unsigned where() const { return InIdle; }
    /// "You are at home."
    [[nodiscard]] virtual std::string place() const = 0;
    [[nodiscard]] virtual std::string_view help() const = 0;
    /// A few things to say here.
    [[nodiscard]] virtual std::string_view suggestions() const = 0;

    /// What a metronome has to keep to; nothing where it may go as it likes.
    [[nodiscard]] virtual std::optional<Beat> beat(const Moment &) const { return {}; }
    /// Something goes on that should not end by mistake.
    [[nodiscard]] virtual bool busy() const { return true; }
    /// It is showing something; the next move is not yet the player's.
    [[nodiscard]] virtual bool presenting() const { return false; }
    /// All keys of the piano are music here.
    [[nodiscard]] virtual bool everyKeyIsMusic() const { return false; }

protected:
    void say(std::string_view text, const Moment &now) const { session_.say(text, now); }
    template <typename Next, typename... Arguments>
    void begin(const Moment &now, Arguments &&...arguments)
    {
        session_.host.begin(
            std::make_unique<Next>(session_, std::forward<Arguments>(arguments)...), now);
    }

    Session &session_;
};

/// What a class does for an action.
template <typename Owner> struct Handler {
    Action action;
    void (Owner::*perform)(const Request &request, const Moment &now);
};

/// Lets the handler of a table do what was asked for; false where there is none.
template <typename Owner, std::size_t count>
bool handle(
    Owner &owner, const Handler<Owner> (&table)[count], const Request &request, const Moment &now)
{
    for (const Handler<Owner> &handler : table) {
        if (handler.action == request.action) {
            (owner.*handler.perform)(request, now);
            return true;
        }
    }
    return false;
}

} // namespace kelo::engine
