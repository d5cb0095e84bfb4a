#include "app/desktop/desktop_settings.h"

#include "app/desktop/portal.h"

#include <QDBusConnection>
#include <QDBusVariant>

#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

struct Setting {
    QStringView group;
    QStringView key;

    friend bool operator==(const Setting &, const Setting &) = default;
};

constexpr Setting contrast{u"org.freedesktop.appearance", u"contrast"}; // 1: more
constexpr Setting olderContrast{u"org.gnome.desktop.a11y.interface", u"high-contrast"};
constexpr Setting lessMotion{u"org.freedesktop.appearance", u"reduced-motion"}; // 1: reduce
constexpr Setting animations{u"org.gnome.desktop.interface", u"enable-animations"};
constexpr Setting textScale{u"org.gnome.desktop.interface", u"text-scaling-factor"};

constexpr std::array all{contrast, olderContrast, lessMotion, animations, textScale};

/// What is read comes as a variant within a variant.
QVariant inner(const QVariant &value)
{
    return value.canConvert<QDBusVariant>() ? inner(value.value<QDBusVariant>().variant()) : value;
}

} // namespace

DesktopSettings::DesktopSettings(
    std::function<void(const DesktopWishes &)> changed, QObject *parent)
    : QObject(parent)
    , changed_(std::move(changed))
{
    const QString name = u"Settings"_s;
    const QDBusMessage any = portal::call(name, {}, {});
    QDBusConnection::sessionBus().connect(any.service(), any.path(), any.interface(),
        u"SettingChanged"_s, this, SLOT(signalled(QDBusMessage)));
    for (const auto &[group, key] : all) {
        const QVariantList asked{group.toString(), key.toString()};
        portal::send(
            portal::call(name, u"Read"_s, asked), this, [this, asked](const QDBusMessage &reply) {
                if (reply.type() == QDBusMessage::ReplyMessage)
                    settingChanged(
                        asked[0].toString(), asked[1].toString(), reply.arguments().value(0));
            });
    }
}

void DesktopSettings::signalled(const QDBusMessage &signal)
{
    const QVariantList told = signal.arguments();
    if (told.size() == 3)
        settingChanged(told[0].toString(), told[1].toString(), told[2]);
}

void DesktopSettings::settingChanged(
    const QString &group, const QString &key, const QVariant &value)
{
    const Setting setting{group, key};
    const QVariant told = inner(value);
    DesktopWishes wishes = wishes_;
    if (setting == contrast)
        sharedContrast_ = told.toUInt() == 1;
    else if (setting == olderContrast)
        olderContrast_ = told.toBool();
    else if (setting == lessMotion)
        sharedLessMotion_ = told.toUInt() == 1;
    else if (setting == animations)
        olderAnimations_ = told.toBool();
    else if (setting == textScale)
        wishes.textScale = told.toDouble();
    wishes.contrast = sharedContrast_ || olderContrast_;
    wishes.lessMotion = sharedLessMotion_ || !olderAnimations_;
    if (wishes != std::exchange(wishes_, wishes))
        changed_(wishes);
}

} // namespace kelo
