#include "voice/wake_lab/wake_lab.h"

#include "voice/capture/permissions.h"
#include "voice/name/wake_training.h"
#include "voice/recognition/recogniser.h"
#include "voice/recognition/wake_model.h"
#include "voice/wake_lab/recording.h"
#include "voice/wake_lab/speech_sample.h"
#include "voice/wake_lab/wake_lab_report.h"

#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <array>
#include <cstdio>
#include <functional>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

using namespace std::chrono_literals;

constexpr std::array wordsPerMinute{140, 175, 210};
constexpr auto teachingPatience = 240s;
constexpr quint32 seed = 1; // every run hears the same noise

/// Sentences without the name, to see whether it is heard in them all the same.
constexpr std::array otherTalk{
    u"I think we should leave before it starts to rain.",
    u"Could you pass me the salt and the yellow plate please.",
    u"She said hello to everyone and closed the door.",
    u"The train to the city is ten minutes late again.",
    u"My brother lost a kilo since he started running.",
    u"We could follow the river until we reach the old mill.",
    u"They are building a new school next to the hospital.",
    u"He plays the left hand far too loud in this passage.",
};

/// As the engine would tell them, and some that are not said here.
QStringList requests()
{
    return {u"what's the weather"_s, u"stop"_s, u"play some music"_s, u"what time is it"_s,
        u"song menu"_s, u"ear training"_s, u"metronome at ninety"_s, u"louder"_s, u"go home"_s,
        u"what can I say"_s, u"play song three"_s, u"slower"_s};
}

QStringList phrasesWith(const QString &name)
{
    const QStringList asked = requests();
    return {"Hey "_L1 + name + ", "_L1 + asked[0], name + u' ' + asked[1],
        "so anyway. "_L1 + name + ", "_L1 + asked[2], "Okay "_L1 + name + ", "_L1 + asked[3]};
}

struct Sample {
    QString phrase;
    QString how; ///< the voice and what else is special
    std::optional<double> noise; ///< decibels below the voice
    Samples sound;
};

/// What ends a run: the last line of its report.
struct Failure {
    QString line;
};

class Lab {
public:
    Lab(QString out, QString name, std::unique_ptr<Recogniser> recogniser)
        : out_(std::move(out))
        , name_(std::move(name))
        , recogniser_(std::move(recogniser))
    {
    }

    void run(bool quick);
    /// Adds a line to the report; throws std::runtime_error when that cannot be written.
    void line(const QString &text);

private:
    [[nodiscard]] std::optional<QString> hindrance() const;
    void makeFolder();
    [[nodiscard]] std::optional<Sample> sample(
        const QString &phrase, const QString &voice, int speed, std::optional<double> noise);
    void speakSamples();
    PassResult pass(const QString &title, const std::optional<TaughtModel> &taught);
    [[nodiscard]] TaughtModel taughtModel();
    void advise(const PassResult &plain, const PassResult &taught, const TaughtModel &model);

    QString out_;
    QString name_;
    std::unique_ptr<Recogniser> recogniser_;
    std::unique_ptr<QTemporaryDir> folder_;
    QStringList lines_;
    std::vector<Sample> samples_;
    std::mt19937 random_{seed};
};

/// Why nothing can be measured, if that is so.
std::optional<QString> Lab::hindrance() const
{
    if (!recogniser_ || !recogniser_->isAvailable())
        return u"there is no recogniser"_s;
    if (!recogniser_->isOnDevice())
        return u"it would not stay on this computer"_s;
    auto allowed = Permissions::ofThisSystem()->speechRecognition();
    allowed.waitForFinished();
    if (!allowed.result())
        return u"permission refused"_s;
    return std::nullopt;
}

/// Every run has a folder of its own, so that two do not take each other's samples away.
void Lab::makeFolder()
{
    const QString all = QDir::tempPath() + "/kelo-wake-lab"_L1;
    QDir().mkpath(all);
    folder_ = std::make_unique<QTemporaryDir>(all + "/XXXXXX"_L1);
    if (!folder_->isValid())
        throw Failure{"no samples could be written: "_L1 + folder_->errorString()};
}

void Lab::run(bool quick)
{
    line("how "_L1 + name_ + " is heard"_L1);
    if (recogniser_)
        line("recogniser: "_L1 + recogniser_->name());
    if (const auto reason = hindrance())
        throw Failure{
            "speech recognition is not allowed or not on-device here ("_L1 + *reason + u')'};
    makeFolder();
    speakSamples();
    if (samples_.empty())
        throw Failure{u"no samples could be spoken: espeak-ng is missing"_s};
    const PassResult plain = pass(u"plain"_s, std::nullopt);
    if (!quick) {
        const TaughtModel model = taughtModel();
        advise(plain, pass(u"taught"_s, model), model);
    }
    line(u"done"_s);
}

