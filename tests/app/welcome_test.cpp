#include "app/arguments.h"
#include "app_fixture.h"

#include <QQuickItem>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::test;

/// The first-run questions in the real window, by real key events, down to the engine.
class WelcomeTest : public AppFixture {
    Q_OBJECT

private Q_SLOTS:
    void answersByKeyboardAlone()
    {
        press("N");
        QCOMPARE(focused(), u"Your name"_s);
        press("annN"); // and the assistant's name
        QCOMPARE(focused(), u"Your own name for the assistant, one word"_s);
        press("RRN"); // Harmony, and the town
        QCOMPARE(focused(), u"Your town or city"_s);
        press("portoDN"); // in Fahrenheit; the birthday
        press("RRRUUUUUUN"); // the 7th of March; the needs
        press("TTTS");
        QVERIFY(focused().startsWith(u"I use a screen reader. "_s));
        press("TSN"); // the piano too; the last one
        press("DN");
        QVERIFY(!link().welcome);
        QTRY_VERIFY(link_->engine.input().endsWith(
            "~setup ann|Harmony|porto|F|uses a screen reader, so never rely on anything visual; "
            "plays piano or makes music|true|03-07|true\n"));
        const QByteArray heard = link_->engine.input();
        for (const char *choice : {"Harmony", "Fahrenheit", "March 7", "High contrast: off"})
            QVERIFY2(heard.contains("~speak " + QByteArray(choice) + '\n'), choice);
        QVERIFY2(!heard.contains("~speak One last thing"), "a screen reader says the last one");
        QVERIFY(!voice_->on);
        press("n");
        QTRY_VERIFY(link_->engine.input().endsWith("\nn"));
    }

    void typesIntoTheFieldsAndNowhereElse()
    {
        const QByteArray before = link_->engine.input();
        press("fooqN"); // no field here: no visualiser, no file chooser, nothing to the engine
        QVERIFY(!link().visual);
        press("f|oSB"); // in the field; then back among the buttons
        press("qfT");
        press("E");
        press("NNNNNNN");
        QTRY_VERIFY(link_->engine.input().contains("~setup f o|Kelo|"));
        const QByteArrayList lines = link_->engine.input().split('\n');
        for (const QByteArray &line : lines)
            QVERIFY2(
                line.isEmpty() || line.startsWith("~speak ") || line.startsWith("~setup "), line);
    }

    void goesOnWhereTheWindowWasClosed()
    {
        press("NannN");
        QVERIFY(window()->close());
        delegate_->showWindow();
        QCOMPARE(focused(), u"Your own name for the assistant, one word"_s);
        const auto asked = [this] {
            return link_->engine.input().count("~speak And what will you");
        };
        QTRY_COMPARE(asked(), 2);
        press("NNNNN");
        QTRY_VERIFY(link_->engine.input().contains("~setup ann|Kelo|"));
    }

private:
    void init()
    {
        AppFixture::init();
        link_->engine.play("line @welcome\nserve");
        delegate_->launch({});
        QTRY_VERIFY_WITH_TIMEOUT(link().welcome, 20'000);
        QVERIFY(QTest::qWaitForWindowExposed(window()));
    }

    /// L, R, U, D for the arrows, N for Return, E for Escape, T and B for Tab forth and back, S for
    /// Space; anything else is typed.
    void press(const char *keys)
    {
        const QHash<char, Qt::Key> codes{{'L', Qt::Key_Left}, {'R', Qt::Key_Right},
            {'U', Qt::Key_Up}, {'D', Qt::Key_Down}, {'N', Qt::Key_Return}, {'E', Qt::Key_Escape},
            {'T', Qt::Key_Tab}, {'B', Qt::Key_Backtab}, {'S', Qt::Key_Space}};
        for (; *keys; ++keys) {
            if (codes.contains(*keys))
                QTest::keyClick(window(), codes.value(*keys));
            else
                QTest::keyClick(window(), *keys);
        }
    }

    /// The accessible name of what has the keyboard focus.
    [[nodiscard]] QString focused() const
    {
        const QQuickItem *item = window()->activeFocusItem();
        const QObject *accessible = nullptr;
        for (const QObject *child : item->children()) {
            if (child->inherits("QQuickAccessibleAttached"))
                accessible = child;
        }
        return accessible ? accessible->property("name").toString() : QString();
    }
};

QTEST_MAIN(WelcomeTest)
#include "welcome_test.moc"
