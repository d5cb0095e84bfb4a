#include "items.h"

#include <QColor>
#include <QEasingCurve>
#include <QFont>
#include <QMetaProperty>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQmlProperty>
#include <QQuickItem>

#include <memory>

using namespace Qt::StringLiterals;

namespace kelo::test {

namespace {

/// What says the same as others, comes from fonts alone, or goes on by itself.
const QStringList leftOut{u"objectName"_s, u"x"_s, u"y"_s, u"width"_s, u"height"_s, u"parent"_s,
    u"implicitWidth"_s, u"implicitHeight"_s, u"baselineOffset"_s, u"contentWidth"_s,
    u"contentHeight"_s, u"implicitContentWidth"_s, u"implicitContentHeight"_s, u"availableWidth"_s,
    u"availableHeight"_s, u"implicitBackgroundWidth"_s, u"implicitBackgroundHeight"_s,
    u"paintedWidth"_s, u"paintedHeight"_s, u"focus"_s, u"lineCount"_s, u"running"_s,
    u"currentTime"_s, u"visualFocus"_s, u"size"_s, u"position"_s, u"visualSize"_s,
    u"visualPosition"_s, u"progress"_s, u"status"_s, u"visible"_s, u"length"_s, u"cursorPosition"_s,
    u"selectionStart"_s, u"selectionEnd"_s, u"baseUrl"_s, u"renderType"_s,
    u"effectiveHorizontalAlignment"_s, u"antialiasing"_s, u"minimumPointSize"_s, u"focusReason"_s,
    u"originX"_s, u"originY"_s, u"verticalVelocity"_s, u"pressX"_s, u"pressY"_s};

QString shown(const QVariant &value)
{
    if (value.typeId() == QMetaType::QColor)
        return value.value<QColor>().name(QColor::HexArgb);
    if (value.typeId() == QMetaType::QFont) {
        const auto font = value.value<QFont>();
        return u"%1 %2 %3"_s.arg(font.pointSizeF(), 0, 'g', 4)
            .arg(font.weight())
            .arg(font.letterSpacing());
    }
    if (value.typeId() == QMetaType::QEasingCurve)
        return QString::number(value.toEasingCurve().type());
    if (value.typeId() == QMetaType::Double || value.typeId() == QMetaType::Float)
        return QString::number(value.toDouble(), 'g', 5);
    if (value.metaType().flags() & QMetaType::IsEnumeration)
        return QString::number(value.toInt());
    if (value.typeId() == QMetaType::QUrl)
        return value.toUrl().fileName();
    if (value.typeId() == QMetaType::Int || value.typeId() == QMetaType::Bool
        || value.typeId() == QMetaType::QString)
        return value.toString().replace(u'\n', u"\\n"_s).left(60);
    return {};
}

/// The type as QML calls it, and its class of Qt's.
std::pair<QString, const QMetaObject *> typeOf(const QObject &object)
{
    const QMetaObject *of = object.metaObject();
    const QString own = QString::fromLatin1(of->className()).section(u"_QML"_s, 0, 0);
    while (!QByteArrayView(of->className()).startsWith("QQ")
        || QByteArrayView(of->className()).contains("_QML"))
        of = of->superClass();
    return {own.startsWith(u"QQuick") ? own.sliced(6) : own, of};
}

/// What Qt makes of such an object that nobody says anything of.
const QMap<QString, QString> &plain(const QMetaObject &type)
{
    static QMap<QByteArray, QMap<QString, QString>> known;
    auto &values = known[type.className()];
    if (!values.isEmpty())
        return values;
    QByteArray name = type.className();
    name.remove(0, name.startsWith("QQuick") ? 6 : 3);
    QQmlEngine engine;
    QQmlComponent component(&engine);
    component.setData("import QtQuick\nimport QtQuick.Layouts\nimport QtQuick.Templates as T\n"
            + QByteArray(name == "ScrollBar" || name.endsWith("Button") ? "T." : "") + name + " {}",
        {});
    const std::unique_ptr<QObject> made(component.create());
    values[u"type"_s] = QString::fromLatin1(name);
    for (int i = 0; made && i < type.propertyCount(); ++i) {
        const QString property = QString::fromLatin1(type.property(i).name());
        values[property] = shown(type.property(i).read(made.get()));
    }
    return values;
}

QString lineOf(const QObject &object)
{
    const auto [name, type] = typeOf(object);
    const auto &usual = plain(*type);
    QString line = name;
    if (const auto *item = qobject_cast<const QQuickItem *>(&object))
        line += u" @%1 @%2 @%3 @%4"_s.arg(item->x(), 0, 'f', 1)
                    .arg(item->y(), 0, 'f', 1)
                    .arg(item->width(), 0, 'f', 1)
                    .arg(item->height(), 0, 'f', 1);
    QStringList told;
    const QMetaObject &all = *object.metaObject();
    for (int i = 0; i < all.propertyCount(); ++i) {
        const QString property = QString::fromLatin1(all.property(i).name());
        const bool own = i >= type->propertyCount();
        if (leftOut.contains(property) || property.startsWith(u'_')
            || (!own && !usual.contains(property)))
            continue;
        const QString value = shown(all.property(i).read(&object));
        if (!value.isEmpty() && (own || value != usual[property]))
            told << property + u' ' + value;
    }
    for (const char *part : {"border.color", "border.width"}) {
        const QString value = shown(QQmlProperty::read(&object, QString::fromLatin1(part)));
        if (!value.isEmpty() && value != (part[7] == 'c' ? u"#ff000000" : u"1"))
            told << QString::fromLatin1(part) + u' ' + value;
    }
    told.removeDuplicates();
    return line + (told.isEmpty() ? QString() : u" | "_s + told.join(u" | "_s));
}

void collect(const QObject &object, const QString &indent, QStringList &lines)
{
    lines << indent + lineOf(object);
    for (QObject *child : object.children()) {
        if (child->inherits("QQuickBehavior"))
            qmlExecuteDeferred(child); // its animation is made when it first moves
        if (child->inherits("QQuickAbstractAnimation") || child->inherits("QQmlTimer")
            || child->inherits("QQuickBehavior"))
            collect(*child, indent + u"  "_s, lines);
    }
    if (const auto *item = qobject_cast<const QQuickItem *>(&object)) {
        for (const QQuickItem *child : item->childItems()) {
            if (child->isVisible())
                collect(*child, indent + u' ', lines);
        }
    }
}

} // namespace

QStringList itemsIn(const QQuickItem &root)
{
    QStringList lines;
    collect(root, {}, lines);
    return lines;
}

} // namespace kelo::test
