#pragma once

#include "app/desktop/login_item.h"

#include <QString>

namespace kelo {

/// Start at login by an entry in the user's autostart folder.
class AutostartFile : public LoginItem {
    Q_OBJECT

public:
    /// The entry of this program: `app.kelo.assistant.desktop` in the folder `autostart` of
    /// `configuration`. It starts `executable`, an absolute path.
    AutostartFile(const QString &configuration, QString executable);
    /// For the user and the executable of this process.
    AutostartFile();

    /// The entry is there, and neither the user nor the desktop has switched it off inside it.
    [[nodiscard]] bool on() const override;
    /// Writes the entry or removes it.
    bool set(bool on) override;

    [[nodiscard]] const QString &path() const { return path_; }
    /// What the entry says.
    [[nodiscard]] QByteArray entry() const;

private:
    [[nodiscard]] bool write() const;

    QString path_;
    QString executable_;
};

} // namespace kelo
