#pragma once

#include <QObject>
#include <QPointer>

#include <functional>

class QFileDialog;
class QWindow;

namespace kelo {

/// The dialog in which the user chooses a MIDI file. There is never more than one.
class MidiChooser : public QObject {
    Q_OBJECT

public:
    using Chosen = std::function<void(const QString &path)>;

    /// Opens the dialog over `window`, in `folder` or, where that is empty, in the home folder. It
    /// comes forward instead when it is open already. `chosen` is called with a path, or never.
    void open(QWindow &window, const QString &folder, const Chosen &chosen);

private:
    QPointer<QFileDialog> dialog_;
};

} // namespace kelo
