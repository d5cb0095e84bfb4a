#include "assistant/assistant.h"
#include "assistant/words.h"
#include "listen/command_page.h"
#include "protocol/text.h"

#include <fstream>
#include <string>

namespace kelo::engine {

bool Assistant::performTalk(const Request &request, const Moment &now)
{
    switch (request.action) {
    case Action::TalkMode:
        if (request.on.value_or(mode != Mode::Talk)) {
            const bool lessonEnds = teaching();
            stopTeaching(Mode::Talk);
            setMode(Mode::Talk);
            say(std::string("Talk mode. ") + (lessonEnds ? "The lesson is over. " : "")
                    + "I listen without my name.",
                now);
        } else {
            setMode(Mode::Idle);
            say("Talk mode is off.", now);
        }
        return true;
    case Action::Type:
        typing.emplace();
        wire.send("typing", "1");
        say("Type, then press Return.", now);
        return true;
    case Action::StopListening:
        wire.send("ears", "off");
        say("I don't listen any more. The microphone button switches me back on.", now);
        return true;
    case Action::Time:
        say(timeInWords(now.hour, now.minute), now);
        return true;
    case Action::Date:
        say(dateInWords(now.today), now);
        return true;
    case Action::WhereAmI:
        say(whereWeAre(), now);
        return true;
    case Action::Help:
        say(helpFor(mode), now);
        return true;
    case Action::WhatCanISay:
        say(suggestionsFor(mode, settings.assistant), now);
        return true;
    case Action::CommandPage:
        openPage(now);
        return true;
    case Action::WhoAreYou:
        say("I'm " + settings.assistant + ", and I practise the piano with you.", now);
        return true;
    case Action::Greet:
        say("Hello. What would you like to do? Press H for help.", now);
        return true;
    case Action::Thanks:
        say("You're welcome.", now);
        return true;
    default:
        return false;
    }
}

bool Assistant::performDisplay(const Request &request, const Moment &now)
{
    const bool on = request.on.value_or(true);
    const auto ask = [&](std::string_view keyword, std::string_view what, bool flag,
                         std::string_view words) {
        wire.send(keyword, std::string(what) + (flag ? " 1" : " 0"));
        say(words, now);
        return true;
    };
    switch (request.action) {
    case Action::LargeCaptions:
        return ask("access", "large", on, on ? "Large captions." : "Normal captions.");
    case Action::HighContrast:
        return ask("access", "contrast", on, on ? "High contrast." : "Normal contrast.");
    case Action::FullScreen:
        return ask("window", "full", on, on ? "Full screen." : "No full screen.");
    case Action::Visualiser:
        return ask("window", "visual", on, on ? "The visualiser." : "The visualiser is closed.");
    case Action::ShowWindow:
        return ask("window", "show", true, "Here I am.");
    case Action::HideWindow:
        return ask("window", "show", false, "I'm in the background.");
    case Action::StartAtLogin:
        wire.send("window", on ? "login 1" : "login 0"); // its answer is told
        return true;
    default:
        return false;
    }
}

void Assistant::say(std::string_view text, const Moment &now)
{
    lastSaid = oneLine(text);
    answerExpected = false;
    speaker.say(lastSaid, now.uptime);
}

void Assistant::hush()
{
    speaker.stop();
    answerExpected = false;
}

void Assistant::setMode(Mode value)
{
    mode = value;
    if (shownMode == mode)
        return;
    shownMode = mode;
    ear.setOpen(mode == Mode::Talk);
    wire.send("mode", nameOf(mode));
    tellVocabulary();
}

void Assistant::tellVocabulary()
{
    std::string phrases;
    for (const std::string &phrase : vocabulary(whereOf(mode), tools.library.names()))
        phrases += (phrases.empty() ? "" : "|") + phrase;
    wire.send("vocab", phrases);
}

void Assistant::tellButtons()
{
    std::string keys;
    if (!pianoName.empty()) {
        for (const int pitch : commandKeys.pitches())
            keys += (keys.empty() ? "" : " ") + std::to_string(pitch);
    }
    wire.send("buttons", keys);
}

void Assistant::setUp(std::string_view fields, const Moment &now)
{
    settings = profileFromSetup(fields, settings);
    profile = settings;
    rememberProfile();
    sendNames();
    std::string words = settings.user.empty() ? "Welcome." : "Welcome, " + settings.user + ".";
    words += " " + suggestionsFor(mode, settings.assistant);
    if (settings.naturalVoice)
        words += " " + std::string(refusalOf(Action::NaturalVoice));
    say(words, now);
}

/// What someone who has not answered the first questions changes holds until the end.
void Assistant::rememberProfile()
{
    if (!profile)
        return;
    profile = settings;
    static_cast<void>(saveProfile(*profile, places.profile));
}

void Assistant::openPage(const Moment &now)
{
    std::ofstream file(places.page, std::ios::binary);
    file << commandPage(settings.assistant);
    file.close();
    say(!file ? "I couldn't write the command page."
            : tools.openPage(places.page)
            ? "Here are all commands."
            : "I wrote the command page, but nothing here opens it. It is in my folder, as "
              "commands.html.",
        now);
}

std::string Assistant::whereWeAre() const
{
    if (lesson)
        return "You are in a lesson on " + lesson->title() + ". " + lesson->whereWeAre();
    std::string text = mode == Mode::Menu ? "You are in the song menu. " + menu.describe()
        : mode == Mode::Ear               ? "This is ear training."
        : mode == Mode::Talk              ? "This is talk mode."
                                          : "You are at home.";
    if (player.playing() || player.paused())
        text += " This is " + title + ".";
    return text;
}

} // namespace kelo::engine
