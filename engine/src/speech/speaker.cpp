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
constexpr double feedEvery = 0.1;
constexpr double anchorBeforeWord = 0.03; ///< the display lays its first frame there
constexpr double secondsPerUnspokenByte = 0.06;
constexpr double dispatcherPatience = 10; ///< seconds in which the service tells of nothing

} // namespace

Speaker::Speaker(Wire &lines, Dispatcher &desktop, Synthesiser &voice, Mouth &output,
    const AudioClock &audioClock)
    : wire(lines)
    , dispatcher(desktop)
    , synthesiser(voice)
    , mouth(output)
    , clock(audioClock)
{
}

void Speaker::say(std::string_view words, double now)
{
    std::string text = oneLine(words);
    if (text.empty())
        return;
    utterance.emplace(++lastId);
    wire.send("spec", std::to_string(lastId) + " new");
    wire.send("say", text);
    if (!dispatcher.works()) {
        speak(std::move(text), now);
        return;
    }
    utterance->silentEnd = now + dispatcherPatience;
    utterance->dispatched = text;
    dispatcher.say(std::move(text));
}

/// With a voice of our own, if there is one.
void Speaker::speak(std::string text, double now)
{
    if (!synthesiser.works()) {
        utterance->silentEnd = now + secondsPerUnspokenByte * static_cast<double>(text.size());
        return;
    }
    mouth.listenTo(lastId);
    synthesiser.begin(lastId, std::move(text));
}

void Speaker::stop()
{
    if (!speaking())
        return;
    if (dispatcher.works())
        dispatcher.stop();
    synthesiser.cancel();
    mouth.listenTo(0);
    utterance.reset();
    wire.send("done");
}

void Speaker::advance(double now)
{
    if (!speaking())
        return;
    if (!utterance->dispatched.empty())
        followDispatcher(now);
    bool over = now >= utterance->silentEnd;
    if (utterance->dispatched.empty() && synthesiser.works()) {
        gather(now);
        feedMouth(now);
        tellBands(now);
        tellWords(now);
        nextFeed = now + feedEvery;
        over = utterance->synthesised && (!utterance->origin || now >= timeOf(utterance->length));
    }
    if (!over)
        return;
    utterance.reset();
    wire.send("done");
}

void Speaker::followDispatcher(double now)
{
    for (const Dispatcher::Report &report : dispatcher.take()) {
        utterance->silentEnd = now + dispatcherPatience;
        switch (report.event) {
        case Dispatcher::Report::Event::Begun:
            wire.send("start");
            break;
        case Dispatcher::Report::Event::Word: {
            const double lasts = secondsPerUnspokenByte * report.length;
            wire.send(
                "word", {report.from, report.length, static_cast<int>(std::lround(lasts * 1000))});
            break;
        }
        case Dispatcher::Report::Event::Over:
            utterance->silentEnd = now;
            break;
        case Dispatcher::Report::Event::Failed:
            speak(std::exchange(utterance->dispatched, {}), now);
            break;
        }
    }
}

void Speaker::gather(double now)
{
    for (SpeechChunk &chunk : synthesiser.take()) {
        if (chunk.utterance != utterance->id)
            continue;
        if (!utterance->origin && !chunk.samples.empty())
            utterance->origin = clock.frameAt(now + lead);
        utterance->length += seconds(static_cast<Frame>(chunk.samples.size()));
        utterance->samples.insert(
            utterance->samples.end(), chunk.samples.begin(), chunk.samples.end());
        utterance->words.insert(utterance->words.end(), chunk.words.begin(), chunk.words.end());
        utterance->bands += chunk.bands;
        utterance->synthesised = utterance->synthesised || chunk.last;
    }
}

double Speaker::timeOf(double position) const
{
    return clock.timeOf(utterance->origin.value_or(0) + frames(position));
}

void Speaker::feedMouth(double now)
{
    if (!utterance->origin)
        return;
    auto &samples = utterance->samples;
    const Frame until = clock.frameAt(now + soundAhead);
    std::size_t fed = 0;
    while (fed < samples.size() && *utterance->origin + utterance->queued < until) {
        const std::size_t count = std::min(samples.size() - fed, Mouth::blockSize);
        if (!mouth.speak(utterance->id, *utterance->origin + utterance->queued,
                {samples.data() + fed, count}))
            break;
        fed += count;
        utterance->queued += static_cast<Frame>(count);
    }
    samples.erase(samples.begin(), samples.begin() + static_cast<std::ptrdiff_t>(fed));
}

void Speaker::tellBands(double now)
{
    if (!utterance->origin)
        return;
    if (!utterance->bandsShift) {
        if (utterance->words.empty())
            return;
        const double first = utterance->words.front().at - anchorBeforeWord;
        const int shift = static_cast<int>(std::lround(first * Spectrum::framesPerSecond));
        if (static_cast<int>(utterance->bands.size() / Spectrum::bands) < shift)
            return;
        utterance->bandsShift = shift;
        if (shift > 0)
            utterance->bands.erase(0, Spectrum::bands * static_cast<std::size_t>(shift));
        else
            utterance->bands.insert(0, Spectrum::bands * static_cast<std::size_t>(-shift), 'a');
    }
    const double position = now + bandsAhead - timeOf(0);
    const int until =
        static_cast<int>(position * Spectrum::framesPerSecond) - *utterance->bandsShift;
    const int have = static_cast<int>(utterance->bands.size() / Spectrum::bands);
    const int count = std::min(until - utterance->bandsTold, have);
    if (count <= 0)
        return;
    const std::size_t letters = Spectrum::bands * static_cast<std::size_t>(count);
    wire.send("spec",
        std::to_string(utterance->id) + ' ' + std::to_string(utterance->bandsTold) + ' '
            + utterance->bands.substr(0, letters));
    utterance->bands.erase(0, letters);
    utterance->bandsTold += count;
}

void Speaker::tellWords(double now)
{
    if (!utterance->origin)
        return;
    if (!utterance->begun && now >= timeOf(0)) {
        utterance->begun = true;
        wire.send("start");
    }
    auto &words = utterance->words;
    while (!words.empty() && now >= timeOf(words.front().at)) {
        const WordMark word = words.front();
        words.pop_front();
        const double end = words.empty() ? utterance->length : words.front().at;
        wire.send("word",
            {word.from, word.length, static_cast<int>(std::lround((end - word.at) * 1000))});
    }
}

std::optional<double> Speaker::deadline() const
{
    if (!speaking())
        return {};
    if (!utterance->dispatched.empty() || !synthesiser.works())
        return utterance->silentEnd;
    if (!utterance->origin)
        return {};
    double next = nextFeed;
    if (!utterance->begun)
        next = std::min(next, timeOf(0));
    if (!utterance->words.empty())
        next = std::min(next, timeOf(utterance->words.front().at));
    if (utterance->synthesised)
        next = std::min(next, timeOf(utterance->length));
    return next;
}

} // namespace kelo::engine
