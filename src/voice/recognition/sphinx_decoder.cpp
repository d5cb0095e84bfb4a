#include "voice/recognition/sphinx_decoder.h"

#include "voice/language/language_model.h"
#include "voice/name/taught_name.h"
#include "voice/recognition/memory_file.h"
#include "voice/recognition/sphinx_requests.h"
#include "voice/recognition/sphinx_utterance.h"

#include <QFile>

#include <pocketsphinx.h>
#include <sphinxbase/err.h>
#include <sphinxbase/ngram_model.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

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

// Frames of 10 ms.
constexpr int shortestRequest = 20;
constexpr int leadIn = 5; ///< before a name, whose beginning is not known so well

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
    std::optional<SphinxRequests> requests;
};

struct SphinxDecoder::Expectation {
    QString name; ///< the decoder's word for it; empty without one
    QByteArray taught; ///< ARPA
    QStringList phrases;
};

std::unique_ptr<SphinxDecoder> SphinxDecoder::load(
    const QString &directory, const std::stop_token &stop)
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
    if (!library->decoder || stop.stop_requested())
        return nullptr;
    library->general.reset(ngram_model_read(library->config.get(), general.constData(), NGRAM_BIN,
        ps_get_logmath(library->decoder.get())));
    if (!library->general || stop.stop_requested())
        return nullptr;
    std::unique_ptr<SphinxDecoder> decoder(new SphinxDecoder(std::move(library)));
    decoder->directory_ = directory;
    if (!decoder->takeUp({}))
        return nullptr;
    ps_decoder_t *decoding = decoder->library_->decoder.get();
    decoder->library_->utterance.emplace(decoding);
    decoder->library_->requests.emplace(decoding);
    ps_start_stream(decoding);
    return decoder;
}

SphinxDecoder::SphinxDecoder(std::unique_ptr<Library> library)
    : library_(std::move(library))
    , expected_(std::make_unique<Expectation>())
{
}

SphinxDecoder::~SphinxDecoder() = default;

QString SphinxDecoder::dictionaryIn(const QString &directory)
{
    return directory + "/cmudict-en-us.dict"_L1;
}

// ---- what to expect ----

std::optional<QString> SphinxDecoder::expect(const std::optional<TaughtModel> &taught,
    const QStringList &phrases, const std::stop_token &stop)
{
    if (taught == taught_ && phrases == phrases_ && !std::exchange(stale_, false))
        return std::nullopt;
    const bool anotherName = taught != taught_;
    taught_ = taught;
    phrases_ = phrases;
    const auto words = taught ? readTaughtModel(*taught) : std::nullopt;
    const Expectation next{words ? nameToken(taught->name) : QString(),
        words ? words->languageModel : QByteArray(), phrases};

    QStringList unknown;
    for (const QString &phrase : phrases) {
        for (const QString &token : tokensOf(phrase, words ? taught->name : QString())) {
            if (!knows(token) && token != next.name && !unknown.contains(token))
                unknown.append(token);
        }
    }
    QList<VocabularyEntry> entries =
        words && anotherName ? words->vocabulary : QList<VocabularyEntry>();
    if (!unknown.isEmpty())
        entries += pronounced(unknown, dictionaryIn(directory_), stop);
    if (stop.stop_requested()) {
        stale_ = true;
        return std::nullopt;
    }
    for (const VocabularyEntry &entry : std::as_const(entries))
        addWord(entry.token, entry.pronunciations);

    const bool onlyPhrases = entries.isEmpty() && next.taught == expected_->taught;
    if (!(onlyPhrases ? exchangePhrases(next) : takeUp(next)))
        return u"there is no room for what to listen for: as before"_s;
    library_->requests->expect(next.name, requestsAmong(phrases));
    if (taught && !words)
        return u"the files of the taught name are damaged: listening without"_s;
    return std::nullopt;
}

/// With all words known, this is enough.
bool SphinxDecoder::exchangePhrases(const Expectation &next)
{
    ngram_model_t *phrases = modelOfPhrases(next);
    if (!phrases)
        return false;
    ngram_model_t *all = library_->all.get();
    ngram_model_free(ngram_model_set_remove(all, "phrases", TRUE));
    ngram_model_set_add(all, phrases, "phrases", phrasesWeight, TRUE);
    std::vector<const char *> names{generalModel, "phrases"};
    std::vector<float32> weights{generalWeight, phrasesWeight};
    if (!next.taught.isEmpty()) {
        names.push_back("taught");
        weights.push_back(taughtWeight);
    }
    ngram_model_set_interp(all, names.data(), weights.data());
    ngram_model_flush(all);
    *expected_ = next;
    return true;
}

/// Every way to say the name is a key phrase.
bool SphinxDecoder::makeNameSearch(const QString &token) const
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

/// Null when there is no room for it.
ngram_model_t *SphinxDecoder::modelOf(const QByteArray &arpa) const
{
    // The library reads files only; of our own making, so that what it reads is what we checked.
    const MemoryFile file(arpa);
    if (file.path().isEmpty())
        return nullptr;
    return ngram_model_read(library_->config.get(), file.path().constData(), NGRAM_ARPA,
        ps_get_logmath(library_->decoder.get()));
}

ngram_model_t *SphinxDecoder::modelOfPhrases(const Expectation &expectation) const
{
    QList<CountedSentence> sentences;
    const QString name = expectation.name.isEmpty() ? QString() : taught_->name;
    for (const QString &phrase : expectation.phrases) {
        const QStringList tokens = tokensOf(phrase, name);
        if (tokens.isEmpty())
            continue;
        sentences.append({tokens, 1});
        if (!name.isEmpty())
            sentences.append({QStringList{expectation.name} + tokens, 1});
    }
    if (sentences.isEmpty())
        sentences.append({{u"yes"_s}, 1}); // the set must keep its member
    return modelOf(arpaModel(sentences, lonePhraseWord, begunPhraseWord));
}

