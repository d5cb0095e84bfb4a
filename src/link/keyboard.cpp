#include "link/keyboard.h"

#include "link/bounds.h"
#include "link/chord.h"

#include <QVarLengthArray>

#include <algorithm>

namespace kelo {

namespace {

constexpr double maxVelocity = 127.0;

void begin(QList<Ripple> &ripples, qint64 pitch, qint64 velocity, double now)
{
    ripples.append({pitch, now, strengthOf(velocity), std::nullopt});
    if (ripples.size() > bounds::ripples)
        ripples.remove(0, ripples.size() - bounds::ripples);
}

void end(QList<Ripple> &ripples, qint64 pitch, double now)
{
    const auto held = std::find_if(ripples.rbegin(), ripples.rend(),
        [pitch](const Ripple &ripple) { return ripple.pitch == pitch && !ripple.off; });
    if (held != ripples.rend())
        held->off = now;
}

} // namespace

double strengthOf(qint64 velocity)
{
    return static_cast<double>(velocity) / maxVelocity;
}

void Keyboard::press(qint64 pitch, qint64 velocity, double now)
{
    if (down.size() < bounds::heldKeys || down.contains(pitch))
        down[pitch] = velocity;
    begin(ripples, pitch, velocity, now);
    QVarLengthArray<qint64, 16> held;
    for (auto key = down.keyBegin(); key != down.keyEnd(); ++key)
        held.append(*key);
    if (const auto name = chordName({held.data(), static_cast<std::size_t>(held.size())})) {
        chord = *name;
        chordAt = now;
    }
}

void Keyboard::release(qint64 pitch, double now)
{
    down.remove(pitch);
    end(ripples, pitch, now);
}

void Keyboard::sound(qint64 pitch, qint64 velocity, double now)
{
    if (played.size() < bounds::heldKeys)
        played.insert(pitch);
    begin(echoes, pitch, velocity, now);
}

void Keyboard::silence(qint64 pitch, double now)
{
    played.remove(pitch);
    end(echoes, pitch, now);
}

void Keyboard::letGo()
{
    down.clear();
    played.clear();
}

} // namespace kelo
