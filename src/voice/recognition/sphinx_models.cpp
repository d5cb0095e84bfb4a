#include "voice/recognition/sphinx_models.h"

#include "voice/language/language_model.h"
#include "voice/name/taught_name.h"
#include "voice/recognition/memory_file.h"
#include "voice/recognition/sphinx_decoder.h"

#include <QFile>

#include <pocketsphinx.h>
#include <sphinxbase/err.h>
#include <sphinxbase/ngram_model.h>

#include <vector>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

// Weights of the models beside each other. The library raises probabilities to the power of 6.5
// before it mixes them, so a small weight still counts for much.
constexpr float generalWeight = 1.0F;
constexpr float taughtWeight = 0.5F;
constexpr float phrasesWeight = 1.0F;

constexpr auto generalModel = "general";
constexpr auto phrasesModel = "phrases";
constexpr auto taughtModel = "taught";

/// Phrases shall help a word that was begun, not put words of theirs in place of others.
constexpr double lonePhraseWord = 0.01;

/// After the name, or once it is begun, a phrase is what will come, however many others there are.
constexpr double begunPhraseWord = 0.2;

/// A search for key phrases gives up on what is less likely by this than any row of sounds.
constexpr auto leastLikely = " /1e-80/\n";

/// The models that stand beside each other.
struct Mixture {
    explicit Mixture(bool taught)
    {
        if (taught) {
            names.push_back(taughtModel);
            weights.push_back(taughtWeight);
        }
    }

    std::vector<const char *> names{generalModel, phrasesModel};
    std::vector<float32> weights{generalWeight, phrasesWeight};
};

} // namespace

struct SphinxModels::Library {
    template <typename T, auto Free> struct Freeing {
        void operator()(T *object) const { Free(object); }
    };
    using Decoder = std::unique_ptr<ps_decoder_t, Freeing<ps_decoder_t, ps_free>>;
    using Config = std::unique_ptr<cmd_ln_t, Freeing<cmd_ln_t, cmd_ln_free_r>>;
    using LanguageModel = std::unique_ptr<ngram_model_t, Freeing<ngram_model_t, ngram_model_free>>;

    Config config;
    LanguageModel general;
    LanguageModel phrases; ///< those of the last rebuild, whose spellings `all` goes on using
    LanguageModel all; ///< the models beside each other, as searched
    Decoder decoder;
};

std::unique_ptr<SphinxModels> SphinxModels::load(
    const QString &directory, const std::stop_token &stop)
{
    err_set_logfp(nullptr); // for this thread
    const QByteArray acoustic = (directory + "/en-us"_L1).toUtf8();
    const QByteArray dictionary = SphinxDecoder::dictionaryIn(directory).toUtf8();
    const QByteArray general = (directory + "/en-us.lm.bin"_L1).toUtf8();
    for (const QByteArray &path : {acoustic, dictionary, general}) {
        if (!QFile::exists(QString::fromUtf8(path)))
            return nullptr;
    }
    auto library = std::make_unique<Library>();
    // The second pass costs a third of the time and half a second at the end of every phrase. Noise
    // is taken away once: done twice, weak voiced sounds go with it, and at 10 dB one Aria in five.
    // What the sounds to come speak against is searched less than the library would: a quarter to a
    // third of the time is saved, and neither names nor other words are lost.
    library->config.reset(cmd_ln_init(nullptr, ps_args(), TRUE, "-hmm", acoustic.constData(),
        "-dict", dictionary.constData(), "-fwdflat", "no", "-maxwpf", "20", "-pl_weight", "5",
        "-remove_noise", "no", nullptr));
    if (!library->config)
        return nullptr;
    library->decoder.reset(ps_init(library->config.get()));
    if (!library->decoder || stop.stop_requested())
        return nullptr;
    library->general.reset(ngram_model_read(library->config.get(), general.constData(), NGRAM_BIN,
        ps_get_logmath(library->decoder.get())));
    if (!library->general || stop.stop_requested())
        return nullptr;
    std::unique_ptr<SphinxModels> models(new SphinxModels(std::move(library)));
    if (!models->takeUp({}))
        return nullptr;
    return models;
}

SphinxModels::SphinxModels(std::unique_ptr<Library> library)
    : library_(std::move(library))
{
}

SphinxModels::~SphinxModels() = default;

ps_decoder_t *SphinxModels::decoder() const
{
    return library_->decoder.get();
}

// ---- words ----

bool SphinxModels::knows(const QString &token) const
{
    char *phones = ps_lookup_word(library_->decoder.get(), token.toUtf8().constData());
    ckd_free(phones);
    return phones;
}

