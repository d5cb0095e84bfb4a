#include "voice/language/phones.h"

#include <QRegularExpression>

#include <algorithm>
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
    ipa.remove(u' ').replace(R"(r\)"_L1, u"ɹ"_s);
    for (QChar &symbol : ipa) {
        const qsizetype known = xSampaSymbols.indexOf(symbol);
        if (known >= 0)
            symbol = xSampaAsIpa[known];
    }
    return phonesOfIpa(ipa);
}

} // namespace kelo
