#include "link/chord.h"
#include "link/inbound.h"
#include "link/link.h"
#include "link/parse.h"
#include "link/shell.h"

#include <QScopeGuard>

#include <algorithm>

namespace kelo {

namespace {

constexpr double maxVelocity = 127.0;

// What only an engine gone wild fills; nobody holds as many.
constexpr qsizetype mostHeld = 400; // keys at once

void press(QList<Ripple> &ripples, qint64 pitch, qint64 velocity, double now)
{
    ripples.append({pitch, now, static_cast<double>(velocity) / maxVelocity, std::nullopt});
    if (ripples.size() > Inbound::mostRipples)
        ripples.remove(0, ripples.size() - Inbound::mostRipples);
}

void release(QList<Ripple> &ripples, qint64 pitch, double now)
{
    const auto held = std::find_if(ripples.rbegin(), ripples.rend(),
        [pitch](const Ripple &ripple) { return ripple.pitch == pitch && !ripple.off; });
    if (held != ripples.rend())
        held->off = now;
}

/// Exactly two integers: a pitch and a velocity.
struct NoteEvent {
    qint64 pitch;
    qint64 velocity;

    static std::optional<NoteEvent> read(QByteArrayView rest)
    {
        const parse::Integers numbers = parse::integers(rest);
        if (numbers.size() != 2)
            return std::nullopt;
        return NoteEvent{numbers[0], numbers[1]};
    }
    [[nodiscard]] bool released() const { return velocity < 1; }
    [[nodiscard]] double strength() const { return static_cast<double>(velocity) / maxVelocity; }
};

} // namespace

void Inbound::on(QByteArrayView rest, double now)
{
    const auto event = NoteEvent::read(rest);
    if (!event)
        return;
    const auto told = qScopeGuard([this] { Q_EMIT link_.keysChanged(); });
    if (link_.scene)
        link_.scene->note(event->pitch, event->strength(), true);
    if (event->released()) {
        link_.down.remove(event->pitch);
        release(link_.ripples, event->pitch, now);
        return;
    }
    if (link_.down.size() < mostHeld || link_.down.contains(event->pitch))
        link_.down[event->pitch] = event->velocity;
    press(link_.ripples, event->pitch, event->velocity, now);
    link_.pulseAt = now;
    QVarLengthArray<qint64, 16> held;
    for (auto key = link_.down.keyBegin(); key != link_.down.keyEnd(); ++key)
        held.append(*key);
    if (const auto chord = chordName({held.data(), static_cast<std::size_t>(held.size())})) {
        link_.chord = *chord;
        link_.chordAt = now;
    }
}

void Inbound::out(QByteArrayView rest, double now)
{
    const auto event = NoteEvent::read(rest);
    if (!event)
        return;
    const auto told = qScopeGuard([this] { Q_EMIT link_.keysChanged(); });
    if (link_.scene)
        link_.scene->note(event->pitch, event->strength(), false);
    if (event->released()) {
        link_.played.remove(event->pitch);
        release(link_.echoes, event->pitch, now);
        return;
    }
    if (link_.played.size() < mostHeld)
        link_.played.insert(event->pitch);
    press(link_.echoes, event->pitch, event->velocity, now);
}

void Inbound::rollNew(QByteArrayView rest, double /*now*/)
{
    link_.roll.clear();
    link_.rollZero.reset();
    link_.rollName = parse::text(rest);
    link_.rolling = true;
    link_.visual = true;
    if (link_.scene)
        link_.scene->clearRoll();
}

void Inbound::rollNotes(QByteArrayView rest, double /*now*/)
{
    parse::eachPiece(rest, ';', [this](QByteArrayView note) {
        const parse::Pieces fields = parse::pieces(note, ',');
        if (fields.size() != 5 || link_.roll.size() >= mostRollNotes)
            return;
        const auto t = parse::decimal(fields[0]);
        const auto dur = parse::decimal(fields[1]);
        const auto pitch = parse::integer(fields[2]);
        const auto vel = parse::integer(fields[3]);
        const auto track = parse::integer(fields[4]);
        if (t && dur && pitch && vel && track)
            link_.roll.push_back({*t, *dur, *pitch, *vel, *track});
    });
}

void Inbound::rollStart(QByteArrayView rest, double now)
{
    QVarLengthArray<double, 4> numbers;
    parse::eachPiece(rest, ' ', [&numbers](QByteArrayView token) {
        if (const auto value = parse::decimal(token))
            numbers.append(*value);
    });
    if (numbers.size() != 2)
        return;
    link_.rollZero = now + numbers[0]; // the first number is a lead-in
    link_.rollLength = numbers[1];
}

void Inbound::rollStop(QByteArrayView /*rest*/, double /*now*/)
{
    link_.rolling = false;
    link_.rollZero.reset();
    if (link_.scene)
        link_.scene->clearRoll();
}

} // namespace kelo
