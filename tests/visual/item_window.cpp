#include "item_window.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QtQml/qqmlextensionplugin.h>

Q_IMPORT_QML_PLUGIN(Kelo_VisualPlugin)

using namespace Qt::StringLiterals;

namespace kelo::test {

ItemWindow::ItemWindow(const QString &type, QSize size)
{
    QQuickWindow::setTextRenderType(QQuickWindow::NativeTextRendering);
    window.engine()->addImportPath(u"qrc:/qt/qml"_s);
    window.setColor(Qt::black);
    QQmlComponent component(window.engine());
    component.setData(u"import Kelo.Visual\n%1 {}"_s.arg(type).toUtf8(), QUrl());
    item = qobject_cast<SceneItem *>(component.create());
    if (!item)
        qFatal("%s", qPrintable(component.errorString()));
    window.setContent(QUrl(), nullptr, item);
    window.resize(size);
    window.contentItem()->setSize(size);
    item->setSize(size);
    item->setLink(&fixture.link());
}

QImage ItemWindow::picture()
{
    item->refresh();
    return window.grabWindow();
}

} // namespace kelo::test
