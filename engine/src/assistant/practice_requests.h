#pragma once

#include "activities/activity.h"

#include <string>

namespace kelo::engine {

/// What is remembered of the player's practice: the plan, how it goes, and what the player wants
/// done with it.
class PracticeRequests {
public:
    explicit PracticeRequests(Session &session)
        : session_(session)
    {
    }

    void plan(const Request &request, const Moment &now);
    void report(const Request &request, const Moment &now);
    void lead(const Request &request, const Moment &now);
    void forget(const Request &request, const Moment &now);
    void exportAll(const Request &request, const Moment &now);

    static constexpr Handler<PracticeRequests> handlers[] = {
        {Action::PracticePlan, &PracticeRequests::plan},
        {Action::PracticeReport, &PracticeRequests::report},
        {Action::LeadPractice, &PracticeRequests::lead},
        {Action::ForgetPiece, &PracticeRequests::forget},
        {Action::ExportPractice, &PracticeRequests::exportAll},
    };

private:
    Session &session_;
    std::string leaving_; ///< the piece that is to be forgotten
    bool sure_ = false; ///< it was asked for a second time
};

} // namespace kelo::engine
