#include "voice/pronunciation.h"

#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTextStream>

#include <array>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

struct Sound {
    QStringView symbol;
    QStringView phones;
};

/// Longest symbols first. Sounds that English lacks stand for what its speakers make of them.
constexpr std::array ipaSounds{
    Sound{u"tʃ", u"CH"},
    Sound{u"dʒ", u"JH"},
    Sound{u"tɕ", u"CH"},
    Sound{u"dʑ", u"JH"},
    Sound{u"tʂ", u"CH"},
    Sound{u"dʐ", u"JH"},
    Sound{u"aɪ", u"AY"},
    Sound{u"aʊ", u"AW"},
    Sound{u"eɪ", u"EY"},
    Sound{u"eə", u"EH"},
    Sound{u"ɔɪ", u"OY"},
    Sound{u"oʊ", u"OW"},
    Sound{u"əʊ", u"OW"},
    Sound{u"oːɹ", u"AO R"},
    Sound{u"oɹ", u"AO R"},
    Sound{u"əɹ", u"ER"},

    Sound{u"i", u"IY"},
    Sound{u"ɪ", u"IH"},
    Sound{u"ᵻ", u"IH"},
    Sound{u"ɨ", u"IH"},
    Sound{u"e", u"EY"},
    Sound{u"ɛ", u"EH"},
    Sound{u"æ", u"AE"},
    Sound{u"a", u"AA"},
    Sound{u"ɐ", u"AH"},
    Sound{u"ə", u"AH"},
    Sound{u"ʌ", u"AH"},
    Sound{u"ɤ", u"AH"},
    Sound{u"ɘ", u"AH"},
    Sound{u"ɜ", u"ER"},
    Sound{u"ɝ", u"ER"},
    Sound{u"ɚ", u"ER"},
    Sound{u"ø", u"ER"},
    Sound{u"œ", u"ER"},
    Sound{u"ɑ", u"AA"},
    Sound{u"ɒ", u"AA"},
    Sound{u"ɔ", u"AO"},
    Sound{u"o", u"OW"},
    Sound{u"ʊ", u"UH"},
    Sound{u"ɵ", u"UH"},
    Sound{u"u", u"UW"},
    Sound{u"ʉ", u"UW"},
    Sound{u"y", u"UW"},
    Sound{u"ʏ", u"UH"},
    Sound{u"ɯ", u"UW"},

    Sound{u"p", u"P"},
    Sound{u"b", u"B"},
    Sound{u"t", u"T"},
    Sound{u"ʈ", u"T"},
    Sound{u"ɾ", u"T"},
    Sound{u"d", u"D"},
    Sound{u"ɖ", u"D"},
    Sound{u"k", u"K"},
    Sound{u"c", u"K"},
    Sound{u"q", u"K"},
    Sound{u"x", u"K"},
    Sound{u"χ", u"K"},
    Sound{u"ɡ", u"G"},
    Sound{u"g", u"G"},
    Sound{u"ɣ", u"G"},
    Sound{u"ɟ", u"JH"},
    Sound{u"m", u"M"},
    Sound{u"ɱ", u"M"},
    Sound{u"n", u"N"},
    Sound{u"ɳ", u"N"},
    Sound{u"ɴ", u"N"},
    Sound{u"ɲ", u"N Y"},
    Sound{u"ŋ", u"NG"},
    Sound{u"f", u"F"},
    Sound{u"ɸ", u"F"},
    Sound{u"v", u"V"},
    Sound{u"β", u"V"},
    Sound{u"ʋ", u"V"},
    Sound{u"θ", u"TH"},
    Sound{u"ð", u"DH"},
    Sound{u"s", u"S"},
    Sound{u"z", u"Z"},
    Sound{u"ʃ", u"SH"},
    Sound{u"ʂ", u"SH"},
    Sound{u"ɕ", u"SH"},
    Sound{u"ç", u"SH"},
    Sound{u"ʒ", u"ZH"},
    Sound{u"ʐ", u"ZH"},
    Sound{u"ʑ", u"ZH"},
    Sound{u"h", u"HH"},
    Sound{u"ħ", u"HH"},
    Sound{u"ɦ", u"HH"},
    Sound{u"l", u"L"},
    Sound{u"ɫ", u"L"},
    Sound{u"ɭ", u"L"},
    Sound{u"ɬ", u"L"},
    Sound{u"ʎ", u"L Y"},
    Sound{u"ɹ", u"R"},
    Sound{u"r", u"R"},
    Sound{u"ɻ", u"R"},
    Sound{u"ʁ", u"R"},
    Sound{u"ʀ", u"R"},
    Sound{u"j", u"Y"},
    Sound{u"w", u"W"},
    Sound{u"ʍ", u"W"},
    Sound{u"ɥ", u"W"},
};

constexpr QStringView xSampaSymbols = u"IE{AOUV@3STZDNQJ";
constexpr QStringView xSampaAsIpa = u"ɪɛæɑɔʊʌəɜʃθʒðŋɒɲ";

/// One sound in the place of another, between two others; "*" is any, "#" the word's edge, "V" a
/// vowel, "C" a consonant.
struct AccentRule {
    QStringView before;
    QStringView phone;
    QStringView after;
    QStringView instead;
};

