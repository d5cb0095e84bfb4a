#include "sound/mixer.h"

#include <algorithm>

namespace kelo::engine {

namespace {

constexpr float fadeStep = 1.0F / 128; ///< a voice that is cut off fades in 3 ms, without a click
constexpr Frame outage = frames(1); ///< longer than a busy machine ever keeps the sound waiting

} // namespace

Mixer::Mixer(Synth &instruments, AudioClock &audioClock)
    : synth(instruments)
    , clock(audioClock)
{
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
    // After an outage what it swallowed stays unheard: nothing that follows shall be late.
    if (const Frame missed = clock.frameRenderedAt(now) - position; missed > outage)
        position += missed;
    clock.tick(position, now);
    renderNotes(left, right);
    renderVoice(left, right);
    position += static_cast<Frame>(left.size());
}

void Mixer::renderNotes(std::span<float> left, std::span<float> right)
{
    for (Section &section : sections)
        section.gather(synth);
    std::size_t done = 0;
    while (done < left.size()) {
        auto until = static_cast<Frame>(left.size());
        for (Section &section : sections) {
            auto due = section.due();
            for (; due && *due - position <= static_cast<Frame>(done); due = section.due())
                section.playNext(synth);
            if (due)
                until = std::min(until, *due - position);
        }
        const std::size_t count = static_cast<std::size_t>(until) - done;
        synth.render(left.subspan(done, count), right.subspan(done, count));
        done += count;
    }
}

void Mixer::renderVoice(std::span<float> left, std::span<float> right)
{
    const auto current = wanted.load(std::memory_order_acquire);
    const float loudness = voiceLoudness.load(std::memory_order_relaxed);
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
                loudness * voiceGain * block->samples[static_cast<std::size_t>(at - block->frame)];
            left[static_cast<std::size_t>(at - position)] += sample;
            right[static_cast<std::size_t>(at - position)] += sample;
        }
        if (blockEnd > end)
            return;
        blocks.pop();
    }
}

} // namespace kelo::engine
