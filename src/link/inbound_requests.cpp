#include "link/inbound.h"
#include "link/link.h"
#include "link/parse.h"
#include "link/shell.h"

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

using parse::list;
using parse::text;

constexpr double updateNotice = 45.0; // seconds

} // namespace

void Inbound::earReset(QByteArrayView /*rest*/, double /*now*/)
{
    if (link_.ears_ && link_.ears_->isOn())
        link_.ears_->listen();
}

void Inbound::vocab(QByteArrayView rest, double /*now*/)
{
    if (link_.ears_)
        link_.ears_->setVocabulary(list(rest));
}

void Inbound::ears(QByteArrayView rest, double /*now*/)
{
    if (rest == "off" && link_.ears_)
        link_.ears_->stop();
}

void Inbound::access(QByteArrayView rest, double /*now*/)
{
    const parse::Pieces tokens = parse::pieces(rest);
    if (tokens.size() == 2)
        link_.setAccess(text(tokens[0]), tokens[1] == "1");
}

void Inbound::welcome(QByteArrayView /*rest*/, double /*now*/)
{
    link_.welcome = true;
    showMainWindow();
}

void Inbound::update(QByteArrayView rest, double /*now*/)
{
    const QStringList parts = text(rest).split(u'|');
    QStringView version = parts[0];
    const auto blank = [](QChar c) { return c == u'\t' || c.category() == QChar::Separator_Space; };
    while (!version.isEmpty() && blank(version.front()))
        version = version.sliced(1);
    while (!version.isEmpty() && blank(version.back()))
        version.chop(1);
    link_.updateVersion = version.toString();
    link_.updateNotes = parts.value(1);
    if (!version.isEmpty() && link_.shell_)
        link_.shell_->showOverlay(updateNotice);
}

void Inbound::relaunch(QByteArrayView /*rest*/, double /*now*/)
{
    link_.stopping_ = true;
    if (link_.shell_)
        link_.shell_->relaunch();
}

void Inbound::window(QByteArrayView rest, double /*now*/)
{
    const parse::Pieces tokens = parse::pieces(rest);
    if (tokens.size() != 2)
        return;
    const bool on = tokens[1] == "1";
    Shell *shell = link_.shell_;
    if (tokens[0] == "visual") {
        link_.visual = on;
        if (on)
            showMainWindow();
    } else if (tokens[0] == "show") {
        if (on)
            showMainWindow();
        else if (shell)
            shell->hideMainWindow();
    } else if (tokens[0] == "login") {
        const bool done = shell && shell->setLoginItem(on);
        const QString result = !done ? u"failed"_s : shell->loginItemOn() ? u"on"_s : u"off"_s;
        link_.send(u"~login "_s + result + u'\n');
    } else if (tokens[0] == "full" && shell) {
        shell->setFullScreen(on);
    }
}

void Inbound::showMainWindow()
{
    if (link_.shell_)
        link_.shell_->showMainWindow();
}

} // namespace kelo
