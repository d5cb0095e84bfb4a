#include "voice/sphinx_recogniser.h"

#include "voice/sphinx_decoder.h"
#include "voice/steady_words.h"
#include "voice/taught_name.h"

#include <QFileInfo>
#include <QLoggingCategory>

#include <chrono>

using namespace Qt::StringLiterals;

Q_DECLARE_LOGGING_CATEGORY(voiceLog)

namespace kelo {

namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr auto decoderKept = 60s; // without a session
constexpr auto carriedOver = 1s; // sound after a final result, to the next session

// Seconds of sound.
constexpr double partialsEvery = 0.1;
constexpr double dropsWorthLogging = 0.5;
constexpr double longestUtterance = 30; // the library gives up the process on far longer ones

const RecogniserError notLoaded{u"kelo.sphinx"_s, 1, u"the speech model could not be loaded"_s};
/// The code that every user of recognisers knows for it.
const RecogniserError nothingSaid{u"kAFAssistantErrorDomain"_s, 1110, u"no speech was heard"_s};

} // namespace

/// Where tasks leave their sound and the worker picks it up.
struct SphinxRecogniser::Desk {
    std::mutex mutex;
    std::condition_variable changed;
    std::shared_ptr<Task> newest; ///< the one to work on
    bool closed = false;
};

/// All fields but the first three are guarded by the desk's mutex.
class SphinxRecogniser::Task final : public RecognitionTask {
public:
    Task(std::shared_ptr<Desk> sharedDesk, RecognitionRequest wanted, Handler told)
        : desk(std::move(sharedDesk))
        , request(std::move(wanted))
        , handler(std::move(told))
        , sound(request.live)
    {
    }

    void append(const AudioBuffer &buffer) override
    {
        if (buffer.format.rate != static_cast<int>(sampleRate))
            return; // microphones are asked for this rate; no other can be recognised
        Samples samples = monoOf(buffer);
        const std::lock_guard lock(desk->mutex);
        if (cancelled || audioEnded)
            return;
        appended = Clock::now();
        dropped += sound.push(std::move(samples));
        if (dropped >= dropsWorthLogging && !finished)
            qCWarning(voiceLog) << "recognition falls behind:" << std::exchange(dropped, 0)
                                << "s of sound dropped";
        desk->changed.notify_one();
    }

    void endAudio() override
    {
        const std::lock_guard lock(desk->mutex);
        audioEnded = true;
        desk->changed.notify_one();
    }

    void cancel() override
    {
        const std::lock_guard lock(desk->mutex);
        cancelled = true;
        if (desk->newest.get() == this && !finished)
            desk->newest.reset();
        desk->changed.notify_one();
    }

    const std::shared_ptr<Desk> desk;
    const RecognitionRequest request;
    const Handler handler;
    SoundQueue sound;
    double dropped = 0; ///< seconds, not logged yet
    Clock::time_point appended;
    bool audioEnded = false;
    bool cancelled = false;
    bool finished = false; ///< it has had its last result
};

/// The worker's side of a task: one utterance.
class SphinxRecogniser::Session {
public:
    Session(SphinxDecoder &decoder, std::shared_ptr<Task> task)
        : decoder_(decoder)
        , task_(std::move(task))
        , name_(task_->request.taught ? task_->request.taught->name : QString())
        , token_(nameToken(name_))
        , steady_(token_)
    {
        if (!decoder_.expect(task_->request.taught, task_->request.contextualStrings))
            qCWarning(voiceLog) << "the files of the taught name are damaged; listening without";
        decoder_.begin();
    }

    ~Session()
    {
        if (!ended_)
            decoder_.end();
    }
    Q_DISABLE_COPY_MOVE(Session)

    [[nodiscard]] const std::shared_ptr<Task> &task() const { return task_; }
    [[nodiscard]] bool hasEnded() const { return ended_; }

    /// Takes sound that passed the gate.
    void hear(const Samples &samples)
    {
        const bool goesOn = decoder_.process(samples);
        heard_ += secondsOf(samples);
        if (!goesOn || heard_ > longestUtterance) {
            conclude();
        } else if (heard_ - asked_ >= partialsEvery) {
            asked_ = heard_;
            const QStringList &shown = steady_.update(decoder_.words(), heard_);
            if (shown != lastShown_ && !shown.isEmpty())
                tell(Transcript{written(words_ + shown), false}, std::nullopt);
            lastShown_ = shown;
        }
    }

