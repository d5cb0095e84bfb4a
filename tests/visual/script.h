#pragma once

#include "support/link_fixture.h"
#include "visual/sprites/layer_node.h"

#include <algorithm>
#include <cmath>

namespace kelo::test {

/// Plays a script: engine lines, and between them "+seconds" for time that passes in frames of a
/// sixtieth of a second, or "!seconds" for a single frame that comes so much later. `frame` is
/// called for each frame.
template <typename Frame>
void play(LinkFixture &fixture, const QByteArrayList &script, const Frame &frame)
{
    for (const QByteArray &line : script) {
        const double seconds = line.mid(1).toDouble();
        if (line.startsWith('+') || line.startsWith('!')) {
            const int frames =
                line.startsWith('!') ? 1 : std::max(static_cast<int>(seconds * 60 + 0.5), 1);
            for (int i = 0; i < frames; ++i) {
                fixture.time.advance(seconds / frames);
                frame(fixture.time.now());
            }
        } else if (line.startsWith("state ")) {
            fixture->engineIs(line == "state OFFLINE" ? EngineState::Offline
                    : line == "state RESTARTING"      ? EngineState::Restarting
                                                      : EngineState::Online);
        } else {
            fixture->handle(line);
        }
    }
}

/// A number as it stands in a table: two decimals at most.
inline QString num(double value)
{
    const double rounded = std::round(value * 100) / 100;
    return QString::number(rounded == 0 ? 0 : rounded);
}

/// A colour in red, green, blue and alpha, 0 to 255 each.
inline QString hex(const Colour &colour)
{
    const auto byte = [](float part) {
        return QStringLiteral("%1").arg(std::lround(part * 255), 2, 16, QLatin1Char('0'));
    };
    return byte(colour.red) + byte(colour.green) + byte(colour.blue) + byte(colour.alpha);
}

/// The words of a list of labels.
inline QStringList words(const LabelList &labels)
{
    QStringList list;
    for (const Label &label : labels)
        list << label.text;
    return list;
}

} // namespace kelo::test
