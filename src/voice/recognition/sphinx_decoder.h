#pragma once

#include "voice/name/name_doubt.h"
#include "voice/recognition/comfort_noise.h"
#include "voice/recognition/noise_suppressor.h"
#include "voice/recognition/recogniser.h"

#include <QStringList>

#include <memory>
#include <optional>
#include <stop_token>

struct ngram_model_s;

namespace kelo {

/// The PocketSphinx library's decoder and its language models. Belongs to one thread, the one that
/// made it. Between `begin` and `end` lies one utterance.
class SphinxDecoder {
public:
    /// Reads the English model in `directory`; takes half a second and 100 MB. Null when that
    /// fails or `stop` is requested.
    static std::unique_ptr<SphinxDecoder> load(
        const QString &directory, const std::stop_token &stop = {});
    ~SphinxDecoder();
    Q_DISABLE_COPY_MOVE(SphinxDecoder)

    /// The general dictionary that comes with the model.
    static QString dictionaryIn(const QString &directory);

    /// What to expect from the next utterance on. Nothing is done for what is expected already,
    /// 10 ms go by for new phrases and 0.3 s for a new name or new words; after `stop` it is left
    /// as it was. Returns what the user should know: that a taught model is damaged and left out,
    /// or that what was expected before still is since there is no room for anything new.
    std::optional<QString> expect(const std::optional<TaughtModel> &taught,
        const QStringList &phrases, const std::stop_token &stop = {});

    /// Nothing of the utterance is wanted any more once `stop` is requested.
    void begin(const std::stop_token &stop = {});
    /// False once the speaker has fallen silent after having spoken.
    bool process(const Samples &samples);
    /// What was said so far, the decoder's own words; a doubtful name is left out.
    [[nodiscard]] QStringList words() const;
    /// Ends the utterance; `words` has the last word on it then. One with the name is heard again
    /// for the name alone and, when that leaves doubts, as if no name had been taught; that takes
    /// a tenth of its length.
    void end();
    /// Ends it, unheard from here on.
    void abandon();

    /// How much sound has been searched for words so far, what was heard again included.
    [[nodiscard]] double secondsSearched() const;

private:
    struct Library;
    struct Expectation;

    explicit SphinxDecoder(std::unique_ptr<Library> library);

    void addWord(const QString &token, const QList<QStringList> &pronunciations);
    [[nodiscard]] bool knows(const QString &token) const;
    [[nodiscard]] ngram_model_s *modelOf(const QByteArray &arpa) const;
    [[nodiscard]] ngram_model_s *modelOfPhrases(const Expectation &expectation) const;
    bool exchangePhrases(const Expectation &expectation);
    bool takeUp(const Expectation &expectation);
    bool makeNameSearch(const QString &token) const;
    [[nodiscard]] bool callsClearly(const std::vector<AccountedWord> &account) const;
    [[nodiscard]] Samples centred(Samples samples);

    std::unique_ptr<Library> library_;
    QString directory_;
    std::optional<TaughtModel> taught_; ///< asked for last
    QStringList phrases_; ///< likewise
    bool stale_ = false; ///< what was asked for last has not been looked at
    std::unique_ptr<Expectation> expected_; ///< what is searched for
    NoiseSuppressor suppressor_;
    ComfortNoise tone_;
    std::optional<double> lastInput_; ///< of this utterance
    double centred_ = 0; ///< the same, without its offset
    bool spoke_ = false;
    std::stop_token stop_; ///< of this utterance
    std::optional<QStringList> words_; ///< of an ended utterance
};

} // namespace kelo
