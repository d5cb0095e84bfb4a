#include "rig.h"

#include "support/files.h"

#include <QDir>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;
using namespace kelo::engine;

void SilentSpeech::say(std::string_view text, double now)
{
    constexpr double secondsPerLetter = 0.03;
    if (text.empty())
        return;
    wire_.send("say", text);
    end_ = now + secondsPerLetter * static_cast<double>(text.size());
}

void SilentSpeech::stop()
{
    if (end_)
        wire_.send("done");
    end_.reset();
}

void SilentSpeech::advance(double now)
{
    if (end_ && now >= *end_)
        stop();
}

Rig::Rig() = default;

void Rig::start(bool known)
{
    if (known && !QFile::exists(path(u"profile.json"_s)))
        kelo::test::writeFile(path(u"profile.json"_s), R"({"assistant": "Kelo", "user": "Ann"})");
    assistant.reset();
    for (int fader = 0; fader < int(faders); ++fader)
        desk.setLoudness(Fader(fader), 100);
    speech.setStyle({});
    speech.setLoudness(1);
    const std::filesystem::path home = folder_.path().toStdString();
    library = std::make_unique<Library>(home / "songs");
    assistant = std::make_unique<Assistant>(
        Equipment{wire, speech, player, metronome, band, through, keys, *library, desk,
            [](const std::filesystem::path &) { return false; }, &studio, &studio},
        Places{home / "profile.json", home / "commands.html", home / "songs", home / "takes",
            home / "composition.json", home / "progress.json", home / "practice.db",
            home / "downloads"},
        7);
    assistant->begin("", true, moment());
    assistant->greet("", moment());
}

/// The seventh of March of 2025 at ten, and some seconds.
Moment Rig::moment() const
{
    using namespace std::chrono;
    const auto start = local_days(year(2025) / 3 / 7) + hours(10);
    return {now, start + std::chrono::seconds(static_cast<int>(now))};
}

void Rig::write(std::string_view line)
{
    lines << QString::fromUtf8(line.data(), static_cast<qsizetype>(line.size())).mid(1).chopped(1);
    times << QByteArray::number(now, 'f', 3);
}

void Rig::run(double seconds)
{
    const double end = now + seconds;
    for (int left = 200000; left > 0; --left) {
        const auto due = assistant->deadline();
        if (!due || *due > end)
            break;
        now = std::max(now, *due) + 1e-4;
        ++turns;
        assistant->advance(moment());
        if (const auto next = assistant->deadline(); next && *next < now)
            qFatal("it would turn without a rest: what was due is due again");
    }
    now = std::max(now, end);
    assistant->advance(moment());
}

void Rig::send(const QByteArray &bytes)
{
    run(0.01);
    sentAt_ = now;
    for (const Input &input :
        input_.feed({bytes.data(), static_cast<std::size_t>(bytes.size())}, now))
        assistant->take(input, moment());
    if (const auto key = input_.expire(now + 1))
        assistant->take(*key, moment());
    assistant->advance(moment());
}

void Rig::press(int pitch, int velocity)
{
    assistant->takePiano(
        {0x90, static_cast<unsigned char>(pitch), static_cast<unsigned char>(velocity)}, moment());
    assistant->advance(moment());
}

void Rig::playAfter(int skipped, int higher, double slower, int most)
{
    for (int left = 4000; left > 0 && (!assistant->quiet() || player.playing()); --left)
        run(0.05);
    const std::vector fresh(
        music.played.begin() + static_cast<std::ptrdiff_t>(answered), music.played.end());
    if (std::ranges::any_of(fresh, [](const auto &each) { return each.message.presses(); }))
        heard_ = fresh;
    Frame last = 0;
    for (const auto &[frame, message] : heard_) {
        const bool note = message.channel() != 9 && (message.presses() || message.releases());
        if (!note || (message.presses() && skipped-- > 0) || skipped > 0)
            continue;
        if (message.presses() && most-- <= 0)
            break;
        run(last > 0 ? seconds(std::max<Frame>(frame - last, 0)) * slower : 0);
        last = frame;
        press(message.first + higher, message.releases() ? 0 : message.second);
        answered = message.presses() ? music.played.size() : answered;
    }
}

void Rig::control(int number, int value)
{
    assistant->takePiano(
        {0xb0, static_cast<unsigned char>(number), static_cast<unsigned char>(value)}, moment());
}

void Rig::plug(const QString &piano)
{
    assistant->pianoChanged(piano.toStdString(), moment());
}

QString Rig::waitFor(const QString &pattern, double seconds)
{
    constexpr double step = 0.05;
    const QRegularExpression wanted(u'^' + pattern + u'$');
    for (double waited = 0;; waited += step) {
        for (; seen < lines.size(); ++seen) {
            if (wanted.match(lines[seen]).hasMatch())
                return lines[seen++];
        }
        if (waited >= seconds)
            return {};
        run(step);
    }
}

