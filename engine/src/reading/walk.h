#pragma once

#include "music/written.h"
#include "written/phrases.h"

#include <memory>
#include <optional>
#include <vector>

namespace kelo::engine {

enum class WalkUnit { Note, Beat, Bar, Phrase };

/// A reader's way through a written piece, for one hand or both.
class Walk {
public:
    explicit Walk(std::shared_ptr<const WrittenPiece> piece);

    void setUnit(WalkUnit unit);
    [[nodiscard]] WalkUnit unit() const { return unit_; }

    /// False where these hands have no note.
    bool setHands(Hands hands);
    [[nodiscard]] Hands hands() const { return hands_; }

    /// What the reader stands on.
    [[nodiscard]] Stretch here() const { return places_[place_]; }
    /// The step before or after it; nothing at the ends.
    [[nodiscard]] std::optional<Stretch> beside(int by) const;

    /// False where there is nothing more in that direction.
    bool step(int by);

    /// To the beginning of a printed bar; false where there is none.
    bool toBar(int number);

    /// The bar that a place belongs to.
    [[nodiscard]] const WrittenBar &barAt(int at) const;
    /// The printed number of a bar, or nothing.
    [[nodiscard]] std::optional<Stretch> bar(int number) const;
    [[nodiscard]] int lastBar() const { return piece_->bars.back().number; }

    /// The notes of these hands that begin in a stretch, those that are only held on aside.
    [[nodiscard]] std::vector<const WrittenNote *> notesIn(Stretch stretch, Hands hands) const;
    /// The notes of all hands that sound at a place.
    [[nodiscard]] std::vector<const WrittenNote *> soundingAt(int at) const;

    [[nodiscard]] const WrittenPiece &piece() const { return *piece_; }

private:
    [[nodiscard]] bool wanted(const WrittenNote &note, Hands hands) const;
    [[nodiscard]] std::vector<Stretch> notePlaces() const;
    [[nodiscard]] std::vector<Stretch> places(WalkUnit unit) const;
    void stand(int at);

    std::shared_ptr<const WrittenPiece> piece_;
    WalkUnit unit_ = WalkUnit::Note;
    Hands hands_ = Hands::Both;
    std::vector<Stretch> places_; ///< never empty, in the order of time
    std::size_t place_ = 0;
};

/// The beats of a bar that are felt: six eighths have two.
[[nodiscard]] int pulseOf(const WrittenBar &bar);

} // namespace kelo::engine
