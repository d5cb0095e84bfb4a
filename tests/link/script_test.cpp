#include "link/chord.h"
#include "link/crash_window.h"
#include "link/parse.h"
#include "link/paths.h"
#include "link_dump.h"
#include "support/link_fixture.h"

#include <QDir>
#include <QFile>
#include <QMetaMethod>
#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <functional>

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::test;

namespace {

/// A step and what it leads to, in lines of 100 columns, all but the first indented.
QStringList wrapped(const QString &step, const QStringList &outcome)
{
    QStringList lines{step};
    QString before = u" -> "_s;
    for (const QString &part : outcome) {
        if (lines.last().size() + before.size() + part.size() < 99)
            lines.last() += before + part;
        else
            lines << u"  "_s + before.mid(1) + part;
        before = u" ; "_s;
    }
    return lines;
}

/// One situation: a link of its own, to which steps happen one by one. What a step leads to is
/// told completely: every field that changes, which of them are announced in which order, every
/// call to the rooms above.
class Situation : public QObject {
    Q_OBJECT

public:
    Situation()
    {
        fixture_.bring(u"ONLINE"_s);
        const QMetaObject &meta = Link::staticMetaObject;
        const int told = metaObject()->indexOfSlot("told()");
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            if (meta.method(i).methodType() == QMetaMethod::Signal)
                connect(&link(), meta.method(i), this, metaObject()->method(told));
        }
    }

    QStringList outcome(const QString &step)
    {
        before_ = dump(link());
        announced_.clear();
        whileTold_.clear();
        const QString answer = happen(step);
        const bool repeated = step.startsWith(u"> *");
        const LinkDump after = dump(link());
        QStringList lines;
        for (auto field = after.cbegin(); field != after.cend(); ++field) {
            if (field.value() != before_[field.key()])
                lines << field.key() + u" = "_s + field.value();
        }
        if (!announced_.isEmpty())
            lines << u"announces "_s + announced_.join(u' ');
        for (const LinkDump &seen : whileTold_) {
            if (seen != after)
                lines << u"announces what is not yet so"_s;
        }
        const auto calls = [&](const QString &room, QStringList &made) {
            for (const QString &call : std::exchange(made, {}))
                if (!repeated)
                    lines << room + u": "_s + QString(call).replace(QDir::homePath(), u"~"_s);
        };
        calls(u"shell"_s, fixture_.shell.calls);
        calls(u"voice"_s, fixture_.ears.calls);
        calls(u"scene"_s, fixture_.stage.calls);
        if (!answer.isNull())
            lines << answer;
        return lines;
    }

    QString ask(const QString &question)
    {
        const QString verb = question.section(u' ', 0, 0);
        const QString argument = question.section(u' ', 1);
        const QByteArray bytes = argument.toUtf8();
        QList<double> n;
        for (const QString &word : argument.split(u' '))
            n << word.toDouble();
        n.resize(8);
        const double now = link().uptime();
        if (verb == u"chord") {
            QList<qint64> pitches;
            for (const qint64 pitch : parse::integers(bytes))
                pitches << pitch;
            return chordName({pitches.constData(), static_cast<std::size_t>(pitches.size())})
                .value_or(u"none"_s);
        }
        if (verb == u"cut")
            return shown(cut(argument));
        if (verb == u"integer") {
            const auto value = parse::integer(bytes);
            return value ? QString::number(*value) : u"none"_s;
        }
        if (verb == u"decimal") {
            const auto value = parse::decimal(bytes);
            return value ? shown(*value) : u"none"_s;
        }
        if (verb == u"sum")
            return QString::number(parse::saturatedSum(
                *parse::integer(bytes.split(' ')[0]), *parse::integer(bytes.split(' ')[1])));
        if (verb == u"exact")
            return shown(link().spokenExact(now));
        if (verb == u"glide")
            return shown(link().glide(n[0], now));
        if (verb == u"segment")
            return QString::number(link().segmentIndex(n[0]));
        if (verb == u"bands") {
            const auto bands = link().voiceBands(now);
            return bands ? shown(bands->front()) + u' ' + shown(bands->back()) : u"none"_s;
        }
        if (verb == u"index") { // LENGTH SPEAKING GOTWORD WORDTIME WORDLEN ELAPSED
            Speech speech;
            speech.caption = QString(static_cast<int>(n[0]), u'x');
            speech.speaking = n[1] > 0;
            speech.spokenTo = 10;
            speech.gotWord = n[2] > 0;
            speech.wordAt = 100;
            speech.wordTime = n[3];
            speech.wordFrom = 4;
            speech.wordLen = static_cast<qint64>(n[4]);
            return QString::number(speech.spokenIndex(100 + n[5]));
        }
        if (verb == u"eased") // LEVEL OFFLINE SPEAKING WORDAT PULSEAT NOW STEP
            return shown(easedLevel(n[0], {n[1] > 0, n[2] > 0, false, n[3], n[4]}, n[5], n[6]));
        if (verb == u"spin")
            return shown(spinStep(n[0], n[1]));
        if (verb == u"crashes") { // at these times: which are forgiven
            CrashWindow window;
            QString answers;
            for (const QString &at : argument.split(u' '))
                answers += window.forgive(at.toDouble()) ? u"yes "_s : u"no "_s;
            return answers.trimmed();
        }
        return u"no such question: "_s + verb;
    }

private Q_SLOTS:
    void told()
    {
        if (muted_)
            return;
        QString name =
            QString::fromLatin1(Link::staticMetaObject.method(senderSignalIndex()).name());
        if (name != u"willChange")
            whileTold_ << dump(link());
        else if (announced_.isEmpty() && dump(link()) != before_)
            name += u" too late"_s;
        announced_ << name.remove(u"Changed"_s);
    }

private:
    Link &link() { return fixture_.link(); }

