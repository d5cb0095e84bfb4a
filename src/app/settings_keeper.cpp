#include "app/settings_keeper.h"

#include <QCoreApplication>
#include <QEvent>
#include <QLoggingCategory>
#include <QSettings>

#include <chrono>
#include <utility>

using namespace std::chrono_literals;

Q_DECLARE_LOGGING_CATEGORY(appLog)

namespace kelo {

SettingsKeeper::SettingsKeeper(const QSettings &settings, QObject *parent)
    : QObject(parent)
    , file_(settings.fileName())
{
    connect(&again_, &QTimer::timeout, this, &SettingsKeeper::keep);
    qApp->installEventFilter(this);
}

void SettingsKeeper::keep()
{
    // One of its own: the status of a QSettings stays bad once it was.
    QSettings settings(file_, QSettings::NativeFormat);
    settings.sync();
    const bool kept = settings.status() != QSettings::AccessError && settings.isWritable();
    if (kept == std::exchange(kept_, kept))
        return;
    if (kept) {
        again_.stop();
        qCInfo(appLog) << "settings are kept again in" << file_;
    } else {
        again_.start(5s);
        qCWarning(appLog) << "no setting can be kept in" << file_;
    }
    Q_EMIT keptChanged(kept);
}

/// A QSettings sends itself this event once something was set.
bool SettingsKeeper::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() == QEvent::UpdateRequest && qobject_cast<QSettings *>(object))
        keep();
    return false;
}

} // namespace kelo
