#include "songs/notation.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <string_view>

namespace kelo::engine {

namespace {

constexpr int ticksPerWhole = 192;
constexpr int ticksPerSixteenth = ticksPerWhole / 16;
constexpr double legato = 0.95; ///< of its length a note is held, so that repeated ones are two
constexpr int rightVelocity = 80;
constexpr int leftVelocity = 62;
constexpr int downbeatStress = 8;

struct Tone {
    int at = 0;
    int length = 0;
    int pitch = 0;
};

std::optional<int> numberFrom(std::string_view text)
{
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool whole = error == std::errc{} && end == text.data() + text.size();
    return whole ? std::optional(value) : std::nullopt;
}

std::optional<int> pitchOf(std::string_view note)
{
    constexpr std::string_view letters = "c d ef g a b";
    if (note.size() < 2)
        return {};
    const auto step = letters.find(note.front());
    const auto octave = numberFrom(note.substr(note.size() - 1));
    if (note.front() == ' ' || step == std::string_view::npos || !octave)
        return {};
    const std::string_view accidental = note.substr(1, note.size() - 2);
    const int shift = accidental == "#" ? 1 : accidental == "b" ? -1 : 0;
    if (shift == 0 && !accidental.empty())
        return {};
    return 12 * (*octave + 1) + static_cast<int>(step) + shift;
}

std::optional<int> lengthOf(std::string_view text)
{
    const bool dotted = text.ends_with('.');
    const auto part = numberFrom(dotted ? text.substr(0, text.size() - 1) : text);
    if (!part || *part < 1 || *part > 32 || ticksPerWhole % *part != 0)
        return {};
    const int length = ticksPerWhole / *part;
    return dotted ? length * 3 / 2 : length;
}

/// Reads one voice.
class VoiceReader {
public:
    VoiceReader(int barTicks, int upbeatTicks)
        : barLength_(barTicks)
        , barEnd_(upbeatTicks > 0 ? upbeatTicks : barTicks)
    {
    }

    bool read(std::string_view text)
    {
        while (!text.empty()) {
            const std::size_t end = std::min(text.find_first_of(" \n"), text.size());
            if (end > 0 && !take(text.substr(0, end)))
                return false;
            text.remove_prefix(std::min(end + 1, text.size()));
        }
        return now_ == barEnd_ && tied_.empty();
    }

    [[nodiscard]] const std::vector<Tone> &tones() const { return tones_; }
    [[nodiscard]] int end() const { return now_; } ///< ticks

private:
    bool take(std::string_view token)
    {
        if (token == "|") {
            const bool full = now_ == barEnd_;
            barEnd_ += barLength_;
            return full;
        }
        const bool ties = token.ends_with('~');
        if (ties)
            token.remove_suffix(1);
        if (const auto slash = token.find('/'); slash != std::string_view::npos) {
            const auto given = lengthOf(token.substr(slash + 1));
            if (!given)
                return false;
            length_ = *given;
            token = token.substr(0, slash);
        }
        if (length_ == 0)
            return false;
        const bool read = token == "r" || chord(token, ties);
        now_ += length_;
        return read;
    }

    bool chord(std::string_view notes, bool ties)
    {
        std::vector<std::size_t> held;
        if (notes.empty() || notes.ends_with('+'))
            return false;
        while (!notes.empty()) {
            const std::size_t end = std::min(notes.find('+'), notes.size());
            const auto pitch = pitchOf(notes.substr(0, end));
            notes.remove_prefix(std::min(end + 1, notes.size()));
            if (!pitch)
                return false;
            const auto before = std::ranges::find_if(
                tied_, [&](std::size_t tone) { return tones_[tone].pitch == *pitch; });
            if (before == tied_.end()) {
                held.push_back(tones_.size());
                tones_.push_back({now_, length_, *pitch});
            } else {
                held.push_back(*before);
                tones_[*before].length += length_;
                tied_.erase(before);
            }
        }
        const bool resolved = tied_.empty();
        tied_ = ties ? std::move(held) : std::vector<std::size_t>{};
        return resolved;
    }

    std::vector<Tone> tones_;
    int now_ = 0;
    int barLength_;
    int barEnd_;
    int length_ = 0;
    std::vector<std::size_t> tied_; ///< the tones that go on with the next notes
};

} // namespace

std::optional<Piece> readSheet(const Sheet &sheet)
{
    const int bar = sheet.beats * ticksPerWhole / sheet.beatLength;
    const int upbeat = sheet.upbeat * ticksPerSixteenth;
    const double perTick = 240.0 / ticksPerWhole / sheet.tempo;
    Piece piece;
    piece.spelling = sheet.spelling;
    piece.beats = sheet.beats;
    piece.unit = sheet.beatLength;
    std::optional<int> end;
    const auto addVoice = [&](const std::string &text, int track) {
        VoiceReader voice(bar, upbeat);
        if (!voice.read(text) || (end && voice.end() != *end))
            return false;
        end = voice.end();
        for (const Tone &tone : voice.tones()) {
            const bool downbeat = (tone.at - upbeat) % bar == 0;
            const int velocity =
                (track == 0 ? rightVelocity : leftVelocity) + (downbeat ? downbeatStress : 0);
            piece.notes.emplace_back(tone.at * perTick, tone.length * perTick * legato, tone.pitch,
                velocity, track, track);
        }
        return true;
    };
    for (const std::string &voice : sheet.right) {
        if (!addVoice(voice, 0))
            return {};
    }
    for (const std::string &voice : sheet.left) {
        if (!addVoice(voice, 1))
            return {};
    }
    std::ranges::stable_sort(piece.notes, {}, &Note::at);
    measureLength(piece);
    for (int at = 0; end && at < *end; at += at == 0 && upbeat > 0 ? upbeat + bar : bar)
        piece.bars.push_back(at * perTick);
    return piece;
}

} // namespace kelo::engine