constexpr std::array accentRules{
    AccentRule{u"*", u"AA", u"*", u"AO"}, // caught and cot
    AccentRule{u"*", u"AO", u"*", u"AA"},
    AccentRule{u"*", u"AA", u"*", u"AE"}, // the a of the north
    AccentRule{u"*", u"EY", u"*", u"EH"}, // a vowel without its glide
    AccentRule{u"*", u"EH", u"R", u"AE"}, // merry and marry
    AccentRule{u"*", u"AE", u"R", u"EH"},
    AccentRule{u"V", u"R", u"C", u""}, // no r but before vowels
    AccentRule{u"V", u"R", u"#", u""},
    AccentRule{u"*", u"ER", u"#", u"AH"},
    AccentRule{u"*", u"AH", u"#", u"AA"}, // the full vowel of an ending
    AccentRule{u"#", u"AH", u"C", u"AE"},
    AccentRule{u"*", u"IY", u"#", u"IH"},
    AccentRule{u"C", u"AH", u"C", u"IH"}, // the weak vowels
    AccentRule{u"C", u"IH", u"C", u"AH"},
    AccentRule{u"V", u"T", u"V", u"D"}, // the tapped t
    AccentRule{u"*", u"OW", u"#", u"AO"}, // the long o of the north
    AccentRule{u"#", u"HH", u"V", u""},
    AccentRule{u"C", u"Y", u"UW", u""},
};

bool isVowel(const QString &phone)
{
    return QStringView(u"AEIOU").contains(phone.front());
}

bool fits(QStringView pattern, const Phones &phones, qsizetype at)
{
    const bool edge = at < 0 || at >= phones.size();
    if (pattern == u"*")
        return true;
    if (pattern == u"#" || edge)
        return pattern == u"#" && edge;
    if (pattern == u"V" || pattern == u"C")
        return isVowel(phones[at]) == (pattern == u"V");
    return pattern == phones[at];
}

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

QString reading(const QString &text, const QString &voice)
{
    QProcess synthesiser;
    synthesiser.start(u"espeak-ng"_s, {u"-q"_s, u"--ipa"_s, u"-v"_s, voice, u"--stdin"_s});
    synthesiser.write(text.toUtf8());
    synthesiser.closeWriteChannel();
    if (!synthesiser.waitForFinished(5000)) {
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

Phones phonesOfIpa(const QString &ipa)
{
    static const QRegularExpression languageMark(u"\\([a-z-]+\\)"_s);
    static const QRegularExpression quiet(u"[ˈˌ\u0361\u200d̩̃ʲʰ]"_s);
    QString sounds = ipa;
    sounds.remove(languageMark).remove(quiet);
    Phones phones;
    for (qsizetype at = 0; at < sounds.size();) {
        const QStringView rest = QStringView(sounds).sliced(at);
        const auto sound = std::find_if(ipaSounds.begin(), ipaSounds.end(),
            [rest](const Sound &candidate) { return rest.startsWith(candidate.symbol); });
        if (sound == ipaSounds.end()) {
            ++at;
            continue;
        }
        for (const QString &phone : sound->phones.toString().split(u' ')) {
            if (phones.isEmpty() || phones.last() != phone) // no phone is said twice
                phones.append(phone);
        }
        at += sound->symbol.size();
    }
    return phones;
}

Phones phonesOfXSampa(const QString &xSampa)
{
    QString ipa = xSampa;
    ipa.remove(u' ').replace("r\\"_L1, u"ɹ"_s);
    for (QChar &symbol : ipa) {
        const qsizetype known = xSampaSymbols.indexOf(symbol);
        if (known >= 0)
            symbol = xSampaAsIpa[known];
    }
    return phonesOfIpa(ipa);
}

QList<Phones> accentsOf(const Phones &phones, qsizetype limit)
{
    QList<Phones> ways{phones};
    for (qsizetype way = 0; way < ways.size() && ways.size() < limit; ++way) {
        for (const AccentRule &rule : accentRules) {
            for (qsizetype at = 0; at < ways[way].size() && ways.size() < limit; ++at) {
                const Phones &from = ways[way];
                if (from[at] != rule.phone || !fits(rule.before, from, at - 1)
                    || !fits(rule.after, from, at + 1))
                    continue;
                Phones varied = from;
                if (rule.instead.isEmpty())
                    varied.removeAt(at);
                else
                    varied[at] = rule.instead.toString();
                if (!ways.contains(varied))
                    ways.append(varied);
            }
        }
    }
    return ways;
}

QHash<QString, QList<Phones>> dictionaryEntries(const QString &path, const QSet<QString> &words)
{
    QHash<QString, QList<Phones>> entries;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return entries;
    while (!file.atEnd()) {
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

QStringList synthesiserReadings(const QString &text)
{
    const QString plain = text.simplified().left(100);
    QStringList readings{reading(plain, u"gmw/en-US"_s), reading(plain, u"gmw/en"_s)};
    if (const QString bare = withoutMarks(plain); bare != plain)
        readings.append(reading(bare, u"gmw/en-US"_s));
    for (const char32_t scalar : plain.toUcs4()) {
        if (const char *voice = voiceOf(QChar::script(scalar))) {
            readings.prepend(reading(plain, QString::fromLatin1(voice)));
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
