#include "app/key_handler.h"
#include "support/table.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace kelo;
using kelo::test::Table;
using Kind = KeyAction::Kind;
using Focus = FocusKeeper::Kind;

Q_DECLARE_METATYPE(kelo::KeyPress)
Q_DECLARE_METATYPE(kelo::KeyContext)
Q_DECLARE_METATYPE(kelo::KeyAction)

namespace {

KeyAction sends(const QString &text)
{
    return {Kind::Send, text};
}

} // namespace

class KeyTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void leadsWhereTheUserMeans_data()
    {
        const Table<KeyPress, KeyContext, KeyAction> row{"press", "context", "action"};
        const KeyContext plain;
        const KeyContext welcome{.welcome = true};
        const KeyContext onButton{.focus = Focus::Button};
        const KeyContext onRow{.focus = Focus::Reading};
        const auto asked = [](Focus focus) { return KeyContext{.welcome = true, .focus = focus}; };
        const KeyContext typing{.typing = true};
        const KeyContext visual{.visual = true};
        const KeyContext typingInVisual{.typing = true, .visual = true};
        const auto control = Qt::ControlModifier;
        const auto shift = Qt::ShiftModifier;

        row("a letter", {Qt::Key_H, {}, u"h"_s}, plain, sends(u"h"_s));
        row("the last printable one", {Qt::Key_AsciiTilde, shift, u"~"_s}, plain, sends(u"~"_s));
        row("Alt does not bypass", {Qt::Key_N, Qt::AltModifier, u"n"_s}, plain, sends(u"n"_s));
        row("an accented letter", {Qt::Key_Eacute, {}, u"é"_s}, plain, {});
        row("an emoji", {Qt::Key_unknown, {}, u"🎹"_s}, plain, {});
        row("forward delete", {Qt::Key_Delete, {}, u"\x7f"_s}, plain, {});
        row("a function key", {Qt::Key_F5, {}, {}}, plain, {});
        row("return", {Qt::Key_Return, {}, u"\r"_s}, plain, sends(u"\n"_s));
        row("keypad enter", {Qt::Key_Enter, Qt::KeypadModifier, u"\r"_s}, plain, sends(u"\n"_s));
        row("backspace", {Qt::Key_Backspace, {}, u"\b"_s}, plain, sends(u"\x7f"_s));
        row("left", {Qt::Key_Left, {}, {}}, plain, sends(u"\x1b[D"_s));
        row("right", {Qt::Key_Right, {}, {}}, plain, sends(u"\x1b[C"_s));

        row("Ctrl+Q never reaches the engine", {Qt::Key_Q, control, u"\x11"_s}, plain, {});
        row("Ctrl+F is no shortcut of ours", {Qt::Key_F, control, u"\x06"_s}, visual, {});

        row("the questions come first", {Qt::Key_F, {}, u"f"_s}, welcome,
            {Kind::OfferToWelcome, {}});

        const KeyAction offered{Kind::OfferToWelcome, {}};
        const KeyPress enter{Qt::Key_Enter, {}, u"\r"_s};
        row("Enter goes on from a field", enter, asked(Focus::EmptyField), offered);
        row("and from a choice", enter, asked(Focus::Choice), offered);
        row("it presses a button", enter, asked(Focus::Button), {});
        row("held down it does nothing", {Qt::Key_Enter, {}, u"\r"_s, true}, asked(Focus::Button),
            {Kind::Ignore, {}});
        row("nor does Return", {Qt::Key_Return, {}, u"\r"_s, true}, welcome, {Kind::Ignore, {}});
        row("an arrow held down does", {Qt::Key_Left, {}, {}, true}, welcome, offered);
        row("arrows choose", {Qt::Key_Right, {}, {}}, asked(Focus::EmptyField), offered);
        row("or move in a text", {Qt::Key_Right, {}, {}}, asked(Focus::FilledField), {});
        row("space belongs to the questions", {Qt::Key_Space, {}, u" "_s}, asked(Focus::Button),
            offered);

        const KeyPress space{Qt::Key_Space, {}, u" "_s};
        const KeyPress escape{Qt::Key_Escape, {}, {}};
        row("Tab moves the focus", {Qt::Key_Tab, {}, u"\t"_s}, plain, {});
        row("space presses the control", space, onButton, {});
        row("enter too", enter, onButton, {});
        row("what is read is not pressed", space, onRow, sends(u" "_s));
        row("nor what is not there", space, plain, sends(u" "_s));
        row("escape leaves the controls", escape, onButton, {Kind::LeaveControls, {}});
        row("and what is read", escape, onRow, {Kind::LeaveControls, {}});
        row("a letter meanwhile", {Qt::Key_N, {}, u"n"_s}, onButton, sends(u"n"_s));
        row("escape leaves the controls before the visualiser", escape,
            {.focus = Focus::Button, .visual = true}, {Kind::LeaveControls, {}});

        row("f", {Qt::Key_F, {}, u"f"_s}, plain, {Kind::ToggleVisualiser, {}});
        row("o", {Qt::Key_O, {}, u"o"_s}, plain, {Kind::ChooseFile, {}});
        row("escape leaves the visualiser", {Qt::Key_Escape, {}, {}}, visual,
            {Kind::LeaveVisualiser, {}});
        row("escape means nothing else", {Qt::Key_Escape, {}, u"\x1b"_s}, plain, {});
        row("f is a letter while typing", {Qt::Key_F, {}, u"f"_s}, typing, sends(u"f"_s));
        row("escape is nothing while typing", {Qt::Key_Escape, {}, u"\x1b"_s}, typingInVisual, {});
    }

    void leadsWhereTheUserMeans()
    {
        QFETCH(const KeyPress, press);
        QFETCH(const KeyContext, context);
        QFETCH(const KeyAction, action);
        const KeyAction found = keyAction(press, context);
        QCOMPARE(static_cast<int>(found.kind), static_cast<int>(action.kind));
        QCOMPARE(found.text, action.text);
    }
};

QTEST_APPLESS_MAIN(KeyTest)
#include "key_test.moc"
