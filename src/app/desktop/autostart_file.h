#pragma once

#include <QObject>
#include <QString>

namespace kelo {

/// Start at login by an entry in the user's autostart folder. It starts the program hidden.
class LoginItem : public QObject {
    Q_OBJECT

public:
    /// The entry of this program: `app.kelo.assistant.desktop` in the folder `autostart` of
    /// `configuration`. It starts `executable`, an absolute path.
    LoginItem(const QString &configuration, QString executable);
    /// For the user and the executable of this process.
    LoginItem();

    /// The entry is there, and neither the user nor the desktop has switched it off inside it.
    [[nodiscard]] bool on() const;
    /// Writes the entry or removes it; false when that failed.
    bool set(bool on);

    [[nodiscard]] const QString &path() const { return path_; }
    /// What the entry says.
    [[nodiscard]] QByteArray entry() const;

Q_SIGNALS:
    /// It was switched from here, whether that worked or not.
    void changed();

private:
    [[nodiscard]] bool write() const;

    QString path_;
    QString executable_;
};

} // namespace kelo
