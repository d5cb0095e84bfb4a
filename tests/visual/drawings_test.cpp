#include "support/link_fixture.h"
#include "support/table.h"
#include "visual/caption/caption_item.h"
#include "visual/ring/ring_node.h"
#include "visual/sprites/layer_node.h"

#include <QGuiApplication>
#include <QPainter>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QSGRendererInterface>
#include <QSignalSpy>
#include <QTest>
#include <QtQml/qqmlextensionplugin.h>

#include <cmath>
#include <functional>

Q_IMPORT_QML_PLUGIN(Kelo_VisualPlugin)

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::test;

namespace {

/// A window with one item of the module in it, over a link of its own. It is shown only on demand.
class ItemWindow {
public:
    explicit ItemWindow(const QString &type, QSize size = {400, 440})
    {
        window.engine()->addImportPath(u"qrc:/qt/qml"_s);
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

    /// What it shows of the link as it is now.
    QImage picture()
    {
        item->refresh();
        return window.grabWindow();
    }

    LinkFixture fixture;
    QQuickView window;
    SceneItem *item = nullptr;
};

/// An item that is one node.
template <typename Node> class Pictured final : public QQuickItem {
public:
    explicit Pictured(std::function<void(Node &)> show)
        : show_(std::move(show))
    {
        setFlag(ItemHasContents);
    }

protected:
    QSGNode *updatePaintNode(QSGNode *old, UpdatePaintNodeData *) override
    {
        auto *node = old ? static_cast<Node *>(old) : new Node;
        show_(*node);
        return node;
    }

private:
    std::function<void(Node &)> show_;
};

/// Greatest difference of any channel.
int difference(QRgb a, QRgb b)
{
    return std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
        std::abs(qBlue(a) - qBlue(b))});
}

} // namespace

class DrawingsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theRingIsWhatItsFormulaSays()
    {
        for (const double level : {0.0, 0.35, 1.0, 1.4}) {
            for (const double time : {0.0, 7.3, 61.9})
                compareRing(level, time);
        }
    }

    void theTextToSelectLiesOnTheDrawnOne()
    {
        constexpr int width = 300; // wrapped
        ItemWindow stand(u"Caption"_s, {width, 160});
        stand.fixture.say({"say We take it hand by hand, two bars at a time."});
        (void)stand.picture();
        const auto children = stand.item->childItems();
        const auto edit = std::ranges::find_if(
            children, [](const QQuickItem *child) { return child->inherits("QQuickTextEdit"); });
        QVERIFY(edit != children.end());
        QVERIFY((*edit)->isVisible());
        QCOMPARE((*edit)->property("text").toString(),
            u"We take it hand by hand, two bars at a time."_s);

        auto *caption = qobject_cast<CaptionItem *>(stand.item);
        const CaptionRaster raster = rasterise(caption->text(), caption->font(), width, 1);
        const double top = (160 - raster.size.height()) / 2;
        for (const auto &[unit, place] : raster.cells) {
            QRectF seen;
            QMetaObject::invokeMethod(*edit, "positionToRectangle", Q_RETURN_ARG(QRectF, seen),
                Q_ARG(int, static_cast<int>(unit)));
            const bool firstOfLine = place.left() == raster.area.left();
            QVERIFY(firstOfLine || std::abs(seen.left() - place.left()) <= 1.5);
            QVERIFY(
                seen.center().y() > place.top() + top && seen.center().y() < place.bottom() + top);
        }
    }

    /// Where an item begins between two pixels, letters are as sharp as elsewhere.
    void lettersMeetThePixels_data()
    {
        const Table<QPointF> row{"origin"};
        row("on a pixel", {20, 30});
        row("below one", {20, 30.75});
        row("beside one", {20.75, 30});
    }

    void lettersMeetThePixels()
    {
        QFETCH(const QPointF, origin);
        const Label label{
            .text = u"LISTEN"_s, .x = 10, .y = 40, .size = 20, .colour = {1, 1, 1, 1}};
        QQuickView window;
        window.setColor(Qt::black);
        auto *item = new Pictured<LabelsNode>([&](LabelsNode &node) {
            node.show({label}, {window, 100, 1, origin});
        });
        window.setContent(QUrl(), nullptr, item);
        window.resize(200, 200);
        window.contentItem()->setSize({200, 200});
        item->setPosition(origin);
        const QImage drawn = window.grabWindow();
        QImage meant(drawn.size(), drawn.format());
        meant.fill(Qt::black);
        QPainter painter(&meant);
        painter.translate(origin);
        SetLabel(label, 100).paint(painter);
        painter.end();
        int worst = 0;
        for (int y = 0; y < meant.height(); ++y) {
            for (int x = 0; x < meant.width(); ++x)
                worst = std::max(worst, difference(drawn.pixel(x, y), meant.pixel(x, y)));
        }
        QVERIFY2(worst <= 2, QByteArray::number(worst));
    }

    void anUnseenWindowDrawsNothing()
    {
        ItemWindow stand(u"Core"_s);
        stand.fixture->engineIs(EngineState::Online);
        QSignalSpy moved(&stand.window, &QQuickWindow::afterAnimating);
        stand.window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&stand.window));
        QTRY_VERIFY(moved.count() > 5);
        const auto movesFor = [&moved](int ms) {
            QTest::qWait(100);
            moved.clear();
            QTest::qWait(ms);
            return moved.count();
        };
        stand.item->setActive(false);
        QCOMPARE(movesFor(200), 0);
        stand.item->setActive(true);
        QTRY_VERIFY(moved.count() > 5);
        stand.item->setVisible(false);
        QCOMPARE(movesFor(200), 0);
        stand.item->setVisible(true);
        FramePacer::setCovered(stand.window, true);
        QCOMPARE(movesFor(200), 0);
        FramePacer::setCovered(stand.window, false);
        stand.window.hide();
        QCOMPARE(movesFor(200), 0);
        // Lines go on being handled meanwhile.
        stand.fixture.say({"say Good evening.", "on 60 90"});
        QCOMPARE(stand.fixture->caption.get(), u"Good evening."_s);
        stand.window.show();
        QTRY_VERIFY(moved.count() > 5);
    }

    void aStillDisplayDrawsNothing_data()
    {
        // before: what happened a minute ago
        const Table<QString, QByteArrayList, QByteArray> row{"type", "before", "waking"};
        const QByteArrayList played{"on 60 90", "on 60 0", "out 50 90"};
        const QByteArrayList spoken{"say Good evening.", "word 0 4 300", "done"};
        row("keys, at once", u"Keys"_s, played, "on 60 90"_ba);
        row("keys, marks", u"Keys"_s, played, "buttons 108"_ba);
        row("ring, a key", u"Core"_s, played + spoken, "on 60 90"_ba);
        row("ring, the engine's note", u"Core"_s, spoken, "out 60 90"_ba);
        row("ring, a mode", u"Core"_s, spoken, "mode teach"_ba);
        row("ring, speech", u"Core"_s, spoken, "say Good night."_ba);
        row("falling notes, a key", u"Visualiser"_s, played, "on 60 90"_ba);
        row("falling notes, a roll", u"Visualiser"_s, played, "rollnew A"_ba);
        row("caption", u"Caption"_s, spoken, "say Good night."_ba);
    }

    void aStillDisplayDrawsNothing()
    {
        QFETCH(QString, type);
        QFETCH(QByteArrayList, before);
        QFETCH(QByteArray, waking);
        ItemWindow stand(type, {1040, 160});
        for (const QByteArray &line : before)
            stand.fixture->handle(line);
        for (int i = 0; i < 600; ++i) {
            stand.fixture.time.advance(0.1);
            stand.item->refresh();
        }
        stand.window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&stand.window));
        QTest::qWait(300);
        QSignalSpy frames(&stand.window, &QQuickWindow::afterAnimating);
        QTest::qWait(700); // whatever looks twice a second has looked
        QCOMPARE(frames.count(), 0);
        stand.fixture->handle(waking);
        QTRY_VERIFY_WITH_TIMEOUT(frames.count() > 0, 450);
    }

    /// What moves without new events is drawn for as long as it does.
    void whatGoesOnIsDrawn_data()
    {
        const Table<QString, QByteArray> row{"type", "line"};
        row("falling notes, a title", u"Visualiser"_s, "rollnew A"_ba);
        row("falling notes, a roll", u"Visualiser"_s, "rollstart 0 90"_ba);
        row("falling notes, speech", u"Visualiser"_s, "say Good evening."_ba);
        row("falling notes, a key held", u"Visualiser"_s, "on 60 90"_ba);
        row("ring, a roll", u"Core"_s, "rollnew A"_ba);
        row("ring, speech", u"Core"_s, "say Good evening."_ba);
    }

    void whatGoesOnIsDrawn()
    {
        QFETCH(QString, type);
        QFETCH(QByteArray, line);
        ItemWindow stand(type, {300, 160});
        stand.fixture->handle(line);
        for (int i = 0; i < 200; ++i) {
            stand.fixture.time.advance(0.1);
            stand.item->refresh();
        }
        stand.window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&stand.window));
        QSignalSpy frames(&stand.window, &QQuickWindow::afterAnimating);
        QTRY_VERIFY_WITH_TIMEOUT(frames.count() >= 15, 5000); // resting it is two a second
    }

    void theStageIsTakenAndGivenBack()
    {
        auto stand = std::make_unique<ItemWindow>(u"Visualiser"_s, QSize(1240, 840));
        const NoteListener *stage = stand->fixture->scene();
        QVERIFY(stage && stage != &stand->fixture.stage);
        stand->fixture.say({"rollnew A Piece", "rolln 0.5,1,60,90,0", "rollstart 0 9", "on 64 90"});
        QVERIFY(!stand->picture().isNull());
        stand->item->setLink(nullptr);
        QVERIFY(!stand->fixture->scene());
        stand->fixture.say({"on 64 0"});
    }

