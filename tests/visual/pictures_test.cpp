#include "app/snapshot.h"

#include <QApplication>
#include <QDir>
#include <QQuickWindow>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace kelo;

namespace {

int apart(QRgb p, QRgb q)
{
    return std::max({std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)),
        std::abs(qBlue(p) - qBlue(q))});
}

/// How far two pictures are apart. Another renderer's edges and roundings stay far below what
/// another colour, place or size comes to.
struct Distance {
    double worst = 0; ///< greatest mean difference in any square of 20 pixels, of 255
    double spread = 0; ///< percent of all pixels that differ by more than roundings
};

Distance distance(const QImage &a, const QImage &b)
{
    constexpr int side = 20;
    constexpr int rounding = 4; // of 255
    Distance found;
    int different = 0;
    for (int top = 0; top < a.height(); top += side) {
        for (int left = 0; left < a.width(); left += side) {
            const QRect square = QRect(left, top, side, side) & a.rect();
            int sum = 0;
            for (int y = square.top(); y <= square.bottom(); ++y) {
                for (int x = square.left(); x <= square.right(); ++x) {
                    const int off = apart(a.pixel(x, y), b.pixel(x, y));
                    sum += off;
                    different += off > rounding;
                }
            }
            found.worst = std::max(
                found.worst, static_cast<double>(sum) / (square.width() * square.height()));
        }
    }
    found.spread = 100.0 * different / (a.width() * a.height());
    return found;
}

QImage difference(const QImage &a, const QImage &b)
{
    QImage image(a.size(), QImage::Format_RGB888);
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const int off = std::min(apart(a.pixel(x, y), b.pixel(x, y)) * 8, 255);
            image.setPixel(x, y, qRgb(off, off, off));
        }
    }
    return image;
}

} // namespace

/// Small pictures of all that is drawn, against those kept in the tree. Where one differs, it is
/// written with the one that was expected and their difference, eight times as bright.
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
        const QString file = shown.name + u".png"_s;
        const QImage kept(QDir(QStringLiteral(KEPT_PICTURES)).filePath(file));
        const QImage drawn = drawSnapshot(shown, false, shown.sizes.front()).image;
        QVERIFY2(!kept.isNull(), "there is no picture to compare with");
        QCOMPARE(drawn.size(), kept.size());
        const auto [worst, spread] = distance(drawn, kept);
        if (worst <= (inSoftware_ ? 24 : 2.6) && spread <= (inSoftware_ ? 10 : 0.1))
            return;
        const QDir folder(QStringLiteral(OTHER_PICTURES));
        folder.mkpath(u"."_s);
        const QString name = folder.filePath(shown.name);
        drawn.save(name + u"-drawn.png"_s);
        kept.save(name + u"-kept.png"_s);
        difference(drawn, kept).save(name + u"-difference.png"_s);
        QFAIL(qPrintable(
            u"a square is off by %1 of 255, and %2 % of all pixels; see %3-*.png"_s.arg(worst)
                .arg(spread)
                .arg(name)));
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
