#include "speech/speaker.h"

#include "protocol/text.h"
#include "speech/spectrum.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kelo::engine {

namespace {

constexpr double lead = 0.08; ///< longer than any block is on its way to the loudspeaker
constexpr double soundAhead = 0.5; ///< seconds of voice that outlast a busy moment
constexpr double bandsAhead = 0.25;
constexpr double gatheredAhead = 3; ///< seconds: reading a whole piece aloud takes minutes
constexpr double feedEvery = 0.1;
constexpr double anchorBeforeWord = 0.03; ///< the display lays its first frame there
constexpr double secondsPerUnspokenByte = 0.06;
constexpr double dispatcherPatience = 10; ///< seconds in which the service tells of nothing

} // namespace

Speaker::Speaker(Wire &lines, SpeechDispatcher &desktop, SpeechMaker &voice, SpeechOutput &output,
    const AudioClock &audioClock)
    : wire_(lines)
    , dispatcher_(desktop)
    , synthesiser_(voice)
    , output_(output)
    , clock_(audioClock)
{
}

void Speaker::say(std::string_view words, double now)
{
    std::string text = oneLine(words);
    if (text.empty())
        return;
    utterance_.emplace(++lastId_);
    wire_.send("spec", std::to_string(lastId_) + " new");
    wire_.send("say", text);
    if (!dispatcher_.works()) {
        speak(std::move(text), now);
        return;
    }
    utterance_->silentEnd = now + dispatcherPatience;
    utterance_->dispatched = text;
    dispatcher_.say(std::move(text));
}

/// With a voice of our own, if there is one.
void Speaker::speak(std::string text, double now)
{
    if (!synthesiser_.works()) {
        utterance_->silentEnd = now + secondsPerUnspokenByte * static_cast<double>(text.size());
        return;
    }
    output_.listenTo(lastId_);
    synthesiser_.begin(lastId_, std::move(text));
}

void Speaker::setStyle(const SpeechStyle &style)
{
    dispatcher_.setStyle(style);
    synthesiser_.setStyle(style);
}

void Speaker::useSystemVoice(bool value)
{
    if (value == usesSystemVoice())
        return;
    stop();
    dispatcher_.setWanted(value);
}

void Speaker::stop()
{
    if (!speaking())
        return;
    if (dispatcher_.works())
        dispatcher_.stop();
    synthesiser_.cancel();
    output_.listenTo(0);
    utterance_.reset();
    wire_.send("done");
}

void Speaker::advance(double now)
{
    if (!speaking())
        return;
    if (!utterance_->dispatched.empty())
        followDispatcher(now);
    bool over = now >= utterance_->silentEnd;
    if (utterance_->dispatched.empty() && synthesiser_.works()) {
        gather(now);
        feedOutput(now);
        tellBands(now);
        tellWords(now);
        nextFeed_ = now + feedEvery;
        over =
            utterance_->synthesised && (!utterance_->origin || now >= timeOf(utterance_->length));
    }
    if (!over)
        return;
    utterance_.reset();
    wire_.send("done");
}

void Speaker::followDispatcher(double now)
{
    for (const SpeechDispatcher::Report &report : dispatcher_.take()) {
        utterance_->silentEnd = now + dispatcherPatience;
        switch (report.event) {
        case SpeechDispatcher::Report::Event::Begun:
            wire_.send("start");
            break;
        case SpeechDispatcher::Report::Event::Word: {
            const double lasts = secondsPerUnspokenByte * report.length;
            wire_.send(
                "word", {report.from, report.length, static_cast<int>(std::lround(lasts * 1000))});
            break;
        }
        case SpeechDispatcher::Report::Event::Over:
            utterance_->silentEnd = now;
            break;
        case SpeechDispatcher::Report::Event::Failed:
            speak(std::exchange(utterance_->dispatched, {}), now);
            break;
        }
    }
}

