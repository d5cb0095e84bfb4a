#include "support/recorders.h"

using namespace Qt::StringLiterals;

namespace kelo::test {

void RecordingShell::showMainWindow()
{
    calls << u"showMainWindow"_s;
    hidden = false;
}

void RecordingShell::hideMainWindow()
{
    calls << u"hideMainWindow"_s;
    hidden = true;
}

void RecordingShell::setFullScreen(bool on)
{
    calls << u"setFullScreen %1"_s.arg(on);
}

void RecordingShell::showOverlay(double seconds)
{
    calls << u"showOverlay %1"_s.arg(seconds);
}

bool RecordingShell::setLoginItem(bool on)
{
    calls << u"setLoginItem %1"_s.arg(on);
    if (!loginItemFails)
        loginItem = on;
    return !loginItemFails;
}

void RecordingShell::setHighContrast(bool on)
{
    calls << u"setHighContrast %1"_s.arg(on);
}

void RecordingShell::chooseMidiFile(
    const QString & /*folder*/, std::function<void(const QString &path)> chosen)
{
    calls << u"chooseMidiFile"_s;
    if (!midiFile.isEmpty())
        chosen(midiFile);
}

void RecordingShell::relaunch()
{
    calls << u"relaunch"_s;
}

void RecordingShell::quit()
{
    calls << u"quit"_s;
}

void RecordingEars::begin()
{
    calls << u"begin"_s;
    on = true;
}

void RecordingEars::stop()
{
    calls << u"stop"_s;
    on = false;
}

void RecordingEars::listen()
{
    calls << u"listen"_s;
}

void RecordingEars::setVocabulary(const QStringList &phrases)
{
    calls << u"vocabulary "_s + phrases.join(u',');
}

void RecordingStage::note(qint64 pitch, double strength, bool mine)
{
    calls << u"note %1 %2 %3"_s.arg(pitch).arg(strength).arg(mine);
}

void RecordingStage::clearRoll()
{
    calls << u"clearRoll"_s;
}

} // namespace kelo::test
