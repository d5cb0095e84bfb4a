#include "app/snapshot_scenes.h"

#include "welcome/questions.h"

#include <QFile>

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

const std::vector<QSize> pictureSizes{{900, 600}, {1240, 840}, {2560, 1440}};

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

/// `scene` drawn `scale` times as large in a window of the usual size.
SnapshotScene magnified(SnapshotScene scene, double scale)
{
    scene.name = u"magnified-%1-%2"_s.arg(qRound(scale * 100)).arg(scene.name);
    scene.scale = scale;
    scene.sizes = {{1240, 840}};
    return scene;
}

/// Every first-run question, at its own size and at twice that.
std::vector<SnapshotScene> questions()
{
    std::vector<SnapshotScene> scenes;
    for (int step = 0; step < questionCount; ++step) {
        const QString name = u"question-%1"_s.arg(step + 1);
        const std::vector<SnapshotStep> steps{{0, {"mode idle", "welcome"}}};
        scenes.push_back({.name = name, .steps = steps, .question = step, .sizes = {{1240, 840}}});
        scenes.push_back(magnified(scenes.back(), 2));
    }
    return scenes;
}

/// What the engine sends when it plays the Minuet in G from a MIDI file.
QByteArrayList minuet()
{
    QFile file(u":/kelo/snapshots/minuet.roll"_s);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("no roll for the pictures");
    return file.readAll().trimmed().split('\n');
}

/// The visualiser, `elapsed` seconds into the minuet. The engine has sounded `notes` for a moment.
SnapshotScene playing(const QString &name, double elapsed, const QByteArrayList &notes,
    const QByteArrayList &last = {})
{
    return {.name = name,
        .steps = {{0, {"name Kelo|Ann", "buttons 108 107 105 103 101 100 98 96 95 93"}},
            {0, minuet()}, {elapsed - 0.2, {}}},
        .shown = {{0.08, notes}, {0.12, last}, {0, {}}},
        .sizes = pictureSizes};
}

SnapshotScene flash(const QString &name, const QByteArray &line)
{
    return {.name = name,
        .steps = followedBy(evening("teach"), {1, {line}}),
        .shown = {{0.05, {}}},
        .sizes = pictureSizes};
}

/// The middle of a sentence, at a word of its second line.
SnapshotScene speaking(const QString &name, bool large)
{
    return {.name = name,
        .steps = followedBy(evening("teach"),
            {1,
                {"say We take it hand by hand, two bars at a time. Listen to the right hand "
                 "first, then play it back to me as slowly as you like."}}),
        .shown = {{0.5, {"word 49 6 300"}}, {0.3, {"word 56 2 150"}}, {0.15, {"word 59 3 150"}},
            {0.15, {"word 63 5 300"}}, {0.35, {}}},
        .large = large,
        .sizes = pictureSizes};
}

/// One item at a moment at which all its parts show.
SnapshotScene reference(const QString &name, const QString &item, QSize size,
    std::vector<SnapshotStep> steps, std::vector<SnapshotStep> shown)
{
    return {.name = u"reference-"_s + name,
        .steps = std::move(steps),
        .shown = std::move(shown),
        .sizes = {size},
        .item = item,
        .reference = true};
}

SnapshotScene referenceFlash(const QString &name, const QByteArray &line)
{
    return reference(name, u"FlashFrame"_s, {120, 80}, {{1, {}}}, {{0.1, {line}}, {0.05, {}}});
}

/// The pictures that are compared with those in the tree.
std::vector<SnapshotScene> references()
{
    const QByteArray buttons = "buttons 108 107 105 103 101 100 98 96 95 93";
    std::vector<SnapshotScene> scenes{
        // Both hands of a roll, the engine's notes and the user's, held and let go.
        reference(u"notes"_s, u"Visualiser"_s, {620, 440},
            {{0, {buttons}}, {0, minuet()}, {10.0, {}}},
            {{0.1, {"on 64 110", "on 61 70"}}, {0.2, {"out 59 62", "out 67 80", "on 88 40"}},
                {0.08, {"on 61 0", "out 57 60", "out 57 0"}}, {0.05, {}}}),
        reference(u"duet"_s, u"Visualiser"_s, {620, 440}, {{0, {buttons}}},
            {{0.1, {"on 48 96", "out 60 80"}}, {0.2, {"on 60 110", "on 64 70", "on 70 30"}},
                {0.3, {"on 67 90", "out 72 90", "out 82 40", "say Now the left hand alone."}},
                {0.25, {"on 48 0", "out 72 0", "out 82 0", "paused 1", "on 108 50"}}, {0.09, {}}}),
        reference(u"ring-speaking"_s, u"Core"_s, {300, 330}, {{0, {"mode teach"}}},
            {{1.3, {"say Listen to the right hand."}}, {0.35, {"word 0 6 300", "on 40 120"}},
                {0.2, {}}}),
        reference(u"ring-silent"_s, u"Core"_s, {300, 330}, {{0, {"mode teach", "paused 1"}}},
            {{2.6, {}}}),
        reference(u"keys"_s, u"Keys"_s, {1040, 150}, {{0, {buttons, "on 48 96", "on 30 60"}}},
            {{0.4, {"on 60 127", "on 61 40", "out 64 80", "out 66 90"}},
                {0.5, {"on 108 70", "on 101 30", "on 30 0"}}, {0.4, {"on 84 20", "on 101 0"}},
                {0.4, {}}}),
        reference(u"caption"_s, u"Caption"_s, {620, 120}, {{0.5, {}}},
            {{0.2,
                 {"say We take it hand by hand, two bars at a time. Listen to the right hand "
                  "first, then play it back to me as slowly as you like."}},
                {0.5, {"word 49 6 300"}}, {0.3, {"word 56 2 150"}}, {0.15, {"word 59 3 150"}},
                {0.1, {}}}),
        referenceFlash(u"flashes-0"_s, "beat 0"),
        referenceFlash(u"flashes-1"_s, "beat 2"),
        referenceFlash(u"flashes-2"_s, "flash good"),
        referenceFlash(u"flashes-3"_s, "flash wrong"),
    };
    return scenes;
}

} // namespace

