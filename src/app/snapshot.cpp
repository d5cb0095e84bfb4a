#include "app/snapshot.h"

#include "app/display_scale.h"
#include "app/main_view.h"
#include "app/snapshot_scenes.h"
#include "hud/theme.h"
#include "link/link.h"
#include "link/manual_time.h"
#include "visual/motion/scene_item.h"
#include "voice/voice_control.h"
#include "welcome/welcome_questions.h"

#include <QDir>
#include <QImage>
#include <QLoggingCategory>
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
    const QString settings = home.filePath(u"settings.ini"_s);
    QFile::remove(settings);
    return {home.path(), home.path(), {},
        std::make_unique<QSettings>(settings, QSettings::IniFormat), time};
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

/// The window as it would show, without showing it. A null image when it draws in software only.
QImage picture(QQuickView &window)
{
    QImage image = window.grabWindow();
    // What was laid out during the first frame is drawn for good in the second.
    refresh(*window.rootObject());
    image = window.grabWindow();
    const auto api = window.rendererInterface()->graphicsApi();
    return api == QSGRendererInterface::Software ? QImage() : image;
}

QString fileName(const SnapshotScene &scene, bool contrast, QSize size)
{
    return u"%1%2-%3x%4.png"_s.arg(scene.name, contrast ? u"-contrast"_s : QString())
        .arg(size.width())
        .arg(size.height());
}

void handle(Link &link, const QByteArrayList &lines)
{
    for (const QByteArray &line : lines)
        link.handle(line);
}

bool writeScene(const QDir &folder, const SnapshotScene &scene, bool contrast, QSize size)
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
    fillWithMainView(window, {&link, &voice, &questions, &scale, nullptr, nullptr});
    window.resize(size);
    window.contentItem()->setSize(size);
    window.rootObject()->setSize(size);
    window.grabWindow(); // lays everything out
    for (const SnapshotStep &step : scene.shown) {
        pass(step.after, time, link, window);
        handle(link, step.lines);
    }
    const QImage image = picture(window);
    const QString file = folder.filePath(fileName(scene, contrast, size));
    if (image.isNull() || !image.save(file)) {
        qCCritical(appLog) << "no picture of" << scene.name << "could be written to" << file;
        return false;
    }
    return true;
}

} // namespace

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
            for (const QSize size : scene.sizes) {
                if (!writeScene(target, scene, contrast, size))
                    return 1;
            }
        }
    }
    return 0;
}

} // namespace kelo
