#include "voice/recognition/wake_model.h"

#include "voice/name/wake_training.h"

#include <QDir>
#include <QLoggingCategory>

#include <stdexcept>
#include <utility>

using namespace Qt::StringLiterals;

Q_DECLARE_LOGGING_CATEGORY(voiceLog)

namespace kelo {

WakeModel::WakeModel(Recogniser *recogniser, QString folder,
    std::function<void(const QString &)> log, QObject *parent)
    : QObject(parent)
    , recogniser_(recogniser)
    , folder_(std::move(folder))
    , log_(std::move(log))
{
    background_.setMaxThreadCount(1);
    background_.setExpiryTimeout(100); // it is needed once a name
}

WakeModel::~WakeModel()
{
    stop_.request_stop();
    background_.waitForDone();
}

void WakeModel::prepare(const QString &name, std::function<void()> then)
{
    Teacher teach = recogniser_ ? recogniser_->teacher() : nullptr;
    if (!teach || building_ || builtFor_ == name)
        return;
    building_ = true;
    QDir().mkpath(folder_);
    background_.start([this, name, teach = std::move(teach), then = std::move(then)] {
        build(name, teach, then);
    });
}

void WakeModel::build(const QString &name, const Teacher &teach, const std::function<void()> &then)
{
    std::function<void()> outcome;
    try {
        const WakeTraining training = WakeTraining::of(name);
        const SpeechModelFiles files = SpeechModelFiles::of(folder_, name);
        saveWhole(files.trainingData, training.exported());
        outcome = [this, name, then, model = teach(training, files, stop_.get_token())] {
            ready_ = model;
            builtFor_ = name;
            building_ = false;
            lastFailure_.clear();
            log_(u"the recogniser has been taught the name"_s);
            then();
        };
    } catch (const std::exception &error) {
        outcome = [this, name, reason = QString::fromUtf8(error.what())] {
            building_ = false;
            // It is tried again and again; once is enough to say so.
            if (std::exchange(lastFailure_, name + reason) != name + reason) {
                qCWarning(voiceLog) << "the name could not be taught:" << reason;
                log_(u"the name could not be taught to the recogniser: "_s + reason);
            }
        };
    }
    QMetaObject::invokeMethod(this, std::move(outcome), Qt::QueuedConnection);
}

void WakeModel::apply(RecognitionRequest &request, const QString &name) const
{
    if (builtFor_ == name)
        request.taught = ready_;
}

} // namespace kelo
