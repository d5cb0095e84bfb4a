#include "reading/walk.h"

#include <algorithm>
#include <utility>

namespace kelo::engine {

int pulseOf(const WrittenBar &bar)
{
    const bool compound = bar.unit >= 8 && bar.beats > 3 && bar.beats % 3 == 0;
    return bar.beatLength() * (compound ? 3 : 1);
}

Walk::Walk(std::shared_ptr<const WrittenPiece> piece)
    : piece_(std::move(piece))
    , places_(places(unit_))
{
}

bool Walk::wanted(const WrittenNote &note, Hands hands) const
{
    return !note.rest() && note.hand != Hands::Both && (hands == Hands::Both || note.hand == hands);
}

/// Where a note begins; and where all is silent, bar by bar.
std::vector<Stretch> Walk::notePlaces() const
{
    std::vector<Stretch> places;
    int sounds = 0; ///< until here
    const auto rest = [&](int to) {
        auto bar = std::ranges::upper_bound(piece_->bars, sounds, {}, &WrittenBar::at);
        for (; sounds < to; ++bar) {
            const int next = bar == piece_->bars.end() ? to : std::min(to, bar->at);
            if (places.empty() || places.back().from < sounds) // after a grace note it is none
                places.push_back({sounds, next});
            sounds = next;
            if (bar == piece_->bars.end())
                break;
        }
    };
    const std::size_t count = piece_->notes.size();
    for (std::size_t i = 0; i < count; ++i) {
        const WrittenNote &note = piece_->notes[i];
        if (!wanted(note, hands_))
            continue;
        if (!note.tiedBefore || places.empty()) { // a tie may come from nowhere
            rest(note.at);
            if (places.empty() || places.back().from != note.at || places.back().to != note.at)
                places.push_back({note.at, note.at});
        }
        sounds = std::max(sounds, note.end());
    }
    rest(piece_->bars.back().end());
    // A note's step goes on until the next one.
    for (std::size_t i = 0; i < places.size(); ++i) {
        if (places[i].to == places[i].from)
            places[i].to = i + 1 < places.size() ? places[i + 1].from : piece_->bars.back().end();
    }
    return places;
}

std::vector<Stretch> Walk::places(WalkUnit unit) const
{
    std::vector<Stretch> all;
    switch (unit) {
    case WalkUnit::Note:
        all = notePlaces();
        break;
    case WalkUnit::Beat:
        for (const WrittenBar &bar : piece_->bars) {
            if (bar.upbeat > 0)
                all.push_back({bar.at, bar.at + bar.upbeat});
            for (int at = bar.at + bar.upbeat; at < bar.end(); at += pulseOf(bar))
                all.push_back({at, std::min(at + pulseOf(bar), bar.end())});
        }
        break;
    case WalkUnit::Bar:
        for (const WrittenBar &bar : piece_->bars)
            all.push_back({bar.at, bar.end()});
        break;
    case WalkUnit::Phrase:
        all = phrasesOf(*piece_);
        break;
    }
    return all;
}

/// At the step that a place belongs to.
void Walk::stand(int at)
{
    const auto next = std::ranges::upper_bound(places_, at, {}, &Stretch::from);
    place_ = static_cast<std::size_t>(std::max<std::ptrdiff_t>(next - places_.begin(), 1) - 1);
}

void Walk::setUnit(WalkUnit unit)
{
    const int at = here().from;
    unit_ = unit;
    places_ = places(unit);
    stand(at);
}

bool Walk::setHands(Hands hands)
{
    if (std::ranges::none_of(
            piece_->notes, [&](const WrittenNote &note) { return wanted(note, hands); }))
        return false;
    const int at = here().from;
    hands_ = hands;
    places_ = places(unit_);
    stand(at);
    return true;
}

std::optional<Stretch> Walk::beside(int by) const
{
    const auto wanted = static_cast<std::ptrdiff_t>(place_) + by;
    if (wanted < 0 || wanted >= static_cast<std::ptrdiff_t>(places_.size()))
        return {};
    return places_[static_cast<std::size_t>(wanted)];
}

bool Walk::step(int by)
{
    if (!beside(by))
        return false;
    place_ = static_cast<std::size_t>(static_cast<std::ptrdiff_t>(place_) + by);
    return true;
}

std::optional<Stretch> Walk::bar(int number) const
{
    const auto found = std::ranges::find(piece_->bars, number, &WrittenBar::number);
    if (found == piece_->bars.end())
        return {};
    return Stretch{found->at, found->end()};
}

bool Walk::toBar(int number)
{
    const auto found = bar(number);
    if (!found)
        return false;
    stand(found->from);
    if (here().from < found->from)
        step(1); // what sounds into the bar is not its beginning
    return true;
}

const WrittenBar &Walk::barAt(int at) const
{
    const auto next = std::ranges::upper_bound(piece_->bars, at, {}, &WrittenBar::at);
    return next == piece_->bars.begin() ? *next : *std::prev(next);
}

std::vector<const WrittenNote *> Walk::notesIn(Stretch stretch, Hands hands) const
{
    std::vector<const WrittenNote *> notes;
    auto note = std::ranges::lower_bound(piece_->notes, stretch.from, {}, &WrittenNote::at);
    for (; note != piece_->notes.end() && note->at < stretch.to; ++note) {
        if (wanted(*note, hands) && !note->tiedBefore)
            notes.push_back(&*note);
    }
    return notes;
}

std::vector<const WrittenNote *> Walk::soundingAt(int at) const
{
    std::vector<const WrittenNote *> notes;
    const auto end = std::ranges::upper_bound(piece_->notes, at, {}, &WrittenNote::at);
    for (auto note = piece_->notes.begin(); note != end; ++note) {
        if (wanted(*note, Hands::Both) && (note->end() > at || note->at == at))
            notes.push_back(&*note);
    }
    std::ranges::stable_sort(notes, {}, [](const WrittenNote *note) { return note->pitch; });
    return notes;
}

} // namespace kelo::engine
