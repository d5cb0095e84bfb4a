// How well calls are heard, voice by voice: the name, and what is asked for after it.
//   voice_calls_bench [steady|alternating|first|talk|over] [CALLS] [NAME...]
// prints two tables, voice by room, in per cent with the 95 % confidence interval of each row's
// sum. CALLS is per voice and room, 40 unless given. "steady" hears one room after the other, as in
// use; in "alternating" every call is in another room; in "first" every call is a recogniser's
// first. "talk" counts instead what is understood where nothing was asked for: CALLS questions a
// voice that are put to the assistant by its name, but are beyond it, and as many sentences to
// others. "over" makes CALLS calls a voice while the assistant speaks from a loudspeaker, as loud
// at the microphone as the call, and listens as long to the assistant alone; with and without
// cancelling of the echo. A request is understood when the engine would do the same as for the
// words that were said.
//
// The voices are espeak-ng's, and flite's and festival's where those are installed. Those marked
// with "*" are for choosing by, the others for telling how it came out. KELO_BENCH_SPEECH names a
// folder to keep what they said in; with KELO_BENCH_LIST all that is heard is listed.

#include "listen/understanding.h"
#include "songs/library.h"
#include "voice/capture/echo_canceller.h"
#include "voice/name/taught_name.h"
#include "voice/name/wake_training.h"
#include "voice/recognition/decoding_recogniser.h"
#include "voice/recognition/sphinx_kind.h"
#include "voice/wake_lab/recording.h"
#include "voice/wake_lab/speech_sample.h"
#include "voice_corpus.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QMap>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <array>
#include <cmath>
#include <cstdio>

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::bench;

namespace {

constexpr std::array<std::optional<double>, 3> rooms{std::nullopt, 20.0, 10.0};

struct Voice {
    QString program;
    QString name;
    bool forChoosing = false;

    [[nodiscard]] QString title() const
    {
        return (forChoosing ? u"*"_s : u" "_s) + program + u' ' + name;
    }
    bool speak(const QString &text, const QString &path) const;
};

bool Voice::speak(const QString &text, const QString &path) const
{
    if (program == u"espeak-ng"_s)
        return speakToFile(text, name, 160, path);
    QProcess process;
    if (program == u"flite"_s) {
        process.start(program, {u"-voice"_s, name, u"-t"_s, text, u"-o"_s, path});
    } else {
        process.start(u"text2wave"_s,
            {u"-F"_s, u"16000"_s, u"-eval"_s, u"(voice_%1)"_s.arg(name), u"-o"_s, path});
        process.write(text.toUtf8());
    }
    process.closeWriteChannel();
    return process.waitForFinished() && process.exitCode() == 0;
}

QList<Voice> voices()
{
    QList<Voice> all;
    for (const QString &name : sampleVoices())
        all.append({u"espeak-ng"_s, name, all.size() % 2 == 0});
    if (!QStandardPaths::findExecutable(u"flite"_s).isEmpty()) {
        for (const QString &name : {u"kal16"_s, u"awb"_s, u"rms"_s, u"slt"_s})
            all.append({u"flite"_s, name, name == u"rms"_s});
    }
    if (!QStandardPaths::findExecutable(u"text2wave"_s).isEmpty()) {
        for (const QString &name : {u"kal_diphone"_s, u"ked_diphone"_s, u"cmu_us_slt_arctic_hts"_s})
            all.append({u"festival"_s, name, name == u"ked_diphone"_s});
    }
    return all;
}

QStringList requests()
{
    static const QStringList list = qEnvironmentVariable("KELO_BENCH_REQUESTS",
        u"what time is it|play some music|stop|metronome at ninety|song menu|ear training|louder|"
        "play the minuet in g|go home|what can I say|repeat|play song twelve|slower|help|"
        "teach me the ode to joy|jazz lesson three|what day is it|change the voice|"
        "list the songs|play something happy|metronome off|next"_s)
                                        .split(u'|');
    return list;
}

struct Tally {
    int hits = 0;
    int calls = 0;
    void add(bool hit)
    {
        hits += hit;
        ++calls;
    }
    /// After Wilson.
    [[nodiscard]] QString withInterval() const
    {
        const double n = std::max(calls, 1);
        const double share = hits / n;
        const double z = 1.96;
        const double middle = (share + z * z / (2 * n)) / (1 + z * z / n);
        const double reach =
            z / (1 + z * z / n) * std::sqrt(share * (1 - share) / n + z * z / (4 * n * n));
        return u"%1 (%2-%3)"_s.arg(qRound(100 * share))
            .arg(qRound(100 * (middle - reach)))
            .arg(qRound(100 * (middle + reach)));
    }
};

struct Outcome {
    std::array<Tally, rooms.size()> name;
    std::array<Tally, rooms.size()> request;
    void add(std::size_t room, bool named, bool understood)
    {
        name[room].add(named);
        request[room].add(named && understood);
    }
};

class Bench {
public:
    void run(const QString &order, int calls, const QStringList &names);
    void talk(int sentences, const QStringList &names);
    void over(int calls, const QStringList &names);
    void print() const;

private:
    struct Heard {
        bool name = false;
        std::optional<engine::Request> request;
    };

