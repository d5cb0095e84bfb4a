#include "voice/name/taught_name.h"

#include "voice/language/language_model.h"
#include "voice/name/accents.h"

#include <QCryptographicHash>
#include <QFile>
#include <QRegularExpression>

#include <algorithm>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

/// How readily the name is heard with nothing around it; higher hears it in other speech too.
constexpr double loneWord = 0.1;

/// More would let the name take the place of words that sound alike.
constexpr qsizetype nameVariants = 20;

void append(QList<Phones> &ways, const QList<Phones> &more)
{
    for (const Phones &phones : more) {
        if (!phones.isEmpty() && !ways.contains(phones))
            ways.append(phones);
    }
}

QList<Phones> readingsOf(const QString &text, const std::stop_token &stop)
{
    QList<Phones> ways;
    for (const QString &ipa : synthesiserReadings(text, stop))
        append(ways, {phonesOfIpa(ipa)});
    return ways;
}

/// Every way to say the name, the likeliest first.
QList<Phones> waysToSay(
    const WakeTraining &training, const QList<Phones> &known, const std::stop_token &stop)
{
    QList<Phones> ways;
    if (training.pronunciation) {
        for (const QString &phonemes : training.pronunciation->phonemes)
            append(ways, {phonesOfXSampa(phonemes)});
    }
    append(ways, known);
    append(ways, readingsOf(training.name, stop));
    if (ways.isEmpty())
        ways.append(spelledOut(training.name));
    return accentsOf(ways, nameVariants);
}

QByteArray digestOf(const QByteArray &languageModel, const QByteArray &vocabulary)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(QByteArray::number(languageModel.size()) + ' ');
    hash.addData(languageModel);
    hash.addData(vocabulary);
    return hash.result();
}

std::optional<QByteArray> contents(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return file.readAll();
}

} // namespace

QString nameToken(const QString &name)
{
    QString token;
    for (const QChar unit : name.toLower().simplified()) {
        const bool part = unit.isLetterOrNumber() || unit.isMark() || unit.isSurrogate();
        token += part ? unit : u'_';
    }
    static const QRegularExpression edges(u"^_+|_+$"_s);
    return token.remove(edges);
}

QStringList tokensOf(const QString &text, const QString &name)
{
    QStringList tokens;
    const QString called = nameToken(name);
    QString rest = text.simplified();
    const QString written = name.simplified();
    while (!rest.isEmpty()) {
        const bool isName = !called.isEmpty() && rest.startsWith(written, Qt::CaseInsensitive)
            && (rest.size() == written.size() || !rest[written.size()].isLetterOrNumber());
        const qsizetype space = rest.indexOf(u' ');
        const qsizetype length = isName ? written.size() : space < 0 ? rest.size() : space;
        QString word = isName ? called : rest.first(length).toLower();
        if (!isName)
            word.removeIf([](QChar c) { return !c.isLetterOrNumber() && c != u'\''; });
        if (!word.isEmpty())
            tokens.append(word);
        rest = rest.sliced(length).trimmed();
    }
    return tokens;
}

QList<VocabularyEntry> pronounced(
    const QStringList &tokens, const QString &dictionary, const std::stop_token &stop)
{
    const auto known = dictionaryEntries(dictionary, {tokens.begin(), tokens.end()}, stop);
    QList<VocabularyEntry> entries;
    for (const QString &token : tokens) {
        QList<Phones> ways = known.value(token);
        if (ways.isEmpty())
            append(ways, readingsOf(QString(token).replace(u'_', u' '), stop));
        if (ways.isEmpty())
            ways.append(spelledOut(token));
        entries.append({token, ways});
    }
    return entries;
}

TaughtModel prepareTaughtModel(const WakeTraining &training, const SpeechModelFiles &files,
    const QString &dictionary, const std::stop_token &stop)
{
    const QString name = nameToken(training.name);
    if (name.isEmpty())
        throw std::runtime_error("it has no letters");

    QList<CountedSentence> sentences;
    QSet<QString> words;
    for (const PhraseCount &phrase : training.phrases) {
        sentences.append({tokensOf(phrase.phrase, training.name), double(phrase.count)});
        words += QSet<QString>(sentences.last().words.begin(), sentences.last().words.end());
    }
    const auto known = dictionaryEntries(dictionary, words, stop);
    if (known.isEmpty())
        throw std::runtime_error("the recogniser's dictionary cannot be read");

    QList<VocabularyEntry> entries{{name, waysToSay(training, known.value(name), stop)}};
    QStringList unknown;
    for (const QString &word : std::as_const(words)) {
        if (word != name && !known.contains(word)) // what is known the decoder knows already
            unknown.append(word);
    }
    entries += pronounced(unknown, dictionary, stop);
    if (stop.stop_requested())
        throw std::runtime_error("there was no time for it");
    QStringList vocabulary;
    for (const VocabularyEntry &entry : std::as_const(entries)) {
        for (const Phones &phones : entry.pronunciations)
            vocabulary.append(entry.token + u' ' + phones.join(u' ') + u'\n');
    }
    vocabulary.sort();

    const QByteArray model = arpaModel(sentences, loneWord);
    const QByteArray lines = vocabulary.join(QString()).toUtf8();
    saveWhole(files.languageModel, model);
    saveWhole(files.vocabulary, lines);
    return {training.name, files.languageModel, files.vocabulary, digestOf(model, lines)};
}

std::optional<TaughtWords> readTaughtModel(const TaughtModel &model)
{
    const auto languageModel = contents(model.languageModel);
    const auto entries = contents(model.vocabulary);
    if (!languageModel || !entries || digestOf(*languageModel, *entries) != model.digest)
        return std::nullopt;
    TaughtWords words{*languageModel, {}};
    for (const QString &line : QString::fromUtf8(*entries).split(u'\n', Qt::SkipEmptyParts)) {
        const QStringList parts = line.split(u' ');
        if (words.vocabulary.isEmpty() || words.vocabulary.last().token != parts.first())
            words.vocabulary.append({parts.first(), {}});
        words.vocabulary.last().pronunciations.append(parts.sliced(1));
    }
    return words;
}

} // namespace kelo
