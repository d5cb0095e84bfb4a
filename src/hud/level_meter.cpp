#include "hud/level_meter.h"

#include <QAccessible>
#include <QAccessibleObject>
#include <QQuickWindow>

using namespace std::chrono_literals;

namespace kelo {

namespace {

/// A progress bar that is named by its value in words: not every way to screen readers carries
/// such words beside the number.
class MeterInterface : public QAccessibleObject, public QAccessibleValueInterface {
public:
    using QAccessibleObject::QAccessibleObject;

    QWindow *window() const override { return meter().window(); }

    QAccessibleInterface *parent() const override
    {
        for (QQuickItem *above = meter().parentItem(); above; above = above->parentItem()) {
            if (QAccessibleInterface *found = QAccessible::queryAccessibleInterface(above))
                return found;
        }
        return QAccessible::queryAccessibleInterface(window());
    }
    QAccessibleInterface *child(int /*index*/) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface * /*child*/) const override { return -1; }

    QRect rect() const override
    {
        const QRectF inScene = meter().mapRectToScene(meter().boundingRect());
        const QPoint place = window() ? window()->mapToGlobal(QPoint()) : QPoint();
        return inScene.toRect().translated(place);
    }
    QAccessible::Role role() const override { return QAccessible::ProgressBar; }
    QAccessible::State state() const override
    {
        QAccessible::State state;
        state.invisible = !meter().isVisible();
        state.readOnly = true;
        return state;
    }
    QString text(QAccessible::Text kind) const override
    {
        const bool worded = kind == QAccessible::Name || kind == QAccessible::Value;
        return worded ? meter().valueText() : QString();
    }

    QVariant currentValue() const override { return meter().value(); }
    void setCurrentValue(const QVariant & /*value*/) override { }
    QVariant minimumValue() const override { return LevelMeter::lowest; }
    QVariant maximumValue() const override { return LevelMeter::highest; }
    QVariant minimumStepSize() const override { return 1; }

protected:
    void *interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface *>(this)
                                                   : QAccessibleObject::interface_cast(type);
    }

private:
    [[nodiscard]] LevelMeter &meter() const { return *static_cast<LevelMeter *>(object()); }
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
    renaming_.setSingleShot(true);
    renaming_.setInterval(1s);
    connect(&renaming_, &QTimer::timeout, this, [this] {
        QAccessibleEvent renamed(this, QAccessible::NameChanged);
        QAccessible::updateAccessibility(&renamed);
    });
}

void LevelMeter::setValue(int value)
{
    if (value == value_)
        return;
    value_ = value;
    if (QAccessible::isActive() && !renaming_.isActive())
        renaming_.start();
    Q_EMIT valueChanged();
}

} // namespace kelo
