#pragma once

#include <QByteArray>
#include <QStringList>

#include <memory>
#include <stop_token>

struct ngram_model_s;
struct ps_decoder_s;

namespace kelo {

/// What the PocketSphinx library searches with: its dictionary and the language models that stand
/// beside each other, those of general English, of a taught name and of the phrases expected.
class SphinxModels {
public:
    struct Expectation {
        QString name; ///< as it was taught; empty without one
        QString token; ///< the decoder's word for it
        QByteArray taught; ///< ARPA
        QStringList phrases;
    };

    /// As `SphinxDecoder::load`.
    static std::unique_ptr<SphinxModels> load(
        const QString &directory, const std::stop_token &stop);
    ~SphinxModels();
    Q_DISABLE_COPY_MOVE(SphinxModels)

    [[nodiscard]] ps_decoder_s *decoder() const;
    [[nodiscard]] bool knows(const QString &token) const;
    /// Adds those pronunciations that are not there yet, the second and further ones as "word(2)".
    void addWord(const QString &token, const QList<QStringList> &pronunciations);
    /// Builds the models for `next`; when there is no room for them those of before stay. With
    /// `newWords`, words were added that no model was built with.
    bool expect(const Expectation &next, bool newWords);
    [[nodiscard]] const Expectation &expected() const { return expected_; }

    /// For what comes next.
    void searchForWords() const;
    /// From here on as if no name had been taught and no phrase were expected; or as always.
    void listenForAll(bool all) const;
    /// Whether general English has the name, too.
    [[nodiscard]] bool nameIsAWord() const;

    static constexpr auto wordSearch = "words";
    static constexpr auto nameSearch = "name";

private:
    struct Library;

    explicit SphinxModels(std::unique_ptr<Library> library);

    [[nodiscard]] ngram_model_s *modelOf(const QByteArray &arpa) const;
    [[nodiscard]] ngram_model_s *modelOfPhrases(const Expectation &expectation) const;
    bool exchangePhrases(const Expectation &next);
    bool takeUp(const Expectation &next);
    [[nodiscard]] bool makeNameSearch(const QString &token) const;

    std::unique_ptr<Library> library_;
    Expectation expected_;
};

} // namespace kelo
