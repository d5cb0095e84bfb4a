#include "link/engine_process.h"
#include "link/inbound.h"
#include "link/link.h"
#include "link/parse.h"

#include <QLoggingCategory>

#include <algorithm>

Q_DECLARE_LOGGING_CATEGORY(linkLog)

namespace kelo {

namespace {

constexpr double captionHold = 4.0; // seconds after the end of a sentence
constexpr double anchorLead = 0.03; // seconds by which the first word's report trails the sound

// What only an engine gone wild fills; a real one stays far below.
constexpr std::size_t mostVoiceFrames = 36'000; // ten minutes of one utterance
constexpr qsizetype mostLogged = 10'000; // voice-log lines while the assistant says nothing

qint64 saturatedSum(qint64 a, qint64 b)
{
    qint64 sum = 0;
    if (!qAddOverflow(a, b, &sum))
        return sum;
    return a < 0 ? std::numeric_limits<qint64>::min() : std::numeric_limits<qint64>::max();
}

VoiceFrame frameOf(QByteArrayView letters)
{
    VoiceFrame frame{};
    std::ranges::transform(letters, frame.begin(), [](char c) {
        const int value = static_cast<unsigned char>(c) - 'a';
        return value < 0 ? 0.0 : value / 15.0;
    });
    return frame;
}

} // namespace

void Inbound::spec(QByteArrayView rest, double /*now*/)
{
    const parse::Pieces tokens = parse::pieces(rest, ' ', 3);
    if (tokens.size() < 2)
        return;
    const auto id = parse::integer(tokens[0]);
    if (!id)
        return;
    if (tokens[1] == "new") {
        link_.voiceId = *id;
        link_.voiceFrames.clear();
        link_.voiceAnchor.reset();
        link_.voiceStart = 0;
        return;
    }
    const auto index = parse::integer(tokens[1]);
    if (*id != link_.voiceId || tokens.size() != 3 || !index)
        return;
    const QByteArrayView letters = tokens[2];
    for (qsizetype frame = 0; (frame + 1) * voiceBandCount <= letters.size(); ++frame) {
        const qint64 position = saturatedSum(*index, frame);
        if (position < 0) {
            qCCritical(linkLog) << "the engine sent a spectrum frame at" << position
                                << "and can't be trusted any more: ending it";
            if (link_.process_)
                link_.process_->condemn();
            return;
        }
        const auto at = static_cast<std::size_t>(position);
        const VoiceFrame bands = frameOf(letters.sliced(frame * voiceBandCount, voiceBandCount));
        if (at < link_.voiceFrames.size())
            link_.voiceFrames[at] = bands;
        else if (at == link_.voiceFrames.size() && at < mostVoiceFrames)
            link_.voiceFrames.push_back(bands);
    }
}

void Inbound::start(QByteArrayView /*rest*/, double now)
{
    link_.voiceStart = now;
}

void Inbound::say(QByteArrayView rest, double now)
{
    const QString sentence = parse::text(rest);
    link_.caption = sentence;
    link_.segments = cut(sentence);
    link_.cursor_ = 0;
    ++link_.captionMark_;
    link_.captionLive = true;
    link_.spokenTo = 0;
    link_.speaking = true;
    link_.gotWord = false;
    link_.sayStarted = now;
    link_.pulseAt = now;
    log(sentence, true);
}

void Inbound::word(QByteArrayView rest, double now)
{
    const parse::Integers numbers = parse::integers(rest);
    link_.wordTime = numbers.size() > 2 ? static_cast<double>(numbers[2]) / 1000.0 : 0.0;
    if (numbers.size() < 2)
        return;
    if (!link_.voiceAnchor)
        link_.voiceAnchor = now - anchorLead;
    link_.spokenTo = saturatedSum(numbers[0], numbers[1]);
    link_.wordFrom = numbers[0];
    link_.wordLen = numbers[1];
    link_.wordAt = now;
    link_.gotWord = true;
    link_.pulseAt = now;
}

void Inbound::done(QByteArrayView /*rest*/, double now)
{
    link_.speaking = false;
    link_.doneAt = now;
    if (captionEnd_.mark != link_.captionMark_)
        endCaptionAt(now + captionHold, now);
    link_.spokenTo = link_.caption->size();
}

void Inbound::endCaptionAt(double due, double now)
{
    captionEnd_.due = due;
    captionEnd_.mark = link_.captionMark_;
    if (std::exchange(captionEnd_.watched, true))
        return;
    link_.setup_.time.after(due - now, &link_, [this] {
        captionEnd_.watched = false;
        const double then = link_.setup_.time.now();
        if (captionEnd_.mark != link_.captionMark_ || link_.speaking)
            return;
        if (then < captionEnd_.due)
            endCaptionAt(captionEnd_.due, then);
        else
            link_.captionLive = false;
    });
}

void Inbound::log(const QString &line, bool trim)
{
    Spoken spoken{++link_.counter_, link_.setup_.time.timeOfDay(), line};
    const qsizetype most = trim ? mostSpoken : mostLogged;
    link_.transcript.change([&](QList<Spoken> &lines) {
        lines.append(std::move(spoken));
        if (lines.size() > most)
            lines.remove(0, lines.size() - most);
    });
}

} // namespace kelo
