#include "visual/keys/keyboard.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace kelo::keyboard {

int whiteIndex(qint64 pitch)
{
    if (!contains(pitch))
        return 0;
    const qint64 base = isBlack(pitch) ? pitch - 1 : pitch;
    const auto *const found = std::ranges::lower_bound(whites, base);
    return static_cast<int>(found - whites.begin());
}

double centre(qint64 pitch, double keyWidth)
{
    const int index = whiteIndex(pitch);
    return isBlack(pitch) ? (index + 1) * keyWidth : (index + 0.5) * keyWidth;
}

QString commandKeyLabel(qsizetype place)
{
    if (place < 8)
        return QString::number(place + 1);
    return place == 8 ? u"H"_s : u"K"_s;
}

} // namespace kelo::keyboard
