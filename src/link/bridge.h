#pragma once

#include <QString>

namespace kelo {

/// Keeps a copy of the audio workstation's bridge script, which the payload directory may hold, in
/// the data directory `baseDir`; refreshed whenever the shipped one differs. Failures are logged.
void installBridge(const QString &payload, const QString &baseDir);

} // namespace kelo
