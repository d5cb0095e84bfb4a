#include "script.h"
#include "support/files.h"
#include "support/lines.h"
#include "support/pictures.h"
#include "visual/caption/caption_node.h"
#include "visual/caption/caption_scene.h"
#include "visual/flash/flash_frame.h"
#include "visual/keys/keys_strip.h"
#include "visual/notes/rain_scene.h"
#include "visual/ring/core_scene.h"
#include "visual/ring/ring_node.h"
#include "visual/sprites/grid_backdrop.h"
#include "visual/sprites/shader_material.h"
#include "visual/sprites/sprite_painter.h"

#include <QGuiApplication>
#include <QPainter>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::test;

namespace {

/// All shapes of a list, those of one colour in a line: how many there are and which is the first;
/// the places of the first and the last; the sums of their numbers.
QStringList told(const SpriteList &sprites)
{
    struct Group {
        int count = 0;
        std::vector<double> ends;
        std::vector<double> sums = std::vector<double>(9);
    };
    std::vector<std::pair<QString, Group>> groups;
    for (std::size_t i = 0; i < sprites.size(); ++i) {
        const Sprite &s = sprites[i];
        const QString look = hex(s.top).left(6) + u'-' + hex(s.bottom).left(6)
            + (s.additive ? u" lit"_s : QString()) + (s.feather > 0 ? u" soft"_s : QString())
            + (s.bend > 0 ? u" bent"_s : QString());
        auto group = std::ranges::find(groups, look, &std::pair<QString, Group>::first);
        if (group == groups.end())
            group = groups.insert(groups.end(), {look + u" from %1"_s.arg(i), {}});
        group->first = look;
        Group &all = group->second;
        if (all.count++ == 0)
            all.ends = {static_cast<double>(i), s.x, s.y};
        all.ends.resize(3);
        all.ends.insert(all.ends.end(), {s.x, s.y});
        const std::array numbers{s.x, s.y, s.halfWidth, s.halfHeight, s.radius, s.feather,
            s.angle * static_cast<float>(i % 7 + 1), s.top.alpha * 100, s.bottom.alpha * 100};
        for (std::size_t n = 0; n < numbers.size(); ++n)
            all.sums[n] += numbers[n];
    }
    QStringList lines;
    for (const auto &[look, group] : groups)
        lines << u"%1 %2: %3: %4"_s.arg(group.count)
                     .arg(look, numbersOf(group.ends), numbersOf(group.sums));
    return lines;
}

QStringList told(const LabelList &labels)
{
    QStringList lines;
    for (const Label &label : labels)
        lines << u"\"%1\" %2 %3 %4"_s.arg(label.text, hex(label.colour),
            numbersOf({label.x, label.y, label.size, label.width}),
            numbersOf({label.bold ? 1.0 : 0, label.centred ? 1.0 : 0,
                static_cast<double>(label.lines), static_cast<double>(label.ground)}));
    return lines;
}

/// The corners of a node's triangles and their order, as sums that tell them apart.
QString meshOf(const QSGGeometryNode &node)
{
    const QSGGeometry &mesh = *node.geometry();
    std::vector<double> sums;
    for (int i = 0; i < mesh.vertexCount(); ++i) {
        const auto *data = static_cast<const char *>(mesh.vertexData()) + i * mesh.sizeOfVertex();
        std::size_t column = 0;
        const auto add = [&](double value) {
            sums.resize(std::max(sums.size(), column + 1));
            sums[column++] += value * (i % 5 + 1);
        };
        for (int a = 0; a < mesh.attributeCount(); ++a) {
            const QSGGeometry::Attribute &part = mesh.attributes()[a];
            const bool bytes = part.type == QSGGeometry::UnsignedByteType;
            for (int n = 0; n < part.tupleSize; ++n, data += bytes ? 1 : 4)
                add(bytes ? static_cast<uchar>(*data) : *reinterpret_cast<const float *>(data));
        }
    }
    double order = 0;
    for (int i = 0; i < mesh.indexCount(); ++i)
        order += (i % 7 + 1)
            * (mesh.sizeOfIndex() == 2 ? mesh.indexDataAsUShort()[i] : mesh.indexDataAsUInt()[i]);
    sums.insert(sums.begin(), {static_cast<double>(mesh.vertexCount()), order});
    for (const float number : static_cast<ShaderMaterial *>(node.material())->numbers)
        sums.push_back(number);
    return u"mesh: "_s + numbersOf(sums);
}

QString meshOf(const SpriteList &sprites, double height)
{
    SpriteNode node;
    node.show(sprites, height, 1.5);
    return meshOf(node);
}

QStringList told(const Picture &picture, QSize size)
{
    QStringList lines;
    QImage painted(size, QImage::Format_ARGB32_Premultiplied);
    painted.fill(Qt::black);
    QPainter painter(&painted);
    for (const Layer &layer : picture) {
        lines << u"-- layer"_s << told(layer.sprites) << told(layer.labels)
              << meshOf(layer.sprites, size.height());
        paintSprites(painter, layer.sprites, size.height());
    }
    painter.end();
    return lines << lightOf(painted);
}

/// A scene of its own for each: made at the first frame, told when asked.
class Stage {
public:
    explicit Stage(const QString &head)
        : kind_(head.section(u' ', 0, 0))
        , size_(head.section(u' ', 1, 1).toInt(), head.section(u' ', 2, 2).toInt())
    {
        fixture.bring(u"ONLINE"_s);
        flash_.setLink(&fixture.link());
        resize();
    }

