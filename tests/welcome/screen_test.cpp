#include "../hud/console.h"
#include "hud/focus_keeper.h"
#include "support/table.h"
#include "welcome/welcome_questions.h"

#include <QQmlExtensionPlugin>
#include <QSignalSpy>
#include <QTest>

Q_IMPORT_QML_PLUGIN(Kelo_WelcomePlugin)
Q_IMPORT_QML_PLUGIN(Kelo_VisualPlugin)

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::test;
using Kind = FocusKeeper::Kind;

/// The questions as they show: where the focus goes, what a screen reader gets, how it looks.
class ScreenTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        console_ = std::make_unique<Console>();
        questions_ = std::make_unique<WelcomeQuestions>(console_->link.link(), console_->link.ears);
        console_->import = "import Kelo.Welcome";
        console_->welcomeScreen =
            "WelcomeScreen { questions: room.questions\n"
            "core: Rectangle { color: 'transparent'; border.color: '#204020' } }";
        console_->questions = questions_.get();
    }

    void cleanup()
    {
        console_->view.setSource({});
        questions_.reset();
        console_.reset();
    }

    void asks_data()
    {
        const Table<Answers, QString, Kind> row{"answers", "focus", "kind"};
        row("0", {}, u"CONTINUE"_s, Kind::Button);
        row("1", {}, u"Your name"_s, Kind::EmptyField);
        row("2", {.wake = 4, .custom = u"bob"_s}, u"Your own name for the assistant, one word"_s,
            Kind::FilledField);
        row("3", {.city = u"Porto"_s, .fahrenheit = true}, u"Your town or city"_s,
            Kind::FilledField);
        row("4", {.month = 2, .day = 3}, u""_s, Kind::Nothing);
        row("5", {.contrast = true, .plays = true}, u""_s, Kind::Nothing);
        row("6", {.listen = true}, u""_s, Kind::Nothing);
    }

    void asks()
    {
        const int step = QByteArray(QTest::currentDataTag()).toInt();
        QFETCH(const Answers, answers);
        const bool narrow = step % 2 == 0 && step > 0;
        begin(step, narrow ? QSize(700, 780) : QSize(780, 780));
        questions_->setAnswers(answers);
        QTEST(console_->focused(), "focus");
        QTEST(FocusKeeper::of(console_->view)->kind(), "kind");
        QCOMPARE(console_->readsUnlike(u"question-%1"_s.arg(step)), u""_s);
        QCOMPARE(console_->follow(u"leave"_s), u""_s);
        QCOMPARE(console_->unlike(u"questions"_s, step), u""_s);
    }

    void answersToTheMouse()
    {
        begin(5, {780, 780});
        QStringList touched = console_->touched({u"High contrast"_s, u"CONTINUE"_s});
        questions_->next();
        touched += console_->touched({u"Not now"_s});
        QCOMPARE(Console::standsUnlike(touched, u"touched-questions"_s), u""_s);
    }

    void choicesTakeTheFocusAlong_data()
    {
        const Table<int, QString, int, QString, int> row{"step", "at", "key", "then", "announced"};
        row("a name", 2, u"Kelo"_s, Qt::Key_Right, u"Apollo"_s, 0);
        row("a name from the field", 2, u"Your own name"_s, Qt::Key_Left, u"Your own name"_s, 1);
        row("a month", 4, u"January"_s, Qt::Key_Left, u"December"_s, 0);
        row("a unit from the field", 3, u"Your town"_s, Qt::Key_Up, u"Your town"_s, 1);
        row("an answer", 6, u"Not now"_s, Qt::Key_Left, u"Yes, listen"_s, 0);
    }

    void choicesTakeTheFocusAlong()
    {
        QFETCH(const int, step);
        QFETCH(const QString, at);
        QFETCH(const int, key);
        QFETCH(const QString, then);
        QFETCH(const int, announced);
        begin(step, {900, 600});
        QCOMPARE(console_->follow(u"> "_s + at), u""_s);
        const QSignalSpy spy(questions_.get(), &WelcomeQuestions::choiceAnnounced);
        QVERIFY(questions_->key(key));
        QVERIFY2(console_->focused().startsWith(then), qPrintable(console_->focused()));
        QCOMPARE(spy.size(), announced);
    }

    void answersToPresses()
    {
        begin(1, {900, 600});
        type("ann");
        QCOMPARE(console_->follow(u"press CONTINUE\n= Your own name\npress Harmony"_s), u""_s);
        type("max");
        QCOMPARE(console_->follow(uR"(press Skip
            = Your town
            press Fahrenheit
            press Back to
            = Your own name
            press CONTINUE
            press CONTINUE
            press March
            press 7
            press CONTINUE
            press I use a screen reader
            > High contrast
            Space
            press CONTINUE
            press Yes, listen
            press Give me my natural voice
            press YES, LISTEN FOR MAX)"_s),
            u""_s);
        const Answers expected{.name = u"ann"_s,
            .wake = 2,
            .custom = u"max"_s,
            .month = 3,
            .day = 7,
            .fahrenheit = true,
            .contrast = true,
            .reader = true,
            .listen = true,
            .natural = true};
        QVERIFY(questions_->answers() == expected);
        QVERIFY(!console_->link->welcome);
        QCOMPARE(console_->link.ears.calls, QStringList{u"begin"_s});
    }

    void fitsSmallWindows_data()
    {
        const Table<QSize> row{"size"};
        row("900 at 2.5", {360, 240});
        row("1240 at 2.5", {496, 336});
        row("900 at 1.5", {600, 400});
    }

    void fitsSmallWindows()
    {
        QFETCH(const QSize, size);
        begin(0, size);
        for (int step = 0; step < questionCount; ++step) {
            QTest::qWait(20);
            for (const QQuickItem *item : console_->visibleItems()) {
                if (!item->inherits("QQuickText"))
                    continue;
                const QRectF all = item->mapRectToScene(item->boundingRect());
                const QByteArray name = item->property("text").toByteArray();
                QVERIFY2(all.left() >= 0 && all.right() <= size.width(), name);
                QVERIFY2(
                    !item->property("truncated").toBool() || item->property("elide").toInt(), name);
            }
            QTest::keyClick(&console_->view, Qt::Key_Backtab);
            const QQuickItem *now = console_->view.activeFocusItem();
            QCOMPARE(Console::shown(now).size(), now->size());
            questions_->next();
        }
    }

private:
    void type(const char *letters)
    {
        for (; *letters; ++letters)
            QTest::keyClick(&console_->view, *letters);
    }

    void begin(int step, QSize size)
    {
        console_->link->setWelcomeStepForSnapshot(step);
        console_->link.say({"mode idle", "welcome"});
        console_->show(size);
        QTest::qWait(400); // the console behind it fades out
    }

    std::unique_ptr<Console> console_;
    std::unique_ptr<WelcomeQuestions> questions_;
};

QTEST_MAIN(ScreenTest)
#include "screen_test.moc"
