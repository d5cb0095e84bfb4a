#include "link/line_splitter.h"
#include "link/parse.h"

#include <QTest>

#include <limits>
#include <map>

using namespace kelo;

namespace {

QByteArrayList linesOf(LineSplitter &splitter)
{
    QByteArrayList lines;
    while (const auto line = splitter.next())
        lines << line->toByteArray();
    return lines;
}

} // namespace

class ParseTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void integers()
    {
        const std::map<QByteArray, qint64> good{{"0", 0}, {"-0", 0}, {"+5", 5}, {"-5", -5},
            {"007", 7}, {"9223372036854775807", std::numeric_limits<qint64>::max()},
            {"-9223372036854775808", std::numeric_limits<qint64>::min()}};
        for (const auto &[text, value] : good)
            QCOMPARE(parse::integer(text), value);
        for (const char *text : {"", "+", "-", "+-5", "-+5", "++5", "--5", "9223372036854775808",
                 "-9223372036854775809", " 5", "5 ", "5\r", "5.0", "1e3", "0x10", "1_000", "٥", "x",
                 "99999999999999999999999"})
            QVERIFY2(!parse::integer(text), text);
        QVERIFY(!parse::integer(QByteArrayView("5\0", 2)));
    }

    void decimals()
    {
        const std::map<QByteArray, double> good{{"2", 2}, {"-0.5", -0.5}, {"+0.5", 0.5},
            {".5", 0.5}, {"5.", 5}, {"1e3", 1000}, {"1E-3", 0.001}, {"1e308", 1e308},
            {"12345678901234567890", 12345678901234567890.0}};
        for (const auto &[text, value] : good)
            QCOMPARE(parse::decimal(text), value);
        for (const char *text :
            {"", "+", "-", ".", "e5", "1e", "1e+", "nan", "NaN", "inf", "-inf", "infinity", "1e999",
                "-1e999", " 1", "1 ", "1,5", "1.2.3", "--1", "+-1", "0x1p3", "1f"})
            QVERIFY2(!parse::decimal(text), text);
    }

    void linesAreTheSameHoweverTheyArrive()
    {
        const QByteArray stream("@a\n\n\r\n@\0x\n@half", 15);
        const QByteArrayList lines{"@a", "", "\r", QByteArray("@\0x", 3)};
        for (qsizetype first = 0; first <= stream.size(); ++first) {
            for (qsizetype second = first; second <= stream.size(); ++second) {
                LineSplitter splitter;
                QByteArrayList found;
                for (const QByteArray &part : {stream.first(first),
                         stream.sliced(first, second - first), stream.sliced(second)}) {
                    splitter.append(part);
                    found << linesOf(splitter);
                }
                QCOMPARE(found, lines);
                QCOMPARE(splitter.pending(), 5);
            }
        }
    }

    void endlessLinesAreDropped()
    {
        const QByteArray longest(LineSplitter::longestLine, 'x');
        LineSplitter splitter;
        splitter.append(longest + '\n' + longest + "x\n@a\n");
        QCOMPARE(linesOf(splitter), (QByteArrayList{longest, "@a"}));
        for (int megabytes = 0; megabytes < 10; ++megabytes) {
            splitter.append(longest);
            QVERIFY(linesOf(splitter).isEmpty());
            QVERIFY(splitter.pending() <= LineSplitter::longestLine);
        }
        splitter.append("@tail of it\n@b\n");
        QCOMPARE(linesOf(splitter), QByteArrayList{"@b"});
    }
};

QTEST_GUILESS_MAIN(ParseTest)
#include "parse_test.moc"
