#pragma once

#include "link/link.h"
#include "link/manual_time.h"
#include "support/recorders.h"
#include "support/scripted_engine.h"

#include <QTemporaryDir>

#include <memory>

namespace kelo::test {

/// A link of its own for a test: a data directory and settings that vanish with it, a clock turned
/// by hand, recorders for the rooms above and a scripted engine. The link is made on first use, so
/// files can be laid out before.
class LinkFixture {
public:
    LinkFixture();
    ~LinkFixture();

    Link &link();
    Link *operator->() { return &link(); }

    /// Starts the engine, which follows the script from then on.
    void start(const QByteArray &script = {});
    /// Has the link believe that its engine is in this state.
    void bring(const QString &state);
    /// Has the link handle lines as they come from the engine, without "@".
    void say(std::initializer_list<QByteArrayView> lines);

    /// Writes a file below the data directory, folders included.
    void write(const QString &name, const QByteArray &contents) const;
    [[nodiscard]] QByteArray read(const QString &name) const;
    /// What is stored in the settings.
    [[nodiscard]] QVariant setting(const QString &key) const;

    QTemporaryDir folder; ///< holds all of it
    QString dataDir; ///< may be changed before the link is made
    QString payload = ScriptedEngine::payload(); ///< likewise
    QString settingsFile; ///< likewise
    ManualTime time;
    RecordingShell shell;
    RecordingEars ears;
    RecordingStage stage;
    ScriptedEngine engine;

private:
    std::unique_ptr<Link> link_;
};

} // namespace kelo::test
