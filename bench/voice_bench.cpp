// How well names are heard, and at what cost:
//   [KELO_BENCH_FULL=1] voice_bench [NAME...]
// for all names of the corpus or those given. Takes a few minutes: 10 calls by the name a room and
// a minute of other talk a name. In full, for nights: every call in every voice at every speed and
// an hour of other talk a name. The seed is fixed and a call of the short run is one of the full.
// Speech is made by espeak-ng, so the figures compare builds with each other, not with people.

#include "support/figures.h"
#include "voice/name/taught_name.h"
#include "voice/name/wake_training.h"
#include "voice/recognition/decoding_recogniser.h"
#include "voice/recognition/sphinx_decoder.h"
#include "voice/recognition/sphinx_kind.h"
#include "voice/wake_lab/recording.h"
#include "voice/wake_lab/speech_sample.h"
#include "voice_corpus.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>
#include <functional>
#include <future>
#include <numeric>
#include <stdexcept>

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::bench;

namespace {

constexpr std::array speeds{140, 175, 210}; // words a minute
constexpr std::array<std::optional<double>, 3> rooms{std::nullopt, 20.0, 10.0};
constexpr std::array roomNames{"clean", "20 dB", "10 dB"};

/// How much is measured.
struct Extent {
    int callsEvery = 7; ///< of all 72 calls, one in so many; no multiple of 2 or 3
    double talk = 60; ///< seconds a name
    static Extent wanted()
    {
        return qEnvironmentVariableIsSet("KELO_BENCH_FULL") ? Extent{1, 3600} : Extent{};
    }
};

struct Tally {
    double hits = 0;
    double samples = 0;
    [[nodiscard]] double percent() const { return samples > 0 ? 100 * hits / samples : 0; }
    void add(const Tally &other)
    {
        hits += other.hits;
        samples += other.samples;
    }
};

struct Figures {
    std::array<Tally, rooms.size()> heard;
    Tally plain;
    Tally otherWordsWrong; ///< "hits" are the wrong ones
    Tally falseNames; ///< "samples" are seconds
    Tally soundAlikes; ///< that were taken for the name
    double teaching = 0; ///< milliseconds

    void add(const Figures &other)
    {
        for (std::size_t room = 0; room < rooms.size(); ++room)
            heard[room].add(other.heard[room]);
        plain.add(other.plain);
        otherWordsWrong.add(other.otherWordsWrong);
        falseNames.add(other.falseNames);
        soundAlikes.add(other.soundAlikes);
        teaching += other.teaching;
    }
};

/// Words to insert, delete or replace to turn one list into the other.
double distance(const QStringList &from, const QStringList &to)
{
    std::vector<double> row(static_cast<std::size_t>(to.size()) + 1);
    std::iota(row.begin(), row.end(), 0);
    for (const QString &word : from) {
        double diagonal = row[0]++;
        for (std::size_t i = 1; i < row.size(); ++i) {
            const bool same = word == to[static_cast<qsizetype>(i) - 1];
            const double best = std::min({row[i] + 1, row[i - 1] + 1, diagonal + !same});
            diagonal = std::exchange(row[i], best);
        }
    }
    return row.back();
}

struct Call {
    QString phrase;
    QString voice;
    int speed = 0;
};

/// One in `every` of the ways to call `name`, spread over phrases, voices and speeds.
std::vector<Call> callsBy(const QString &name, int every)
{
    std::vector<Call> calls;
    int number = 0;
    for (const QString &phrase : phrasesWith(name)) {
        for (const int speed : speeds) {
            for (const QString &voice : sampleVoices()) {
                if (number++ % every == every / 2)
                    calls.push_back({phrase, voice, speed});
            }
        }
    }
    return calls;
}

class Bench {
public:
    Figures measure(const QString &name, const Extent &extent);
    void costs();

private:
    [[nodiscard]] Samples spoken(
        const QString &text, const QString &voice, int speed, std::optional<double> noise);
    void otherTalk(
        Figures &figures, const QString &token, const TaughtModel &model, double seconds);

