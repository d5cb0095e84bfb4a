#include "app/snapshot.h"

#include "app/display_scale.h"
#include "app/main_view.h"
#include "app/snapshot_scenes.h"
#include "hud/theme.h"
#include "link/link.h"
#include "link/manual_time.h"
#include "voice/voice_control.h"
#include "welcome/welcome_questions.h"

#include <QDir>
#include <QImage>
#include <QLoggingCategory>
#include <QQuickItem>
#include <QQuickView>
#include <QSGRendererInterface>
#include <QTemporaryDir>

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

/// The window as it would show, without showing it. A null image when it draws in software only.
QImage picture(QQuickView &window, QSize size)
{
    window.resize(size);
    window.contentItem()->setSize(size);
    window.rootObject()->setSize(size);
    QImage image = window.grabWindow();
    // What was laid out during the first frame is drawn for good in the second.
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

bool writeScene(const QDir &folder, const SnapshotScene &scene, bool contrast)
{
    const QTemporaryDir home;
    ManualTime time;
    Link link(freshSetup(home, time));
    VoiceControl voice;
    Hud::shared().setContrast(contrast);
    link.contrast = contrast;
    link.welcomeStepForSnapshot = scene.question;
    WelcomeQuestions questions(link, voice);
    QSettings settings(home.filePath(u"display.ini"_s), QSettings::IniFormat);
    settings.setValue(u"scale"_s, scene.scale);
    DisplayScale scale(settings);
    for (const SnapshotStep &step : scene.steps) {
        time.advance(step.after);
        for (const QByteArray &line : step.lines)
            link.handle(line);
    }
    if (scene.offline)
        link.state = u"OFFLINE"_s;

    QQuickView window;
    fillWithMainView(window, {&link, &voice, &questions, &scale, nullptr, nullptr});
    for (const QSize size : scene.sizes) {
        const QImage image = picture(window, size);
        const QString file = folder.filePath(fileName(scene, contrast, size));
        if (image.isNull() || !image.save(file)) {
            qCCritical(appLog) << "no picture of" << scene.name << "could be written to" << file;
            return false;
        }
    }
    return true;
}

} // namespace

int writeSnapshots(const QString &folder)
{
    const QDir target(folder);
    if (!target.mkpath(u"."_s)) {
        qCCritical(appLog) << "can't make the folder" << folder;
        return 1;
    }
    for (const SnapshotScene &scene : snapshotScenes()) {
        for (const bool contrast : {false, true}) {
            if (!writeScene(target, scene, contrast))
                return 1;
        }
    }
    return 0;
}

} // namespace kelo
