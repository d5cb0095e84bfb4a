#include "hud/command_table.h"
#include "link/link.h"
#include "support/table.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace kelo {

using test::Table;

class CommandTableTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    /// Keys and what they send, a group a line. What engines out there answer to.
    void sendsToTheByte()
    {
        const char *const assistant =
            "ASSISTANT|♪=~say play me something\n|ALBUM=~say play my album\n|JAM=~say jam with me\n"
            "|LULL=~say make it a lullaby\n|8BIT=~say make it a video game\n|EPIC=~say make it "
            "epic\n"
            "|?!=~say surprise me\n";
        const QByteArrayList expected{
            assistant,
            "PLAY|⌫=\177|STOP=~drop\n|SPACE= |N=n|→=\033[C|←=\033[D|RETURN=\n|S=s|0=0|H=h",
            "MODES|C=c|B=b|STYLE=~bandstyle\n|T=t|J=j|M=m|L=l|G=g|R=r",
            "SOUND|−=-|===|[=[|]=]|,=,|.=.|V=v|P=p",
            "ACCESS|MIC=#voice|A=a|BIG=#large|HC=#contrast|HAND=~hands\n|EAR=~ear\n|TICK=~"
            "metronome\n",
            "SYSTEM|/=/|⇧K=K",
        };
        QByteArrayList actual;
        for (const CommandGroup &group : commandGroups()) {
            QByteArray line = group.title.toUtf8();
            for (const Command &command : group.commands)
                line += '|' + command.key.toUtf8() + '=' + command.send.toUtf8();
            actual.append(line);
        }
        QCOMPARE(actual, expected);
    }

    void isTheSameRecordEachTime()
    {
        QSet<QUuid> ids;
        qsizetype commands = 0;
        for (const CommandGroup &group : commandGroups()) {
            commands += group.commands.size();
            for (const Command &command : group.commands)
                ids.insert(command.id);
        }
        QCOMPARE(ids.size(), commands);
        QVERIFY(ids.contains(commandGroups().constLast().commands.constLast().id));
    }

    void keepsTheFirstName()
    {
        const auto microphone = [] { return commandGroups()[4].commands[0].description(false); };
        QCOMPARE(microphone(), u"Voice control: say Kelo, then what you want"_s);
        QCOMPARE(commandGroups()[4].commands[1].description(false),
            u"Type to Kelo: a command or a question"_s);
        Link::shared().handle("name Luna");
        QCOMPARE(microphone(), u"Voice control: say Kelo, then what you want"_s);
    }

    void listsByMode_data()
    {
        const Table<QString> row{"keys"}; // of what can be played
        const QString rest = u"SPACE N → ← RETURN S 0 H"_s;
        row("idle", rest);
        row("Compose", rest); // unknown: case matters
        row("compose", u"⌫ "_s + rest);
        row("teach", u"STOP "_s + rest);
    }

    void listsByMode()
    {
        const QString mode = QString::fromLatin1(QTest::currentDataTag());
        QStringList listed;
        for (const Command &command : commandGroups()[1].commands) {
            if (command.listed(mode))
                listed << command.key;
        }
        QTEST(listed.join(u' '), "keys");
    }

    void numbersJazzLessons()
    {
        const QList<Command> lessons = jazzLessons({u"Swing feel"_s, u"Shell voicings"_s});
        QCOMPARE(lessons.size(), 2);
        QCOMPARE(lessons[1].send, u"~jazz 2\n"_s);
        QCOMPARE(lessons[1].description(true), u"Shell voicings"_s);
        QVERIFY(jazzLessons(QStringList(100'000, u"x"_s)).size() < 1000);
    }

    void labelsThePianosKeys()
    {
        const auto jobs = [](const QString &mode) {
            QStringList all;
            for (const ButtonJob &each : buttonJobs(mode))
                all << each.label + u' ' + each.job;
            return all;
        };
        QCOMPARE(jobs(u"logic"_s), jobs(u"reaper"_s));
        for (const QString &mode : {u""_s, u"Compose"_s, u"unknown"_s})
            QCOMPARE(jobs(mode), jobs(u"teach"_s));
        const QStringList different{
            u"teach"_s, u"compose"_s, u"menu"_s, u"idle"_s, u"jazz"_s, u"logic"_s};
        QSet<QStringList> all;
        for (const QString &mode : different)
            all << jobs(mode);
        QCOMPARE(all.size(), different.size());
    }
};

} // namespace kelo

QTEST_GUILESS_MAIN(kelo::CommandTableTest)
#include "command_table_test.moc"
