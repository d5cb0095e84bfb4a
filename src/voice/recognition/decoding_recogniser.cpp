#include "voice/recognition/decoding_recogniser.h"

#include "voice/recognition/decoding_session.h"
#include "voice/recognition/level_gate.h"

#include <atomic>
#include <future>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

using namespace std::chrono_literals;

constexpr auto decoderKept = 60s; // without a session
constexpr auto carriedOver = 1s; // sound after a final result, to the next session
constexpr auto farewell = 200ms; // reading the models takes longer, and cannot be interrupted

const RecogniserError notLoaded{u"kelo.recogniser"_s, 1, u"the speech model could not be loaded"_s};

} // namespace

/// What the thread works with; it may outlive the recogniser.
struct DecodingRecogniser::Worker {
    explicit Worker(std::vector<DecoderKind> wanted)
        : kinds(std::move(wanted))
    {
        std::erase_if(kinds, [](const DecoderKind &kind) { return !kind.available; });
    }

    void run();

    /// That is in use, null when none is left. From any thread.
    [[nodiscard]] const DecoderKind *kind() const
    {
        const std::size_t now = current;
        return now < kinds.size() ? &kinds[now] : nullptr;
    }

    std::vector<DecoderKind> kinds;
    std::atomic<std::size_t> current = 0;
    DecodingMailbox &mailbox() const { return *shared; }
    const std::shared_ptr<DecodingMailbox> shared = std::make_shared<DecodingMailbox>();
    std::promise<void> ended;

private:
    enum class Wake { Closed, Idle, Work };

    Wake wait(std::unique_lock<std::mutex> &lock) const;
    void begin(const std::shared_ptr<DecodingTask> &task);

    // On the thread.
    std::unique_ptr<SpeechDecoder> decoder_;
    std::unique_ptr<DecodingSession> session_;
    LevelGate gate_;
    SoundCleaner cleaner_;
};

DecodingRecogniser::DecodingRecogniser(std::vector<DecoderKind> kinds)
    : worker_(std::make_shared<Worker>(std::move(kinds)))
    , thread_([worker = worker_] {
        worker->run();
        worker->ended.set_value();
    })
{
}

DecodingRecogniser::~DecodingRecogniser()
{
    DecodingMailbox &mailbox = worker_->mailbox();
    std::shared_ptr<DecodingTask> last;
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

QString DecodingRecogniser::name() const
{
    const DecoderKind *kind = worker_->kind();
    return kind ? kind->name : QString();
}

bool DecodingRecogniser::isAvailable() const
{
    return worker_->kind();
}

std::shared_ptr<RecognitionTask> DecodingRecogniser::start(
    const RecognitionRequest &request, RecognitionTask::Handler handler)
{
    DecodingMailbox &mailbox = worker_->mailbox();
    auto task = std::make_shared<DecodingTask>(worker_->shared, request, std::move(handler));
    const std::lock_guard lock(mailbox.mutex);
    const auto before = std::exchange(mailbox.newest, task);
    if (before && !before->finished)
        before->abandon();
    else if (before && before->request.live && request.live
        && DecodingTask::Clock::now() - before->appended < carriedOver)
        std::swap(task->sound, before->sound);
    mailbox.changed.notify_one();
    return task;
}

Teacher DecodingRecogniser::teacher() const
{
    const DecoderKind *kind = worker_->kind();
    return kind ? kind->teacher : nullptr;
}

// ---- on the worker's thread ----

DecodingRecogniser::Worker::Wake DecodingRecogniser::Worker::wait(
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

void DecodingRecogniser::Worker::run()
{
    while (true) {
        std::shared_ptr<DecodingTask> task;
        std::optional<Samples> samples;
        bool audioEnded = false;
        {
            std::unique_lock lock(shared->mutex);
            if (const Wake wake = wait(lock); wake != Wake::Work) {
                lock.unlock();
                session_.reset();
                decoder_.reset();
                if (wake == Wake::Closed)
                    return;
                continue;
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

void DecodingRecogniser::Worker::begin(const std::shared_ptr<DecodingTask> &task)
{
    const std::stop_token closing = shared->closing.get_token();
    while (!decoder_ && kind()) {
        decoder_ = kind()->load(closing);
        if (decoder_)
            task->log("recognising with "_L1 + kind()->name);
        else if (closing.stop_requested())
            return;
        else
            task->warn(kind()->name + ": the model could not be loaded"_L1);
        current += decoder_ ? 0 : 1;
    }
    if (decoder_) {
        session_ = std::make_unique<DecodingSession>(*decoder_, cleaner_, task);
        return;
    }
    task->finish();
    task->tell(std::nullopt, notLoaded);
}

} // namespace kelo
