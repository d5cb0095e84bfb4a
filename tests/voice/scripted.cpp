#include "voice/scripted.h"

#include <QThread>

using namespace Qt::StringLiterals;

namespace kelo::test {

QFuture<bool> ScriptedPermissions::answer(bool allowed) const
{
    if (!fromAnotherThread)
        return QtFuture::makeReadyFuture(allowed);
    auto promise = std::make_shared<QPromise<bool>>();
    promise->start();
    auto *thread = QThread::create([promise, allowed] {
        promise->addResult(allowed);
        promise->finish();
    });
    QObject::connect(thread, &QThread::finished, thread, &QObject::deleteLater);
    thread->start();
    return promise->future();
}

Microphone::Opening ScriptedMicrophone::open(const MicrophoneDevice &device, Sink sink)
{
    if (opening != Opening::Started)
        return opening;
    *events << "open "_L1 + device.id;
    openDevice = device.id;
    sink_ = std::move(sink);
    return Opening::Started;
}

void ScriptedMicrophone::close()
{
    if (isOpen())
        *events << u"close"_s;
    openDevice.clear();
}

void ScriptedMicrophone::pull()
{
    devices.clear();
    openDevice.clear();
    Q_EMIT lost();
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
    void endAudio() override { note(u"end"_s); }
    void cancel() override { note(u"cancel"_s); }

private:
    void note(const QString &what)
    {
        *recogniser_.events << what + u' ' + QString::number(number_);
    }

    ScriptedRecogniser &recogniser_;
    std::size_t number_;
};

} // namespace

std::shared_ptr<RecognitionTask> ScriptedRecogniser::start(
    const RecognitionRequest &request, RecognitionTask::Handler handler)
{
    *events << u"start "_s + QString::number(handlers.size());
    buffers = 0;
    requests.append(request);
    handlers.push_back(std::move(handler));
    return std::make_shared<ScriptedTask>(*this, handlers.size() - 1);
}

TaughtModel ScriptedRecogniser::teach(const WakeTraining &training, const SpeechModelFiles &files)
{
    ++taughtNames;
    if (!teachingFails.isEmpty())
        throw std::runtime_error(teachingFails.toStdString());
    return {training.name, files.languageModel, files.vocabulary, {}};
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
    microphone->events = recogniser->events = &events;
    voice = std::make_unique<VoiceControl>(VoiceSetup{&link.link(),
        [this](const QString &line) {
            if (!line.endsWith(u'\n') || line.count(u'\n') != 1)
                qFatal("not one line: %s", qPrintable(line));
            sent_.append(line.chopped(1));
        },
        std::move(allowed), std::move(ear), std::move(listener),
        std::make_unique<QSettings>(link.settingsFile, QSettings::IniFormat), link.dataDir,
        link.time});
}

QStringList VoiceFixture::logged()
{
    QStringList lines = QString::fromUtf8(link.read(u"voice-log.txt"_s).sliced(logRead_))
                            .split(u'\n', Qt::SkipEmptyParts);
    logRead_ = link.read(u"voice-log.txt"_s).size();
    for (QString &line : lines)
        line.remove(0, 10); // the time of day and two spaces
    return lines;
}

} // namespace kelo::test
