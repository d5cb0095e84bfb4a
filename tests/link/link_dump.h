#pragma once

#include "link/link.h"

#include <QMap>

namespace kelo::test {

/// Everything that can be read from a link, by name and as text.
using LinkDump = QMap<QString, QString>;
[[nodiscard]] LinkDump dump(const Link &link);

/// A number or a text as scripts show it: eight digits; quotes and escapes.
[[nodiscard]] QString shown(double value);
[[nodiscard]] QString shown(const QString &text);
[[nodiscard]] QString shown(const std::vector<Segment> &segments);

} // namespace kelo::test
