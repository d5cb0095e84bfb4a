#include "sound/event_queue.h"

#include <algorithm>

namespace kelo::engine {

EventQueue::EventQueue(SynthPart synthPart)
    : part_(synthPart)
{
    pending_.reserve(notesWaiting);
}

bool EventQueue::play(Frame frame, ChannelMessage message)
{
    return notes_.push({frame, noteOrder_++, epoch_.load(std::memory_order_relaxed), message});
}

void EventQueue::silence()
{
    epoch_.fetch_add(1, std::memory_order_release);
}

void EventQueue::gather(Synth &synth)
{
    const auto current = epoch_.load(std::memory_order_acquire);
    if (current != heardEpoch_) {
        heardEpoch_ = current;
        pending_.clear();
        synth.release(part_);
    }
    while (const Note *note = notes_.front()) {
        const auto ahead = static_cast<std::int32_t>(note->epoch - heardEpoch_);
        if (ahead > 0 || (ahead == 0 && pending_.size() == notesWaiting))
            return; // for a later block
        if (ahead == 0) {
            pending_.push_back(*note);
            std::push_heap(pending_.begin(), pending_.end(), Later{});
        }
        notes_.pop();
    }
}

std::optional<Frame> EventQueue::due() const
{
    return pending_.empty() ? std::nullopt : std::optional(pending_.front().frame);
}

void EventQueue::playNext(Synth &synth)
{
    synth.play(part_, pending_.front().message);
    std::pop_heap(pending_.begin(), pending_.end(), Later{});
    pending_.pop_back();
}

} // namespace kelo::engine