void Speaker::gather(double now)
{
    if (utterance_->samples.size() > static_cast<std::size_t>(frames(gatheredAhead)))
        return;
    for (SpeechChunk &chunk : synthesiser_.take()) {
        if (!utterance_->origin && !chunk.samples.empty())
            utterance_->origin = clock_.frameAt(now + lead);
        utterance_->length += seconds(static_cast<Frame>(chunk.samples.size()));
        utterance_->samples.insert(
            utterance_->samples.end(), chunk.samples.begin(), chunk.samples.end());
        utterance_->words.insert(utterance_->words.end(), chunk.words.begin(), chunk.words.end());
        utterance_->bands += chunk.bands;
        utterance_->synthesised = utterance_->synthesised || chunk.last;
    }
}

double Speaker::timeOf(double position) const
{
    return clock_.timeOf(utterance_->origin.value_or(0) + frames(position));
}

void Speaker::feedOutput(double now)
{
    if (!utterance_->origin)
        return;
    auto &samples = utterance_->samples;
    const Frame until = clock_.frameAt(now + soundAhead);
    std::size_t fed = 0;
    while (fed < samples.size() && *utterance_->origin + utterance_->queued < until) {
        const std::size_t count = std::min(samples.size() - fed, SpeechOutput::blockSize);
        if (!output_.speak(utterance_->id, *utterance_->origin + utterance_->queued,
                {samples.data() + fed, count}))
            break;
        fed += count;
        utterance_->queued += static_cast<Frame>(count);
    }
    samples.erase(samples.begin(), samples.begin() + static_cast<std::ptrdiff_t>(fed));
}

void Speaker::tellBands(double now)
{
    if (!utterance_->origin)
        return;
    if (!utterance_->bandsShift) {
        if (utterance_->words.empty())
            return;
        const double first = utterance_->words.front().at - anchorBeforeWord;
        const int shift = static_cast<int>(std::lround(first * Spectrum::framesPerSecond));
        if (static_cast<int>(utterance_->bands.size() / Spectrum::bands) < shift)
            return;
        utterance_->bandsShift = shift;
        if (shift > 0)
            utterance_->bands.erase(0, Spectrum::bands * static_cast<std::size_t>(shift));
        else
            utterance_->bands.insert(0, Spectrum::bands * static_cast<std::size_t>(-shift), 'a');
    }
    const double position = now + bandsAhead - timeOf(0);
    const int until =
        static_cast<int>(position * Spectrum::framesPerSecond) - *utterance_->bandsShift;
    const int have = static_cast<int>(utterance_->bands.size() / Spectrum::bands);
    const int count = std::min(until - utterance_->bandsTold, have);
    if (count <= 0)
        return;
    const std::size_t letters = Spectrum::bands * static_cast<std::size_t>(count);
    wire_.send("spec",
        std::to_string(utterance_->id) + ' ' + std::to_string(utterance_->bandsTold) + ' '
            + utterance_->bands.substr(0, letters));
    utterance_->bands.erase(0, letters);
    utterance_->bandsTold += count;
}

void Speaker::tellWords(double now)
{
    if (!utterance_->origin)
        return;
    if (!utterance_->begun && now >= timeOf(0)) {
        utterance_->begun = true;
        wire_.send("start");
    }
    auto &words = utterance_->words;
    while (!words.empty() && now >= timeOf(words.front().at)) {
        const WordMark word = words.front();
        words.pop_front();
        const double end = words.empty() ? utterance_->length : words.front().at;
        wire_.send("word",
            {word.from, word.length, static_cast<int>(std::lround((end - word.at) * 1000))});
    }
}

std::optional<double> Speaker::deadline() const
{
    if (!speaking())
        return {};
    if (!utterance_->dispatched.empty() || !synthesiser_.works())
        return utterance_->silentEnd;
    if (!utterance_->origin)
        return {};
    double next = nextFeed_;
    if (!utterance_->begun)
        next = std::min(next, timeOf(0));
    if (!utterance_->words.empty())
        next = std::min(next, timeOf(utterance_->words.front().at));
    if (utterance_->synthesised)
        next = std::min(next, timeOf(utterance_->length));
    return next;
}

} // namespace kelo::engine
