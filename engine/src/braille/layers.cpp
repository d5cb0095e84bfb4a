#include "braille/layers.h"

#include <algorithm>
#include <map>
#include <tuple>

namespace kelo::engine {

namespace {

constexpr int longestShortSlur = 4; ///< notes

using Place = std::tuple<int, int, int>; ///< part, voice, time

/// How many slur signs follow the notes at a place (rules 6-2 and 6-3 a).
std::map<Place, int> slursOf(const WrittenPiece &piece, Hands hand)
{
    struct Onset {
        int at = 0;
        bool begins = false;
        bool ends = false;
    };
    std::map<std::pair<int, int>, std::vector<Onset>> voices;
    for (const WrittenNote &note : piece.notes) {
        if (note.hand != hand || note.rest() || note.length == 0)
            continue;
        auto &onsets = voices[{note.part, note.voice}];
        if (onsets.empty() || onsets.back().at != note.at)
            onsets.push_back({note.at});
        onsets.back().begins |= note.slurBegins;
        onsets.back().ends |= note.slurEnds;
    }
    std::map<Place, int> slurs;
    for (const auto &each : voices) {
        const std::pair<int, int> voice = each.first;
        const std::vector<Onset> &onsets = each.second;
        const auto mark = [&](std::size_t index, int signs) {
            int &count = slurs[{voice.first, voice.second, onsets[index].at}];
            count = std::max(count, signs);
        };
        std::vector<std::size_t> open;
        for (std::size_t i = 0; i < onsets.size(); ++i) {
            if (onsets[i].ends && !open.empty()) {
                const std::size_t from = open.back();
                open.pop_back();
                const bool isShort = i - from < longestShortSlur;
                for (std::size_t on = from; on < i && isShort; ++on)
                    mark(on, 1);
                if (!isShort) {
                    mark(from, 2);
                    mark(i - 1, 1);
                }
            }
            if (onsets[i].begins)
                open.push_back(i);
        }
    }
    return slurs;
}

/// Puts a note where it can stand: in a chord, after what its voice has, or in a layer of its own.
void place(const WrittenNote &note, int slur, std::vector<Layer> &layers)
{
    const bool grace = note.length == 0;
    for (Layer &layer : layers) {
        if (layer.part != note.part || layer.voice != note.voice)
            continue;
        Event &last = layer.events.back();
        if (!grace && !last.grace && last.at == note.at && last.length == note.length) {
            last.notes.push_back(&note);
            return;
        }
        if (last.at + last.length <= note.at) {
            layer.events.push_back({note.at, note.length, {&note}, grace, slur});
            return;
        }
    }
    layers.push_back({note.part, note.voice, {{note.at, note.length, {&note}, grace, slur}}});
}

double heightOf(const Layer &layer)
{
    double sum = 0;
    int count = 0;
    for (const Event &event : layer.events) {
        for (const WrittenNote *note : event.notes) {
            sum += note->pitch;
            ++count;
        }
    }
    return sum / std::max(count, 1);
}

} // namespace

std::vector<std::vector<Layer>> layersOf(const WrittenPiece &piece, Hands hand)
{
    std::vector<std::vector<Layer>> bars(piece.bars.size());
    const auto slurs = slursOf(piece, hand);
    std::vector<const WrittenNote *> notes;
    for (const WrittenNote &note : piece.notes) {
        const auto bar = static_cast<std::size_t>(note.bar);
        if (note.hand == hand && !note.rest() && note.bar >= 0 && bar < bars.size())
            notes.push_back(&note);
    }
    // Grace notes come before the note that they belong to.
    std::ranges::stable_sort(notes, {},
        [](const WrittenNote *note) { return std::pair(note->at, note->length == 0 ? 0 : 1); });
    for (const WrittenNote *note : notes) {
        const auto slur = slurs.find({note->part, note->voice, note->at});
        place(*note, slur == slurs.end() || note->length == 0 ? 0 : slur->second,
            bars[static_cast<std::size_t>(note->bar)]);
    }
    for (std::vector<Layer> &layers : bars)
        std::ranges::stable_sort(layers, {}, [hand](const Layer &layer) {
            return hand == Hands::Left ? heightOf(layer) : -heightOf(layer);
        });
    return bars;
}

} // namespace kelo::engine
