#include "link/readout_lines.h"

#include "link/bounds.h"
#include "link/keywords.h"
#include "link/link_editor.h"
#include "link/parse.h"

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

/// A keyword whose rest is the value of one readout.
template <typename T> struct Readout {
    std::string_view keyword;
    T Readouts::*value;
    void (Link::*changed)();
};

constexpr std::array<Readout<QString>, 7> texts{{
    {"mode", &Readouts::mode, &Link::modeChanged},
    {"kbd", &Readouts::keyboards, &Link::keyboardsChanged},
    {"voice", &Readouts::voice, &Link::voiceChanged},
    {"bandstyle", &Readouts::bandStyle, &Link::bandStyleChanged},
    {"bandlevel", &Readouts::bandLevel, &Link::bandLevelChanged},
    {"hands", &Readouts::hands, &Link::handsChanged},
    {"now", &Readouts::now, &Link::nowChanged},
}};

constexpr std::array<Readout<bool>, 4> flags{{
    {"daw", &Readouts::daw, &Link::dawChanged},
    {"typing", &Readouts::typing, &Link::typingChanged},
    {"paused", &Readouts::paused, &Link::pausedChanged},
    {"live", &Readouts::live, &Link::liveChanged},
}};

/// Stores `value` in the readout of that keyword, if there is one.
template <typename T, std::size_t size>
bool store(LinkEditor &link, const std::array<Readout<T>, size> &table, std::string_view keyword,
    const T &value)
{
    for (const Readout<T> &readout : table) {
        if (readout.keyword == keyword) {
            link.change(
                {readout.changed}, [&](LinkState &all) { all.readouts.*readout.value = value; });
            return true;
        }
    }
    return false;
}

} // namespace

bool ReadoutLines::handle(std::string_view keyword, QByteArrayView rest, double now)
{
    using Is = ReadoutLines;
    static constexpr std::array<Keyword<Is>, 4> table{{
        {"beat", &Is::beat},
        {"flash", &Is::flash},
        {"name", &Is::name},
        {"jazz", &Is::jazz},
    }};
    return handleBy(*this, table, keyword, rest, now) || store(link_, flags, keyword, rest == "1")
        || store(link_, texts, keyword, parse::text(rest, bounds::readout));
}

void ReadoutLines::jazz(QByteArrayView rest, double /*now*/)
{
    link_.change({&Link::jazzChanged}, [&](LinkState &all) {
        all.readouts.jazz = parse::list(rest, bounds::lessons, bounds::name);
    });
}

void ReadoutLines::name(QByteArrayView rest, double /*now*/)
{
    const QString assistant = parse::text(parse::takePart(rest), bounds::name);
    const QString user = parse::text(parse::takePart(rest), bounds::name);
    link_.change({&Link::assistantChanged, &Link::userChanged}, [&](LinkState &all) {
        all.names.assistant = assistant.isEmpty() ? u"Kelo"_s : assistant;
        // "friend" is what the engine calls a user whose name it does not know.
        all.names.user = user == u"friend" ? QString() : user;
    });
}

void ReadoutLines::beat(QByteArrayView rest, double now)
{
    link_.change(
        {&Link::beatChanged, &Link::flashChanged, &Link::flashAtChanged}, [&](LinkState &all) {
            all.flash = {u"beat"_s, now, parse::integer(rest).value_or(-1)};
        });
}

void ReadoutLines::flash(QByteArrayView rest, double now)
{
    link_.change({&Link::flashChanged, &Link::flashAtChanged}, [&](LinkState &all) {
        all.flash.kind = parse::text(rest, bounds::readout);
        all.flash.at = now;
    });
}

} // namespace kelo
