#pragma once

#include "app/tray_menu.h"
#include "app/tray_presence.h"

#include <QMenu>
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
    explicit MenuBar(std::function<TrayFacts()> facts, QObject *parent = nullptr);
    ~MenuBar() override;

    void setUp();

    /// There is a tray that shows the icon.
    [[nodiscard]] bool reachable() const { return presence_.present(); }
    [[nodiscard]] QMenu &menu() { return menu_; }

Q_SIGNALS:
    void chosen(kelo::TrayAction action);

private:
    void makeMenu();
    void refresh();
    void makeIcon();

    std::function<TrayFacts()> facts_;
    TrayPresence presence_;
    QMenu menu_;
    QString name_; // the assistant's at launch; the tool tip keeps it
    std::unique_ptr<QSystemTrayIcon> icon_;
};

} // namespace kelo