    QTemporaryDir folder_;
    DecodingRecogniser recogniser_{{sphinxKind(QStringLiteral(KELO_POCKETSPHINX))}};
    std::mt19937 random_{20};
};

Samples Bench::spoken(
    const QString &text, const QString &voice, int speed, std::optional<double> noise)
{
    const QString file = folder_.filePath(u"speech.wav"_s);
    const auto speech =
        speakToFile(text, voice, speed, file) ? readSpeech(file) : std::optional<Samples>();
    if (!speech)
        throw std::runtime_error("espeak-ng is missing");
    return inRoom(*speech, noise, random_);
}

Figures Bench::measure(const QString &name, const Extent &extent)
{
    Figures figures;
    const QString token = nameToken(name);
    QElapsedTimer clock;
    clock.start();
    const TaughtModel model = recogniser_.teacher()(
        WakeTraining::of(name), SpeechModelFiles::of(folder_.path(), name), {});
    figures.teaching = static_cast<double>(clock.elapsed());
    // Room after room: the decoder gets used to one, as it would to a real one.
    for (std::size_t room = 0; room < rooms.size(); ++room) {
        for (const Call &call : callsBy(name, extent.callsEvery)) {
            const Samples sound = spoken(call.phrase, call.voice, call.speed, rooms[room]);
            QStringList words = tokensOf(recognised(recogniser_, model, sound), name);
            figures.heard[room].add({double(words.contains(token)), 1});
            if (room == 0) {
                QStringList said = tokensOf(call.phrase, name);
                words.removeAll(token);
                said.removeAll(token);
                figures.otherWordsWrong.add({distance(said, words), double(said.size())});
            }
        }
    }
    for (const Call &call : callsBy(name, extent.callsEvery)) {
        const QString plain =
            recognised(recogniser_, {}, spoken(call.phrase, call.voice, call.speed, {}));
        figures.plain.add({double(tokensOf(plain, name).contains(token)), 1});
    }
    otherTalk(figures, token, model, extent.talk);
    return figures;
}

void Bench::otherTalk(
    Figures &figures, const QString &token, const TaughtModel &model, double seconds)
{
    const auto falseNames = [&](const Samples &sound) {
        const auto words = tokensOf(recognised(recogniser_, model, sound), model.name);
        return static_cast<double>(words.count(token));
    };
    const auto anyVoice = [&] { return sampleVoices()[static_cast<qsizetype>(random_() % 6)]; };
    while (figures.falseNames.samples < seconds) {
        const int speed = speeds[random_() % speeds.size()];
        const Samples sound = spoken(everydaySentence(random_), anyVoice(), speed, {});
        figures.falseNames.add({falseNames(sound), secondsOf(sound)});
    }
    for (const QString &word : soundAlikes()) {
        if (word == token)
            continue;
        const QString sentence = u"I said %1 to my brother"_s.arg(word);
        figures.soundAlikes.add({falseNames(spoken(sentence, anyVoice(), speeds[1], {})), 1});
    }
}

double cpuSeconds()
{
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

void Bench::costs()
{
    QElapsedTimer clock;
    const auto milliseconds = [&] { return static_cast<double>(clock.nsecsElapsed()) / 1e6; };
    const double before = privateMemory();
    clock.start();
    auto decoder = SphinxDecoder::load(QStringLiteral(KELO_POCKETSPHINX));
    print(u"load the decoder"_s, milliseconds(), u"ms"_s);
    print(u"memory, general model"_s, (privateMemory() - before) / 1e6, u"MB"_s);
    clock.start();
    const TaughtModel model = recogniser_.teacher()(
        WakeTraining::of(u"Kelo"_s), SpeechModelFiles::of(folder_.path(), u"Kelo"_s), {});
    print(u"prepare a taught model"_s, milliseconds(), u"ms"_s);
    clock.start();
    decoder->expect(model, {});
    print(u"take up a taught model"_s, milliseconds(), u"ms"_s);
    print(u"memory, taught"_s, (privateMemory() - before) / 1e6, u"MB"_s);
    clock.start();
    decoder->expect(model, {u"jazz lesson"_s, u"ear training"_s});
    print(u"a session with new phrases"_s, milliseconds(), u"ms"_s);
    clock.start();
    decoder->expect(model, {u"jazz lesson"_s, u"ear training"_s});
    print(u"a session with the same phrases"_s, milliseconds(), u"ms"_s);
    clock.start();
    decoder->expect(model, {u"Zyrkal sonata"_s});
    print(u"a session with new words"_s, milliseconds(), u"ms"_s);
    decoder.reset();

    // As it is spoken, through the gate.
    Samples speech;
    while (secondsOf(speech) < 20) {
        const Samples more = spoken(everydaySentence(random_), sampleVoices()[0], speeds[1], {});
        speech.insert(speech.end(), more.begin() + 8000, more.end() - 12000);
    }
    Samples hiss(20 * 16000); // at -55 dB
    std::normal_distribution<double> noise(0, 60);
    for (qint16 &sample : hiss)
        sample = static_cast<qint16>(noise(random_));
    const auto perSecond = [&](const Samples &sound) {
        const double start = cpuSeconds();
        (void)recognised(recogniser_, model, sound);
        return (cpuSeconds() - start) / secondsOf(sound);
    };
    // What is heard first is heard twice.
    (void)perSecond(spoken(u"what time is it"_s, sampleVoices()[0], speeds[1], {}));
    print(u"CPU seconds a second of speech"_s, perSecond(speech), u"s"_s);
    const QStringList expected = expectedPhrases();
    const auto live = [&](const Samples &sound, const RecognitionTask::Handler &handler,
                          double when = -1, const std::function<void()> &then = {}) {
        const auto task = recogniser_.start({expected, model, true, {}}, handler);
        const auto moment = static_cast<std::size_t>(std::max(0.0, when) * sampleRate) / 320 * 320;
        for (std::size_t at = 0; at + 320 <= sound.size(); at += 320) {
            if (then && at == moment)
                then();
            task->append({{}, QByteArray(reinterpret_cast<const char *>(sound.data() + at), 640)});
            QThread::msleep(20);
        }
        return task;
    };
    const auto gated = [&](const Samples &sound) {
        const double start = cpuSeconds();
        live(sound, [](const auto &, const auto &) {})->cancel();
        return (cpuSeconds() - start) / secondsOf(sound);
    };
    print(u"CPU seconds a second of silence"_s, gated(Samples(5 * 16000)), u"s"_s);
    print(u"CPU seconds a second of hiss, from its start"_s, gated(hiss), u"s"_s);

    std::vector<double> late;
    std::vector<double> computing;
    for (const QString &voice : sampleVoices()) {
        const Samples phrase = spoken(u"Kelo, play some music"_s, voice, speeds[1], {});
        const double end = secondsOf(phrase) - 1.0; // the room is silent for a second
        std::atomic<qint64> finalAt = 0;
        QElapsedTimer spokenFor;
        spokenFor.start();
        std::atomic<double> atEnd = 0;
        std::atomic<double> atFinal = 0;
        const auto task = live(
            phrase,
            [&](const auto &transcript, const auto &) {
                atFinal = cpuSeconds();
                if (transcript && transcript->final)
                    finalAt = spokenFor.elapsed();
            },
            end, [&] { atEnd = cpuSeconds(); });
        while (finalAt == 0 && spokenFor.elapsed() < 20000)
            QThread::msleep(10);
        task->cancel();
        late.push_back(static_cast<double>(finalAt) / 1000 - end);
        computing.push_back(atFinal - atEnd);
    }
    std::ranges::sort(late);
    std::ranges::sort(computing);
    print(u"end of phrase to final result, median"_s, late[late.size() / 2], u"s"_s);
    print(u"the same, at most"_s, late.back(), u"s"_s);
    print(u"CPU seconds of it, median"_s, computing[computing.size() / 2], u"s"_s);
}

void printRow(const QString &name, const Figures &figures)
{
    const double hours = figures.falseNames.samples / 3600;
    std::printf("%-10s %6.1f %6.1f %6.1f %6.1f %8.1f %8.1f %8.1f %8.1f %8.0f\n", qPrintable(name),
        figures.plain.percent(), figures.heard[0].percent(), figures.heard[1].percent(),
        figures.heard[2].percent(), figures.otherWordsWrong.percent(),
        hours > 0 ? figures.falseNames.hits / hours : 0, hours * 60, figures.soundAlikes.percent(),
        figures.teaching);
    std::fflush(stdout);
}

/// As many names at a time as there are cores.
void measureAll(const QStringList &names, const Extent &extent)
{
    std::printf("\n%-10s %6s %6s %6s %6s %8s %8s %8s %8s %8s\n", "name, %", "plain", roomNames[0],
        roomNames[1], roomNames[2], "rest bad", "false/h", "of min", "alikes", "teach ms");
    Figures all;
    const qsizetype together = std::max(1, QThread::idealThreadCount());
    for (qsizetype first = 0; first < names.size(); first += together) {
        const QStringList some = names.mid(first, together);
        std::vector<std::future<Figures>> answers;
        for (const QString &name : some) {
            answers.push_back(std::async(
                std::launch::async, [name, extent] { return Bench().measure(name, extent); }));
        }
        for (qsizetype i = 0; i < some.size(); ++i) {
            const Figures figures = answers[static_cast<std::size_t>(i)].get();
            printRow(some[i], figures);
            all.add(figures);
        }
    }
    all.teaching /= static_cast<double>(names.size());
    printRow(u"all"_s, all);
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList some = QCoreApplication::arguments().sliced(1);
    printMachine();
    try {
        Bench().costs();
        measureAll(some.isEmpty() ? names() : some, Extent::wanted());
    } catch (const std::exception &error) {
        std::fprintf(stderr, "voice_bench: %s\n", error.what());
        return 1;
    }
    return 0;
}
