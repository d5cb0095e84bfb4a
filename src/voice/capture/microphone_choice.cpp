#include "voice/capture/microphone_choice.h"

#include "voice/capture/microphone_wish.h"

#include <QSettings>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

const QString microphoneKey = u"microphone"_s;

} // namespace

MicrophoneChoice::MicrophoneChoice(CaptureSession &capture, QSettings *settings)
    : capture_(capture)
    , settings_(settings)
    , wanted_(settings ? settings->value(microphoneKey).toString() : QString())
{
    capture_.prefer(wanted_);
}

void MicrophoneChoice::choose(const QString &id)
{
    wanted_ = id;
    if (settings_)
        settings_->setValue(microphoneKey, id);
    capture_.prefer(id);
}

QString MicrophoneChoice::inUse() const
{
    return capture_.isRunning() ? capture_.microphone().name : QString();
}

QString MicrophoneChoice::follow(const QString &word)
{
    const auto &devices = capture_.devices();
    const MicrophoneDevice *suggested = chosenMicrophone(devices, wanted_);
    if (!suggested)
        return tr("I find no microphone.");
    const MicrophoneDevice current = capture_.isRunning() ? capture_.microphone() : *suggested;
    if (word.isEmpty())
        return tr("I listen with %1.").arg(current.name);
    const bool usual = word == "usual"_L1;
    const MicrophoneDevice *wished =
        usual ? chosenMicrophone(devices, {}) : wishedMicrophone(devices, current.id, word);
    if (!wished)
        return tr("I find no such microphone. I still listen with %1.").arg(current.name);
    const bool already = wished->id == current.id;
    const QString answer =
        (already ? tr("I listen with %1 already.") : tr("From now on I listen with %1."))
            .arg(wished->name);
    if (!already || word != "next"_L1) // there is no other
        choose(usual ? QString() : wished->id);
    return answer;
}

} // namespace kelo
