#pragma once

#include "voice/capture/audio.h"
#include "voice/name/name_doubt.h"

#include <QStringList>

#include <stop_token>
#include <vector>

struct ps_decoder_s;

namespace kelo {

/// One utterance after the other on a decoder of the PocketSphinx library. Keeps the features of
/// the last one, 5 kB a second, so that it can be heard again with another of the decoder's
/// searches. Words are as the search finds them, without the number of their pronunciation.
class SphinxUtterance {
public:
    /// `decoder` outlives this.
    explicit SphinxUtterance(ps_decoder_s *decoder);

    /// Once `stop` is requested the utterance is not wanted any more: nothing of it is searched
    /// from then on, and what is known of it says nothing.
    void begin(const std::stop_token &stop = {});
    void add(const Samples &sound);
    /// When the utterance turns out to be far louder or quieter than those before it made expect,
    /// as a first one mostly does, it is heard again.
    void end();
    /// The utterance is over and of no interest.
    void abandon();
    /// Whether there is a voice now.
    [[nodiscard]] bool inSpeech() const;

    /// The ended utterance from frame `first` on, with the search of that name, which stays the
    /// decoder's. It is heard as it was the first time and leaves no trace in what comes after it.
    void again(const char *search, int first = 0) const;
    /// The same for what follows a name, which needs more to be known of the voice than a name
    /// does: while little has been heard, typical speech counts beside it.
    void requestAgain(const char *search, int first) const;

    [[nodiscard]] QStringList words() const;
    /// How likely they are, by sound and language model as the decoder weighs them, as a natural
    /// logarithm. To be compared among searches of one utterance.
    [[nodiscard]] double score() const;
    /// The same with pauses, noises and places.
    [[nodiscard]] std::vector<AccountedWord> account() const;
    /// After a search for key phrases: how much better one of them fits what overlaps with the
    /// frames from `first` to `last` than any row of sounds does, as a natural logarithm a frame.
    [[nodiscard]] double clarity(int first, int last) const;

private:
    /// What the library takes from the features: a mean that follows what it hears.
    struct Mean {
        std::vector<float> now;
        std::vector<float> sum;
        int frames = 0; ///< in the sum
    };

    void repeat(const Mean &expected, int first) const;
    void process(std::vector<float> features) const;
    [[nodiscard]] std::size_t width() const;
    [[nodiscard]] Mean mean() const;
    [[nodiscard]] Mean withTypical(Mean mean) const;
    void setMean(const Mean &mean) const;

    ps_decoder_s *decoder_;
    std::vector<float> typical_; ///< the mean of what the model was made with
    std::stop_token stop_;
    Mean before_; ///< with which the utterance was heard
    bool hardlyKnown_ = false; ///< the voice, when the utterance began
    std::vector<float> features_; // frame after frame
};

} // namespace kelo
