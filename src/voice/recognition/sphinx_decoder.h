#pragma once

#include "voice/name/name_doubt.h"
#include "voice/recognition/speech_decoder.h"
#include "voice/recognition/sphinx_models.h"
#include "voice/recognition/sphinx_requests.h"
#include "voice/recognition/sphinx_utterance.h"

#include <QStringList>

#include <memory>
#include <optional>
#include <stop_token>

namespace kelo {

/// The PocketSphinx library's decoder: what it is to expect, and what it hears in an utterance.
class SphinxDecoder final : public SpeechDecoder {
public:
    /// Reads the English model in `directory`; takes half a second and 100 MB. Null when that
    /// fails or `stop` is requested.
    static std::unique_ptr<SphinxDecoder> load(
        const QString &directory, const std::stop_token &stop = {});
    ~SphinxDecoder() override;
    Q_DISABLE_COPY_MOVE(SphinxDecoder)

    /// The general dictionary that comes with the model.
    static QString dictionaryIn(const QString &directory);

    /// 10 ms go by for new phrases and 0.3 s for a new name or new words. Tells when a taught model
    /// is damaged and left out, or when what was expected before still is since there is no room
    /// for anything new.
    std::optional<QString> expect(const std::optional<TaughtModel> &taught,
        const QStringList &phrases, const std::stop_token &stop = {}) override;

    void begin(const std::stop_token &stop = {}) override;
    bool process(const Samples &samples) override;
    /// A doubtful name is left out.
    [[nodiscard]] QStringList words() const override;
    /// An utterance with the name is heard again for the name alone and, when that leaves doubts,
    /// as if no name had been taught; that takes a tenth of its length. What follows a name that is
    /// believed is heard again for the phrases.
    void end() override;
    void abandon() override;

    /// How much sound has been searched for words so far, what was heard again included.
    [[nodiscard]] double secondsSearched() const;

private:
    SphinxDecoder(std::unique_ptr<SphinxModels> models, QString directory);

    [[nodiscard]] const QString &name() const;
    [[nodiscard]] QList<QStringList> requestsAmong(const QStringList &phrases) const;
    bool believeName(const std::vector<AccountedWord> &account);
    [[nodiscard]] bool callsClearly(const std::vector<AccountedWord> &account) const;
    void hearRequest(const std::vector<AccountedWord> &account);

    std::unique_ptr<SphinxModels> models_;
    SphinxUtterance utterance_;
    SphinxRequests requests_;
    QString directory_;
    std::optional<TaughtModel> taught_; ///< asked for last
    QStringList phrases_; ///< likewise
    bool stale_ = false; ///< what was asked for last has not been looked at
    bool spoke_ = false;
    std::stop_token stop_; ///< of this utterance
    std::optional<QStringList> words_; ///< of an ended utterance
};

} // namespace kelo