    /// There is no more sound.
    void finish()
    {
        decoder_.end();
        words_ += decoder_.words();
        close();
        if (words_.isEmpty())
            tell(std::nullopt, nothingSaid);
        else
            tell(Transcript{written(words_), true}, std::nullopt);
    }

private:
    /// Ends the utterance. A noise without words is no result: listening goes on. A recording is
    /// heard to its end.
    void conclude()
    {
        decoder_.end();
        words_ += decoder_.words();
        if (!words_.isEmpty() && task_->request.live) {
            close();
            tell(Transcript{written(words_), true}, std::nullopt);
            return;
        }
        heard_ = asked_ = 0;
        steady_ = SteadyWords(token_);
        lastShown_.clear();
        decoder_.begin();
    }

    void close()
    {
        ended_ = true;
        const std::lock_guard lock(task_->desk->mutex);
        task_->finished = true;
    }

    void tell(const std::optional<Transcript> &transcript,
        const std::optional<RecogniserError> &error) const
    {
        {
            const std::lock_guard lock(task_->desk->mutex);
            if (task_->cancelled)
                return;
        }
        task_->handler(transcript, error);
    }

    /// The name as the user writes it, the other words as the decoder does.
    [[nodiscard]] QString written(QStringList words) const
    {
        if (!token_.isEmpty()) {
            for (QString &word : words)
                word = word == token_ ? name_ : word;
        }
        return words.join(u' ');
    }

    SphinxDecoder &decoder_;
    std::shared_ptr<Task> task_;
    QString name_;
    QString token_;
    SteadyWords steady_;
    QStringList lastShown_;
    QStringList words_; // of ended utterances
    double heard_ = 0; // seconds of sound in this utterance
    double asked_ = 0; // when its words were last asked for
    bool ended_ = false;
};

SphinxRecogniser::SphinxRecogniser(QString directory)
    : directory_(std::move(directory))
    , available_(QFileInfo::exists(SphinxDecoder::dictionaryIn(directory_)))
    , desk_(std::make_shared<Desk>())
    , worker_([this] { work(); })
{
}

SphinxRecogniser::~SphinxRecogniser()
{
    {
        const std::lock_guard lock(desk_->mutex);
        desk_->closed = true;
        desk_->newest.reset(); // which holds the desk
        desk_->changed.notify_one();
    }
    worker_.join();
}

std::shared_ptr<RecognitionTask> SphinxRecogniser::start(
    const RecognitionRequest &request, RecognitionTask::Handler handler)
{
    auto task = std::make_shared<Task>(desk_, request, std::move(handler));
    const std::lock_guard lock(desk_->mutex);
    const auto before = std::exchange(desk_->newest, task);
    if (before && before->finished && Clock::now() - before->appended < carriedOver)
        std::swap(task->sound, before->sound);
    desk_->changed.notify_one();
    return task;
}

TaughtModel SphinxRecogniser::teach(const WakeTraining &training, const SpeechModelFiles &files)
{
    return prepareTaughtModel(training, files, SphinxDecoder::dictionaryIn(directory_));
}

/// The worker's thread.
void SphinxRecogniser::work()
{
    std::unique_ptr<SphinxDecoder> decoder;
    std::unique_ptr<Session> session;
    LevelGate gate;
    while (true) {
        std::shared_ptr<Task> task;
        std::optional<Samples> samples;
        {
            std::unique_lock lock(desk_->mutex);
            const auto due = [&] {
                const auto &newest = desk_->newest;
                if (desk_->closed || !newest || newest->finished)
                    return desk_->closed || (session && session->task() != newest);
                return !session || session->task() != newest || !newest->sound.empty()
                    || newest->audioEnded;
            };
            if (!desk_->changed.wait_for(lock, decoderKept, due)) {
                const bool idle = !desk_->newest || desk_->newest->finished;
                lock.unlock();
                if (idle) {
                    session.reset();
                    decoder.reset();
                }
                continue;
            }
            if (desk_->closed)
                return;
            task = desk_->newest;
            if (task && !task->finished && session && session->task() == task)
                samples = task->sound.pop();
        }
        if (session && session->task() != task)
            session.reset();
        if (!task || task->finished)
            continue;
        if (!session) {
            if (!decoder)
                decoder = SphinxDecoder::load(directory_);
            if (!decoder) {
                available_ = false;
                {
                    const std::lock_guard lock(desk_->mutex);
                    task->finished = true;
                }
                task->handler(std::nullopt, notLoaded);
                continue;
            }
            session = std::make_unique<Session>(*decoder, task);
        } else if (samples) {
            const Samples passed = task->request.live ? gate.pass(std::move(*samples)) : *samples;
            if (!passed.empty())
                session->hear(passed);
        } else {
            session->finish();
        }
    }
}

} // namespace kelo
