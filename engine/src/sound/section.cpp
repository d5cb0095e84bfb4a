#include "sound/section.h"

#include <algorithm>

namespace kelo::engine {

Section::Section(SynthPart synthPart)
    : part(synthPart)
{
    pending.reserve(notesWaiting);
}

bool Section::play(Frame frame, ChannelMessage message)
{
    return notes.push({frame, noteOrder++, epoch.load(std::memory_order_relaxed), message});
}

void Section::silence()
{
    epoch.fetch_add(1, std::memory_order_release);
}

void Section::gather(Synth &synth)
{
    const auto current = epoch.load(std::memory_order_acquire);
    if (current != heardEpoch) {
        heardEpoch = current;
        pending.clear();
        synth.release(part);
    }
    while (const Note *note = notes.front()) {
        const auto ahead = static_cast<std::int32_t>(note->epoch - heardEpoch);
        if (ahead > 0 || (ahead == 0 && pending.size() == notesWaiting))
            return; // for a later block
        if (ahead == 0) {
            pending.push_back(*note);
            std::push_heap(pending.begin(), pending.end(), Later{});
        }
        notes.pop();
    }
}

std::optional<Frame> Section::due() const
{
    return pending.empty() ? std::nullopt : std::optional(pending.front().frame);
}

void Section::playNext(Synth &synth)
{
    synth.play(part, pending.front().message);
    std::pop_heap(pending.begin(), pending.end(), Later{});
    pending.pop_back();
}

} // namespace kelo::engine
