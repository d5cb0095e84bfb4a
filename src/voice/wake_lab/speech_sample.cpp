#include "voice/wake_lab/speech_sample.h"

#include "voice/capture/audio.h"
#include "voice/capture/resampler.h"

#include <QFile>
#include <QProcess>
#include <QtEndian>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

constexpr double silenceBefore = 0.5; // seconds
constexpr double silenceAfter = 1.0;

template <typename T> T little(const QByteArray &bytes, qsizetype at)
{
    return at + qsizetype{sizeof(T)} <= bytes.size() ? qFromLittleEndian<T>(bytes.constData() + at)
                                                     : T{};
}

} // namespace

const QStringList &sampleVoices()
{
    static const QStringList voices{u"gmw/en-US"_s, u"gmw/en-US+f2"_s, u"gmw/en"_s, u"gmw/en+f4"_s,
        u"gmw/en-GB-scotland"_s, u"gmw/en-GB-x-rp+f3"_s};
    return voices;
}

bool speakToFile(const QString &text, const QString &voice, int wordsPerMinute, const QString &path)
{
    QProcess synthesiser;
    synthesiser.start(u"espeak-ng"_s,
        {u"-v"_s, voice, u"-s"_s, QString::number(wordsPerMinute), u"-w"_s, path, u"--stdin"_s});
    synthesiser.write(text.simplified().toUtf8());
    synthesiser.closeWriteChannel();
    return synthesiser.waitForFinished() && synthesiser.exitStatus() == QProcess::NormalExit
        && synthesiser.exitCode() == 0;
}

std::optional<Samples> readSpeech(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QByteArray bytes = file.readAll();
    if (!bytes.startsWith("RIFF"))
        return std::nullopt;
    AudioBuffer buffer;
    for (qsizetype at = 12; at + 8 <= bytes.size();) {
        const qsizetype body = at + 8;
        const auto size = static_cast<qsizetype>(little<quint32>(bytes, at + 4));
        if (bytes.sliced(at, 4) == "fmt ") {
            buffer.format.channels = little<quint16>(bytes, body + 2);
            buffer.format.rate = static_cast<int>(little<quint32>(bytes, body + 4));
            if (little<quint16>(bytes, body + 14) != 16)
                return std::nullopt;
        } else if (bytes.sliced(at, 4) == "data") {
            buffer.bytes = bytes.mid(body, size); // less when the file was cut short
            break;
        }
        at = body + size + size % 2;
    }
    const Samples mono = monoOf(buffer);
    if (mono.empty() || buffer.format.rate < 4000)
        return std::nullopt;
    return Resampler(buffer.format.rate).finish(mono);
}

Samples inRoom(const Samples &speech, std::optional<double> signalToNoise, std::mt19937 &random)
{
    Samples room(static_cast<std::size_t>(silenceBefore * sampleRate));
    room.insert(room.end(), speech.begin(), speech.end());
    room.resize(room.size() + static_cast<std::size_t>(silenceAfter * sampleRate));
    if (!signalToNoise)
        return room;
    double power = 0;
    for (const qint16 sample : speech)
        power += static_cast<double>(sample) * sample;
    const double loudness =
        std::sqrt(power / static_cast<double>(std::max<std::size_t>(speech.size(), 1)));
    std::normal_distribution<double> noise(0, loudness * std::pow(10, -*signalToNoise / 20));
    for (qint16 &sample : room)
        sample =
            static_cast<qint16>(std::clamp(std::lround(sample + noise(random)), -32768L, 32767L));
    return room;
}

} // namespace kelo