    /// What is not the engine's to tell: the scene's size, and where its texts and its caption
    /// begin.
    bool isPlaced(const QStringList &words)
    {
        if (words[0] == u"size") {
            size_ = {words[1].toInt(), words[2].toInt()};
            resize();
        } else if (words[0] == u"texts") {
            rain_.setTextsTop(words[1].toDouble());
            rain_.setCaptionTop(words[2].toDouble());
        } else {
            return false;
        }
        return true;
    }

    void frame(double now)
    {
        core_.update(fixture.link(), now);
        rain_.update(now);
        flash_.refresh();
        caption_.update(fixture.link(), now);
    }

    [[nodiscard]] QStringList look()
    {
        if (kind_ == u"core")
            return ring();
        if (kind_ == u"caption") {
            const auto [in, arriving] = caption_.arrival();
            const auto [out, leaving] = caption_.departure();
            return {caption_.line().text + u" / "_s + caption_.leaving().text,
                numbersOf({in, arriving, out, leaving, caption_.position(), caption_.opacity(),
                    caption_.glow()})};
        }
        if (kind_ == u"rain")
            return told(rain_.picture(), size_);
        if (kind_ == u"keys") {
            strip_.update(fixture.link(), size_.width(), size_.height(), fixture.time.now());
            return told(strip_.picture(), size_) << (strip_.moves() ? u"moves"_s : u"rests"_s);
        }
        return told(kind_ == u"grid" ? grid_.picture() : flash_.picture(), size_);
    }

    LinkFixture fixture;

private:
    void resize()
    {
        core_.resize(size_.width(), size_.height());
        rain_.resize(size_.width(), size_.height());
        flash_.setSize(size_);
        grid_.setSize(size_);
    }

    [[nodiscard]] QStringList ring()
    {
        const RingLook look = core_.look();
        const QRectF ring = core_.ringPlace();
        const QRectF scope = core_.scopePlace();
        ring_.show(ring, scope, look);
        std::vector<double> bands(look.bands.begin(), look.bands.end());
        for (double &band : bands)
            band *= 100;
        QStringList lines = told(core_.picture(), size_);
        lines << u"-- dial"_s << told(core_.dial()) << meshOf(core_.dial(), size_.height())
              << u"-- ring"_s
              << numbersOf({ring.x(), ring.y(), ring.width(), scope.x(), scope.y(), scope.width(),
                     scope.height(), look.level * 100, look.amplitude * 100, look.time,
                     look.opacity * 100, fixture.link().level * 100})
              << numbersOf(bands) << lightOf(ringPicture({60, 60}, look))
              << lightOf(scopePicture({80, 20}, look));
        for (QSGNode *child = ring_.firstChild(); child; child = child->nextSibling())
            lines << meshOf(*static_cast<QSGGeometryNode *>(child));
        return lines;
    }

    QString kind_;
    QSize size_;
    CoreScene core_;
    RingNode ring_;
    RainScene rain_{fixture.link()};
    KeysStrip strip_;
    FlashFrame flash_;
    CaptionScene caption_;
    GridBackdrop grid_;
};

} // namespace

/// Every shape, word and corner of the scenes, at instants at which all their parts show.
class ScenesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void showsWhatItDid()
    {
        const QString file = QStringLiteral(KELO_SCENES);
        const QStringList kept = QString::fromUtf8(readFile(file)).split(u'\n');
        QStringList shown;
        QStringList before; // what has been told stands until the next scene
        std::unique_ptr<Stage> stage;
        for (const QString &line : kept) {
            if (line.startsWith(u"   "))
                continue; // what a look was
            shown << line;
            if (line.startsWith(u"== ")) {
                stage = std::make_unique<Stage>(line.sliced(3));
                before.clear();
            } else if (line == u"look") {
                const QStringList look = stage->look();
                for (const QString &part : look) {
                    if (!before.contains(part))
                        shown << u"   "_s + part;
                }
                before = look;
            } else if (stage && !stage->isPlaced(line.split(u' '))) {
                play(stage->fixture, {line.toUtf8()}, [&](double now) { stage->frame(now); });
            }
        }
        if (qEnvironmentVariableIsSet("KELO_WRITE_SCRIPTS"))
            writeFile(file, shown.join(u'\n').toUtf8());
        for (qsizetype i = 0; i < std::max(kept.size(), shown.size()); ++i)
            QVERIFY2(alike(shown.value(i), kept.value(i)),
                qPrintable(
                    u"line %1: is %2, was %3"_s.arg(i + 1).arg(shown.value(i), kept.value(i))));
    }

    /// Neighbours of one colour are one piece of a caption.
    void captionsAreDrawnInPieces()
    {
        CaptionRaster raster;
        raster.area = {10, 4, 80, 40};
        for (const int unit : {0, 1, 2, 3, 4})
            raster.cells.push_back({unit, QRectF(10 + unit % 4 * 20, unit / 4 * 20 + 4, 20, 20)});
        CaptionNode node;
        node.show(
            raster, {3, 7},
            [](qsizetype unit) { return unit % 4 < 2 ? colours::soft : colours::pale; }, 0.6,
            colours::green.faded(0.5));
        QCOMPARE(meshOf(node),
            u"mesh: 12 369 1409 903 12.25 13.5 5324 8415 6897 5049 0.11 0.5 0.26 0.5"_s);
    }
};

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication app(argc, argv);
    ScenesTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "scenes_test.moc"
