#include "music/midi_track.h"

namespace kelo::engine {

namespace {

std::size_t dataBytes(int kind)
{
    return kind == 0xc0 || kind == 0xd0 ? 1 : 2;
}

} // namespace

void readTrack(MidiBytes bytes, int track, std::vector<MidiEvent> &events)
{
    constexpr int tempoEvent = 0x51;
    constexpr int metreEvent = 0x58;
    constexpr int keyEvent = 0x59;
    constexpr int endEvent = 0x2f;
    MidiReader reader(bytes);
    Ticks now = 0;
    std::uint8_t running = 0;
    while (!reader.atEnd()) {
        const std::uint32_t delta = reader.variable();
        if (reader.failed())
            break;
        now += delta;
        const int first = reader.peek();
        if (first == 0xff) {
            reader.byte();
            const int kind = reader.byte();
            const MidiBytes data = reader.take(reader.variable());
            if (reader.failed() || kind == endEvent)
                break;
            if (kind == tempoEvent && data.size() == 3) {
                const std::uint32_t microseconds = MidiReader(data).number(3);
                if (microseconds > 0)
                    events.push_back({now, track, {}, microseconds / 1e6});
            } else if (kind == metreEvent && data.size() >= 2 && data[0] > 0 && data[1] <= 6) {
                events.push_back({now, track, {}, 0, 4.0 * data[0] / (1 << data[1])});
            } else if (kind == keyEvent && !data.empty()) {
                events.push_back({now, track, {}, 0, 0, static_cast<std::int8_t>(data[0])});
            }
            continue;
        }
        if (first == 0xf0 || first == 0xf7) {
            reader.byte();
            reader.take(reader.variable());
            running = 0;
            continue;
        }
        if (first >= 0x80)
            running = reader.byte();
        if (running < 0x80 || running >= 0xf0)
            break;
        ChannelMessage message{running, reader.byte(), 0};
        if (dataBytes(message.kind()) == 2)
            message.second = reader.byte();
        if (reader.failed() || ((message.first | message.second) & 0x80) != 0)
            break;
        events.push_back({now, track, message});
    }
    events.push_back({now, track, {}});
}

} // namespace kelo::engine
