#include "braille/braille_bar.h"
#include "braille/braille_page.h"
#include "support/table.h"

#include <QRegularExpression>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace kelo::engine;
using kelo::test::Table;

namespace {

constexpr Hands hands[] = {Hands::Right, Hands::Left};

/// "c4/4. e4+g4:2( f#5/8t~ r": names with octaves, chords, values with dots and triplets, which
/// stay until there is another; fingers; "'d5" a grace note, "c5tr" a trill; slurs from "(" to ")";
/// ties. Bars end with "|", "[" and
/// "]" are repeats. Voices of a hand stand behind "&", the left hand behind "/".
WrittenPiece written(const QString &text, int beats, int unit, int fifths = 0)
{
    WrittenPiece piece;
    const QStringList bars = text.split(u'|');
    const int full = 4 * writtenQuarter / unit * beats;
    for (int bar = 0; bar < bars.size(); ++bar) {
        piece.bars.push_back({.at = bar * full,
            .length = full,
            .number = bar + 1,
            .beats = beats,
            .unit = unit,
            .fifths = fifths,
            .repeatBegins = bars[bar].contains(u'['),
            .repeatEnds = bars[bar].contains(u']') ? 2 : 0});
        const QStringList parts = bars[bar].split(u" // "_s);
        for (int hand = 0; hand < parts.size(); ++hand) {
            const QStringList voices = parts[hand].split(u'&');
            for (int voice = 0; voice < voices.size(); ++voice) {
                int at = bar * full;
                int value = 4;
                int length = writtenQuarter;
                for (QString token : voices[voice].split(u' ', Qt::SkipEmptyParts)) {
                    if (token == u"[" || token == u"]")
                        continue;
                    WrittenNote note{.at = at, .bar = bar, .voice = voice};
                    note.hand = hands[hand];
                    static const QRegularExpression last(
                        u"^([^/()~]*)(?:/(\\d+)(\\.?)(t?))?([()~]*)$"_s);
                    const auto match = last.match(token);
                    if (match.hasCaptured(2) && !match.captured(2).isEmpty()) {
                        value = match.captured(2).toInt();
                        length = 4 * writtenQuarter / value;
                        length = match.captured(3).isEmpty() ? length : length * 3 / 2;
                        length = match.captured(4).isEmpty() ? length : length * 2 / 3;
                        note.dots = match.captured(3).isEmpty() ? 0 : 1;
                    }
                    const bool grace = token.startsWith(u"'"_s);
                    note.length = grace ? 0 : length;
                    note.value = static_cast<std::int16_t>(value);
                    const QString signs = match.captured(5);
                    note.slurBegins = signs.contains(u'(');
                    note.slurEnds = signs.contains(u')');
                    note.tiedOn = signs.contains(u'~');
                    note.trill = match.captured(1).endsWith(u"tr"_s);
                    for (QString name : match.captured(1).mid(grace ? 1 : 0).split(u'+')) {
                        name.remove(u"tr"_s);
                        static const QRegularExpression parsed(
                            u"^([a-g])([#b]?)(\\d)(?::(\\d))?$"_s);
                        const auto pitch = parsed.match(name);
                        if (!pitch.hasMatch())
                            continue;
                        note.step =
                            static_cast<std::int8_t>(u"cdefgab"_s.indexOf(pitch.captured(1)));
                        note.alter = pitch.captured(2).isEmpty() ? 0
                            : pitch.captured(2) == u"#"          ? 1
                                                                 : -1;
                        const int keys[] = {0, 2, 4, 5, 7, 9, 11};
                        note.pitch = static_cast<std::int16_t>(
                            12 * (pitch.captured(3).toInt() + 1) + keys[note.step] + note.alter);
                        note.finger = static_cast<std::int8_t>(pitch.captured(4).toInt());
                        piece.notes.push_back(note);
                    }
                    at += note.length;
                }
            }
        }
    }
    std::ranges::stable_sort(piece.notes, {}, &WrittenNote::at);
    return piece;
}

QString brailleOf(const WrittenPiece &piece, Hands hand)
{
    Cells all;
    for (const BrailleBar &bar : brailleBars(piece, hand))
        all += (all.empty() ? Cells() : Cells(1, emptyCell)) + cellsOf(bar, false);
    return QString::fromStdString(utf8Of(all));
}

} // namespace

