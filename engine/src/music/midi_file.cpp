#include "music/midi_file.h"

#include "music/midi_track.h"

#include <algorithm>
#include <array>
#include <bit>
#include <string>
#include <string_view>
#include <utility>

namespace kelo::engine {

namespace {

constexpr double longest = 24 * 3600.0;
constexpr double defaultTempo = 0.5; ///< seconds a quarter note

/// Turns ticks, in order, into seconds.
class TempoMap {
public:
    /// `division` as it stands in the header: ticks a quarter note, or frames a
    /// second and ticks a frame, which no tempo changes.
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

/// Finds for each release the press that it ends: the oldest one of that key. Until then a note's
/// duration holds the bits of the place of the next note that waits on its key, so that no second
/// list is needed.
class NotePairing {
public:
    explicit NotePairing(std::vector<Note> &pieceNotes)
        : notes_(pieceNotes)
    {
        heads_.fill(none);
        tails_.fill(none);
    }

    void press(Note note)
    {
        const auto index = static_cast<Index>(notes_.size());
        const std::size_t key = keyOf(note.channel, note.pitch);
        note.duration = std::bit_cast<float>(none);
        notes_.push_back(note);
        if (heads_[key] == none)
            heads_[key] = index;
        else
            notes_[tails_[key]].duration = std::bit_cast<float>(index);
        tails_[key] = index;
    }

    void release(int channel, int pitch, double at)
    {
        if (Index &head = heads_[keyOf(channel, pitch)]; head != none)
            end(head, at);
    }

    void releaseAll(double at)
    {
        for (Index &head : heads_) {
            while (head != none)
                end(head, at);
        }
    }

private:
    using Index = std::uint32_t;
    static constexpr Index none = static_cast<Index>(-1);
    static std::size_t keyOf(int channel, int pitch)
    {
        return static_cast<std::size_t>(channel) * 128 + static_cast<std::size_t>(pitch);
    }

    void end(Index &head, double at)
    {
        Note &note = notes_[head];
        head = std::bit_cast<Index>(note.duration);
        note.endAt(at);
    }

    std::vector<Note> &notes_;
    std::array<Index, std::size_t{16} * 128> heads_{};
    std::array<Index, std::size_t{16} * 128> tails_{};
};

/// Keys are written down as notes.
bool isForMessages(ChannelMessage message)
{
    return message.status != 0 && !message.presses() && !message.releases();
}

/// Puts the notes and messages of all tracks in order into a piece.
class Assembly {
public:
    Assembly(std::uint16_t division, std::size_t notes, std::size_t messages)
        : tempo_(division)
        , barLines_(piece_.bars, (division & 0x8000) == 0 ? division : 0)
    {
        piece_.notes.reserve(notes);
        piece_.messages.reserve(messages);
    }

    /// False when it is long enough.
    bool add(const MidiEvent &event)
    {
        if (tempo_.timeOf(event.at) > longest)
            return false;
        barLines_.drawTo(event.at, tempo_);
        now_ = tempo_.advance(event.at);
        if (event.tempo > 0)
            tempo_.setTempo(event.tempo);
        if (event.beats > 0)
            setMetre(event);
        if (!event.name.empty())
            setName(event);
        if (event.sharps)
            piece_.spelling = *event.sharps > 0 ? Spelling::Sharps
                : *event.sharps < 0             ? Spelling::Flats
                                                : Spelling::Mixed;
        const ChannelMessage message = event.message;
        if (message.status == 0)
            return true;
        if (message.presses())
            pairing_.press(
                {now_, 0, message.first, message.second, event.track, message.channel()});
        else if (message.releases())
            pairing_.release(message.channel(), message.first, now_);
        else
            piece_.messages.push_back({now_, message});
        return true;
    }

    void setMetre(const MidiEvent &event)
    {
        barLines_.setBar(event.at, now_, 4.0 * event.beats / event.unit);
        if (now_ > 0)
            return;
        piece_.beats = event.beats;
        piece_.unit = event.unit;
    }

    void setName(const MidiEvent &event)
    {
        constexpr std::size_t most = 256;
        const auto track = static_cast<std::size_t>(event.track);
        if (track >= most)
            return;
        if (piece_.trackNames.size() <= track)
            piece_.trackNames.resize(track + 1);
        piece_.trackNames[track] = event.name;
    }

