#include "app/display_scale.h"
#include "app/main_view.h"
#include "hud/theme.h"
#include "support/link_fixture.h"
#include "support/table.h"
#include "visual/caption/caption_scene.h"
#include "visual/motion/scene_item.h"
#include "visual/sprites/palette.h"
#include "voice/voice_control.h"
#include "welcome/welcome_questions.h"

#include <QQuickItem>
#include <QQuickView>
#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::test;

namespace {

/// Relative luminance and contrast ratio as the accessibility guidelines for the web define them.
double luminance(const QColor &color)
{
    const auto linear = [](double c) {
        return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF())
        + 0.0722 * linear(color.blueF());
}

double ratio(const QColor &a, const QColor &b)
{
    const double one = luminance(a) + 0.05;
    const double other = luminance(b) + 0.05;
    return std::max(one, other) / std::min(one, other);
}

int distance(QRgb a, QRgb b)
{
    return std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
        std::abs(qBlue(a) - qBlue(b))});
}

QColor over(const QColor &ground, const QColor &color, double opacity)
{
    const auto mixed = [opacity](float below, float above) {
        return below + (above - below) * static_cast<float>(opacity);
    };
    return QColor::fromRgbF(mixed(ground.redF(), color.redF()),
        mixed(ground.greenF(), color.greenF()), mixed(ground.blueF(), color.blueF()));
}

QString nameOf(const QColor &color)
{
    const QList<std::pair<QString, QColor>> known{{u"bg"_s, Hud::bg()}, {u"panel"_s, Hud::panel()},
        {u"green"_s, Hud::green()}, {u"faint"_s, Hud::faint()}, {u"soft"_s, Hud::shared().soft()},
        {u"dim"_s, Hud::shared().dim()}, {u"shade"_s, colours::shade.toQColor()},
        {u"ahead"_s, captionColour(-20, Hud::shared().contrast()).toQColor()}};
    for (const auto &[name, value] : known) {
        if (distance(value.rgb(), color.rgb()) <= 2)
            return name;
    }
    return color.name();
}

/// No scrolling ancestor cuts any of `item` off, or fades it out at its edge.
bool isWhole(const QQuickItem *item, double fade)
{
    const QRectF rect = item->mapRectToScene(item->boundingRect());
    for (const QQuickItem *above = item->parentItem(); above; above = above->parentItem()) {
        const double edge = above->property("interactive").toBool() ? fade : 0;
        const QRectF room = above->mapRectToScene(above->boundingRect());
        if (above->clip() && !room.adjusted(0, edge, 0, -edge).contains(rect))
            return false;
    }
    return true;
}

} // namespace

/// What can be read, measured in pictures of the display: all text as it is really drawn, with
/// what lies over and under it.
class ContrastTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        styles_.clear();
        undrawn_.clear();
    }
    void textIsReadable_data()
    {
        const Table<bool, QMap<QString, double>> row{"contrast", "exceptions"};
        // The look's fixed colours, and how far they get. High contrast is the way out for all but
        // the visualiser's title, which nobody needs.
        row("normal", false,
            {
                {u"ahead on bg"_s, 3.3},
                {u"dim on panel"_s, 6.7},
                {u"green at 50 % on bg"_s, 4.3},
            });
        row("high contrast", true, {{u"green at 50 % on bg"_s, 4.3}});
    }

    void textIsReadable()
    {
        QFETCH(const bool, contrast);
        Hud::shared().setContrast(contrast);
        measureScreen(0,
            {"mode jazz", "kbd Stage Piano 88", "jazz Swing feel|Blues in F", "update 3.2|Notes.",
                "heard slower please", "say Slower, as you like it. This goes on for a good while.",
                "word 43 4 300"});
        measureScreen(0, {"mode idle", "paused 1"});
        measureScreen(0,
            {"buttons 108 107 105 103 101 100 98 96 95 93", "rollnew Waltz", "rollstart 0 9",
                "on 60 90", "on 64 90", "paused 1"});
        for (int question = 0; question < questionCount; ++question)
            measureScreen(question, {"mode idle", "welcome"});

        QVERIFY2(undrawn_.isEmpty(), qPrintable(undrawn_.join(u"; "_s)));
        QVERIFY2(styles_.size() >= 10, "hardly anything was met");
        using Ratios = QMap<QString, double>;
        QFETCH(Ratios, exceptions);
        for (const auto [style, measured] : styles_.asKeyValueRange()) {
            if (measured >= 7)
                continue;
            const QString finding = u"%1: %2"_s.arg(style).arg(measured, 0, 'f', 2);
            QVERIFY2(exceptions.contains(style), qPrintable(finding));
            QVERIFY2(measured > exceptions.take(style) - 0.05, qPrintable(finding));
        }
        QVERIFY2(exceptions.isEmpty(), "some exception is no longer one");
    }

