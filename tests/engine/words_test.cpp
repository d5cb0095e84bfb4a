#include "listen/sound_alike.h"
#include "listen/words.h"
#include "sums.h"
#include "support/table.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace kelo::engine;
using kelo::test::Table;

class WordsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void readsNumbers_data()
    {
        const Table<int, int> row{"value", "words"}; // no number is -1
        row("ninety five please", 95, 2);
        row("twenty-third", 23, 2);
        row("a hundred and four songs", 104, 4);
        row("hundred", -1, 0);
        row("hundred and ninety percent", 190, 3);
        row("a hundred and", 100, 2);
        row("one twenty", 120, 2); // as tempos are said
        row("one twenty five", 125, 3);
        row("three four", 3, 1);
        row("five hundred thousand", 500, 2);
        row("nine thousand nine hundred and ninety nine", 9999, 7);
        row("zero", 0, 1);
        row("120 bpm", 120, 1);
        row("99999999999", -1, 0);
        row("12th", -1, 0);
        row("hundred hundred hundred hundred", -1, 0);
    }

    void readsNumbers()
    {
        const auto number = numberAt(wordsOf(QTest::currentDataTag()));
        QTEST(number ? number->value : -1, "value");
        QTEST(number ? static_cast<int>(number->words) : 0, "words");
    }

    void readsAnyNumbers()
    {
        const Chance::Rules rules = Chance::rulesIn(QFINDTESTDATA("any_text.txt"));
        Chance chance(1);
        QByteArray all;
        for (int i = 0; i < 4000; ++i) {
            const auto number = numberAt(wordsOf(chance.text(rules, "$numbers").toStdString()));
            all += number ? QByteArray::number(number->value) + '/'
                    + QByteArray::number(int(number->words)) + ' '
                          : "- ";
        }
        QCOMPARE(unlikeKept(u"numbers"_s, {qChecksum(all)}), QString());
        for (int i = -1; i < 130; ++i)
            all += numberInWords(i) + ordinalInWords(i);
        QCOMPARE(unlikeKept(u"numbers in words"_s, {qChecksum(all)}), QString());
    }

    void knowsWhereSentencesBegin()
    {
        const std::vector<Word> expected{
            {"what's", true}, {"that", false}, {"zoe", true}, {"stop", false}};
        QVERIFY(wordsOf(" What's 'that'?  -- Zo\xc3\xab, STOP!!") == expected);
        QVERIFY(wordsOf("' .,\t").empty());
    }

    void tellsHowFarSoundsAreApart()
    {
        QStringList all; // vowels, consonants and kindred ones: another, one less, one more
        for (const auto &[word, other] :
            {std::pair("phoenix", "fenix"), {"kelo", "kala"}, {"kelo", "kel"}, {"kelo", "skelos"},
                {"bat", "pad"}, {"kelo", "melo"}, {"hello", "ello"}, {"phoenix", "queen"},
                {"cherry", "sherry"}, {"", "shy"}, {"luna", "rumor"}, {"xavier", "javier"}})
            all << QString::number(soundDistance(word, other));
        QCOMPARE(all.join(u' '), u"0.3 0.6 0.6 2 1 1 0.5 3.9 0 1.6 1.3 1.5"_s);
        const QByteArray letters = "aabceeghijkloopqrstuwxyzhfvmnd";
        Chance chance(1);
        QByteArray sounds;
        std::string before;
        for (int i = 0; i < 3000; ++i) {
            std::string word;
            for (int count = chance.below(9); count > 0; --count)
                word += chance.of(letters);
            sounds += soundsOf(word).c_str()
                + QByteArray::number(soundDistance(word, before), 'f', 2)
                + (soundsLike(word, before) ? "=" : " ");
            before = word;
        }
        QCOMPARE(unlikeKept(u"sounds"_s, {qChecksum(sounds)}), QString());
        QVERIFY(soundsLike("fenix", "phoenix") && !soundsLike("queen", "phoenix"));
    }

    void namesPlaces()
    {
        QCOMPARE(ordinalInWords(3), std::string("third"));
        QCOMPARE(ordinalInWords(13), std::string("13th"));
        QCOMPARE(ordinalInWords(22), std::string("22nd"));
        QCOMPARE(ordinalInWords(111), std::string("111th"));
        QCOMPARE(numberInWords(95), std::string("ninety five"));
        QCOMPARE(numberInWords(40), std::string("forty"));
        QCOMPARE(numberInWords(120), std::string("120"));
    }
};

QTEST_APPLESS_MAIN(WordsTest)
#include "words_test.moc"
