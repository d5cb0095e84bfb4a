#include "voice/recognition/sphinx_recogniser.h"

#include "voice/name/taught_name.h"
#include "voice/recognition/level_gate.h"
#include "voice/recognition/sphinx_session.h"

#include <QFileInfo>

#include <atomic>
#include <future>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

using namespace std::chrono_literals;

constexpr auto decoderKept = 60s; // without a session
constexpr auto carriedOver = 1s; // sound after a final result, to the next session
constexpr auto farewell = 200ms; // reading the models takes longer, and cannot be interrupted

const RecogniserError notLoaded{u"kelo.sphinx"_s, 1, u"the speech model could not be loaded"_s};

} // namespace

/// What the thread works with; it may outlive the recogniser.
struct SphinxRecogniser::Worker {
    explicit Worker(QString modelDirectory)
        : directory(std::move(modelDirectory))
        , available(QFileInfo::exists(SphinxDecoder::dictionaryIn(directory)))
    {
    }

    void run();

    const QString directory;
    std::atomic<bool> available;
    SphinxMailbox &mailbox() const { return *shared; }
    const std::shared_ptr<SphinxMailbox> shared = std::make_shared<SphinxMailbox>();
    std::promise<void> ended;

private:
    enum class Wake { Closed, Idle, Work };

    Wake wait(std::unique_lock<std::mutex> &lock) const;
    void begin(const std::shared_ptr<SphinxTask> &task);

    // On the thread.
    std::unique_ptr<SphinxDecoder> decoder_;
    std::unique_ptr<SphinxSession> session_;
    LevelGate gate_;
};

SphinxRecogniser::SphinxRecogniser(QString directory)
    : worker_(std::make_shared<Worker>(std::move(directory)))
    , thread_([worker = worker_] {
        worker->run();
        worker->ended.set_value();
    })
{
}

SphinxRecogniser::~SphinxRecogniser()
{
    SphinxMailbox &mailbox = worker_->mailbox();
    std::shared_ptr<SphinxTask> last;
    {
        const std::lock_guard lock(mailbox.mutex);
        mailbox.closing.request_stop();
        last = std::exchange(mailbox.newest, nullptr); // which holds the mailbox
        mailbox.changed.notify_one();
    }
    if (last)
        last->abandon();
    if (worker_->ended.get_future().wait_for(farewell) == std::future_status::ready)
        thread_.join();
    else
        thread_.detach();
}

bool SphinxRecogniser::isAvailable() const
{
    return worker_->available;
}

std::shared_ptr<RecognitionTask> SphinxRecogniser::start(
    const RecognitionRequest &request, RecognitionTask::Handler handler)
{
    SphinxMailbox &mailbox = worker_->mailbox();
    auto task = std::make_shared<SphinxTask>(worker_->shared, request, std::move(handler));
    const std::lock_guard lock(mailbox.mutex);
    const auto before = std::exchange(mailbox.newest, task);
    if (before && !before->finished)
        before->abandon();
    else if (before && SphinxTask::Clock::now() - before->appended < carriedOver)
        std::swap(task->sound, before->sound);
    mailbox.changed.notify_one();
    return task;
}

Teacher SphinxRecogniser::teacher() const
{
    if (!isAvailable())
        return nullptr;
    return
        [dictionary = SphinxDecoder::dictionaryIn(worker_->directory)](const WakeTraining &training,
            const SpeechModelFiles &files, const std::stop_token &stop) {
            return prepareTaughtModel(training, files, dictionary, stop);
        };
}

// ---- on the worker's thread ----

SphinxRecogniser::Worker::Wake SphinxRecogniser::Worker::wait(
    std::unique_lock<std::mutex> &lock) const
{
    const auto &newest = shared->newest;
    const bool woken = shared->changed.wait_for(lock, decoderKept, [&] {
        if (shared->closing.stop_requested())
            return true;
        const bool another = session_ && session_->task() != newest;
        if (!newest || newest->finished)
            return another;
        return !session_ || another || !newest->sound.empty() || newest->audioEnded;
    });
    if (shared->closing.stop_requested())
        return Wake::Closed;
    return woken || (newest && !newest->finished) ? Wake::Work : Wake::Idle;
}

void SphinxRecogniser::Worker::run()
{
    while (true) {
        std::shared_ptr<SphinxTask> task;
        std::optional<Samples> samples;
        bool audioEnded = false;
        {
            std::unique_lock lock(shared->mutex);
            switch (wait(lock)) {
            case Wake::Closed:
                lock.unlock();
                session_.reset();
                decoder_.reset();
                return;
            case Wake::Idle:
                lock.unlock();
                session_.reset();
                decoder_.reset();
                continue;
            case Wake::Work:
                break;
            }
            task = shared->newest;
            if (task && !task->finished && session_ && session_->task() == task) {
                samples = task->sound.pop();
                audioEnded = task->audioEnded;
            }
        }
        if (session_ && session_->task() != task)
            session_.reset();
        if (!task || task->finished)
            continue;
        if (!session_) {
            begin(task);
        } else if (samples) {
            const Samples passed = task->request.live ? gate_.pass(std::move(*samples)) : *samples;
            if (!passed.empty())
                session_->hear(passed);
        } else if (audioEnded) {
            session_->finish();
        }
    }
}

void SphinxRecogniser::Worker::begin(const std::shared_ptr<SphinxTask> &task)
{
    const std::stop_token closing = shared->closing.get_token();
    if (!decoder_)
        decoder_ = SphinxDecoder::load(directory, closing);
    if (decoder_) {
        session_ = std::make_unique<SphinxSession>(*decoder_, task);
        return;
    }
    if (closing.stop_requested())
        return;
    available = false;
    task->finish();
    task->tell(std::nullopt, notLoaded);
}

} // namespace kelo
