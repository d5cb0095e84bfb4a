#pragma once

#include <QObject>

#include <memory>

class QSettings;

namespace kelo {

/// Whether the program starts, hidden, when the user logs in.
class LoginItem : public QObject {
    Q_OBJECT

public:
    /// For the user and the executable of this process; `settings` must outlive it. In a sandbox
    /// the desktop decides, outside it a file does.
    static std::unique_ptr<LoginItem> make(QSettings &settings);

    [[nodiscard]] virtual bool on() const = 0;
    /// Switches it; false when that failed.
    virtual bool set(bool on) = 0;
    /// Asks to go on without a window, where that is not a matter of course.
    virtual void stay() { }

Q_SIGNALS:
    /// It was switched from here, whether that worked or not.
    void changed();
    /// The desktop or its user did not allow what `set` had asked for.
    void refused();
};

} // namespace kelo
