#include "voice/name/accents.h"
#include "voice/name/name_doubt.h"
#include "voice/name/pronunciation.h"
#include "voice/name/taught_name.h"
#include "voice/recognition/language_model.h"
#include "voice/recognition/partial_stabiliser.h"
#include "voice/wake_lab/wake_lab_report.h"

#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <cmath>

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
        const QSet<QString> known = {u"AA"_s, u"AE"_s, u"AH"_s, u"AO"_s, u"AW"_s, u"AY"_s, u"B"_s,
            u"CH"_s, u"D"_s, u"DH"_s, u"EH"_s, u"ER"_s, u"EY"_s, u"F"_s, u"G"_s, u"HH"_s, u"IH"_s,
            u"IY"_s, u"JH"_s, u"K"_s, u"L"_s, u"M"_s, u"N"_s, u"NG"_s, u"OW"_s, u"OY"_s, u"P"_s,
            u"R"_s, u"S"_s, u"SH"_s, u"T"_s, u"TH"_s, u"UH"_s, u"UW"_s, u"V"_s, u"W"_s, u"Y"_s,
            u"Z"_s, u"ZH"_s};
        const QStringList names =
            u"Kelo Apollo Harmony Phoenix Luna Melody Aria Zoë Jürgen François Søren Björn Łukasz "
            u"Çelik "
            "Iñigo Siobhán Nguyễn Владимир Ольга Юлия Дмитрий Екатерина 李娜 王伟 張偉 さくら "
            "ひろし "
            "アキラ محمد فاطمة عائشة Ελένη Γιώργος Νίκος דוד שרה רחל अनीता राहुल प्रिया 김민수 "
            "박지영 "
            "이서연 "
            "Saoirse Niamh Caoimhe Tadhg Eoin Ruairí Llewelyn Angharad Myfanwy Rhys Ioan Xavier "
            "Joaquín Jorge Guadalupe Ximena Nuño Begoña Iker Itziar Aitor Xabier João Conceição "
            "Inês "
            "Tomás Luís Giovanni Chiara Giulia Beatrice Gnocchi Ignazio Jean-Luc Geneviève Étienne "
            "Thérèse Benoît Hélène Aurélie Loïc Maëlle Günther Jörg Käthe Friedrich Jäger Weiß "
            "Wolfgang Sjoerd Joost Gijs Maarten Anneke Liesbeth Willemijn Åsa Göran Malmö Björk "
            "Guðrún Þórdís Sigurður Halldór Øystein Kjell Håkon Ingrid Aino Väinö Yrjö Päivi "
            "Zsófia György László Ágnes Ildikó Grzegorz Małgorzata Krzysztof Zbigniew Wojciech "
            "Jiří Řehoř Tomáš Věra Zdeněk Ľubica Šimon Đorđe Živko Željka Ștefan Ioana Țepeș "
            "Gökhan Şebnem Çağlar Özge Işıl Nazım Oluwaseun Chukwuemeka Adaeze Ngozi Thandiwe "
            "Sipho "
            "Nkosazana Xolani Qhawe Kwame Abena Oyelaran Amara Zainab Yusuf Khadija Svetlana "
            "Zhanna "
            "Aleksandr Xiuying Zhang Qing Yue Hiroshi Keiko Ryō Tsubasa Minh Phương Hương Thảo Đức "
            "Kalani Leilani Mahealani Aroha Ngaio Tāne Whetū Arjun Lakshmi Venkatesh Priyanka "
            "Siddharth Gurpreet Ishaan R2D2 C3PO 7 42nd X Æ ß Ø Q Zzyzx Rrr Psst Hmm Kelo2 O'Brien "
            "McDonald d'Artagnan Tenzin Batbayar Nino Levan Հայկ თამარ ไทย မြန်မာ ខ្មែរ አበበ 🎹 ..."_s
                .split(u' ', Qt::SkipEmptyParts);
        QVERIFY(names.size() >= 200);
        for (const QString &name : names) {
            const auto entry = pronounced({nameToken(name)}, u"/nonexistent"_s).first();
            QVERIFY2(!entry.pronunciations.isEmpty(), qPrintable(name));
            for (const Phones &phones : entry.pronunciations) {
                QVERIFY2(!phones.isEmpty(), qPrintable(name));
                for (const QString &phone : phones)
                    QVERIFY2(known.contains(phone), qPrintable(name + u' ' + phone));
            }
        }
    }

    void accentsKeepTheirSource()
    {
        const QList<Phones> harmony{u"HH AA R M AH N IY"_s.split(u' ')};
        const auto ways = accentsOf(harmony, 8);
        QCOMPARE(ways.first(), harmony.first());
        QCOMPARE(ways.size(), 8);
        QCOMPARE(QSet<Phones>(ways.begin(), ways.end()).size(), 8);
        QVERIFY(ways.contains(u"HH AA M AH N IY"_s.split(u' '))); // no r before a consonant
        QCOMPARE(accentsOf({{u"M"_s}}, 12), QList<Phones>{{u"M"_s}});
        for (const Phones &way : accentsOf({{u"HH"_s, u"AH"_s}}, 12))
            QVERIFY(!way.isEmpty());

        const QList<Phones> kelo{{u"K"_s, u"EH"_s, u"L"_s, u"OW"_s}, {u"K"_s, u"EY"_s}};
        QCOMPARE(accentsOf(kelo, 1), kelo); // what is known is never left out
        QVERIFY(!accentsOf(kelo, 100).contains(u"K IH L AO"_s.split(u' '))); // two sounds at once
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

    void probabilitiesSumToOne()
    {
        const QList<CountedSentence> sentences{{{u"kelo"_s}, 50}, {{u"hey"_s, u"kelo"_s}, 25},
            {{u"kelo"_s, u"stop"_s}, 4}, {{u"hey"_s, u"kelo"_s, u"stop"_s}, 1}};
        const QString arpa = QString::fromUtf8(arpaModel(sentences, 0.01));
        QVERIFY(arpa.contains(u"ngram 1=5\nngram 2=6\nngram 3=6\n"_s));

        // Reads the file as its users do: what is listed, else the shorter history times the
        // weight.
        QHash<QString, double> probability;
        QHash<QString, double> backoff;
        static const QRegularExpression gram(
            u"^(-?[0-9.]+)\t([^\t\n]+)(?:\t(-?[0-9.]+))?$"_s, QRegularExpression::MultilineOption);
        for (auto match = gram.globalMatch(arpa); match.hasNext();) {
            const auto line = match.next();
            probability[line.captured(2)] = std::pow(10, line.captured(1).toDouble());
            backoff[line.captured(2)] = std::pow(10, line.captured(3).toDouble());
        }
        const QStringList words{u"kelo"_s, u"hey"_s, u"stop"_s, u"</s>"_s};
        const auto after = [&](const QString &history, const QString &word) {
            const QString longer = history.isEmpty() ? word : history + u' ' + word;
            return probability.contains(longer) ? probability[longer] : -1;
        };
        double sum = 0;
        for (const QString &word : words)
            sum += after({}, word) * (word == u"</s>"_s ? 1 : 100);
        QVERIFY(std::abs(sum - 1) < 0.001);
        for (const QString &history : {u"<s>"_s, u"kelo"_s, u"hey"_s}) {
            sum = 0;
            for (const QString &word : words) {
                const double lone = after({}, word) * (word == u"</s>"_s ? 1 : 100);
                sum += after(history, word) >= 0 ? after(history, word) : backoff[history] * lone;
            }
            QVERIFY2(std::abs(sum - 1) < 0.001, qPrintable(history));
        }
        QVERIFY(std::abs(after(u"<s> hey"_s, u"kelo"_s) - 0.5) < 0.001); // half of it is lent
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