    [[nodiscard]] std::optional<Samples> spoken(const Voice &voice, const QString &text);
    [[nodiscard]] Heard heard(
        DecodingRecogniser &recogniser, const TaughtModel &model, const Samples &sound);
    [[nodiscard]] std::optional<engine::Request> requestIn(const QString &words) const;
    void call(DecodingRecogniser &recogniser, const TaughtModel &model, const Voice &voice,
        const QString &request, std::size_t room);

    Samples assistant(std::size_t count);
    Samples echoOf(const Samples &played);

    QTemporaryDir folder_;
    std::mt19937 random_{20};
    std::size_t at_ = 0; // in what the assistant says
    Samples past_; // what the loudspeaker has played
    QMap<QString, Outcome> outcomes_;
    engine::Library library_{{}};
    const QStringList phrases_ = expectedPhrases();
    const bool listed_ = qEnvironmentVariableIsSet("KELO_BENCH_LIST");
};

std::optional<Samples> Bench::spoken(const Voice &voice, const QString &text)
{
    const QByteArray words = (voice.program + voice.name + text).toUtf8();
    const QString kept = qEnvironmentVariable("KELO_BENCH_SPEECH", folder_.path()) + u'/'
        + QString::fromLatin1(QCryptographicHash::hash(words, QCryptographicHash::Md5).toHex())
        + ".wav"_L1;
    if (!QFile::exists(kept) && !voice.speak(text, kept))
        return std::nullopt;
    return readSpeech(kept);
}

std::optional<engine::Request> Bench::requestIn(const QString &words) const
{
    auto request = engine::understandKindly(engine::wordsOf(words.toStdString()), library_.names());
    if (request)
        request->whole = true;
    return request;
}

Bench::Heard Bench::heard(
    DecodingRecogniser &recogniser, const TaughtModel &model, const Samples &sound)
{
    const QString text = recognised(recogniser, model, sound, phrases_);
    const QStringList words = tokensOf(text, model.name);
    const qsizetype place = words.lastIndexOf(nameToken(model.name));
    if (listed_)
        std::printf("    %s\n", qPrintable(text));
    if (place < 0)
        return {};
    return {true, requestIn(words.sliced(place + 1).join(u' '))};
}

void Bench::call(DecodingRecogniser &recogniser, const TaughtModel &model, const Voice &voice,
    const QString &request, std::size_t room)
{
    const auto speech = spoken(voice, "Hey "_L1 + model.name + ", "_L1 + request);
    if (!speech)
        return;
    if (listed_)
        std::printf("%s, room %zu: %s\n", qPrintable(voice.title()), room, qPrintable(request));
    const Heard result = heard(recogniser, model, inRoom(*speech, rooms[room], random_));
    const bool understood = result.request && result.request == requestIn(request);
    if (listed_)
        std::printf("    %s\n", understood ? "ok" : result.name ? "NOT UNDERSTOOD" : "NO NAME");
    for (const QString &row :
        {voice.title(), u"all"_s, voice.forChoosing ? u"all *"_s : u"all others"_s})
        outcomes_[row].add(room, result.name, understood);
}

void Bench::run(const QString &order, int calls, const QStringList &names)
{
    const auto all = voices();
    for (qsizetype n = 0; n < names.size(); ++n) {
        auto recogniser = std::make_unique<DecodingRecogniser>(
            std::vector{sphinxKind(QStringLiteral(KELO_POCKETSPHINX))});
        const TaughtModel model = recogniser->teacher()(
            WakeTraining::of(names[n]), SpeechModelFiles::of(folder_.path(), names[n]), {});
        const auto hear = [&](std::size_t room, int k) {
            for (qsizetype v = 0; v < all.size(); ++v) {
                if (order == u"first"_s)
                    recogniser = std::make_unique<DecodingRecogniser>(
                        std::vector{sphinxKind(QStringLiteral(KELO_POCKETSPHINX))});
                const qsizetype which = (v + 3 * k + 5 * n) % requests().size();
                const std::size_t where = order == u"alternating"_s
                    ? (room + static_cast<std::size_t>(v)) % rooms.size()
                    : room;
                call(*recogniser, model, all[v], requests()[which], where);
            }
        };
        const int ofName = std::max(1, calls / static_cast<int>(names.size()));
        for (std::size_t room = 0; room < rooms.size(); ++room) {
            for (int k = 0; k < ofName; ++k)
                hear(room, k);
        }
    }
}

void Bench::talk(int sentences, const QStringList &names)
{
    int put = 0;
    int invented = 0;
    int falseNames = 0;
    int falseCalls = 0;
    double seconds = 0;
    for (const QString &name : names) {
        DecodingRecogniser recogniser({sphinxKind(QStringLiteral(KELO_POCKETSPHINX))});
        const TaughtModel model = recogniser.teacher()(
            WakeTraining::of(name), SpeechModelFiles::of(folder_.path(), name), {});
        for (int k = 0; k < sentences; ++k) {
            for (const Voice &voice : voices()) {
                const QStringList questions = otherQuestions();
                const QString &question = questions[put % questions.size()];
                const auto asked = spoken(voice, "Hey "_L1 + name + ", "_L1 + question);
                const QString sentence = everydaySentence(random_);
                const auto said = spoken(voice, sentence);
                if (!asked || !said)
                    continue;
                ++put;
                const auto answer = heard(recogniser, model, inRoom(*asked, {}, random_));
                if (answer.request && answer.request != requestIn(question)) {
                    ++invented;
                    std::printf("invented, %s: %s\n", qPrintable(name), qPrintable(question));
                }
                const Samples talk = inRoom(*said, {}, random_);
                const auto overheard = heard(recogniser, model, talk);
                seconds += secondsOf(talk);
                falseNames += overheard.name;
                falseCalls += overheard.request.has_value();
                if (overheard.name)
                    std::printf("false name, %s: %s\n", qPrintable(name), qPrintable(sentence));
            }
        }
    }
    std::printf("of %d questions beyond it, %d were taken for a request\n"
                "in %.0f minutes of other talk, %d names and %d requests were heard\n",
        put, invented, seconds / 60, falseNames, falseCalls);
}

/// What the assistant says, for `count` samples from somewhere in it.
Samples Bench::assistant(std::size_t count)
{
    static const QString text =
        u"Good evening, Ann. There are twelve songs. The minuet in G is in three four, and has "
        "thirty two bars. Play the right hand first, slowly: D, G, A, B, C, D, G, G. That was "
        "nearly "
        "right; the fourth note is C. Once more, from bar five. You have practised for twenty "
        "minutes today, and the ode to joy is ready to be played again. What would you like to do "
        "next? You can say play song three, teach me the ode to joy, or ear training."_s;
    static const auto all = spoken({u"espeak-ng"_s, u"gmw/en-US+m3"_s}, text);
    if (!all)
        throw std::runtime_error("espeak-ng is missing");
    Samples some;
    for (; some.size() < count; at_ = (at_ + 1) % all->size())
        some.push_back((*all)[at_]);
    return some;
}

/// From the loudspeaker to the microphone: 80 ms later 6 dB less, and its echoes in the room.
Samples Bench::echoOf(const Samples &played)
{
    static const auto room = [] {
        std::mt19937 random(5);
        std::normal_distribution<double> any;
        std::vector<double> taps(1280 + 2400);
        for (std::size_t i = 1280; i < taps.size(); ++i)
            taps[i] = 0.05 * any(random) * std::exp(-static_cast<double>(i - 1280) / 700);
        taps[1280] = 0.5;
        return taps;
    }();
    past_.insert(past_.end(), played.begin(), played.end());
    Samples echo;
    for (std::size_t i = past_.size() - played.size(); i < past_.size(); ++i) {
        double sum = 0;
        for (std::size_t k = 1280; k < std::min(room.size(), i + 1); ++k)
            sum += room[k] * past_[i - k];
        echo.push_back(static_cast<qint16>(std::clamp(sum, -32768.0, 32767.0)));
    }
    past_.erase(past_.begin(),
        past_.end() - static_cast<std::ptrdiff_t>(std::min(past_.size(), room.size())));
    return echo;
}

void Bench::over(int calls, const QStringList &names)
{
    std::array<Tally, 2> named;
    std::array<Tally, 2> understood;
    std::array<int, 2> ownNames{};
    std::array<int, 2> ownRequests{};
    std::array<double, 2> loudness{};
    double seconds = 0;
    const auto all = voices();
    for (const QString &name : names) {
        std::array<DecodingRecogniser, 2> recognisers{
            DecodingRecogniser({sphinxKind(QStringLiteral(KELO_POCKETSPHINX))}),
            DecodingRecogniser({sphinxKind(QStringLiteral(KELO_POCKETSPHINX))})};
        const TaughtModel model = recognisers[0].teacher()(
            WakeTraining::of(name), SpeechModelFiles::of(folder_.path(), name), {});
        EchoCanceller canceller;
        const auto bothWays = [&](const Samples &call) {
            const Samples played = assistant(call.size());
            Samples heard = echoOf(played);
            const double own = levelOf(heard);
            const double theirs = levelOf(call);
            for (std::size_t i = 0; i < heard.size(); ++i) {
                const double with = heard[i] + (theirs > 0 ? call[i] * own / theirs : 0);
                heard[i] = static_cast<qint16>(std::clamp(with, -32768.0, 32767.0));
            }
            constexpr std::size_t piece = 320; // as both come in use
            Samples cleaned;
            for (std::size_t at = 0; at < heard.size(); at += piece) {
                const auto part = [&](const Samples &whole) {
                    const auto from = whole.begin() + static_cast<std::ptrdiff_t>(at);
                    return Samples(from,
                        from + static_cast<std::ptrdiff_t>(std::min(piece, whole.size() - at)));
                };
                canceller.play(part(played));
                const Samples some = canceller.hear(part(heard));
                cleaned.insert(cleaned.end(), some.begin(), some.end());
            }
            return std::array{heard, cleaned};
        };
        for (int k = 0; k < calls; ++k) {
            for (qsizetype v = 0; v < all.size(); ++v) {
                const QString &request = requests()[(v + 3 * k) % requests().size()];
                const auto speech = spoken(all[v], "Hey "_L1 + name + ", "_L1 + request);
                if (!speech)
                    continue;
                const auto alone = bothWays(Samples(speech->size() + 24000));
                const auto called = bothWays(inRoom(*speech, {}, random_));
                seconds += secondsOf(alone[0]);
                for (std::size_t way = 0; way < 2; ++way) {
                    if (listed_)
                        std::printf("%s, way %zu: %s\n", qPrintable(all[v].title()), way,
                            qPrintable(request));
                    const Heard own = heard(recognisers[way], model, alone[way]);
                    ownNames[way] += own.name;
                    ownRequests[way] += own.request.has_value();
                    loudness[way] += levelOf(alone[way]);
                    const Heard result = heard(recognisers[way], model, called[way]);
                    named[way].add(result.name);
                    understood[way].add(
                        result.name && result.request && result.request == requestIn(request));
                }
            }
        }
    }
    std::printf("over the assistant's own speech   as it is      cancelled\n"
                "name, %%                    %14s %14s\nrequest, %%                 %14s %14s\n",
        qPrintable(named[0].withInterval()), qPrintable(named[1].withInterval()),
        qPrintable(understood[0].withInterval()), qPrintable(understood[1].withInterval()));
    std::printf("in %.0f minutes of it alone: names %d, %d; requests %d, %d; %.1f dB taken away\n",
        seconds / 60, ownNames[0], ownNames[1], ownRequests[0], ownRequests[1],
        20 * std::log10(loudness[0] / loudness[1]));
}

void Bench::print() const
{
    for (const bool requested : {false, true}) {
        std::printf("\n%-32s %14s %14s %14s\n", requested ? "request, %" : "name, %", "clean",
            "20 dB", "10 dB");
        for (auto row = outcomes_.begin(); row != outcomes_.end(); ++row) {
            const auto &tallies = requested ? row->request : row->name;
            std::printf("%-32s", qPrintable(row.key()));
            for (const Tally &tally : tallies)
                std::printf(" %14s", qPrintable(tally.withInterval()));
            std::printf("\n");
        }
    }
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QStringList some = arguments.sliced(std::min<qsizetype>(3, arguments.size()));
    const QString order = arguments.value(1, u"steady"_s);
    const int calls = arguments.value(2, u"40"_s).toInt();
    Bench bench;
    if (order == u"talk"_s) {
        bench.talk(calls, some.isEmpty() ? names() : some);
        return 0;
    }
    if (order == u"over"_s) {
        bench.over(calls, some.isEmpty() ? names() : some);
        return 0;
    }
    bench.run(order, calls, some.isEmpty() ? names() : some);
    bench.print();
    return 0;
}
