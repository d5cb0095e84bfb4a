#include "voice/capture/capture_session.h"

#include "link/time_source.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

// Seconds.
constexpr double firstRetry = 1.0;
constexpr double longestRetry = 30.0;
constexpr double standsAfter = 10.0; // a capture that ended before was none
constexpr double changesSettle = 0.2; // devices seldom come alone

constexpr int briefOnesLogged = 2;

QString namesOf(const QList<MicrophoneDevice> &devices)
{
    QStringList names;
    for (const MicrophoneDevice &device : devices)
        names.append(device.name);
    return names.isEmpty() ? u"none"_s : names.join(", "_L1);
}

} // namespace

CaptureSession::CaptureSession(std::unique_ptr<Microphone> microphone, TimeSource &time,
    std::function<void(const QString &)> log)
    : microphone_(std::move(microphone))
    , time_(time)
    , log_(std::move(log))
{
    connect(microphone_.get(), &Microphone::lost, this, &CaptureSession::lost);
    connect(microphone_.get(), &Microphone::devicesChanged, this, [this] {
        if (reviewDue_)
            return;
        reviewDue_ = std::make_unique<QObject>();
        time_.after(changesSettle, reviewDue_.get(), [this] {
            reviewDue_.release()->deleteLater();
            review();
        });
    });
}

CaptureSession::~CaptureSession() = default;

void CaptureSession::start(Microphone::Sink sink)
{
    sink_ = std::move(sink);
    wanted_ = true;
    if (running_) {
        Q_EMIT started();
        return;
    }
    attempts_ = brief_ = 0;
    quiet_ = false;
    look();
}

void CaptureSession::stop()
{
    ++turn_;
    wanted_ = running_ = opening_ = false;
    retry_.reset();
    standing_.reset();
    microphone_->close();
}

void CaptureSession::refresh(const std::function<void()> &then)
{
    microphone_->discover().then(this, [this, then](const QList<MicrophoneDevice> &devices) {
        found(devices);
        if (then)
            then();
    });
}

void CaptureSession::prefer(const QString &id)
{
    preferred_ = id;
    if (!wanted_)
        return;
    const MicrophoneDevice *best = chosenMicrophone(devices_, preferred_);
    if (best && *best == device_ && (running_ || opening_))
        return;
    quiet_ = running_ = false;
    look();
}

// ---- finding one ----

void CaptureSession::look()
{
    retry_.reset();
    microphone_->discover().then(
        this, [this, turn = ++turn_](const QList<MicrophoneDevice> &devices) {
            found(devices);
            if (turn != turn_)
                return;
            if (!quiet_)
                log_("microphones found: "_L1 + namesOf(devices));
            attach();
        });
}

void CaptureSession::found(const QList<MicrophoneDevice> &devices)
{
    if (devices == devices_)
        return;
    devices_ = devices;
    Q_EMIT changed();
}

/// Devices came or went.
void CaptureSession::review()
{
    microphone_->discover().then(
        this, [this, turn = turn_](const QList<MicrophoneDevice> &devices) {
            const bool news = devices != devices_;
            found(devices);
            if (!news || !wanted_ || turn != turn_)
                return;
            const MicrophoneDevice *best = chosenMicrophone(devices_, preferred_);
            const bool preferredCame = best && best->id == preferred_ && best->id != device_.id;
            if ((running_ || opening_) && !preferredCame)
                return;
            ++turn_;
            running_ = false;
            retry_.reset();
            attempts_ = 0;
            attach();
        });
}

void CaptureSession::attach()
{
    const MicrophoneDevice *device = chosenMicrophone(devices_, preferred_);
    if (!device) {
        failed(u"could not open any microphone"_s);
        return;
    }
    device_ = *device;
    opening_ = true;
    microphone_->open(device_, sink_).then(this, [this, turn = turn_](Microphone::Opening opening) {
        if (turn == turn_)
            opened(opening);
    });
}

void CaptureSession::opened(Microphone::Opening opening)
{
    opening_ = false;
    switch (opening) {
    case Microphone::Opening::NoInput:
        failed(u"could not open any microphone"_s);
        return;
    case Microphone::Opening::NotAttached:
        failed("could not attach "_L1 + device_.name);
        return;
    case Microphone::Opening::Started:
        break;
    }
    running_ = true;
    startedAt_ = time_.now();
    const QString line = "using microphone: "_L1 + device_.name;
    if (brief_ < briefOnesLogged) {
        log_(line);
    } else {
        standing_ = std::make_unique<QObject>();
        time_.after(standsAfter, standing_.get(), [this, line] {
            brief_ = 0;
            log_(line);
        });
    }
    Q_EMIT changed();
    Q_EMIT started();
}

// ---- doing without ----

void CaptureSession::failed(const QString &line)
{
    if (!std::exchange(quiet_, true))
        log_(line);
    lookLater();
    Q_EMIT unavailable();
}

void CaptureSession::lost()
{
    if (!running_)
        return;
    running_ = false;
    standing_.reset();
    if (time_.now() - startedAt_ < standsAfter) {
        ++brief_;
    } else {
        brief_ = attempts_ = 0;
    }
    if (brief_ < briefOnesLogged)
        log_("lost the microphone: "_L1 + device_.name);
    quiet_ = true;
    lookLater();
    Q_EMIT unavailable();
}

void CaptureSession::lookLater()
{
    retry_ = std::make_unique<QObject>();
    const double delay = std::min(firstRetry * std::exp2(attempts_++), longestRetry);
    time_.after(delay, retry_.get(), [this] { look(); });
}

} // namespace kelo
