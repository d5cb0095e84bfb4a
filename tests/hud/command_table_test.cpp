#include "hud/command_table.h"
#include "hud/transcript_model.h"
#include "link/bounds.h"
#include "support/link_fixture.h"
#include "support/table.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace kelo {

/// What the display lists: commands, jazz lessons, the piano's keys, the conversation.
class CommandTableTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    /// Keys and what they send, a group a line. What engines out there answer to.
    void sendsToTheByte()
    {
        const QByteArrayList expected{
            "ASSISTANT|♪=~say play me something\n|ALBUM=~say play my album\n|JAM=~say jam with me\n"
            "|LULL=~say make it a lullaby\n|8BIT=~say make it a video game\n"
            "|EPIC=~say make it epic\n|?!=~say surprise me\n",
            "PLAY|⌫=\177|STOP=~drop\n|SPACE= |N=n|→=\033[C|←=\033[D|RETURN=\n|S=s|0=0|H=h",
            "MODES|C=c|B=b|STYLE=~bandstyle\n|T=t|J=j|M=m|L=l|G=g|R=r",
            "SOUND|−=-|===|[=[|]=]|,=,|.=.|V=v|P=p",
            "ACCESS|MIC=#voice|A=a|BIG=#large|HC=#contrast|HAND=~hands\n|EAR=~ear\n|TICK=~"
            "metronome\n",
            "SYSTEM|/=/|⇧K=K",
            "PRACTICE|W=w|U=u|PLAN=~say what shall I practise\n|LEAD=~say practice session\n"
            "|1=1|2=2|3=3|4=4|D=d|I=i|K=k|X=x|Y=y|"
            "BRF=~say save as braille\n|Z=z",
        };
        QByteArrayList actual;
        for (const CommandGroup &group : commandGroups() + QList{practiceGroup()}) {
            QByteArray line = group.title.toUtf8();
            for (const Command &command : group.commands)
                line += '|' + command.key.toUtf8() + '=' + command.send.toUtf8();
            actual.append(line);
        }
        QCOMPARE(actual, expected);
    }

    void pianoKeysDoInEachMode()
    {
        const auto jobs = [](const QString &mode) {
            QStringList all;
            for (const ButtonJob &each : buttonJobs(mode))
                all << each.label + u' ' + each.job;
            return all.join(u'|');
        };
        test::checkRows<QString, QString>(jobs,
            {{"composing", u"compose"_s,
                 u"1 PLAY AS BAND|2 SAY WHAT I WROTE|3 VARIATION|4 SAVE|5 LEARN AN IDEA|"
                 "6 STOP SOUND|7 NEW PIECE|8 HELP|H HOME|K KEEP"_s},
                {"the songs", u"menu"_s,
                    u"1 START IT|2 COUNT SONGS|3 NEXT|4 PREVIOUS|5 TALK MODE|6 PAUSE|7 COMPOSE|"
                    "8 HELP|H HOME|K KEEP"_s},
                {"standby", u"idle"_s,
                    u"1 OPEN IT|2 LIST CHOICES|3 NEXT CHOICE|4 PREVIOUS|5 TALK MODE|6 STOP|"
                    "7 COMPOSE|8 HELP|H HOME|K KEEP"_s},
                {"a workstation", u"logic"_s,
                    u"1 CHOOSE|2 BACK A LEVEL|3 NEXT|4 PREVIOUS|5 TALK MODE|6 STOP|7 COMPOSE|"
                    "8 HELP|H HOME|K KEEP"_s},
                {"another one", u"reaper"_s, jobs(u"logic"_s)},
                {"a score", u"score"_s,
                    u"1 SAY EVERYTHING|2 SAY THE NOTES|3 STEP ON|4 STEP BACK|5 TALK MODE|"
                    "6 PLAY ON / STOP|7 COMPOSE|8 HELP|H HOME|K KEEP"_s},
                {"accompanied", u"follow"_s,
                    u"1 BEGIN ANEW|2 PLAY MY PART|3 NEXT BARS|4 BARS BEFORE|5 TALK MODE|"
                    "6 PLAY PART / STOP|7 COMPOSE|8 HELP|H HOME|K KEEP"_s},
                {"none that is known", u"Compose"_s, jobs(u"teach"_s)}});
    }

    void keepsTheFirstName()
    {
        Link::shared().finishWelcome(u"Luna"_s, {});
        QCOMPARE(commandGroups()[4].commands[1].description(false),
            u"Type to Kelo: a command or a question"_s);
    }

    void isBoundedWhateverTheEngineSays()
    {
        test::LinkFixture link;
        TranscriptModel model;
        model.setLink(&link.link());
        const QAbstractItemModelTester tester(
            &model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        const QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
        const auto last = [&model] {
            QCoreApplication::processEvents();
            return model.data(model.index(model.rowCount() - 1), TranscriptModel::TextRole)
                .toString();
        };
        for (int i = 0; i < 999; ++i)
            link.say({"say line"});
        QCOMPARE(last(), u"line"_s);
        QVERIFY2(inserted.size() == 1 && model.rowCount() == 60, "a burst is one step");
        link.say({"say " + QByteArray(1'000'000, 'x')});
        QCOMPARE(last().size(), bounds::sentence);
        for (int i = 0; i < 300; ++i)
            link.say({"heard line"});
        QCOMPARE(last(), u"▸ YOU: line"_s);
        QCOMPARE(model.rowCount(), 200);
        model.setLink(nullptr);
        QCOMPARE(model.rowCount(), 0);
    }
};

} // namespace kelo

QTEST_GUILESS_MAIN(kelo::CommandTableTest)
#include "command_table_test.moc"
