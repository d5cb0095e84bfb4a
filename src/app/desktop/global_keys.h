#pragma once

#include <QDBusMessage>
#include <QObject>

class QSettings;

namespace kelo {

/// Keys that reach Kelo whatever has the focus, as far as the desktop's portal gives such. Which
/// keys they are the user tells the desktop; Kelo only suggests some. Never blocks.
class GlobalKeys : public QObject {
    Q_OBJECT

public:
    /// Asks at once for what the user wanted at an earlier start: user default "globalKeys".
    /// `settings` must outlive it.
    explicit GlobalKeys(QSettings &settings, QObject *parent = nullptr);

    /// The desktop can give such keys.
    [[nodiscard]] bool possible() const { return possible_; }
    /// The user wants them: the desktop asks which, and is asked again at every later start.
    void want();

Q_SIGNALS:
    void listenPressed();
    void showPressed();
    /// What the user wanted came to this, in words.
    void told(const QString &text);

private Q_SLOTS:
    void activated(const QDBusMessage &signal);

private:
    void openSession();
    void bind();

    QSettings &settings_;
    bool possible_ = false;
    bool asked_ = false; // by the user, in this run
    QString session_; // empty for none
};

} // namespace kelo