/// The phrases without those that name the assistant.
QList<QStringList> SphinxDecoder::requestsAmong(const QStringList &phrases) const
{
    QList<QStringList> requests;
    const QString name = expected_->name.isEmpty() ? QString() : taught_->name;
    for (const QString &phrase : phrases) {
        const QStringList tokens = tokensOf(phrase, name);
        if (!tokens.isEmpty() && !tokens.contains(expected_->name))
            requests.append(tokens);
    }
    return requests;
}

/// All models anew, or those of before when that fails.
bool SphinxDecoder::takeUp(const Expectation &next)
{
    Library::LanguageModel phrases(modelOfPhrases(next));
    const Library::LanguageModel taught(next.taught.isEmpty() ? nullptr : modelOf(next.taught));
    if (!phrases || (!taught && !next.taught.isEmpty()))
        return false;
    std::vector<ngram_model_t *> models{library_->general.get(), phrases.get()};
    std::vector<const char *> names{generalModel, "phrases"};
    std::vector<float32> weights{generalWeight, phrasesWeight};
    if (taught) {
        models.push_back(taught.get());
        names.push_back("taught");
        weights.push_back(taughtWeight);
    }
    // The set keeps references of its own.
    Library::LanguageModel all(ngram_model_set_init(library_->config.get(), models.data(),
        const_cast<char **>(names.data()), weights.data(), static_cast<int32>(models.size())));
    ps_decoder_t *decoder = library_->decoder.get();
    if (!all || (!next.name.isEmpty() && !makeNameSearch(next.name))
        || ps_set_lm(decoder, wordSearch, all.get()) < 0 || ps_set_search(decoder, wordSearch) < 0)
        return false;
    library_->all = std::move(all);
    library_->phrases = std::move(phrases);
    *expected_ = next;
    return true;
}

// ---- utterances ----

void SphinxDecoder::begin(const std::stop_token &stop)
{
    stop_ = stop;
    spoke_ = false;
    words_.reset();
    library_->utterance->begin(stop);
}

bool SphinxDecoder::process(const Samples &samples)
{
    library_->utterance->add(samples);
    const bool speaks = library_->utterance->inSpeech();
    spoke_ = spoke_ || speaks;
    return speaks || !spoke_;
}

QStringList SphinxDecoder::words() const
{
    if (words_)
        return *words_;
    QStringList words = library_->utterance->words();
    if (expected_->name.isEmpty() || !words.contains(expected_->name))
        return words;
    words.clear();
    const auto account = library_->utterance->account();
    for (std::size_t place = 0; place < account.size(); ++place) {
        const QString &token = account[place].token;
        if (!token.isEmpty() && (token != expected_->name || !isLone(account, place)))
            words.append(token);
    }
    return words;
}

void SphinxDecoder::abandon()
{
    library_->utterance->abandon();
    words_ = QStringList();
}

void SphinxDecoder::end()
{
    SphinxUtterance &utterance = *library_->utterance;
    utterance.end();
    words_ = stop_.stop_requested() ? QStringList() : utterance.words();
    if (expected_->name.isEmpty() || !words_->contains(expected_->name))
        return;
    const auto account = utterance.account();
    if (believeName(account))
        hearRequest(account);
}

/// Whether the name in the ended utterance is one; if not, what is heard without it is written.
bool SphinxDecoder::believeName(const std::vector<AccountedWord> &account)
{
    SphinxUtterance &utterance = *library_->utterance;
    const double score = utterance.score();
    if (callsClearly(account))
        return true;
    ngram_model_t *all = library_->all.get();
    ngram_model_set_select(all, generalModel);
    ngram_model_flush(all);
    utterance.again(wordSearch);
    const bool believed = score - utterance.score() >= advantageWanted(account, expected_->name);
    if (!believed) {
        words_ = utterance.words();
        ngram_model_t *general = library_->general.get();
        if (ngram_wid(general, expected_->name.toUtf8().constData()) == ngram_unknown_wid(general))
            words_->removeAll(expected_->name); // otherwise it is a word like others
    }
    ngram_model_set_interp(all, nullptr, nullptr);
    ngram_model_flush(all);
    return believed;
}

/// Writes the request that follows the last name as it is expected, if it is likely to be one.
void SphinxDecoder::hearRequest(const std::vector<AccountedWord> &account)
{
    const auto last =
        std::ranges::find(account.rbegin(), account.rend(), expected_->name, &AccountedWord::token);
    if (library_->requests->expectsNothing() || last == account.rend()
        || account.back().last - last->last < shortestRequest)
        return;
    const qsizetype after = words_->lastIndexOf(expected_->name) + 1;
    const auto request = library_->requests->hear(
        *library_->utterance, std::max(last->first - leadIn, 0), words_->sliced(after));
    ps_set_search(library_->decoder.get(), wordSearch);
    if (request)
        words_ = words_->first(after) + *request;
}

double SphinxDecoder::secondsSearched() const
{
    double speech = 0;
    double cpu = 0;
    double wall = 0;
    ps_get_all_time(library_->decoder.get(), &speech, &cpu, &wall);
    return speech;
}

/// Whether every name in the ended utterance is led up to and clear.
bool SphinxDecoder::callsClearly(const std::vector<AccountedWord> &account) const
{
    std::vector<AccountedWord> names;
    for (std::size_t place = 0; place < account.size(); ++place) {
        if (account[place].token != expected_->name)
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
