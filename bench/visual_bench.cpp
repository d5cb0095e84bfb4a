// What a frame of everything that moves costs, each on its own and the idle console as a whole.

#include "app/display_scale.h"
#include "app/main_view.h"
#include "frame_meter.h"
#include "link/link.h"
#include "support/figures.h"
#include "visual/motion/frame_pacer.h"
#include "visual/motion/scene_item.h"
#include "voice/voice_control.h"
#include "welcome/welcome_questions.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickView>
#include <QSGSimpleRectNode>
#include <QTemporaryDir>

#include <cstdio>

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::bench;

namespace {

constexpr double measured = 4; // seconds

/// A window with one item of the visual module over a link that no engine speaks to.
class Stand {
public:
    Stand(const QString &type, QSize size)
    {
        window_.engine()->addImportPath(u"qrc:/qt/qml"_s);
        window_.setColor(Qt::black);
        window_.setResizeMode(QQuickView::SizeRootObjectToView);
        QQmlComponent component(window_.engine());
        component.setData(u"import Kelo.Visual\n%1 {}"_s.arg(type).toUtf8(), QUrl());
        auto *item = qobject_cast<SceneItem *>(component.create());
        if (!item)
            qFatal("%s", qPrintable(component.errorString()));
        window_.resize(size);
        window_.setContent(QUrl(), nullptr, item);
        item->setLink(&link);
        link.engineIs(EngineState::Online);
    }

