#pragma once

#include <QProcess>
#include <QString>
#include <QTemporaryDir>

namespace kelo::test {

/// A sound server of the test's own with one microphone in it, and somebody who speaks into that.
/// The test's process is led to this server and to no other.
class VirtualMicrophone {
public:
    VirtualMicrophone();
    ~VirtualMicrophone();

    /// What has to be installed and is not; empty when all is there.
    [[nodiscard]] static QString missing();

    /// Starts the server, with the microphone plugged in. False when it does not come up.
    bool start();
    /// The server dies.
    void kill();
    /// The server neither answers nor ends, until `thaw`.
    void freeze() const;
    void thaw() const;

    [[nodiscard]] bool pull() const;
    [[nodiscard]] bool plugIn() const;

    /// From here on the microphone hears the loudspeakers, 80 ms later.
    [[nodiscard]] bool hearSpeakers() const;

    /// Begins to say `text`; `isSpeaking` until it has been said. Or the loudspeakers say it.
    bool speak(const QString &text, const QString &into = QStringLiteral("vmic"));
    [[nodiscard]] bool isSpeaking() const { return speaker_.state() != QProcess::NotRunning; }

private:
    [[nodiscard]] QString path(const char *name) const;
    void signal(int number) const;
    [[nodiscard]] static bool control(const QStringList &arguments);

    QTemporaryDir folder_;
    QProcess server_;
    QProcess speaker_;
};

} // namespace kelo::test
