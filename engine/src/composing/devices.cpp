#include "composing/devices.h"

#include "composing/accompaniment.h"

#include <algorithm>
#include <array>

namespace kelo::engine {

namespace {

/// The first two bars: an idea is heard best on little.
Score motifOf(const Score &theme)
{
    Score motif = theme;
    const int end = 2 * theme.barTicks();
    motif.tones = theme.partTones(0);
    std::erase_if(motif.tones, [end](const Tone &tone) { return tone.at >= end; });
    for (Tone &tone : motif.tones)
        tone.length = std::min(tone.length, end - tone.at);
    motif.parts = {{"Melody"}};
    motif.harmony.resize(std::min<std::size_t>(motif.harmony.size(), 2));
    return motif;
}

/// The motif, then what `change` makes of it.
template <typename Change> Score answered(const Score &theme, Change change)
{
    Score score = motifOf(theme);
    const auto motif = score.tones;
    const int start = 2 * score.barTicks();
    for (Tone tone : motif) {
        change(tone);
        tone.at += start;
        score.tones.push_back(tone);
    }
    score.sort();
    return score;
}

int moved(const Score &theme, int pitch, int degrees)
{
    return pitchOf(theme.key, degreeOf(theme.key, pitch) + degrees);
}

Score sequence(const Score &theme)
{
    Score score = motifOf(theme);
    const auto motif = score.tones;
    for (const int step : {1, 2}) {
        for (Tone tone : motif) {
            tone.pitch = moved(theme, tone.pitch, step);
            tone.at += 2 * step * score.barTicks();
            score.tones.push_back(tone);
        }
    }
    return score;
}

Score inversion(const Score &theme)
{
    const Score motif = motifOf(theme);
    const int axis = motif.tones.empty() ? 0 : degreeOf(theme.key, motif.tones.front().pitch);
    return answered(theme, [&](Tone &tone) {
        tone.pitch = pitchOf(theme.key, 2 * axis - degreeOf(theme.key, tone.pitch));
    });
}

Score retrograde(const Score &theme)
{
    const int end = 2 * theme.barTicks();
    return answered(theme, [end](Tone &tone) { tone.at = end - tone.at - tone.length; });
}

Score augmentation(const Score &theme)
{
    return answered(theme, [](Tone &tone) {
        tone.at *= 2;
        tone.length *= 2;
    });
}

Score diminution(const Score &theme)
{
    return answered(theme, [](Tone &tone) {
        tone.at /= 2;
        tone.length /= 2;
    });
}

Score pedal(const Score &theme)
{
    Score score = motifOf(theme);
    score.parts.push_back({"Pedal note"});
    score.tones.push_back({0, 2 * score.barTicks(), pitchOf(theme.key, 0) - 24, 70, 1});
    score.sort();
    return score;
}

Score imitation(const Score &theme)
{
    Score score = motifOf(theme);
    const auto motif = score.tones;
    score.parts.push_back({"Second voice"});
    for (Tone tone : motif) {
        tone.at += score.barTicks();
        tone.pitch -= 12;
        tone.part = 1;
        score.tones.push_back(tone);
    }
    score.sort();
    return score;
}

/// Notes on the first beat of a bar come from the note above, which is held over.
Score suspension(const Score &theme)
{
    Score score = motifOf(theme);
    std::vector<Tone> tones;
    for (Tone tone : score.tones) {
        if (tone.at % score.barTicks() == 0 && tone.length >= ticksPerQuarter) {
            Tone held = tone;
            held.pitch = moved(theme, tone.pitch, 1);
            held.length /= 2;
            tone.at += held.length;
            tone.length -= held.length;
            tones.push_back(held);
        }
        tones.push_back(tone);
    }
    score.tones = std::move(tones);
    accompany(score, {"Chords"}, Figure::Sustained, 48, 50);
    return score;
}

constexpr std::array<Device, deviceCount> devices{{
    {"Sequence",
        "Say the same thing again, a step higher, and once more. It makes a short idea "
        "travel.",
        &sequence},
    {"Inversion", "Turn the idea upside down: where it went up it now goes down by as much.",
        &inversion},
    {"Imitation", "A second voice says the same a bar later, while the first goes on.", &imitation},
    {"Pedal note", "One low note stays while everything above it moves. It makes the ground firm.",
        &pedal},
    {"Augmentation", "Make every note twice as long. The idea becomes solemn.", &augmentation},
    {"Diminution", "Make every note half as long. The idea becomes excited.", &diminution},
    {"Suspension",
        "Hold the note before for a moment where the next is expected, then let it "
        "step down.",
        &suspension},
    {"Retrograde", "Play it backwards, from the last note to the first.", &retrograde},
}};

} // namespace

const Device &deviceAt(std::size_t which)
{
    return devices[which % devices.size()];
}

} // namespace kelo::engine
