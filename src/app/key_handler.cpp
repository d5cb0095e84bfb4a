#include "app/key_handler.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

using Kind = KeyAction::Kind;

using Focus = FocusKeeper::Kind;

bool isReturn(int key)
{
    return key == Qt::Key_Return || key == Qt::Key_Enter;
}

bool movesSideways(int key)
{
    return key == Qt::Key_Left || key == Qt::Key_Right;
}

bool canBePressed(Focus focus)
{
    return focus == Focus::Button || focus == Focus::Choice;
}

/// The questions take what they use, but a button is pressed by Return and a text that has been
/// typed is moved in.
KeyAction inTheQuestions(const KeyPress &press, Focus focus)
{
    if (isReturn(press.key) && press.repeated)
        return {Kind::Ignore, {}}; // a hand that rests there must not run through all questions
    const bool ofTheControl = (isReturn(press.key) && focus == Focus::Button)
        || (movesSideways(press.key) && focus == Focus::FilledField);
    return {ofTheControl ? Kind::PassOn : Kind::OfferToWelcome, {}};
}

bool printable(const QString &text)
{
    return !text.isEmpty()
        && std::ranges::all_of(text, [](QChar c) { return c >= u' ' && c <= u'~'; });
}

/// The bytes by which a terminal would tell the engine of this key.
KeyAction forwarded(const KeyPress &press)
{
    switch (press.key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return {Kind::Send, u"\n"_s};
    case Qt::Key_Backspace:
        return {Kind::Send, u"\x7f"_s};
    case Qt::Key_Left:
        return {Kind::Send, u"\x1b[D"_s};
    case Qt::Key_Right:
        return {Kind::Send, u"\x1b[C"_s};
    default:
        break;
    }
    return printable(press.text) ? KeyAction{Kind::Send, press.text} : KeyAction{};
}

} // namespace

KeyAction keyAction(const KeyPress &press, const KeyContext &context)
{
    if (press.modifiers & (Qt::ControlModifier | Qt::MetaModifier))
        return {};
    if (context.welcome)
        return inTheQuestions(press, context.focus);
    if (press.key == Qt::Key_Tab || press.key == Qt::Key_Backtab)
        return {};
    if (context.focus != Focus::Nothing && press.key == Qt::Key_Escape)
        return {Kind::LeaveControls, {}};
    if (canBePressed(context.focus) && (press.key == Qt::Key_Space || isReturn(press.key)))
        return {};
    if (!context.typing) {
        if (press.key == Qt::Key_Escape && context.visual)
            return {Kind::LeaveVisualiser, {}};
        if (press.key == Qt::Key_F)
            return {Kind::ToggleVisualiser, {}};
        if (press.key == Qt::Key_O)
            return {Kind::ChooseFile, {}};
    }
    return forwarded(press);
}

} // namespace kelo
