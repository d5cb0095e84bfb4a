#pragma once

#include "app/desktop/login_item.h"

namespace kelo {

/// Start at login, and staying without a window, as a desktop allows it to what runs in a sandbox.
/// What it allowed last is kept as user default "login", for it cannot be asked.
class BackgroundPortal : public LoginItem {
    Q_OBJECT

public:
    /// `settings` must outlive it.
    explicit BackgroundPortal(QSettings &settings);

    [[nodiscard]] bool on() const override;
    /// Never fails here: whether it is allowed is told by `changed` and `refused`.
    bool set(bool on) override;
    void stay() override { request(on()); }

private:
    void request(bool autostart);

    QSettings &settings_;
};

} // namespace kelo
