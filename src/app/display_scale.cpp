#include "app/display_scale.h"

#include <QSettings>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

const QString scaleKey = u"scale"_s;

} // namespace

DisplayScale::DisplayScale(QSettings &settings, QObject *parent)
    : QObject(parent)
    , settings_(settings)
{
    const double kept = settings.value(scaleKey, 1.0).toDouble();
    if (kept >= smallest * step && kept <= largest * step) // a number, for one
        steps_ = static_cast<int>(std::lround(kept / step));
}

void DisplayScale::take(int steps)
{
    const int allowed = std::clamp(steps, smallest, largest);
    if (allowed == steps_)
        return;
    steps_ = allowed;
    settings_.setValue(scaleKey, factor());
    Q_EMIT factorChanged();
}

} // namespace kelo
