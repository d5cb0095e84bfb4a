#pragma once

#include <QObject>
#include <QTimer>

class QSettings;

namespace kelo {

/// Watches whether the disk takes what the process sets, in any of its QSettings, which share one
/// file. What could not be written is tried again every five seconds. On the GUI thread.
class SettingsKeeper : public QObject {
    Q_OBJECT

public:
    explicit SettingsKeeper(const QSettings &settings, QObject *parent = nullptr);

    /// Looks, and writes what waits, at once.
    void keep();

Q_SIGNALS:
    /// The disk begins to refuse them, or has taken them after all.
    void keptChanged(bool kept);

protected:
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    QString file_;
    bool kept_ = true;
    QTimer again_;
};

} // namespace kelo
