#include "support/link_fixture.h"
#include "visual/scene_item.h"

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickView>
#include <QSGRendererInterface>
#include <QTest>
#include <QtQml/qqmlextensionplugin.h>

Q_IMPORT_QML_PLUGIN(Kelo_VisualPlugin)

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::test;

/// Where Qt has no graphics processor to draw with, everything is still there.
class SoftwareTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void somethingTrueIsShown_data();
    void somethingTrueIsShown();
};

void SoftwareTest::somethingTrueIsShown_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QByteArrayList>("lines");
    QTest::addColumn<double>("lit"); // least part of the window that is

    QTest::newRow("keys") << u"Keys"_s << QByteArrayList{"on 60 90", "buttons 108"} << 0.05;
    QTest::newRow("ring") << u"Core"_s << QByteArrayList{"say Good evening."} << 0.05;
    QTest::newRow("caption") << u"Caption"_s << QByteArrayList{"say Good evening, everyone."}
                             << 0.01;
    QTest::newRow("falling notes")
        << u"Visualiser"_s
        << QByteArrayList{"rollnew A Piece", "rolln 0.5,2,60,90,0", "rollstart 0 9", "on 64 90"}
        << 0.05;
    QTest::newRow("flash") << u"FlashFrame"_s << QByteArrayList{"flash good"} << 0.9;
}

void SoftwareTest::somethingTrueIsShown()
{
    QFETCH(QString, type);
    QFETCH(QByteArrayList, lines);
    QFETCH(double, lit);
    LinkFixture fixture;
    QQuickView window;
    window.engine()->addImportPath(u"qrc:/qt/qml"_s);
    window.setColor(Qt::black);
    QQmlComponent component(window.engine());
    component.setData(u"import Kelo.Visual\n%1 {}"_s.arg(type).toUtf8(), QUrl());
    auto *item = qobject_cast<SceneItem *>(component.create());
    QVERIFY2(item, qPrintable(component.errorString()));
    constexpr QSize size(520, 240);
    window.setContent(QUrl(), nullptr, item);
    window.resize(size);
    window.contentItem()->setSize(size);
    item->setSize(size);
    item->setLink(&fixture.link());
    fixture->state = u"ONLINE"_s;
    for (const QByteArray &line : lines)
        fixture->handle(line);
    for (int i = 0; i < 20; ++i) {
        fixture.time.advance(0.01);
        item->refresh();
    }
    const QImage image = window.grabWindow();
    QCOMPARE(window.rendererInterface()->graphicsApi(), QSGRendererInterface::Software);
    qsizetype bright = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            bright += qGreen(image.pixel(x, y)) > 12;
    }
    const double part = static_cast<double>(bright) / (image.width() * image.height());
    QVERIFY2(part > lit, QByteArray::number(part));
}

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QGuiApplication app(argc, argv);
    SoftwareTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "software_test.moc"
