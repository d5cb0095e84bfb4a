#include "visual/ring/ring_formula.h"

#include "visual/sprites/palette.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace kelo {

namespace {

using std::numbers::pi;

double bell(double distance, double width)
{
    return std::exp(-distance * distance / (2 * width * width));
}

double smoothstep(double from, double to, double x)
{
    const double t = std::clamp((x - from) / (to - from), 0.0, 1.0);
    return t * t * (3 - 2 * t);
}

/// The bands, blended around the ring: the lowest at its top, the highest at its bottom, mirrored
/// left and right.
double swellOf(const VoiceFrame &bands, double x, double y)
{
    constexpr double spread = 1.25; // bands
    const double place = std::abs(std::atan2(x, y)) / pi * (voiceBandCount - 1);
    double sum = 0;
    double weights = 0;
    for (std::size_t n = 0; n < bands.size(); ++n) {
        const double weight = bell(place - static_cast<double>(n), spread);
        sum += bands[n] * weight;
        weights += weight;
    }
    return sum / weights;
}

template <typename Pixel> QImage picture(QSize size, const Pixel &pixel)
{
    QImage image(size, QImage::Format_RGBA8888_Premultiplied);
    for (int row = 0; row < size.height(); ++row) {
        auto *bytes = image.scanLine(row);
        for (int column = 0; column < size.width(); ++column) {
            const Colour colour =
                pixel((column + 0.5) / size.width(), 1 - (row + 0.5) / size.height());
            for (const float part : {colour.red, colour.green, colour.blue, colour.alpha})
                *bytes++ = static_cast<uchar>(std::lround(part * 255));
        }
    }
    return image;
}

constexpr double base = 0.50; // where the waves begin
constexpr int layers = 3;

using Waves = std::array<double, layers>;

/// Where the three waves run, all around the ring.
class WaveTable {
public:
    explicit WaveTable(const RingLook &look)
    {
        for (std::size_t n = 0; n < table_.size(); ++n) {
            const double angle = 2 * pi * static_cast<double>(n) / steps;
            table_[n] = wavesAt(angle, look);
        }
    }

    [[nodiscard]] Waves at(double angle) const
    {
        const double place = (angle / (2 * pi) + 1) * steps;
        const double whole = std::floor(place);
        const auto n = static_cast<std::size_t>(whole) % steps;
        Waves waves;
        for (std::size_t i = 0; i < waves.size(); ++i)
            waves[i] = std::lerp(table_[n][i], table_[n + 1][i], place - whole);
        return waves;
    }

private:
    static constexpr std::size_t steps = 2048; // as fine as pixels

    static Waves wavesAt(double angle, const RingLook &look)
    {
        const double swell = swellOf(look.bands, std::cos(angle), std::sin(angle));
        Waves waves;
        for (int i = 0; i < layers; ++i) {
            const double flow =
                0.5 + 0.5 * std::sin(angle * (3 + 2 * i) + look.time * (1.1 + 0.6 * i) + 2.1 * i);
            const double ripple = 0.010 * std::sin(5 * angle - 1.6 * look.time + 1.7 * i)
                + 0.006 * std::sin(9 * angle + 2.3 * look.time + i);
            waves[static_cast<std::size_t>(i)] =
                base + ripple + swell * (0.34 - 0.085 * i) * (0.6 + 0.4 * flow) + look.level * 0.02;
        }
        return waves;
    }

    std::array<Waves, steps + 1> table_;
};

/// The ring at (`x`, `y`), each -1 to 1, y up. Premultiplied.
Colour ringAt(double x, double y, const RingLook &look, const WaveTable &table)
{
    const double level = look.level;
    const double r = std::hypot(x, y);
    Colour sum{0, 0, 0, 0};
    const auto add = [&sum](const Colour &colour, double light) {
        const auto a = static_cast<float>(light);
        sum.red += colour.red * a;
        sum.green += colour.green * a;
        sum.blue += colour.blue * a;
        sum.alpha += a;
    };
    const double heart = 0.30 + 0.035 * level;
    if (r < heart + 0.03) { // as far as its rim is bright
        add(colours::green,
            bell(r - heart, 0.004) * 0.9
                + (1 - smoothstep(0, heart, r)) * (0.05 + 0.5 * level)
                    * (0.35 + 0.65 * (1 - r / heart)));
    }
    const Waves waves = table.at(std::atan2(y, x));
    for (int i = 0; i < layers; ++i) {
        const double away = r - waves[static_cast<std::size_t>(i)];
        if (away > 0.13) // as far as a wave's light reaches
            continue;
        const double line = bell(away, 0.0045);
        const double halo = bell(away, 0.035) * (0.30 + 0.25 * level);
        const double body = smoothstep(base - 0.006, base + 0.006, r)
            * (1 - smoothstep(-0.02, 0, away)) * (0.16 - 0.035 * i);
        add(mixed(colours::green, colours::pale, line),
            line * (1 - 0.28 * i) + halo * (1 - 0.2 * i) + body);
    }
    add(colours::green, bell(r - base, 0.003) * 0.55);
    return {std::min(sum.red, 1.0F), std::min(sum.green, 1.0F), std::min(sum.blue, 1.0F),
        std::min(sum.alpha, 1.0F)};
}

/// The line at (`x`, `y`), each 0 to 1, y up. Premultiplied.
Colour scopeAt(double x, double y, const RingLook &look)
{
    const double time = look.time;
    const double pin = std::sin(pi * x);
    const double wave = (0.5 * std::sin(19 * x - 5 * time) + 0.28 * std::sin(41 * x + 7.5 * time)
                            + 0.42 * std::sin(7 * x - 2.2 * time))
        * pin * look.amplitude;
    const double away = (y - 0.5) - 0.42 * wave;
    const double line = bell(away, 0.03);
    const double halo = bell(away, 0.16) * 0.35;
    const auto a = static_cast<float>(std::clamp(line + halo, 0.0, 1.0) * smoothstep(0, 0.06, pin));
    const Colour colour = mixed(colours::green, colours::pale, line);
    return {colour.red * a, colour.green * a, colour.blue * a, a};
}

} // namespace

QImage ringPicture(QSize size, const RingLook &look)
{
    const WaveTable table(look);
    return picture(
        size, [&](double x, double y) { return ringAt(2 * x - 1, 2 * y - 1, look, table); });
}

QImage scopePicture(QSize size, const RingLook &look)
{
    return picture(size, [&](double x, double y) { return scopeAt(x, y, look); });
}

} // namespace kelo
