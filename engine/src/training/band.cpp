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

Band::Band(Wire &wire, Instrument &instrument, const AudioClock &clock)
    : wire_(wire)
    , instrument_(instrument)
    , clock_(clock)
{
}

void Band::start()
{
    if (live_)
        return;
    live_ = true;
    harmony_.reset();
    held_.clear();
    tellInstrument();
    wire_.send("live", "1");
}

void Band::stop()
{
    if (!live_)
        return;
    live_ = false;
    rest();
    wire_.send("live", "0");
}

void Band::rest()
{
    playing_ = false;
    bassPitch_ = -1;
    instrument_.silence();
}

void Band::setStyle(Style value)
{
    current_ = value;
    wire_.send("bandstyle", current_ == Style::Simple ? "simple" : "full");
}

void Band::setTempo(int value)
{
    wantedTempo_ = std::clamp(value, slowest, fastest);
}

void Band::setLoudness(int value)
{
    volume_ = std::clamp(value, 0, 127);
    tellInstrument();
}

void Band::tellInstrument()
{
    constexpr int programChange = 0xc0;
    constexpr int control = 0xb0;
    constexpr int volumeController = 7;
    instrument_.play(0, message(programChange, bassChannel, fingeredBass, 0));
    for (const int channel : {bassChannel, drumChannel})
        instrument_.play(0, message(control, channel, volumeController, volume_));
}

void Band::key(int pitch, int velocity, double now)
{
    if (!live_)
        return;
    std::erase(held_, pitch);
    if (velocity == 0)
        return;
    held_.push_back(pitch);
    lastKey_ = now;
    if (const auto heard = harmonyOf(held_))
        harmony_ = heard;
    if (harmony_ && !playing_)
        comeIn(now);
}

void Band::comeIn(double now)
{
    playing_ = true;
    tempoOfBar_ = wantedTempo_;
    barStart_ = clock_.frameAt(now);
    bar_ = 0;
    slot_ = 0;
    advance(now);
}

Frame Band::slotLength() const
{
    return frames(30.0 / tempoOfBar_);
}

Frame Band::slotFrame() const
{
    return barStart_ + slot_ * slotLength();
}

void Band::advance(double now)
{
    nextAdvance_ = now + scheduleEvery;
    if (!playing_)
        return;
    if (now - lastKey_ > restAfterBars * 240 / tempoOfBar_ && held_.empty()) {
        rest();
        return;
    }
    const Frame heard = clock_.frameAt(now);
    for (const Frame until = clock_.frameAt(now + scheduleAhead); slotFrame() < until;) {
        if (slotFrame() > heard - slotLength())
            playSlot(slotFrame());
        if (++slot_ < slotsPerBar)
            continue;
        barStart_ = slotFrame();
        slot_ = 0;
        ++bar_;
        tempoOfBar_ = wantedTempo_;
    }
}

void Band::bass(Frame frame, int pitch, int velocity)
{
    if (bassPitch_ >= 0)
        instrument_.play(frame, message(0x80, bassChannel, bassPitch_, 0));
    bassPitch_ = pitch;
    instrument_.play(frame, message(0x90, bassChannel, pitch, velocity));
}

void Band::drum(Frame frame, int pitch, int velocity)
{
    instrument_.play(frame, message(0x90, drumChannel, pitch, velocity));
}

void Band::playSlot(Frame frame)
{
    const int root = lowestBass + (harmony_->root + 12 - lowestBass % 12) % 12;
    const int fifth = root + harmony_->fifth - (root + harmony_->fifth > 40 ? 12 : 0);
    const bool beat = slot_ % 2 == 0;
    if (current_ == Style::Simple) {
        if (slot_ == 0 || slot_ == 4) {
            bass(frame, slot_ == 0 ? root : fifth, 88);
            drum(frame, kick, 88);
        }
        if (slot_ == 2 || slot_ == 6)
            drum(frame, snare, 66);
        if (beat)
            drum(frame, closedHat, slot_ == 0 ? 58 : 46);
        return;
    }
    const bool last = bar_ % barsPerPhrase == barsPerPhrase - 1;
    const bool fill = last && slot_ >= 6;
    switch (slot_) {
    case 0:
    case 3:
        bass(frame, root, slot_ == 0 ? 96 : 78);
        break;
    case 4:
        bass(frame, fifth, 86);
        break;
    case 6:
        bass(frame, root + 12, 80);
        break;
    case 7:
        bass(frame, last ? root : root + harmony_->third, 74);
        break;
    default:
        break;
    }
    if (slot_ == 0 || slot_ == 4 || slot_ == 5)
        drum(frame, kick, slot_ == 5 ? 70 : 94);
    if (slot_ == 2 || (slot_ == 6 && !fill))
        drum(frame, snare, 84);
    if (fill)
        drum(frame, slot_ == 6 ? highTom : lowTom, 84);
    else if (slot_ == 0 && bar_ % barsPerPhrase == 0)
        drum(frame, crash, 72);
    else
        drum(frame, slot_ == 7 ? openHat : closedHat, beat ? 62 : 44);
}

std::optional<double> Band::deadline() const
{
    return playing_ ? std::optional(nextAdvance_) : std::nullopt;
}

} // namespace kelo::engine