std::optional<Sample> Lab::sample(
    const QString &phrase, const QString &voice, int speed, std::optional<double> noise)
{
    const QString file = folder_->filePath(u"sample.wav"_s);
    if (!speakToFile(phrase, voice, speed, file))
        return std::nullopt;
    const auto speech = readSpeech(file);
    if (!speech)
        return std::nullopt;
    QString how = u"%1, %2 words a minute"_s.arg(voice).arg(speed);
    if (noise)
        how += u", noise at %1 dB"_s.arg(*noise);
    return Sample{phrase, how, noise, inRoom(*speech, noise, random_)};
}

/// Every phrase in every voice at every speed; every third with noise. Those of one room follow
/// each other, since nobody's room changes from one sentence to the next.
void Lab::speakSamples()
{
    int number = 0;
    for (const QString &phrase : phrasesWith(name_)) {
        for (const QString &voice : sampleVoices()) {
            for (const int speed : wordsPerMinute) {
                const bool noisy = (number + number / 3) % 3 == 2; // at every speed
                ++number;
                const auto noise = noisy ? std::optional(number % 2 ? 20.0 : 10.0) : std::nullopt;
                if (auto spoken = sample(phrase, voice, speed, noise))
                    samples_.push_back(std::move(*spoken));
            }
        }
    }
    std::ranges::stable_sort(
        samples_, std::greater(), [](const Sample &sample) { return sample.noise.value_or(100); });
}

PassResult Lab::pass(const QString &title, const std::optional<TaughtModel> &taught)
{
    PassResult result;
    for (const Sample &sample : samples_) {
        const QString words =
            recognised(*recogniser_, taught, sample.sound, taught ? requests() : QStringList());
        const bool hit = namesIt(words, name_);
        const bool asked = requestIsIn(words, sample.phrase, name_);
        result.count(sample.phrase, hit, asked);
        line(u"%1%2  [%3%4]"_s.arg(hit ? "ok  "_L1 : "MISS"_L1,
            (hit ? QString() : u" "_s) + (words.isEmpty() ? u"(nothing)"_s : words), sample.how,
            asked ? u""_s : u"; request lost"_s));
        std::printf("%s: %d of %zu\n", qPrintable(title), result.samples(), samples_.size());
        std::fflush(stdout);
    }
    line(u"== %1: the request was written correctly in %2 of %3"_s.arg(title)
             .arg(result.requests())
             .arg(result.samples()));
    line(u"== %1: the name was written correctly in %2 of %3"_s.arg(title)
             .arg(result.hits())
             .arg(result.samples()));
    return result;
}

TaughtModel Lab::taughtModel()
{
    RecognitionRequest request;
    QEventLoop waiting;
    QString outcome;
    WakeModel model(
        recogniser_.get(), folder_->filePath(u"speech-model"_s), [&](const QString &text) {
            outcome = text;
            waiting.quit();
        });
    model.prepare(name_, [] {});
    if (model.isBuilding()) {
        QTimer::singleShot(teachingPatience, &waiting, &QEventLoop::quit);
        waiting.exec();
    }
    model.apply(request, name_);
    if (!request.taught) {
        throw Failure{model.isBuilding() ? u"the taught model was not ready after four minutes"_s
                : outcome.isEmpty()      ? u"this recogniser cannot be taught"_s
                                         : outcome};
    }
    line(outcome);
    return *request.taught;
}

/// What the user can act on.
void Lab::advise(const PassResult &plain, const PassResult &taught, const TaughtModel &model)
{
    int falseNames = 0;
    double seconds = 0;
    QElapsedTimer timer;
    timer.start();
    for (std::size_t i = 0; i < otherTalk.size(); ++i) {
        const QString &voice = sampleVoices()[static_cast<qsizetype>(i) % sampleVoices().size()];
        const auto talk = sample(QString::fromUtf16(otherTalk[i]), voice, wordsPerMinute[1], {});
        if (!talk)
            continue;
        seconds += secondsOf(talk->sound);
        falseNames += namesIt(recognised(*recogniser_, model, talk->sound), name_);
    }
    line(u"== by phrase, plain and taught"_s);
    for (const QString &phrase : phrasesWith(name_))
        line(u"%1 and %2: %3"_s.arg(plain.ofPhrase(phrase), taught.ofPhrase(phrase), phrase));
    line(u"== other talk: the name was heard %1 times in %2 seconds"_s.arg(falseNames)
             .arg(qRound(seconds)));
    line(u"== speed: a second of speech takes %1 seconds"_s.arg(
        static_cast<double>(timer.elapsed()) / 1000 / std::max(seconds, 1.0), 0, 'f', 2));
    line(adviceOn(name_, taught, falseNames, qRound(seconds)));
}

void Lab::line(const QString &text)
{
    lines_.append(text);
    saveWhole(out_, (lines_.join(u'\n') + u'\n').toUtf8());
}

} // namespace

int WakeLab::run(
    const QString &out, const QString &name, bool quick, std::unique_ptr<Recogniser> recogniser)
{
    Lab lab(out, name, std::move(recogniser));
    try {
        try {
            lab.run(quick);
            return 0;
        } catch (const Failure &failure) {
            lab.line(failure.line);
        }
    } catch (const std::runtime_error &error) {
        std::fprintf(stderr, "kelo: cannot write %s: %s\n", qPrintable(out), error.what());
    }
    return 1;
}

} // namespace kelo
