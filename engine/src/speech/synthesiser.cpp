#include "speech/synthesiser.h"

#include "log/log.h"
#include "sound/audio_clock.h"
#include "speech/resampler.h"
#include "speech/spectrum.h"

#include <espeak-ng/speak_lib.h>

#include <algorithm>
#include <utility>

namespace kelo::engine {

namespace {

constexpr int chunkMilliseconds = 60;
constexpr std::size_t chunksAhead = 64; ///< some four seconds

} // namespace

/// One utterance on its way through eSpeak's callback.
struct Synthesiser::Job {
    Synthesiser &synthesiser;
    std::uint32_t utterance;
    WordMarks marks;
    Resampler resampler;
    Spectrum spectrum;

    static int receive(short *wave, int count, espeak_EVENT *events);

    [[nodiscard]] std::vector<WordMark> words(const espeak_EVENT *events);
};

std::vector<WordMark> Synthesiser::Job::words(const espeak_EVENT *events)
{
    std::vector<WordMark> found;
    for (; events->type != espeakEVENT_LIST_TERMINATED; ++events) {
        if (events->type != espeakEVENT_WORD)
            continue;
        if (const auto mark =
                marks.begin(events->text_position - 1, events->audio_position / 1000.0))
            found.push_back(*mark);
    }
    return found;
}

int Synthesiser::Job::receive(short *wave, int count, espeak_EVENT *events)
{
    Job &job = *static_cast<Job *>(events->user_data);
    std::vector<float> samples(wave ? static_cast<std::size_t>(std::max(count, 0)) : 0);
    std::transform(wave, wave + samples.size(), samples.begin(),
        [](short sample) { return static_cast<float>(sample) / 32768.0F; });
    SpeechChunk chunk;
    chunk.utterance = job.utterance;
    chunk.words = job.words(events);
    chunk.bands = job.spectrum.listen(samples);
    chunk.samples = job.resampler.push(samples);
    return job.synthesiser.deliver(std::move(chunk)) ? 0 : 1;
}

Synthesiser::Synthesiser(std::function<void()> ready)
    : notify_(std::move(ready))
{
    rate_ = espeak_Initialize(
        AUDIO_OUTPUT_SYNCHRONOUS, chunkMilliseconds, nullptr, espeakINITIALIZE_DONT_EXIT);
    if (!works()) {
        log(LogLevel::Error, "speech", "eSpeak NG does not start: its data is missing");
        return;
    }
    espeak_SetSynthCallback(&Job::receive);
    thread_ = std::jthread([this](const std::stop_token &stop) { run(stop); });
}

void Synthesiser::use(const Manner &manner)
{
    const Voice &voice = voices[manner.voice];
    if (espeak_SetVoiceByName(voice.espeak) != EE_OK) {
        log(LogLevel::Warning, "speech", std::string("eSpeak NG has no voice ") + voice.espeak);
        espeak_SetVoiceByName("en");
    }
    espeak_SetParameter(espeakRATE, manner.style.rate, 0);
    espeak_SetParameter(espeakPITCH, manner.style.pitch, 0);
}

void Synthesiser::setVoice(std::size_t index)
{
    const std::lock_guard lock(mutex_);
    manner_.voice = index;
}

void Synthesiser::setStyle(const SpeechStyle &style)
{
    const std::lock_guard lock(mutex_);
    manner_.style = style;
}

Synthesiser::~Synthesiser()
{
    if (!works())
        return;
    Synthesiser::begin(0, {});
    thread_.request_stop();
    thread_.join();
    espeak_Terminate();
}

void Synthesiser::begin(std::uint32_t utterance, std::string text)
{
    {
        const std::lock_guard lock(mutex_);
        current_ = utterance;
        waiting_ = std::move(text);
        chunks_.clear();
    }
    changed_.notify_all();
}

std::vector<SpeechChunk> Synthesiser::take()
{
    std::vector<SpeechChunk> taken;
    {
        const std::lock_guard lock(mutex_);
        std::move(chunks_.begin(), chunks_.end(), std::back_inserter(taken));
        chunks_.clear();
    }
    changed_.notify_all();
    return taken;
}

void Synthesiser::run(const std::stop_token &stop)
{
    for (;;) {
        std::unique_lock lock(mutex_);
        if (!changed_.wait(lock, stop, [this] { return !waiting_.empty(); }))
            return;
        const std::string text = std::exchange(waiting_, {});
        const std::uint32_t utterance = current_;
        const Manner manner = manner_;
        lock.unlock();
        use(manner);
        speak(text, utterance);
    }
}

void Synthesiser::speak(const std::string &text, std::uint32_t utterance)
{
    Job job{*this, utterance, WordMarks(text), Resampler(rate_, sampleRate), Spectrum(rate_)};
    espeak_Synth(
        text.c_str(), text.size() + 1, 0, POS_CHARACTER, 0, espeakCHARS_UTF8, nullptr, &job);
    SpeechChunk end;
    end.utterance = utterance;
    end.samples = job.resampler.finish();
    end.last = true;
    static_cast<void>(deliver(std::move(end)));
}

bool Synthesiser::deliver(SpeechChunk chunk)
{
    {
        std::unique_lock lock(mutex_);
        changed_.wait(
            lock, [&] { return chunks_.size() < chunksAhead || current_ != chunk.utterance; });
        if (current_ != chunk.utterance)
            return false;
        chunks_.push_back(std::move(chunk));
    }
    notify_();
    return true;
}

} // namespace kelo::engine

/// eSpeak NG's library opens a way to the loudspeakers by this when it starts, even where it only
/// hands back what it says; and then it waits for a sound server that hangs, for ever. It finds
/// this one before that of its own library, and does without.
extern "C" [[gnu::visibility("default")]] void *create_audio_device_object(
    const char * /*device*/, const char * /*application*/, const char * /*description*/)
{
    return nullptr;
}
