#include "assistant/assistant.h"

namespace kelo::engine {

bool Assistant::performTeaching(const Request &request, const Moment &now)
{
    switch (request.action) {
    case Action::EarTraining:
        trainEars(now);
        return true;
    case Action::NoteNames:
        if (lesson)
            say(lesson->notes(), now);
        else if (trainer)
            say("It is " + trainer->answer() + ".", now);
        else
            say("There is no lesson now.", now);
        return true;
    case Action::Hands:
        setHands(hands == Hands::Both   ? Hands::Right
                : hands == Hands::Right ? Hands::Left
                                        : Hands::Both,
            now);
        return true;
    case Action::BothHands:
        setHands(Hands::Both, now);
        return true;
    case Action::RightHand:
        setHands(Hands::Right, now);
        return true;
    case Action::LeftHand:
        setHands(Hands::Left, now);
        return true;
    case Action::Again:
        if (lesson)
            teach(lesson->repeat(), now);
        else if (trainer)
            teach(trainer->repeat(), now);
        else if (pieceIsNews && player.hasPiece())
            player.again(now.uptime);
        else
            say(lastSaid.empty() ? "I haven't said anything yet." : lastSaid, now);
        return true;
    case Action::Drop: {
        if (!lesson) {
            say("There is no lesson now.", now);
            return true;
        }
        say("All right. We leave " + lesson->title() + ".", now);
        const std::string song = lesson->title();
        stopTeaching(Mode::Menu);
        reached.erase(song);
        return true;
    }
    default:
        return false;
    }
}

void Assistant::learnChosen(const Moment &now)
{
    const std::string name = tools.library.names()[menu.current()].title;
    auto read = tools.library.load(menu.current());
    if (!std::holds_alternative<Piece>(read)) {
        say("I can't read that song.", now);
        return;
    }
    Lesson next(std::move(std::get<Piece>(read)), name, hands);
    if (next.empty()) {
        say("There is nothing to learn in that song for these hands.", now);
        return;
    }
    stopTeaching(Mode::Teach);
    setMode(Mode::Teach);
    lesson.emplace(std::move(next));
    const auto place = reached.find(name);
    Reply reply = lesson->begin(place == reached.end() ? 1 : place->second);
    if (pianoName.empty())
        reply.words.insert(0, "I don't see a piano yet. ");
    teach(reply, now);
}

void Assistant::trainEars(const Moment &now)
{
    stopTeaching(Mode::Ear);
    trainer.emplace(randomSeed + static_cast<std::uint32_t>(now.uptime));
    setMode(Mode::Ear);
    Reply reply = trainer->begin();
    if (pianoName.empty())
        reply.words.insert(0, "I don't see a piano yet. ");
    teach(reply, now);
}

void Assistant::teach(const Reply &reply, const Moment &now)
{
    if (reply.good)
        wire.send("flash", *reply.good ? "good" : "wrong");
    if (!reply.words.empty())
        say(reply.words, now);
    if (reply.demo) {
        demoWaits = true;
        player.stop();
    }
    if (reply.over) {
        const std::string song = lesson ? lesson->title() : "";
        stopTeaching(Mode::Menu);
        reached.erase(song);
    }
}

/// Plays the part, or the note to be found.
void Assistant::demonstrate(const Moment &now)
{
    demoWaits = false;
    pieceIsNews = false;
    player.demonstrate(lesson ? lesson->demo() : trainer->demo(), now.uptime);
}

/// When everything has been said and played it is the player's turn.
void Assistant::listenToPlayer(const Moment &now)
{
    if (!teaching() || speaker.speaking() || player.paused())
        return;
    if (demoWaits) {
        demonstrate(now);
        return;
    }
    if (player.playing())
        return;
    if (lesson && !lesson->listening())
        lesson->listen(now.uptime);
    else if (trainer && !trainer->listening())
        trainer->listen();
}

void Assistant::setHands(Hands which, const Moment &now)
{
    if (lesson) {
        const Reply reply = lesson->setHands(which);
        which = lesson->hands();
        teach(reply, now);
    } else {
        say(which == Hands::Both        ? "Both hands."
                : which == Hands::Right ? "Right hand."
                                        : "Left hand.",
            now);
    }
    useHands(which);
}

void Assistant::useHands(Hands which)
{
    hands = which;
    wire.send("hands", nameOf(hands));
}

/// Where there is a lesson or ear training, leaves it for another mode.
void Assistant::stopTeaching(Mode next)
{
    if (!teaching())
        return;
    player.stop();
    if (lesson)
        reached[lesson->title()] = lesson->bar();
    lesson.reset();
    trainer.reset();
    demoWaits = false;
    setMode(next);
}

} // namespace kelo::engine
