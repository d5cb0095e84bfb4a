#include "speech/resampler.h"
#include "speech/speaker.h"
#include "speech/spectrum.h"
#include "speech/synthesiser.h"
#include "speech/word_marks.h"
#include "stage.h"
#include "sums.h"
#include "support/table.h"

#include <QTest>
#include <QThread>

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

using namespace Qt::StringLiterals;
using namespace kelo::engine;
using kelo::test::Table;

namespace {

std::vector<float> tone(double hertz, double rate, double amplitude)
{
    std::vector<float> samples(static_cast<std::size_t>(rate));
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] = static_cast<float>(
            amplitude * std::sin(2 * std::numbers::pi * hertz * static_cast<double>(i) / rate));
    return samples;
}

/// A voice that makes 0.3 s of sound a word, a chunk each time that it is asked.
struct SlowVoice : SpeechMaker {
    [[nodiscard]] bool works() const override { return able; }
    void setVoice(std::size_t) override { }
    void setStyle(const SpeechStyle &) override { }
    void begin(std::uint32_t id, std::string text) override
    {
        chunks.clear();
        WordMarks marks(text);
        double at = 0.04;
        for (std::size_t place = 0; id != 0 && place < text.size();) {
            SpeechChunk chunk{id, std::vector<float>(frames(0.3), 0.5F), {}, {}};
            if (const auto mark = marks.begin(static_cast<int>(place), at))
                chunk.words.push_back(*mark);
            for (int frame = 0; frame < 18; ++frame)
                chunk.bands += std::string(16, static_cast<char>('a' + frame % 16));
            chunks.push_back(chunk);
            place = std::min(text.find(' ', place), text.size() - 1) + 1;
            at += 0.3;
        }
        if (id != 0)
            chunks.push_back({id, {}, {}, {}, true});
    }
    [[nodiscard]] std::vector<SpeechChunk> take() override
    {
        if (chunks.empty())
            return {};
        std::vector<SpeechChunk> one{chunks.front()};
        chunks.erase(chunks.begin());
        return one;
    }
    bool able = true;
    std::vector<SpeechChunk> chunks;
};

/// What is spoken, and when: "id frame+count".
struct Loudspeaker : SpeechOutput {
    bool speak(std::uint32_t id, Frame frame, std::span<const float> samples) override
    {
        if (++asked % 50 == 0)
            return false; // enough is waiting
        blocks << u"%1 %2+%3"_s.arg(id).arg(frame).arg(samples.size());
        return true;
    }
    void listenTo(std::uint32_t id) override { blocks << u"only %1"_s.arg(id); }
    int asked = 0;
    QStringList blocks;
};

/// How loud a frequency is, in dB of a sine of amplitude 0.5.
double levelAt(double hertz, double rate, const std::vector<float> &samples)
{
    std::complex<double> sum = 0;
    double weights = 0;
    const auto count = static_cast<double>(samples.size());
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double at = static_cast<double>(i);
        const double window = 1 - std::cos(2 * std::numbers::pi * at / count);
        sum += std::polar(window * samples[i], -2 * std::numbers::pi * hertz * at / rate);
        weights += window;
    }
    return 20 * std::log10(4 * std::abs(sum) / weights);
}

} // namespace

/// A sentence as eSpeak NG speaks it: how long it takes, and how often a second it changes sign as
/// it is and with all above its pitch softened.
struct Spoken {
    double seconds = 0;
    double brightness = 0;
    double pitch = 0;
};

Spoken spoken(Synthesiser &maker, std::size_t voice, const SpeechStyle &style)
{
    static std::uint32_t utterance = 0;
    maker.setVoice(voice);
    maker.setStyle(style);
    maker.begin(++utterance, "Which of the songs shall we play today?");
    Spoken sound;
    float before = 0;
    float mid = 0;
    float low = 0;
    for (bool last = false; !last; QThread::msleep(1)) {
        for (const SpeechChunk &chunk : maker.take()) {
            for (const float sample : chunk.samples) {
                mid += 0.005F * (sample - mid);
                const float lower = low + 0.005F * (mid - low);
                sound.brightness += std::signbit(sample) != std::signbit(before);
                sound.pitch += std::signbit(lower) != std::signbit(low);
                sound.seconds += 1 / 44100.0;
                before = sample;
                low = lower;
            }
            last = chunk.last;
        }
    }
    return {sound.seconds, sound.brightness / sound.seconds, sound.pitch / sound.seconds};
}

class SpeechTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void tellsWhatItSaysInStepWithTheSound()
    {
        AudioClock clock(0);
        QStringList lines;
        double now = 5;
        Wire wire([&](std::string_view line) {
            const QString text = QString::fromUtf8(line.data(), qsizetype(line.size())).trimmed();
            lines << QString::number(now, 'f', 3) + u' ' + text.left(40) + u' '
                    + QString::number(text.size());
        });
        SpeechDispatcher none(false, [] {});
        SlowVoice voice;
        Loudspeaker output;
        Speaker speaker(wire, none, voice, output, clock);
        const auto run = [&](double until) {
            for (; now < until; now += 0.0105) {
                if (const auto due = speaker.deadline();
                    due && *due > now + 0.0105 && voice.chunks.empty())
                    now = std::min(*due, until);
                speaker.advance(now);
            }
            lines << QString::number(speaker.deadline().value_or(-1), 'f', 3);
        };
        speaker.say("One two, three.", now);
        run(7);
        speaker.say("Four", now);
        speaker.advance(now);
        run(7.15);
        speaker.say("Five six", now); // cuts it off
        run(7.4);
        speaker.stop();
        speaker.stop();
        run(7.5);
        speaker.say("", now);
        voice.able = false; // it passes in silence
        speaker.say("Seven", now);
        run(9);
        QCOMPARE(lines.filter(u"word"_s).join(u", "_s),
            u"5.120 @word 0 3 300 13, 5.420 @word 4 3 300 13, 5.730 @word 9 5 260 13, "
            "7.129 @word 0 4 260 13, 7.280 @word 0 4 300 13"_s);
        QCOMPARE(
            unlikeKept(u"speaker"_s, {qChecksum((lines + output.blocks).join(u'\n').toUtf8())}),
            QString());
    }

    void soundIsMadeOfALongTextAsItIsHeard()
    {
        const AudioClock clock(0);
        Wire wire([](std::string_view) {});
        SpeechDispatcher none(false, [] {});
        SlowVoice voice;
        Loudspeaker output;
        Speaker speaker(wire, none, voice, output, clock);
        std::string text;
        for (int i = 0; i < 100; ++i)
            text += "word ";
        speaker.say(text, 5);
        for (int i = 0; i < 100; ++i)
            speaker.advance(5);
        const auto waiting = voice.chunks.size(); // of 0.3 s each
        QVERIFY2(waiting > 85 && waiting < 92, QByteArray::number(int(waiting)));
    }

    void eachVoiceAndStyleIsHeard()
    {
        Synthesiser maker([] {});
        QVERIFY(maker.works());
        std::vector<Spoken> all;
        // The same text never comes out quite the same: a voice keeps something of the one before.
        const auto isLike = [](const Spoken &sound) {
            return [&sound](const Spoken &other) {
                return std::abs(other.seconds - sound.seconds) < 0.005
                    && std::abs(other.brightness - sound.brightness) < 30;
            };
        };
        for (std::size_t voice = 0; voice < voices.size(); ++voice) {
            const auto sound = spoken(maker, voice, {});
            QVERIFY2(std::ranges::none_of(all, isLike(sound)), voices[voice].name.data());
            all.push_back(sound);
        }
        const double usual = all.front().seconds;
        const auto ratio = [&](int rate) {
            return std::round(10 * usual / spoken(maker, 0, {rate, 50}).seconds) / 10;
        };
        QCOMPARE(std::vector({ratio(120), ratio(330), ratio(400)}), std::vector({0.7, 2.0, 2.4}));
        QVERIFY(spoken(maker, 0, {165, 90}).pitch > 1.5 * spoken(maker, 0, {165, 10}).pitch);
    }

    void marksWholeWords_data()
    {
        const Table<QString, QList<int>, QStringList> row{"text", "characters", "words"};
        row("plain", u"one two, three."_s, QList{0, 4, 9}, {u"one"_s, u"two"_s, u"three"_s});
        row("a number said in two words is one", u"all 35 keys"_s, QList{0, 4, 5, 7},
            {u"all"_s, u"35"_s, u"keys"_s});
        row("an event in the middle of a word", u"I'm well-known"_s, QList{0, 2, 4, 9},
            {u"I'm"_s, u"well-known"_s});
        row("quotes stay out", u"say \"stop\" now"_s, QList{0, 5, 11},
            {u"say"_s, u"stop"_s, u"now"_s});
        row("an event on the space before", u"play it"_s, QList{0, 4}, {u"play"_s, u"it"_s});
        row("spoken punctuation", u"3 % off"_s, QList{0, 2, 4}, {u"3"_s, u"%"_s, u"off"_s});
        row("beyond the basic plane", u"a \U0001F3B5 caf\u00e9 b"_s, QList{0, 2, 4, 9},
            {u"a"_s, u"\U0001F3B5"_s, u"caf\u00e9"_s, u"b"_s});
        row("nonsense positions", u"one two"_s, QList{-5, 4, 99, 0}, {u"one"_s, u"two"_s});
        row("nothing", u""_s, QList{0, 1}, {});
    }

    void marksWholeWords()
    {
        QFETCH(QString, text);
        QFETCH(QList<int>, characters);
        WordMarks marks(text.toStdString());
        QStringList words;
        for (const int character : characters) {
            if (const auto mark = marks.begin(character, 0))
                words << text.mid(mark->from, mark->length);
        }
        QTEST(words, "words");
    }

    void aToneStandsOutInItsBand_data()
    {
        const Table<double, int, QByteArray> row{"hertz", "band", "last"};
        row("lowest", 92.0, 0, "mkihfedccbaaaaaa");
        row("a voice", 220.0, 3, "hikmkihfedcbaaaa");
        row("middle", 920.0, 8, "ccdefhiknkigfedb");
        row("highest", 6930.0, 15, "aaaaaaaabcdefgim");
    }

    void aToneStandsOutInItsBand()
    {
        QFETCH(double, hertz);
        Spectrum spectrum(22050);
        const std::string frames = spectrum.listen(tone(hertz, 22050, 0.1));
        QCOMPARE(frames.size(), 16U * 60U);
        const std::string last = frames.substr(frames.size() - 16);
        QTEST(static_cast<int>(std::max_element(last.begin(), last.end()) - last.begin()), "band");
        QVERIFY(*std::min_element(last.begin(), last.end()) < 'e');
        QTEST(QByteArray(last.c_str()), "last");
        QCOMPARE(Spectrum(22050).listen(std::vector<float>(22050)), std::string(960, 'a'));
    }

    void frameCountFollowsTheSoundHoweverItIsCut()
    {
        const auto sound = tone(440, 22050, 0.5);
        Spectrum whole(22050);
        Spectrum pieces(22050);
        std::string letters;
        for (std::size_t i = 0; i < sound.size(); i += 101)
            letters += pieces.listen(
                std::span(sound).subspan(i, std::min<std::size_t>(101, sound.size() - i)));
        QCOMPARE(letters, whole.listen(sound));
    }

    void resamplingKeepsATone()
    {
        for (const double rate : {16000.0, 22050.0, 48000.0}) {
            const auto sound = tone(3000, rate, 0.5);
            Resampler resampler(rate, 44100);
            std::vector<float> resampled;
            for (std::size_t i = 0; i < sound.size(); i += 1000) {
                const std::size_t count = std::min<std::size_t>(1000, sound.size() - i);
                for (const float sample : resampler.push(std::span(sound).subspan(i, count)))
                    resampled.push_back(sample);
            }
            for (const float sample : resampler.finish())
                resampled.push_back(sample);
            QVERIFY(std::abs(static_cast<double>(resampled.size()) - 44100) <= 2);
            const auto expected = tone(3000, 44100, 0.5); // and at the same time
            for (std::size_t i = 200; i < 43900; ++i)
                QVERIFY(std::abs(resampled[i] - expected[i]) < 0.001);
        }
    }

    void resamplingLeavesNoImages()
    {
        const auto resampled = Resampler(22050, 44100).push(tone(8000, 22050, 0.5));
        const double image = levelAt(22050 - 8000, 44100, resampled);
        qInfo("image of 8 kHz: %.0f dB", image);
        QVERIFY(image < -75);
        QVERIFY(std::abs(levelAt(8000, 44100, resampled)) < 0.5);
    }
};

QTEST_APPLESS_MAIN(SpeechTest)
#include "speech_test.moc"
