#include "app/snapshot_scenes.h"

#include "welcome/questions.h"

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

/// What a real evening looks like after a few minutes.
std::vector<SnapshotStep> evening(const QByteArray &mode)
{
    return {
        {0,
            {"name Kelo|Ann", "kbd Stage Piano 88", "voice Clara", "daw 0", "bandlevel medium",
                "bandstyle full", "hands both", "now twenty past seven", "mode " + mode,
                "buttons 108 107 105 103 101 100 98 96 95 93"}},
        {1, {"say Good evening, Ann. Your piano is connected, and I am listening."}},
        {5, {"done"}},
        {3, {"heard teach me the little fugue"}},
        {1,
            {"say Gladly. We take it hand by hand, two bars at a time. "
             "Listen to the right hand first, then play it back to me."}},
        {9, {"done"}},
        {5, {"heard slower please"}},
        {1, {"say Slower: sixty-six beats a minute."}},
        {3, {"done"}},
    };
}

std::vector<SnapshotStep> followedBy(std::vector<SnapshotStep> steps, const SnapshotStep &last)
{
    steps.push_back(last);
    return steps;
}

/// Every first-run question, at its own size and at twice that.
std::vector<SnapshotScene> questions()
{
    std::vector<SnapshotScene> scenes;
    for (int step = 0; step < questionCount; ++step) {
        const QString name = u"question-%1"_s.arg(step + 1);
        const std::vector<SnapshotStep> steps{{0, {"mode idle", "welcome"}}};
        scenes.push_back({.name = name, .steps = steps, .question = step});
        scenes.push_back({.name = name + u"-large"_s,
            .steps = steps,
            .question = step,
            .scale = 2,
            .sizes = {{1240, 840}}});
    }
    return scenes;
}

} // namespace

std::vector<SnapshotScene> snapshotScenes()
{
    std::vector<SnapshotScene> scenes{
        {.name = u"console"_s, .steps = evening("idle")},
        {.name = u"console-compose"_s, .steps = evening("compose")},
        {.name = u"console-teach"_s, .steps = evening("teach")},
        {.name = u"console-jazz"_s,
            .steps = followedBy(evening("jazz"),
                {1,
                    {"jazz Swing feel|Shell voicings|The two five one|A walking bass|"
                     "Blues in F|Rootless chords"}})},
        {.name = u"console-offline"_s, .steps = evening("idle"), .offline = true},
        {.name = u"console-update"_s,
            .steps = followedBy(evening("idle"),
                {1,
                    {"update 3.2|A new lesson on pedalling, quieter drums, and names are heard "
                     "better in a noisy room."}})},
    };
    std::ranges::move(questions(), std::back_inserter(scenes));
    return scenes;
}

} // namespace kelo
