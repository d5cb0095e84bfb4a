#include "sound/mixer.h"

#include <algorithm>
#include <utility>

namespace kelo::engine {

namespace {

constexpr float fadeStep = 1.0F / 128; ///< a voice that is cut off fades in 3 ms, without a click
constexpr float loudest = 2;
/// Gains at loudness 1: pieces, levelled as they are, and one's own keys lie some 4 dB under the
/// voice.
constexpr std::array<float, faders> balance{1, 1.6F, 1.2F, 1.2F, 1};
constexpr Frame outage = frames(1); ///< longer than a busy machine ever keeps the sound waiting

} // namespace

Mixer::Mixer(std::unique_ptr<Synth> instruments, AudioClock &audioClock)
    : clock_(audioClock)
    , soundfont_(instruments->soundfont())
    , synth_(std::move(instruments))
    , gains_(balance)
{
    for (auto &loudness : loudness_)
        loudness = 1;
}

Mixer::~Mixer()
{
    delete incoming_.load();
    delete outgoing_.load();
}

void Mixer::setLoudness(Fader fader, float value)
{
    loudness_[static_cast<std::size_t>(fader)] = std::clamp(value, 0.0F, loudest);
}

void Mixer::setInstruments(std::unique_ptr<Synth> instruments)
{
    soundfont_ = instruments->soundfont();
    delete incoming_.exchange(instruments.release());
}

void Mixer::dropReplacedInstruments()
{
    delete outgoing_.exchange(nullptr);
}

/// Deleting is the other threads': until one has done so, what is new waits.
void Mixer::takeInstruments()
{
    if (incoming_.load(std::memory_order_relaxed) == nullptr || outgoing_.load() != nullptr)
        return;
    std::unique_ptr<Synth> next(incoming_.exchange(nullptr));
    next->adopt(*synth_);
    synth_.swap(next);
    outgoing_ = next.release();
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
    constexpr auto delay = static_cast<Frame>(Limiter::lookAhead);
    if (const Frame missed = clock_.frameRenderedAt(now) + delay - position_; missed > outage)
        position_ += missed;
    clock_.tick(position_ - delay, now);
    takeInstruments();
    for (std::size_t done = 0; done < left.size();) {
        const std::size_t count = std::min(left.size() - done, longestBlock);
        renderBlock({left.subspan(done, count), right.subspan(done, count)});
        done += count;
    }
}

void Mixer::renderBlock(Stereo out)
{
    const std::size_t count = out.left.size();
    const auto scratch = [&](std::size_t i) { return std::span(scratch_[i]).first(count); };
    std::array<Stereo, synthParts> parts;
    for (std::size_t i = 0; i < synthParts; ++i)
        parts[i] = {scratch(2 * i), scratch(2 * i + 1)};
    const auto voice = scratch(2 * synthParts);
    renderNotes(parts);
    const float ducked = ducker_.next(count, renderVoice(voice));
    std::ranges::fill(out.left, 0.0F);
    std::ranges::fill(out.right, 0.0F);
    for (std::size_t i = 0; i < faders; ++i) {
        const auto fader = static_cast<Fader>(i);
        float goal = balance[i] * loudness_[i].load(std::memory_order_relaxed);
        if (i < queues_.size())
            goal *= queues_[i].gain();
        if (fader == Fader::Pieces || fader == Fader::Band)
            goal *= ducked;
        const float step = (goal - gains_[i]) / static_cast<float>(count);
        const Stereo sound = fader == Fader::Voice ? Stereo{voice, voice} : parts[i];
        for (std::size_t k = 0; k < count; ++k) {
            gains_[i] += step;
            out.left[k] += gains_[i] * sound.left[k];
            out.right[k] += gains_[i] * sound.right[k];
        }
        gains_[i] = goal;
    }
    limiter_.process(out.left, out.right);
    position_ += static_cast<Frame>(count);
}

void Mixer::renderNotes(const std::array<Stereo, synthParts> &parts)
{
    for (EventQueue &queue : queues_)
        queue.gather(*synth_);
    const std::size_t size = parts.front().left.size();
    std::size_t done = 0;
    while (done < size) {
        auto until = static_cast<Frame>(size);
        for (EventQueue &queue : queues_) {
            auto due = queue.due();
            for (; due && *due - position_ <= static_cast<Frame>(done); due = queue.due())
                queue.playNext(*synth_);
            if (due)
                until = std::min(until, *due - position_);
        }
        const std::size_t count = static_cast<std::size_t>(until) - done;
        std::array<Stereo, synthParts> stretch;
        for (std::size_t i = 0; i < synthParts; ++i)
            stretch[i] = parts[i].part(done, count);
        synth_->render(stretch);
        done += count;
    }
}

/// False where nothing of it was spoken.
bool Mixer::renderVoice(std::span<float> voice)
{
    std::ranges::fill(voice, 0.0F);
    bool spoken = false;
    const auto current = wanted_.load(std::memory_order_acquire);
    const Frame end = position_ + static_cast<Frame>(voice.size());
    while (const Block *block = blocks_.front()) {
        if (block->utterance != current
            && (block->utterance != heardUtterance_ || voiceGain_ <= 0)) {
            blocks_.pop();
            continue;
        }
        if (block->frame >= end)
            break;
        if (block->utterance == current && block->utterance != heardUtterance_) {
            heardUtterance_ = current;
            voiceGain_ = 1;
        }
        const Frame blockEnd = block->frame + static_cast<Frame>(block->count);
        for (Frame at = std::max(block->frame, position_); at < std::min(blockEnd, end); ++at) {
            if (heardUtterance_ != current)
                voiceGain_ = std::max(voiceGain_ - fadeStep, 0.0F);
            voice[static_cast<std::size_t>(at - position_)] +=
                voiceGain_ * block->samples[static_cast<std::size_t>(at - block->frame)];
            spoken = true;
        }
        if (blockEnd > end)
            break;
        blocks_.pop();
    }
    return spoken;
}

} // namespace kelo::engine
