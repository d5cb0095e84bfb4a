#include "app/action_menu.h"

namespace kelo {

namespace {

QAction *added(QMenu &menu, const MenuEntry &entry)
{
    if (!entry.below.empty())
        return menu.addMenu(entry.title)->menuAction();
    return entry.action ? menu.addAction(entry.title) : menu.addSeparator();
}

void fill(QMenu &menu, const std::vector<MenuEntry> &entries)
{
    QList<QAction *> actions = menu.actions();
    while (actions.size() > static_cast<qsizetype>(entries.size()))
        delete actions.takeLast();
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const MenuEntry &entry = entries[i];
        if (actions.size() <= static_cast<qsizetype>(i))
            actions += added(menu, entry);
        QAction *action = actions.at(static_cast<qsizetype>(i));
        action->setText(entry.title);
        action->setVisible(entry.shown);
        action->setCheckable(entry.checked.has_value());
        action->setChecked(entry.checked.value_or(false));
        if (entry.action)
            action->setData(QVariantList{static_cast<int>(*entry.action), entry.id});
        if (!entry.below.empty())
            fill(*action->menu(), entry.below);
    }
}

} // namespace

ActionMenu::ActionMenu(std::function<std::vector<MenuEntry>()> entries)
    : entries_(std::move(entries))
{
    connect(this, &QMenu::aboutToShow, this, &ActionMenu::refresh);
    connect(this, &QMenu::triggered, this, [this](const QAction *action) {
        const QVariantList what = action->data().toList();
        if (what.size() == 2)
            Q_EMIT chosen(static_cast<MenuAction>(what[0].toInt()), what[1].toString());
    });
}

void ActionMenu::refresh()
{
    fill(*this, entries_());
}

} // namespace kelo
