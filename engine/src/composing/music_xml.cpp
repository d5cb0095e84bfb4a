#include "composing/music_xml.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>

namespace kelo::engine {

namespace {

struct NoteValue {
    int ticks;
    std::string_view type;
    bool dotted;
};

constexpr std::array<NoteValue, 9> noteValues{{{96, "whole", false}, {72, "half", true},
    {48, "half", false}, {36, "quarter", true}, {24, "quarter", false}, {18, "eighth", true},
    {12, "eighth", false}, {6, "16th", false}, {3, "32nd", false}}};
constexpr int shortest = 3; ///< ticks of what is written

std::string element(std::string_view name, std::string_view contents)
{
    return "<" + std::string(name) + ">" + std::string(contents) + "</" + std::string(name) + ">";
}

std::string element(std::string_view name, int number)
{
    return element(name, std::to_string(number));
}

std::string escaped(std::string_view text)
{
    std::string safe;
    for (const char c : text)
        safe += c == '&' ? "&amp;" : c == '<' ? "&lt;" : c == '>' ? "&gt;" : std::string(1, c);
    return safe;
}

std::string pitchElement(int pitch, bool flats)
{
    constexpr std::string_view sharpSteps = "CCDDEFFGGAAB";
    constexpr std::string_view flatSteps = "CDDEEFGGAABB";
    constexpr unsigned black = 0b010101001010;
    const auto index = static_cast<std::size_t>(pitch % 12);
    const bool altered = (black >> index & 1U) != 0;
    return "<pitch>" + element("step", std::string(1, (flats ? flatSteps : sharpSteps)[index]))
        + (altered ? element("alter", flats ? -1 : 1) : "") + element("octave", pitch / 12 - 1)
        + "</pitch>";
}

/// Writes the measures of one part.
class PartWriter {
public:
    PartWriter(const Score &score, int part)
        : score_(score)
        , tones_(score.partTones(part))
        , flats_(sharpsOf(score.key) < 0)
    {
        // What is shorter than any written value leaves no rest for programs to stumble over.
        const auto onGrid = [](int ticks) { return (ticks + shortest / 2) / shortest * shortest; };
        for (Tone &tone : tones_) {
            const int end = onGrid(tone.at + tone.length);
            tone.at = onGrid(tone.at);
            tone.length = std::max(shortest, end - tone.at);
        }
    }

    std::string measures()
    {
        const int bars = std::max(score_.bars(), 1);
        std::string xml;
        for (int bar = 0; bar < bars; ++bar) {
            xml += "<measure number=\"" + std::to_string(bar + 1) + "\">";
            if (bar == 0)
                xml += attributes();
            xml += measure(bar * score_.barTicks()) + "</measure>\n";
        }
        return xml;
    }

private:
    [[nodiscard]] std::string attributes() const
    {
        double sum = 0;
        for (const Tone &tone : tones_)
            sum += tone.pitch;
        const bool low = !tones_.empty() && sum / static_cast<double>(tones_.size()) < 57;
        return "<attributes>" + element("divisions", ticksPerQuarter) + "<key>"
            + element("fifths", sharpsOf(score_.key))
            + element("mode", score_.key.minor ? "minor" : "major") + "</key><time>"
            + element("beats", score_.metre.beats) + element("beat-type", score_.metre.unit)
            + "</time><clef>" + element("sign", low ? "F" : "G") + element("line", low ? 4 : 2)
            + "</clef></attributes><sound tempo=\"" + std::to_string(score_.tempo) + "\"/>";
    }

    [[nodiscard]] std::string measure(int from) const
    {
        const int to = from + score_.barTicks();
        std::string xml;
        int now = from;
        for (std::size_t i = 0; i < tones_.size();) {
            // A chord: what begins together; it ends where the next begins.
            std::size_t next = i;
            int length = 0;
            while (next < tones_.size() && tones_[next].at == tones_[i].at)
                length = std::max(length, tones_[next++].length);
            const int end = std::min(tones_[i].at + length,
                next < tones_.size() ? tones_[next].at : tones_[i].at + length);
            const int begins = std::max(tones_[i].at, from);
            const int ends = std::min(end, to);
            if (begins < ends) {
                xml += written(now, begins, {}, false, false);
                const bool tiedBefore = tones_[i].at < from;
                const bool tiedAfter = to < end;
                xml += written(
                    begins, ends, std::span(tones_).subspan(i, next - i), tiedBefore, tiedAfter);
                now = ends;
            }
            i = next;
        }
        return xml + written(now, to, {}, false, false);
    }

    /// Notes, or a rest, for a stretch of time, in as many written values as it takes.
    [[nodiscard]] std::string written(
        int from, int to, std::span<const Tone> chord, bool tiedBefore, bool tiedAfter) const
    {
        std::string xml;
        while (from < to) {
            const auto value = std::ranges::find_if(
                noteValues, [&](const NoteValue &each) { return each.ticks <= to - from; });
            const int ticks = value->ticks;
            const bool stop = tiedBefore;
            const bool start = tiedAfter || from + ticks < to;
            bool second = false;
            const auto note = [&](const std::string &what) {
                xml += "<note>" + std::string(second ? "<chord/>" : "") + what
                    + element("duration", ticks);
                if (!chord.empty())
                    xml += std::string(stop ? "<tie type=\"stop\"/>" : "")
                        + (start ? "<tie type=\"start\"/>" : "");
                xml += element("type", value->type) + (value->dotted ? "<dot/>" : "");
                // One says that it sounds on, the other one that a tie is drawn.
                if (!chord.empty() && (stop || start))
                    xml += element("notations",
                        std::string(stop ? "<tied type=\"stop\"/>" : "")
                            + (start ? "<tied type=\"start\"/>" : ""));
                xml += "</note>";
                second = true;
            };
            if (chord.empty())
                note("<rest/>");
            for (const Tone &tone : chord)
                note(pitchElement(tone.pitch, flats_));
            tiedBefore = true;
            from += ticks;
        }
        return xml;
    }

    const Score &score_;
    std::vector<Tone> tones_;
    bool flats_;
};

} // namespace

std::string musicXml(const Score &score)
{
    std::string list;
    std::string parts;
    for (int part = 0; part < static_cast<int>(score.parts.size()); ++part) {
        const Part &player = score.parts[static_cast<std::size_t>(part)];
        if (player.drums)
            continue;
        const std::string id = "P" + std::to_string(part + 1);
        // Some programs know no part without an instrument.
        const std::string instrument = "id=\"" + id + "-I1\">";
        const int channel = part < 9 ? part + 1 : 16;
        for (const std::string &each :
            {"<score-part id=\"" + id + "\">", element("part-name", escaped(player.name)),
                "<score-instrument " + instrument, element("instrument-name", escaped(player.name)),
                "</score-instrument><midi-instrument " + instrument,
                element("midi-channel", channel), element("midi-program", player.program + 1),
                std::string("</midi-instrument></score-part>")})
            list += each;
        parts += "<part id=\"" + id + "\">\n" + PartWriter(score, part).measures() + "</part>\n";
    }
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!DOCTYPE score-partwise PUBLIC \"-//Recordare//DTD MusicXML 3.1 Partwise//EN\" "
           "\"http://www.musicxml.org/dtds/partwise.dtd\">\n"
           "<score-partwise version=\"3.1\">\n<work>"
        + element("work-title", escaped(score.title)) + "</work>\n<part-list>" + list
        + "</part-list>\n" + parts + "</score-partwise>\n";
}

} // namespace kelo::engine
