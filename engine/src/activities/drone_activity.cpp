#include "activities/drone_activity.h"

#include "activities/home_activity.h"
#include "theory/pitch_names.h"
#include "training/chord_trainer.h"

#include <utility>

namespace kelo::engine {

namespace {

constexpr int lowest = 43; ///< the drone lies in the octave from here on
constexpr int octave = 12;
constexpr double held = 60; ///< seconds, then it is bowed anew
constexpr int velocity = 58;
constexpr unsigned char strings = 48; ///< the General MIDI program; a piano's tone would die away
constexpr double alone = 0.8; ///< seconds around a key that is named

} // namespace

DroneActivity::DroneActivity(Session &shared, const Request &wanted)
    : Activity(shared)
    , root_(wanted.key ? wanted.key->tonic : wanted.pitch.value_or(0))
{
}

void DroneActivity::enter(const Moment &now)
{
    moveTo(root_, now);
}

bool DroneActivity::request(const Request &request, const Moment &now)
{
    static constexpr Handler<DroneActivity> handlers[] = {
        {Action::Drone, &DroneActivity::set},
        {Action::Next, &DroneActivity::higher},
        {Action::Previous, &DroneActivity::lower},
        {Action::Start, &DroneActivity::again},
        {Action::Again, &DroneActivity::again},
        {Action::CarryOn, &DroneActivity::again},
        {Action::Stop, &DroneActivity::stop},
    };
    return handle(*this, handlers, request, now);
}

void DroneActivity::set(const Request &request, const Moment &now)
{
    if (!request.on.value_or(true)) {
        begin<HomeActivity>(now);
        say("The drone is off.", now);
        return;
    }
    moveTo(request.key ? request.key->tonic : request.pitch.value_or(root_), now);
}

void DroneActivity::moveTo(int note, const Moment &now)
{
    root_ = lowest + ((note - lowest) % octave + octave) % octave;
    keys_ = 0;
    key_.reset();
    say("A drone on " + pitchName(root_, Spelling::Mixed) + ".", now);
    sound(now);
}

void DroneActivity::sound(const Moment &now)
{
    Piece piece;
    piece.messages.push_back({0, {0xc0, strings, 0}});
    piece.notes.emplace_back(0, held, root_, velocity);
    piece.notes.emplace_back(0, held, root_ + 7, velocity / 2);
    measureLength(piece);
    session_.player.demonstrate(std::move(piece), now.uptime);
    sounding_ = true;
}

void DroneActivity::higher(const Request &, const Moment &now)
{
    moveTo(root_ + 1, now);
}

void DroneActivity::lower(const Request &, const Moment &now)
{
    moveTo(root_ - 1, now);
}

void DroneActivity::again(const Request &, const Moment &now)
{
    sound(now);
}

void DroneActivity::stop(const Request &, const Moment &)
{
    sounding_ = false;
    session_.player.stop();
}

void DroneActivity::note(int pitch, int strength, const Moment &now)
{
    if (strength <= 0)
        return;
    lastKey_ = now.uptime;
    key_ = ++keys_ == 1 ? std::optional(pitch) : std::nullopt;
}

void DroneActivity::takeBack(int, const Moment &)
{
    key_.reset();
}

void DroneActivity::advance(const Moment &now)
{
    if (sounding_ && !session_.player.playing() && !session_.player.paused())
        sound(now);
    if (keys_ == 0 || now.uptime < lastKey_ + alone)
        return;
    keys_ = 0;
    if (const auto key = std::exchange(key_, std::nullopt))
        say(pitchName(*key, Spelling::Mixed) + ", " + intervalName(*key - root_)
                + (*key < root_ ? " below." : "."),
            now);
}

std::optional<double> DroneActivity::deadline() const
{
    return keys_ > 0 ? std::optional(lastKey_ + alone) : std::nullopt;
}

std::string DroneActivity::place() const
{
    return "This is a drone on " + pitchName(root_, Spelling::Mixed) + ".";
}

std::string_view DroneActivity::help() const
{
    return "I hold a note and its fifth while you play. A key that you play by itself I name with "
           "its interval. Right and left move the drone, Return pauses it. Zero goes home.";
}

std::string_view DroneActivity::suggestions() const
{
    return "drone on D; next; stop; drone off; or go home";
}

} // namespace kelo::engine
