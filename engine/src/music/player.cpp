#include "music/player.h"

#include "music/loudness.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace kelo::engine {

namespace {

constexpr double scheduleAhead = 0.2; ///< seconds of music that outlast a busy moment
constexpr double scheduleEvery = 0.1;
constexpr double carryOnDelay = 0.1; ///< longer than any block is on its way to the loudspeaker
constexpr int drumChannel = 9;
constexpr std::size_t notesPerLine = 64;
constexpr std::size_t notesAtATime = 2048;

unsigned char status(int kind, int channel)
{
    return static_cast<unsigned char>(kind | channel);
}

} // namespace

Player::Player(Wire &wire, Instrument &instrument, const AudioClock &clock)
    : wire_(wire)
    , instrument_(instrument)
    , clock_(clock)
{
}

void Player::start(SharedPiece piece, std::string name, double now)
{
    prepare(std::move(piece));
    title_ = std::move(name);
    shown_ = true;
    playFrom(0, leadIn, now);
}

void Player::demonstrate(SharedPiece piece, double now)
{
    prepare(std::move(piece));
    shown_ = false;
    playFrom(0, demonstrationDelay, now);
}

void Player::prepare(SharedPiece piece)
{
    stop();
    piece_ = std::move(piece);
    instrument_.setGain(levellingGain(piece_));
}

void Player::again(double now)
{
    if (!hasPiece())
        return;
    stop();
    playFrom(0, shown_ ? leadIn : demonstrationDelay, now);
}

void Player::carryOn(double now)
{
    if (!paused())
        return;
    wire_.send("paused", "0");
    playFrom(pausedAt_, carryOnDelay, now);
}

void Player::pause(double now)
{
    if (!playing())
        return;
    pausedAt_ = positionAt(now);
    halt();
    state_ = State::Paused;
    if (shown_)
        wire_.send("rollstop");
    wire_.send("paused", "1");
}

void Player::seek(double position, double now)
{
    if (!hasPiece())
        return;
    const double place = std::clamp(position, 0.0, piece_->length);
    if (paused()) {
        pausedAt_ = place;
        return;
    }
    halt();
    playFrom(place, carryOnDelay, now);
}

double Player::position(double now) const
{
    return playing() ? positionAt(now) : paused() ? pausedAt_ : 0;
}

double Player::positionAt(double now) const
{
    return std::clamp(seconds(clock_.frameAt(now) - origin_) * speed_, 0.0, piece_->length);
}

void Player::setTempo(double factor, double now)
{
    if (!playing()) {
        speed_ = factor;
        return;
    }
    const double at = positionAt(now);
    halt();
    speed_ = factor;
    playFrom(at, carryOnDelay, now);
}

void Player::open(const Piece &piece)
{
    stop();
    piece_ = {};
    instrument_.setGain(levellingGain(piece));
    restoreChannels(0);
}

void Player::touch(int pitch, int velocity)
{
    instrument_.play(0,
        {status(velocity > 0 ? 0x90 : 0x80, 0), static_cast<unsigned char>(pitch),
            static_cast<unsigned char>(velocity)});
    wire_.send("out", {pitch, velocity});
}

void Player::stop()
{
    if (playing()) {
        halt();
        if (shown_)
            wire_.send("rollstop");
    }
    if (paused())
        wire_.send("paused", "0");
    state_ = State::Stopped;
}

void Player::halt()
{
    instrument_.silence();
    for (int pitch = 0; pitch < 128; ++pitch) {
        int &count = sounding_[static_cast<std::size_t>(pitch)];
        if (count > 0)
            wire_.send("out", {pitch, 0});
        count = 0;
    }
}

