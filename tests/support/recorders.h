#pragma once

#include "link/shell.h"

/// Stand-ins for the rooms above the link. Each notes what it is asked for in `calls`, a line a
/// call such as "setFullScreen 1", and answers as its public fields say.
namespace kelo::test {

using namespace Qt::StringLiterals;

class RecordingShell final : public Shell {
public:
    QStringList calls;
    bool hidden = false;
    QString midiFile; ///< what the user chooses; empty when the choice is cancelled

    [[nodiscard]] bool mainWindowHidden() const override { return hidden; }
    void showMainWindow() override { calls << u"showMainWindow"_s; }
    void hideMainWindow() override { calls << u"hideMainWindow"_s; }
    void setFullScreen(bool on) override { calls << u"setFullScreen %1"_s.arg(on); }
    void showOverlay(double seconds) override { calls << u"showOverlay %1"_s.arg(seconds); }
    bool setLoginItem(bool on) override
    {
        calls << u"setLoginItem %1"_s.arg(on);
        return true;
    }
    [[nodiscard]] bool loginItemOn() const override { return false; }
    void setHighContrast(bool on) override { calls << u"setHighContrast %1"_s.arg(on); }
    void chooseMidiFile(
        const QString & /*folder*/, std::function<void(const QString &path)> chosen) override
    {
        calls << u"chooseMidiFile"_s;
        if (!midiFile.isEmpty())
            chosen(midiFile);
    }
    void relaunch() override { calls << u"relaunch"_s; }
    void quit() override { calls << u"quit"_s; }
};

class RecordingEars final : public Ears {
public:
    QStringList calls;
    bool on = false;

    [[nodiscard]] bool isOn() const override { return on; }
    void begin() override { note(u"begin"_s, true); }
    void stop() override { note(u"stop"_s, false); }
    void listen() override { calls << u"listen"_s; }
    void setVocabulary(const QStringList &phrases) override
    {
        calls << u"vocabulary "_s + phrases.join(u',');
    }

private:
    void note(const QString &call, bool onThen)
    {
        calls << call;
        on = onThen;
    }
};

class RecordingStage final : public NoteStage {
public:
    QStringList calls;

    void note(qint64 pitch, double strength, bool mine) override
    {
        calls << u"note %1 %2 %3"_s.arg(pitch).arg(strength).arg(mine);
    }
    void clearRoll() override { calls << u"clearRoll"_s; }
};

} // namespace kelo::test
