#include "voice/name/accents.h"
#include "voice/name/name_doubt.h"
#include "voice/name/pronunciation.h"
#include "voice/name/taught_name.h"
#include "voice/recognition/language_model.h"
#include "voice/recognition/partial_stabiliser.h"
#include "voice/wake_lab/wake_lab_report.h"

#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace kelo;

/// What words sound like, which are likely, and which are shown.
class WordsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void mapsSoundsToPhones_data()
    {
        QTest::addColumn<QString>("ipa");
        QTest::addColumn<QString>("phones");
        QTest::newRow("stress and length") << u"kˈiːloʊ"_s << u"K IY L OW"_s;
        QTest::newRow("British") << u"ɐpˈɒləʊ"_s << u"AH P AA L OW"_s;
        QTest::newRow("two letters, one sound") << u"dʒˈɑːz tʃˈeə"_s << u"JH AA Z CH EH"_s;
        QTest::newRow("r after o") << u"fˈoːɹ"_s << u"F AO R"_s;
        QTest::newRow("another language's mark") << u"(hi)sˈiːtaː(en-us)"_s << u"S IY T AA"_s;
        QTest::newRow("foreign sounds") << u"ʁøɲyχ"_s << u"R ER N Y UW K"_s;
        QTest::newRow("no sounds") << u"ˈˌ.‿ 12"_s << QString();
    }

    void mapsSoundsToPhones()
    {
        QFETCH(QString, ipa);
        QTEST(phonesOfIpa(ipa).join(u' '), "phones");
        QCOMPARE(phonesOfXSampa(u"k e l oU"_s), (Phones{u"K"_s, u"EY"_s, u"L"_s, u"OW"_s}));
        QCOMPARE(
            phonesOfXSampa(u"\"dZ{z r\\Q"_s), (Phones{u"JH"_s, u"AE"_s, u"Z"_s, u"R"_s, u"AA"_s}));
    }

    void everyNameCanBeSaid()
    {
        const QStringList known =
            u"AA AE AH AO AW AY B CH D DH EH ER EY F G HH IH IY JH K L M N NG "
            "OW OY P R S SH T TH UH UW V W Y Z ZH"_s.split(u' ');
        const QString names =
            u"Kelo Zoë Łukasz Siobhán Nguyễn Владимир 李娜 さくら アキラ محمد Ελένη "
            "דוד अनीता 김민수 Saoirse Weiß Øystein Þórdís Țepeș Zsófia Đorđe Çağlar "
            "Phương Whetū R2D2 7 Q Zzyzx Psst O'Brien Հայկ თამარ ไทย አበበ 🎹 ..."_s;
        for (const QString &name : names.split(u' ')) {
            const auto entry = pronounced({nameToken(name)}, u"/nonexistent"_s).first();
            QVERIFY2(!entry.pronunciations.isEmpty(), qPrintable(name));
            for (const Phones &phones : entry.pronunciations) {
                QVERIFY2(!phones.isEmpty(), qPrintable(name));
                for (const QString &phone : phones)
                    QVERIFY2(known.contains(phone), qPrintable(name + u' ' + phone));
            }
        }
    }

    /// All that accents do to two names: one sound changes at a time, and what is known comes
    /// first.
    void accentsChangeOneSound()
    {
        const auto accents = [](const char *phones, qsizetype limit) {
            QStringList ways;
            for (const Phones &way : accentsOf({QString::fromLatin1(phones).split(u' ')}, limit))
                ways.append(way.join(u' '));
            return ways.join(u", "_s);
        };
        QCOMPARE(accents("HH AA R M AH N IY", 100),
            u"HH AA R M AH N IY, HH AO R M AH N IY, HH AE R M AH N IY, HH AA M AH N IY, HH AA R M AH N IH, HH AA R M AH N EY, HH AA R M IH N IY, AA R M AH N IY"_s);
        QCOMPARE(accents("M ER AA B Y UW T OW", 100),
            u"M ER AA B Y UW T OW, M ER AO B Y UW T OW, M ER AE B Y UW T OW, M ER AA B Y UW D OW, M ER AA B Y UW T AO, M ER AA B Y UW T UH, M ER AA B UW T OW"_s);
        QCOMPARE(accents("HH AA R M AH N IY", 2), u"HH AA R M AH N IY, HH AO R M AH N IY"_s);
        QCOMPARE(accents("M ER R AA B OW", 100),
            u"M ER R AA B OW, M ER R AO B OW, M ER R AE B OW, M IH R AA B OW, M AH R AA B OW, M ER AA B OW, M ER R AA B AO, M ER R AA B UH"_s);
        QCOMPARE(accents("M", 12), u"M"_s);
        const QList<Phones> both{{u"K"_s, u"EH"_s, u"L"_s, u"OW"_s}, {u"K"_s, u"EY"_s}};
        QCOMPARE(accentsOf(both, 1), both); // what is known is never left out
    }

    void namesAreOneWord_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("tokens");
        QTest::newRow("plain") << u"Kelo"_s << u"Hey Kelo, what's the weather?"_s
                               << QStringList{
                                      u"hey"_s, u"kelo"_s, u"what's"_s, u"the"_s, u"weather"_s};
        QTest::newRow("with a number") << u"Kelo 2"_s << u"okay Kelo 2 stop"_s
                                       << QStringList{u"okay"_s, u"kelo_2"_s, u"stop"_s};
        QTest::newRow("the library's own marks") << u"</s> (2)"_s << u"Hey </s> (2) play"_s
                                                 << QStringList{u"hey"_s, u"s___2"_s, u"play"_s};
        QTest::newRow("not inside a word")
            << u"Kelo"_s << u"Kelos kelo"_s << QStringList{u"kelos"_s, u"kelo"_s};
        QTest::newRow("other letters")
            << u"Zoë"_s << u"hey ZOË"_s << QStringList{u"hey"_s, u"zoë"_s};
        QTest::newRow("no letters")
            << u"!!"_s << u"Hey !! stop"_s << QStringList{u"hey"_s, u"stop"_s};
    }

    void namesAreOneWord()
    {
        QFETCH(QString, name);
        QFETCH(QString, text);
        QTEST(tokensOf(text, name), "tokens");
    }

    /// Half of the smallest count after a history is lent to the shorter one; what stands alone is
    /// a tenth as likely, what was begun is likelier by a square root.
    void modelsAreWrittenOut()
    {
        const QList<CountedSentence> sentences{
            {{u"kelo"_s}, 50}, {{u"hey"_s, u"kelo"_s}, 25}, {{u"kelo"_s, u"stop"_s}, 4}};
        QCOMPARE(QString::fromUtf8(arpaModel(sentences, 0.1, 0.5)), uR"(\data\
ngram 1=5
ngram 2=6
ngram 3=5

\1-grams:
-99.000000	<s>	-0.146924
-0.374215	</s>	0.000000
-1.873902	hey	-0.062612
-1.374215	kelo	-1.040759
-2.669782	stop	-0.062612

\2-grams:
-0.400359	<s> hey	0.000000
-0.139789	<s> kelo	0.165233
-0.150515	hey kelo	0.818446
-0.017152	kelo </s>	0.000000
-0.798299	kelo stop	0.000000
-0.150515	stop </s>	0.000000

\3-grams:
-0.150515	<s> hey kelo
-0.025576	<s> kelo </s>
-0.715682	<s> kelo stop
-0.150515	hey kelo </s>
-0.150515	kelo stop </s>

\end\
)"_s);
        QVERIFY(arpaModel({}, 1).contains("\\end\\"));
    }

    void aNameIsDoubtedAmongOtherTalk_data()
    {
        QTest::addColumn<QString>("words"); // "-" is a pause, "!" is behind what was to be expected
        QTest::addColumn<bool>("ledUpTo");
        QTest::addColumn<bool>("lone"); // as far as it was heard
        QTest::addColumn<int>("others"); // words around it: as much is asked of it
        QTest::newRow("alone") << u"- kelo -"_s << true << false << 0;
        QTest::newRow("first of all") << u"kelo stop!"_s << true << false << 1;
        QTest::newRow("first of something else") << u"kelo fifty"_s << true << false << 1;
        QTest::newRow("after a call") << u"- hey! kelo! what's!"_s << true << false << 2;
        QTest::newRow("after a pause") << u"talk - kelo -"_s << true << false << 1;
        QTest::newRow("at the end") << u"over kelo -"_s << false << false << 1;
        QTest::newRow("asked for something") << u"over kelo stop!"_s << false << false << 2;
        QTest::newRow("not gone on yet") << u"over kelo"_s << false << true << 1;
        QTest::newRow("in the middle") << u"we kelo asleep"_s << false << true << 2;
    }

    void aNameIsDoubtedAmongOtherTalk()
    {
        QFETCH(QString, words);
        std::vector<AccountedWord> account;
        for (QString word : words.split(u' ')) {
            const double likelihood = word.endsWith(u'!') ? 0.5 : 0.001;
            account.push_back({word.remove(u'!').remove(u'-'), 0, 0, likelihood});
        }
        const auto name = std::find_if(account.begin(), account.end(),
            [](const AccountedWord &word) { return word.token == u"kelo"_s; });
        const auto place = static_cast<std::size_t>(name - account.begin());
        QTEST(isLone(account, place), "lone");
        QTEST(isLedUpTo(account, place), "ledUpTo");
        QFETCH(int, others);
        const double ofOne = advantageWanted({{u"talk"_s, 0, 0, 0}}, u"kelo"_s);
        QVERIFY(ofOne > 0);
        QCOMPARE(advantageWanted(account, u"kelo"_s), others * ofOne);
    }

    void namesWaitUntilTheyStand()
    {
        PartialStabiliser steady(u"kelo"_s);
        QCOMPARE(steady.update({u"the"_s}, 0.1), QStringList());
        QCOMPARE(steady.update({u"the"_s, u"kelo"_s}, 0.2), QStringList{u"the"_s});
        QCOMPARE(steady.update({u"the"_s, u"kelo"_s, u"play"_s}, 0.4), QStringList{u"the"_s});
        QCOMPARE(steady.update({u"the"_s, u"kelo"_s, u"play"_s}, 0.5),
            (QStringList{u"the"_s, u"kelo"_s, u"play"_s}));

        PartialStabiliser unsteady(u"kelo"_s);
        for (double now = 0.1; now < 3; now += 0.2) {
            QVERIFY(!unsteady.update({u"kelo"_s}, now).contains(u"kelo"_s));
            QVERIFY(!unsteady.update({u"hello"_s}, now + 0.1).contains(u"kelo"_s));
        }
    }

    void shownWordsStayUntilContradicted()
    {
        PartialStabiliser steady(u"kelo"_s);
        const QStringList playIt{u"play"_s, u"it"_s};
        steady.update(playIt, 0.1);
        QCOMPARE(steady.update(playIt, 0.2), playIt);
        QCOMPARE(steady.update({u"played"_s}, 0.3), playIt); // a moment's doubt
        QCOMPARE(steady.update({u"play"_s}, 0.4), playIt);
        QCOMPARE(steady.update(playIt, 0.5), playIt);
        QCOMPARE(steady.update({u"played"_s, u"a"_s}, 0.6), playIt);
        QCOMPARE(steady.update({u"played"_s, u"a"_s}, 0.8), playIt);
        QCOMPARE(steady.update({u"played"_s, u"a"_s}, 0.9), (QStringList{u"played"_s, u"a"_s}));
        QCOMPARE(steady.update({}, 1.0), (QStringList{u"played"_s, u"a"_s}));
        QCOMPARE(steady.update({}, 1.3), QStringList());
    }

    void findsNamesWrittenCorrectly_data()
    {
        QTest::addColumn<QString>("words");
        QTest::addColumn<bool>("found");
        QTest::newRow("case and punctuation") << u"so, KELO 2. stop"_s << true;
        QTest::newRow("another name") << u"Kelo stop"_s << false;
        QTest::newRow("inside a word") << u"Kelo 2nd"_s << false;
        QTest::newRow("nothing") << QString() << false;
    }

    void findsNamesWrittenCorrectly()
    {
        QFETCH(QString, words);
        QTEST(namesIt(words, u"Kelo 2"_s), "found");
    }
};

QTEST_GUILESS_MAIN(WordsTest)
#include "words_test.moc"
