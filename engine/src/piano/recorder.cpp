#include "piano/recorder.h"

#include <algorithm>
#include <utility>

namespace kelo::engine {

namespace {

constexpr std::size_t mostPedals = 20000;

bool isPedal(int controller)
{
    return controller == 64 || controller == 66 || controller == 67;
}

} // namespace

Recorder::Recorder(std::filesystem::path folder)
    : store_(std::move(folder))
{
    for (TakeStore::Kept &take : store_.load(mostTakes))
        finished_.push_back(std::move(take));
    number_ = finished_.empty() ? 1 : finished_.front().number + 1;
}

Recorder::~Recorder()
{
    write(lastKey_);
}

void Recorder::play(ChannelMessage message, double now)
{
    if (message.kind() == 0x80 || message.kind() == 0x90) {
        key(message.first & 0x7f, message.presses() ? message.second : 0, now);
    } else if (message.kind() == 0xb0 && isPedal(message.first)) {
        pedalsDown_[message.first] = message.second;
        if (!notes_.empty() && now - lastKey_ <= silence && pedals_.size() < mostPedals)
            pedals_.push_back({now - begun_, {0xb0, message.first, message.second}});
    }
}

void Recorder::key(int pitch, int velocity, double now)
{
    auto &note = held_[static_cast<std::size_t>(pitch)];
    if (note)
        notes_[*note].endAt(now - begun_);
    note.reset();
    if (velocity > 0 && (notes_.empty() || now - lastKey_ > silence))
        begin(now);
    lastKey_ = now;
    if (velocity <= 0 || notes_.size() >= mostNotes)
        return;
    note = notes_.size();
    notes_.emplace_back(now - begun_, 0, pitch, velocity, 0, 0);
    unwritten_ = true;
}

void Recorder::takeBack(int pitch)
{
    auto &taken = held_[static_cast<std::size_t>(pitch)];
    if (!taken)
        return;
    const std::size_t place = *taken;
    taken.reset();
    notes_.erase(notes_.begin() + static_cast<std::ptrdiff_t>(place));
    for (auto &note : held_) {
        if (note && *note > place)
            --*note;
    }
}

void Recorder::begin(double now)
{
    write(now);
    if (!stray()) {
        finished_.push_front({number_++, current(now)});
        if (finished_.size() > mostTakes)
            finished_.pop_back();
    }
    notes_.clear();
    pedals_.clear();
    held_ = {};
    begun_ = now;
    for (std::size_t controller = 0; controller < pedalsDown_.size(); ++controller) {
        if (pedalsDown_[controller] > 0)
            pedals_.push_back(
                {0, {0xb0, static_cast<unsigned char>(controller), pedalsDown_[controller]}});
    }
}

Piece Recorder::current(double now) const
{
    Piece piece;
    piece.notes = notes_;
    for (const auto &note : held_) {
        if (note)
            piece.notes[*note].endAt(now - begun_);
    }
    piece.messages = pedals_; // before the keys of the same moment
    measureLength(piece);
    return piece;
}

std::optional<Piece> Recorder::lastTake(double now) const
{
    if (notes_.empty() || (stray() && !finished_.empty()))
        return finished_.empty() ? std::nullopt : std::optional(finished_.front().piece);
    return current(now);
}

std::vector<Piece> Recorder::takes(double now) const
{
    std::vector<Piece> all;
    if (!stray())
        all.push_back(current(now));
    for (const TakeStore::Kept &take : finished_) {
        if (all.size() < mostTakes)
            all.push_back(take.piece);
    }
    return all;
}

void Recorder::write(double now)
{
    if (std::exchange(unwritten_, false) && !stray())
        store_.save(number_, current(now), mostTakes);
}

void Recorder::advance(double now)
{
    if (now - lastKey_ >= rest)
        write(now);
}

std::optional<double> Recorder::deadline() const
{
    return unwritten_ ? std::optional(lastKey_ + rest) : std::nullopt;
}

} // namespace kelo::engine
