#include "app/snapshot.h"

#include "app/display_scale.h"
#include "app/main_view.h"
#include "hud/theme.h"
#include "link/link.h"
#include "link/manual_time.h"
#include "visual/motion/scene_item.h"
#include "voice/voice_control.h"
#include "welcome/welcome_questions.h"

#include <QDir>
#include <QImage>
#include <QLoggingCategory>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QSGRendererInterface>
#include <QTemporaryDir>

#include <cmath>

using namespace Qt::StringLiterals;

Q_DECLARE_LOGGING_CATEGORY(appLog)

namespace kelo {

namespace {

/// A link that no engine and no user has ever touched.
LinkSetup freshSetup(const QTemporaryDir &home, TimeSource &time)
{
    return {home.path(), home.path(), {},
        std::make_unique<QSettings>(home.filePath(u"settings.ini"_s), QSettings::IniFormat), time};
}

/// Brings all that moves in `item` to the time of its link.
void refresh(QQuickItem &item)
{
    if (auto *scene = qobject_cast<SceneItem *>(&item))
        scene->refresh();
    for (QQuickItem *child : item.childItems())
        refresh(*child);
}

/// Lets `seconds` pass in even frames, so that what swings and glides gets to where it would be.
void pass(double seconds, ManualTime &time, Link &link, QQuickView &window)
{
    constexpr double frame = 1.0 / 60;
    const int frames = static_cast<int>(std::ceil(seconds / frame - 0.001));
    for (int i = 0; i < frames; ++i) {
        time.advance(seconds / frames);
        link.updateBars(time.now());
        refresh(*window.rootObject());
    }
}

/// The window as it would show, without showing it.
Snapshot picture(QQuickView &window)
{
    window.grabWindow();
    // What was laid out during the first frame is drawn for good in the second.
    refresh(*window.rootObject());
    const QImage image = window.grabWindow();
    const auto api = window.rendererInterface()->graphicsApi();
    return {image.convertToFormat(QImage::Format_RGB888), api == QSGRendererInterface::Software};
}

QString fileName(const SnapshotScene &scene, bool contrast, QSize size)
{
    if (scene.reference)
        return scene.name + u".png"_s;
    return u"%1%2-%3x%4.png"_s.arg(scene.name, contrast ? u"-contrast"_s : QString())
        .arg(size.width())
        .arg(size.height());
}

void handle(Link &link, const QByteArrayList &lines)
{
    for (const QByteArray &line : lines)
        link.handle(line);
}

/// Fills `window` with one item of the visual module.
void fillWithItem(QQuickView &window, const QString &type, Link &link)
{
    window.engine()->addImportPath(u"qrc:/qt/qml"_s);
    window.setColor(Hud::bg());
    QQmlComponent component(window.engine());
    component.setData(u"import Kelo.Visual\n%1 {}"_s.arg(type).toUtf8(), QUrl());
    auto *item = qobject_cast<SceneItem *>(component.create());
    if (!item)
        qFatal("%s", qPrintable(component.errorString()));
    item->setLink(&link);
    window.setContent(QUrl(), nullptr, item);
}

} // namespace

Snapshot drawSnapshot(const SnapshotScene &scene, bool contrast, QSize size)
{
    const QTemporaryDir home;
    ManualTime time;
    Link link(freshSetup(home, time));
    VoiceControl voice;
    Hud::shared().setContrast(contrast);
    link.setAccess(u"contrast"_s, contrast);
    link.setAccess(u"large"_s, scene.large);
    link.setWelcomeStepForSnapshot(scene.question);
    WelcomeQuestions questions(link, voice);
    QSettings settings(home.filePath(u"display.ini"_s), QSettings::IniFormat);
    settings.setValue(u"scale"_s, scene.scale);
    DisplayScale scale(settings);
    for (const SnapshotStep &step : scene.steps) {
        time.advance(step.after);
        handle(link, step.lines);
    }
    if (scene.offline)
        link.engineIs(EngineState::Offline);

    QQuickView window;
    if (scene.item.isEmpty())
        fillWithMainView(window, {&link, &voice, &questions, &scale, nullptr, nullptr});
    else
        fillWithItem(window, scene.item, link);
    window.resize(size);
    window.contentItem()->setSize(size);
    window.rootObject()->setSize(size);
    window.grabWindow(); // lays everything out
    for (const SnapshotStep &step : scene.shown) {
        pass(step.after, time, link, window);
        handle(link, step.lines);
    }
    return picture(window);
}

int writeSnapshots(const QString &folder, const QString &names)
{
    const QDir target(folder);
    if (!target.mkpath(u"."_s)) {
        qCCritical(appLog) << "can't make the folder" << folder;
        return 1;
    }
    for (const SnapshotScene &scene : snapshotScenes()) {
        if (!scene.name.startsWith(names))
            continue;
        for (const bool contrast : {false, true}) {
            if (scene.reference && contrast)
                continue;
            for (const QSize size : scene.sizes) {
                const QString file = target.filePath(fileName(scene, contrast, size));
                const auto [image, inSoftware] = drawSnapshot(scene, contrast, size);
                if (inSoftware || !image.save(file)) {
                    qCCritical(appLog)
                        << "no picture of" << scene.name << "could be written to" << file;
                    return 1;
                }
            }
        }
    }
    return 0;
}

} // namespace kelo
