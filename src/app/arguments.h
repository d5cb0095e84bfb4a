#pragma once

#include <QStringList>

#include <optional>

namespace kelo {

/// What the command line asks for. Unknown arguments are ignored.
struct Arguments {
    bool help = false;
    bool version = false;
    bool hidden = false; ///< start with the main window hidden
    bool show = false; ///< start with the main window, at login too
    bool quick = false; ///< the wake test ends after its plain pass
    std::optional<QString> snapshotFolder; ///< render every screen into this folder and end
    QString snapshotNames; ///< only those screens whose names begin with this
    std::optional<QString> wakeTestReport; ///< measure how well the name is heard, into this file
    QString wakeTestName;

    /// `list` is the command line, the program's own name first.
    static Arguments read(const QStringList &list);
    /// All arguments in words, for a terminal. It needs the application object.
    static QString helpText();
};

} // namespace kelo
