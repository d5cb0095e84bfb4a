#pragma once

#include <QString>

namespace kelo {

/// What the display calls a mode of the engine; "STANDBY" for all that it does not know.
[[nodiscard]] QString modeName(QStringView mode);

} // namespace kelo
