#include "voice/capture/microphone_wish.h"

#include <QHash>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

/// How systems call what people call so.
QStringList signsOf(const QString &kind)
{
    static const QHash<QString, QStringList> known{
        {u"bluetooth"_s, {u"bluetooth"_s, u"bluez"_s}},
        {u"headset"_s, {u"headset"_s, u"headphone"_s, u"bluez"_s}},
        {u"camera"_s, {u"cam"_s}},
    };
    return known.value(kind, {kind});
}

bool isMeant(const MicrophoneDevice &device, const QString &wanted)
{
    if (wanted == "next"_L1)
        return true;
    if (wanted == "built-in"_L1)
        return device.builtIn;
    const QStringList signs = signsOf(wanted);
    return std::any_of(signs.begin(), signs.end(), [&](const QString &sign) {
        return device.name.contains(sign, Qt::CaseInsensitive)
            || device.id.contains(sign, Qt::CaseInsensitive);
    });
}

} // namespace

const MicrophoneDevice *wishedMicrophone(
    const QList<MicrophoneDevice> &devices, const QString &current, const QString &wanted)
{
    const auto inUse = std::find_if(devices.begin(), devices.end(),
        [&](const MicrophoneDevice &device) { return device.id == current; });
    const qsizetype from = inUse == devices.end() ? 0 : inUse - devices.begin() + 1;
    for (qsizetype i = 0; i < devices.size(); ++i) {
        const MicrophoneDevice &device = devices[(from + i) % devices.size()];
        if (isMeant(device, wanted.toLower()))
            return &device;
    }
    return nullptr;
}

} // namespace kelo
