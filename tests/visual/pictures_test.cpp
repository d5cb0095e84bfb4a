#include "app/snapshot.h"
#include "support/pictures.h"

#include <QApplication>
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
