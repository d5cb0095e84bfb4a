#include "voice/recognition/sphinx_decoder.h"

#include "voice/name/taught_name.h"

#include <pocketsphinx.h>

#include <algorithm>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

// Frames of 10 ms.
constexpr int shortestRequest = 20;
constexpr int leadIn = 5; ///< before a name, whose beginning is not known so well

} // namespace

std::unique_ptr<SphinxDecoder> SphinxDecoder::load(
    const QString &directory, const std::stop_token &stop)
{
    auto models = SphinxModels::load(directory, stop);
    if (!models)
        return nullptr;
    std::unique_ptr<SphinxDecoder> decoder(new SphinxDecoder(std::move(models), directory));
    ps_start_stream(decoder->models_->decoder());
    return decoder;
}

SphinxDecoder::SphinxDecoder(std::unique_ptr<SphinxModels> models, QString directory)
    : models_(std::move(models))
    , utterance_(models_->decoder())
    , requests_(models_->decoder())
    , directory_(std::move(directory))
{
}

SphinxDecoder::~SphinxDecoder() = default;

/// The decoder's word for the assistant; empty without one.
const QString &SphinxDecoder::name() const
{
    return models_->expected().token;
}

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
    const SphinxModels::Expectation next{words ? taught->name : QString(),
        words ? nameToken(taught->name) : QString(), words ? words->languageModel : QByteArray(),
        phrases};

    QStringList unknown;
    for (const QString &phrase : phrases) {
        for (const QString &token : tokensOf(phrase, next.name)) {
            if (!models_->knows(token) && token != next.token && !unknown.contains(token))
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
        models_->addWord(entry.token, entry.pronunciations);

    if (!models_->expect(next, !entries.isEmpty()))
        return u"there is no room for what to listen for: as before"_s;
    requests_.expect(next.token, requestsAmong(phrases));
    if (taught && !words)
        return u"the files of the taught name are damaged: listening without"_s;
    return std::nullopt;
}

/// The phrases without those that name the assistant.
QList<QStringList> SphinxDecoder::requestsAmong(const QStringList &phrases) const
{
    QList<QStringList> requests;
    const SphinxModels::Expectation &expected = models_->expected();
    for (const QString &phrase : phrases) {
        const QStringList tokens = withTitledNotes(phrase, tokensOf(phrase, expected.name));
        if (!tokens.isEmpty() && !tokens.contains(expected.token))
            requests.append(tokens);
    }
    return requests;
}

// ---- utterances ----

void SphinxDecoder::begin(const std::stop_token &stop)
{
    stop_ = stop;
    spoke_ = false;
    words_.reset();
    utterance_.begin(stop);
}

bool SphinxDecoder::process(const Samples &samples)
{
    utterance_.add(samples);
    const bool speaks = utterance_.inSpeech();
    spoke_ = spoke_ || speaks;
    return speaks || !spoke_;
}

QStringList SphinxDecoder::words() const
{
    if (words_)
        return *words_;
    QStringList words = utterance_.words();
    if (name().isEmpty() || !words.contains(name()))
        return words;
    words.clear();
    const auto account = utterance_.account();
    for (std::size_t place = 0; place < account.size(); ++place) {
        const QString &token = account[place].token;
        if (!token.isEmpty() && (token != name() || !isLone(account, place)))
            words.append(token);
    }
    return words;
}

void SphinxDecoder::abandon()
{
    utterance_.abandon();
    words_ = QStringList();
}

void SphinxDecoder::end()
{
    utterance_.end();
    words_ = stop_.stop_requested() ? QStringList() : utterance_.words();
    if (name().isEmpty() || !words_->contains(name()))
        return;
    const auto account = utterance_.account();
    if (believeName(account))
        hearRequest(account);
}

/// Whether the name in the ended utterance is one; if not, what is heard without it is written.
bool SphinxDecoder::believeName(const std::vector<AccountedWord> &account)
{
    const double score = utterance_.score();
    if (callsClearly(account))
        return true;
    models_->listenForAll(false);
    utterance_.again(SphinxModels::wordSearch);
    const bool believed = score - utterance_.score() >= advantageWanted(account, name());
    if (!believed) {
        words_ = utterance_.words();
        if (!models_->nameIsAWord())
            words_->removeAll(name()); // otherwise it is a word like others
    }
    models_->listenForAll(true);
    return believed;
}

/// Writes the request that follows the last name as it is expected, if it is likely to be one.
void SphinxDecoder::hearRequest(const std::vector<AccountedWord> &account)
{
    const auto last =
        std::ranges::find(account.rbegin(), account.rend(), name(), &AccountedWord::token);
    if (requests_.expectsNothing() || last == account.rend()
        || account.back().last - last->last < shortestRequest)
        return;
    const qsizetype after = words_->lastIndexOf(name()) + 1;
    const auto request =
        requests_.hear(utterance_, std::max(last->first - leadIn, 0), words_->sliced(after));
    models_->searchForWords();
    if (request)
        words_ = words_->first(after) + *request;
}

double SphinxDecoder::secondsSearched() const
{
    double speech = 0;
    double cpu = 0;
    double wall = 0;
    ps_get_all_time(models_->decoder(), &speech, &cpu, &wall);
    return speech;
}

/// Whether every name in the ended utterance is led up to and clear.
bool SphinxDecoder::callsClearly(const std::vector<AccountedWord> &account) const
{
    std::vector<AccountedWord> names;
    for (std::size_t place = 0; place < account.size(); ++place) {
        if (account[place].token != name())
            continue;
        if (!isLedUpTo(account, place))
            return false;
        names.push_back(account[place]);
    }
    utterance_.again(SphinxModels::nameSearch);
    const bool clear = std::ranges::all_of(names, [&](const AccountedWord &name) {
        return utterance_.clarity(name.first, name.last) >= clearName;
    });
    models_->searchForWords();
    return clear;
}

} // namespace kelo
