#include "music/player.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace kelo::engine {

namespace {

constexpr double scheduleAhead = 0.2; ///< seconds of music that outlast a busy moment
constexpr double scheduleEvery = 0.1;
constexpr double demonstrationDelay = 0.3;
constexpr double carryOnDelay = 0.1; ///< longer than any block is on its way to the loudspeaker
constexpr int drumChannel = 9;
constexpr std::size_t notesPerLine = 64;

unsigned char status(int kind, int channel)
{
    return static_cast<unsigned char>(kind | channel);
}

} // namespace

Player::Player(Wire &lines, Instrument &sound, const AudioClock &audioClock)
    : wire(lines)
    , instrument(sound)
    , clock(audioClock)
{
}

void Player::start(Piece music, std::string name, double now)
{
    prepare(std::move(music));
    title = std::move(name);
    shown = true;
    playFrom(0, leadIn, now);
}

void Player::demonstrate(Piece music, double now)
{
    prepare(std::move(music));
    shown = false;
    playFrom(0, demonstrationDelay, now);
}

void Player::prepare(Piece music)
{
    stop();
    piece = std::move(music);
    lamps.clear();
    for (const Note &note : piece.notes) {
        if (note.channel == drumChannel)
            continue;
        lamps.push_back({note.at, note.pitch, note.velocity});
        lamps.push_back({note.at + note.duration, note.pitch, 0});
    }
    std::stable_sort(
        lamps.begin(), lamps.end(), [](const Lamp &a, const Lamp &b) { return a.at < b.at; });
}

void Player::again(double now)
{
    if (!hasPiece())
        return;
    stop();
    playFrom(0, shown ? leadIn : demonstrationDelay, now);
}

void Player::carryOn(double now)
{
    if (!paused())
        return;
    wire.send("paused", "0");
    playFrom(position, carryOnDelay, now);
}

void Player::pause(double now)
{
    if (!playing())
        return;
    position = positionAt(now);
    halt();
    state = State::Paused;
    if (shown)
        wire.send("rollstop");
    wire.send("paused", "1");
}

double Player::positionAt(double now) const
{
    return std::clamp(seconds(clock.frameAt(now) - origin) * speed, 0.0, piece.length);
}

void Player::setTempo(double factor, double now)
{
    if (!playing()) {
        speed = factor;
        return;
    }
    const double at = positionAt(now);
    halt();
    speed = factor;
    playFrom(at, carryOnDelay, now);
}

void Player::stop()
{
    if (playing()) {
        halt();
        if (shown)
            wire.send("rollstop");
    }
    if (paused())
        wire.send("paused", "0");
    state = State::Stopped;
}

void Player::halt()
{
    instrument.silence();
    for (int pitch = 0; pitch < 128; ++pitch) {
        int &count = sounding[static_cast<std::size_t>(pitch)];
        if (count > 0)
            wire.send("out", {pitch, 0});
        count = 0;
    }
}

void Player::playFrom(double from, double delay, double now)
{
    state = State::Playing;
    origin = clock.frameAt(now + delay - from / speed);
    if (shown)
        showRoll(from);
    restoreChannels(from);
    nextMessage =
        static_cast<std::size_t>(std::partition_point(piece.messages.begin(), piece.messages.end(),
                                     [&](const TimedMessage &message) { return message.at < from; })
            - piece.messages.begin());
    nextLamp = static_cast<std::size_t>(std::partition_point(lamps.begin(), lamps.end(),
                                            [&](const Lamp &lamp) { return lamp.at < from; })
        - lamps.begin());
    if (shown) {
        char zero[64];
        std::snprintf(zero, sizeof zero, "%.4f %.4f", delay - from / speed, piece.length / speed);
        wire.send("rollstart", zero);
    }
    advance(now);
}

void Player::showRoll(double from)
{
    wire.send("rollnew", title);
    std::string line;
    std::size_t count = 0;
    const auto flush = [&] {
        if (count > 0)
            wire.send("rolln", line);
        line.clear();
        count = 0;
    };
    for (const Note &note : piece.notes) {
        if (note.channel == drumChannel || note.at + note.duration < from)
            continue;
        char text[96];
        std::snprintf(text, sizeof text, "%s%.4f,%.4f,%d,%d,%d", count > 0 ? ";" : "",
            note.at / speed, note.duration / speed, note.pitch, note.velocity, note.track);
        line += text;
        if (++count == notesPerLine)
            flush();
    }
    flush();
}

/// Gives every channel the instrument, the controllers and the pitch bend that it has at
/// `until`, whatever was played before.
void Player::restoreChannels(double until)
{
    struct Channel {
        int program = 0;
        int bendLow = 0;
        int bendHigh = 64;
        std::array<int, 128> controllers{};
    };
    constexpr std::array<std::pair<std::size_t, int>, 4> initial{
        {{0, 0}, {7, 100}, {10, 64}, {11, 127}}};
    constexpr std::size_t firstChannelMode = 120;
    std::array<Channel, 16> channels;
    for (Channel &channel : channels) {
        channel.controllers.fill(-1);
        for (const auto &[number, value] : initial)
            channel.controllers[number] = value;
    }
    for (const auto &[at, message] : piece.messages) {
        if (at >= until)
            break;
        Channel &channel = channels[static_cast<std::size_t>(message.channel())];
        if (message.kind() == 0xb0 && message.first < firstChannelMode)
            channel.controllers[message.first] = message.second;
        else if (message.kind() == 0xc0)
            channel.program = message.first;
        else if (message.kind() == 0xe0) {
            channel.bendLow = message.first;
            channel.bendHigh = message.second;
        }
    }
    const auto send = [this](int kind, int channel, int first, int second) {
        instrument.play(0,
            {status(kind, channel), static_cast<unsigned char>(first),
                static_cast<unsigned char>(second)});
    };
    for (int number = 0; number < 16; ++number) {
        const Channel &channel = channels[static_cast<std::size_t>(number)];
        for (int controller = 0; controller < static_cast<int>(firstChannelMode); ++controller) {
            if (const int value = channel.controllers[static_cast<std::size_t>(controller)];
                value >= 0)
                send(0xb0, number, controller, value);
        }
        send(0xc0, number, channel.program, 0);
        send(0xe0, number, channel.bendLow, channel.bendHigh);
    }
}

void Player::light(const Lamp &lamp)
{
    int &count = sounding[static_cast<std::size_t>(lamp.pitch)];
    if (lamp.velocity > 0) {
        ++count;
        wire.send("out", {lamp.pitch, lamp.velocity});
    } else if (count > 0 && --count == 0) {
        wire.send("out", {lamp.pitch, 0});
    }
}

void Player::advance(double now)
{
    if (!playing())
        return;
    const Frame until = clock.frameAt(now + scheduleAhead);
    while (nextMessage < piece.messages.size()) {
        const TimedMessage &next = piece.messages[nextMessage];
        if (frameOf(next.at) >= until || !instrument.play(frameOf(next.at), next.message))
            break;
        ++nextMessage;
    }
    const Frame heard = clock.frameAt(now);
    while (nextLamp < lamps.size() && frameOf(lamps[nextLamp].at) <= heard)
        light(lamps[nextLamp++]);
    nextSchedule = now + scheduleEvery;
    if (frameOf(piece.length) <= heard)
        stop();
}

std::optional<double> Player::deadline() const
{
    if (!playing())
        return {};
    const double next = nextLamp < lamps.size() ? lamps[nextLamp].at : piece.length;
    return std::min(clock.timeOf(frameOf(next)), nextSchedule);
}

} // namespace kelo::engine
