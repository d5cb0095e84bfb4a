#pragma once

#include "activities/activity.h"

namespace kelo::engine {

/// Nothing in particular: from here everything can be opened.
class HomeActivity : public Activity {
public:
    using Activity::Activity;

    bool request(const Request &request, const Moment &now) override;

    [[nodiscard]] bool busy() const override { return false; }
    [[nodiscard]] std::string place() const override { return "You are at home."; }
    [[nodiscard]] std::string_view help() const override;
    [[nodiscard]] std::string_view suggestions() const override;

private:
    void start(const Request &request, const Moment &now);
    void agree(const Request &request, const Moment &now);
    void open(const Request &request, const Moment &now);
    void next(const Request &request, const Moment &now);
    void previous(const Request &request, const Moment &now);
    void list(const Request &request, const Moment &now);
    void step(std::size_t by, const Moment &now);

    std::size_t choice_ = 0;
    bool named_ = false; ///< the choice was said
};

} // namespace kelo::engine
