#include "hud/theme.h"

#include <QFontDatabase>
#include <QQmlEngine>
#include <QSettings>

using namespace Qt::StringLiterals;

namespace kelo {

Hud::Hud()
    : contrast_(QSettings().value(u"contrast"_s, false).toBool())
{
}

Hud &Hud::shared()
{
    static Hud hud;
    return hud;
}

Hud *Hud::create(QQmlEngine *, QJSEngine *)
{
    QJSEngine::setObjectOwnership(&shared(), QJSEngine::CppOwnership);
    return &shared();
}

QColor Hud::bg()
{
    return QColor::fromRgbF(0.008F, 0.022F, 0.014F);
}

QColor Hud::panel()
{
    return QColor::fromRgbF(0.02F, 0.07F, 0.045F);
}

QColor Hud::green()
{
    return QColor::fromRgbF(0.22F, 1.0F, 0.53F);
}

QColor Hud::faint()
{
    return QColor::fromRgbF(0.06F, 0.24F, 0.14F);
}

QColor Hud::soft() const
{
    return contrast_ ? QColor::fromRgbF(0.96F, 1.0F, 0.97F) : QColor::fromRgbF(0.55F, 1.0F, 0.78F);
}

QColor Hud::dim() const
{
    return contrast_ ? QColor::fromRgbF(0.72F, 0.95F, 0.82F)
                     : QColor::fromRgbF(0.24F, 0.68F, 0.43F);
}

void Hud::setContrast(bool on)
{
    if (on == contrast_)
        return;
    contrast_ = on;
    Q_EMIT contrastChanged();
}

QFont Hud::mono(double size, int weight, double tracking)
{
    QFont font(QFontDatabase::systemFont(QFontDatabase::FixedFont).family());
    font.setStyleHint(QFont::Monospace);
    font.setPixelSize(qRound(size));
    font.setWeight(static_cast<QFont::Weight>(weight));
    font.setLetterSpacing(QFont::AbsoluteSpacing, tracking);
    return font;
}

} // namespace kelo
