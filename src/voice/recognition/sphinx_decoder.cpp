#include "voice/recognition/sphinx_decoder.h"

#include "voice/name/taught_name.h"
#include "voice/recognition/language_model.h"
#include "voice/recognition/sphinx_utterance.h"

#include <QDir>
#include <QFile>
#include <QLoggingCategory>
#include <QTemporaryFile>

#include <pocketsphinx.h>
#include <sphinxbase/err.h>
#include <sphinxbase/ngram_model.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

using namespace Qt::StringLiterals;

Q_DECLARE_LOGGING_CATEGORY(voiceLog)

namespace kelo {

namespace {

// Weights of the models beside each other. The library raises probabilities to the power of 6.5
// before it mixes them, so a small weight still counts for much.
constexpr float generalWeight = 1.0F;
constexpr float taughtWeight = 0.5F;
constexpr float phrasesWeight = 1.0F;

/// Phrases shall help a word that was begun, not put words of theirs in place of others.
constexpr double lonePhraseWord = 0.01;

/// After the name, or once it is begun, a phrase is what will come, however many others there are.
constexpr double begunPhraseWord = 0.2;

constexpr auto generalModel = "general";

// Searches of the library.
constexpr auto wordSearch = "words";
constexpr auto nameSearch = "name";

/// A search for key phrases gives up on what is less likely by this than any row of sounds.
constexpr auto leastLikely = " /1e-80/\n";

} // namespace

struct SphinxDecoder::Library {
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
    std::optional<SphinxUtterance> utterance;
};

std::unique_ptr<SphinxDecoder> SphinxDecoder::load(const QString &directory)
{
    err_set_logfp(nullptr); // for this thread
    const QByteArray acoustic = (directory + "/en-us"_L1).toUtf8();
    const QByteArray dictionary = dictionaryIn(directory).toUtf8();
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
    if (!library->decoder)
        return nullptr;
    library->general.reset(ngram_model_read(library->config.get(), general.constData(), NGRAM_BIN,
        ps_get_logmath(library->decoder.get())));
    if (!library->general)
        return nullptr;
    std::unique_ptr<SphinxDecoder> decoder(new SphinxDecoder(std::move(library)));
    decoder->directory_ = directory;
    decoder->rebuild();
    ps_decoder_t *decoding = decoder->library_->decoder.get();
    decoder->library_->utterance.emplace(decoding);
    ps_start_stream(decoding);
    return decoder;
}

SphinxDecoder::SphinxDecoder(std::unique_ptr<Library> library)
    : library_(std::move(library))
{
}

SphinxDecoder::~SphinxDecoder() = default;

QString SphinxDecoder::dictionaryIn(const QString &directory)
{
    return directory + "/cmudict-en-us.dict"_L1;
}

// ---- what to expect ----

bool SphinxDecoder::expect(const std::optional<TaughtModel> &taught, const QStringList &phrases)
{
    if (taught == taught_ && phrases == phrases_)
        return true;
    bool intact = true;
    bool anew = taught != taught_;
    if (anew) {
        taught_ = taught;
        taughtModel_.clear();
        name_.clear();
        const auto words = taught ? readTaughtModel(*taught) : std::nullopt;
        intact = !taught || words;
        if (words) {
            taughtModel_ = words->languageModel;
            for (const VocabularyEntry &entry : words->vocabulary)
                addWord(entry.token, entry.pronunciations);
            name_ = nameToken(taught->name);
            makeNameSearch(name_);
        }
    }
    phrases_ = phrases;
    const QString name = taught ? taught->name : QString();
    for (const QString &phrase : phrases) {
        for (const QString &token : tokensOf(phrase, name)) {
            if (knows(token))
                continue;
            addWord(token, pronounced(token, dictionaryIn(directory_)).pronunciations);
            anew = true;
        }
    }
    if (anew) {
        rebuild();
        return intact;
    }
    ngram_model_t *all = library_->all.get();
    ngram_model_free(ngram_model_set_remove(all, "phrases", TRUE));
    ngram_model_set_add(all, modelOfPhrases(), "phrases", phrasesWeight, TRUE);
    std::vector<const char *> names{generalModel, "phrases"};
    std::vector<float32> weights{generalWeight, phrasesWeight};
    if (!taughtModel_.isEmpty()) {
        names.push_back("taught");
        weights.push_back(taughtWeight);
    }
    ngram_model_set_interp(all, names.data(), weights.data());
    ngram_model_flush(all);
    return intact;
}

/// Every way to say the name is a key phrase.
void SphinxDecoder::makeNameSearch(const QString &token) const
{
    QTemporaryFile file; // the library reads files only
    if (!file.open())
        return;
    QString way = token;
    for (int number = 2; knows(way); ++number) {
        file.write(way.toUtf8() + leastLikely);
        way = u"%1(%2)"_s.arg(token).arg(number);
    }
    file.flush();
    ps_set_kws(library_->decoder.get(), nameSearch, file.fileName().toUtf8().constData());
}

bool SphinxDecoder::knows(const QString &token) const
{
    char *phones = ps_lookup_word(library_->decoder.get(), token.toUtf8().constData());
    ckd_free(phones);
    return phones;
}

/// Adds those pronunciations that are not there yet, the second and further ones as "word(2)".
void SphinxDecoder::addWord(const QString &token, const QList<QStringList> &pronunciations)
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

ngram_model_t *SphinxDecoder::modelOf(const QByteArray &arpa) const
{
    // The library reads files only; of our own making, so that what it reads is what we checked.
    QTemporaryFile file;
    if (!file.open() || file.write(arpa) != arpa.size() || !file.flush())
        return nullptr;
    return ngram_model_read(library_->config.get(), file.fileName().toUtf8().constData(),
        NGRAM_ARPA, ps_get_logmath(library_->decoder.get()));
}

ngram_model_t *SphinxDecoder::modelOfPhrases() const
{
    QList<CountedSentence> sentences;
    for (const QString &phrase : phrases_) {
        const QStringList tokens = tokensOf(phrase, taught_ ? taught_->name : QString());
        if (tokens.isEmpty())
            continue;
        sentences.append({tokens, 1});
        if (taught_)
            sentences.append({QStringList{nameToken(taught_->name)} + tokens, 1});
    }
    if (sentences.isEmpty())
        sentences.append({{u"yes"_s}, 1}); // the set must keep its member
    return modelOf(arpaModel(sentences, lonePhraseWord, begunPhraseWord));
}

void SphinxDecoder::rebuild()
{
    Library::LanguageModel phrases(modelOfPhrases());
    const Library::LanguageModel taught(taughtModel_.isEmpty() ? nullptr : modelOf(taughtModel_));
    std::vector<ngram_model_t *> models{library_->general.get()};
    std::vector<const char *> names{generalModel};
    std::vector<float32> weights{generalWeight};
    if (phrases) {
        models.push_back(phrases.get());
        names.push_back("phrases");
        weights.push_back(phrasesWeight);
    }
    if (taught) {
        models.push_back(taught.get());
        names.push_back("taught");
        weights.push_back(taughtWeight);
    }
    // The set keeps references of its own.
    Library::LanguageModel all(ngram_model_set_init(library_->config.get(), models.data(),
        const_cast<char **>(names.data()), weights.data(), static_cast<int32>(models.size())));
    ps_decoder_t *decoder = library_->decoder.get();
    if (!all || ps_set_lm(decoder, wordSearch, all.get()) < 0
        || ps_set_search(decoder, wordSearch) < 0) {
        qCWarning(voiceLog) << "the recogniser's models do not fit together";
        return;
    }
    library_->all = std::move(all);
    library_->phrases = std::move(phrases);
}

// ---- utterances ----

void SphinxDecoder::begin()
{
    spoke_ = false;
    lastInput_.reset();
    centred_ = 0;
    words_.reset();
    library_->utterance->begin();
}

/// Without the constant offset that some microphones add: its beginning would sound like a click.
Samples SphinxDecoder::centred(Samples samples)
{
    constexpr double kept = 0.995; // a sample: what is below 13 Hz goes
    for (qint16 &sample : samples) {
        const double input = sample;
        centred_ = kept * centred_ + input - lastInput_.value_or(input);
        lastInput_ = input;
        sample = static_cast<qint16>(std::clamp(std::lround(centred_), -32768L, 32767L));
    }
    return samples;
}

bool SphinxDecoder::process(const Samples &samples)
{
    library_->utterance->add(tone_.under(suppressor_.clean(centred(samples))));
    const bool speaks = library_->utterance->inSpeech();
    spoke_ = spoke_ || speaks;
    return speaks || !spoke_;
}

QStringList SphinxDecoder::words() const
{
    if (words_)
        return *words_;
    QStringList words = library_->utterance->words();
    if (name_.isEmpty() || !words.contains(name_))
        return words;
    words.clear();
    const auto account = library_->utterance->account();
    for (std::size_t place = 0; place < account.size(); ++place) {
        const QString &token = account[place].token;
        if (!token.isEmpty() && (token != name_ || !isLone(account, place)))
            words.append(token);
    }
    return words;
}

void SphinxDecoder::end()
{
    SphinxUtterance &utterance = *library_->utterance;
    utterance.end();
    words_ = utterance.words();
    if (name_.isEmpty() || !words_->contains(name_))
        return;
    const auto account = utterance.account();
    const double score = utterance.score();
    if (callsClearly(account))
        return;
    ngram_model_t *all = library_->all.get();
    ngram_model_set_select(all, generalModel);
    ngram_model_flush(all);
    utterance.again(wordSearch);
    if (score - utterance.score() < advantageWanted(account, name_)) {
        words_ = utterance.words();
        ngram_model_t *general = library_->general.get();
        if (ngram_wid(general, name_.toUtf8().constData()) == ngram_unknown_wid(general))
            words_->removeAll(name_); // otherwise it is a word like others
    }
    ngram_model_set_interp(all, nullptr, nullptr);
    ngram_model_flush(all);
}

/// Whether every name in the ended utterance is led up to and clear.
bool SphinxDecoder::callsClearly(const std::vector<AccountedWord> &account) const
{
    std::vector<AccountedWord> names;
    for (std::size_t place = 0; place < account.size(); ++place) {
        if (account[place].token != name_)
            continue;
        if (!isLedUpTo(account, place))
            return false;
        names.push_back(account[place]);
    }
    library_->utterance->again(nameSearch);
    const bool clear = std::ranges::all_of(names, [&](const AccountedWord &name) {
        return library_->utterance->clarity(name.first, name.last) >= clearName;
    });
    ps_set_search(library_->decoder.get(), wordSearch);
    return clear;
}

} // namespace kelo
