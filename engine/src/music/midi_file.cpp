#include "music/midi_file.h"

#include "music/midi_track.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace kelo::engine {

namespace {

constexpr double longest = 24 * 3600.0;
constexpr double defaultTempo = 0.5; ///< seconds a quarter note

/// Turns ticks, in order, into seconds.
class TempoMap {
public:
    /// `division` as it stands in the header: ticks a quarter note, or frames a second and
    /// ticks a frame, which no tempo changes.
    explicit TempoMap(std::uint16_t division)
    {
        if ((division & 0x8000) == 0) {
            ticksPerQuarter_ = division;
            perTick_ = defaultTempo / ticksPerQuarter_;
            return;
        }
        const int rate = 256 - (division >> 8);
        const double framesPerSecond = rate == 29 ? 30000.0 / 1001 : rate;
        perTick_ = 1 / (framesPerSecond * (division & 0xff));
    }

    [[nodiscard]] double timeOf(Ticks at) const
    {
        return time_ + static_cast<double>(at - last_) * perTick_;
    }

    double advance(Ticks to)
    {
        time_ = timeOf(to);
        last_ = to;
        return time_;
    }

    void setTempo(double quarter)
    {
        if (ticksPerQuarter_ > 0)
            perTick_ = quarter / ticksPerQuarter_;
    }

private:
    double ticksPerQuarter_ = 0;
    double perTick_ = 0;
    Ticks last_ = 0;
    double time_ = 0;
};

/// Draws the bar lines as time goes by.
class BarLines {
public:
    /// `ticksPerQuarter` 0: the file counts in seconds and has no bars.
    BarLines(std::vector<double> &pieceBars, double ticksPerQuarter)
        : bars_(pieceBars)
        , quarter_(ticksPerQuarter)
    {
        setBar(0, 0, 4);
    }

    /// Draws those before `until`; `tempo` has not yet gone that far.
    void drawTo(Ticks until, const TempoMap &tempo)
    {
        for (; length_ > 0 && next_ < until && bars_.size() < most; next_ += length_)
            bars_.push_back(tempo.timeOf(next_));
    }

    /// From `at` on, which is a bar line, bars have `quarters`.
    void setBar(Ticks at, double now, double quarters)
    {
        length_ = static_cast<Ticks>(quarters * quarter_);
        next_ = at;
        if (!bars_.empty() && bars_.back() >= now)
            bars_.pop_back();
    }

private:
    static constexpr std::size_t most = 20000;

    std::vector<double> &bars_;
    double quarter_;
    Ticks length_ = 0;
    Ticks next_ = 0;
};

/// Finds for each release the press that it ends: the oldest one of that key.
class NotePairing {
public:
    explicit NotePairing(std::vector<Note> &pieceNotes)
        : notes_(pieceNotes)
    {
        heads_.fill(none);
        tails_.fill(none);
    }

    void press(const Note &note)
    {
        const std::size_t index = notes_.size();
        notes_.push_back(note);
        next_.push_back(none);
        const std::size_t key = keyOf(note.channel, note.pitch);
        (heads_[key] == none ? heads_[key] : next_[tails_[key]]) = index;
        tails_[key] = index;
    }

    void release(int channel, int pitch, double at)
    {
        std::size_t &head = heads_[keyOf(channel, pitch)];
        if (head == none)
            return;
        notes_[head].duration = at - notes_[head].at;
        head = next_[head];
    }

    void releaseAll(double at)
    {
        for (std::size_t &head : heads_) {
            for (; head != none; head = next_[head])
                notes_[head].duration = at - notes_[head].at;
        }
    }

private:
    static constexpr std::size_t none = static_cast<std::size_t>(-1);
    static std::size_t keyOf(int channel, int pitch)
    {
        return static_cast<std::size_t>(channel) * 128 + static_cast<std::size_t>(pitch);
    }

    std::vector<Note> &notes_;
    std::vector<std::size_t> next_;
    std::array<std::size_t, std::size_t{16} * 128> heads_{};
    std::array<std::size_t, std::size_t{16} * 128> tails_{};
};

Piece assemble(std::vector<MidiEvent> events, std::uint16_t division)
{
    std::stable_sort(events.begin(), events.end(),
        [](const MidiEvent &a, const MidiEvent &b) { return a.at < b.at; });
    Piece piece;
    TempoMap tempo(division);
    NotePairing pairing(piece.notes);
    BarLines barLines(piece.bars, (division & 0x8000) == 0 ? division : 0);
    double now = 0;
    for (const MidiEvent &event : events) {
        if (tempo.timeOf(event.at) > longest)
            break;
        barLines.drawTo(event.at, tempo);
        now = tempo.advance(event.at);
        if (event.tempo > 0)
            tempo.setTempo(event.tempo);
        if (event.bar > 0)
            barLines.setBar(event.at, now, event.bar);
        if (event.sharps)
            piece.spelling = *event.sharps > 0 ? Spelling::Sharps
                : *event.sharps < 0            ? Spelling::Flats
                                               : Spelling::Mixed;
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

std::string_view tag(MidiBytes bytes)
{
    return {reinterpret_cast<const char *>(bytes.data()), bytes.size()};
}

} // namespace

std::variant<Piece, MidiFault> readMidiFile(std::span<const std::uint8_t> bytes)
{
    MidiReader file(bytes);
    if (tag(file.take(4)) != "MThd")
        return MidiFault::NotMidi;
    MidiReader header(file.take(file.number(4)));
    const std::uint32_t format = header.number(2);
    header.number(2); // how many tracks it says it has; those that are there count
    const auto division = static_cast<std::uint16_t>(header.number(2));
    if (header.failed())
        return MidiFault::NotMidi;
    const bool timeless = (division & 0x8000) != 0 ? (division & 0xff) == 0 : division == 0;
    if (format > 1 || timeless)
        return MidiFault::Unsupported;

    std::vector<MidiEvent> events;
    int track = 0;
    while (!file.atEnd()) {
        const std::string_view name = tag(file.take(4));
        const MidiBytes body = file.take(file.number(4));
        if (name == "MTrk")
            readTrack(body, track++, events);
    }
    Piece piece = assemble(std::move(events), division);
    if (piece.notes.empty())
        return MidiFault::Empty;
    return piece;
}

} // namespace kelo::engine