int Rig::notes(const QString &section) const
{
    const Recording &recording = section == u"music" ? music : section == u"keys" ? keys : rhythm;
    const Frame since = clock.frameAt(sentAt_);
    return static_cast<int>(std::ranges::count_if(recording.played, [&](const auto &played) {
        return played.message.kind() == 0x90 && played.message.second > 0
            && (played.frame == 0 || played.frame >= since);
    }));
}

QList<int> Rig::programs() const
{
    QList<int> all;
    for (const auto &played : music.played) {
        if (played.message.kind() == 0xc0 && played.frame >= clock.frameAt(sentAt_))
            all << played.message.first;
    }
    return all;
}

QByteArray Rig::keeps() const
{
    QByteArray all;
    const QDir home(folder_.path());
    for (const QDir &folder : {home, QDir(home.filePath(u"songs"_s))}) {
        for (const QString &name : folder.entryList(QDir::Files, QDir::Name))
            all += name.toUtf8() + ' ' + kelo::test::readFile(folder.filePath(name)) + '\n';
    }
    for (int fader = 0; fader < int(faders); ++fader)
        all += QByteArray::number(desk.loudness(Fader(fader))) + ' ';
    for (const Recording *part : {&music, &keys, &rhythm})
        all += QByteArray::number(part->gain) + '/' + QByteArray::number(part->silenced) + ' ';
    for (const double value : {double(speech.voice), double(speech.loudness),
             double(speech.style.rate), double(speech.style.pitch), player.tempo()})
        all += QByteArray::number(value) + ' ';
    return all + (speech.system ? 's' : ' ') + (through.on() ? 't' : ' ');
}

namespace {

QByteArray unescaped(QString text)
{
    return text.replace(u"\\n"_s, u"\n"_s)
        .replace(u"\\s"_s, u" "_s)
        .replace(u"\\e"_s, u"\x1b"_s)
        .replace(u"\\x7f"_s, u"\x7f"_s)
        .toUtf8();
}

} // namespace

QString toldBy(const Rig &rig, qsizetype from)
{
    static const QRegularExpression forDisplays(u"^(beat|now|out|on|roll|vocab|buttons ) ?"_s);
    QStringList told;
    QByteArray hidden;
    const auto close = [&] {
        if (!hidden.isEmpty())
            told << u"... %1"_s.arg(qChecksum(std::exchange(hidden, {})));
    };
    for (const QString &line : rig.lines.mid(from)) {
        if (forDisplays.match(line).hasMatch()) {
            hidden += line.toUtf8() + '\n';
        } else {
            close();
            told << line;
        }
    }
    close();
    for (const Recording *part : {&rig.music, &rig.keys, &rig.rhythm}) {
        for (const auto &[frame, message] : part->played)
            hidden += QByteArray::number(frame) + ' ' + char(message.status) + char(message.first)
                + char(message.second);
    }
    hidden += rig.keeps() + rig.passedOn + rig.studio.asked + rig.times.mid(from).join(' ')
        + QByteArray::number(rig.turns);
    close();
    return told.join(u'\n');
}

KeptEvenings::KeptEvenings(QString file)
    : file_(std::move(file))
    , kept_(QString::fromUtf8(kelo::test::readFile(file_)))
    , writes_(qEnvironmentVariableIsSet("KELO_WRITE_SCRIPTS"))
{
}

KeptEvenings::~KeptEvenings()
{
    if (writes_)
        kelo::test::writeFile(file_, now_.toUtf8());
}

QString KeptEvenings::unlikeKept(const QString &name, const Rig &rig, qsizetype from)
{
    return unlikeKept(name, toldBy(rig, from));
}

QStringList KeptEvenings::names() const
{
    return kept_.split(u'\n')
        .filter(QRegularExpression(u"^== "_s))
        .replaceInStrings(u"== "_s, QString());
}

QStringList KeptEvenings::kept(const QString &name) const
{
    const QString part = kept_.section(u"== %1\n"_s.arg(name), 1, 1);
    return part.section(u"\n\n"_s, 0, 0).split(u'\n');
}

QString KeptEvenings::unlikeKept(const QString &name, const QString &evening)
{
    now_ += u"== %1\n%2\n\n"_s.arg(name, evening);
    const QStringList told = evening.split(u'\n');
    const QStringList before = kept(name);
    for (qsizetype i = 0; i < std::max(told.size(), before.size()) && !writes_; ++i) {
        if (told.value(i) != before.value(i))
            return u"line %1 tells \"%2\", not \"%3\""_s.arg(i + 1).arg(
                told.value(i), before.value(i));
    }
    return {};
}

