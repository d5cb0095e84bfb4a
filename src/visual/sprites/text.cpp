#include "visual/sprites/text.h"

#include <QFontDatabase>

#include <cmath>

namespace kelo {

QFont mono(double size, QFont::Weight weight)
{
    QFont font(QFontDatabase::systemFont(QFontDatabase::FixedFont).family());
    font.setStyleHint(QFont::Monospace);
    font.setPixelSize(static_cast<int>(std::lround(size)));
    font.setWeight(weight);
    return font;
}

} // namespace kelo
