#include "sound/mixer.h"

#include <algorithm>

namespace kelo::engine {

namespace {

constexpr float fadeStep = 1.0F / 128; ///< a voice that is cut off fades in 3 ms, without a click
constexpr Frame outage = frames(1); ///< longer than a busy machine ever keeps the sound waiting

} // namespace

Mixer::Mixer(Synth &instruments, AudioClock &audioClock)
    : synth_(instruments)
    , clock_(audioClock)
{
}

bool Mixer::speak(std::uint32_t utterance, Frame frame, std::span<const float> samples)
{
    Block block{utterance, frame, std::min(samples.size(), blockSize), {}};
    std::copy_n(samples.begin(), block.count, block.samples.begin());
    return blocks_.push(block);
}

void Mixer::listenTo(std::uint32_t utterance)
{
    wanted_.store(utterance, std::memory_order_release);
}

void Mixer::render(std::span<float> left, std::span<float> right, double now)
{
    // After an outage what it swallowed stays unheard: nothing that follows shall be late.
    if (const Frame missed = clock_.frameRenderedAt(now) - position_; missed > outage)
        position_ += missed;
    clock_.tick(position_, now);
    renderNotes(left, right);
    renderVoice(left, right);
    position_ += static_cast<Frame>(left.size());
}

void Mixer::renderNotes(std::span<float> left, std::span<float> right)
{
    for (EventQueue &queue : queues_)
        queue.gather(synth_);
    std::size_t done = 0;
    while (done < left.size()) {
        auto until = static_cast<Frame>(left.size());
        for (EventQueue &queue : queues_) {
            auto due = queue.due();
            for (; due && *due - position_ <= static_cast<Frame>(done); due = queue.due())
                queue.playNext(synth_);
            if (due)
                until = std::min(until, *due - position_);
        }
        const std::size_t count = static_cast<std::size_t>(until) - done;
        synth_.render(left.subspan(done, count), right.subspan(done, count));
        done += count;
    }
}

void Mixer::renderVoice(std::span<float> left, std::span<float> right)
{
    const auto current = wanted_.load(std::memory_order_acquire);
    const float loudness = voiceLoudness_.load(std::memory_order_relaxed);
    const Frame end = position_ + static_cast<Frame>(left.size());
    while (const Block *block = blocks_.front()) {
        if (block->utterance != current
            && (block->utterance != heardUtterance_ || voiceGain_ <= 0)) {
            blocks_.pop();
            continue;
        }
        if (block->frame >= end)
            return;
        if (block->utterance == current && block->utterance != heardUtterance_) {
            heardUtterance_ = current;
            voiceGain_ = 1;
        }
        const Frame blockEnd = block->frame + static_cast<Frame>(block->count);
        for (Frame at = std::max(block->frame, position_); at < std::min(blockEnd, end); ++at) {
            if (heardUtterance_ != current)
                voiceGain_ = std::max(voiceGain_ - fadeStep, 0.0F);
            const float sample =
                loudness * voiceGain_ * block->samples[static_cast<std::size_t>(at - block->frame)];
            left[static_cast<std::size_t>(at - position_)] += sample;
            right[static_cast<std::size_t>(at - position_)] += sample;
        }
        if (blockEnd > end)
            return;
        blocks_.pop();
    }
}

} // namespace kelo::engine
