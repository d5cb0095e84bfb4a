#pragma once

#include <QByteArray>
#include <QString>

namespace kelo::test {

/// Writes a file, the folders above it included.
void writeFile(const QString &path, const QByteArray &contents);

/// What is in a file; nothing if it cannot be read.
[[nodiscard]] QByteArray readFile(const QString &path);

} // namespace kelo::test
