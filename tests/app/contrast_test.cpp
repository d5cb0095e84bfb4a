#include "app/display_scale.h"
#include "app/main_view.h"
#include "hud/theme.h"
#include "support/link_fixture.h"
#include "support/table.h"
#include "visual/caption/caption_scene.h"
#include "visual/motion/scene_item.h"
#include "visual/sprites/sprite_item.h"
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

QColor over(const QColor &ground, const QColor &color, double opacity)
{
    const auto mixed = [opacity](float below, float above) {
        return below + (above - below) * static_cast<float>(opacity);
    };
    return QColor::fromRgbF(mixed(ground.redF(), color.redF()),
        mixed(ground.greenF(), color.greenF()), mixed(ground.blueF(), color.blueF()));
}

QString nameOf(QColor color)
{
    color.setAlpha(255);
    const QList<std::pair<QString, QColor>> known{{u"bg"_s, Hud::bg()}, {u"green"_s, Hud::green()},
        {u"faint"_s, Hud::faint()}, {u"soft"_s, Hud::shared().soft()},
        {u"dim"_s, Hud::shared().dim()},
        {u"ahead"_s, captionColour(-20, Hud::shared().contrast()).toQColor()}};
    for (const auto &[name, value] : known) {
        if (value.rgb() == color.rgb())
            return name;
    }
    return color.name();
}

} // namespace

/// What can be read: the colour and opacity of all text on every screen against what the display
/// puts under it, which is its background, a panel or, for dark text, a lit control.
class ContrastTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { styles_.clear(); }

    void textIsReadable_data()
    {
        const Table<bool, QMap<QString, double>> row{"contrast", "exceptions"};
        // The look's fixed colours, and how far they get. High contrast is the way out for all.
        row("normal", false, {{u"ahead"_s, 3.2}, {u"dim"_s, 6.7}, {u"green at 50 %"_s, 4.2}});
        row("high contrast", true, {});
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

        QVERIFY2(styles_.size() > 6, "hardly anything was met");
        using Ratios = QMap<QString, double>;
        QFETCH(Ratios, exceptions);
        for (const auto [style, measured] : styles_.asKeyValueRange()) {
            if (measured >= 7)
                continue;
            const QString finding = u"%1: %2"_s.arg(style).arg(measured, 0, 'f', 2);
            QVERIFY2(exceptions.contains(style), qPrintable(finding));
            QVERIFY2(measured > exceptions.take(style) - 0.05, qPrintable(finding));
        }
        const QStringList left = exceptions.keys();
        QVERIFY2(left.isEmpty(), qPrintable(left.join(u", "_s)));
    }

private:
    /// The display as the engine's `lines` leave it.
    void measureScreen(int question, std::initializer_list<QByteArrayView> lines)
    {
        LinkFixture link;
        link->setWelcomeStepForSnapshot(question);
        link->followContrast(Hud::shared().contrast());
        VoiceControl voice;
        WelcomeQuestions questions(link.link(), link.ears);
        QSettings settings(link.folder.filePath(u"display.ini"_s), QSettings::IniFormat);
        DisplayScale scale(settings);
        link.say(lines);
        QQuickView window;
        fillWithMainView(window, {&link.link(), &voice, &questions, &scale, nullptr, nullptr});
        window.resize(1240, 840);
        window.contentItem()->setSize(window.size());
        window.rootObject()->setSize(window.size());
        window.grabWindow(); // lays everything out
        const auto scenes = window.rootObject()->findChildren<SceneItem *>();
        for (int frame = 0; frame < 60; ++frame) {
            link.time.advance(1.0 / 60);
            for (SceneItem *scene : scenes)
                scene->refresh();
        }
        measureTexts(window.rootObject(), 1);
    }

    void measureTexts(QQuickItem *item, double opacity)
    {
        opacity *= item->opacity();
        if (!item->isVisible() || opacity == 0)
            return;
        if (item->inherits("QQuickText") || item->inherits("QQuickTextInput")) {
            if (!item->property("text").toString().trimmed().isEmpty())
                measure(item->property("color").value<QColor>(), opacity);
        } else if (item->inherits("kelo::CaptionItem")) {
            for (const double past : {-20.0, 20.0})
                measure(captionColour(past, Hud::shared().contrast()).toQColor(), opacity);
        } else if (const auto *scene = qobject_cast<SpriteItem *>(item)) {
            for (const Layer &layer : scene->picture()) {
                for (const Label &label : layer.labels)
                    measure(label.colour.toQColor(), opacity);
            }
        }
        if (item->inherits("QQuickText"))
            return; // what is inside it lights it from behind
        for (QQuickItem *child : item->childItems())
            measureTexts(child, opacity);
    }

    void measure(const QColor &color, double opacity)
    {
        const double seen = color.alphaF() * opacity;
        double least = 21;
        for (const QColor &ground :
            luminance(color) > 0.1 ? QList{Hud::bg(), Hud::panel()} : QList{Hud::green()})
            least = std::min(least, ratio(over(ground, color, seen), ground));
        const int percent = qRound(seen * 100);
        const QString style =
            nameOf(color) + (percent < 100 ? u" at %1 %"_s.arg(percent) : QString());
        styles_[style] = std::min(styles_.value(style, least), least);
    }

    QMap<QString, double> styles_; // the least ratio of each style that was met
};

QTEST_MAIN(ContrastTest)
#include "contrast_test.moc"
