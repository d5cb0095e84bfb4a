#include "voice/wake_lab/wake_lab.h"

#include "voice/capture/permissions.h"
#include "voice/name/wake_model.h"
#include "voice/recognition/recogniser.h"
#include "voice/wake_lab/recording.h"
#include "voice/wake_lab/speech_sample.h"
#include "voice/wake_lab/wake_lab_report.h"

#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QSaveFile>
#include <QTimer>

#include <array>

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

QStringList phrasesWith(const QString &name)
{
    return {"Hey "_L1 + name + ", what's the weather"_L1, name + " stop"_L1,
        "so anyway. "_L1 + name + ", play some music"_L1,
        "Okay "_L1 + name + ", what time is it"_L1};
}

struct Sample {
    QString phrase;
    QString how; ///< the voice and what else is special
    Samples sound;
};

class Lab {
public:
    Lab(QString out, QString name)
        : out_(std::move(out))
        , name_(std::move(name))
        , folder_(QDir::tempPath() + "/kelo-wake-lab"_L1)
    {
    }

    void run(bool quick);

private:
    bool save() const;
    void line(const QString &text) { lines_.append(text); }
    [[nodiscard]] std::optional<QString> hindrance() const;
    [[nodiscard]] std::optional<Sample> sample(
        const QString &phrase, const QString &voice, int speed, std::optional<double> noise);
    void speakSamples();
    PassResult pass(const QString &title, const std::optional<TaughtModel> &taught);
    [[nodiscard]] std::optional<TaughtModel> taughtModel();
    void advise(const PassResult &plain, const PassResult &taught, const TaughtModel &model);

    QString out_;
    QString name_;
    QString folder_;
    QStringList lines_;
    std::unique_ptr<Recogniser> recogniser_ = Recogniser::ofThisSystem();
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

void Lab::run(bool quick)
{
    QDir().mkpath(folder_);
    if (const auto reason = hindrance()) {
        line("speech recognition is not allowed or not on-device here ("_L1 + *reason + u')');
        save();
        return;
    }
    speakSamples();
    if (samples_.empty()) {
        line(u"no samples could be spoken: espeak-ng is missing"_s);
        save();
        return;
    }
    const PassResult plain = pass(u"plain"_s, std::nullopt);
    save();
    if (!quick) {
        const auto model = taughtModel();
        if (!model) {
            line(u"the taught model was not ready after four minutes"_s);
            save();
            return;
        }
        const PassResult taught = pass(u"taught"_s, model);
        save();
        advise(plain, taught, *model);
    }
    line(u"done"_s);
    save();
}

std::optional<Sample> Lab::sample(
    const QString &phrase, const QString &voice, int speed, std::optional<double> noise)
{
    const QString file = folder_ + "/sample.wav"_L1;
    if (!speakToFile(phrase, voice, speed, file))
        return std::nullopt;
    const auto speech = readSpeech(file);
    if (!speech)
        return std::nullopt;
    QString how = u"%1, %2 words a minute"_s.arg(voice).arg(speed);
    if (noise)
        how += u", noise at %1 dB"_s.arg(*noise);
    return Sample{phrase, how, inRoom(*speech, noise, random_)};
}

/// Every phrase in every voice at every speed; every third with noise.
void Lab::speakSamples()
{
    int number = 0;
    for (const QString &phrase : phrasesWith(name_)) {
        for (const QString &voice : sampleVoices()) {
            for (const int speed : wordsPerMinute) {
                const bool noisy = number++ % 3 == 2;
                const auto noise = noisy ? std::optional(number % 2 ? 20.0 : 10.0) : std::nullopt;
                if (auto spoken = sample(phrase, voice, speed, noise))
                    samples_.push_back(std::move(*spoken));
            }
        }
    }
}

PassResult Lab::pass(const QString &title, const std::optional<TaughtModel> &taught)
{
    PassResult result;
    for (const Sample &sample : samples_) {
        const QString words = recognised(*recogniser_, taught, sample.sound);
        const bool hit = namesIt(words, name_);
        result.count(sample.phrase, hit);
        line(u"%1%2  [%3]"_s.arg(hit ? "ok  "_L1 : "MISS"_L1,
            (hit ? QString() : u" "_s) + (words.isEmpty() ? u"(nothing)"_s : words), sample.how));
    }
    line(u"== %1: the name was written correctly in %2 of %3"_s.arg(title)
             .arg(result.hits())
             .arg(result.samples()));
    return result;
}

std::optional<TaughtModel> Lab::taughtModel()
{
    RecognitionRequest request;
    QEventLoop waiting;
    WakeModel model(recogniser_.get(), folder_ + "/speech-model"_L1, [&](const QString &text) {
        line(text);
        waiting.quit();
    });
    QTimer::singleShot(teachingPatience, &waiting, &QEventLoop::quit);
    model.prepare(name_, [] {});
    waiting.exec();
    model.apply(request, name_);
    return request.taught;
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
    line(adviceOn(name_, taught, falseNames));
}

bool Lab::save() const
{
    QSaveFile file(out_);
    return file.open(QIODevice::WriteOnly) && file.write((lines_.join(u'\n') + u'\n').toUtf8()) >= 0
        && file.commit();
}

} // namespace

int WakeLab::run(const QString &out, const QString &name, bool quick)
{
    Lab(out, name).run(quick);
    return 0;
}

} // namespace kelo
