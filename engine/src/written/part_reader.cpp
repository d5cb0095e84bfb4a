#include "written/part_reader.h"

#include "protocol/text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <optional>
#include <string_view>
#include <utility>

namespace kelo::engine {

namespace {

constexpr int mostVoices = 64;

template <typename Value, std::size_t count>
using Names = std::array<std::pair<std::string_view, Value>, count>;

template <typename Value, std::size_t count>
std::optional<Value> named(std::string_view name, const Names<Value, count> &names)
{
    const auto found = std::ranges::find(names, name, &Names<Value, count>::value_type::first);
    return found == names.end() ? std::nullopt : std::optional(found->second);
}

constexpr Names<int, 10> velocities{{{"ppp", 26}, {"pp", 38}, {"p", 52}, {"mp", 66}, {"mf", 80},
    {"f", 96}, {"ff", 112}, {"fff", 124}, {"sf", 104}, {"sfz", 108}}};
constexpr Names<int, 9> noteTypes{{{"breve", 0}, {"whole", 1}, {"half", 2}, {"quarter", 4},
    {"eighth", 8}, {"16th", 16}, {"32nd", 32}, {"64th", 64}, {"128th", 128}}};
/// What the usual words mean, in quarters a minute.
constexpr Names<double, 13> tempoWords{{{"grave", 42}, {"largo", 48}, {"lento", 54},
    {"larghetto", 60}, {"adagio", 66}, {"andante", 76}, {"andantino", 84}, {"moderato", 96},
    {"allegretto", 112}, {"allegro", 132}, {"vivace", 152}, {"presto", 176}, {"prestissimo", 200}}};
constexpr Names<std::string_view, 12> chordKinds{{{"major", ""}, {"minor", "m"}, {"dominant", "7"},
    {"major-seventh", "maj7"}, {"minor-seventh", "m7"}, {"diminished", "dim"}, {"augmented", "aug"},
    {"half-diminished", "m7b5"}, {"diminished-seventh", "dim7"}, {"suspended-fourth", "sus4"},
    {"major-sixth", "6"}, {"minor-sixth", "m6"}}};

std::string shortText(const char *text)
{
    return oneLine(text, longestWrittenText);
}

double tempoOf(std::string_view words)
{
    const std::string first = lowered(std::string(words.substr(0, words.find_first_of(" ,."))));
    return named(first, tempoWords).value_or(0);
}

bool isYes(const pugi::xml_attribute &attribute)
{
    return std::string_view(attribute.value()) == "yes";
}

double sane(double tempo)
{
    return tempo >= 10 && tempo <= 500 ? tempo : 0;
}

bool isStart(const pugi::xml_node &node)
{
    return std::string_view(node.attribute("type").value()) == "start";
}

bool readPitch(const pugi::xml_node &pitch, WrittenNote &note)
{
    constexpr std::string_view letters = "CDEFGAB";
    constexpr std::array<int, 7> semitones{0, 2, 4, 5, 7, 9, 11};
    const std::string_view step = pitch.child("step").child_value();
    const auto letter = step.size() == 1 ? letters.find(step.front()) : std::string_view::npos;
    const int octave = pitch.child("octave").text().as_int(-1);
    if (letter == std::string_view::npos || octave < 0 || octave > 9)
        return false;
    const double alter = pitch.child("alter").text().as_double();
    if (!(std::abs(alter) <= 2)) // quarter tones go to the key beside them
        return false;
    const int sounding =
        12 * (octave + 1) + semitones[letter] + static_cast<int>(std::lround(alter));
    note.step = static_cast<std::int8_t>(letter);
    note.alter = static_cast<std::int8_t>(std::lround(alter));
    note.pitch = static_cast<std::int16_t>(sounding);
    return sounding >= 0 && sounding < 128;
}

void readNotations(const pugi::xml_node &notations, WrittenNote &note)
{
    const pugi::xml_node technical = notations.child("technical");
    if (const int finger = technical.child("fingering").text().as_int(); finger >= 1 && finger <= 5)
        note.finger = static_cast<std::int8_t>(finger);
    for (const pugi::xml_node slur : notations.children("slur")) {
        note.slurBegins = note.slurBegins || isStart(slur);
        note.slurEnds = note.slurEnds || std::string_view(slur.attribute("type").value()) == "stop";
    }
    note.rolled = note.rolled || notations.child("arpeggiate");
    note.staccato = note.staccato || notations.child("articulations").child("staccato");
    note.trill = note.trill || notations.child("ornaments").first_child();
}

} // namespace

void PartReader::read(const pugi::xml_node &part)
{
    for (const pugi::xml_node each : part.children("measure")) {
        if (bar_ == mostWrittenBars || piece_.notes.size() >= mostWrittenNotes)
            break;
        measure(each);
        ++bar_;
    }
}

void PartReader::measure(const pugi::xml_node &measure)
{
    now_ = chordAt_ = reached_ = 0;
    if (bar_ == piece_.bars.size()) {
        WrittenBar bar = signature_;
        const int before = piece_.bars.empty() ? 0 : piece_.bars.back().number;
        bar.number = std::clamp(measure.attribute("number").as_int(before), 0, 99999);
        piece_.bars.push_back(bar);
    }
    bar().endings |= ending_;
    for (const pugi::xml_node node : measure.children()) {
        const std::string_view name = node.name();
        if (name == "note")
            note(node);
        else if (name == "backup")
            move(-durationOf(node));
        else if (name == "forward")
            move(durationOf(node));
        else if (name == "attributes")
            attributes(node);
        else if (name == "direction")
            direction(node);
        else if (name == "harmony")
            harmony(node);
        else if (name == "barline")
            barline(node);
        else if (name == "sound")
            sound(node);
    }
    bar().length = std::max(bar().length, reached_);
    if (bar().length == 0)
        bar().length = std::min(longestWrittenBar, bar().beats * bar().beatLength());
}

void PartReader::attributes(const pugi::xml_node &node)
{
    if (const double divisions = node.child("divisions").text().as_double();
        divisions > 0 && divisions <= 1e6)
        divisions_ = divisions;
    if (const int staves = node.child("staves").text().as_int(); staves > 0)
        staves_ = std::clamp(staves, staves_, 8);
    if (const pugi::xml_node key = node.child("key")) {
        signature_.fifths = std::clamp(key.child("fifths").text().as_int(), -7, 7);
        signature_.minor = std::string_view(key.child("mode").child_value()) == "minor";
    }
    if (const pugi::xml_node time = node.child("time"); time.child("beats")) {
        const int beats = time.child("beats").text().as_int();
        const int unit = time.child("beat-type").text().as_int();
        const bool power = unit >= 1 && unit <= 64 && (unit & (unit - 1)) == 0;
        if (beats >= 1 && beats <= 64 && power) {
            signature_.beats = beats;
            signature_.unit = unit;
        }
    }
    if (part_ == 0) {
        bar().fifths = signature_.fifths;
        bar().minor = signature_.minor;
        bar().beats = signature_.beats;
        bar().unit = signature_.unit;
    }
}

int PartReader::durationOf(const pugi::xml_node &node) const
{
    const double quarters = node.child("duration").text().as_double() / divisions_;
    if (!(quarters > 0))
        return 0;
    return static_cast<int>(
        std::lround(std::min(quarters * writtenQuarter, double{longestWrittenBar})));
}

void PartReader::move(int by)
{
    now_ = std::clamp(now_ + by, 0, longestWrittenBar);
    reached_ = std::max(reached_, now_);
}

void PartReader::note(const pugi::xml_node &node)
{
    const bool grace = static_cast<bool>(node.child("grace"));
    WrittenNote note;
    note.length = grace ? 0 : durationOf(node);
    const bool chord = static_cast<bool>(node.child("chord"));
    note.at = chord ? chordAt_ : now_;
    chordAt_ = note.at;
    if (!chord)
        move(note.length);
    note.length = std::min(note.length, longestWrittenBar - note.at);
    const bool sounds = node.child("pitch") && !node.child("cue");
    if ((sounds && !readPitch(node.child("pitch"), note)) || (!sounds && !node.child("rest"))
        || piece_.notes.size() >= mostWrittenNotes || (!grace && note.length == 0))
        return;
    note.bar = static_cast<int>(bar_);
    note.part = static_cast<std::int16_t>(part_);
    note.voice = std::clamp(node.child("voice").text().as_int(1), 0, mostVoices);
    note.staff =
        static_cast<std::int8_t>(std::clamp(node.child("staff").text().as_int(1), 1, 8) - 1);
    staves_ = std::max(staves_, note.staff + 1);
    note.velocity = static_cast<std::uint8_t>(velocity_);
    note.value =
        static_cast<std::int16_t>(named(node.child("type").child_value(), noteTypes).value_or(0));
    const auto dots = node.children("dot");
    note.dots = static_cast<std::int8_t>(
        std::min<std::ptrdiff_t>(3, std::distance(dots.begin(), dots.end())));
    for (const pugi::xml_node tie : node.children("tie"))
        (isStart(tie) ? note.tiedOn : note.tiedBefore) = true;
    for (const pugi::xml_node notations : node.children("notations"))
        readNotations(notations, note);
    note.lyric = shortText(node.child("lyric").child("text").child_value());
    piece_.notes.push_back(std::move(note));
}

void PartReader::direction(const pugi::xml_node &node)
{
    double tempo = 0;
    for (const pugi::xml_node type : node.children("direction-type")) {
        if (const pugi::xml_node mark = type.child("dynamics").first_child()) {
            velocity_ = named(mark.name(), velocities).value_or(velocity_);
            sign(WrittenSign::Kind::Dynamics, shortText(mark.name()));
        }
        if (const pugi::xml_node words = type.child("words"); words.child_value()[0] != '\0') {
            sign(WrittenSign::Kind::Words, shortText(words.child_value()));
            tempo = std::max(tempo, tempoOf(words.child_value()));
        }
        if (const pugi::xml_node metronome = type.child("metronome")) {
            const int unit =
                named(metronome.child("beat-unit").child_value(), noteTypes).value_or(4);
            const double dotted = metronome.child("beat-unit-dot") ? 1.5 : 1;
            if (unit > 0)
                tempo = metronome.child("per-minute").text().as_double() * 4 * dotted / unit;
        }
        bar().segno = bar().segno || type.child("segno");
        bar().coda = bar().coda || type.child("coda");
    }
    const pugi::xml_node given = node.child("sound");
    if (!given.attribute("tempo") && sane(tempo) > 0)
        sign(WrittenSign::Kind::Tempo, {}, tempo);
    sound(given);
}

void PartReader::sign(WrittenSign::Kind kind, std::string text, double tempo)
{
    if (piece_.signs.size() < mostWrittenNotes)
        piece_.signs.push_back({kind, now_, static_cast<int>(bar_), std::move(text), tempo});
}

void PartReader::sound(const pugi::xml_node &node)
{
    if (const double tempo = sane(node.attribute("tempo").as_double()); tempo > 0)
        sign(WrittenSign::Kind::Tempo, {}, tempo);
    if (const double dynamics = node.attribute("dynamics").as_double(); dynamics > 0)
        velocity_ = static_cast<int>(std::clamp(dynamics * 0.9, 1.0, 127.0));
    bar().segno = bar().segno || node.attribute("segno");
    bar().coda = bar().coda || node.attribute("coda");
    bar().toCoda = bar().toCoda || node.attribute("tocoda");
    bar().fine = bar().fine || node.attribute("fine");
    bar().daCapo = bar().daCapo || isYes(node.attribute("dacapo"));
    bar().dalSegno = bar().dalSegno || node.attribute("dalsegno");
}

void PartReader::harmony(const pugi::xml_node &node)
{
    const pugi::xml_node root = node.child("root");
    std::string text = shortText(root.child("root-step").child_value());
    if (text.empty())
        return;
    const int alter = root.child("root-alter").text().as_int();
    text += alter > 0 ? "#" : alter < 0 ? "b" : "";
    const pugi::xml_node kind = node.child("kind");
    const auto known = named(kind.child_value(), chordKinds);
    text += known ? std::string(*known) : shortText(kind.attribute("text").value());
    sign(WrittenSign::Kind::Chord, std::move(text));
}

void PartReader::barline(const pugi::xml_node &node)
{
    if (const pugi::xml_node repeat = node.child("repeat")) {
        if (std::string_view(repeat.attribute("direction").value()) == "forward")
            bar().repeatBegins = true;
        else
            bar().repeatEnds = std::clamp(repeat.attribute("times").as_int(2), 2, 8);
    }
    const pugi::xml_node ending = node.child("ending");
    if (!ending)
        return;
    ending_ = 0;
    if (isStart(ending)) {
        for (const char digit : std::string_view(ending.attribute("number").value())) {
            if (digit >= '1' && digit <= '9')
                ending_ |= 1U << (digit - '0');
        }
        bar().endings |= ending_;
    }
}

} // namespace kelo::engine
