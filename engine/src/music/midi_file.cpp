#include "music/midi_file.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace kelo::engine {

namespace {

using Bytes = std::span<const std::uint8_t>;
using Ticks = std::uint64_t;

constexpr double longest = 24 * 3600.0;
constexpr double defaultTempo = 0.5; ///< seconds a quarter note

/// Reads big-endian numbers from the front; past the end it has failed and gives zeros.
class Reader {
public:
    explicit Reader(Bytes all)
        : bytes(all)
    {
    }

    [[nodiscard]] bool failed() const { return truncated; }
    [[nodiscard]] bool atEnd() const { return bytes.empty(); }

    [[nodiscard]] int peek() const { return bytes.empty() ? -1 : bytes.front(); }

    Bytes take(std::size_t count)
    {
        truncated = truncated || count > bytes.size();
        const Bytes taken = bytes.first(std::min(count, bytes.size()));
        bytes = bytes.subspan(taken.size());
        return taken;
    }

    std::uint32_t number(std::size_t size)
    {
        std::uint32_t value = 0;
        for (const std::uint8_t byte : take(size))
            value = value << 8 | byte;
        return value;
    }

    std::uint8_t byte() { return static_cast<std::uint8_t>(number(1)); }

    /// Seven bits a byte, four bytes at most.
    std::uint32_t variable()
    {
        std::uint32_t value = 0;
        for (int i = 0; i < 4; ++i) {
            const std::uint8_t next = byte();
            value = value << 7 | (next & 0x7fU);
            if ((next & 0x80) == 0)
                return value;
        }
        truncated = true;
        return value;
    }

private:
    Bytes bytes;
    bool truncated = false;
};

struct Event {
    Ticks at = 0;
    int track = 0;
    ChannelMessage message; ///< status 0 where `tempo` is meant, or the track's end
    double tempo = 0; ///< seconds a quarter note
};

std::size_t dataBytes(int kind)
{
    return kind == 0xc0 || kind == 0xd0 ? 1 : 2;
}

/// The events of a track up to its end, or to where it is damaged.
void readTrack(Bytes bytes, int track, std::vector<Event> &events)
{
    constexpr int tempoEvent = 0x51;
    constexpr int endEvent = 0x2f;
    Reader reader(bytes);
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
            const Bytes data = reader.take(reader.variable());
            if (reader.failed() || kind == endEvent)
                break;
            if (kind == tempoEvent && data.size() == 3) {
                const std::uint32_t microseconds = Reader(data).number(3);
                if (microseconds > 0)
                    events.push_back({now, track, {}, microseconds / 1e6});
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
        events.push_back({now, track, message, 0});
    }
    events.push_back({now, track, {}, 0});
}

/// Turns ticks, in order, into seconds.
class TempoMap {
public:
    /// `division` as it stands in the header: ticks a quarter note, or frames a second and
    /// ticks a frame, which no tempo changes.
    explicit TempoMap(std::uint16_t division)
    {
        if ((division & 0x8000) == 0) {
            ticksPerQuarter = division;
            perTick = defaultTempo / ticksPerQuarter;
            return;
        }
        const int rate = 256 - (division >> 8);
        const double framesPerSecond = rate == 29 ? 30000.0 / 1001 : rate;
        perTick = 1 / (framesPerSecond * (division & 0xff));
    }

    double advance(Ticks to)
    {
        time += static_cast<double>(to - last) * perTick;
        last = to;
        return time;
    }

    void setTempo(double quarter)
    {
        if (ticksPerQuarter > 0)
            perTick = quarter / ticksPerQuarter;
    }

private:
    double ticksPerQuarter = 0;
    double perTick = 0;
    Ticks last = 0;
    double time = 0;
};

/// Finds for each release the press that it ends: the oldest one of that key.
class NotePairing {
public:
    explicit NotePairing(std::vector<Note> &pieceNotes)
        : notes(pieceNotes)
    {
        heads.fill(none);
        tails.fill(none);
    }