    FrameCost measure(const std::function<void()> &tick = {})
    {
        return bench::measure(window_, measured, tick);
    }

private:
    QTemporaryDir home_;

public:
    Link link{LinkSetup{home_.path(), home_.path(), {},
        std::make_unique<QSettings>(home_.filePath(u"s.ini"_s), QSettings::IniFormat)}};

private:
    QQuickView window_;
};

/// An item that is drawn anew each frame, with next to nothing in it.
class Dot final : public QQuickItem {
public:
    Dot()
    {
        setFlag(ItemHasContents);
        QObject::connect(&pacer_, &FramePacer::frame, this, &QQuickItem::update);
        pacer_.setRate(120);
    }

protected:
    QSGNode *updatePaintNode(QSGNode *old, UpdatePaintNodeData *) override
    {
        auto *node = old ? static_cast<QSGSimpleRectNode *>(old)
                         : new QSGSimpleRectNode({0, 0, 1, 1}, Qt::white);
        node->markDirty(QSGNode::DirtyGeometry);
        return node;
    }

private:
    FramePacer pacer_{*this};
};

/// What no frame can cost less than.
void floorOfAll()
{
    for (const QSize size : {QSize(360, 400), QSize(1240, 160), QSize(1240, 840)}) {
        QQuickView window;
        window.setColor(Qt::black);
        window.setContent(QUrl(), nullptr, new Dot);
        window.resize(size);
        print(u"a window of %1x%2 with one dot"_s.arg(size.width()).arg(size.height()),
            measure(window, measured));
    }
}

/// A roll that keeps `inView` notes of half a second above the keys, for a minute.
void playRoll(Link &link, double inView)
{
    constexpr double view = (840 - 160) / 330.0; // seconds of the roll that can be seen
    constexpr double lasts = 0.5;
    const double spacing = (view + lasts) / inView;
    link.handle("rollnew Figures");
    for (double t = 0; t < 60;) {
        QByteArray line = "rolln ";
        for (int i = 0; i < 200; ++i, t += spacing) {
            line += QByteArray::number(t, 'f', 5) + ",0.5,"
                + QByteArray::number(21 + static_cast<int>(t / spacing * 37) % 88) + ",90,"
                + QByteArray::number(i % 2) + ';';
        }
        link.handle(line);
    }
    link.handle("rollstart -5 60");
}

void fallingNotes()
{
    for (const int notes : {100, 300, 500, 2000}) {
        Stand stand(u"Visualiser"_s, {1240, 840});
        playRoll(stand.link, notes);
        for (int i = 0; i < 30; ++i) // 30 glows, and as many fires: 400 sparks
            stand.link.handle("on " + QByteArray::number(30 + 2 * i) + " 90");
        print(u"%1 falling notes, 30 glows, 400 sparks, 1240x840"_s.arg(notes), stand.measure());
    }
    Stand stand(u"Visualiser"_s, {1280, 720});
    playRoll(stand.link, 1300 / 60.0 * 2.5); // 1,300 notes a minute
    print(u"a song of 1,300 notes in a minute, 1280x720"_s, stand.measure());
}

void ring()
{
    Stand stand(u"Core"_s, {360, 400});
    stand.link.handle("say A sentence without a spectrum, so that the ring shimmers with it.");
    print(u"ring 360 wide, speaking"_s, stand.measure());
}

void caption()
{
    Stand stand(u"Caption"_s, {1240, 120});
    int word = 0;
    print(u"caption of 74 letters"_s, stand.measure([&] {
        if (word++ % 300 == 0) {
            stand.link.handle("say " + QByteArray("seventy-four ").repeated(6).left(74));
            stand.link.handle("word 0 74 9000");
        }
    }));
}

/// A pianist who holds `held` keys, and lets go of one for another `rate` times a second.
void strip(int held, int rate)
{
    Stand stand(u"Keys"_s, {1240, 160});
    QElapsedTimer time;
    time.start();
    int key = 0;
    const auto pitch = [](int of) { return QByteArray::number(21 + of * 37 % 88); };
    print(u"keyboard strip 1240x160, %1 keys held, %2 a second"_s.arg(held).arg(rate),
        stand.measure([&] {
            for (; key < held || (key - held) * 1000 < time.elapsed() * rate; ++key) {
                stand.link.handle("on " + pitch(key) + " 90");
                if (key >= held)
                    stand.link.handle("on " + pitch(key - held) + " 0");
            }
        }));
}

void idleConsole()
{
    const QTemporaryDir home;
    Link link{LinkSetup{home.path(), home.path(), {},
        std::make_unique<QSettings>(home.filePath(u"s.ini"_s), QSettings::IniFormat)}};
    VoiceControl voice;
    WelcomeQuestions questions(link, voice);
    QSettings settings(home.filePath(u"d.ini"_s), QSettings::IniFormat);
    DisplayScale scale(settings);
    link.engineIs(EngineState::Online);
    QQuickView window;
    fillWithMainView(window, {&link, &voice, &questions, &scale, nullptr, nullptr});
    window.resize(1240, 840);
    const auto say = [&](const QString &what, double settling, double seconds) {
        const FrameCost cost = measure(window, seconds, {}, settling);
        print(what + u": frames"_s, cost.frames / seconds, u"a second"_s);
        print(what + u": CPU"_s, cost.cpu, u"% of a core"_s);
    };
    link.handle("rollnew x");
    say(u"console, the ring lively"_s, 1.5, measured);
    link.handle("rollstop");
    say(u"console, the ring calm"_s, 2.2, 2); // lively after what happened, then calm, then at rest
    say(u"idle console"_s, 5, measured);
}

} // namespace

int main(int argc, char **argv)
{
    const QApplication app(argc, argv);
    printMachine();
    const QStringList wanted = QApplication::arguments().mid(1);
    const auto wants = [&](const QString &name) {
        return wanted.isEmpty() || wanted.contains(name);
    };
    if (wants(u"floor"_s))
        floorOfAll();
    if (wants(u"notes"_s))
        fallingNotes();
    if (wants(u"ring"_s))
        ring();
    if (wants(u"caption"_s))
        caption();
    if (wants(u"strip"_s)) {
        strip(10, 20); // two hands, fast
        strip(60, 100); // an arm on the keys
    }
    if (wants(u"idle"_s))
        idleConsole();
    return 0;
}
