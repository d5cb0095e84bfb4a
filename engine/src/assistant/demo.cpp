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
        script.hears("Hello, I'm Kelo. This is a minute with me.");
        script.says("teach me the ode to joy");
        constexpr double beat = 0.5;
        script.waitsForQuiet(5.2); // the part is played, too
        for (const int pitch : {64, 64, 65, 67, 69})
            script.plays({pitch}, 0.4, beat - 0.4);
        script.waitsForQuiet(2);
        for (const int pitch : {64, 64, 65, 67, 67, 65, 64, 62})
            script.plays({pitch}, 0.4, beat - 0.4);
        script.says("go home", 2.5);
        script.says("play the minuet in G", 0.3);
        script.says("stop", 13);
        script.says("visualiser off", 0.2);
        script.says("metronome at one twenty", 0.3);
        script.says("metronome off", 2.5);
        script.says("live band", 0.3);
        script.waitsForQuiet(0.3);
        for (int round = 0; round < 2; ++round) {
            script.plays({48, 60, 64, 67}, 2.3, 0.1);
            script.plays({45, 60, 64, 69}, 2.3, 0.1);
        }
        script.says("stop", 0.2);
        script.says("what time is it", 0.3);
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