    Piece finish()
    {
        pairing_.releaseAll(now_);
        measureLength(piece_);
        return std::move(piece_);
    }

private:
    Piece piece_;
    TempoMap tempo_;
    NotePairing pairing_{piece_.notes};
    BarLines barLines_;
    double now_ = 0;
};

std::string tag(MidiReader &file)
{
    return file.text(4, 4);
}

/// What a RIFF file of MIDI holds; other files as they are.
MidiReader unwrapped(const MidiSource &source)
{
    MidiReader file(source);
    if (tag(file) != "RIFF")
        return MidiReader(source);
    file.skip(4); // its size; what is there counts
    if (tag(file) != "RMID")
        return MidiReader(source);
    while (!file.atEnd()) {
        const std::string name = tag(file);
        std::size_t size = 0;
        for (int shift = 0; shift < 32; shift += 8)
            size |= std::size_t{file.byte()} << shift;
        MidiReader body = file.part(size);
        if (name == "data")
            return body;
        file.skip(size % 2);
    }
    return file;
}

struct Chunks {
    std::vector<MidiTrack> tracks;
    bool whole = true;
};

Chunks tracksOf(MidiReader &file, std::size_t promised)
{
    constexpr std::size_t most = 0xffff; // as many as a header can promise
    Chunks found;
    while (!file.atEnd() && found.tracks.size() < most) {
        const std::string name = tag(file);
        const std::uint32_t size = file.number(4);
        MidiReader body = file.part(size);
        if (name == "MTrk")
            found.tracks.emplace_back(std::move(body), static_cast<int>(found.tracks.size()));
    }
    found.whole = !file.failed() && found.tracks.size() >= promised;
    return found;
}

} // namespace

bool looksLikeMidi(MidiBytes begin)
{
    constexpr std::array<std::string_view, 2> marks{"MThd", "RIFF"};
    return std::ranges::any_of(marks, [begin](std::string_view mark) {
        return begin.size() >= mark.size() && std::equal(mark.begin(), mark.end(), begin.begin());
    });
}

std::variant<Piece, ReadFault> readMidiFile(MidiBytes bytes, MidiProgress *progress)
{
    return readMidiFile(HeldMidi(bytes), progress);
}

std::variant<Piece, ReadFault> readMidiFile(const MidiSource &source, MidiProgress *progress)
{
    constexpr std::size_t tellEvery = 4096;
    MidiReader file = unwrapped(source);
    if (tag(file) != "MThd")
        return ReadFault::Unknown;
    MidiReader header = file.part(file.number(4));
    const std::uint32_t format = header.number(2);
    const std::uint32_t promised = header.number(2);
    const auto division = static_cast<std::uint16_t>(header.number(2));
    if (header.failed())
        return ReadFault::Unknown;
    const bool timeless = (division & 0x8000) != 0 ? (division & 0xff) == 0 : division == 0;
    if (format > 2 || timeless)
        return ReadFault::Unsupported;

    const auto [tracks, whole] = tracksOf(file, promised);
    // Counted first, so that no list takes twice what it needs while it grows.
    std::size_t notes = 0;
    std::size_t messages = 0;
    const auto size = static_cast<double>(source.size());
    for (MidiTrack track : tracks) {
        while (const auto event = track.next()) {
            notes += event->message.presses() ? 1 : 0;
            messages += isForMessages(event->message) ? 1 : 0;
        }
    }
    MidiTracks events(tracks, format == 2);
    Assembly assembly(division, notes, messages);
    for (std::size_t count = 1;; ++count) {
        const auto event = events.next();
        if (!event || !assembly.add(*event))
            break;
        if (progress && count % tellEvery == 0) {
            progress->share = 1 - 0.7 * static_cast<double>(events.bytesLeft()) / size;
            if (progress->cancelled)
                break;
        }
    }
    Piece piece = assembly.finish();
    if (piece.notes.empty())
        return ReadFault::Empty;
    piece.endsEarly = !whole || events.broken();
    return piece;
}

} // namespace kelo::engine
