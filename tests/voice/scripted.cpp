#include "voice/scripted.h"

#include <stdexcept>
#include <thread>

using namespace Qt::StringLiterals;

namespace kelo::test {

QFuture<bool> ScriptedPermissions::answer(bool allowed) const
{
    if (!fromAnotherThread)
        return QtFuture::makeReadyFuture(allowed);
    auto promise = std::make_shared<QPromise<bool>>();
    promise->start();
    std::thread([promise, allowed] {
        promise->addResult(allowed);
        promise->finish();
    }).detach();
    return promise->future();
}

QFuture<QList<MicrophoneDevice>> ScriptedMicrophone::discover()
{
    ++searches;
    return QtFuture::makeReadyFuture(devices);
}

QFuture<Microphone::Opening> ScriptedMicrophone::open(const MicrophoneDevice &device, Sink sink)
{
    events->append("open "_L1 + device.id);
    sink_ = std::move(sink);
    return QtFuture::makeReadyFuture(opening);
}

void ScriptedMicrophone::close()
{
    events->append(u"close"_s);
}

namespace {

class ScriptedTask final : public RecognitionTask {
public:
    ScriptedTask(ScriptedRecogniser &recogniser, std::size_t number)
        : recogniser_(recogniser)
        , number_(number)
    {
    }
    void append(const AudioBuffer & /*buffer*/) override { ++recogniser_.buffers; }
    void endAudio() override
    {
        note(u"end"_s);
        if (!recogniser_.answers.isEmpty())
            recogniser_.handlers[number_](
                Transcript{recogniser_.answers.takeFirst(), true}, std::nullopt);
    }
    void cancel() override { note(u"cancel"_s); }

private:
    void note(const QString &what)
    {
        recogniser_.events->append(what + u' ' + QString::number(number_));
    }

    ScriptedRecogniser &recogniser_;
    std::size_t number_;
};

} // namespace

std::shared_ptr<RecognitionTask> ScriptedRecogniser::start(
    const RecognitionRequest &request, RecognitionTask::Handler handler)
{
    events->append(u"start "_s + QString::number(handlers.size()));
    if (requests.isEmpty() || request.contextualStrings != requests.last().contextualStrings)
        events->append("expect "_L1 + request.contextualStrings.join(u'|'));
    if (request.taught)
        events->append("taught "_L1 + request.taught->name);
    buffers = 0;
    requests.append(request);
    handlers.push_back(std::move(handler));
    return std::make_shared<ScriptedTask>(*this, handlers.size() - 1);
}

Teacher ScriptedRecogniser::teacher() const
{
    if (!teachable)
        return nullptr;
    return [self = const_cast<ScriptedRecogniser *>(this)](
               const WakeTraining &training, const SpeechModelFiles &files, const auto &) {
        ++self->taughtNames;
        if (!self->teachingFails.isEmpty())
            throw std::runtime_error(self->teachingFails.toStdString());
        return TaughtModel{training.name, files.languageModel, files.vocabulary, {}};
    };
}

VoiceFixture::VoiceFixture()
{
    link.write(u"voice-log.txt"_s, {});
    auto allowed = std::make_unique<ScriptedPermissions>();
    auto ear = std::make_unique<ScriptedMicrophone>();
    auto listener = std::make_unique<ScriptedRecogniser>();
    permissions = allowed.get();
    microphone = ear.get();
    recogniser = listener.get();
    microphone->events = recogniser->events = &trace_;
    voice = std::make_unique<VoiceControl>(VoiceSetup{&link.link(),
        [this](const QString &line) {
            if (!line.endsWith(u'\n') || line.count(u'\n') != 1)
                qFatal("not one line: %s", qPrintable(line));
            trace_.append(line.chopped(1));
        },
        std::move(allowed), std::move(ear), std::move(listener),
        std::make_unique<QSettings>(link.settingsFile, QSettings::IniFormat), link.dataDir,
        link.time});
    noteChanges();
    trace_.clear();
    for (const auto changed : {&VoiceControl::statusChanged, &VoiceControl::onChanged,
             &VoiceControl::levelChanged, &VoiceControl::microphonesChanged})
        QObject::connect(voice.get(), changed, voice.get(), [this] { noteChanges(); });
}

void VoiceFixture::noteChanges()
{
    const auto note = [this](const QString &what, const QString &value) {
        if (std::exchange(known_[what], value) != value)
            trace_.append(what + u' ' + (value.isEmpty() ? u"-"_s : value));
    };
    note(u"status"_s, voice->status);
    note(u"on"_s, voice->on ? u"true"_s : u"false"_s);
    note(u"level"_s, QString::number(voice->level, 'f', 2));
    note(u"in use"_s, voice->microphoneInUse());
}

QStringList VoiceFixture::trace()
{
    for (const QString &key : {u"voice"_s, u"microphone"_s}) {
        const QString value = link.setting(key).toString();
        if (std::exchange(known_["setting "_L1 + key], value) != value)
            trace_.append("setting "_L1 + key + u' ' + (value.isEmpty() ? u"-"_s : value));
    }
    const QByteArray log = link.read(u"voice-log.txt"_s);
    for (const QString &line : QString::fromUtf8(log.sliced(std::min(logRead_, log.size())))
                                   .split(u'\n', Qt::SkipEmptyParts))
        trace_.append("log "_L1 + line.sliced(10)); // after the time of day and two spaces
    logRead_ = log.size();
    return std::exchange(trace_, {});
}

} // namespace kelo::test
