#pragma once

#include <QJsonObject>
#include <QMap>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>

/// The engine itself, driven as a display does: by its standard streams. It has a home of its own
/// and, if one is plugged in, a piano that is a pipe.
class EngineProcess {
public:
    /// Someone called Ann has been here before, unless `known` is false.
    explicit EngineProcess(bool known = true);

    /// `settings` are of its environment, over those that every test has.
    void start(const QStringList &arguments = {}, const QMap<QString, QString> &settings = {});

    /// Asks it to quit and says what was wrong with that or with any of its lines; empty if
    /// nothing was.
    [[nodiscard]] QString end();

    void send(const QByteArray &bytes) const;

    /// Waits until a line matches, after those that have matched before; gives it back without
    /// "@", or nothing after `seconds`.
    QString waitFor(const QString &pattern, int seconds = 10);

    /// Says something to it and waits for what it answers.
    QString ask(const QByteArray &request);

    /// Starts and cuts the greeting short.
    void begin(bool withPiano = false);
    /// Sends, and expects each of these lines in this order.
    void expect(const QByteArray &bytes, const QStringList &patterns);
    [[nodiscard]] QJsonObject profile() const;

    void plugIn();
    void pullOut();
    void play(int pitch, int velocity = 80) const;
    /// Presses and lets go of each key, one after the other.
    void tap(const QList<int> &pitches);

    [[nodiscard]] QString path(const QString &name) const { return folder.filePath(name); }
    QString write(const QString &name, const QByteArray &bytes) const;

    std::unique_ptr<QProcess> process;
    QStringList lines; ///< all that it has said, with "@"

private:
    void read();

    QTemporaryDir folder;
    qsizetype seen = 0;
    int piano = -1;
};

/// Tests with an engine each, which has to end in order whatever it went through.
class EngineTest : public QObject {
    Q_OBJECT

protected:
    void start(bool withPiano = false) { engine->begin(withPiano); }
    void expect(const QByteArray &bytes, const QStringList &patterns)
    {
        engine->expect(bytes, patterns);
    }

    std::unique_ptr<EngineProcess> engine;

protected Q_SLOTS:
    virtual void init() { engine = std::make_unique<EngineProcess>(); }
    virtual void cleanup();
};
