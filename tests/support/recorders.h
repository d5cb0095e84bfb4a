#pragma once

#include "link/shell.h"

/// Stand-ins for the rooms above the link. Each notes what it is asked for in `calls`, a line a
/// call such as "setFullScreen 1", and answers as its public fields say.
namespace kelo::test {

class RecordingShell final : public Shell {
public:
    RecordingShell() = default;

    QStringList calls;
    bool hidden = false;
    bool loginItem = false; ///< what `loginItemOn` answers; follows `setLoginItem`
    bool loginItemFails = false;
    QString midiFile; ///< what the user chooses; empty when the choice is cancelled

    [[nodiscard]] bool mainWindowHidden() const override { return hidden; }
    void showMainWindow() override;
    void hideMainWindow() override;
    void setFullScreen(bool on) override;
    void showOverlay(double seconds) override;
    bool setLoginItem(bool on) override;
    [[nodiscard]] bool loginItemOn() const override { return loginItem; }
    void setHighContrast(bool on) override;
    void chooseMidiFile(
        const QString &folder, std::function<void(const QString &path)> chosen) override;
    void relaunch() override;
    void quit() override;
};

class RecordingEars final : public Ears {
public:
    RecordingEars() = default;

    QStringList calls;
    bool on = false;

    [[nodiscard]] bool isOn() const override { return on; }
    void begin() override;
    void stop() override;
    void listen() override;
    void setVocabulary(const QStringList &phrases) override;
};

class RecordingStage final : public NoteStage {
public:
    RecordingStage() = default;

    QStringList calls;

    void note(qint64 pitch, double strength, bool mine) override;
    void clearRoll() override;
};

} // namespace kelo::test
