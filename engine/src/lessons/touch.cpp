#include "lessons/touch.h"

#include "listen/words.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <map>

namespace kelo::engine {

namespace {

constexpr double bounce = 0.08; ///< seconds in which no finger means a key twice
constexpr double handsApart = 0.5; ///< seconds that a key may come before the step before it
constexpr double stillHeld = std::numeric_limits<double>::infinity();

// Of loudness, as MIDI counts it.
constexpr std::size_t enoughNotes = 4;
constexpr double covers = 12; ///< the left hand beside the right one
constexpr double hides = 24;
constexpr double barOff = 12;
constexpr double noteOff = 28;

// Of what is held, in parts of the time until the next note.
constexpr double writtenJoined = 0.8;
constexpr double writtenShort = 0.6;
constexpr double brokenGap = 0.2;
constexpr double blurred = 0.5;
constexpr double tooLong = 0.85;
constexpr double heardGap = 0.05; ///< seconds
constexpr double heardBlur = 0.12;

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::ranges::nth_element(values, middle);
    return *middle;
}

/// What one hand plays together, and how long: written, and as it was played.
struct Chord {
    std::size_t step;
    Hands hand;
    std::vector<int> pitches;
    double writtenUntil;
    double at;
    double until;
};

bool share(const Chord &one, const Chord &other)
{
    return std::ranges::any_of(
        one.pitches, [&](int each) { return std::ranges::count(other.pitches, each) > 0; });
}

} // namespace

void Touch::key(int pitch, int velocity, double now)
{
    const auto before = std::find_if(
        keys_.rbegin(), keys_.rend(), [pitch](const Key &each) { return each.pitch == pitch; });
    const bool known = before != keys_.rend();
    if (velocity > 0 && known && now - before->at < bounce)
        before->until = stillHeld;
    else if (velocity > 0)
        keys_.push_back({pitch, velocity, now, stillHeld});
    else if (known && before->until == stillHeld)
        before->until = now;
}

/// Those that are judged: trills and what follows them are not.
std::vector<Touch::Note> Touch::notes() const
{
    std::vector<Note> found;
    std::vector<bool> used(keys_.size());
    double from = 0;
    for (std::size_t step = 0; step < steps_.size(); ++step) {
        const Step &each = steps_[step];
        const bool judged = each.ornaments.empty() && !each.tones.empty()
            && (step == 0 || steps_[step - 1].ornaments.empty());
        double first = stillHeld;
        for (std::size_t place = 0; place < each.pitches.size(); ++place) {
            for (std::size_t i = 0; i < keys_.size(); ++i) {
                const Key &key = keys_[i];
                if (used[i] || key.pitch != each.pitches[place] || key.at < from - handsApart)
                    continue;
                used[i] = true;
                first = std::min(first, key.at);
                if (judged)
                    found.push_back({step, place,
                        place < each.hands.size() ? each.hands[place] : Hands::Both, key});
                break;
            }
        }
        from = first == stillHeld ? from : first;
    }
    return found;
}

Touch::Verdict Touch::loudness() const
{
    const std::vector<Note> all = notes();
    if (all.size() < enoughNotes)
        return {};
    std::vector<double> off;
    std::map<Hands, std::vector<double>> ofHands;
    for (const Note &note : all) {
        off.push_back(note.key.velocity - steps_[note.step].tones[note.place].velocity);
        ofHands[note.hand].push_back(off.back());
    }
    std::map<Hands, double> usual;
    for (const auto &[hand, values] : ofHands)
        usual[hand] = median(values);
    if (usual.contains(Hands::Left) && usual.contains(Hands::Right)) {
        const double left = usual[Hands::Left] - usual[Hands::Right];
        if (left > covers)
            return {"Play the left hand softer: it covers the right one.", false};
        if (left < -hides)
            return {"The left hand may be a little louder.", false};
    }
    std::map<int, std::vector<double>> ofBars;
    std::size_t oddest = 0;
    for (std::size_t i = 0; i < all.size(); ++i) {
        off[i] -= usual[all[i].hand];
        ofBars[steps_[all[i].step].bar].push_back(off[i]);
        oddest = std::abs(off[i]) > std::abs(off[oddest]) ? i : oddest;
    }
    double most = 0;
    int bar = 0;
    for (const auto &[number, values] : ofBars) {
        const double each = values.size() > 1 ? median(values) : 0;
        if (std::abs(each) > std::abs(most)) {
            most = each;
            bar = number;
        }
    }
    if (std::abs(most) > barOff)
        return {"Bar " + numberInWords(bar) + " is written " + (most > 0 ? "softer." : "louder."),
            false};
    if (std::abs(off[oddest]) > noteOff)
        return {placeOf(steps_, all[oddest].step)
                + (off[oddest] > 0 ? " stood out." : " was hardly heard."),
            false};
    return {"The loudness was right."};
}

