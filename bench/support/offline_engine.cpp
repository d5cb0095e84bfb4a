#include "support/offline_engine.h"

#include <QElapsedTimer>
#include <QThread>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <utility>

namespace kelo::bench {

using namespace engine;

namespace {

/// Of this thread, in seconds.
double processorTime()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

} // namespace

OfflineEngine::OfflineEngine(std::function<void(std::string_view)> lines)
    : wire_(std::move(lines))
    , mixer_(std::make_unique<Synth>(std::vector<std::string>{
                 "/usr/share/sounds/sf2/default-GM.sf2", "/usr/share/sounds/sf2/TimGM6mb.sf2"}),
          clock_)
    , assistant_({wire_, speaker_, player_, metronome_, band_, through_, mixer_.keys(), library_,
                     desk_, [](const std::filesystem::path &) { return false; }},
          {home_ / "profile.json", home_ / "commands.html", home_ / "songs", home_ / "takes",
              home_ / "composition.json", home_ / "progress.json", home_ / "practice.db", home_},
          1)
{
}

Moment OfflineEngine::moment() const
{
    using namespace std::chrono;
    constexpr auto evening = local_days(year(2026) / 3 / 7) + hours(20);
    return {now_, evening + std::chrono::seconds(static_cast<int>(now_))};
}

void OfflineEngine::begin()
{
    assistant_.begin("Stage Piano", false, moment());
}

void OfflineEngine::take(const Input &input)
{
    assistant_.take(input, moment());
}

void OfflineEngine::press(int pitch, int velocity)
{
    assistant_.takePiano(
        {0x90, static_cast<unsigned char>(pitch), static_cast<unsigned char>(velocity)}, moment());
}

double OfflineEngine::step()
{
    const double before = processorTime();
    mixer_.render(left_, right_, now_);
    longestRender_ = std::max(longestRender_, processorTime() - before);
    now_ += seconds(block);
    QElapsedTimer timer;
    timer.start();
    assistant_.advance(moment());
    const auto took = static_cast<double>(timer.nsecsElapsed()) / 1e9;
    if (speaker_.speaking())
        QThread::usleep(100); // the voice is made on a thread of its own
    return took;
}

} // namespace kelo::bench
