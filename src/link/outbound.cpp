#include "link/engine_process.h"
#include "link/link.h"
#include "link/paths.h"
#include "link/shell.h"

#include <QDir>

#include <array>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

struct ModeName {
    QStringView mode;
    QStringView name;
};

// The engine may store any key; gone wild, it must not fill the user's settings.
constexpr qsizetype mostSettings = 256;

constexpr std::array modeNames{
    ModeName{u"talk", u"TALK"},
    ModeName{u"teach", u"LESSON"},
    ModeName{u"compose", u"COMPOSE"},
    ModeName{u"menu", u"SONG MENU"},
    ModeName{u"jazz", u"JAZZ"},
    ModeName{u"logic", u"LOGIC CONTROL"},
    ModeName{u"reaper", u"REAPER CONTROL"},
};

} // namespace

void Link::send(const QString &text)
{
    if (text.startsWith(u'#')) {
        if (text == u"#large")
            setAccess(u"large"_s, !large);
        else if (text == u"#contrast")
            setAccess(u"contrast"_s, !contrast);
        else if (text == u"#voice" && ears_)
            ears_->isOn() ? ears_->stop() : ears_->begin();
        return;
    }
    if (process_ && state.get() != u"OFFLINE")
        process_->write(text.toUtf8());
}

void Link::setAccess(const QString &key, bool on)
{
    QSettings &settings = *setup_.settings;
    if (settings.contains(key) || settings.allKeys().size() < mostSettings)
        settings.setValue(key, on);
    if (key == u"large") {
        large = on;
    } else if (key == u"contrast") {
        contrast = on;
        if (shell_)
            shell_->setHighContrast(on);
        Q_EMIT willChange(); // what reads the theme and not the field must redraw too
    }
}

void Link::chooseFile()
{
    if (!shell_)
        return;
    const QString songs = songsFolder();
    shell_->chooseMidiFile(
        QDir(songs).exists() ? songs : QString(), [this](const QString &path) { playFile(path); });
}

void Link::playFile(const QString &path)
{
    // A line feed in a file's name would begin a command of its own.
    if (path.isEmpty() || path.contains(u'\n'))
        return;
    visual = true;
    send(u"~play "_s + path + u'\n');
}

void Link::playUrl(const QUrl &url)
{
    playFile(url.toLocalFile()); // empty, and so ignored, for what is no file
}

QString Link::modeName() const
{
    for (const ModeName &known : modeNames) {
        if (mode.get() == known.mode)
            return known.name.toString();
    }
    return u"STANDBY"_s;
}

} // namespace kelo
