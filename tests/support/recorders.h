#pragma once

#include "link/note_listener.h"
#include "link/shell.h"
#include "link/voice_input.h"

/// Stand-ins for the rooms above the link. Each notes what it is asked for in `calls`, a line a
/// call such as "setFullScreen 1", and answers as its public fields say.
namespace kelo::test {

class RecordingShell final : public Shell {
public:
    QStringList calls;
    bool hidden = false;
    bool loginWorks = true; ///< start at login can be switched
    bool login = false; ///< it is on
    QString midiFile; ///< what the user chooses; empty when the choice is cancelled

    [[nodiscard]] bool mainWindowHidden() const override { return hidden; }
    void showMainWindow() override { calls << QStringLiteral("showMainWindow"); }
    void hideMainWindow() override { calls << QStringLiteral("hideMainWindow"); }
    void setFullScreen(bool on) override { calls << QStringLiteral("setFullScreen %1").arg(on); }
    void showOverlay(double seconds) override
    {
        calls << QStringLiteral("showOverlay %1").arg(seconds);
    }
    bool setLoginItem(bool on) override
    {
        calls << QStringLiteral("setLoginItem %1").arg(on);
        login = loginWorks ? on : login;
        return loginWorks;
    }
    [[nodiscard]] bool loginItemOn() const override { return login; }
    void setHighContrast(bool on) override
    {
        calls << QStringLiteral("setHighContrast %1").arg(on);
    }
    void chooseMidiFile(
        const QString &folder, std::function<void(const QString &path)> chosen) override
    {
        calls << QStringLiteral("chooseMidiFile ") + folder;
        if (!midiFile.isEmpty())
            chosen(midiFile);
    }
    void relaunch() override { calls << QStringLiteral("relaunch"); }
    void quit() override { calls << QStringLiteral("quit"); }
};

class RecordingEars final : public VoiceInput {
public:
    QStringList calls;
    bool on = false;

    [[nodiscard]] bool isOn() const override { return on; }
    void begin() override { note(QStringLiteral("begin"), true); }
    void stop() override { note(QStringLiteral("stop"), false); }
    void listen() override { calls << QStringLiteral("listen"); }
    void setVocabulary(const QStringList &phrases) override
    {
        calls << (phrases.size() > 9 ? QStringLiteral("%1 phrases").arg(phrases.size())
                                     : QStringLiteral("vocabulary ") + phrases.join(u','));
    }
    void useMicrophone(const QString &wanted) override
    {
        calls << QStringLiteral("microphone ") + wanted;
    }

private:
    void note(const QString &call, bool onThen)
    {
        calls << call;
        on = onThen;
    }
};

class RecordingStage final : public NoteListener {
public:
    QStringList calls;

    void note(qint64 pitch, double strength, bool mine) override
    {
        calls << QStringLiteral("note %1 %2 %3").arg(pitch).arg(strength).arg(mine);
    }
    void clearRoll() override { calls << QStringLiteral("clearRoll"); }
};

} // namespace kelo::test
