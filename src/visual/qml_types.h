#pragma once

#include "link/link.h"

#include <QtQml/qqml.h>

namespace kelo {

/// The shared state as a type that this module's items take; it gets its name for QML where the
/// display is put together.
struct LinkOfItems {
    Q_GADGET
    QML_FOREIGN(kelo::Link)
    QML_ANONYMOUS
};

} // namespace kelo
