#pragma once

#include "studio/studio_control.h"

#include <cstdint>
#include <deque>
#include <filesystem>
#include <string>

namespace kelo::engine {

/// REAPER, by way of the script that it runs: two files in one folder, one for each direction. The
/// other end answers while the number in its file goes on changing. Seconds of the monotonic clock.
class ReaperControl : public StudioControl {
public:
    static constexpr double lookEvery = 1;
    static constexpr double patience = 3.5; ///< the script writes twice a second

    /// `firstNumber` exceeds those of all commands before: the script obeys none twice.
    ReaperControl(std::filesystem::path folder, std::uint64_t firstNumber);

    [[nodiscard]] bool connected() const override { return connected_; }
    bool send(StudioCommand command) override;

    void advance(double now);

private:
    static constexpr std::size_t mostWaiting = 16;

    [[nodiscard]] std::string beat() const;

    std::filesystem::path folder_;
    std::uint64_t number_;
    std::deque<std::string> waiting_; ///< the newest commands, in case the script is late
    bool connected_ = false;
    bool looked_ = false;
    std::string lastBeat_;
    double beatAt_ = 0;
    double nextLook_ = 0;
};

} // namespace kelo::engine
