#include "support/table.h"
#include "voice/language/language_model.h"
#include "voice/language/pronunciation.h"
#include "voice/language/request_graph.h"
#include "voice/name/accents.h"
#include "voice/name/name_doubt.h"
#include "voice/name/taught_name.h"
#include "voice/name/wake_training.h"
#include "voice/recognition/partial_stabiliser.h"
#include "voice/wake_lab/wake_lab_report.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::test;

/// What words sound like, which are likely, and which are shown.
class WordsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void mapsSoundsToPhones()
    {
        checkRows<QString, QString>([](const QString &ipa) { return phonesOfIpa(ipa).join(u' '); },
            {{"stress and length", u"kˈiːloʊ"_s, u"K IY L OW"_s},
                {"British", u"ɐpˈɒləʊ"_s, u"AH P AA L OW"_s},
                {"two letters, one sound", u"dʒˈɑːz tʃˈeə"_s, u"JH AA Z CH EH"_s},
                {"r after o", u"fˈoːɹ"_s, u"F AO R"_s},
                {"another language's mark", u"(hi)sˈiːtaː(en-us)"_s, u"S IY T AA"_s},
                {"foreign sounds", u"ʁøɲyχ"_s, u"R ER N Y UW K"_s},
                {"no sounds", u"ˈˌ.‿ 12"_s, QString()}});
        QCOMPARE(phonesOfXSampa(u"k e l oU"_s).join(u' '), u"K EY L OW"_s);
        QCOMPARE(phonesOfXSampa(u"\"dZ{z r\\Q"_s).join(u' '), u"JH AE Z R AA"_s);
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
        const auto accents = [](const QString &phones) {
            QStringList ways;
            for (const Phones &way : accentsOf({phones.split(u' ')}, 100))
                ways.append(way.join(u' '));
            return ways.join(u", "_s);
        };
        checkRows<QString, QString>(accents,
            {{"Harmony", u"HH AA R M AH N IY"_s,
                 u"HH AA R M AH N IY, HH AO R M AH N IY, HH AE R M AH N IY, HH AA M AH N IY, HH AA R M AH N IH, HH AA R M AH N EY, HH AA R M IH N IY, AA R M AH N IY"_s},
                {"Mirabuto", u"M ER AA B Y UW T OW"_s,
                    u"M ER AA B Y UW T OW, M ER AO B Y UW T OW, M ER AE B Y UW T OW, M ER AA B Y UW D OW, M ER AA B Y UW T AO, M ER AA B Y UW T UH, M ER AA B UW T OW"_s},
                {"Merrabo", u"M ER R AA B OW"_s,
                    u"M ER R AA B OW, M ER R AO B OW, M ER R AE B OW, M IH R AA B OW, M AH R AA B OW, M ER AA B OW, M ER R AA B AO, M ER R AA B UH"_s},
                {"Claire", u"K L EH R"_s, u"K L EH R, K L AE R, K L ER R, K L IH R, K L EH"_s},
                {"Aurelia", u"AO R EY L IY AH"_s,
                    u"AO R EY L IY AH, AA R EY L IY AH, AO R EH L IY AH, AO R EY L IY AA"_s},
                {"a bigger", u"AH B IH G ER"_s,
                    u"AH B IH G ER, AH B IH G AH, AE B IH G ER, AH B AH G ER"_s},
                {"Cara", u"K AE R AH"_s, u"K AE R AH, K EH R AH, K AE R AA"_s},
                {"one sound", u"M"_s, u"M"_s}});
        QCOMPARE(accentsOf({{u"K"_s, u"AA"_s}}, 2).size(), 2);
        const QList<Phones> both{{u"K"_s, u"EH"_s, u"L"_s, u"OW"_s}, {u"K"_s, u"EY"_s}};
        QCOMPARE(accentsOf(both, 1), both); // what is known is never left out
    }

    void namesAreOneWord()
    {
        // The name, then what was written.
        const auto tokens = [](const QStringList &row) {
            return tokensOf(row[1], row[0]).join(u' ');
        };
        checkRows<QStringList, QString>(tokens,
            {{"plain", {u"Kelo"_s, u"Hey Kelo, what's the weather?"_s},
                 u"hey kelo what's the weather"_s},
                {"with a number", {u"Kelo 2"_s, u"okay Kelo 2 stop"_s}, u"okay kelo_2 stop"_s},
                {"the library's own marks", {u"</s> (2)"_s, u"Hey </s> (2) play"_s},
                    u"hey s___2 play"_s},
                {"not inside a word", {u"Kelo"_s, u"Kelos kelo"_s}, u"kelos kelo"_s},
                {"other letters", {u"Zoë"_s, u"hey ZOË"_s}, u"hey zoë"_s},
                {"no letters", {u"!!"_s, u"Hey !! stop"_s}, u"hey stop"_s}});
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

    void aNameIsTaughtWithTheWordsAroundIt()
    {
        const QTemporaryDir folder;
        const QString dictionary = folder.filePath(u"dict"_s);
        writeFile(dictionary, "hey HH EY\nstop S T AA P\nstop(2) S T AO P\n");
        const auto files = SpeechModelFiles::of(folder.path(), u"Kelo"_s);
        WakeTraining training;
        training.name = u"Kelo"_s;
        training.phrases = {{u"hey Kelo"_s, 3}, {u"Kelo stop zzyx"_s, 2}};
        training.pronunciation = CustomPronunciation{
            u"Kelo"_s, {u"k e l oU"_s, u"m i r A b u t oU"_s, u"O r eI l i @ k l E r"_s}};
        const TaughtModel model = prepareTaughtModel(training, files, dictionary);
        const auto words = readTaughtModel(model);
        QVERIFY(words);
        QCOMPARE(words->languageModel,
            arpaModel({{{u"hey"_s, u"kelo"_s}, 3}, {{u"kelo"_s, u"stop"_s, u"zzyx"_s}, 2}}, 0.1));
        QStringList taught; // the decoder knows the others
        for (const VocabularyEntry &entry : words->vocabulary)
            taught << entry.token;
        QCOMPARE(taught.join(u' '), u"kelo zzyx"_s);
        const QList<Phones> ways = words->vocabulary.first().pronunciations;
        QVERIFY(ways.contains(Phones({u"K"_s, u"EY"_s, u"L"_s, u"OW"_s})));
        QVERIFY(ways.contains(Phones({u"K"_s, u"EH"_s, u"L"_s, u"OW"_s}))); // an accent
        QCOMPARE(ways.size(), 20);

        const auto reason = [&](const WakeTraining &each, const QString &path, bool stopped) {
            std::stop_source stop;
            if (stopped)
                stop.request_stop();
            try {
                (void)prepareTaughtModel(each, files, path, stop.get_token());
            } catch (const std::runtime_error &error) {
                return QString::fromUtf8(error.what());
            }
            return QString();
        };
        QCOMPARE(reason(training, dictionary, false), QString());
        QCOMPARE(reason(training, folder.filePath(u"none"_s), false),
            u"the recogniser's dictionary cannot be read"_s);
        QVERIFY(!reason(training, dictionary, true).isEmpty());
        training.name = u"?!"_s;
        QCOMPARE(reason(training, dictionary, false), u"it has no letters"_s);
        for (const QString &file : {model.languageModel, model.vocabulary}) {
            const QByteArray whole = readFile(file);
            writeFile(file, whole + ' ');
            QVERIFY(!readTaughtModel(model));
            writeFile(file, whole);
        }
        QVERIFY(readTaughtModel(model));
    }

    void aNameIsDoubtedAmongOtherTalk()
    {
        // "-" is a pause, "!" is behind what was to be expected. What is asked of the name grows
        // with the words around it.
        const auto doubt = [](const QString &words) {
            std::vector<AccountedWord> account;
            std::size_t place = 0;
            for (QString word : words.split(u' ')) {
                const double likelihood = word.endsWith(u'!') ? 0.5 : 0.001;
                account.push_back({word.remove(u'!').remove(u'-'), 0, 0, likelihood});
                place = word == u"kelo"_s ? account.size() - 1 : place;
            }
            const double ofOne = advantageWanted({{u"talk"_s, 0, 0, 0}}, u"kelo"_s);
            return u"%1%2%3"_s
                .arg(isLedUpTo(account, place) ? u"led up to, "_s : QString(),
                    isLone(account, place) ? u"lone, "_s : QString())
                .arg(advantageWanted(account, u"kelo"_s) / ofOne);
        };
        checkRows<QString, QString>(doubt,
            {{"alone", u"- kelo -"_s, u"led up to, 0"_s},
                {"first of all", u"kelo stop!"_s, u"led up to, 1"_s},
                {"first of something else", u"kelo fifty"_s, u"led up to, 1"_s},
                {"after a call", u"- hey! kelo! what's!"_s, u"led up to, 2"_s},
                {"after a pause", u"talk - kelo -"_s, u"led up to, 1"_s},
                {"at the end", u"over kelo -"_s, u"1"_s},
                {"asked for something", u"over kelo stop!"_s, u"2"_s},
                {"not gone on yet", u"over kelo"_s, u"lone, 1"_s},
                {"in the middle", u"we kelo asleep"_s, u"lone, 2"_s}});
        QVERIFY(advantageWanted({{u"talk"_s, 0, 0, 0}}, u"kelo"_s) > 0);
    }

    /// What is shown of a belief at each moment.
    void callsAreNameAndRequest()
    {
        const auto sentence = [](const char *words) {
            return QString::fromLatin1(words).split(u' ');
        };
        const WordGraph graph = graphOfCalls(u"kelo"_s,
            {{{sentence("stop"), sentence("song menu"), sentence("song three"),
                  sentence("in three four"), sentence("the b flat major scale"),
                  withTitledNotes(u"Minuet in G"_s, sentence("minuet in g")),
                  sentence("play middle c"),
                  withTitledNotes(u"drone on Dd d"_s, sentence("drone on d")),
                  sentence("read the left hand")},
                 0},
                {{sentence("who knows"), sentence("stop"), sentence("two of them")}, -3, true}});
        // The likeliest way to say it; 1 where there is none.
        const auto weight = [&](const QString &said) {
            QMap<int, double> reached{{WordGraph::start, 0}};
            for (const QString &word : said.split(u' ')) {
                QMap<int, double> next;
                for (const WordGraph::Arc &arc : graph.arcs) {
                    if (arc.word != word || !reached.contains(arc.from))
                        continue;
                    const double sum = reached[arc.from] + arc.weight;
                    next[arc.to] = std::max(sum, next.value(arc.to, sum));
                }
                reached = next;
            }
            return reached.value(WordGraph::end, 1);
        };
        checkRows<QString, double>(weight,
            {{"a request", u"kelo stop"_s, 0}, {"of two words", u"kelo song menu"_s, 0},
                {"another number", u"kelo song two hundred and forty seven"_s, 0},
                {"ten", u"kelo song twenty"_s, 0}, {"hundred", u"kelo song one hundred"_s, 0},
                {"no number", u"kelo song twenty eleven"_s, 1},
                {"a metre", u"kelo in three four"_s, 0},
                {"another metre", u"kelo in three five"_s, 1},
                {"another scale", u"kelo the c minor scale"_s, 0},
                {"with a sharp", u"kelo the f sharp minor scale"_s, 0},
                {"no scale", u"kelo the c scale"_s, 1}, {"a title", u"kelo minuet in g"_s, 0},
                {"another title", u"kelo minuet in d"_s, 1},
                {"middle c", u"kelo play middle c"_s, 0}, {"no middle", u"kelo play middle d"_s, 1},
                {"another note", u"kelo drone on e flat"_s, 0},
                {"the other hand", u"kelo read the right hand"_s, 0},
                {"no hand", u"kelo read the flat hand"_s, 1},
                {"politely", u"kelo please stop"_s, -8},
                {"very politely", u"kelo could you stop please"_s, -16},
                {"talk", u"kelo who knows"_s, -3}, {"two of them", u"kelo two of them"_s, -3},
                {"others", u"kelo six of them"_s, 1}, {"the name", u"kelo"_s, 1},
                {"no name", u"stop"_s, 1}, {"half of it", u"kelo song"_s, 1}});
    }

    void shownWordsStandAndStay_data()
    {
        const Table<QStringList> row{"moments"}; // when: belief > what is shown
        row("names wait longer",
            {u"0.1: the > "_s, u"0.2: the kelo > the"_s, u"0.4: the kelo play > the"_s,
                u"0.5: the kelo play > the kelo play"_s});
        QStringList unsteady;
        for (int i = 1; i < 30; ++i)
            unsteady << (i % 2 ? u"%1: kelo > "_s : u"%1: hello > "_s).arg(i / 10.0);
        row("unsteady ones are never shown", unsteady);
        row("words stay until they are contradicted",
            {u"0.1: play it > "_s, u"0.2: play it > play it"_s,
                u"0.3: played > play it"_s, // a moment's doubt
                u"0.4: play > play it"_s, u"0.5: play it > play it"_s, u"0.6: played a > play it"_s,
                u"0.8: played a > play it"_s, u"0.9: played a > played a"_s, u"1.0:  > played a"_s,
                u"1.3:  > "_s});
    }

    void shownWordsStandAndStay()
    {
        QFETCH(QStringList, moments);
        PartialStabiliser shown(u"kelo"_s);
        for (const QString &moment : std::as_const(moments)) {
            const QString belief = moment.section(u": "_s, 1).section(u" > "_s, 0, 0);
            QCOMPARE(shown
                         .update(belief.split(u' ', Qt::SkipEmptyParts),
                             moment.section(u':', 0, 0).toDouble())
                         .join(u' '),
                moment.section(u" > "_s, 1));
        }
    }

    void findsNamesWrittenCorrectly()
    {
        checkRows<QString, bool>([](const QString &words) { return namesIt(words, u"Kelo 2"_s); },
            {{"case and punctuation", u"so, KELO 2. stop"_s, true},
                {"another name", u"Kelo stop"_s, false}, {"inside a word", u"Kelo 2nd"_s, false},
                {"nothing", QString(), false}});
    }
};

QTEST_GUILESS_MAIN(WordsTest)
#include "words_test.moc"
