#pragma once

#include <QString>

namespace kelo {

/// The line that hands a transcript to the engine: "~ear ", "1" when it is final and else "0", a
/// space, the words, a line feed. The words lose what could break the line or start another
/// command (control characters and "~"); of what is left the last 600 characters as a reader
/// counts them are sent.
[[nodiscard]] QString earLine(const QString &words, bool final);

} // namespace kelo