QString failureOf(Rig &rig, const QStringList &steps)
{
    qsizetype sent = 0;
    for (const QString &step : steps) {
        const QString verb = step.section(u' ', 0, 0);
        const QString rest = step.section(u' ', 1);
        const QStringList words = rest.split(u' ', Qt::SkipEmptyParts);
        bool good = true;
        if (verb == u">") {
            sent = rig.seen = rig.lines.size();
            rig.send(unescaped(rest) + (rest.startsWith(u'~') ? "\n" : ""));
        } else if (verb == u"<") {
            good = !rig.waitFor(rest).isEmpty();
        } else if (verb == u"!") {
            rig.run(2);
            good = rig.lines.mid(sent).filter(QRegularExpression(u'^' + rest + u'$')).isEmpty();
        } else if (verb == u"tap" || verb == u"hold") {
            const bool together = verb == u"hold";
            const QStringList pressed = together ? words.mid(0, words.size() - 1) : words;
            for (const QString &key : pressed) {
                rig.press(key.toInt(), 40 + key.toInt() * 7 % 60); // none as loud as the next
                if (together)
                    continue;
                rig.run(0.2);
                rig.press(key.toInt(), 0);
                rig.run(0.3);
            }
            if (together) {
                rig.run(words.last().toDouble());
                for (const QString &key : pressed)
                    rig.press(key.toInt(), 0);
            }
        } else if (verb == u"press") {
            for (const QString &key : words)
                rig.press(key.toInt());
        } else if (verb == u"pedal") {
            rig.control(words[0].toInt(), words[1].toInt());
        } else if (verb == u"echo") {
            rig.playAfter(words.value(0).toInt(), words.value(1).toInt(),
                words.value(2, u"1"_s).toDouble(), words.value(3, u"999"_s).toInt());
        } else if (verb == u"studio") {
            rig.studio.there = !rig.studio.there;
            rig.run(0.1);
        } else if (verb == u"give") {
            const QStringList files = rest.split(u" > "_s);
            kelo::test::writeFile(rig.path(files[1]), kelo::test::readFile(rig.path(files[0])));
        } else if (verb == u"deny" || verb == u"allow") {
            const QString draft = rig.path(rest + u".new"_s);
            good = verb == u"deny" ? QDir().mkdir(draft) : QDir().rmdir(draft);
        } else if (verb == u"wait") {
            rig.run(rest.toDouble());
        } else if (verb == u"restart") {
            rig.start();
        } else if (verb == u"piano") {
            rig.plug(rest);
        } else if (verb == u"sounds" || verb == u"silent") {
            if (verb == u"sounds")
                rig.run(5);
            good = (rig.notes(words[0]) > 0) == (verb == u"sounds");
        } else if (verb == u"kept") {
            good = kelo::test::readFile(rig.path(u"profile.json"_s)).contains(rest.toUtf8());
        } else if (verb == u"file" || verb == u"nofile") {
            const QDir home(rig.path(u"."_s));
            QStringList all = home.entryList(QDir::Files);
            for (const QString &song : QDir(home.filePath(u"songs"_s)).entryList(QDir::Files))
                all << u"songs/"_s + song;
            const QRegularExpression wanted(u'^' + rest + u'$');
            good = all.filter(wanted).isEmpty() == (verb == u"nofile");
        } else if (verb == u"top") {
            const QString keys = rig.lines.filter(QRegularExpression(u"^buttons ."_s)).last();
            const int pitch = keys.section(u' ', rest.toInt(), rest.toInt()).toInt();
            const QStringList modes = rig.lines.filter(QRegularExpression(u"^mode "_s));
            const QStringList music{u"mode teach"_s, u"mode ear"_s, u"mode compose"_s,
                u"mode jazz"_s, u"mode follow"_s};
            sent = rig.seen = rig.lines.size();
            if (music.contains(modes.last())) { // where every key is music
                const int lowest = keys.section(u' ', 10, 10).toInt();
                rig.press(lowest);
                rig.run(1.1);
                rig.press(lowest, 0);
            }
            rig.send({});
            rig.press(pitch);
            rig.run(0.1);
            rig.press(pitch, 0);
        } else if (verb == u"mode") {
            const QStringList modes = rig.lines.filter(QRegularExpression(u"^mode "_s));
            good = !modes.isEmpty() && modes.last() == step;
        } else if (verb == u"program") {
            rig.run(5);
            good = rig.programs().contains(rest.toInt());
        } else if (verb == u"tempo") {
            good = std::lround(rig.player.tempo() * 100) == rest.toInt();
        } else if (verb == u"loudness") {
            good = rig.desk.loudness(Fader::Voice) == rest.toInt();
        } else if (verb == u"thru") {
            good = rig.through.on();
        } else {
            return u"no such step: "_s + step;
        }
        if (!good)
            return step + u"\n  but: "_s
                + rig.lines.mid(sent)
                      .filter(QRegularExpression(u"^(?!vocab|roll|out|beat|now)"_s))
                      .join(u"\n       "_s);
    }
    return {};
}
