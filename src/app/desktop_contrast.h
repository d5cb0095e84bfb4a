#pragma once

#include <functional>

class QObject;

namespace kelo {

/// Asks the desktop whether the user prefers high contrast and calls `preferred` later on if so,
/// unless `context` is gone by then. Never blocks; no desktop to ask is no preference.
void askForHighContrast(QObject *context, std::function<void()> preferred);

} // namespace kelo
