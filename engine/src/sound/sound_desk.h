#pragma once

#include "sound/fader.h"
#include "sound/mixer.h"
#include "sound/soundfonts.h"

#include <array>
#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kelo::engine {

/// What a user may change about the sound: how loud each thing is, and whose instruments play.
class SoundDesk {
public:
    static constexpr int loudest = 200; ///< percent

    /// `available`: the soundfonts there are, of which `playing` is the file in use. `ready` is
    /// called on another thread when `advance` has something to tell.
    SoundDesk(Mixer &mixer, std::vector<Soundfont> available, const std::string &playing,
        std::function<void()> ready);

    /// 100 is the balance that is meant; kept within 0 and `loudest`.
    void setLoudness(Fader fader, int percent);
    [[nodiscard]] int loudness(Fader fader) const
    {
        return percents_[static_cast<std::size_t>(fader)];
    }

    [[nodiscard]] const std::vector<Soundfont> &soundfonts() const { return soundfonts_; }

    /// Which of them plays; nothing where none does.
    [[nodiscard]] std::optional<std::size_t> playing() const { return playing_; }

    /// Loads another one, which takes a while; what plays goes on. False where there is no such
    /// soundfont or one is being loaded already.
    bool choose(std::size_t soundfont);

    /// What has come of that: the soundfont that plays now.
    struct Loaded {
        std::size_t soundfont = 0;
        bool works = false; ///< else the old one goes on
    };
    [[nodiscard]] std::optional<Loaded> advance();

private:
    Mixer &mixer_;
    std::vector<Soundfont> soundfonts_;
    std::function<void()> ready_;
    std::array<int, faders> percents_{};
    std::optional<std::size_t> playing_;
    std::size_t wanted_ = 0;
    std::future<std::unique_ptr<Synth>> loading_;
};

} // namespace kelo::engine
