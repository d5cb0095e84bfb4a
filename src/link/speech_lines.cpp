#include "link/speech_lines.h"

#include "link/bounds.h"
#include "link/keywords.h"
#include "link/link_editor.h"
#include "link/parse.h"

#include <QLoggingCategory>

#include <utility>

using namespace Qt::StringLiterals;

Q_DECLARE_LOGGING_CATEGORY(linkLog)

namespace kelo {

namespace {

constexpr double captionHold = 4.0; // seconds after the end of a sentence

} // namespace

bool SpeechLines::handle(std::string_view keyword, QByteArrayView rest, double now)
{
    using Is = SpeechLines;
    static constexpr std::array<Keyword<Is>, 6> table{{
        {"spec", &Is::spec},
        {"word", &Is::word},
        {"say", &Is::say},
        {"start", &Is::start},
        {"done", &Is::done},
        {"heard", &Is::heard},
    }};
    return handleBy(*this, table, keyword, rest, now);
}

void SpeechLines::say(QByteArrayView rest, double now)
{
    const QString sentence = parse::text(rest, bounds::sentence);
    const QString time = link_.time().timeOfDay();
    link_.change({&Link::captionChanged, &Link::captionLiveChanged, &Link::spokenToChanged,
                     &Link::speakingChanged, &Link::transcriptChanged},
        [&](LinkState &all) {
            all.speech.begin(sentence, now);
            all.pulseAt = now;
            all.log.add(time, sentence, bounds::spoken);
        });
}

void SpeechLines::start(QByteArrayView /*rest*/, double now)
{
    link_.poke([now](LinkState &all) { all.spectrum.start = now; });
}

void SpeechLines::word(QByteArrayView rest, double now)
{
    const parse::Integers numbers = parse::integers(rest);
    const double wordTime = numbers.size() > 2 ? static_cast<double>(numbers[2]) / 1000.0 : 0.0;
    if (numbers.size() < 2) {
        link_.poke([&](LinkState &all) { all.speech.wordTime = wordTime; });
        return;
    }
    link_.change({&Link::spokenToChanged}, [&](LinkState &all) {
        all.spectrum.anchorAtWord(now);
        all.speech.wordTime = wordTime;
        all.speech.word(numbers[0], numbers[1], now);
        all.pulseAt = now;
    });
}

void SpeechLines::done(QByteArrayView /*rest*/, double now)
{
    if (captionEnd_.mark != link_.state().speech.mark)
        endCaptionAt(now + captionHold, now);
    link_.change({&Link::speakingChanged, &Link::spokenToChanged},
        [now](LinkState &all) { all.speech.end(now); });
}

void SpeechLines::endCaptionAt(double due, double now)
{
    captionEnd_.due = due;
    captionEnd_.mark = link_.state().speech.mark;
    if (std::exchange(captionEnd_.watched, true))
        return;
    link_.time().after(due - now, link_.context(), [this] {
        captionEnd_.watched = false;
        const double then = link_.time().now();
        const Speech &speech = link_.state().speech;
        if (captionEnd_.mark != speech.mark || speech.speaking)
            return;
        if (then < captionEnd_.due)
            endCaptionAt(captionEnd_.due, then);
        else
            link_.change({&Link::captionLiveChanged},
                [](LinkState &all) { all.speech.captionLive = false; });
    });
}

void SpeechLines::spec(QByteArrayView rest, double /*now*/)
{
    const parse::Pieces tokens = parse::pieces(rest, ' ', 3);
    if (tokens.size() < 2)
        return;
    const auto id = parse::integer(tokens[0]);
    if (!id)
        return;
    if (tokens[1] == "new") {
        link_.poke([&](LinkState &all) { all.spectrum.begin(*id); });
        return;
    }
    const auto index = parse::integer(tokens[1]);
    if (*id != link_.state().spectrum.id || tokens.size() != 3 || !index)
        return;
    bool placed = true;
    link_.poke([&](LinkState &all) { placed = all.spectrum.store(*index, tokens[2]); });
    if (!placed) {
        qCCritical(linkLog) << "the engine sent a spectrum frame at" << *index
                            << "and can't be trusted any more: ending it";
        link_.condemnEngine();
    }
}

void SpeechLines::heard(QByteArrayView rest, double /*now*/)
{
    const QString words = parse::text(rest, bounds::sentence);
    const QString time = link_.time().timeOfDay();
    link_.change({&Link::heardChanged, &Link::transcriptChanged}, [&](LinkState &all) {
        all.readouts.heard = words;
        all.log.add(
            time, u"▸ YOU: "_s + (words.isEmpty() ? all.names.assistant : words), bounds::logged);
    });
}

} // namespace kelo