Touch::Verdict Touch::legato() const
{
    std::map<Hands, std::vector<Chord>> hands;
    for (const Note &note : notes()) {
        auto &chords = hands[note.hand];
        const double until = steps_[note.step].tones[note.place].until;
        if (chords.empty() || chords.back().step != note.step) {
            chords.push_back({note.step, note.hand, {}, until, note.key.at, note.key.until});
        }
        Chord &chord = chords.back();
        chord.pitches.push_back(note.key.pitch);
        chord.writtenUntil = std::max(chord.writtenUntil, until);
        chord.at = std::min(chord.at, note.key.at);
        chord.until = std::max(chord.until, note.key.until);
    }
    std::size_t joined = 0;
    std::size_t detached = 0;
    std::vector<Chord> broken;
    std::vector<Chord> held;
    std::vector<Chord> over;
    std::map<Hands, bool> joins;
    for (const auto &[hand, chords] : hands) {
        for (std::size_t i = 0; i + 1 < chords.size(); ++i) {
            const Chord &chord = chords[i];
            const Chord &next = chords[i + 1];
            const double written = (chord.writtenUntil - steps_[chord.step].at)
                / (steps_[next.step].at - steps_[chord.step].at);
            const double length = std::max(next.at - chord.at, 1e-3);
            const double gap = next.at - std::min(chord.until, next.at + length);
            if (written >= writtenJoined && !share(chord, next)) {
                ++joined;
                joins[hand] = true;
                if (gap > std::max(heardGap, brokenGap * length))
                    broken.push_back(chord);
                else if (chord.until != stillHeld && -gap > std::max(heardBlur, blurred * length))
                    over.push_back(chord);
            } else if (written <= writtenShort) {
                ++detached;
                if (length - gap > tooLong * length)
                    held.push_back(chord);
            }
        }
    }
    const auto many = [](std::size_t some, std::size_t of) { return some > 1 && some * 3 >= of; };
    const auto whose = [&](const std::vector<Chord> &some) -> std::string {
        const Hands hand = some.front().hand;
        const bool one =
            std::ranges::all_of(some, [hand](const Chord &each) { return each.hand == hand; });
        return !one || joins.size() < 2 ? "" : hand == Hands::Left ? "Left hand: " : "Right hand: ";
    };
    const auto sentence = [&](const std::vector<Chord> &some, std::string words) -> Verdict {
        const std::string hand = whose(some);
        if (hand.empty())
            words.front() = static_cast<char>(words.front() - 'a' + 'A');
        return {hand + words, false};
    };
    if (many(broken.size(), joined))
        return sentence(broken, "join the notes, hold each key until the next one sounds.");
    if (many(over.size(), joined))
        return sentence(over, "let go a little sooner, the notes run into each other.");
    if (many(held.size(), detached))
        return {"Play the short notes shorter.", false};
    if (!broken.empty())
        return {
            placeOf(steps_, broken.front().step) + ": hold it until the next one sounds.", false};
    if (!held.empty())
        return {placeOf(steps_, held.front().step) + " may be shorter.", false};
    return joined + detached < 2 ? Verdict{}
        : joined > 0             ? Verdict{"Nicely joined."}
                                 : Verdict{"Nicely short."};
}

} // namespace kelo::engine
