// How well calls are heard, voice by voice: the name, and what is asked for after it.
//   voice_calls_bench [steady|alternating|first] [CALLS] [NAME...]
// prints two tables, voice by room, in per cent with the 95 % confidence interval of each row's
// sum. CALLS is per voice and room, 40 unless given. "steady" hears one room after the other, as in
// use; in "alternating" every call is in another room; in "first" every call is a recogniser's
// first. The voices are espeak-ng's, and flite's and festival's where those are installed. Those
// marked with "*" are for choosing by, the others for telling how it came out.

#include "voice/name/taught_name.h"
#include "voice/name/wake_training.h"
#include "voice/recognition/sphinx_recogniser.h"
#include "voice/wake_lab/recording.h"
#include "voice/wake_lab/speech_sample.h"
#include "voice_corpus.h"

#include <QCoreApplication>
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

const QStringList &requests()
{
    static const QStringList list =
        u"what time is it|play some music|stop|metronome at ninety|song menu|ear training|louder|"
        "play the minuet in g|go home|what can I say|repeat"_s.split(u'|');
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
    void print() const;

private:
    void call(SphinxRecogniser &recogniser, const TaughtModel &model, const Voice &voice,
        const QString &request, std::size_t room);

    QTemporaryDir folder_;
    std::mt19937 random_{20};
    QMap<QString, Outcome> outcomes_;
};

void Bench::call(SphinxRecogniser &recogniser, const TaughtModel &model, const Voice &voice,
    const QString &request, std::size_t room)
{
    const QString file = folder_.filePath(u"call.wav"_s);
    const auto speech = voice.speak("Hey "_L1 + model.name + ", "_L1 + request, file)
        ? readSpeech(file)
        : std::nullopt;
    if (!speech)
        return;
    const QString heard = recognised(recogniser, model, inRoom(*speech, rooms[room], random_));
    const QStringList words = tokensOf(heard, model.name);
    const qsizetype place = words.lastIndexOf(nameToken(model.name));
    const bool understood = words.sliced(place + 1) == tokensOf(request, model.name);
    for (const QString &row :
        {voice.title(), u"all"_s, voice.forChoosing ? u"all *"_s : u"all others"_s})
        outcomes_[row].add(room, place >= 0, understood);
}

void Bench::run(const QString &order, int calls, const QStringList &names)
{
    const auto all = voices();
    for (qsizetype n = 0; n < names.size(); ++n) {
        auto recogniser = std::make_unique<SphinxRecogniser>(QStringLiteral(KELO_POCKETSPHINX));
        const TaughtModel model = recogniser->teacher()(
            WakeTraining::of(names[n]), SpeechModelFiles::of(folder_.path(), names[n]), {});
        const auto hear = [&](std::size_t room, int k) {
            for (qsizetype v = 0; v < all.size(); ++v) {
                if (order == u"first"_s)
                    recogniser =
                        std::make_unique<SphinxRecogniser>(QStringLiteral(KELO_POCKETSPHINX));
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
    Bench bench;
    bench.run(arguments.value(1, u"steady"_s), arguments.value(2, u"40"_s).toInt(),
        some.isEmpty() ? names() : some);
    bench.print();
    return 0;
}
