#include "app/display_scale.h"

#include <QScreen>
#include <QSettings>

#include <algorithm>
#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

const QString scaleKey = u"scale"_s;
const QString toldKey = u"scaleTold"_s;

constexpr double designedFor = 1080; // pixels of a screen's short side
constexpr double designedDensity = 96; // dots per inch
constexpr double leastDensity =
    60; // projectors, and screens that do not know their size, tell less
constexpr double greatestDensity = 500;
constexpr QSize leastRoom{620, 420}; // for the parts of the display to stand one above the other
constexpr double quarter = 0.25;

/// As large as the same thing is on the screen that the display was designed on.
double enlargedBy(const ScreenFacts &facts)
{
    const double shortSide = std::min(facts.size.width(), facts.size.height()) * facts.magnified;
    double wanted = std::max(1.0, shortSide / designedFor);
    if (facts.dotsPerInch >= leastDensity && facts.dotsPerInch <= greatestDensity)
        wanted = std::max(wanted, facts.dotsPerInch / designedDensity);
    return wanted / facts.magnified;
}

} // namespace

double suitableScale(const ScreenFacts &facts)
{
    const double most = std::min(facts.size.width() * 1.0 / leastRoom.width(),
        facts.size.height() * 1.0 / leastRoom.height());
    const double wanted = std::min(enlargedBy(facts) * std::clamp(facts.textScale, 0.5, 3.0), most);
    return std::max(1.0, std::floor(wanted / quarter + 0.01) * quarter);
}

ScreenFacts factsOf(const QScreen &screen)
{
    const double magnified = screen.devicePixelRatio();
    return {screen.size(), magnified, screen.physicalDotsPerInch() * magnified};
}

DisplayScale::DisplayScale(QSettings &settings, QObject *parent)
    : QObject(parent)
    , settings_(settings)
{
    const double kept = settings.value(scaleKey, 1.0).toDouble();
    if (kept >= smallest * step && kept <= largest * step) // a number, for one
        steps_ = static_cast<int>(std::lround(kept / step));
}

void DisplayScale::suit(ScreenFacts screen)
{
    screen.textScale = facts_.textScale;
    facts_ = screen;
    const int wanted = std::min(static_cast<int>(suitableScale(facts_) / step), largest);
    if (wanted == std::exchange(suitable_, wanted) || settings_.contains(scaleKey))
        return;
    steps_ = wanted;
    Q_EMIT factorChanged();
}

void DisplayScale::setTextScale(double factor)
{
    facts_.textScale = factor;
    suit(facts_);
}

bool DisplayScale::takeNews()
{
    if (settings_.contains(scaleKey) || steps_ == settings_.value(toldKey, normal).toInt()
        || steps_ == normal) // or the desktop has not said yet how it enlarges texts
        return false;
    settings_.setValue(toldKey, steps_);
    return true;
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
