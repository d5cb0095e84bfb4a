#include "app/desktop/background_portal.h"

#include "app/desktop/portal.h"

#include <QSettings>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

const QString loginKey = u"login"_s;

} // namespace

BackgroundPortal::BackgroundPortal(QSettings &settings)
    : settings_(settings)
{
}

bool BackgroundPortal::on() const
{
    return settings_.value(loginKey).toBool();
}

bool BackgroundPortal::set(bool on)
{
    settings_.setValue(loginKey, on);
    Q_EMIT changed();
    request(on);
    return true;
}

void BackgroundPortal::request(bool autostart)
{
    const QVariantMap options{
        {u"reason"_s, tr("Kelo listens for you while its window is closed.")},
        {u"autostart"_s, autostart},
        {u"commandline"_s, QStringList{u"kelo"_s, u"--hidden"_s}},
        {u"dbus-activatable"_s, false},
    };
    portal::Request::send(portal::call(u"Background"_s, u"RequestBackground"_s, {QString()}),
        options, this, [this, autostart](bool granted, const QVariantMap &results) {
            if (!autostart || !on() || (granted && results.value(u"autostart"_s).toBool()))
                return;
            settings_.setValue(loginKey, false);
            Q_EMIT changed();
            Q_EMIT refused();
        });
}

} // namespace kelo
