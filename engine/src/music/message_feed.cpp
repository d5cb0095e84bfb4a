#include "music/message_feed.h"

#include <algorithm>

namespace kelo::engine {

MessageFeed::MessageFeed(const Piece &piece, double from)
    : piece_(&piece)
{
    const auto place = [from](const auto &list) {
        const auto first =
            std::ranges::partition_point(list, [from](const auto &one) { return one.at < from; });
        return static_cast<std::size_t>(first - list.begin());
    };
    message_ = place(piece.messages);
    note_ = place(piece.notes);
}

double MessageFeed::endOf(std::uint32_t note) const
{
    return piece_->notes[note].at + piece_->notes[note].duration;
}

auto MessageFeed::later() const
{
    return [this](std::uint32_t a, std::uint32_t b) {
        const double first = endOf(a);
        const double second = endOf(b);
        return first > second || (first == second && a > b);
    };
}

MessageFeed::Kind MessageFeed::soonest() const
{
    if (!piece_)
        return Kind::None;
    Kind kind = Kind::None;
    double at = 0;
    const auto offer = [&](Kind which, double when) {
        if (kind != Kind::None && when >= at)
            return;
        kind = which;
        at = when;
    };
    if (!held_.empty())
        offer(Kind::Release, endOf(held_.front()));
    if (message_ < piece_->messages.size())
        offer(Kind::Message, piece_->messages[message_].at);
    if (note_ < piece_->notes.size())
        offer(Kind::Press, piece_->notes[note_].at);
    return kind;
}

std::optional<TimedMessage> MessageFeed::next() const
{
    const auto key = [this](int kind, std::size_t index, double at, int velocity) {
        const Note &note = piece_->notes[index];
        return TimedMessage{at,
            {static_cast<unsigned char>(kind | note.channel),
                static_cast<unsigned char>(note.pitch), static_cast<unsigned char>(velocity)}};
    };
    switch (soonest()) {
    case Kind::Release:
        return key(0x80, held_.front(), endOf(held_.front()), 0);
    case Kind::Message:
        return piece_->messages[message_];
    case Kind::Press:
        return key(0x90, note_, piece_->notes[note_].at, piece_->notes[note_].velocity);
    case Kind::None:
        break;
    }
    return {};
}

void MessageFeed::pop()
{
    switch (soonest()) {
    case Kind::Release:
        std::ranges::pop_heap(held_, later());
        held_.pop_back();
        break;
    case Kind::Message:
        ++message_;
        break;
    case Kind::Press:
        held_.push_back(static_cast<std::uint32_t>(note_++));
        std::ranges::push_heap(held_, later());
        break;
    case Kind::None:
        break;
    }
}

} // namespace kelo::engine
