#include "voice/recognition/decoding_session.h"

#include "voice/name/taught_name.h"

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

// Seconds of sound.
constexpr double partialsEvery = 0.1;
constexpr double longestUtterance = 30; // the library gives up the process on far longer ones

/// The code that every user of recognisers knows for it.
const RecogniserError nothingSaid{u"kAFAssistantErrorDomain"_s, 1110, u"no speech was heard"_s};

} // namespace

DecodingSession::DecodingSession(
    SpeechDecoder &decoder, SoundCleaner &cleaner, std::shared_ptr<DecodingTask> task)
    : decoder_(decoder)
    , cleaner_(cleaner)
    , task_(std::move(task))
    , name_(task_->request.taught ? task_->request.taught->name : QString())
    , token_(nameToken(name_))
    , steady_(token_)
{
    const RecognitionRequest &request = task_->request;
    if (const auto problem =
            decoder_.expect(request.taught, request.contextualStrings, task_->abandoned()))
        task_->warn(*problem);
    begin();
}

DecodingSession::~DecodingSession()
{
    if (!ended_)
        decoder_.abandon();
}

void DecodingSession::begin()
{
    cleaner_.interrupt();
    decoder_.begin(task_->abandoned());
}

void DecodingSession::hear(const Samples &samples)
{
    const bool goesOn = decoder_.process(cleaner_.clean(samples));
    heard_ += secondsOf(samples);
    if (!goesOn || heard_ > longestUtterance) {
        conclude();
    } else if (heard_ - asked_ >= partialsEvery) {
        asked_ = heard_;
        const QStringList &shown = steady_.update(decoder_.words(), heard_);
        if (shown != lastShown_ && !shown.isEmpty())
            task_->tell(Transcript{written(words_ + shown), false}, std::nullopt);
        lastShown_ = shown;
    }
}

void DecodingSession::finish()
{
    decoder_.end();
    words_ += decoder_.words();
    close();
    if (words_.isEmpty())
        task_->tell(std::nullopt, nothingSaid);
    else
        task_->tell(Transcript{written(words_), true}, std::nullopt);
}

/// Ends the utterance. A noise without words is no result: listening goes on. A recording is
/// heard to its end.
void DecodingSession::conclude()
{
    decoder_.end();
    words_ += decoder_.words();
    if (!words_.isEmpty() && task_->request.live) {
        close();
        task_->tell(Transcript{written(words_), true}, std::nullopt);
        return;
    }
    heard_ = asked_ = 0;
    steady_ = PartialStabiliser(token_);
    lastShown_.clear();
    begin();
}

void DecodingSession::close()
{
    ended_ = true;
    task_->finish();
}

/// The name as the user writes it, the other words as the decoder does.
QString DecodingSession::written(QStringList words) const
{
    if (!token_.isEmpty()) {
        for (QString &word : words)
            word = word == token_ ? name_ : word;
    }
    return words.join(u' ');
}

} // namespace kelo
