#include "voice/capture/qt_microphone.h"

#include <QAudioDevice>
#include <QAudioFormat>
#include <QAudioSource>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QMediaDevices>
#include <QPromise>
#include <QTimer>

#include <algorithm>
#include <mutex>
#include <utility>

namespace kelo {

namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

constexpr auto lookEvery = 500ms;
constexpr auto farewell = 250ms;
constexpr qint64 silentFor = 1500; // milliseconds without a buffer

QAudioFormat speechFormat(const QAudioDevice &device)
{
    QAudioFormat format;
    format.setSampleRate(16000);
    format.setChannelCount(1);
    format.setSampleFormat(QAudioFormat::Int16);
    return device.isFormatSupported(format) ? format : device.preferredFormat();
}

AudioFormat::Sample sampleOf(QAudioFormat::SampleFormat format)
{
    switch (format) {
    case QAudioFormat::Float:
        return AudioFormat::Sample::Float32;
    case QAudioFormat::Int16:
        return AudioFormat::Sample::Int16;
    case QAudioFormat::Int32:
        return AudioFormat::Sample::Int32;
    default:
        return AudioFormat::Sample::Other;
    }
}

/// What an output plays comes as an input too, on some systems.
bool isMonitor(const QAudioDevice &device)
{
    return device.id().endsWith(".monitor");
}

QList<MicrophoneDevice> devicesNow()
{
    QList<MicrophoneDevice> devices;
    for (const QAudioDevice &device : QMediaDevices::audioInputs()) {
        if (!isMonitor(device)) {
            devices.append({QString::fromUtf8(device.id()), device.description().simplified(),
                false, device.isDefault()});
        }
    }
    return devices;
}

QAudioDevice deviceOf(const QString &id)
{
    const QList<QAudioDevice> devices = QMediaDevices::audioInputs();
    const auto found = std::find_if(devices.begin(), devices.end(),
        [id](const QAudioDevice &device) { return device.id() == id.toUtf8(); });
    return found == devices.end() ? QAudioDevice() : *found;
}

} // namespace

/// Where the sound goes, until it is shut, and who waits for it to come.
struct QtMicrophone::Outlet {
    std::mutex mutex;
    Sink sink;
    std::optional<QPromise<Opening>> opening; ///< until it is answered; on the thread
};

/// One device's sound, on the microphone's thread.
class QtMicrophone::Capture {
public:
    Capture(const QString &id, std::shared_ptr<Outlet> outlet, std::function<void()> ended)
        : id_(id)
        , device_(deviceOf(id))
        , format_(speechFormat(device_))
        , source_(device_, format_)
        , outlet_(std::move(outlet))
        , ended_(std::move(ended))
    {
        input_ = device_.isNull() ? nullptr : source_.start();
        if (input_)
            QObject::connect(input_, &QIODevice::readyRead, &context_, [this] { read(); });
        QObject::connect(&look_, &QTimer::timeout, &context_, [this] { look(); });
        sinceSound_.start();
        look_.start(lookEvery);
    }

private:
    void read()
    {
        sinceSound_.start();
        answer(Opening::Started);
        const AudioBuffer buffer{
            {sampleOf(format_.sampleFormat()), format_.sampleRate(), format_.channelCount()},
            input_->readAll()};
        const std::lock_guard lock(outlet_->mutex);
        if (outlet_->sink)
            outlet_->sink(buffer);
    }

    void look()
    {
        if (input_ && !sinceSound_.hasExpired(silentFor) && !deviceOf(id_).isNull())
            return;
        look_.stop();
        if (!answer(Opening::NotAttached))
            ended_();
    }

    /// Tells how opening went, unless that has been told.
    bool answer(Opening opening)
    {
        auto waiting = std::exchange(outlet_->opening, std::nullopt);
        if (waiting) {
            waiting->addResult(opening);
            waiting->finish();
        }
        return waiting.has_value();
    }

    QString id_;
    QAudioDevice device_;
    QAudioFormat format_;
    QAudioSource source_;
    std::shared_ptr<Outlet> outlet_;
    std::function<void()> ended_;
    QIODevice *input_ = nullptr; // the source's
    QElapsedTimer sinceSound_;
    QTimer look_;
    QObject context_; // the last, so that nothing is called while the rest is torn down
};

QtMicrophone::QtMicrophone()
    : context_(std::make_unique<QObject>())
{
    context_->moveToThread(&thread_);
    thread_.setObjectName(u"kelo.ear"_s);
    thread_.start();
}

QtMicrophone::~QtMicrophone()
{
    close();
    QMetaObject::invokeMethod(context_.get(), [] { QThread::currentThread()->quit(); });
    if (!thread_.wait(QDeadlineTimer(farewell))) {
        thread_.terminate(); // a sound system that hangs shall not keep the program
        thread_.wait();
    }
}

QFuture<QList<MicrophoneDevice>> QtMicrophone::discover()
{
    auto promise = std::make_shared<QPromise<QList<MicrophoneDevice>>>();
    promise->start();
    QMetaObject::invokeMethod(context_.get(), [promise] {
        promise->addResult(devicesNow());
        promise->finish();
    });
    return promise->future();
}

QFuture<Microphone::Opening> QtMicrophone::open(const MicrophoneDevice &device, Sink sink)
{
    close();
    outlet_ = std::make_shared<Outlet>();
    outlet_->sink = std::move(sink);
    outlet_->opening.emplace();
    outlet_->opening->start();
    auto answer = outlet_->opening->future();
    const auto lost = [this, serial = serial_] {
        QMetaObject::invokeMethod(
            this, [this, serial] { ended(serial); }, Qt::QueuedConnection);
    };
    QMetaObject::invokeMethod(context_.get(), [this, id = device.id, outlet = outlet_, lost] {
        capture_ = std::make_unique<Capture>(id, outlet, lost);
    });
    return answer;
}

/// Shuts the outlet at once and leaves the rest, which may take its time, to the thread.
void QtMicrophone::close()
{
    ++serial_;
    if (!outlet_)
        return;
    {
        const std::lock_guard lock(outlet_->mutex);
        outlet_->sink = nullptr;
    }
    outlet_.reset();
    QMetaObject::invokeMethod(context_.get(), [this] { capture_.reset(); });
}

void QtMicrophone::ended(qint64 serial)
{
    if (serial != serial_)
        return; // it was closed or opened again since
    close();
    Q_EMIT lost();
}

} // namespace kelo
