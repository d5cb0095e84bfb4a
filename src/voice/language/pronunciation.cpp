#include "voice/language/pronunciation.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QProcess>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

/// The synthesiser's voice for a script that English has no reading for.
const char *voiceOf(QChar::Script script)
{
    switch (script) {
    case QChar::Script_Cyrillic:
        return "ru";
    case QChar::Script_Greek:
        return "el";
    case QChar::Script_Arabic:
        return "ar";
    case QChar::Script_Hebrew:
        return "he";
    case QChar::Script_Devanagari:
        return "hi";
    case QChar::Script_Han:
        return "cmn";
    case QChar::Script_Hiragana:
    case QChar::Script_Katakana:
        return "ja";
    case QChar::Script_Hangul:
        return "ko";
    default:
        return nullptr;
    }
}

constexpr int patience = 5000; // milliseconds
constexpr int lookEvery = 50;

QString reading(const QString &text, const QString &voice, const std::stop_token &stop)
{
    if (stop.stop_requested())
        return {};
    QProcess synthesiser;
    synthesiser.start(u"espeak-ng"_s, {u"-q"_s, u"--ipa"_s, u"-v"_s, voice, u"--stdin"_s});
    synthesiser.write(text.toUtf8());
    synthesiser.closeWriteChannel();
    const QDeadlineTimer deadline(patience);
    while (!synthesiser.waitForFinished(lookEvery)) {
        if (synthesiser.state() != QProcess::NotRunning && !deadline.hasExpired()
            && !stop.stop_requested())
            continue;
        synthesiser.kill();
        synthesiser.waitForFinished(1000);
        return {};
    }
    return QString::fromUtf8(synthesiser.readAllStandardOutput()).simplified();
}

QString withoutMarks(const QString &text)
{
    QString bare = text.normalized(QString::NormalizationForm_KD);
    return bare.removeIf([](QChar c) { return c.isMark(); });
}

} // namespace

QHash<QString, QList<Phones>> dictionaryEntries(
    const QString &path, const QSet<QString> &words, const std::stop_token &stop)
{
    QHash<QString, QList<Phones>> entries;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return entries;
    while (!file.atEnd() && !stop.stop_requested()) {
        const QByteArray line = file.readLine().trimmed();
        const qsizetype end = line.indexOf(' ');
        QByteArray word = line.first(std::max<qsizetype>(end, 0));
        if (word.endsWith(')')) // "word(2)" is another way to say "word"
            word.truncate(word.indexOf('('));
        if (words.contains(QString::fromUtf8(word)))
            entries[QString::fromUtf8(word)].append(
                QString::fromLatin1(line.sliced(end)).split(u' ', Qt::SkipEmptyParts));
    }
    return entries;
}

QStringList synthesiserReadings(const QString &text, const std::stop_token &stop)
{
    const QString plain = text.simplified().left(100);
    QStringList readings{reading(plain, u"gmw/en-US"_s, stop), reading(plain, u"gmw/en"_s, stop)};
    if (const QString bare = withoutMarks(plain); bare != plain)
        readings.append(reading(bare, u"gmw/en-US"_s, stop));
    for (const char32_t scalar : plain.toUcs4()) {
        if (const char *voice = voiceOf(QChar::script(scalar))) {
            readings.prepend(reading(plain, QString::fromLatin1(voice), stop));
            break;
        }
    }
    readings.removeAll(QString());
    readings.removeDuplicates();
    return readings;
}

Phones spelledOut(const QString &text)
{
    static const QHash<QChar, QString> names{
        {u'a', u"EY"_s},
        {u'b', u"B IY"_s},
        {u'c', u"S IY"_s},
        {u'd', u"D IY"_s},
        {u'e', u"IY"_s},
        {u'f', u"EH F"_s},
        {u'g', u"JH IY"_s},
        {u'h', u"EY CH"_s},
        {u'i', u"AY"_s},
        {u'j', u"JH EY"_s},
        {u'k', u"K EY"_s},
        {u'l', u"EH L"_s},
        {u'm', u"EH M"_s},
        {u'n', u"EH N"_s},
        {u'o', u"OW"_s},
        {u'p', u"P IY"_s},
        {u'q', u"K Y UW"_s},
        {u'r', u"AA R"_s},
        {u's', u"EH S"_s},
        {u't', u"T IY"_s},
        {u'u', u"Y UW"_s},
        {u'v', u"V IY"_s},
        {u'w', u"D AH B AH L Y UW"_s},
        {u'x', u"EH K S"_s},
        {u'y', u"W AY"_s},
        {u'z', u"Z IY"_s},
        {u'0', u"Z IH R OW"_s},
        {u'1', u"W AH N"_s},
        {u'2', u"T UW"_s},
        {u'3', u"TH R IY"_s},
        {u'4', u"F AO R"_s},
        {u'5', u"F AY V"_s},
        {u'6', u"S IH K S"_s},
        {u'7', u"S EH V AH N"_s},
        {u'8', u"EY T"_s},
        {u'9', u"N AY N"_s},
    };
    Phones phones;
    for (const QChar letter : withoutMarks(text).toLower()) {
        if (const auto name = names.find(letter); name != names.end())
            phones += name->split(u' ');
    }
    return phones.isEmpty() ? Phones{u"AH"_s} : phones;
}

} // namespace kelo