void SphinxModels::addWord(const QString &token, const QList<QStringList> &pronunciations)
{
    ps_decoder_t *decoder = library_->decoder.get();
    QStringList present;
    const auto entry = [&](qsizetype number) {
        return (number == 1 ? token : u"%1(%2)"_s.arg(token).arg(number)).toUtf8();
    };
    while (char *phones = ps_lookup_word(decoder, entry(present.size() + 1).constData())) {
        present.append(QString::fromUtf8(phones));
        ckd_free(phones);
    }
    for (const QStringList &pronunciation : pronunciations) {
        const QString phones = pronunciation.join(u' ');
        if (present.contains(phones))
            continue;
        if (ps_add_word(
                decoder, entry(present.size() + 1).constData(), phones.toUtf8().constData(), FALSE)
            >= 0)
            present.append(phones);
    }
}

// ---- models ----

bool SphinxModels::expect(const Expectation &next, bool newWords)
{
    const bool onlyPhrases = !newWords && next.taught == expected_.taught;
    return onlyPhrases ? exchangePhrases(next) : takeUp(next);
}

/// With all words known, this is enough.
bool SphinxModels::exchangePhrases(const Expectation &next)
{
    ngram_model_t *phrases = modelOfPhrases(next);
    if (!phrases)
        return false;
    ngram_model_t *all = library_->all.get();
    ngram_model_free(ngram_model_set_remove(all, phrasesModel, TRUE));
    ngram_model_set_add(all, phrases, phrasesModel, phrasesWeight, TRUE);
    Mixture mixture(!next.taught.isEmpty());
    ngram_model_set_interp(all, mixture.names.data(), mixture.weights.data());
    ngram_model_flush(all);
    expected_ = next;
    return true;
}

/// All models anew, or those of before when that fails.
bool SphinxModels::takeUp(const Expectation &next)
{
    Library::LanguageModel phrases(modelOfPhrases(next));
    const Library::LanguageModel taught(next.taught.isEmpty() ? nullptr : modelOf(next.taught));
    if (!phrases || (!taught && !next.taught.isEmpty()))
        return false;
    std::vector<ngram_model_t *> models{library_->general.get(), phrases.get()};
    if (taught)
        models.push_back(taught.get());
    Mixture mixture(taught != nullptr);
    // The set keeps references of its own.
    Library::LanguageModel all(ngram_model_set_init(library_->config.get(), models.data(),
        const_cast<char **>(mixture.names.data()), mixture.weights.data(),
        static_cast<int32>(models.size())));
    ps_decoder_t *decoder = library_->decoder.get();
    if (!all || (!next.token.isEmpty() && !makeNameSearch(next.token))
        || ps_set_lm(decoder, wordSearch, all.get()) < 0 || ps_set_search(decoder, wordSearch) < 0)
        return false;
    library_->all = std::move(all);
    library_->phrases = std::move(phrases);
    expected_ = next;
    return true;
}

/// Null when there is no room for it.
ngram_model_t *SphinxModels::modelOf(const QByteArray &arpa) const
{
    // The library reads files only; of our own making, so that what it reads is what we checked.
    const MemoryFile file(arpa);
    if (file.path().isEmpty())
        return nullptr;
    return ngram_model_read(library_->config.get(), file.path().constData(), NGRAM_ARPA,
        ps_get_logmath(library_->decoder.get()));
}

ngram_model_t *SphinxModels::modelOfPhrases(const Expectation &expectation) const
{
    QList<CountedSentence> sentences;
    for (const QString &phrase : expectation.phrases) {
        const QStringList tokens = tokensOf(phrase, expectation.name);
        if (tokens.isEmpty())
            continue;
        sentences.append({tokens, 1});
        if (!expectation.token.isEmpty())
            sentences.append({QStringList{expectation.token} + tokens, 1});
    }
    if (sentences.isEmpty())
        sentences.append({{u"yes"_s}, 1}); // the set must keep its member
    return modelOf(arpaModel(sentences, lonePhraseWord, begunPhraseWord));
}

/// Every way to say the name is a key phrase.
bool SphinxModels::makeNameSearch(const QString &token) const
{
    QByteArray ways;
    QString way = token;
    for (int number = 2; knows(way); ++number) {
        ways += way.toUtf8() + leastLikely;
        way = u"%1(%2)"_s.arg(token).arg(number);
    }
    const MemoryFile file(ways); // the library reads files only
    return !file.path().isEmpty()
        && ps_set_kws(library_->decoder.get(), nameSearch, file.path().constData()) >= 0;
}

// ---- searches ----

void SphinxModels::searchForWords() const
{
    ps_set_search(decoder(), wordSearch);
}

void SphinxModels::listenForAll(bool all) const
{
    ngram_model_t *models = library_->all.get();
    if (all)
        ngram_model_set_interp(models, nullptr, nullptr);
    else
        ngram_model_set_select(models, generalModel);
    ngram_model_flush(models);
}

bool SphinxModels::nameIsAWord() const
{
    ngram_model_t *general = library_->general.get();
    return ngram_wid(general, expected_.token.toUtf8().constData()) != ngram_unknown_wid(general);
}

} // namespace kelo
