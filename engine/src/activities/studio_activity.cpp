#include "activities/studio_activity.h"

#include <array>
#include <span>

namespace kelo::engine {

namespace {

struct Item {
    std::string_view name;
    StudioCommand command;
};

struct Group {
    std::string_view name;
    std::span<const Item> items;
};

constexpr Item transport[] = {{"Play", StudioCommand::Play}, {"Stop", StudioCommand::Stop},
    {"Record", StudioCommand::Record}, {"To the start", StudioCommand::ToStart}};
constexpr Item track[] = {{"Next track", StudioCommand::NextTrack},
    {"Previous track", StudioCommand::PreviousTrack}, {"Arm the track", StudioCommand::Arm}};
constexpr Item edit[] = {{"Undo", StudioCommand::Undo}, {"Add a marker", StudioCommand::AddMarker},
    {"Next marker", StudioCommand::NextMarker}};
constexpr Item tempo[] = {{"Faster", StudioCommand::Faster}, {"Slower", StudioCommand::Slower}};

constexpr std::array<Group, 4> groups{
    {{"Transport", transport}, {"Track", track}, {"Edit", edit}, {"Tempo", tempo}}};

} // namespace

StudioActivity::StudioActivity(Session &shared, Program program)
    : Activity(shared)
    , program_(program)
    , control_(program == Program::Logic ? shared.logic : shared.reaper)
{
}

std::string_view StudioActivity::programName() const
{
    return program_ == Program::Logic ? "Logic" : "REAPER";
}

std::string_view StudioActivity::mode() const
{
    return program_ == Program::Logic ? "logic" : "reaper";
}

void StudioActivity::enter(const Moment &now)
{
    answered_ = connected();
    session_.wire.send("daw", answered_ ? "1" : "0");
    say(std::string(programName())
            + (answered_ ? " answers. " : " doesn't answer yet. I go on trying. ")
            + std::string(groups[group_].name) + ".",
        now);
}

void StudioActivity::leave(const Moment &now)
{
    session_.wire.send("daw", "0");
    Activity::leave(now);
}

void StudioActivity::advance(const Moment &now)
{
    if (answered_ == connected())
        return;
    answered_ = connected();
    session_.wire.send("daw", answered_ ? "1" : "0");
    say(std::string(programName()) + (answered_ ? " answers." : " doesn't answer any more."), now);
}

bool StudioActivity::request(const Request &request, const Moment &now)
{
    static constexpr Handler<StudioActivity> handlers[] = {
        {Action::Start, &StudioActivity::choose},
        {Action::BackALevel, &StudioActivity::back},
        {Action::NoteNames, &StudioActivity::back},
        {Action::Next, &StudioActivity::next},
        {Action::Previous, &StudioActivity::previous},
        {Action::Stop, &StudioActivity::stop},
        {Action::Faster, &StudioActivity::faster},
        {Action::Slower, &StudioActivity::slower},
    };
    return handle(*this, handlers, request, now);
}

void StudioActivity::give(StudioCommand command, std::string_view name, const Moment &now)
{
    if (control_ && control_->send(command))
        say(std::string(name) + ".", now);
    else
        say(std::string(programName()) + " doesn't answer.", now);
}

void StudioActivity::choose(const Request &, const Moment &now)
{
    if (!inGroup_) {
        inGroup_ = true;
        item_ = 0;
        say(std::string(groups[group_].items.front().name) + ".", now);
        return;
    }
    const Item &item = groups[group_].items[item_];
    give(item.command, item.name, now);
}

void StudioActivity::back(const Request &, const Moment &now)
{
    inGroup_ = false;
    say(std::string(groups[group_].name) + ".", now);
}

void StudioActivity::next(const Request &, const Moment &now)
{
    step(1, now);
}

void StudioActivity::previous(const Request &, const Moment &now)
{
    step((inGroup_ ? groups[group_].items.size() : groups.size()) - 1, now);
}

void StudioActivity::step(std::size_t by, const Moment &now)
{
    if (inGroup_) {
        const auto &items = groups[group_].items;
        item_ = (item_ + by) % items.size();
        say(std::string(items[item_].name) + ".", now);
    } else {
        group_ = (group_ + by) % groups.size();
        say(std::string(groups[group_].name) + ".", now);
    }
}

void StudioActivity::stop(const Request &, const Moment &now)
{
    rolling_ = false;
    give(StudioCommand::Stop, "Stop", now);
}

bool StudioActivity::pause(const Moment &now)
{
    rolling_ = false;
    give(StudioCommand::Stop, "Stop", now);
    return true;
}

void StudioActivity::resume(const Moment &now)
{
    rolling_ = true;
    give(StudioCommand::Play, "Play", now);
}

void StudioActivity::faster(const Request &, const Moment &now)
{
    give(StudioCommand::Faster, "Faster", now);
}

void StudioActivity::slower(const Request &, const Moment &now)
{
    give(StudioCommand::Slower, "Slower", now);
}

std::string StudioActivity::place() const
{
    return "You control " + std::string(programName()) + ". "
        + std::string(inGroup_ ? groups[group_].items[item_].name : groups[group_].name) + ".";
}

std::string_view StudioActivity::help() const
{
    return "Left and right go through the commands, Space chooses, N goes back a level. Return "
           "plays and stops, minus and equals change the tempo. Zero goes home.";
}

std::string_view StudioActivity::suggestions() const
{
    return "next; start; back a level; faster; or stop";
}

} // namespace kelo::engine
