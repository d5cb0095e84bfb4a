#include "activities/compose_activity.h"

#include "activities/pieces.h"
#include "composing/accompaniment.h"
#include "composing/arrangements.h"
#include "composing/devices.h"
#include "composing/music_xml.h"
#include "composing/transcription.h"
#include "composing/variations.h"

#include <algorithm>
#include <utility>

namespace kelo::engine {

namespace {

constexpr std::size_t mostNotes = 4000; ///< of a phrase

std::string barsInWords(int bars)
{
    return std::to_string(bars) + (bars == 1 ? " bar" : " bars");
}

/// For who has not written anything yet.
Score defaultTheme()
{
    Score theme;
    theme.parts = {{"Melody"}};
    int at = 0;
    for (const int degree : {0, 2, 4, 2, 3, 1, 0, 0}) {
        theme.tones.push_back({at, ticksPerQuarter, pitchOf(theme.key, degree), 80, 0});
        at += ticksPerQuarter;
    }
    harmonise(theme);
    return theme;
}

} // namespace

void ComposeActivity::enter(const Moment &now)
{
    if (session_.composition)
        say("Compose. Your piece is here: " + barsInWords(session_.composition->bars())
                + ". Play on, or press Backspace for a new one.",
            now);
    else
        say("Compose. Play a theme. Space plays it back as a band, N says what you wrote.", now);
}

void ComposeActivity::leave(const Moment &now)
{
    writeDown(now);
    Activity::leave(now);
}

bool ComposeActivity::request(const Request &request, const Moment &now)
{
    static constexpr Handler<ComposeActivity> handlers[] = {
        {Action::PlayAsBand, &ComposeActivity::playAsBand},
        {Action::Start, &ComposeActivity::playAsBand},
        {Action::ReadBack, &ComposeActivity::readBack},
        {Action::NoteNames, &ComposeActivity::readBack},
        {Action::Variation, &ComposeActivity::variation},
        {Action::Next, &ComposeActivity::variation},
        {Action::SavePiece, &ComposeActivity::save},
        {Action::NewPiece, &ComposeActivity::newPiece},
        {Action::StartOver, &ComposeActivity::newPiece},
        {Action::Compose, &ComposeActivity::nextPiece},
        {Action::ComposingIdea, &ComposeActivity::idea},
        {Action::Again, &ComposeActivity::again},
        {Action::Stop, &ComposeActivity::stop},
        {Action::Lullaby, &ComposeActivity::lullaby},
        {Action::VideoGame, &ComposeActivity::videoGame},
        {Action::FilmScore, &ComposeActivity::filmScore},
    };
    return handle(*this, handlers, request, now);
}

void ComposeActivity::note(int pitch, int velocity, const Moment &now)
{
    if (session_.player.playing())
        return; // playing along writes nothing
    lastKey_ = now.uptime;
    if (velocity > 0) {
        if (phrase_.size() < mostNotes)
            phrase_.emplace_back(now.uptime, 0, pitch, velocity, 0, 0);
        return;
    }
    const auto held = std::find_if(phrase_.rbegin(), phrase_.rend(),
        [pitch](const Note &note) { return note.pitch == pitch && note.duration <= 0; });
    if (held != phrase_.rend())
        held->endAt(now.uptime);
}

void ComposeActivity::takeBack(int pitch, const Moment &)
{
    const auto last = std::ranges::find(phrase_.rbegin(), phrase_.rend(), pitch, &Note::pitch);
    if (last != phrase_.rend())
        phrase_.erase(std::next(last).base());
}

std::optional<double> ComposeActivity::deadline() const
{
    return phrase_.empty() ? std::nullopt : std::optional(lastKey_ + phraseEnds);
}

void ComposeActivity::advance(const Moment &now)
{
    if (example_ && !session_.host.speaking()) {
        const Score example = *std::exchange(example_, std::nullopt);
        session_.player.demonstrate(pieceOf(example), now.uptime);
    }
    const auto due = deadline();
    if (!due || now.uptime < *due)
        return;
    writeDown(now);
    say(barsInWords(session_.composition->bars()) + " in " + nameOf(session_.composition->key)
            + ".",
        now);
}

/// Puts what was played into bars after those that there are.
void ComposeActivity::writeDown(const Moment &now)
{
    if (phrase_.empty())
        return;
    for (Note &note : phrase_) {
        if (note.duration <= 0)
            note.endAt(now.uptime);
    }
    auto &composition = session_.composition;
    Score phrase = transcribe(phrase_, composition ? &*composition : nullptr);
    phrase_.clear();
    if (metre_)
        phrase.metre = *metre_;
    if (composition) {
        append(*composition, phrase);
        composition->key = tonalityOf(pieceOf(*composition).notes);
    } else {
        composition = std::move(phrase);
    }
    harmonise(*composition);
    variation_ = -1;
    keepDraft(session_);
}

bool ComposeActivity::hasPiece(const Moment &now)
{
    writeDown(now);
    if (!session_.composition)
        say("Nothing is written yet. Play a theme.", now);
    return session_.composition.has_value();
}

void ComposeActivity::play(const Score &score, const Moment &now)
{
    session_.heard = {score.title.empty() ? "Your piece" : score.title, pieceOf(score)};
    session_.player.start(session_.heard->piece, session_.heard->title, now.uptime);
}

void ComposeActivity::playAsBand(const Request &, const Moment &now)
{
    if (hasPiece(now))
        play(arrange(*session_.composition, Arrangement::Band), now);
}

void ComposeActivity::lullaby(const Request &, const Moment &now)
{
    if (hasPiece(now))
        play(arrange(*session_.composition, Arrangement::Lullaby), now);
}

void ComposeActivity::videoGame(const Request &, const Moment &now)
{
    if (hasPiece(now))
        play(arrange(*session_.composition, Arrangement::VideoGame), now);
}

void ComposeActivity::filmScore(const Request &, const Moment &now)
{
    if (hasPiece(now))
        play(arrange(*session_.composition, Arrangement::FilmScore), now);
}

void ComposeActivity::readBack(const Request &, const Moment &now)
{
    if (hasPiece(now))
        say(kelo::engine::readBack(*session_.composition), now);
}

Score ComposeActivity::forTwoHands() const
{
    Score score =
        variation_ < 0 ? *session_.composition : variationOf(*session_.composition, variation_);
    score.parts = {{"Right hand"}};
    accompany(
        score, {"Left hand"}, score.metre.beats == 3 ? Figure::Waltz : Figure::Broken, 48, 56);
    return score;
}

void ComposeActivity::variation(const Request &, const Moment &now)
{
    if (!hasPiece(now))
        return;
    variation_ = (variation_ + 1) % variationCount;
    say("Your piece " + std::string(variationName(variation_)) + ".", now);
    play(forTwoHands(), now);
}

bool ComposeActivity::saveFiles(const Moment &now) const
{
    Score score = forTwoHands();
    score.title = "Composed " + stampOf(now);
    const auto midi = midiOf(score);
    const bool played =
        keepFile(session_, score.title, ".mid", std::string(midi.begin(), midi.end()));
    const bool written = keepFile(session_, score.title, ".musicxml", musicXml(score));
    refreshSongs(session_);
    return played && written;
}

void ComposeActivity::save(const Request &, const Moment &now)
{
    if (hasPiece(now))
        say(saveFiles(now) ? "Saved among your songs, as MIDI and as a score."
                           : "I couldn't write it to the songs folder.",
            now);
}

void ComposeActivity::newPiece(const Request &request, const Moment &now)
{
    if (request.metre)
        metre_ = request.metre;
    phrase_.clear();
    variation_ = -1;
    session_.player.stop();
    session_.composition.reset();
    keepDraft(session_);
    say("A new piece. Play a theme.", now);
}

/// Unlike starting over it loses nothing.
void ComposeActivity::nextPiece(const Request &request, const Moment &now)
{
    writeDown(now);
    if (session_.composition && !saveFiles(now)) {
        say("I couldn't save your piece, so I keep it here.", now);
        return;
    }
    newPiece(request, now);
}

void ComposeActivity::idea(const Request &, const Moment &now)
{
    writeDown(now);
    session_.player.stop();
    const Device &device = deviceAt(idea_++);
    const Score theme = session_.composition ? *session_.composition : defaultTheme();
    example_ = device.apply(theme);
    say(std::string(device.name) + ". " + std::string(device.lesson), now);
}

void ComposeActivity::again(const Request &, const Moment &now)
{
    session_.player.again(now.uptime);
}

void ComposeActivity::stop(const Request &, const Moment &)
{
    example_.reset();
    session_.player.stop();
    session_.metronome.stop();
}

std::string ComposeActivity::place() const
{
    return session_.composition
        ? "You are composing. Your piece has " + barsInWords(session_.composition->bars()) + "."
        : "You are composing. Nothing is written yet.";
}

std::string_view ComposeActivity::help() const
{
    return "Play a theme; each phrase is added to your piece. Space plays it back as a band, N "
           "says what you wrote, right plays the next variation, left saves it. T teaches a "
           "composing idea on your theme. Return stops the sound, Backspace starts over. Zero "
           "goes home.";
}

std::string_view ComposeActivity::suggestions() const
{
    return "play it as a band; say what I wrote; next variation; make it a lullaby; make it epic; "
           "a composing idea; save my piece; or new piece";
}

} // namespace kelo::engine
