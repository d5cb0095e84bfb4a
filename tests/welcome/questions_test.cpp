#include "support/link_fixture.h"
#include "support/table.h"
#include "welcome/welcome_questions.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::test;

namespace {

/// Keys as they come one after the other: L, R, U, D for the arrows, N for Return, E for Escape.
void press(Link &link, const QByteArray &keys)
{
    const QHash<char, int> codes{{'L', Qt::Key_Left}, {'R', Qt::Key_Right}, {'U', Qt::Key_Up},
        {'D', Qt::Key_Down}, {'N', Qt::Key_Return}, {'E', Qt::Key_Escape}};
    for (const char key : keys)
        link.welcomeKey.get()(codes.value(key), {});
}

} // namespace

class QuestionsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        link_ = std::make_unique<LinkFixture>();
        questions_ = std::make_unique<WelcomeQuestions>(link(), link_->ears);
    }

    void cleanup()
    {
        link().stop();
        questions_.reset();
        link_.reset();
    }

    void takesAnOwnNameOfThreeToTwelveLetters()
    {
        const auto chosen = [](const QString &typed) {
            Answers answers;
            answers.chooseName(4);
            answers.custom = typed;
            return answers.chosen();
        };
        const QString listed = u"Luna"_s;
        checkRows<QString, QString>(chosen,
            {{"letters only", u"  aPOLLO-9 "_s, u"Apollo"_s}, {"three", u"max"_s, u"Max"_s},
                {"twelve", u"ABCDEFGHIJKL"_s, u"Abcdefghijkl"_s},
                {"thirteen", u"abcdefghijklm"_s, listed},
                {"accents typed apart", u"e\u0301lodie"_s, u"Élodie"_s},
                {"an accent is no letter of its own", u"e\u0301l"_s, listed},
                {"vowel signs stay", u"मीरा देवी"_s, u"मीरादेवी"_s}, {"emoji", u"🎹🎹🎹🎹"_s, listed},
                {"half a character", QString(QChar(0xd801)) + u"bob"_s, u"Bob"_s}});
        Answers answers{.custom = u"Max"_s};
        for (const int index : {0, -1, 9999}) {
            answers.chooseName(index);
            QCOMPARE(answers.chosen(), u"Kelo"_s);
        }
    }

    void keepsDaysWithinTheMonth()
    {
        Answers answers;
        const auto day = [&answers](std::pair<int, int> chosen) {
            answers.chooseMonth(chosen.first);
            answers.chooseDay(chosen.second);
            return answers.day;
        };
        checkRows<std::pair<int, int>, int>(day,
            {{"no month", {0, 5}, 0}, {"no day", {1, 0}, 1}, {"January", {1, 31}, 31},
                {"April", {4, 31}, 30}, {"February", {2, 30}, 29}, {"no such month", {13, 3}, 3}});
        QCOMPARE(answers.month, 2);
        QCOMPARE(day({0, 1}), 0);
        QCOMPARE(day({12, 31}), 31);
    }

    void sendsAllAnswersInOneLine()
    {
        checkRows<Answers, QString>([](const Answers &answers) { return answers.setupLine(); },
            {{"nothing", {}, u"~setup |Kelo||C||false||false\n"_s},
                {"everything",
                    {.name = u"Ann"_s,
                        .wake = 2,
                        .city = u"Porto"_s,
                        .month = 3,
                        .day = 7,
                        .fahrenheit = true,
                        .reader = true,
                        .plays = true,
                        .natural = true},
                    u"~setup Ann|Harmony|Porto|F|uses a screen reader, so never rely on anything "
                    "visual; plays piano or makes music|true|03-07|true\n"_s},
                {"plays only", {.plays = true},
                    u"~setup |Kelo||C|plays piano or makes music|true||false\n"_s},
                {"bars and breaks",
                    {.name = u" Ann|Lee "_s, .custom = u"b|o\nb"_s, .city = u"A\r\nB\u2028C\vD|"_s},
                    u"~setup Ann Lee|Bob|A  B C D|C||false||false\n"_s},
                {"any script", {.name = u"نورة 🎹 e\u0301"_s},
                    u"~setup نورة 🎹 e\u0301|Kelo||C||false||false\n"_s}});
    }

    void tellsTheEngineThenTheDisplayThenTheEars()
    {
        begin();
        questions_->setAnswers(
            {.name = u" Ann|Lee "_s, .custom = u"bob"_s, .contrast = true, .listen = true});
        press(link(), "NNNNNNN");
        QVERIFY(!link().welcome);
        QCOMPARE(link().assistant.get(), u"Bob"_s);
        QCOMPARE(link().user.get(), u"Ann Lee"_s);
        QVERIFY(link().contrast && !link().large);
        QCOMPARE(link_->setting(u"contrast"_s), true);
        QCOMPARE(link_->ears.calls, QStringList{u"begin"_s});
        QTRY_VERIFY(link_->engine.input().endsWith("\n~setup Ann Lee|Bob||C||false||false\n"));

        link_->say({"welcome"});
        questions_->setAnswers({.listen = true});
        press(link(), "NNNNNNN");
        QVERIFY2(link_->ears.calls.size() == 1, "they were on already");
    }

    void speaksOrAnnouncesEachQuestion()
    {
        const QSignalSpy announced(questions_.get(), &WelcomeQuestions::questionAnnounced);
        begin();
        for (int i = 0; i < 6; ++i)
            questions_->next();
        QTRY_COMPARE(link_->engine.input().count("~speak "), 7);
        QVERIFY(link_->engine.input().endsWith(
            "~speak One last thing: may I listen? To hear you say Kelo, I need the microphone. The "
            "listening happens on this Mac, and I only act on what follows my name.\n"));
        QCOMPARE(announced.size(), 0);
        questions_->setAnswers({.reader = true});
        questions_->back();
        QCOMPARE(announced.size(), 1);
        QCOMPARE(announced[0][0].toString(),
            u"How can I fit you best? Switch on anything that helps. All of it can be changed "
            u"later, "
            "just by asking. Tab moves between these. Space switches one on or off."_s);
        link().send(u"~end\n"_s);
        QTRY_VERIFY(link_->engine.input().endsWith("~end\n"));
        QCOMPARE(link_->engine.input().count("~speak "), 7);
    }

    void answersToKeys_data()
    {
        const Table<int, QByteArray, Answers, int, QString> row{
            "step", "keys", "answers", "then", "heard"};
        row("return goes on", 0, "NN", {}, 2, {});
        row("escape goes back", 2, "E", {}, 1, {});
        row("but not before the first", 0, "E", {}, 0, {});
        row("right chooses a name", 2, "RR", {.wake = 2}, 2, u"Harmony"_s);
        row("left goes round", 2, "L", {.wake = 6}, 2, u"Aria"_s);
        row("right goes round", 2, "RRRRRRR", {.wake = 0}, 2, u"Kelo"_s);
        row("down switches the unit", 3, "D", {.fahrenheit = true}, 3, u"Fahrenheit"_s);
        row("up switches it back", 3, "DU", {}, 3, u"Celsius"_s);
        row("right chooses a month", 4, "RRR", {.month = 3, .day = 1}, 4, u"March 1"_s);
        row("up a day", 4, "RRRUUUUUU", {.month = 3, .day = 7}, 4, u"March 7"_s);
        row("down a day, to the last", 4, "RRD", {.month = 2, .day = 29}, 4, u"February 29"_s);
        row("to no birthday again", 4, "RL", {}, 4, u"No birthday chosen"_s);
        row("left to December", 4, "L", {.month = 12, .day = 1}, 4, u"December 1"_s);
        row("no day without a month", 4, "UUD", {}, 4, u"No birthday chosen"_s);
        row("right answers yes", 6, "R", {.listen = true}, 6, u"Yes, listen"_s);
        row("left answers no again", 6, "RL", {}, 6, u"Not now"_s);
        row("down wants the natural voice", 6, "D", {.natural = true}, 6,
            u"The natural voice: on"_s);
        row("nothing to choose here", 1, "LRUD", {}, 1, {});
    }

    void answersToKeys()
    {
        QFETCH(const int, step);
        QFETCH(const QByteArray, keys);
        link().setWelcomeStepForSnapshot(step);
        begin();
        press(link(), keys);
        QFETCH(const Answers, answers);
        QVERIFY(questions_->answers() == answers);
        QTEST(questions_->step(), "then");
        QFETCH(const QString, heard);
        if (!heard.isEmpty())
            QTRY_VERIFY(link_->engine.input().endsWith("\n~speak " + heard.toUtf8() + '\n'));
    }

    void leavesTheOtherKeysToTheControls()
    {
        link().setWelcomeStepForSnapshot(2);
        begin();
        for (const int key : {Qt::Key_Space, Qt::Key_Tab, Qt::Key_Backtab, Qt::Key_F, Qt::Key_Up})
            QVERIFY(!link().welcomeKey.get()(key, {}));
    }

    void keepsTheAnswersUntilTheyAreSent()
    {
        link().setAccess(u"large"_s, true);
        begin();
        QVERIFY(questions_->answers() == Answers{.large = true});
        press(link(), "NNR");
        const Answers soFar = questions_->answers();
        link_->say({"welcome"});
        QCOMPARE(questions_->step(), 2);
        QVERIFY(questions_->answers() == soFar);

        press(link(), "NNNNN");
        link_->say({"welcome"});
        QCOMPARE(questions_->step(), 0);
        QVERIFY(questions_->answers() == Answers{.large = true});
    }

private:
    void begin()
    {
        link_->start("serve");
        link_->say({"welcome"});
    }

    Link &link() { return link_->link(); }

    std::unique_ptr<LinkFixture> link_;
    std::unique_ptr<WelcomeQuestions> questions_;
};

QTEST_GUILESS_MAIN(QuestionsTest)
#include "questions_test.moc"
