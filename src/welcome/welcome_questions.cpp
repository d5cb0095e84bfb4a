#include "welcome/welcome_questions.h"

#include "link/link.h"
#include "link/voice_input.h"

#include <QAccessible>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

/// `value` moved on by `by` among `count` choices, round the end.
int turned(int value, int by, int count)
{
    return (value + by + count) % count;
}

} // namespace

WelcomeQuestions::WelcomeQuestions(Link &link, VoiceInput &ears, QObject *parent)
    : QObject(parent)
    , link_(link)
    , ears_(ears)
{
    link_.setWelcomeKey([this](int code, const QString & /*text*/) { return key(code); });
    connect(&link_, &Link::welcomeChanged, this, &WelcomeQuestions::welcomeChanged);
}

WelcomeQuestions::~WelcomeQuestions()
{
    link_.setWelcomeKey({});
}

QString WelcomeQuestions::goOnLabel() const
{
    if (step_ != Step::Listening)
        return tr("CONTINUE");
    return answers_.listen ? tr("YES, LISTEN FOR %1").arg(answers_.chosen().toUpper())
                           : tr("DONE, WITHOUT LISTENING");
}

QString WelcomeQuestions::birthday() const
{
    if (answers_.month < 1)
        return tr("No birthday chosen");
    return tr("%1 %2", "month, day").arg(monthNames().value(answers_.month - 1)).arg(answers_.day);
}

void WelcomeQuestions::setAnswers(const Answers &answers)
{
    answers_ = answers;
    Q_EMIT changed();
}

QStringList WelcomeQuestions::months()
{
    return {tr("Jan"), tr("Feb"), tr("Mar"), tr("Apr"), tr("May"), tr("Jun"), tr("Jul"), tr("Aug"),
        tr("Sep"), tr("Oct"), tr("Nov"), tr("Dec")};
}

QStringList WelcomeQuestions::monthNames()
{
    return {tr("January"), tr("February"), tr("March"), tr("April"), tr("May", "the whole name"),
        tr("June"), tr("July"), tr("August"), tr("September"), tr("October"), tr("November"),
        tr("December")};
}

// ---- the way through ----

void WelcomeQuestions::welcomeChanged()
{
    if (!link_.welcome) {
        underWay_ = false;
        return;
    }
    // Asked for while under way (the engine started anew, say) they go on where they are.
    if (!std::exchange(underWay_, true)) {
        answers_ = {};
        // What the display already does for the user stays switched on unless switched off here.
        answers_.large = link_.large;
        answers_.contrast = link_.contrast;
        step_ = static_cast<Step>(std::clamp(link_.welcomeStepForSnapshot, 0, questionCount - 1));
        Q_EMIT changed();
    }
    say();
}

void WelcomeQuestions::say()
{
    const Question now = current();
    const QString words = now.title + u' ' + now.sub;
    if (answers_.reader) {
        Q_EMIT questionAnnounced(words + u' ' + now.hint);
    } else {
        QString spoken = words;
        spoken.remove(u'“').remove(u'”').replace(u'\n', u' ').replace(u'\r', u' ');
        link_.speak(spoken);
        // The others' keys are told with the control that takes the keyboard focus.
        if (step_ >= Step::Birthday && readerRuns())
            Q_EMIT choiceAnnounced(now.hint);
    }
    Q_EMIT asked();
}

void WelcomeQuestions::next()
{
    if (step_ >= Step::Listening)
        finish();
    else
        goTo(step() + 1);
}

void WelcomeQuestions::back()
{
    if (step_ > Step::Greeting)
        goTo(step() - 1);
}

void WelcomeQuestions::goTo(int step)
{
    step_ = static_cast<Step>(step);
    Q_EMIT changed();
    say();
}

void WelcomeQuestions::finish()
{
    link_.setAccess(u"large"_s, answers_.large);
    link_.setAccess(u"contrast"_s, answers_.contrast);
    link_.send(answers_.setupLine());
    link_.finishWelcome(answers_.chosen(), answers_.cleanedName());
    if (answers_.listen && !ears_.isOn())
        ears_.begin();
}

// ---- choices ----

void WelcomeQuestions::chooseName(int index)
{
    edit(&Answers::chooseName, index);
}

void WelcomeQuestions::chooseMonth(int number)
{
    edit(&Answers::chooseMonth, number);
}

void WelcomeQuestions::chooseDay(int number)
{
    edit(&Answers::chooseDay, number);
}

void WelcomeQuestions::edit(void (Answers::*choose)(int), int value)
{
    (answers_.*choose)(value);
    Q_EMIT changed();
}

bool WelcomeQuestions::readerRuns() const
{
    return answers_.reader || QAccessible::isActive();
}

void WelcomeQuestions::speakChoice(const QString &choice)
{
    if (!readerRuns())
        link_.speak(choice);
}

const QObject *WelcomeQuestions::focused() const
{
    return window_ ? window_->activeFocusItem() : nullptr;
}

/// What a key has just chosen is heard once: from the screen reader or else from the engine. Where
/// the keyboard focus went along with the choice, a screen reader says it by itself.
void WelcomeQuestions::tell(const QString &choice, const QObject *focusBefore)
{
    if (!readerRuns())
        link_.speak(choice);
    else if (focused() == focusBefore)
        Q_EMIT choiceAnnounced(choice);
}

// ---- keys ----

bool WelcomeQuestions::key(int key)
{
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        next();
        return true;
    case Qt::Key_Escape:
        back();
        return true;
    case Qt::Key_Left:
        return sideways(-1);
    case Qt::Key_Right:
        return sideways(1);
    case Qt::Key_Up:
        return upOrDown(1);
    case Qt::Key_Down:
        return upOrDown(-1);
    default:
        return false;
    }
}

bool WelcomeQuestions::sideways(int by)
{
    const QObject *before = focused();
    switch (step_) {
    case Step::AssistantName:
        chooseName(turned(answers_.wake, by, static_cast<int>(names().size())));
        tell(answers_.chosen(), before);
        return true;
    case Step::Birthday:
        chooseMonth(turned(answers_.month, by, 13));
        tell(birthday(), before);
        return true;
    case Step::Listening:
        answers_.listen = !answers_.listen;
        Q_EMIT changed();
        tell(answers_.listen ? tr("Yes, listen") : tr("Not now"), before);
        return true;
    default:
        return false;
    }
}

bool WelcomeQuestions::upOrDown(int by)
{
    const QObject *before = focused();
    switch (step_) {
    case Step::Town:
        answers_.fahrenheit = !answers_.fahrenheit;
        Q_EMIT changed();
        tell(answers_.fahrenheit ? tr("Fahrenheit") : tr("Celsius"), before);
        return true;
    case Step::Birthday:
        if (answers_.month > 0)
            chooseDay(turned(answers_.day - 1, by, answers_.dayCount()) + 1);
        tell(birthday(), before);
        return true;
    case Step::Listening:
        answers_.natural = !answers_.natural;
        Q_EMIT changed();
        tell(answers_.natural ? tr("The natural voice: on") : tr("The natural voice: off"), before);
        return true;
    default:
        return false;
    }
}

} // namespace kelo
