#pragma once

#include "activities/activity.h"
#include "lessons/reply.h"

namespace kelo::engine {

/// What teachers have in common: words, then an example, then it is the player's turn.
class TeachingActivity : public Activity {
public:
    using Activity::Activity;

    bool pause(const Moment &now) override;
    void resume(const Moment &now) override;
    [[nodiscard]] bool paused() const override { return paused_; }
    void note(int pitch, int velocity, const Moment &now) override;
    void takeBack(int pitch, const Moment &now) override;
    void advance(const Moment &now) override;
    [[nodiscard]] bool everyKeyIsMusic() const override { return true; }
    [[nodiscard]] bool presenting() const override
    {
        return exampleWaits_ || session_.player.playing();
    }

protected:
    /// When an example that nothing is said before begins.
    [[nodiscard]] std::optional<double> exampleDeadline() const
    {
        return exampleWaits_ && !paused_ && !session_.host.speaking() ? std::optional(exampleAt_)
                                                                      : std::nullopt;
    }
    /// Sounds tell when it is the player's turn, and what was right.
    [[nodiscard]] virtual bool givesCues() const { return false; }

    /// Flashes, says the words and has the example wait for their end.
    void teach(const Reply &reply, const Moment &now);
    /// Silences the example; the player's turn comes at once.
    void endExample();
    /// The example at once, without words.
    void demonstrate(const Moment &now);

    [[nodiscard]] virtual Piece example() const = 0;
    /// The player knows how to begin: with this key one need not wait for the end of the words.
    [[nodiscard]] virtual bool entersWith(int) const { return false; }
    /// It is the player's turn from now on.
    virtual void listen(const Moment &now) = 0;
    [[nodiscard]] virtual bool listening() const = 0;
    [[nodiscard]] virtual Reply press(int pitch, const Moment &now) = 0;
    /// How strong a key of the player is, and with 0 that it is let go.
    virtual void touch(int, int, const Moment &) { }
    /// There is nothing left to teach.
    virtual void over(const Moment &) { }

private:
    bool exampleWaits_ = false; ///< for the words before it
    double exampleAt_ = 0; ///< not before
    bool paused_ = false;
};

} // namespace kelo::engine
