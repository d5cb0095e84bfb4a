#include "training/band.h"

#include <algorithm>
#include <cmath>

namespace kelo::engine {

namespace {

constexpr double scheduleAhead = 0.06; ///< the later it decides, the closer it follows
constexpr double scheduleEvery = 0.02;
constexpr int slotsPerBar = 8;
constexpr int barsPerPhrase = 8;
constexpr double restAfterBars = 4;
constexpr int lowestBass = 28; ///< the low E of a bass

constexpr int bassChannel = 0;
constexpr int drumChannel = 9;
constexpr unsigned char fingeredBass = 33;
constexpr int kick = 36;
constexpr int snare = 38;
constexpr int closedHat = 42;
constexpr int openHat = 46;
constexpr int crash = 49;
constexpr int lowTom = 45;
constexpr int highTom = 48;

ChannelMessage message(int kind, int channel, int first, int second)
{
    return {static_cast<unsigned char>(kind | channel), static_cast<unsigned char>(first),
        static_cast<unsigned char>(second)};
}

} // namespace

Band::Band(Wire &lines, Instrument &sound, const AudioClock &audioClock)
    : wire(lines)
    , instrument(sound)
    , clock(audioClock)
{
}

void Band::start()
{
    if (live)
        return;
    live = true;
    harmony.reset();
    held.clear();
    tellInstrument();
    wire.send("live", "1");
}

void Band::stop()
{
    if (!live)
        return;
    live = false;
    rest();
    wire.send("live", "0");
}

void Band::rest()
{
    playing = false;
    bassPitch = -1;
    instrument.silence();
}

void Band::setStyle(Style value)
{
    current = value;
    wire.send("bandstyle", current == Style::Simple ? "simple" : "full");
}

void Band::setTempo(int value)
{
    wantedTempo = std::clamp(value, slowest, fastest);
}

void Band::setLoudness(int value)
{
    volume = std::clamp(value, 0, 127);
    tellInstrument();
}

void Band::tellInstrument()
{
    constexpr int programChange = 0xc0;
    constexpr int control = 0xb0;
    constexpr int volumeController = 7;
    instrument.play(0, message(programChange, bassChannel, fingeredBass, 0));
    for (const int channel : {bassChannel, drumChannel})
        instrument.play(0, message(control, channel, volumeController, volume));
}

void Band::key(int pitch, int velocity, double now)
{
    if (!live)
        return;
    std::erase(held, pitch);
    if (velocity == 0)
        return;
    held.push_back(pitch);
    lastKey = now;
    if (const auto heard = harmonyOf(held))
        harmony = heard;
    if (harmony && !playing)
        comeIn(now);
}

void Band::comeIn(double now)
{
    playing = true;
    tempoOfBar = wantedTempo;
    barStart = clock.frameAt(now);
    bar = 0;
    slot = 0;
    advance(now);
}

Frame Band::slotLength() const
{
    return frames(30.0 / tempoOfBar);
}

Frame Band::slotFrame() const
{
    return barStart + slot * slotLength();
}

void Band::advance(double now)
{
    nextAdvance = now + scheduleEvery;
    if (!playing)
        return;
    if (now - lastKey > restAfterBars * 240 / tempoOfBar && held.empty()) {
        rest();
        return;
    }
    const Frame heard = clock.frameAt(now);
    for (const Frame until = clock.frameAt(now + scheduleAhead); slotFrame() < until;) {
        if (slotFrame() > heard - slotLength())
            playSlot(slotFrame());
        if (++slot < slotsPerBar)
            continue;
        barStart = slotFrame();
        slot = 0;
        ++bar;
        tempoOfBar = wantedTempo;
    }
}

void Band::bass(Frame frame, int pitch, int velocity)
{
    if (bassPitch >= 0)
        instrument.play(frame, message(0x80, bassChannel, bassPitch, 0));
    bassPitch = pitch;
    instrument.play(frame, message(0x90, bassChannel, pitch, velocity));
}

void Band::drum(Frame frame, int pitch, int velocity)
{
    instrument.play(frame, message(0x90, drumChannel, pitch, velocity));
}

void Band::playSlot(Frame frame)
{
    const int root = lowestBass + (harmony->root + 12 - lowestBass % 12) % 12;
    const int fifth = root + harmony->fifth - (root + harmony->fifth > 40 ? 12 : 0);
    const bool beat = slot % 2 == 0;
    if (current == Style::Simple) {
        if (slot == 0 || slot == 4) {
            bass(frame, slot == 0 ? root : fifth, 88);
            drum(frame, kick, 88);
        }
        if (slot == 2 || slot == 6)
            drum(frame, snare, 66);
        if (beat)
            drum(frame, closedHat, slot == 0 ? 58 : 46);
        return;
    }
    const bool last = bar % barsPerPhrase == barsPerPhrase - 1;
    const bool fill = last && slot >= 6;
    switch (slot) {
    case 0:
    case 3:
        bass(frame, root, slot == 0 ? 96 : 78);
        break;
    case 4:
        bass(frame, fifth, 86);
        break;
    case 6:
        bass(frame, root + 12, 80);
        break;
    case 7:
        bass(frame, last ? root : root + harmony->third, 74);
        break;
    default:
        break;
    }
    if (slot == 0 || slot == 4 || slot == 5)
        drum(frame, kick, slot == 5 ? 70 : 94);
    if (slot == 2 || (slot == 6 && !fill))
        drum(frame, snare, 84);
    if (fill)
        drum(frame, slot == 6 ? highTom : lowTom, 84);
    else if (slot == 0 && bar % barsPerPhrase == 0)
        drum(frame, crash, 72);
    else
        drum(frame, slot == 7 ? openHat : closedHat, beat ? 62 : 44);
}

std::optional<double> Band::deadline() const
{
    return playing ? std::optional(nextAdvance) : std::nullopt;
}

} // namespace kelo::engine
