#pragma once

#include "app/menu_table.h"

#include <QMenu>

#include <functional>

namespace kelo {

/// A menu made from a table of entries. It keeps its entries for life, as trays that have listed
/// them count on, and reads their titles and marks anew each time it opens.
class ActionMenu : public QMenu {
    Q_OBJECT

public:
    /// `entries` is asked each time the menu opens.
    explicit ActionMenu(std::function<std::vector<MenuEntry>()> entries);

    /// Reads the entries anew.
    void refresh();

Q_SIGNALS:
    /// `id` is the entry's own.
    void chosen(kelo::MenuAction action, const QString &id);

private:
    std::function<std::vector<MenuEntry>()> entries_;
};

} // namespace kelo
