#include "listen/words.h"

#include <QTest>

using namespace kelo::engine;

class WordsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void readsNumbers_data();
    void readsNumbers();
    void knowsWhereSentencesBegin();
    void namesPlaces();
};

void WordsTest::readsNumbers_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("value"); // -1: no number
    QTest::addColumn<int>("words");
    const auto row = [](const char *text, int value, int words) {
        QTest::newRow(text) << QByteArray(text) << value << words;
    };
    row("three", 3, 1);
    row("ninety", 90, 1);
    row("ninety five please", 95, 2);
    row("twenty-third", 23, 2);
    row("a hundred and four songs", 104, 4);
    row("one hundred twenty", 120, 3);
    row("hundred", -1, 0);
    row("a song", -1, 0);
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

void WordsTest::readsNumbers()
{
    QFETCH(QByteArray, text);
    QFETCH(int, value);
    QFETCH(int, words);
    const auto heard = wordsOf({text.data(), static_cast<std::size_t>(text.size())});
    const auto number = numberAt(heard);
    QCOMPARE(number ? number->value : -1, value);
    QCOMPARE(number ? static_cast<int>(number->words) : 0, words);
}

void WordsTest::knowsWhereSentencesBegin()
{
    const std::vector<Word> expected{
        {"what's", true}, {"that", false}, {"zoe", true}, {"stop", false}};
    QVERIFY(wordsOf(" What's 'that'?  -- Zo\xc3\xab, STOP!!") == expected);
    QVERIFY(wordsOf("' .,\t").empty());
}

void WordsTest::namesPlaces()
{
    QCOMPARE(ordinalInWords(3), std::string("third"));
    QCOMPARE(ordinalInWords(13), std::string("13th"));
    QCOMPARE(ordinalInWords(22), std::string("22nd"));
    QCOMPARE(ordinalInWords(111), std::string("111th"));
    QCOMPARE(numberInWords(95), std::string("ninety five"));
    QCOMPARE(numberInWords(40), std::string("forty"));
    QCOMPARE(numberInWords(120), std::string("120"));
}

QTEST_APPLESS_MAIN(WordsTest)
#include "words_test.moc"
