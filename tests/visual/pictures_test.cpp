#include "app/snapshot.h"

#include <QApplication>
#include <QDir>
#include <QQuickWindow>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace kelo;

namespace {

/// How far two pictures are apart: the greatest mean difference of a channel in any square of 20
/// pixels, in steps of 255. Another renderer's edges and roundings stay far below what another
/// colour, place or size comes to.
double distance(const QImage &a, const QImage &b)
{
    constexpr int side = 20;
    double worst = 0;
    for (int top = 0; top < a.height(); top += side) {
        for (int left = 0; left < a.width(); left += side) {
            const QRect square = QRect(left, top, side, side) & a.rect();
            int sum = 0;
            for (int y = square.top(); y <= square.bottom(); ++y) {
                for (int x = square.left(); x <= square.right(); ++x) {
                    const QRgb p = a.pixel(x, y);
                    const QRgb q = b.pixel(x, y);
                    sum += std::abs(qRed(p) - qRed(q)) + std::abs(qGreen(p) - qGreen(q))
                        + std::abs(qBlue(p) - qBlue(q));
                }
            }
            worst = std::max(worst, sum / 3.0 / (square.width() * square.height()));
        }
    }
    return worst;
}

QImage difference(const QImage &a, const QImage &b)
{
    QImage image(a.size(), QImage::Format_RGB888);
    const auto apart = [](int p, int q) { return std::min(std::abs(p - q) * 8, 255); };
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            image.setPixel(x, y,
                qRgb(apart(qRed(p), qRed(q)), apart(qGreen(p), qGreen(q)),
                    apart(qBlue(p), qBlue(q))));
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
        const double most = inSoftware_ ? 14 : 1.3;
        const double apart = distance(drawn, kept);
        if (apart <= most)
            return;
        const QDir folder(QStringLiteral(OTHER_PICTURES));
        folder.mkpath(u"."_s);
        const QString name = folder.filePath(shown.name);
        drawn.save(name + u"-drawn.png"_s);
        kept.save(name + u"-kept.png"_s);
        difference(drawn, kept).save(name + u"-difference.png"_s);
        QFAIL(qPrintable(u"apart by %1 of 255; see %2-*.png"_s.arg(apart).arg(name)));
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
