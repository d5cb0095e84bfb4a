#include "voice/capture/pulse_library.h"

#include <algorithm>
#include <span>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

QString property(const pa_proplist *properties, const char *key)
{
    return QString::fromUtf8(pa_proplist_gets(properties, key));
}

/// A source without sockets is always there.
bool canHear(const pa_source_info &source)
{
    const std::span ports(source.ports, source.n_ports);
    return ports.empty() || std::ranges::any_of(ports, [](const pa_source_port_info *port) {
        return port->available != PA_PORT_AVAILABLE_NO;
    });
}

/// Part of this computer rather than something plugged into it. The sound chip of a desktop
/// computer is too, but what it hears is plugged in: a socket knows whether something is in it, and
/// a microphone behind the case has nothing to know.
bool isBuiltIn(const pa_source_info &source)
{
    const QString form = property(source.proplist, PA_PROP_DEVICE_FORM_FACTOR);
    const bool inside = form.isEmpty() ? property(source.proplist, PA_PROP_DEVICE_BUS) == "pci"_L1
                                       : form == "internal"_L1;
    if (!inside || source.n_ports == 0)
        return inside && !form.isEmpty();
    const pa_source_port_info *port = source.active_port ? source.active_port : source.ports[0];
    return QByteArrayView(port->name).contains("internal")
        || (port->type == PA_DEVICE_PORT_TYPE_MIC && port->available == PA_PORT_AVAILABLE_UNKNOWN);
}

} // namespace

void pulse::forget(pa_operation *operation)
{
    if (operation)
        pa_operation_unref(operation);
}

std::optional<MicrophoneDevice> pulse::microphoneOf(
    const pa_source_info &source, const QString &defaultId)
{
    if (source.monitor_of_sink != PA_INVALID_INDEX || !canHear(source))
        return std::nullopt;
    const QString id = QString::fromUtf8(source.name);
    const QString name = QString::fromUtf8(source.description).simplified();
    return MicrophoneDevice{id, name.isEmpty() ? id : name, isBuiltIn(source), id == defaultId};
}

} // namespace kelo
