#pragma once

#include <QString>

namespace kelo {

/// Start at login by an entry in the user's autostart folder. It starts the program hidden.
class LoginItem {
public:
    /// The entry of this program: `app.kelo.assistant.desktop` in the folder `autostart` of
    /// `configuration`. It starts `executable`, an absolute path.
    LoginItem(const QString &configuration, QString executable);

    /// For the user and the executable of this process.
    [[nodiscard]] static LoginItem ofThisProcess();

    /// The entry is there, and neither the user nor the desktop has switched it off inside it.
    [[nodiscard]] bool on() const;
    /// Writes the entry or removes it; false when that failed.
    bool set(bool on) const;

    [[nodiscard]] const QString &path() const { return path_; }
    /// What the entry says.
    [[nodiscard]] QByteArray entry() const;

private:
    QString path_;
    QString executable_;
};

} // namespace kelo
