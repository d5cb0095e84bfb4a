#include "assistant/demo.h"
#include "assistant/talk_requests.h"
#include "assistant/typing_line.h"
#include "setup/voice_log.h"
#include "support/files.h"
#include "support/table.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace kelo::engine;
using namespace kelo::test;

class AssistantTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void editsWhatIsTyped()
    {
        TypingLine line;
        QStringList echoes;
        const auto press = [&](std::string_view keys) {
            for (const char c : keys) {
                const auto change = line.press(key(c));
                if (!change.echo.empty())
                    echoes << QString::fromStdString(change.echo);
                QVERIFY(!change.end);
            }
        };
        press("play  sonk");
        static_cast<void>(line.press(Key::Delete));
        static_cast<void>(line.press(Key::Left));
        press("g 3\x7f\x7f");
        QCOMPARE(line.text(), std::string("play  song"));
        QCOMPARE(echoes, QStringList({u"play"_s, u"song"_s, u"3, deleted"_s, u"space, deleted"_s}));
        QVERIFY(line.press(Key::Return).end == TypingLine::End::Run);
        QVERIFY(line.press(Key::Escape).end == TypingLine::End::Leave);
        press(std::string(10000, 'x'));
        QCOMPARE(line.text().size(), TypingLine::longest);
        TypingLine empty;
        QVERIFY(!empty.press(Key::Delete).end);
        static_cast<void>(empty.press(key(' ')));
        QVERIFY(empty.press(Key::Return).end == TypingLine::End::Leave);
    }

    void knowsTheDay_data()
    {
        const Table<QList<int>, QByteArray> row{"date", "words"};
        row("a Friday", {2025, 3, 7}, "It is Friday, the seventh of March.");
        row("a leap day", {2028, 2, 29}, "It is Tuesday, the 29th of February.");
        row("no leap year", {2100, 3, 1}, "It is Monday, the first of March.");
        row("new year", {2026, 1, 1}, "It is Thursday, the first of January.");
        row("the eve", {2026, 12, 31}, "It is Thursday, the 31st of December.");
    }

    void knowsTheDay()
    {
        QFETCH(QList<int>, date);
        QFETCH(QByteArray, words);
        QCOMPARE(dateInWords(std::chrono::year(date[0]) / date[1] / date[2]), words.toStdString());
    }

    void theVoiceLogStaysSmall()
    {
        QTemporaryDir folder;
        const std::filesystem::path home = folder.filePath(u"new"_s).toStdString();
        prepareVoiceLog(home);
        const QString log = folder.filePath(u"new/voice-log.txt"_s);
        QVERIFY(QFile::exists(log));
        writeFile(log, "kept\n");
        prepareVoiceLog(home);
        QCOMPARE(readFile(log), "kept\n"_ba);
        const QByteArray much((1 << 20) + 1, 'x');
        writeFile(log, much);
        prepareVoiceLog(home);
        QVERIFY(QFile::exists(log) && readFile(log).isEmpty());
        QVERIFY(readFile(folder.filePath(u"new/voice-log.old.txt"_s)) == much);
        prepareVoiceLog("/proc/nowhere");
    }

    void theDemoWaitsForTheAssistant()
    {
        Demo demo(0);
        QVERIFY(!demo.advance(true, 0.1));
        QVERIFY(demo.advance(true, 0.5));
        double now = 0.5;
        for (int i = 0; i < 100; ++i)
            QVERIFY(!demo.advance(false, now += 0.1)); // it is still speaking
        QVERIFY(*demo.deadline() > now);
        QByteArray done;
        for (int i = 0; i < 10000 && !demo.over(); ++i) {
            now += 0.05;
            const auto step = demo.advance(i % 300 < 250, now);
            if (!step)
                continue;
            done += QByteArray::number(i) + ' ';
            if (const auto *message = std::get_if<ChannelMessage>(&*step))
                done += QByteArray::number(message->status * 128 + message->first);
            else
                done += std::get<Command>(*step).text;
        }
        QVERIFY(demo.over() && !demo.deadline());
        QCOMPARE(qChecksum(done), 17000); // each step at its time
    }
};

QTEST_APPLESS_MAIN(AssistantTest)
#include "assistant_test.moc"
