#include "app/kelo_icon.h"
#include "app/snapshot.h"
#include "support/lines.h"
#include "support/pictures.h"
#include "visual/caption/caption_raster.h"
#include "visual/sprites/layer_node.h"

#include <QApplication>
#include <QIcon>
#include <QPainter>
#include <QQuickWindow>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace kelo;

/// What is drawn, at moments at which all its parts show, against the pictures that are kept.
class PicturesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void looksAsItDid_data()
    {
        QTest::addColumn<qsizetype>("scene");
        const auto scenes = snapshotScenes();
        for (qsizetype i = 0; i < std::ssize(scenes); ++i) {
            const SnapshotScene &scene = scenes[static_cast<std::size_t>(i)];
            // Where all is painted without shaders, only single items are alike.
            if (scene.reference && !(inSoftware_ && scene.item.isEmpty()))
                QTest::newRow(qPrintable(scene.name)) << i;
        }
    }

    void looksAsItDid()
    {
        QFETCH(qsizetype, scene);
        const SnapshotScene shown = snapshotScenes()[static_cast<std::size_t>(scene)];
        const QString name = shown.name.section(u'-', 1);
        const QString number = name.section(u'-', -1);
        const bool numbered = number.front().isDigit();
        // Painted without shaders, all is of other colours by a little.
        const QString wrong =
            test::unlikeKept(drawSnapshot(shown, false, shown.sizes.front()).image,
                numbered ? name.chopped(number.size() + 1) : name, number.toInt(),
                inSoftware_ ? test::Tolerance{24, 10} : test::Tolerance());
        QVERIFY2(wrong.isEmpty(), qPrintable(wrong));
    }

    void lettersStandWhereTheyDid()
    {
        using enum Label::Ground;
        const auto painted = [](QSize size, const auto &paint) {
            QImage image(size, QImage::Format_ARGB32_Premultiplied);
            image.fill(Qt::gray);
            QPainter painter(&image);
            paint(painter);
            painter.end();
            return test::lightOf(image);
        };
        const auto at = [](const QRectF &r) {
            return test::numbersOf({r.x(), r.y(), r.width(), r.height()});
        };
        QStringList told;
        const QString text = u"Once more, a little slower, from the upbeat on"_s;
        LabelList labels(6, {.text = text, .x = 20, .y = 60, .size = 12, .colour = white});
        labels[1].bold = false;
        labels[1].width = 150;
        for (Label *centred : {&labels[2], &labels[3]}) {
            centred->x = 150;
            centred->centred = true;
            centred->colour = colours::green;
        }
        labels[2].width = 140;
        labels[2].lines = 2;
        labels[2].ground = Outline;
        labels[3].text = u"K"_s;
        labels[3].ground = Plate;
        labels[4].width = 280;
        labels[4].lines = 3;
        labels[5].text = QString(900, u'x');
        labels[5].size = 4;
        for (const Label &label : std::as_const(labels)) {
            const SetLabel set(label, 100);
            const Sprite shade = shadeBehind(label, 6);
            told << at(set.text()) << at(set.area())
                 << test::numbersOf({shade.x, shade.y, shade.halfWidth, shade.halfHeight,
                        shade.radius, shade.feather, shade.top.alpha})
                 << painted({300, 100}, [&](QPainter &painter) { set.paint(painter); });
        }
        for (const double width : {900.0, 260.0}) {
            for (const double pixels : {1.0, 1.5}) {
                const CaptionRaster raster = rasterise(text, mono(24), width, pixels);
                told << at(raster.area) << at({QPointF(), raster.size});
                std::vector<double> sums(6);
                for (const auto &[unit, place] : raster.cells) {
                    const auto n = static_cast<double>(unit % 5 + 1);
                    sums[0] += place.x() * n;
                    sums[1] += place.y() * n;
                    sums[2] += place.width() * n;
                }
                for (const auto &[start, under] : raster.words) {
                    sums[3] += under.x() * static_cast<double>(start + 1);
                    sums[4] += under.y();
                    sums[5] += under.width() + 100 * under.height();
                }
                told << test::numbersOf(sums) << test::lightOf(raster.picture);
            }
        }
        QCOMPARE(
            test::unlikeLines(told, QStringLiteral(KELO_LETTERS), "KELO_KEEP_PICTURES"), u""_s);
    }

    void theIconIsAsItWas()
    {
        const QIcon icon = keloIcon();
        QList<int> sides;
        for (const QSize size : icon.availableSizes())
            sides << size.width();
        QCOMPARE(sides, (QList<int>{16, 22, 24, 32, 48, 64, 128}));
        QImage flat(128, 128, QImage::Format_RGB888);
        flat.fill(Qt::black);
        QPainter(&flat).drawPixmap(0, 0, icon.pixmap(128));
        const QString wrong = test::unlikeKept(flat, u"icon"_s);
        QVERIFY2(wrong.isEmpty(), qPrintable(wrong));
    }

    void theBookHasTheseScreens()
    {
        QStringList told;
        for (const SnapshotScene &scene : snapshotScenes()) {
            told << scene.name;
            const auto happens = [&told](const std::vector<SnapshotStep> &steps) {
                for (const SnapshotStep &step : steps)
                    told.last() += u" %1 %2"_s.arg(step.after).arg(step.lines.size());
            };
            happens(scene.steps);
            told.last() += u" |"_s;
            happens(scene.shown);
            told.last() += u" | %1 %2 %3 %4"_s.arg(scene.large)
                               .arg(scene.offline)
                               .arg(scene.question)
                               .arg(scene.scale);
            for (const QSize size : scene.sizes)
                told.last() += u" %1 %2"_s.arg(size.width()).arg(size.height());
        }
        QCOMPARE(test::unlikeLines(told, QStringLiteral(KELO_BOOK), "KELO_KEEP_PICTURES"), u""_s);
    }

private:
    /// Qt paints all itself, with no shaders.
    bool inSoftware_ = qEnvironmentVariable("QT_QUICK_BACKEND") == u"software"_s;
};

int main(int argc, char **argv)
{
    const QApplication app(argc, argv);
    QQuickWindow::setTextRenderType(QQuickWindow::NativeTextRendering);
    PicturesTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "pictures_test.moc"
