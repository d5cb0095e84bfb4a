#include "assistant/demo.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kelo::engine {

namespace {

struct Scene {
    double after; ///< seconds after the step before
    bool waits; ///< for the assistant to be quiet, first
    std::string command; ///< or, where it is empty,
    ChannelMessage message;
};

class Script {
public:
    Script &says(std::string_view words, double after = 0.6)
    {
        scenes.push_back({after, true, "ear 1 kelo " + std::string(words), {}});
        return *this;
    }
    Script &hears(std::string_view words)
    {
        scenes.push_back({0.3, true, "speak " + std::string(words), {}});
        return *this;
    }
    Script &plays(std::initializer_list<int> pitches, double length, double after = 0)
    {
        bool first = true;
        for (const int pitch : pitches)
            add(std::exchange(first, false) ? after : 0, 0x90, pitch, 84);
        first = true;
        for (const int pitch : pitches)
            add(std::exchange(first, false) ? length : 0, 0x80, pitch, 0);
        return *this;
    }
    Script &waitsForQuiet(double after)
    {
        scenes.push_back({after, true, "lvl 0", {}});
        return *this;
    }

    std::vector<Scene> scenes;

private:
    void add(double after, int status, int pitch, int velocity)
    {
        scenes.push_back({after, false, {},
            {static_cast<unsigned char>(status), static_cast<unsigned char>(pitch),
                static_cast<unsigned char>(velocity)}});
    }
};

const std::vector<Scene> &scenes()
{
    static const std::vector<Scene> all = [] {
        Script script;
        const auto melody = [&script](std::initializer_list<int> pitches, double beat) {
            for (const int pitch : pitches)
                script.plays({pitch}, beat * 0.8, beat * 0.2);
        };
        script.hears("Hello, I'm Kelo. Three minutes with me.");
        script.says("play me something happy", 0.2);
        script.says("compose", 6.5);
        script.waitsForQuiet(0.3);
        melody({60, 62, 64, 65, 67, 67, 69, 67}, 0.4);
        script.says("another variation", 0.4);
        script.says("make it a lullaby", 4.5);
        script.says("jam with me", 6);
        script.waitsForQuiet(0.2);
        melody({67, 69, 70, 67, 65, 67, 60, 62}, 0.3);
        script.says("live band", 5.5);
        script.waitsForQuiet(0.2);
        script.plays({48, 60, 64, 67}, 2.3, 0.1);
        script.plays({45, 60, 64, 69}, 2.3, 0.1);
        script.says("keep that", 0.2);
        script.says("jazz lesson one", 0.3);
        script.waitsForQuiet(0.2); // for the idea and its example
        script.plays({48, 52, 59}, 0.8, 0.3);
        script.says("ear training", 0.8);
        script.waitsForQuiet(0.3);
        melody({64}, 0.5);
        script.says("metronome in three four at one twenty", 2);
        script.says("metronome in triplets", 2);
        script.says("teach me the ode to joy", 2);
        script.waitsForQuiet(0.3); // for the part that is played
        melody({64, 64, 65, 67, 67, 65, 64, 62, 60, 60, 62, 64, 64, 62, 62}, 0.45);
        script.says("follow me in the ode to joy right hand", 1.5);
        script.waitsForQuiet(0.3);
        melody({64, 64, 65, 67, 67, 65, 64, 62}, 0.55);
        script.says("read the score", 1);
        script.says("next", 0.6);
        script.says("what shall I practise", 2);
        script.says("play my album", 0.6);
        script.says("reaper control", 2);
        script.says("go home", 0.5);
        return script.scenes;
    }();
    return all;
}

} // namespace

bool Demo::over() const
{
    return next_ >= scenes().size();
}

std::optional<double> Demo::deadline() const
{
    return over() ? std::nullopt : std::optional(last_ + scenes()[next_].after);
}

std::optional<Demo::Step> Demo::advance(bool quiet, double now)
{
    if (over())
        return {};
    const Scene &scene = scenes()[next_];
    if (scene.waits && !quiet)
        last_ = now;
    if (now < last_ + scene.after)
        return {};
    last_ = now;
    ++next_;
    if (scene.command.empty())
        return scene.message;
    return Command{scene.command};
}

} // namespace kelo::engine
