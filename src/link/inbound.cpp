#include "link/inbound.h"

#include "link/chord.h"
#include "link/engine_process.h"
#include "link/link.h"
#include "link/parse.h"
#include "link/shell.h"

#include <QLoggingCategory>

#include <algorithm>

using namespace Qt::StringLiterals;

Q_DECLARE_LOGGING_CATEGORY(linkLog)

namespace kelo {

namespace {

constexpr double maxVelocity = 127.0;
constexpr double captionHold = 4.0; // seconds after the end of a sentence
constexpr double updateNotice = 45.0; // seconds
constexpr double anchorLead = 0.03; // seconds by which the first word's report trails the sound

// Lists that only an engine gone wild fills; a real one stays far below.
constexpr qsizetype mostHeld = 400; // keys held at once
constexpr std::size_t mostVoiceFrames = 36'000; // ten minutes of one utterance
constexpr qsizetype mostLogged = 10'000; // voice-log lines while the assistant says nothing

QString text(QByteArrayView bytes)
{
    return QString::fromUtf8(bytes);
}

QStringList list(QByteArrayView bytes)
{
    return text(bytes).split(u'|', Qt::SkipEmptyParts);
}

qint64 saturatedSum(qint64 a, qint64 b)
{
    qint64 sum = 0;
    if (!qAddOverflow(a, b, &sum))
        return sum;
    return a < 0 ? std::numeric_limits<qint64>::min() : std::numeric_limits<qint64>::max();
}

VoiceFrame frameOf(QByteArrayView letters)
{
    VoiceFrame frame{};
    std::ranges::transform(letters, frame.begin(), [](char c) {
        const int value = static_cast<unsigned char>(c) - 'a';
        return value < 0 ? 0.0 : value / 15.0;
    });
    return frame;
}

void press(QList<Ripple> &ripples, qint64 pitch, qint64 velocity, double now)
{
    ripples.append({pitch, now, static_cast<double>(velocity) / maxVelocity, std::nullopt});
    if (ripples.size() > Inbound::mostRipples)
        ripples.remove(0, ripples.size() - Inbound::mostRipples);
}

void release(QList<Ripple> &ripples, qint64 pitch, double now)
{
    const auto held = std::find_if(ripples.rbegin(), ripples.rend(),
        [pitch](const Ripple &ripple) { return ripple.pitch == pitch && !ripple.off; });
    if (held != ripples.rend())
        held->off = now;
}

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
    [[nodiscard]] double strength() const { return static_cast<double>(velocity) / maxVelocity; }
};

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

// ---- the assistant's voice ----

void Inbound::spec(QByteArrayView rest, double /*now*/)
{
    const parse::Pieces tokens = parse::pieces(rest, ' ', 3);
    if (tokens.size() < 2)
        return;
    const auto id = parse::integer(tokens[0]);
    if (!id)
        return;
    if (tokens[1] == "new") {
        link_.voiceId = *id;
        link_.voiceFrames.clear();
        link_.voiceAnchor.reset();
        link_.voiceStart = 0;
        return;
    }
    const auto index = parse::integer(tokens[1]);
    if (*id != link_.voiceId || tokens.size() != 3 || !index)
        return;
    const QByteArrayView letters = tokens[2];
    for (qsizetype frame = 0; (frame + 1) * voiceBandCount <= letters.size(); ++frame) {
        const qint64 position = saturatedSum(*index, frame);
        if (position < 0) {
            qCCritical(linkLog) << "the engine sent a spectrum frame at" << position
                                << "and can't be trusted any more: ending it";
            if (link_.process_)
                link_.process_->condemn();
            return;
        }
        const auto at = static_cast<std::size_t>(position);
        const VoiceFrame bands = frameOf(letters.sliced(frame * voiceBandCount, voiceBandCount));
        if (at < link_.voiceFrames.size())
            link_.voiceFrames[at] = bands;
        else if (at == link_.voiceFrames.size() && at < mostVoiceFrames)
            link_.voiceFrames.push_back(bands);
    }
}

void Inbound::start(QByteArrayView /*rest*/, double now)
{
    link_.voiceStart = now;
}

void Inbound::say(QByteArrayView rest, double now)
{
    const QString sentence = text(rest);
    link_.caption = sentence;
    link_.segments = cut(sentence);
    link_.cursor_ = 0;
    ++link_.captionMark_;
    link_.captionLive = true;
    link_.spokenTo = 0;
    link_.speaking = true;
    link_.gotWord = false;
    link_.sayStarted = now;
    link_.pulseAt = now;
    log(sentence, true);
}

void Inbound::word(QByteArrayView rest, double now)
{
    const parse::Integers numbers = parse::integers(rest);
    link_.wordTime = numbers.size() > 2 ? static_cast<double>(numbers[2]) / 1000.0 : 0.0;
    if (numbers.size() < 2)
        return;
    if (!link_.voiceAnchor)
        link_.voiceAnchor = now - anchorLead;
    link_.spokenTo = saturatedSum(numbers[0], numbers[1]);
    link_.wordFrom = numbers[0];
    link_.wordLen = numbers[1];
    link_.wordAt = now;
    link_.gotWord = true;
    link_.pulseAt = now;
}

void Inbound::done(QByteArrayView /*rest*/, double now)
{
    link_.speaking = false;
    link_.doneAt = now;
    if (captionEnd_.mark != link_.captionMark_)
        endCaptionAt(now + captionHold, now);
    link_.spokenTo = link_.caption->size();
}

// ---- notes ----

void Inbound::on(QByteArrayView rest, double now)
{
    const auto event = NoteEvent::read(rest);
    if (!event)
        return;
    if (link_.scene)
        link_.scene->note(event->pitch, event->strength(), true);
    if (event->released()) {
        link_.down.remove(event->pitch);
        release(link_.ripples, event->pitch, now);
        return;
    }
    if (link_.down.size() < mostHeld || link_.down.contains(event->pitch))
        link_.down[event->pitch] = event->velocity;
    press(link_.ripples, event->pitch, event->velocity, now);
    link_.pulseAt = now;
    QVarLengthArray<qint64, 16> held;
    for (auto key = link_.down.keyBegin(); key != link_.down.keyEnd(); ++key)
        held.append(*key);
    if (const auto chord = chordName({held.data(), static_cast<std::size_t>(held.size())})) {
        link_.chord = *chord;
        link_.chordAt = now;
    }
}

void Inbound::out(QByteArrayView rest, double now)
{
    const auto event = NoteEvent::read(rest);
    if (!event)
        return;
    if (link_.scene)
        link_.scene->note(event->pitch, event->strength(), false);
    if (event->released()) {
        link_.played.remove(event->pitch);
        release(link_.echoes, event->pitch, now);
        return;
    }
    if (link_.played.size() < mostHeld)
        link_.played.insert(event->pitch);
    press(link_.echoes, event->pitch, event->velocity, now);
}

void Inbound::rollNew(QByteArrayView rest, double /*now*/)
{
    link_.roll.clear();
    link_.rollZero.reset();
    link_.rollName = text(rest);
    link_.rolling = true;
    link_.visual = true;
    if (link_.scene)
        link_.scene->clearRoll();
}

void Inbound::rollNotes(QByteArrayView rest, double /*now*/)
{
    parse::eachPiece(rest, ';', [this](QByteArrayView note) {
        const parse::Pieces fields = parse::pieces(note, ',');
        if (fields.size() != 5 || link_.roll.size() >= mostRollNotes)
            return;
        const auto t = parse::decimal(fields[0]);
        const auto dur = parse::decimal(fields[1]);
        const auto pitch = parse::integer(fields[2]);
        const auto vel = parse::integer(fields[3]);
        const auto track = parse::integer(fields[4]);
        if (t && dur && pitch && vel && track)
            link_.roll.push_back({*t, *dur, *pitch, *vel, *track});
    });
}

void Inbound::rollStart(QByteArrayView rest, double now)
{
    QVarLengthArray<double, 4> numbers;
    parse::eachPiece(rest, ' ', [&numbers](QByteArrayView token) {
        if (const auto value = parse::decimal(token))
            numbers.append(*value);
    });
    if (numbers.size() != 2)
        return;
    link_.rollZero = now + numbers[0]; // the first number is a lead-in
    link_.rollLength = numbers[1];
}

void Inbound::rollStop(QByteArrayView /*rest*/, double /*now*/)
{
    link_.rolling = false;
    link_.rollZero.reset();
    if (link_.scene)
        link_.scene->clearRoll();
}

// ---- what the readouts show ----

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

// ---- requests ----

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

// ---- shared by several ----

void Inbound::endCaptionAt(double due, double now)
{
    captionEnd_.due = due;
    captionEnd_.mark = link_.captionMark_;
    if (std::exchange(captionEnd_.watched, true))
        return;
    link_.setup_.time.after(due - now, &link_, [this] {
        captionEnd_.watched = false;
        const double then = link_.setup_.time.now();
        if (captionEnd_.mark != link_.captionMark_ || link_.speaking)
            return;
        if (then < captionEnd_.due)
            endCaptionAt(captionEnd_.due, then);
        else
            link_.captionLive = false;
    });
}

void Inbound::log(const QString &line, bool trim)
{
    Spoken spoken{++link_.counter_, link_.setup_.time.timeOfDay(), line};
    const qsizetype most = trim ? mostSpoken : mostLogged;
    link_.transcript.change([&](QList<Spoken> &lines) {
        lines.append(std::move(spoken));
        if (lines.size() > most)
            lines.remove(0, lines.size() - most);
    });
}

void Inbound::showMainWindow()
{
    if (link_.shell_)
        link_.shell_->showMainWindow();
}

} // namespace kelo
