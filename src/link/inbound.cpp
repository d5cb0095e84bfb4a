#include "link/inbound.h"

#include "link/link.h"
#include "link/parse.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

using parse::list;
using parse::text;

} // namespace

// Sorted by keyword.
constinit const std::array<Inbound::Entry, 36> Inbound::table{{
    {"access", &Inbound::access},
    {"bandlevel", &Inbound::bandLevel},
    {"bandstyle", &Inbound::bandStyle},
    {"beat", &Inbound::beat},
    {"buttons", &Inbound::buttons},
    {"daw", &Inbound::daw},
    {"done", &Inbound::done},
    {"earreset", &Inbound::earReset},
    {"ears", &Inbound::ears},
    {"flash", &Inbound::flash},
    {"hands", &Inbound::hands},
    {"heard", &Inbound::heard},
    {"jazz", &Inbound::jazz},
    {"kbd", &Inbound::kbd},
    {"live", &Inbound::live},
    {"mode", &Inbound::mode},
    {"name", &Inbound::name},
    {"now", &Inbound::timeOfDay},
    {"on", &Inbound::on},
    {"out", &Inbound::out},
    {"paused", &Inbound::paused},
    {"relaunch", &Inbound::relaunch},
    {"rolln", &Inbound::rollNotes},
    {"rollnew", &Inbound::rollNew},
    {"rollstart", &Inbound::rollStart},
    {"rollstop", &Inbound::rollStop},
    {"say", &Inbound::say},
    {"spec", &Inbound::spec},
    {"start", &Inbound::start},
    {"typing", &Inbound::typing},
    {"update", &Inbound::update},
    {"vocab", &Inbound::vocab},
    {"voice", &Inbound::voice},
    {"welcome", &Inbound::welcome},
    {"window", &Inbound::window},
    {"word", &Inbound::word},
}};

void Inbound::handle(QByteArrayView line, double now)
{
    const qsizetype space = line.indexOf(' ');
    const QByteArrayView word = space < 0 ? line : line.first(space);
    const QByteArrayView rest = space < 0 ? QByteArrayView() : line.sliced(space + 1);

    if (link_.state.get() != u"ONLINE")
        link_.state = u"ONLINE"_s;

    const std::string_view keyword(word.data(), static_cast<std::size_t>(word.size()));
    const auto entry = std::ranges::lower_bound(table, keyword, {}, &Entry::keyword);
    if (entry != table.end() && entry->keyword == keyword)
        (this->*entry->handler)(rest, now);
}

void Inbound::mode(QByteArrayView rest, double /*now*/)
{
    link_.mode = text(rest);
}

void Inbound::kbd(QByteArrayView rest, double /*now*/)
{
    link_.keyboards = text(rest);
}

void Inbound::voice(QByteArrayView rest, double /*now*/)
{
    link_.voice = text(rest);
}

void Inbound::daw(QByteArrayView rest, double /*now*/)
{
    link_.daw = rest == "1";
}

void Inbound::buttons(QByteArrayView rest, double /*now*/)
{
    const parse::Integers pitches = parse::integers(rest);
    link_.buttons = QList<qint64>(pitches.begin(), pitches.end());
    Q_EMIT link_.buttonsChanged();
}

void Inbound::jazz(QByteArrayView rest, double /*now*/)
{
    link_.jazz = list(rest);
}

void Inbound::typing(QByteArrayView rest, double /*now*/)
{
    link_.typing = rest == "1";
}

void Inbound::paused(QByteArrayView rest, double /*now*/)
{
    link_.paused = rest == "1";
}

void Inbound::live(QByteArrayView rest, double /*now*/)
{
    link_.live = rest == "1";
}

void Inbound::bandStyle(QByteArrayView rest, double /*now*/)
{
    link_.bandStyle = text(rest);
}

void Inbound::bandLevel(QByteArrayView rest, double /*now*/)
{
    link_.bandLevel = text(rest);
}

void Inbound::timeOfDay(QByteArrayView rest, double /*now*/)
{
    link_.now = text(rest);
}

void Inbound::hands(QByteArrayView rest, double /*now*/)
{
    link_.hands = text(rest);
}

void Inbound::beat(QByteArrayView rest, double /*now*/)
{
    link_.beat = parse::integer(rest).value_or(-1);
    link_.flash = u"beat"_s;
    link_.flashAt = link_.setup_.time.now();
}

void Inbound::flash(QByteArrayView rest, double /*now*/)
{
    link_.flash = text(rest);
    link_.flashAt = link_.setup_.time.now();
}

void Inbound::heard(QByteArrayView rest, double /*now*/)
{
    const QString words = text(rest);
    link_.heard = words;
    log(u"▸ YOU: "_s + (words.isEmpty() ? link_.assistant.get() : words), false);
}

void Inbound::name(QByteArrayView rest, double /*now*/)
{
    const QStringList names = text(rest).split(u'|');
    link_.assistant = names[0].isEmpty() ? u"Kelo"_s : names[0];
    // "friend" is what the engine calls a user whose name it does not know.
    link_.user = names.size() > 1 && names[1] != u"friend" ? names[1] : QString();
}

} // namespace kelo
