#include "console.h"

#include <QAccessible>
#include <QQmlEngine>
#include <QQmlExtensionPlugin>
#include <QTest>

Q_IMPORT_QML_PLUGIN(Kelo_HudPlugin)

using namespace Qt::StringLiterals;

namespace kelo::test {

namespace {

const QStringList places{u"backdrop"_s, u"core"_s, u"caption"_s, u"keyStrip"_s,
    u"visualiserScreen"_s, u"welcomeScreen"_s, u"flashFrame"_s};

void collect(QQuickItem *item, QList<QQuickItem *> &found)
{
    if (!item->isVisible())
        return;
    found.append(item);
    for (QQuickItem *child : item->childItems())
        collect(child, found);
}

} // namespace

void Console::show(QSize size, bool furnished)
{
    QVariantMap properties{
        {u"link"_s, QVariant::fromValue(&link.link())}, {u"voice"_s, QVariant::fromValue(&voice)}};
    if (furnished) {
        QByteArray qml = "import QtQuick\nQtObject {\n";
        for (const QString &place : places) {
            qml += "property Component " + place.toUtf8() + ": Rectangle { objectName: \""
                + place.toUtf8() + "\"; color: \"transparent\" }\n";
        }
        QQmlComponent component(view.engine());
        component.setData(qml + "}\n", {});
        furniture_.reset(component.create());
        for (const QString &place : places)
            properties.insert(place, furniture_->property(place.toUtf8()));
    }
    view.engine()->addImportPath(u"qrc:/qt/qml"_s);
    view.setResizeMode(QQuickView::SizeRootObjectToView);
    view.setInitialProperties(properties);
    view.setSource(QUrl(u"qrc:/qt/qml/Kelo/Hud/ContentView.qml"_s));
    view.resize(size);
    view.show();
    view.requestActivate();
    QVERIFY(QTest::qWaitForWindowActive(&view));
    QTRY_COMPARE(view.size(), size);
    QTest::qWait(50); // a few frames, so that everything has found its place
}

QList<QQuickItem *> Console::visibleItems() const
{
    QList<QQuickItem *> found;
    collect(view.rootObject(), found);
    return found;
}

QRectF Console::shown(const QQuickItem *item)
{
    QRectF rect = item->mapRectToScene(item->boundingRect());
    for (const QQuickItem *above = item->parentItem(); above; above = above->parentItem()) {
        if (above->clip())
            rect &= above->mapRectToScene(above->boundingRect());
    }
    return rect;
}

bool Console::tabTo(const QString &name)
{
    for (int i = 0; i < 200; ++i) {
        QTest::keyClick(&view, Qt::Key_Tab);
        if (accessibleName(view.activeFocusItem()) == name)
            return true;
    }
    return false;
}

QString Console::accessibleName(QQuickItem *item)
{
    QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(item);
    return interface ? interface->text(QAccessible::Name) : QString();
}

} // namespace kelo::test
