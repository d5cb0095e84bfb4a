#include "voice/capture/pulse_library.h"

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

QString property(const pa_proplist *properties, const char *key)
{
    return QString::fromUtf8(pa_proplist_gets(properties, key));
}

} // namespace

void pulse::forget(pa_operation *operation)
{
    if (operation)
        pa_operation_unref(operation);
}

bool pulse::isInternal(const pa_proplist *properties)
{
    const QString form = property(properties, PA_PROP_DEVICE_FORM_FACTOR);
    return form.isEmpty() ? property(properties, PA_PROP_DEVICE_BUS) == "pci"_L1
                          : form == "internal"_L1;
}

} // namespace kelo
