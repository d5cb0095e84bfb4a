#include "voice/recognition/sphinx_recogniser.h"

#include "voice/name/taught_name.h"
#include "voice/recognition/level_gate.h"
#include "voice/recognition/sphinx_session.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

using namespace std::chrono_literals;

constexpr auto decoderKept = 60s; // without a session
constexpr auto carriedOver = 1s; // sound after a final result, to the next session

const RecogniserError notLoaded{u"kelo.sphinx"_s, 1, u"the speech model could not be loaded"_s};

} // namespace

SphinxRecogniser::SphinxRecogniser(QString directory)
    : directory_(std::move(directory))
    , available_(QFileInfo::exists(SphinxDecoder::dictionaryIn(directory_)))
    , mailbox_(std::make_shared<SphinxMailbox>())
    , worker_([this] { work(); })
{
}

SphinxRecogniser::~SphinxRecogniser()
{
    {
        const std::lock_guard lock(mailbox_->mutex);
        mailbox_->closed = true;
        mailbox_->newest.reset(); // which holds the mailbox
        mailbox_->changed.notify_one();
    }
    worker_.join();
}

std::shared_ptr<RecognitionTask> SphinxRecogniser::start(
    const RecognitionRequest &request, RecognitionTask::Handler handler)
{
    auto task = std::make_shared<SphinxTask>(mailbox_, request, std::move(handler));
    const std::lock_guard lock(mailbox_->mutex);
    const auto before = std::exchange(mailbox_->newest, task);
    if (before && before->finished && SphinxTask::Clock::now() - before->appended < carriedOver)
        std::swap(task->sound, before->sound);
    mailbox_->changed.notify_one();
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
    std::unique_ptr<SphinxSession> session;
    LevelGate gate;
    while (true) {
        std::shared_ptr<SphinxTask> task;
        std::optional<Samples> samples;
        {
            std::unique_lock lock(mailbox_->mutex);
            const auto due = [&] {
                const auto &newest = mailbox_->newest;
                if (mailbox_->closed || !newest || newest->finished)
                    return mailbox_->closed || (session && session->task() != newest);
                return !session || session->task() != newest || !newest->sound.empty()
                    || newest->audioEnded;
            };
            if (!mailbox_->changed.wait_for(lock, decoderKept, due)) {
                const bool idle = !mailbox_->newest || mailbox_->newest->finished;
                lock.unlock();
                if (idle) {
                    session.reset();
                    decoder.reset();
                }
                continue;
            }
            if (mailbox_->closed)
                return;
            task = mailbox_->newest;
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
                    const std::lock_guard lock(mailbox_->mutex);
                    task->finished = true;
                }
                task->handler(std::nullopt, notLoaded);
                continue;
            }
            session = std::make_unique<SphinxSession>(*decoder, task);
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
