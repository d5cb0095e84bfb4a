#include "link/note_lines.h"

#include "link/bounds.h"
#include "link/keywords.h"
#include "link/link_editor.h"
#include "link/note_listener.h"
#include "link/parse.h"

#include <algorithm>

namespace kelo {

namespace {

/// Exactly two integers: a pitch and a velocity.
struct NoteEvent {
    qint64 pitch;
    qint64 velocity;

    static std::optional<NoteEvent> read(QByteArrayView rest)
    {
        const parse::Integers numbers = parse::integers(rest);
        if (numbers.size() != 2)
            return std::nullopt;
        return NoteEvent{numbers[0], numbers[1]};
    }
    [[nodiscard]] bool released() const { return velocity < 1; }
};

} // namespace

bool NoteLines::handle(std::string_view keyword, QByteArrayView rest, double now)
{
    using Is = NoteLines;
    static constexpr std::array<Keyword<Is>, 7> table{{
        {"on", &Is::on},
        {"out", &Is::out},
        {"rolln", &Is::rollNotes},
        {"rollnew", &Is::rollNew},
        {"rollstart", &Is::rollStart},
        {"rollstop", &Is::rollStop},
        {"buttons", &Is::buttons},
    }};
    return handleBy(*this, table, keyword, rest, now);
}

void NoteLines::on(QByteArrayView rest, double now)
{
    const auto event = NoteEvent::read(rest);
    if (!event)
        return;
    if (NoteListener *scene = link_.scene())
        scene->note(event->pitch, strengthOf(event->velocity), true);
    link_.poke([&](LinkState &all) {
        if (event->released()) {
            all.keyboard.release(event->pitch, now);
        } else {
            all.keyboard.press(event->pitch, event->velocity, now);
            all.pulseAt = now;
        }
    });
    link_.tell(&Link::keysChanged);
}

void NoteLines::out(QByteArrayView rest, double now)
{
    const auto event = NoteEvent::read(rest);
    if (!event)
        return;
    if (NoteListener *scene = link_.scene())
        scene->note(event->pitch, strengthOf(event->velocity), false);
    link_.poke([&](LinkState &all) {
        if (event->released())
            all.keyboard.silence(event->pitch, now);
        else
            all.keyboard.sound(event->pitch, event->velocity, now);
    });
    link_.tell(&Link::keysChanged);
}

void NoteLines::buttons(QByteArrayView rest, double /*now*/)
{
    const parse::Integers pitches = parse::integers(rest);
    const auto kept = std::min(pitches.size(), bounds::buttons);
    link_.poke([&](LinkState &all) {
        all.keyboard.buttons = QList<qint64>(pitches.begin(), pitches.begin() + kept);
    });
    link_.tell(&Link::buttonsChanged);
}

void NoteLines::rollNew(QByteArrayView rest, double /*now*/)
{
    link_.change({&Link::rollNameChanged, &Link::rollingChanged, &Link::visualChanged},
        [title = parse::text(rest, bounds::readout)](LinkState &all) {
            all.roll.begin(title);
            all.display.visual = true;
        });
    if (NoteListener *scene = link_.scene())
        scene->clearRoll();
}

void NoteLines::rollNotes(QByteArrayView rest, double /*now*/)
{
    parse::eachPiece(rest, ';', [this](QByteArrayView note) {
        const parse::Pieces fields = parse::pieces(note, ',');
        if (fields.size() != 5)
            return;
        const auto t = parse::decimal(fields[0]);
        const auto dur = parse::decimal(fields[1]);
        const auto pitch = parse::integer(fields[2]);
        const auto vel = parse::integer(fields[3]);
        const auto track = parse::integer(fields[4]);
        if (t && dur && pitch && vel && track)
            link_.poke([&](LinkState &all) { all.roll.append({*t, *dur, *pitch, *vel, *track}); });
    });
}

void NoteLines::rollStart(QByteArrayView rest, double now)
{
    QVarLengthArray<double, 4> numbers;
    parse::eachPiece(rest, ' ', [&numbers](QByteArrayView token) {
        if (const auto value = parse::decimal(token))
            numbers.append(*value);
    });
    if (numbers.size() != 2)
        return;
    link_.poke([&](LinkState &all) {
        all.roll.zero = now + numbers[0]; // the first number is a lead-in
        all.roll.length = numbers[1];
    });
}

void NoteLines::rollStop(QByteArrayView /*rest*/, double /*now*/)
{
    link_.change({&Link::rollingChanged}, [](LinkState &all) { all.roll.stop(); });
    if (NoteListener *scene = link_.scene())
        scene->clearRoll();
}

} // namespace kelo
