#include "composing/score.h"

#include "music/midi_writer.h"

#include <algorithm>

namespace kelo::engine {

namespace {

constexpr int drumChannel = 9;

/// Channels of parts, past the drums'.
int channelOf(const Score &score, int part)
{
    if (score.parts[static_cast<std::size_t>(part)].drums)
        return drumChannel;
    return part < drumChannel ? part : part + 1;
}

} // namespace

int Score::bars() const
{
    int end = 0;
    for (const Tone &tone : tones)
        end = std::max(end, tone.at + tone.length);
    return (end + barTicks() - 1) / barTicks();
}

std::vector<Tone> Score::partTones(int part) const
{
    std::vector<Tone> own;
    std::ranges::copy_if(
        tones, std::back_inserter(own), [part](const Tone &tone) { return tone.part == part; });
    return own;
}

void Score::sort()
{
    std::ranges::stable_sort(tones, {}, &Tone::at);
}

Piece pieceOf(const Score &score)
{
    constexpr double held = 0.95; // repeated notes are two
    const double tick = 60.0 / score.tempo / ticksPerQuarter;
    Piece piece;
    piece.beats = score.metre.beats;
    piece.unit = score.metre.unit;
    piece.spelling = spellingOf(score.key);
    for (int part = 0; part < static_cast<int>(score.parts.size()); ++part) {
        const Part &player = score.parts[static_cast<std::size_t>(part)];
        const auto channel = static_cast<unsigned char>(channelOf(score, part));
        if (!player.drums)
            piece.messages.push_back({0,
                {static_cast<unsigned char>(0xc0 | channel),
                    static_cast<unsigned char>(player.program), 0}});
        piece.messages.push_back({0,
            {static_cast<unsigned char>(0xb0 | channel), 7,
                static_cast<unsigned char>(player.volume)}});
    }
    for (const Tone &tone : score.tones) {
        piece.notes.emplace_back(tone.at * tick, tone.length * tick * held,
            std::clamp(tone.pitch, 0, 127), std::clamp(tone.velocity, 1, 127), tone.part,
            channelOf(score, tone.part));
    }
    for (int bar = 0; bar < score.bars(); ++bar)
        piece.bars.push_back(bar * score.barTicks() * tick);
    measureLength(piece);
    return piece;
}

std::vector<std::uint8_t> midiOf(const Score &score)
{
    return writeMidiFile(pieceOf(score),
        {score.tempo, score.metre.beats, score.metre.unit, sharpsOf(score.key), score.key.minor});
}

Harmony triadOn(const Tonality &key, int degree)
{
    const int root = semitonesOf(key, degree);
    Harmony triad{(key.tonic + root % 12 + 12) % 12, semitonesOf(key, degree + 2) - root,
        semitonesOf(key, degree + 4) - root};
    if (key.minor && (degree % 7 + 7) % 7 == 4)
        triad.third = 4;
    return triad;
}

bool contains(const Harmony &harmony, int pitch)
{
    const int above = ((pitch - harmony.root) % 12 + 12) % 12;
    return above == 0 || above == harmony.third % 12 || above == harmony.fifth % 12;
}

} // namespace kelo::engine
