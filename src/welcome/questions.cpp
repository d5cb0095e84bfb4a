#include "welcome/questions.h"

#include <QCoreApplication>

namespace kelo {

namespace {

struct Questions {
    Q_DECLARE_TR_FUNCTIONS(Questions)

public:
    static Question at(Step step, const QString &chosen);
};

Question Questions::at(Step step, const QString &chosen)
{
    switch (step) {
    case Step::Greeting:
        return {tr("Hello. I’m Kelo."),
            tr("A few quick questions and I’m set up for you. Your answers stay on this Mac, and "
               "every screen has a skip button."),
            tr("Return continues.")};
    case Step::Name:
        return {tr("What should I call you?"),
            tr("A first name or a nickname. Whatever you like to hear."), tr("Return continues.")};
    case Step::AssistantName:
        return {tr("And what will you call me?"),
            tr("This is the word you say to get my attention. Longer names are the easiest for a "
               "Mac to hear: Apollo, Harmony and Phoenix are caught almost every time."),
            tr("Left and right arrows choose. Return continues.")};
    case Step::Town:
        return {tr("Where in the world are you?"),
            tr("Only used to tell you the weather. A town or city is enough."),
            tr("Up and down arrows switch between Celsius and Fahrenheit.")};
    case Step::Birthday:
        return {tr("When’s your birthday?"),
            tr("Just the day and the month, so I can wish you a happy birthday. No year, so no "
               "age, and you don’t have to be 18. Skip it if you’d rather not say."),
            tr("Left and right arrows choose the month, up and down the day.")};
    case Step::Needs:
        return {tr("How can I fit you best?"),
            tr("Switch on anything that helps. All of it can be changed later, just by asking."),
            tr("Tab moves between these. Space switches one on or off.")};
    case Step::Listening:
        return {tr("One last thing: may I listen?"),
            tr("To hear you say “%1”, I need the microphone. The listening happens on this Mac, "
               "and I only act on what follows my name.")
                .arg(chosen),
            tr("Left and right arrows choose. Up and down switch the natural voice.")};
    }
    return {};
}

} // namespace

Question question(Step step, const QString &chosen)
{
    return Questions::at(step, chosen);
}

} // namespace kelo