/// Whether a blind reader finds what is written. Bars whose braille stands in the examples of
/// teaching books, and bars of which the code's rules leave no doubt.
class BrailleTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void writesBars_data()
    {
        const Table<QString, QString, QString> row{"written", "metre", "braille"};
        for (const QStringList &parts : kelo::test::arrowed(QFINDTESTDATA("braille.txt")))
            row(qPrintable(parts[0]), parts[2], parts[1], parts[3]);
    }

    void writesBars()
    {
        QFETCH(QString, written);
        QFETCH(QString, metre);
        const int beats = metre.section(u'/', 0, 0).toInt();
        const int unit = metre.section(u'/', 1).toInt();
        QTEST(brailleOf(::written(written, beats, unit), Hands::Right), "braille");
    }

    void readsTheLeftHandFromBelow()
    {
        const WrittenPiece piece = written(u"r/1 // c3+e3+g3/1|r/1 // c3+c4+e4/1"_s, 4, 4);
        QCOMPARE(brailleOf(piece, Hands::Left), u"⠸⠽⠬⠔⠀⠽⠤⠬⠣⠅"_s);
        QCOMPARE(brailleOf(piece, Hands::Right), u"⠍⠀⠍⠣⠅"_s);
        const auto bar = [&](Hands hand) {
            return QString::fromStdString(brailleOfBar(piece, 1, hand));
        };
        QCOMPARE(bar(Hands::Both), u"⠨⠜⠄⠍⠣⠅⠀⠸⠜⠸⠽⠤⠬⠣⠅"_s);
        QCOMPARE(bar(Hands::Left), u"⠸⠜⠸⠽⠤⠬⠣⠅"_s);
    }

    void writesWhatTheKeyDoesNotSay()
    {
        QCOMPARE(
            brailleOf(written(u"f#4 f4 f4 f#4|f#4/1"_s, 4, 4, 1), Hands::Right), u"⠐⠻⠡⠻⠻⠩⠻⠀⠿⠣⠅"_s);
        QCOMPARE(brailleOf(written(u"bb4/4 b4 bb4 eb5|f4 f5"_s, 4, 4, -2), Hands::Right),
            u"⠐⠺⠡⠺⠣⠺⠨⠫⠀⠐⠻⠨⠻⠥⠣⠅"_s);
        const auto signature = [](int fifths, int beats, int unit) {
            return QString::fromStdString(
                utf8Of(signatureOf({.beats = beats, .unit = unit, .fifths = fifths})));
        };
        QCOMPARE(signature(1, 3, 4), u"⠩⠼⠉⠲"_s);
        QCOMPARE(signature(-3, 4, 4), u"⠣⠣⠣⠼⠙⠲"_s);
        QCOMPARE(signature(4, 6, 8), u"⠼⠙⠩⠼⠋⠦"_s);
        QCOMPARE(signature(0, 12, 8), u"⠼⠁⠃⠦"_s);
    }

    void makesPages()
    {
        QString text = u"c4/1 // c3/1"_s;
        for (int bar = 1; bar < 120; ++bar)
            text += bar == 30 ? u"|c4/16 d4 e4 f4 g4 a4 b4 c5 d5 c5 b4 a4 g4 f4 e4 d4&"
                                "e4/16 f4 g4 a4 b4 c5 d5 e5 f5 e5 d5 c5 b4 a4 g4 f4 // c3/1"_s
                              : u"|d4/4 e4 f4 g4 // c3/2 g2"_s;
        WrittenPiece piece = written(text, 4, 4);
        piece.title = "A 2nd Tune";
        const QString brf = QString::fromStdString(brfOf(piece));
        const QStringList pages = brf.split(u'\f');
        QVERIFY(pages.size() >= 2);
        for (const QString &page : pages) {
            const QStringList lines = page.split(u"\r\n"_s, Qt::SkipEmptyParts);
            QVERIFY(lines.size() <= 25);
            for (const QString &line : lines)
                QVERIFY2(line.size() <= 40, qPrintable(line));
        }
        const QStringList lines = pages[0].split(u"\r\n"_s);
        QCOMPARE(lines[0], QString(14, u' ') + u"A #BND TUNE"_s);
        QCOMPARE(lines[1], QString(18, u' ') + u"#D4"_s);
        QCOMPARE(lines[2], u"A .>\"Y :$]\\ :$]\\ :$]\\ :$]\\ :$]\\ :$]\\"_s);
        QCOMPARE(lines[3], u"  _>_Y N^R  _N^R _N^R _N^R _N^R _N^R"_s);
        QVERIFY(lines[4].startsWith(u"H .>\":$]\\"_s));
        QVERIFY2(brf.contains(u"\"\r\n  "_s), "a bar that is too long goes on");
        QVERIFY(brfOf(WrittenPiece{}).empty());
    }
};

QTEST_APPLESS_MAIN(BrailleTest)
#include "braille_test.moc"
