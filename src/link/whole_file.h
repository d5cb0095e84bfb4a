#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace kelo {

/// Writes a file whole or not at all. Returns what went wrong, in words.
[[nodiscard]] std::optional<QString> writeWhole(const QString &path, const QByteArray &contents);

} // namespace kelo
