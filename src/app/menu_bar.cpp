#include "app/menu_bar.h"

#include "app/kelo_icon.h"

using namespace Qt::StringLiterals;

namespace kelo {

MenuBar::MenuBar(std::function<TrayFacts()> facts, QObject *parent)
    : QObject(parent)
    , facts_(std::move(facts))
{
    connect(&menu_, &QMenu::aboutToShow, this, &MenuBar::refresh);
    connect(&presence_, &TrayPresence::arrived, this, &MenuBar::makeIcon);
}

MenuBar::~MenuBar() = default;

void MenuBar::setUp()
{
    name_ = facts_().assistant;
    makeMenu();
    presence_.watch();
}

void MenuBar::makeMenu()
{
    for (const TrayEntry &entry : trayMenu(facts_())) {
        if (!entry.action) {
            menu_.addSeparator();
            continue;
        }
        QAction *action = menu_.addAction(entry.title);
        action->setCheckable(entry.checked.has_value());
        connect(action, &QAction::triggered, this,
            [this, chose = *entry.action] { Q_EMIT chosen(chose); });
    }
    refresh();
}

void MenuBar::refresh()
{
    const auto entries = trayMenu(facts_());
    const auto actions = menu_.actions();
    for (std::size_t i = 0; i < entries.size(); ++i) {
        QAction *action = actions.at(static_cast<qsizetype>(i));
        action->setText(entries[i].title);
        action->setChecked(entries[i].checked.value_or(false));
    }
}

void MenuBar::makeIcon()
{
    icon_ = std::make_unique<QSystemTrayIcon>(
        QIcon::fromTheme(u"app.kelo.assistant-symbolic"_s, keloIcon()));
    icon_->setToolTip(name_);
    icon_->setContextMenu(&menu_);
    connect(icon_.get(), &QSystemTrayIcon::activated, this,
        [this](QSystemTrayIcon::ActivationReason reason) {
            if (reason == QSystemTrayIcon::Trigger)
                Q_EMIT chosen(TrayAction::OpenWindow);
        });
    icon_->show();
}

} // namespace kelo
