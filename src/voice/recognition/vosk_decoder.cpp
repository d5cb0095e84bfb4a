#include "voice/recognition/vosk_decoder.h"

#include "voice/language/request_graph.h"
#include "voice/name/sound_alikes.h"
#include "voice/name/taught_name.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

constexpr qsizetype mostWays = 12; ///< to write a name; more would be heard in other words

} // namespace

std::unique_ptr<VoskDecoder> VoskDecoder::load(
    std::shared_ptr<VoskLibrary> library, const QString &directory, const QString &dictionary)
{
    VoskModel *model = library->model_new(directory.toLocal8Bit().constData());
    if (!model)
        return nullptr;
    std::unique_ptr<VoskDecoder> decoder(new VoskDecoder(std::move(library), model, dictionary));
    return decoder->recogniser_ ? std::move(decoder) : nullptr;
}

VoskDecoder::VoskDecoder(std::shared_ptr<VoskLibrary> library, VoskModel *model, QString dictionary)
    : library_(std::move(library))
    , model_(model)
    , dictionary_(std::move(dictionary))
    , recogniser_(library_->recognizer_new(model_, sampleRate), library_->recognizer_free)
{
}

VoskDecoder::~VoskDecoder()
{
    recogniser_.reset();
    library_->model_free(model_);
}

std::optional<QString> VoskDecoder::expect(const std::optional<TaughtModel> &taught,
    const QStringList &phrases, const std::stop_token &stop)
{
    if (taught == taught_ && phrases == phrases_)
        return std::nullopt;
    const bool anotherName = taught != taught_;
    auto ways = !taught ? QList<QStringList>()
        : anotherName   ? waysToWrite(*taught, stop)
                        : nameWays_;
    if (stop.stop_requested())
        return std::nullopt;
    taught_ = taught;
    phrases_ = phrases;
    name_ = taught ? nameToken(taught->name) : QString();
    nameWays_ = std::move(ways);
    Recognizer next(nameWays_.isEmpty()
            ? library_->recognizer_new(model_, sampleRate)
            : library_->recognizer_new_grm(model_, sampleRate, grammar(phrases).constData()),
        library_->recognizer_free);
    if (!next)
        return u"there is no room for what to listen for: as before"_s;
    recogniser_ = std::move(next);
    if (taught && nameWays_.isEmpty() && anotherName)
        return u"this recogniser has no word that sounds like the name"_s;
    return std::nullopt;
}

QList<QStringList> VoskDecoder::waysToWrite(
    const TaughtModel &taught, const std::stop_token &stop) const
{
    const auto knows = [this](const QString &word) {
        return library_->model_find_word(model_, word.toUtf8().constData()) >= 0;
    };
    const QString token = nameToken(taught.name);
    if (knows(token))
        return {{token}};
    if (const auto words = readTaughtModel(taught)) {
        for (const VocabularyEntry &entry : words->vocabulary) {
            if (entry.token == token)
                return soundAlikes(entry.pronunciations, dictionary_, knows, mostWays, stop);
        }
    }
    return {};
}

/// The library makes a model of word pairs of these, so they may be mixed.
QByteArray VoskDecoder::grammar(const QStringList &phrases) const
{
    QJsonArray all;
    for (const QStringList &way : nameWays_) {
        const QString name = way.join(u' ');
        all.append(name);
        all.append("hey "_L1 + name);
    }
    for (const QString &phrase : phrases) {
        const QString words = tokensOf(phrase, taught_->name).join(u' ');
        if (words != name_)
            all.append(words);
    }
    for (const QString &word : numberWords())
        all.append(word);
    all.append(u"[unk]"_s); // what is said besides
    return QJsonDocument(all).toJson(QJsonDocument::Compact);
}

void VoskDecoder::begin(const std::stop_token &stop)
{
    stop_ = stop;
    words_.clear();
    ended_ = false;
    library_->recognizer_reset(recogniser_.get());
}

bool VoskDecoder::process(const Samples &samples)
{
    if (stop_.stop_requested())
        return true;
    if (library_->recognizer_accept_waveform_s(
            recogniser_.get(), samples.data(), static_cast<int>(samples.size()))
        <= 0)
        return true;
    words_ += wordsIn(library_->recognizer_result(recogniser_.get()), "text");
    return words_.isEmpty();
}

QStringList VoskDecoder::words() const
{
    if (ended_)
        return words_;
    return words_ + wordsIn(library_->recognizer_partial_result(recogniser_.get()), "partial");
}

void VoskDecoder::end()
{
    words_ += wordsIn(library_->recognizer_final_result(recogniser_.get()), "text");
    if (stop_.stop_requested())
        words_.clear();
    ended_ = true;
}

/// What the library wrote, with the name for what sounds like it.
QStringList VoskDecoder::wordsIn(const char *json, const char *field) const
{
    const QJsonObject answer = QJsonDocument::fromJson(QByteArray(json)).object();
    const QStringList written =
        answer.value(QLatin1StringView(field)).toString().split(u' ', Qt::SkipEmptyParts);
    QStringList words;
    for (qsizetype at = 0; at < written.size();) {
        const auto way = std::ranges::find_if(nameWays_,
            [&](const QStringList &each) { return written.mid(at, each.size()) == each; });
        if (way != nameWays_.end())
            words.append(name_);
        else if (written[at] != "[unk]"_L1)
            words.append(written[at]);
        at += way != nameWays_.end() ? way->size() : 1;
    }
    return words;
}

} // namespace kelo
