#pragma once

#include "app/action_menu.h"
#include "app/tray_presence.h"

#include <QSystemTrayIcon>

#include <functional>
#include <memory>

namespace kelo {

/// The icon in the tray and its menu, which keep the assistant reachable without its window. It
/// appears as soon as there is a tray, and again when the tray comes back.
class MenuBar : public QObject {
    Q_OBJECT

public:
    /// `facts` is asked for the truth each time the menu opens.
    explicit MenuBar(std::function<MenuFacts()> facts, QObject *parent = nullptr);

    void setUp();
    /// Shows the truth as it has become meanwhile, even while the menu is open.
    void refresh() { menu_.refresh(); }

    /// There is a tray that shows the icon.
    [[nodiscard]] bool reachable() const { return presence_.present(); }

Q_SIGNALS:
    /// The menu is about to open.
    void opening();
    void chosen(kelo::MenuAction action, const QString &id);

private:
    void makeIcon();

    std::function<MenuFacts()> facts_;
    TrayPresence presence_;
    ActionMenu menu_;
    QString name_; // the assistant's at launch; title and tool tip keep it
    std::unique_ptr<QSystemTrayIcon> icon_;
};

} // namespace kelo
