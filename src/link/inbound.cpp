#include "link/inbound.h"

#include "link/link_editor.h"
#include "link/note_lines.h"
#include "link/readout_lines.h"
#include "link/request_lines.h"
#include "link/speech_lines.h"

namespace kelo {

struct Inbound::Groups {
    explicit Groups(Link &of)
        : link(of)
    {
    }

    LinkEditor link;
    SpeechLines speech{link};
    NoteLines notes{link};
    ReadoutLines readouts{link};
    RequestLines requests{link};
};

Inbound::Inbound(Link &link)
    : groups_(std::make_unique<Groups>(link))
{
}

Inbound::~Inbound() = default;

void Inbound::handle(QByteArrayView line, double now)
{
    const qsizetype space = line.indexOf(' ');
    const QByteArrayView word = space < 0 ? line : line.first(space);
    const QByteArrayView rest = space < 0 ? QByteArrayView() : line.sliced(space + 1);

    if (groups_->link.state().engine != u"ONLINE")
        groups_->link.setOnline();

    const std::string_view keyword(word.data(), static_cast<std::size_t>(word.size()));
    [[maybe_unused]] const bool known = groups_->speech.handle(keyword, rest, now)
        || groups_->notes.handle(keyword, rest, now) || groups_->readouts.handle(keyword, rest, now)
        || groups_->requests.handle(keyword, rest, now);
}

} // namespace kelo