private:
    static void compareRing(double level, double time)
    {
        RingLook look{.level = std::min(level, 1.0), .amplitude = level + 0.04, .time = time};
        for (std::size_t i = 0; i < look.bands.size(); ++i)
            look.bands[i] = level * (0.5 + 0.5 * std::sin(static_cast<double>(i) * 1.3)) + 0.04;
        constexpr QRect ring(0, 0, 360, 360);
        constexpr QRect scope(40, 360, 280, 34);
        QQuickView window;
        window.setColor(Qt::black);
        auto *item = new Pictured<RingNode>([&](RingNode &node) { node.show(ring, scope, look); });
        window.setContent(QUrl(), nullptr, item);
        window.resize(360, 394);
        window.contentItem()->setSize({360, 394});
        const QImage drawn = window.grabWindow();
        QVERIFY(window.rendererInterface()->graphicsApi() != QSGRendererInterface::Software);

        const auto worst = [&drawn](const QRect &place, const QImage &meant) {
            int most = 0;
            for (int y = 0; y < place.height(); ++y) {
                for (int x = 0; x < place.width(); ++x) {
                    // Over black, a premultiplied colour is what is seen.
                    const uchar *pixel = meant.constScanLine(y) + 4 * x;
                    most = std::max(most,
                        difference(drawn.pixel(x + place.x(), y + place.y()),
                            qRgb(pixel[0], pixel[1], pixel[2])));
                }
            }
            return most;
        };
        const int offRing = worst(ring, ringPicture(ring.size(), look));
        QVERIFY2(offRing <= 2, QByteArray::number(offRing));
        const int offScope = worst(scope, scopePicture(scope.size(), look));
        QVERIFY2(offScope <= 2, QByteArray::number(offScope));
    }
};

QTEST_MAIN(DrawingsTest)
#include "drawings_test.moc"
