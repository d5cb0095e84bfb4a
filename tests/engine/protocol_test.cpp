#include "protocol/input.h"
#include "protocol/text.h"
#include "protocol/wire.h"
#include "support/table.h"

#include <QTest>

using namespace kelo::engine;
using kelo::test::Table;

using Inputs = std::vector<Input>;
Q_DECLARE_METATYPE(Inputs)

class ProtocolTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void tellsKeysFromCommands_data()
    {
        const Table<std::string, Inputs> row{"bytes", "inputs"};
        row("keys", "h 0K", {key('h'), key(' '), key('0'), key('K')});
        row("return and delete", "\n\x7f", {Key::Return, Key::Delete});
        row("arrows", "\x1b[C\x1b[D", {Key::Right, Key::Left});
        row("a command between keys", "n~say play q~\nn",
            {key('n'), Command{"say play q~"}, key('n')});
        row("an empty command", "~\n", {Command{""}});
        row("UTF-8 and escapes within a command", "~say \xc3\xa9\x1b[C\n",
            {Command{"say \xc3\xa9\x1b[C"}});
        row("an unknown sequence is swallowed", "\x1b[Ah", {key('h')});
        row("escape and another key", "\x1bh\x1b\x1b~x\n",
            {Key::Escape, key('h'), Key::Escape, Key::Escape, Command{"x"}});
        row("what is no key is passed over", "\xc3\xa9\x01\rh", {key('h')});
    }

    void tellsKeysFromCommands()
    {
        QFETCH(std::string, bytes);
        QFETCH(Inputs, inputs);
        InputReader whole;
        QVERIFY(whole.feed(bytes, 0) == inputs);

        InputReader piecewise;
        Inputs collected;
        for (const char byte : bytes) {
            for (Input &input : piecewise.feed({&byte, 1}, 0))
                collected.push_back(std::move(input));
        }
        QVERIFY(collected == inputs);
        QVERIFY(!piecewise.deadline());
    }

    void aLoneTildeOrEscapeIsAKey()
    {
        for (const auto &[byte, expected] :
            {std::pair{"~", key('~')}, std::pair{"\x1b", Key::Escape}}) {
            InputReader reader;
            QVERIFY(reader.feed(byte, 5).empty());
            QVERIFY(!reader.expire(5.05));
            QCOMPARE(std::get<Key>(reader.expire(*reader.deadline()).value()), expected);
            QVERIFY(!reader.deadline());
            QCOMPARE(std::get<Key>(reader.feed("h", 6).at(0)), key('h'));
        }
        InputReader slow;
        QVERIFY(slow.feed("~p", 0).empty());
        QVERIFY(!slow.expire(9));
        QCOMPARE(std::get<Command>(slow.feed("lay\n", 9).at(0)).text, std::string("play"));
    }

    void dropsAnEndlessCommand()
    {
        InputReader reader;
        const std::string flood(1 << 16, 'x');
        QVERIFY(reader.feed("~", 0).empty());
        for (int i = 0; i < 40; ++i)
            QVERIFY(reader.feed(flood, 0).empty());
        QVERIFY((reader.feed("\nh", 0) == Inputs{key('h')}));
    }

    void textsAreOneValidLine_data()
    {
        const Table<QByteArray, QByteArray, int> row{"text", "line", "units"};
        row("empty", "", "", 0);
        row("blank", " \t\n ", "", 0);
        row("line breaks", " a\nb\r\n", "a b", 3);
        row("two, three and four bytes", "\u00e9\u20ac\U0001F3B5", "\u00e9\u20ac\U0001F3B5", 4);
        row("a stray byte", "a\xff\x80z", "a??z", 4);
        row("a cut-off character", "a\xe2\x82", "a??", 3);
        row("an overlong slash", "\xc0\xaf", "??", 2);
        row("half a surrogate pair", "\xed\xa0\x80", "???", 3);
        row("beyond Unicode", "\xf4\x90\x80\x80", "????", 4);
        row("too long", QByteArray(3999, 'a') + "\u20ac", QByteArray(3999, 'a'), 3999);
    }

    void textsAreOneValidLine()
    {
        QFETCH(QByteArray, text);
        const std::string line = oneLine(text.toStdString());
        QTEST(QByteArray::fromStdString(line), "line");
        QTEST(utf16Offsets(line).back(), "units");
        QCOMPARE(utf16Offsets(line).back(), static_cast<int>(QString::fromStdString(line).size()));
    }

    void aTextIsCutAtAWholeCharacter()
    {
        QCOMPARE(oneLine("\u20ac\u20ac", 5), std::string("\u20ac"));
        QCOMPARE(oneLine("\u20ac\u20ac", 6), std::string("\u20ac\u20ac"));
    }

    void noTextBreaksALine()
    {
        std::string sent;
        Wire wire([&](std::string_view line) { sent += line; });
        wire.send("say", "one\n@two");
        wire.send("word", {0, 3, -1});
        wire.send("done");
        QCOMPARE(sent, std::string("@say one @two\n@word 0 3 -1\n@done\n"));
    }
};

QTEST_APPLESS_MAIN(ProtocolTest)
#include "protocol_test.moc"
