#include "app/menu_bar.h"

#include "app/kelo_icon.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace kelo {

MenuBar::MenuBar(std::function<MenuFacts()> facts, QObject *parent)
    : QObject(parent)
    , facts_(std::move(facts))
    , menu_([this] { return trayMenu(facts_()); })
{
    connect(&menu_, &QMenu::aboutToShow, this, &MenuBar::opening);
    connect(&menu_, &ActionMenu::chosen, this, &MenuBar::chosen);
    connect(&presence_, &TrayPresence::arrived, this, &MenuBar::makeIcon);
}

void MenuBar::setUp()
{
    name_ = facts_().assistant;
    menu_.refresh();
    presence_.watch();
}

void MenuBar::makeIcon()
{
    // What trays tell a screen reader is the item's title, and the one that Qt gives it is the
    // application's name. All settings have been opened under the other name by now.
    QCoreApplication::setApplicationName(name_);
    icon_ = std::make_unique<QSystemTrayIcon>(
        QIcon::fromTheme(u"app.kelo.assistant-symbolic"_s, keloIcon()));
    icon_->setToolTip(name_);
    icon_->setContextMenu(&menu_);
    connect(icon_.get(), &QSystemTrayIcon::activated, this,
        [this](QSystemTrayIcon::ActivationReason reason) {
            if (reason == QSystemTrayIcon::Trigger)
                Q_EMIT chosen(MenuAction::OpenWindow, {});
        });
    icon_->show();
}

} // namespace kelo
