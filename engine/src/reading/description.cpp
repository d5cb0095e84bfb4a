#include "reading/description.h"

#include "listen/words.h"
#include "theory/harmony.h"
#include "theory/pitch_names.h"
#include "written/note_value.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>
#include <utility>

namespace kelo::engine {

namespace {

/// The names of keys by their signatures, from seven flats to seven sharps.
constexpr std::array<std::string_view, 15> majorKeys{"C flat", "G flat", "D flat", "A flat",
    "E flat", "B flat", "F", "C", "G", "D", "A", "E", "B", "F sharp", "C sharp"};
constexpr std::array<std::string_view, 15> minorKeys{"A flat", "E flat", "B flat", "F", "C", "G",
    "D", "A", "E", "B", "F sharp", "C sharp", "G sharp", "D sharp", "A sharp"};

constexpr std::array<std::pair<std::string_view, std::string_view>, 10> loudnesses{
    {{"ppp", "as soft as possible"}, {"pp", "pianissimo"}, {"p", "piano"}, {"mp", "mezzo piano"},
        {"mf", "mezzo forte"}, {"f", "forte"}, {"ff", "fortissimo"}, {"fff", "as loud as possible"},
        {"sf", "sforzato"}, {"sfz", "sforzato"}}};

std::string_view loudnessOf(std::string_view mark)
{
    const auto found =
        std::ranges::find(loudnesses, mark, &std::pair<std::string_view, std::string_view>::first);
    return found == loudnesses.end() ? mark : found->second;
}

std::string_view handName(Hands hand)
{
    return hand == Hands::Right ? "right hand" : "left hand";
}

std::string capital(std::string text)
{
    if (!text.empty() && text.front() >= 'a' && text.front() <= 'z')
        text.front() = static_cast<char>(text.front() - 'a' + 'A');
    return text;
}

std::string joined(const std::vector<std::string> &parts, std::string_view between)
{
    std::string text;
    for (const std::string &part : parts)
        text.append(text.empty() ? "" : between).append(part);
    return text;
}

} // namespace

std::string nameOf(const WrittenNote &note)
{
    constexpr std::string_view letters = "CDEFGAB";
    constexpr std::array<std::string_view, 5> accidentals{
        " double flat", " flat", "", " sharp", " double sharp"};
    return letters[static_cast<std::size_t>(note.step)]
        + std::string(accidentals[static_cast<std::size_t>(note.alter + 2)]);
}

std::string keyOf(const WrittenBar &bar)
{
    const int fromFlats = bar.fifths + 7;
    const auto index = static_cast<std::size_t>(fromFlats);
    const int count = std::abs(bar.fifths);
    const std::string name =
        std::string((bar.minor ? minorKeys : majorKeys)[index]) + (bar.minor ? " minor" : " major");
    return name
        + (count == 0            ? ", no sharps or flats"
                : bar.fifths > 0 ? ", " + numberInWords(count) + (count == 1 ? " sharp" : " sharps")
                                 : ", " + numberInWords(count) + (count == 1 ? " flat" : " flats"));
}

std::string placeOf(const WrittenBar &bar, int at)
{
    const std::string number = "bar " + numberInWords(bar.number);
    const int after = at - bar.at - bar.upbeat;
    if (after < 0)
        return number + ", upbeat";
    return number + ", beat " + numberInWords(after / pulseOf(bar) + 1)
        + (after % pulseOf(bar) == 0 ? "" : " and after");
}

std::string Description::signsOf(const Walk &walk, Stretch stretch)
{
    std::vector<std::string> parts;
    const WrittenBar &bar = walk.barAt(stretch.from);
    if (std::exchange(bar_, bar.number) != bar.number)
        parts.push_back("bar " + numberInWords(bar.number));
    const bool key = std::exchange(fifths_, bar.fifths) != bar.fifths;
    if ((std::exchange(minor_, bar.minor) != bar.minor) || key)
        parts.push_back(keyOf(bar));
    const bool beats = std::exchange(beats_, bar.beats) != bar.beats;
    if ((std::exchange(unit_, bar.unit) != bar.unit) || beats)
        parts.push_back(numberInWords(bar.beats) + " " + numberInWords(bar.unit) + " time");
    if (stretch.from == bar.at && bar.repeatBegins)
        parts.emplace_back("a repeat begins");
    const auto &signs = walk.piece().signs;
    auto sign = std::ranges::lower_bound(signs, stretch.from, {}, &WrittenSign::at);
    for (; sign != signs.end() && sign->at < stretch.to; ++sign) {
        if (sign->kind == WrittenSign::Kind::Words)
            parts.push_back(sign->text);
        else if (sign->kind == WrittenSign::Kind::Chord)
            parts.push_back("chord " + sign->text);
        else if (sign->kind == WrittenSign::Kind::Dynamics
            && std::exchange(loudness_, sign->text) != sign->text)
            parts.emplace_back(loudnessOf(sign->text));
    }
    return capital(joined(parts, ", "));
}

/// Notes of a hand that begin together: "C four, E and G, quarter, finger one".
std::string Description::eventOf(
    const WrittenBar &bar, const std::vector<const WrittenNote *> &notes, Said &said)
{
    std::vector<std::string> names;
    std::string fingers;
    std::string lyric;
    int length = 0;
    bool trill = false;
    bool rolled = false;
    for (const WrittenNote *note : notes) {
        std::string name = nameOf(*note);
        if (std::exchange(said.octave, note->octave()) != note->octave())
            name += " " + numberInWords(note->octave());
        name += note->tiedOn ? " tied" : "";
        names.push_back(std::move(name));
        if (note->finger > 0)
            fingers += (fingers.empty() ? "" : " ") + numberInWords(note->finger);
        if (!note->lyric.empty())
            lyric = note->lyric;
        length = std::max(length, note->length);
        trill = trill || note->trill;
        rolled = rolled || note->rolled;
    }
    std::string text = joined(names, " ");
    if (length == 0)
        text = "grace note " + text;
    else if (std::exchange(said.length, length) != length)
        text += ", " + nameOf(length, pulseOf(bar));
    text += trill ? ", ornament" : "";
    text += rolled ? ", rolled" : "";
    text += fingers.empty() ? "" : ", finger " + fingers;
    return lyric.empty() ? text : text + ", sung " + lyric;
}

std::string Description::notesOf(const Walk &walk, Stretch stretch, Hands hand)
{
    const auto notes = walk.notesIn(stretch, hand);
    std::vector<std::string> events;
    int sounds = stretch.from;
    for (std::size_t i = 0; i < notes.size();) {
        std::size_t next = i;
        std::vector<const WrittenNote *> together;
        int end = 0;
        while (next < notes.size() && notes[next]->at == notes[i]->at
            && (notes[next]->length > 0) == (notes[i]->length > 0)) {
            end = std::max(end, notes[next]->end());
            together.push_back(notes[next++]);
        }
        if (notes[i]->at > sounds && i > 0)
            events.push_back(nameOf(notes[i]->at - sounds, pulseOf(walk.barAt(sounds))) + " rest");
        events.push_back(
            eventOf(walk.barAt(notes[i]->at), together, said_[static_cast<std::size_t>(hand)]));
        sounds = std::max(sounds, end);
        i = next;
    }
    return joined(events, "; ");
}

std::string Description::tell(const Walk &walk, Stretch stretch, Hands hands)
{
    std::string text = signsOf(walk, stretch);
    if (!text.empty())
        text += ". ";
    std::string right = hands == Hands::Left ? "" : notesOf(walk, stretch, Hands::Right);
    std::string left = hands == Hands::Right ? "" : notesOf(walk, stretch, Hands::Left);
    if (right.empty() && left.empty())
        return text + capital(nameOf(stretch.to - stretch.from, pulseOf(walk.barAt(stretch.from))))
            + " rest.";
    // With one hand alone nobody needs to be told which, nor twice in a row.
    std::string named;
    for (const Hands hand : {Hands::Right, Hands::Left}) {
        std::string &notes = hand == Hands::Right ? right : left;
        const std::string &other = hand == Hands::Right ? left : right;
        if (notes.empty())
            continue;
        const bool say = hands == Hands::Both && (!other.empty() || hands_ != handName(hand));
        text += (say ? capital(std::string(handName(hand))) + ": " : "") + notes + ". ";
        named = other.empty() ? handName(hand) : "";
    }
    hands_ = named;
    text.pop_back();
    return text;
}

std::string spelledChord(const Walk &walk, int at)
{
    const auto notes = walk.soundingAt(at);
    if (notes.empty())
        return "Nothing sounds here.";
    std::vector<std::string> names;
    std::vector<int> pitches;
    int octave = -1;
    for (const WrittenNote *note : notes) {
        const bool moved = std::exchange(octave, note->octave()) != note->octave();
        names.push_back(nameOf(*note) + (moved ? " " + numberInWords(note->octave()) : ""));
        pitches.push_back(note->pitch);
    }
    std::string text = joined(names, ", ") + ".";
    if (const auto harmony = harmonyOf(pitches); harmony && pitches.size() > 2) {
        const WrittenBar &bar = walk.barAt(at);
        const Spelling spelling = bar.fifths < 0 ? Spelling::Flats
            : bar.fifths > 0                     ? Spelling::Sharps
                                                 : Spelling::Mixed;
        text += " " + pitchName(harmony->root, spelling)
            + (harmony->third == 3       ? harmony->fifth == 6 ? " diminished." : " minor."
                    : harmony->fifth > 7 ? " augmented."
                                         : " major.");
    }
    return text;
}

} // namespace kelo::engine