    QString happen(const QString &step)
    {
        QString rest = step.mid(2);
        const QString verb = rest.section(u' ', 0, 0);
        for (const auto &[written, meant] :
            {std::pair{u"\\n"_s, u"\n"_s}, {u"\\r"_s, u"\r"_s}, {u"\\t"_s, u"\t"_s}})
            if (verb != u"engine") // it knows them itself
                rest.replace(written, meant);
        const QString argument = rest.section(u' ', 1);
        switch (step[0].unicode()) {
        case u'>':
            return play(rest), QString();
        case u'+':
            return fixture_.time.advance(rest.toDouble()), QString();
        case u'~':
            return await(verb, argument) ? QString() : u"never"_s;
        default:
            return act(verb, argument);
        }
    }

    /// A line of the engine. "*N " before it repeats it, with "#" in it replaced by 0, 1, 2 ...;
    /// "{LETTER*N}" stands for so many of these letters, "{N..M,}" for these numbers with commas.
    void play(QString line)
    {
        static const QRegularExpression many(u"\\{(.)\\*(\\d+)\\}"_s);
        for (auto found = many.match(line); found.hasMatch(); found = many.match(line))
            line.replace(found.capturedStart(), found.capturedLength(),
                QString(found.captured(2).toInt(), found.captured(1)[0]));
        static const QRegularExpression numbered(u"\\{(\\d+)\\.\\.(\\d+)(.)\\}"_s);
        if (const auto found = numbered.match(line); found.hasMatch()) {
            QStringList numbers;
            for (int n = found.captured(1).toInt(); n <= found.captured(2).toInt(); ++n)
                numbers << QString::number(n);
            line.replace(
                found.capturedStart(), found.capturedLength(), numbers.join(found.captured(3)));
        }
        if (!line.startsWith(u'*'))
            return link().handle(line.toUtf8());
        muted_ = true;
        const int count = line.section(u' ', 0, 0).mid(1).toInt();
        for (int i = 0; i < count; ++i)
            link().handle(line.section(u' ', 1).replace(u'#', QString::number(i)).toUtf8());
        muted_ = false;
    }

