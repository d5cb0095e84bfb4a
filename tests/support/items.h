#pragma once

#include <QStringList>

class QQuickItem;

namespace kelo::test {

/// All that shows in an item, a line each, back to front as they lie in one another: its type, its
/// place in what it lies in, and what of it is other than Qt makes it. Animations and timers stand
/// below what they belong to.
[[nodiscard]] QStringList itemsIn(const QQuickItem &root);

} // namespace kelo::test