    void press(const Note &note)
    {
        const std::size_t index = notes.size();
        notes.push_back(note);
        next.push_back(none);
        const std::size_t key = keyOf(note.channel, note.pitch);
        (heads[key] == none ? heads[key] : next[tails[key]]) = index;
        tails[key] = index;
    }

    void release(int channel, int pitch, double at)
    {
        std::size_t &head = heads[keyOf(channel, pitch)];
        if (head == none)
            return;
        notes[head].duration = at - notes[head].at;
        head = next[head];
    }

    void releaseAll(double at)
    {
        for (std::size_t &head : heads) {
            for (; head != none; head = next[head])
                notes[head].duration = at - notes[head].at;
        }
    }

private:
    static constexpr std::size_t none = static_cast<std::size_t>(-1);
    static std::size_t keyOf(int channel, int pitch)
    {
        return static_cast<std::size_t>(channel) * 128 + static_cast<std::size_t>(pitch);
    }

    std::vector<Note> &notes;
    std::vector<std::size_t> next;
    std::array<std::size_t, std::size_t{16} * 128> heads{};
    std::array<std::size_t, std::size_t{16} * 128> tails{};
};

Piece assemble(std::vector<Event> events, std::uint16_t division)
{
    std::stable_sort(
        events.begin(), events.end(), [](const Event &a, const Event &b) { return a.at < b.at; });
    Piece piece;
    TempoMap tempo(division);
    NotePairing pairing(piece.notes);
    double now = 0;
    for (const Event &event : events) {
        const double at = tempo.advance(event.at);
        if (at > longest)
            break;
        now = at;
        if (event.tempo > 0)
            tempo.setTempo(event.tempo);
        if (event.message.status == 0)
            continue;
        const ChannelMessage message = event.message;
        piece.messages.push_back({now, message});
        if (message.kind() == 0x90 && message.second > 0)
            pairing.press({now, 0, message.first, message.second, event.track, message.channel()});
        else if (message.kind() == 0x80 || message.kind() == 0x90)
            pairing.release(message.channel(), message.first, now);
    }
    pairing.releaseAll(now);
    for (const Note &note : piece.notes)
        piece.length = std::max(piece.length, note.at + note.duration);
    return piece;
}

std::string_view tag(Bytes bytes)
{
    return {reinterpret_cast<const char *>(bytes.data()), bytes.size()};
}

} // namespace

void addMessages(Piece &piece)
{
    for (const Note &note : piece.notes) {
        const auto channel = static_cast<unsigned char>(note.channel);
        const auto pitch = static_cast<unsigned char>(note.pitch);
        const auto press = static_cast<unsigned char>(0x90 | channel);
        const auto release = static_cast<unsigned char>(0x80 | channel);
        piece.messages.push_back(
            {note.at, {press, pitch, static_cast<unsigned char>(note.velocity)}});
        piece.messages.push_back({note.at + note.duration, {release, pitch, 0}});
        piece.length = std::max(piece.length, note.at + note.duration);
    }
    std::stable_sort(piece.messages.begin(), piece.messages.end(),
        [](const TimedMessage &a, const TimedMessage &b) { return a.at < b.at; });
}

std::variant<Piece, MidiFault> readMidiFile(std::span<const std::uint8_t> bytes)
{
    Reader file(bytes);
    if (tag(file.take(4)) != "MThd")
        return MidiFault::NotMidi;
    Reader header(file.take(file.number(4)));
    const std::uint32_t format = header.number(2);
    header.number(2); // how many tracks it says it has; those that are there count
    const auto division = static_cast<std::uint16_t>(header.number(2));
    if (header.failed())
        return MidiFault::NotMidi;
    const bool timeless = (division & 0x8000) != 0 ? (division & 0xff) == 0 : division == 0;
    if (format > 1 || timeless)
        return MidiFault::Unsupported;

    std::vector<Event> events;
    int track = 0;
    while (!file.atEnd()) {
        const std::string_view name = tag(file.take(4));
        const Bytes body = file.take(file.number(4));
        if (name == "MTrk")
            readTrack(body, track++, events);
    }
    Piece piece = assemble(std::move(events), division);
    if (piece.notes.empty())
        return MidiFault::Empty;
    return piece;
}

} // namespace kelo::engine