    /// For a field to have a value, or for the shell to be asked for something.
    bool await(const QString &field, const QString &value)
    {
        muted_ = true;
        const bool came = QTest::qWaitFor(
            [&] {
                return field == u"shell" ? fixture_.shell.calls.contains(value)
                                         : dump(link())[field] == shown(value);
            },
            20'000);
        muted_ = false;
        return came;
    }

    QString act(const QString &verb, const QString &argument)
    {
        const bool on = argument == u"1";
        const QMap<QString, std::function<void()>> acts{
            {u"send"_s, [&] { link().send(argument); }},
            {u"state"_s, [&] { fixture_.bring(argument); }},
            {u"visualiser"_s, [&] { link().showVisualiser(on); }},
            {u"ask-welcome"_s, [&] { link().askWelcome(); }},
            {u"answer"_s,
                [&] {
                    link().finishWelcome(argument.section(u'|', 0, 0), argument.section(u'|', 1));
                }},
            {u"take-keys"_s,
                [&] { link().setWelcomeKey([](int, const QString &) { return true; }); }},
            {u"settings-kept"_s, [&] { link().setSettingsKept(on); }},
            {u"follow-contrast"_s, [&] { link().followContrast(on); }},
            {u"level"_s, [&] { link().setLevel(argument.toDouble()); }},
            {u"bars"_s, [&] { link().updateBars(link().uptime()); }},
            {u"choose-file"_s,
                [&] {
                    fixture_.shell.midiFile = argument;
                    link().chooseFile();
                }},
            {u"drop-url"_s, [&] { link().playUrl(QUrl(argument)); }},
            {u"voice-on"_s, [&] { fixture_.ears.on = on; }},
            {u"login-works"_s, [&] { fixture_.shell.loginWorks = on; }},
            // Its script's steps are parted by " / ".
            {u"engine"_s,
                [&] { fixture_.start(QString(argument).replace(u" / "_s, u"\n"_s).toUtf8()); }},
            {u"next-engine"_s, [&] { fixture_.engine.play(argument.toUtf8()); }},
            {u"stop"_s, [&] { link().stop(); }},
            {u"restart"_s, [&] { link().restart(); }},
            {u"hidden"_s, [&] { fixture_.shell.hidden = on; }},
            {u"idle"_s, [&] { QTest::qWait(50); }},
            {u"alone"_s,
                [&] {
                    link().setShell(nullptr);
                    link().setVoiceInput(nullptr);
                    link().clearScene(nullptr); // not the one that is there
                    if (on)
                        link().clearScene(&fixture_.stage);
                }},
        };
        if (verb == u"songs-folder")
            return (on ? QDir().mkpath(songsFolder()) : QDir().rmpath(songsFolder())) ? QString()
                                                                                      : u"no"_s;
        if (verb == u"fresh") {
            LinkFixture fresh;
            QStringList all;
            const LinkDump fields = dump(fresh.link());
            for (auto field = fields.cbegin(); field != fields.cend(); ++field)
                all << field.key() + u' ' + field.value();
            return all.join(u", "_s);
        }
        if (verb == u"stored")
            return u"= "_s + fixture_.setting(argument).toString();
        if (verb == u"runs")
            return u"= %1"_s.arg(fixture_.engine.runs());
        if (verb == u"input")
            return u"= "_s + shown(QString::fromUtf8(fixture_.engine.input()));
        if (verb == u"told-engine") {
            link().send(u"~end\n"_s);
            if (!QTest::qWaitFor(
                    [&] { return fixture_.engine.input().endsWith("~end\n"); }, 20'000))
                return u"nothing"_s;
            return u"= "_s + shown(QString::fromUtf8(fixture_.engine.input().chopped(5)));
        }
        if (!acts.contains(verb))
            return u"no such step: "_s + verb;
        acts[verb]();
        return {};
    }

    LinkFixture fixture_;
    LinkDump before_;
    QStringList announced_;
    QList<LinkDump> whileTold_;
    bool muted_ = false; // of lines that are repeated only the state is told
};

} // namespace

/// Plays the scripts beside it: steps, and indented below each what it must lead to.
class ScriptTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void plays_data()
    {
        QTest::addColumn<QString>("script");
        const QDir folder(QStringLiteral(KELO_SCRIPTS));
        for (const QString &name : folder.entryList({u"*.txt"_s}))
            QTest::newRow(qPrintable(name)) << folder.filePath(name);
    }

    void plays()
    {
        QFETCH(QString, script);
        const QStringList expected = QString::fromUtf8(readFile(script)).split(u'\n');
        QStringList played;
        auto situation = std::make_unique<Situation>();
        for (const QString &line : expected) {
            if (line.startsWith(u"  "))
                continue;
            if (line.startsWith(u"=="))
                situation = std::make_unique<Situation>();
            const QString step = line.section(u" -> "_s, 0, 0);
            if (step.startsWith(u'?'))
                played << step + u" -> "_s + situation->ask(step.mid(2));
            else if (!step.isEmpty() && u">+!~"_s.contains(step[0]))
                played += wrapped(step, situation->outcome(step));
            else
                played << line;
        }
        if (qEnvironmentVariableIsSet("KELO_WRITE_SCRIPTS"))
            writeFile(script, played.join(u'\n').toUtf8());
        for (qsizetype i = 0; i < std::max(played.size(), expected.size()); ++i)
            QVERIFY2(played.value(i) == expected.value(i),
                qPrintable(u"line %1: is %2, expected %3"_s.arg(i + 1).arg(
                    played.value(i), expected.value(i))));
    }
};

QTEST_GUILESS_MAIN(ScriptTest)
#include "script_test.moc"
