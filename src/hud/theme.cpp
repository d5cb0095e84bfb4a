#include "hud/theme.h"

#include "visual/sprites/palette.h"
#include "visual/sprites/text.h"

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
    return colours::bg.toQColor();
}

QColor Hud::panel()
{
    return colours::panel.toQColor();
}

QColor Hud::green()
{
    return colours::green.toQColor();
}

QColor Hud::faint()
{
    return colours::faint.toQColor();
}

QColor Hud::soft() const
{
    return TextColours::of(contrast_).soft.toQColor();
}

QColor Hud::dim() const
{
    return TextColours::of(contrast_).dim.toQColor();
}

void Hud::setContrast(bool on)
{
    if (on == contrast_)
        return;
    contrast_ = on;
    Q_EMIT contrastChanged();
}

void Hud::setMagnified(bool on)
{
    if (on == magnified_)
        return;
    magnified_ = on;
    Q_EMIT magnifiedChanged();
}

QFont Hud::mono(double size, int weight, double tracking)
{
    QFont font = kelo::mono(size, static_cast<QFont::Weight>(weight));
    font.setLetterSpacing(QFont::AbsoluteSpacing, tracking);
    return font;
}

} // namespace kelo
