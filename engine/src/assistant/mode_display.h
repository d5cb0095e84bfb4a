#pragma once

#include "activities/activity.h"

#include <string>

namespace kelo::engine {

/// Tells the display the mode, what the recogniser may expect in it, and the time of day, each
/// when it has changed.
class ModeDisplay {
public:
    explicit ModeDisplay(Session &session)
        : session_(session)
    {
    }

    /// `talking`: talk mode is on, beside whatever the activity is.
    void show(const Activity &activity, bool talking);

    void showTime(const Moment &now);

    /// The word of the last "@mode".
    [[nodiscard]] const std::string &mode() const { return mode_; }

private:
    Session &session_;
    std::string mode_;
    std::string phrases_; ///< of the last "@vocab"
    int minute_ = -1; ///< of the day
};

} // namespace kelo::engine
