#include "hud/level_meter.h"

#include <QAccessible>
#include <QtQuick/private/qaccessiblequickitem_p.h>

namespace kelo {

namespace {

/// The numbers come from the item's properties, as for the sliders that Qt knows.
class MeterInterface : public QAccessibleQuickItem {
public:
    using QAccessibleQuickItem::QAccessibleQuickItem;

    QString text(QAccessible::Text kind) const override
    {
        if (kind == QAccessible::Value)
            return static_cast<const LevelMeter *>(object())->valueText();
        return QAccessibleQuickItem::text(kind);
    }

    // A meter is read, never set.
    void setCurrentValue(const QVariant & /*value*/) override { }

protected:
    void *interface_cast(QAccessible::InterfaceType type) override
    {
        if (type == QAccessible::ValueInterface)
            return static_cast<QAccessibleValueInterface *>(this);
        return QAccessibleQuickItem::interface_cast(type);
    }
};

QAccessibleInterface *makeInterface(const QString & /*className*/, QObject *object)
{
    auto *meter = qobject_cast<LevelMeter *>(object);
    return meter ? new MeterInterface(meter) : nullptr;
}

} // namespace

LevelMeter::LevelMeter(QQuickItem *parent)
    : QQuickItem(parent)
{
    // One factory for the process, in place before the first meter can be asked for.
    [[maybe_unused]] static const bool installed =
        (QAccessible::installFactory(makeInterface), true);
}

} // namespace kelo
