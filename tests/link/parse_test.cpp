#include "link/line_splitter.h"
#include "link/parse.h"

#include <QTest>

#include <limits>

using namespace kelo;

class ParseTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void integers_data();
    void integers();
    void decimals_data();
    void decimals();
    void pieces_data();
    void pieces();
    void integersCloseUp();

    void linesAreTheSameHoweverTheyArrive_data();
    void linesAreTheSameHoweverTheyArrive();
    void endlessLinesAreDropped();
};

namespace {

constexpr qint64 most = std::numeric_limits<qint64>::max();
constexpr qint64 least = std::numeric_limits<qint64>::min();

QByteArrayList linesOf(LineSplitter &splitter)
{
    QByteArrayList lines;
    while (const auto line = splitter.next())
        lines << line->toByteArray();
    return lines;
}

} // namespace

void ParseTest::integers_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<std::optional<qint64>>("value");
    const auto row = [](const QByteArray &text, std::optional<qint64> value) {
        QTest::newRow(qPrintable(u'"' + QString::fromUtf8(text) + u'"')) << text << value;
    };
    row("0", 0);
    row("-0", 0);
    row("+5", 5);
    row("-5", -5);
    row("007", 7);
    row("9223372036854775807", most);
    row("-9223372036854775808", least);
    for (const char *none : {"", "+", "-", "+-5", "-+5", "++5", "--5", "9223372036854775808",
             "-9223372036854775809", " 5", "5 ", "5\r", "5.0", "1e3", "0x10", "1_000", "٥", "x"})
        row(none, std::nullopt);
    row(QByteArray("5\0", 2), std::nullopt);
}

void ParseTest::integers()
{
    QFETCH(QByteArray, text);
    QTEST(parse::integer(text), "value");
}

void ParseTest::decimals_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<std::optional<double>>("value");
    const auto row = [](const char *text, std::optional<double> value) {
        QTest::newRow(text) << QByteArray(text) << value;
    };
    row("2", 2);
    row("-0.5", -0.5);
    row("+0.5", 0.5);
    row(".5", 0.5);
    row("5.", 5);
    row("1e3", 1000);
    row("1E-3", 0.001);
    row("1e308", 1e308);
    row("123456789012345678901234567890", 123456789012345678901234567890.0);
    for (const char *none :
        {"", "+", "-", ".", "e5", "1e", "1e+", "nan", "NaN", "inf", "-inf", "infinity", "1e999",
            "-1e999", " 1", "1 ", "1,5", "1.2.3", "--1", "+-1", "0x1p3", "1f", "½"})
        row(none, std::nullopt);
}

void ParseTest::decimals()
{
    QFETCH(QByteArray, text);
    QTEST(parse::decimal(text), "value");
}

void ParseTest::pieces_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("most");
    QTest::addColumn<QByteArrayList>("found");
    QTest::newRow("nothing") << QByteArray() << 0 << QByteArrayList{};
    QTest::newRow("only separators") << QByteArray("   ") << 0 << QByteArrayList{};
    QTest::newRow("empty pieces go") << QByteArray("  a  b ") << 0 << QByteArrayList{"a", "b"};
    QTest::newRow("the last keeps the rest")
        << QByteArray("a b c  d ") << 3 << QByteArrayList{"a", "b", "c  d "};
    QTest::newRow("fewer than allowed") << QByteArray("a b ") << 3 << QByteArrayList{"a", "b"};
}

void ParseTest::pieces()
{
    QFETCH(QByteArray, text);
    QFETCH(int, most);
    QByteArrayList found;
    for (const QByteArrayView piece : parse::pieces(text, ' ', most))
        found << piece.toByteArray();
    QTEST(found, "found");
}

void ParseTest::integersCloseUp()
{
    const parse::Integers found = parse::integers("5 x  7 1.5 99999999999999999999 -1");
    QCOMPARE(QList<qint64>(found.begin(), found.end()), (QList<qint64>{5, 7, -1}));
}

void ParseTest::linesAreTheSameHoweverTheyArrive_data()
{
    QTest::addColumn<QByteArray>("stream");
    QTest::addColumn<QByteArrayList>("lines");
    QTest::addColumn<qsizetype>("left");
    QTest::newRow("nothing") << QByteArray() << QByteArrayList{} << qsizetype(0);
    QTest::newRow("half a line waits")
        << QByteArray("@a\n@b") << QByteArrayList{"@a"} << qsizetype(2);
    QTest::newRow("empty lines, carriage returns, zeros")
        << QByteArray("\n\r\n@\0x\n", 7) << QByteArrayList{"", "\r", QByteArray("@\0x", 3)}
        << qsizetype(0);
}

void ParseTest::linesAreTheSameHoweverTheyArrive()
{
    QFETCH(QByteArray, stream);
    QFETCH(qsizetype, left);
    for (qsizetype first = 0; first <= stream.size(); ++first) {
        for (qsizetype second = first; second <= stream.size(); ++second) {
            LineSplitter splitter;
            QByteArrayList lines;
            for (const QByteArray &part : {stream.first(first),
                     stream.sliced(first, second - first), stream.sliced(second)}) {
                splitter.append(part);
                lines << linesOf(splitter);
            }
            QTEST(lines, "lines");
            QCOMPARE(splitter.pending(), left);
        }
    }
}

void ParseTest::endlessLinesAreDropped()
{
    const QByteArray longest(LineSplitter::longestLine, 'x');
    LineSplitter splitter;
    splitter.append(longest + '\n');
    QCOMPARE(linesOf(splitter).value(0).size(), longest.size());

    splitter.append(longest + "x\n@a\n");
    QCOMPARE(linesOf(splitter), QByteArrayList{"@a"});

    for (int megabytes = 0; megabytes < 10; ++megabytes) {
        splitter.append(longest);
        QVERIFY(linesOf(splitter).isEmpty());
        QVERIFY(splitter.pending() <= LineSplitter::longestLine);
    }
    splitter.append("@tail of it\n@b\n");
    QCOMPARE(linesOf(splitter), QByteArrayList{"@b"});
}

QTEST_GUILESS_MAIN(ParseTest)
#include "parse_test.moc"
