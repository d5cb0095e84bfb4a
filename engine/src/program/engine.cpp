#include "program/engine.h"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <string>
#include <utility>

namespace kelo::engine {

namespace {

Moment currentMoment()
{
    const std::time_t wall = std::time(nullptr);
    std::tm local{};
    localtime_r(&wall, &local);
    using namespace std::chrono;
    const auto day = local_days(year(local.tm_year + 1900) / (local.tm_mon + 1) / local.tm_mday);
    return {monotonicNow(),
        day + hours(local.tm_hour) + minutes(local.tm_min) + std::chrono::seconds(local.tm_sec)};
}

std::string troubleWith(
    const Output &output, const Mixer &mixer, const Piano &piano, const std::filesystem::path &home)
{
    std::string trouble;
    if (!output.audible())
        trouble += "I found no way to make sound, so I keep time in silence. ";
    if (!mixer.sounds())
        trouble += "I found no soundfont, so you won't hear music. The package timgm6mb-soundfont "
                   "has one. ";
    if (!keepsFiles(home))
        trouble += Assistant::takesNothing;
    return trouble.append(piano.trouble());
}

} // namespace

Engine::Engine(Wire &lines, std::function<void()> news, bool showsItself)
    : wire_(lines)
    , desk_(mixer_, soundfonts(), mixer_.soundfont(), news)
    , data_(showsItself)
    , output_(mixer_, clock_, setting("KELO_SOUND"), queue_.first(), news)
    , dispatcher_(setting("KELO_SPEECH") == "speech-dispatcher", news)
    , voice_(news)
    , piano_(news, setting("KELO_PIANO"))
    , surfacePort_("Kelo Control", std::move(news))
{
    piano_.look(monotonicNow());
    if (showsItself)
        demo_.emplace(monotonicNow());
    const Moment now = currentMoment();
    audible_ = output_.audible();
    assistant_.begin(demo_ ? "Demo piano" : piano_.name(), !demo_, now);
    if (!demo_)
        assistant_.greet(troubleWith(output_, mixer_, piano_, home_), now);
}

void Engine::advance(std::span<const Input> inputs)
{
    for (const ChannelMessage message : piano_.take())
        assistant_.takePiano(message, currentMoment());
    for (auto next = inputs.begin(); next != inputs.end() && !finished(); ++next)
        assistant_.take(*next, currentMoment());
    if (piano_.look(monotonicNow()) && !demo_)
        assistant_.pianoChanged(piano_.name(), currentMoment());
    if (!std::exchange(audible_, output_.audible()) && audible_)
        assistant_.soundCame(currentMoment());
    queue_.needed(output_.queue());
    if (demo_)
        show();
    mackie_.advance(monotonicNow());
    reaper_.advance(monotonicNow());
    assistant_.advance(currentMoment());
}

std::uint64_t Engine::millisecondsSinceEpoch()
{
    using namespace std::chrono;
    return static_cast<std::uint64_t>(
        duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count());
}

std::optional<double> Engine::deadline() const
{
    return earliest(
        {assistant_.deadline(), demo_ ? demo_->deadline() : std::nullopt, piano_.deadline()});
}

void Engine::show()
{
    while (const auto step = demo_->advance(assistant_.quiet(), monotonicNow())) {
        if (const auto *message = std::get_if<ChannelMessage>(&*step))
            assistant_.takePiano(*message, currentMoment());
        else
            assistant_.take(std::get<Command>(*step), currentMoment());
    }
}

} // namespace kelo::engine
