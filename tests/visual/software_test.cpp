#include "item_window.h"
#include "support/table.h"

#include <QGuiApplication>
#include <QSGRendererInterface>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::test;

/// Where Qt has no graphics processor to draw with, everything is still there.
class SoftwareTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void somethingTrueIsShown_data()
    {
        // lit: least part of the window that is
        const Table<QString, QByteArrayList, double> row{"type", "lines", "lit"};
        row("keys", u"Keys"_s, {"on 60 90", "buttons 108"}, 0.05);
        row("ring", u"Core"_s, {"say Good evening."}, 0.05);
        row("caption", u"Caption"_s, {"say Good evening, everyone."}, 0.01);
        row("falling notes", u"Visualiser"_s,
            {"rollnew A Piece", "rolln 0.5,2,60,90,0", "rollstart 0 9", "on 64 90"}, 0.05);
        row("flash", u"FlashFrame"_s, {"flash good"}, 0.9);
    }

    void somethingTrueIsShown()
    {
        QFETCH(QString, type);
        QFETCH(QByteArrayList, lines);
        QFETCH(double, lit);
        ItemWindow stand(type, {520, 240});
        stand.fixture->engineIs(EngineState::Online);
        for (const QByteArray &line : lines)
            stand.fixture->handle(line);
        for (int i = 0; i < 20; ++i) {
            stand.fixture.time.advance(0.01);
            stand.item->refresh();
        }
        const QImage image = stand.picture();
        QCOMPARE(stand.window.rendererInterface()->graphicsApi(), QSGRendererInterface::Software);
        qsizetype bright = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                bright += qGreen(image.pixel(x, y)) > 12;
        }
        const double part = static_cast<double>(bright) / (image.width() * image.height());
        QVERIFY2(part > lit, QByteArray::number(part));
    }
};

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QGuiApplication app(argc, argv);
    SoftwareTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "software_test.moc"
