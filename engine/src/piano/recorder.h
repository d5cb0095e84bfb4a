#pragma once

#include "midi/channel_message.h"
#include "music/piece.h"
#include "piano/take_store.h"

#include <array>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <optional>
#include <vector>

namespace kelo::engine {

/// Remembers what the player plays, pedals included, so that it can be kept afterwards. A take goes
/// from the first key after a long silence to the next such silence; a few stray keys are none.
/// Times are seconds of the monotonic clock.
class Recorder {
public:
    static constexpr std::size_t mostTakes = 10;
    static constexpr std::size_t fewestNotes = 4; ///< less is no take while there is another
    static constexpr double silence = 10; ///< seconds without a key that end a take
    static constexpr double rest = 2; ///< seconds without a key after which a take is written
    static constexpr std::size_t mostNotes = 20000; ///< a longer take keeps its beginning

    /// Goes on with the takes that lie in `folder` and writes to it; empty for no such folder.
    explicit Recorder(std::filesystem::path folder = {});
    ~Recorder();
    Recorder(const Recorder &) = delete;
    Recorder &operator=(const Recorder &) = delete;

    void play(ChannelMessage message, double now);

    /// The key that was pressed last at this pitch was no music after all.
    void takeBack(int pitch);

    /// The last thing played, as a piece that begins at 0; nothing before the first key.
    [[nodiscard]] std::optional<Piece> lastTake(double now) const;

    /// The last takes, newest first, at most `mostTakes`.
    [[nodiscard]] std::vector<Piece> takes(double now) const;

    /// Writes what has come to rest.
    void advance(double now);

    /// Tries again what could not be written. False while the disk would not have it.
    bool keep() { return store_.keep(); }
    [[nodiscard]] std::optional<double> deadline() const;

private:
    void key(int pitch, int velocity, double now);
    void begin(double now);
    void write(double now);
    [[nodiscard]] Piece current(double now) const;
    [[nodiscard]] bool stray() const { return notes_.size() < fewestNotes; }

    TakeStore store_;
    std::deque<TakeStore::Kept> finished_; ///< newest first
    std::uint64_t number_ = 0; ///< of the current take
    bool unwritten_ = false;

    // The current take.
    std::vector<Note> notes_;
    std::vector<TimedMessage> pedals_;
    std::array<std::optional<std::size_t>, 128> held_{}; ///< the note that each key holds
    std::array<unsigned char, 128> pedalsDown_{}; ///< by controller, whatever the take
    double begun_ = 0;
    double lastKey_ = 0;
};

} // namespace kelo::engine
