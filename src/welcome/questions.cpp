#include "welcome/questions.h"

#include <QCoreApplication>

namespace kelo {

namespace {

QString text(const char *source)
{
    return QCoreApplication::translate("Questions", source);
}

} // namespace

Question question(Step step, const QString &chosen)
{
    switch (step) {
    case Step::Greeting:
        return {text("Hello. I’m Kelo."),
            text("A few quick questions and I’m set up for you. Your answers stay on this Mac, and "
                 "every screen has a skip button."),
            text("Return continues.")};
    case Step::Name:
        return {text("What should I call you?"),
            text("A first name or a nickname. Whatever you like to hear."),
            text("Return continues.")};
    case Step::AssistantName:
        return {text("And what will you call me?"),
            text("This is the word you say to get my attention. Longer names are the easiest for a "
                 "Mac to hear: Apollo, Harmony and Phoenix are caught almost every time."),
            text("Left and right arrows choose. Return continues.")};
    case Step::Town:
        return {text("Where in the world are you?"),
            text("Only used to tell you the weather. A town or city is enough."),
            text("Up and down arrows switch between Celsius and Fahrenheit.")};
    case Step::Birthday:
        return {text("When’s your birthday?"),
            text("Just the day and the month, so I can wish you a happy birthday. No year, so no "
                 "age, and you don’t have to be 18. Skip it if you’d rather not say."),
            text("Left and right arrows choose the month, up and down the day.")};
    case Step::Needs:
        return {text("How can I fit you best?"),
            text("Switch on anything that helps. All of it can be changed later, just by asking."),
            text("Tab moves between these. Space switches one on or off.")};
    case Step::Listening:
        return {text("One last thing: may I listen?"),
            text("To hear you say “%1”, I need the microphone. The listening happens on this Mac, "
                 "and I only act on what follows my name.")
                .arg(chosen),
            text("Left and right arrows choose. Up and down switch the natural voice.")};
    }
    return {};
}

} // namespace kelo
