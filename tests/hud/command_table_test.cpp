#include "hud/command_table.h"
#include "link/link.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace kelo {

class CommandTableTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void sendsToTheByte();
    void isTheSameRecordEachTime();
    void keepsTheFirstName();
    void listsByMode_data();
    void listsByMode();
    void numbersJazzLessons();
    void labelsThePianosKeys_data();
    void labelsThePianosKeys();
};

/// Keys and what they send, a group a line. What engines out there answer to.
void CommandTableTest::sendsToTheByte()
{
    const char *const assistant =
        "ASSISTANT|♪=~say play me something\n|ALBUM=~say play my album\n|JAM=~say jam with me\n"
        "|LULL=~say make it a lullaby\n|8BIT=~say make it a video game\n|EPIC=~say make it epic\n"
        "|?!=~say surprise me\n";
    const QByteArrayList expected{
        assistant,
        "PLAY|⌫=\177|STOP=~drop\n|SPACE= |N=n|→=\033[C|←=\033[D|RETURN=\n|S=s|0=0|H=h",
        "MODES|C=c|B=b|STYLE=~bandstyle\n|T=t|J=j|M=m|L=l|G=g|R=r",
        "SOUND|−=-|===|[=[|]=]|,=,|.=.|V=v|P=p",
        "ACCESS|MIC=#voice|A=a|BIG=#large|HC=#contrast|HAND=~hands\n|EAR=~ear\n|TICK=~metronome\n",
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

void CommandTableTest::isTheSameRecordEachTime()
{
    QSet<QUuid> ids;
    for (const CommandGroup &group : commandGroups()) {
        for (const Command &command : group.commands)
            ids.insert(command.id);
    }
    QCOMPARE(ids.size(), 43);
    QVERIFY(ids.contains(commandGroups().constLast().commands.constLast().id));
}

void CommandTableTest::keepsTheFirstName()
{
    const auto microphone = [] { return commandGroups()[4].commands[0].description(false); };
    QCOMPARE(microphone(), u"Voice control: say Kelo, then what you want"_s);
    QCOMPARE(commandGroups()[4].commands[1].description(false),
        u"Type to Kelo: a command or a question"_s);
    Link::shared().assistant = u"Luna"_s;
    QCOMPARE(microphone(), u"Voice control: say Kelo, then what you want"_s);
}

void CommandTableTest::listsByMode_data()
{
    QTest::addColumn<QString>("mode");
    QTest::addColumn<QStringList>("play");
    const QStringList rest{u"Say the notes of the part"_s, u"Skip ahead"_s, u"Go back"_s,
        u"Pause, and carry on"_s, u"Keep what you just played"_s, u"Home: leave any mode"_s,
        u"Spoken help"_s};
    const QString start = u"Start the lesson, or hear the part again"_s;
    QTest::newRow("idle") << u"idle"_s << (QStringList(start) << rest);
    QTest::newRow("unknown") << u"Compose"_s << (QStringList(start) << rest);
    QTest::newRow("teach") << u"teach"_s
                           << (QStringList{u"Stop learning this song for good"_s, start} << rest);
    QTest::newRow("compose") << u"compose"_s
                             << QStringList{u"Start over, without saving"_s,
                                    u"Play it back as a band"_s, u"Say what you wrote"_s,
                                    u"Play the next variation"_s, u"Save it as a MIDI file"_s,
                                    u"Stop the sound"_s, u"Keep what you just played"_s,
                                    u"Home: leave any mode"_s, u"Spoken help"_s};
}

void CommandTableTest::listsByMode()
{
    QFETCH(QString, mode);
    QStringList listed;
    for (const Command &command : commandGroups()[1].commands) {
        if (command.listed(mode))
            listed.append(command.description(mode == u"compose"));
    }
    QTEST(listed, "play");
}

void CommandTableTest::numbersJazzLessons()
{
    const QList<Command> lessons = jazzLessons({u"Swing feel"_s, u"Shell voicings"_s});
    QCOMPARE(lessons.size(), 2);
    QCOMPARE(lessons[1].key, u"2"_s);
    QCOMPARE(lessons[1].send, u"~jazz 2\n"_s);
    QCOMPARE(lessons[1].description(true), u"Shell voicings"_s);
    QVERIFY(lessons[1].listed(u"idle"_s));
    QVERIFY(jazzLessons(QStringList(100'000, u"x"_s)).size() < 1000);
}

void CommandTableTest::labelsThePianosKeys_data()
{
    QTest::addColumn<QString>("mode");
    QTest::addColumn<QString>("jobs");
    const QString lessons = u"START / HEAR AGAIN|SAY THE NOTES|SKIP AHEAD|GO BACK|TALK MODE|PAUSE|"
                            "COMPOSE|HELP"_s;
    const QString studio = u"CHOOSE|BACK A LEVEL|NEXT|PREVIOUS|TALK MODE|STOP|COMPOSE|HELP"_s;
    QTest::newRow("compose") << u"compose"_s
                             << u"PLAY AS BAND|SAY WHAT I WROTE|VARIATION|SAVE|LEARN AN IDEA|"
                                "STOP SOUND|NEW PIECE|HELP"_s;
    QTest::newRow("menu") << u"menu"_s
                          << u"START IT|COUNT SONGS|NEXT|PREVIOUS|TALK MODE|PAUSE|COMPOSE|HELP"_s;
    QTest::newRow("idle") << u"idle"_s
                          << u"OPEN IT|LIST CHOICES|NEXT CHOICE|PREVIOUS|TALK MODE|STOP|COMPOSE|"
                             "HELP"_s;
    QTest::newRow("jazz") << u"jazz"_s
                          << u"JAM AGAIN|THE IDEA|NEXT LESSON|PREVIOUS|TALK MODE|STOP BAND|"
                             "COMPOSE|HELP"_s;
    QTest::newRow("logic") << u"logic"_s << studio;
    QTest::newRow("reaper") << u"reaper"_s << studio;
    QTest::newRow("teach") << u"teach"_s << lessons;
    QTest::newRow("none") << QString() << lessons;
    QTest::newRow("case matters") << u"Idle"_s << lessons;
}

void CommandTableTest::labelsThePianosKeys()
{
    QFETCH(QString, mode);
    QString labels;
    QStringList jobs;
    for (const ButtonJob &each : buttonJobs(mode)) {
        labels += each.label;
        jobs.append(each.job);
    }
    QCOMPARE(labels, u"12345678HK"_s);
    QCOMPARE(jobs.mid(8), (QStringList{u"HOME"_s, u"KEEP"_s}));
    QTEST(jobs.first(8).join(u'|'), "jobs");
}

} // namespace kelo

QTEST_GUILESS_MAIN(kelo::CommandTableTest)
#include "command_table_test.moc"