std::vector<SnapshotScene> snapshotScenes()
{
    std::vector<SnapshotScene> scenes{
        {.name = u"visualiser"_s,
            .steps = {{0, {"name Kelo|Ann", "window visual 1"}}},
            .shown = {{1, {}}},
            .sizes = pictureSizes},
        playing(u"visualiser-early"_s, 10.3, {"out 59 62", "out 67 80"}),
        playing(u"visualiser-late"_s, 30.66, {"out 57 70", "out 73 88"},
            {"say Now the left hand alone, and a little softer."}),
        playing(u"visualiser-paused"_s, 10.3, {}, {"paused 1"}),
        {.name = u"visualiser-offline"_s,
            .steps = {{0, {"window visual 1"}}},
            .offline = true,
            .sizes = pictureSizes},
        {.name = u"visualiser-duet"_s,
            .steps = {{0, {"buttons 108 107 105 103 101 100 98 96 95 93", "window visual 1"}}},
            .shown = {{0.1, {"on 48 96", "out 60 80"}}, {0.2, {"on 60 110", "on 64 70"}},
                {0.3, {"on 67 90", "out 72 90"}}, {0.25, {"on 48 0", "out 72 0"}}, {0.4, {}}},
            .sizes = pictureSizes},
        {.name = u"console-playing"_s,
            .steps = evening("idle"),
            .shown = {{0.1, {"on 48 96", "out 60 80", "out 61 80"}},
                {0.3, {"on 60 110", "on 108 70"}}, {0.3, {"on 67 90", "on 66 60"}},
                {0.2, {"on 48 0"}}, {0.5, {}}},
            .sizes = pictureSizes},
        speaking(u"caption"_s, false),
        speaking(u"caption-large"_s, true),
        {.name = u"caption-fading"_s,
            .steps = evening("idle"),
            .shown = {{1, {"say Good evening, Ann."}}, {1, {"done"}}, {2.8, {}}},
            .sizes = pictureSizes},
        flash(u"flash-beat"_s, "beat 0"),
        flash(u"flash-good"_s, "flash good"),
        flash(u"flash-wrong"_s, "flash wrong"),
        {.name = u"console"_s, .steps = evening("idle"), .shown = {{5, {}}}, .sizes = pictureSizes},
        {.name = u"console-compose"_s, .steps = evening("compose"), .shown = {{1, {}}}},
        {.name = u"console-teach"_s, .steps = evening("teach"), .shown = {{1, {}}}},
        {.name = u"console-jazz"_s,
            .steps = followedBy(evening("jazz"),
                {1,
                    {"jazz Swing feel|Shell voicings|The two five one|A walking bass|"
                     "Blues in F|Rootless chords"}}),
            .shown = {{1, {}}}},
        {.name = u"console-offline"_s,
            .steps = evening("idle"),
            .shown = {{5, {}}},
            .offline = true,
            .sizes = pictureSizes},
        {.name = u"console-update"_s,
            .steps = followedBy(evening("idle"),
                {1,
                    {"update 3.2|A new lesson on pedalling, quieter drums, and names are heard "
                     "better in a noisy room."}}),
            .shown = {{1, {}}}},
    };
    for (const double scale : {0.75, 1.5, 2.5})
        scenes.push_back(
            magnified({.name = u"console"_s, .steps = evening("idle"), .shown = {{5, {}}}}, scale));
    scenes.push_back(magnified(speaking(u"caption"_s, true), 2.5));
    scenes.push_back(
        magnified(playing(u"visualiser"_s, 10.3, {"say Now the left hand alone."}), 2.5));
    std::ranges::move(questions(), std::back_inserter(scenes));
    std::ranges::move(references(), std::back_inserter(scenes));
    return scenes;
}

} // namespace kelo