private:
    static constexpr double zoom = 2.5; // letters must have pixels that are all letter
    using Pixels = QHash<QRgb, int>;

    /// The display as the engine's `lines` leave it.
    void measureScreen(int question, std::initializer_list<QByteArrayView> lines)
    {
        LinkFixture link;
        link->setWelcomeStepForSnapshot(question);
        link->followContrast(Hud::shared().contrast());
        VoiceControl voice;
        WelcomeQuestions questions(link.link(), link.ears);
        QSettings settings(link.folder.filePath(u"display.ini"_s), QSettings::IniFormat);
        settings.setValue(u"scale"_s, zoom);
        DisplayScale scale(settings);
        link.say(lines);
        QQuickView window;
        fillWithMainView(window, {&link.link(), &voice, &questions, &scale, nullptr, nullptr});
        measure(window, link.time);
    }

    static QImage photograph(QQuickView &window)
    {
        const QSize size = QSize(1240, 840) * zoom;
        window.resize(size);
        window.contentItem()->setSize(size);
        window.rootObject()->setSize(size);
        return window.grabWindow().convertToFormat(QImage::Format_ARGB32);
    }

    /// Measures all texts in the window once everything that arrives has done so.
    void measure(QQuickView &window, ManualTime &time)
    {
        photograph(window); // lays everything out
        const auto scenes = window.rootObject()->findChildren<SceneItem *>();
        for (int frame = 0; frame < 60; ++frame) {
            time.advance(1.0 / 60);
            for (SceneItem *scene : scenes)
                scene->refresh();
        }
        measureTexts(window.rootObject(), 1, photograph(window));
    }

    void measureTexts(QQuickItem *item, double opacity, const QImage &picture)
    {
        opacity *= item->opacity();
        if (!item->isVisible() || opacity == 0)
            return;
        const QString words = item->property("text").toString().trimmed();
        QList<QColor> colours;
        if (item->inherits("QQuickText") || item->inherits("QQuickTextInput")) {
            colours += item->property("color").value<QColor>();
        } else if (item->inherits("kelo::CaptionItem")) {
            for (const double past : {-20.0, 20.0})
                colours += captionColour(past, Hud::shared().contrast()).toQColor();
        }
        if (words.isEmpty() || !isWhole(item, 14 * zoom))
            colours.clear();
        if (const auto *scene = qobject_cast<SpriteItem *>(item))
            measureLabels(*scene, opacity, picture);
        for (const QColor &colour : colours)
            measureText(
                words, item->mapRectToScene(item->boundingRect()), colour, opacity, picture);
        if (item->inherits("QQuickText"))
            return; // what is inside it lights it from behind
        for (QQuickItem *child : item->childItems())
            measureTexts(child, opacity, picture);
    }

    void measureLabels(const SpriteItem &scene, double opacity, const QImage &picture)
    {
        for (const Layer &layer : scene.picture()) {
            for (const Label &label : layer.labels)
                measureText(label.text,
                    scene.mapRectToScene(SetLabel(label, scene.height()).text()),
                    label.colour.toQColor(), opacity, picture);
        }
    }

    void measureText(const QString &words, const QRectF &place, const QColor &color, double opacity,
        const QImage &picture)
    {
        const QRect area = place.toAlignedRect() & picture.rect();
        Pixels pixels;
        for (int y = area.top(); y <= area.bottom(); ++y) {
            const auto *line = reinterpret_cast<const QRgb *>(picture.constScanLine(y));
            for (int x = area.left(), from = x; x <= area.right(); ++x) {
                if (x == area.right() || line[x + 1] != line[x]) {
                    pixels[line[x]] += x + 1 - from;
                    from = x + 1;
                }
            }
        }
        QRgb ground = 0;
        for (const auto [pixel, count] : pixels.asKeyValueRange()) {
            if (distance(pixel, color.rgb()) > 12 && count > pixels.value(ground))
                ground = pixel;
        }
        const QColor expected = over(QColor(ground), color, color.alphaF() * opacity);
        QRgb drawn = 0;
        for (const auto [pixel, count] : pixels.asKeyValueRange()) {
            if (distance(pixel, expected.rgb()) <= 12 && count > pixels.value(drawn))
                drawn = pixel;
        }
        if (pixels.value(drawn) < 3) {
            undrawn_ += words + u" in "_s + expected.name();
            return;
        }
        QColor opaque = color;
        opaque.setAlpha(255);
        const int percent = qRound(color.alphaF() * opacity * 100);
        const QString style = nameOf(opaque)
            + (percent < 100 ? u" at %1 %"_s.arg(percent) : QString()) + u" on "_s
            + nameOf(QColor(ground));
        const double measured = ratio(QColor(drawn), QColor(ground));
        styles_[style] = std::min(styles_.value(style, measured), measured);
    }

    QMap<QString, double> styles_; // the least ratio of each style that was met
    QStringList undrawn_; // texts whose colour is nowhere to be seen
};

QTEST_MAIN(ContrastTest)
#include "contrast_test.moc"
