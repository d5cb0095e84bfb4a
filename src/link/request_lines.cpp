#include "link/request_lines.h"

#include "link/bounds.h"
#include "link/keywords.h"
#include "link/link_editor.h"
#include "link/parse.h"
#include "link/shell.h"
#include "link/voice_input.h"

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

constexpr double updateNotice = 45.0; // seconds

QString trimmedWithinLine(QStringView text)
{
    const auto blank = [](QChar c) { return c == u'\t' || c.category() == QChar::Separator_Space; };
    while (!text.isEmpty() && blank(text.front()))
        text = text.sliced(1);
    while (!text.isEmpty() && blank(text.back()))
        text.chop(1);
    return text.toString();
}

} // namespace

bool RequestLines::handle(std::string_view keyword, QByteArrayView rest, double now)
{
    using Is = RequestLines;
    static constexpr std::array<Keyword<Is>, 9> table{{
        {"window", &Is::window},
        {"earreset", &Is::earReset},
        {"vocab", &Is::vocab},
        {"ears", &Is::ears},
        {"microphone", &Is::microphone},
        {"access", &Is::access},
        {"welcome", &Is::welcome},
        {"update", &Is::update},
        {"relaunch", &Is::relaunch},
    }};
    return handleBy(*this, table, keyword, rest, now);
}

void RequestLines::earReset(QByteArrayView /*rest*/, double /*now*/)
{
    if (VoiceInput *input = link_.voiceInput(); input && input->isOn())
        input->listen();
}

void RequestLines::vocab(QByteArrayView rest, double /*now*/)
{
    if (VoiceInput *input = link_.voiceInput())
        input->setVocabulary(parse::list(rest, bounds::phrases, bounds::name));
}

void RequestLines::ears(QByteArrayView rest, double /*now*/)
{
    if (VoiceInput *input = link_.voiceInput(); input && rest == "off")
        input->stop();
}

void RequestLines::microphone(QByteArrayView rest, double /*now*/)
{
    if (VoiceInput *input = link_.voiceInput())
        input->useMicrophone(parse::text(rest, bounds::name));
}

void RequestLines::access(QByteArrayView rest, double /*now*/)
{
    const parse::Pieces tokens = parse::pieces(rest);
    if (tokens.size() == 2 && tokens[0].size() <= bounds::name)
        link_.setAccess(parse::text(tokens[0]), tokens[1] == "1");
}

void RequestLines::welcome(QByteArrayView /*rest*/, double /*now*/)
{
    link_.change({&Link::welcomeChanged}, [](LinkState &all) { all.display.welcome = true; });
    showMainWindow();
}

void RequestLines::update(QByteArrayView rest, double /*now*/)
{
    const QString version =
        bounds::bounded(trimmedWithinLine(parse::text(parse::takePart(rest))), bounds::name);
    const QString notes = parse::text(parse::takePart(rest), bounds::updateNotes);
    link_.change({&Link::updateVersionChanged, &Link::updateNotesChanged}, [&](LinkState &all) {
        all.update = {version, notes};
    });
    if (Shell *shell = link_.shell(); shell && !version.isEmpty())
        shell->showOverlay(updateNotice);
}

void RequestLines::relaunch(QByteArrayView /*rest*/, double /*now*/)
{
    link_.expectEngineEnd();
    if (Shell *shell = link_.shell())
        shell->relaunch();
}

void RequestLines::window(QByteArrayView rest, double /*now*/)
{
    const parse::Pieces tokens = parse::pieces(rest);
    if (tokens.size() != 2)
        return;
    const bool on = tokens[1] == "1";
    Shell *shell = link_.shell();
    if (tokens[0] == "visual") {
        link_.change({&Link::visualChanged}, [on](LinkState &all) { all.display.visual = on; });
        if (on)
            showMainWindow();
    } else if (tokens[0] == "show") {
        if (on)
            showMainWindow();
        else if (shell)
            shell->hideMainWindow();
    } else if (tokens[0] == "login") {
        setLoginItem(on);
    } else if (tokens[0] == "full" && shell) {
        shell->setFullScreen(on);
    }
}

void RequestLines::setLoginItem(bool on)
{
    Shell *shell = link_.shell();
    const bool done = shell && shell->setLoginItem(on);
    const QString result = !done ? u"failed"_s : shell->loginItemOn() ? u"on"_s : u"off"_s;
    link_.send(u"~login "_s + result + u'\n');
}

void RequestLines::showMainWindow()
{
    if (Shell *shell = link_.shell())
        shell->showMainWindow();
}

} // namespace kelo
