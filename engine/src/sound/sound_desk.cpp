#include "sound/sound_desk.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace kelo::engine {

SoundDesk::SoundDesk(Mixer &mixer, std::vector<Soundfont> available, const std::string &playing,
    std::function<void()> ready)
    : mixer_(mixer)
    , soundfonts_(std::move(available))
    , ready_(std::move(ready))
{
    percents_.fill(100);
    std::error_code error;
    for (std::size_t i = 0; i < soundfonts_.size(); ++i) {
        if (!playing.empty() && std::filesystem::equivalent(soundfonts_[i].file, playing, error))
            playing_ = i;
    }
}

void SoundDesk::setLoudness(Fader fader, int percent)
{
    int &kept = percents_[static_cast<std::size_t>(fader)];
    kept = std::clamp(percent, 0, loudest);
    mixer_.setLoudness(fader, static_cast<float>(kept) / 100);
}

bool SoundDesk::choose(std::size_t soundfont)
{
    if (soundfont >= soundfonts_.size() || loading_.valid())
        return false;
    wanted_ = soundfont;
    loading_ = std::async(
        std::launch::async, [file = soundfonts_[soundfont].file.string(), ready = ready_] {
            auto synth = std::make_unique<Synth>(std::span(&file, 1));
            ready();
            return synth;
        });
    return true;
}

std::optional<SoundDesk::Loaded> SoundDesk::advance()
{
    mixer_.dropReplacedInstruments();
    if (!loading_.valid()
        || loading_.wait_for(std::chrono::seconds(0)) != std::future_status::ready)
        return {};
    auto synth = loading_.get();
    const bool works = synth->sounds();
    if (works) {
        mixer_.setInstruments(std::move(synth));
        playing_ = wanted_;
    }
    return Loaded{wanted_, works};
}

} // namespace kelo::engine