void Player::playFrom(double from, double delay, double now)
{
    state_ = State::Playing;
    origin_ = clock_.frameAt(now + delay - from / speed_);
    if (shown_)
        showRoll(from);
    restoreChannels(from);
    feed_ = MessageFeed(piece_, from);
    nextNote_ =
        static_cast<std::size_t>(std::ranges::partition_point(piece_->notes, [&](const Note &note) {
            return note.at < from;
        }) - piece_->notes.begin());
    lit_.clear();
    if (shown_) {
        char zero[64];
        std::snprintf(
            zero, sizeof zero, "%.4f %.4f", delay - from / speed_, piece_->length / speed_);
        wire_.send("rollstart", zero);
    }
    advance(now);
}

void Player::showRoll(double from)
{
    wire_.send("rollnew", title_);
    nextRollNote_ = 0;
    rollFrom_ = from;
    tellRoll();
}

/// Some more of the roll: all of a long piece at once would keep the display
/// from drawing.
void Player::tellRoll()
{
    std::string line;
    std::size_t count = 0;
    std::size_t told = 0;
    for (; nextRollNote_ < piece_->notes.size() && told < notesAtATime; ++nextRollNote_) {
        const Note &note = piece_->notes[nextRollNote_];
        if (note.channel == drumChannel || note.at + note.duration < rollFrom_)
            continue;
        char text[96];
        std::snprintf(text, sizeof text, "%s%.4f,%.4f,%d,%d,%d", count > 0 ? ";" : "",
            note.at / speed_, note.duration / speed_, note.pitch, note.velocity, note.track);
        line += text;
        ++told;
        if (++count == notesPerLine) {
            wire_.send("rolln", line);
            line.clear();
            count = 0;
        }
    }
    if (count > 0)
        wire_.send("rolln", line);
}

/// Gives every channel the instrument, the controllers and the pitch bend that
/// it has at `until`, whatever was played before.
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
    for (const auto &[at, message] : piece_->messages) {
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
        instrument_.play(0,
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

/// Lights and puts out keys, in the order of time, up to this place of the
/// piece.
void Player::light(double until)
{
    const auto later = [](const Lit &a, const Lit &b) { return a.until > b.until; };
    for (;;) {
        const bool more = nextNote_ < piece_->notes.size() && piece_->notes[nextNote_].at <= until;
        if (!lit_.empty() && lit_.front().until <= until
            && (!more || lit_.front().until <= piece_->notes[nextNote_].at)) {
            if (--sounding_[static_cast<std::size_t>(lit_.front().pitch)] == 0)
                wire_.send("out", {lit_.front().pitch, 0});
            std::ranges::pop_heap(lit_, later);
            lit_.pop_back();
        } else if (more) {
            const Note &note = piece_->notes[nextNote_++];
            if (note.channel == drumChannel)
                continue;
            ++sounding_[static_cast<std::size_t>(note.pitch)];
            wire_.send("out", {note.pitch, note.velocity});
            lit_.push_back({note.at + note.duration, note.pitch});
            std::ranges::push_heap(lit_, later);
        } else {
            return;
        }
    }
}

void Player::advance(double now)
{
    if (!playing())
        return;
    const Frame until = clock_.frameAt(now + scheduleAhead);
    while (const auto next = feed_.next()) {
        if (frameOf(next->at) >= until || !instrument_.play(frameOf(next->at), next->message))
            break;
        feed_.pop();
    }
    const Frame heard = clock_.frameAt(now);
    light(seconds(heard + 1 - origin_) * speed_); // all that begins with this sample
    if (shown_)
        tellRoll();
    nextSchedule_ = now + scheduleEvery;
    if (frameOf(piece_->length) <= heard)
        stop();
}

std::optional<double> Player::deadline() const
{
    if (!playing())
        return {};
    double next = piece_->length;
    if (nextNote_ < piece_->notes.size())
        next = std::min(next, piece_->notes[nextNote_].at);
    if (!lit_.empty())
        next = std::min(next, lit_.front().until);
    return std::min(clock_.timeOf(frameOf(next)), nextSchedule_);
}

} // namespace kelo::engine
