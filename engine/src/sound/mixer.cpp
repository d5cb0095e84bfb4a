#include "sound/mixer.h"

#include <algorithm>

namespace kelo::engine {

namespace {

constexpr float fadeStep = 1.0F / 128; ///< a voice that is cut off fades in 3 ms, without a click

} // namespace

Mixer::Mixer(Synth &instruments, AudioClock &audioClock)
    : synth(instruments)
    , clock(audioClock)
{
    pending.reserve(notesWaiting);
}

bool Mixer::play(Frame frame, ChannelMessage message)
{
    return notes.push({frame, noteOrder++, epoch.load(std::memory_order_relaxed), message});
}

void Mixer::silence()
{
    epoch.fetch_add(1, std::memory_order_release);
}

bool Mixer::speak(std::uint32_t utterance, Frame frame, std::span<const float> samples)
{
    Block block{utterance, frame, std::min(samples.size(), blockSize), {}};
    std::copy_n(samples.begin(), block.count, block.samples.begin());
    return blocks.push(block);
}

void Mixer::listenTo(std::uint32_t utterance)
{
    wanted.store(utterance, std::memory_order_release);
}

void Mixer::render(std::span<float> left, std::span<float> right, double now)
{
    clock.tick(position, now);
    renderNotes(left, right);
    renderVoice(left, right);
    position += static_cast<Frame>(left.size());
}

void Mixer::gatherNotes()
{
    const auto current = epoch.load(std::memory_order_acquire);
    if (current != heardEpoch) {
        heardEpoch = current;
        pending.clear();
        synth.release();
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

void Mixer::renderNotes(std::span<float> left, std::span<float> right)
{
    gatherNotes();
    std::size_t done = 0;
    while (done < left.size()) {
        std::size_t until = left.size();
        while (!pending.empty()) {
            const Frame due = pending.front().frame - position;
            if (due > static_cast<Frame>(done)) {
                until =
                    static_cast<std::size_t>(std::min<Frame>(due, static_cast<Frame>(left.size())));
                break;
            }
            synth.play(pending.front().message);
            std::pop_heap(pending.begin(), pending.end(), Later{});
            pending.pop_back();
        }
        synth.render(left.subspan(done, until - done), right.subspan(done, until - done));
        done = until;
    }
}

void Mixer::renderVoice(std::span<float> left, std::span<float> right)
{
    const auto current = wanted.load(std::memory_order_acquire);
    const Frame end = position + static_cast<Frame>(left.size());
    while (const Block *block = blocks.front()) {
        if (block->utterance != current && (block->utterance != heardUtterance || voiceGain <= 0)) {
            blocks.pop();
            continue;
        }
        if (block->frame >= end)
            return;
        if (block->utterance == current && block->utterance != heardUtterance) {
            heardUtterance = current;
            voiceGain = 1;
        }
        const Frame blockEnd = block->frame + static_cast<Frame>(block->count);
        for (Frame at = std::max(block->frame, position); at < std::min(blockEnd, end); ++at) {
            if (heardUtterance != current)
                voiceGain = std::max(voiceGain - fadeStep, 0.0F);
            const float sample =
                voiceGain * block->samples[static_cast<std::size_t>(at - block->frame)];
            left[static_cast<std::size_t>(at - position)] += sample;
            right[static_cast<std::size_t>(at - position)] += sample;
        }
        if (blockEnd > end)
            return;
        blocks.pop();
    }
}

} // namespace kelo::engine
