#pragma once

#include "activities/teaching_activity.h"
#include "lessons/attempt.h"

namespace kelo::engine {

/// The jazz course: an idea that is heard, played in three keys, then tried over a band.
class JazzActivity : public TeachingActivity {
public:
    /// `number` of the lesson, from 0; else the one where the course was left.
    JazzActivity(Session &shared, std::optional<std::size_t> number);

    /// Tells the display the names of all lessons.
    static void tellLessons(const Session &session);

    void enter(const Moment &now) override;
    void leave(const Moment &now) override;
    bool request(const Request &request, const Moment &now) override;
    void advance(const Moment &now) override;
    [[nodiscard]] std::optional<double> deadline() const override;

    [[nodiscard]] std::string_view mode() const override { return "jazz"; }
    [[nodiscard]] unsigned where() const override { return InJazz; }
    [[nodiscard]] std::string place() const override;
    [[nodiscard]] std::string_view help() const override;
    [[nodiscard]] std::string_view suggestions() const override;

private:
    [[nodiscard]] Piece example() const override;
    void listen(const Moment &now) override;
    [[nodiscard]] bool listening() const override;
    [[nodiscard]] Reply press(int pitch, const Moment &now) override;

    void open(const Request &request, const Moment &now);
    void jam(const Request &request, const Moment &now);
    void idea(const Request &request, const Moment &now);
    void startOver(const Request &request, const Moment &now);
    void again(const Request &request, const Moment &now);
    void next(const Request &request, const Moment &now);
    void previous(const Request &request, const Moment &now);
    void stopBand(const Request &request, const Moment &now);
    void names(const Request &request, const Moment &now);
    void goOn();
    [[nodiscard]] std::size_t heardKey() const;
    void begin(std::size_t number, const Moment &now);
    [[nodiscard]] Reply judged(Attempt::State state);

    std::size_t number_ = 0; ///< of the lesson, from 0
    std::size_t key_ = 0; ///< which of the keys; past the last the band plays
    std::optional<Attempt> attempt_;
    double missedAt_ = 0;
    bool band_ = false; ///< it plays, or is about to
};

} // namespace kelo::engine
