#include "voice/name/accents.h"

#include <array>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

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
    AccentRule{u"*", u"EH", u"R", u"ER"}, // a vowel that takes on the r after it
    AccentRule{u"*", u"EH", u"*", u"IH"}, // pen and pin
    AccentRule{u"V", u"R", u"C", u""}, // no r but before vowels
    AccentRule{u"V", u"R", u"#", u""},
    AccentRule{u"*", u"ER", u"#", u"AH"},
    AccentRule{u"*", u"ER", u"R", u"IH"}, // mirror
    AccentRule{u"*", u"ER", u"R", u"AH"}, // an r of one syllable or of both
    AccentRule{u"ER", u"R", u"V", u""},
    AccentRule{u"*", u"AH", u"#", u"AA"}, // the full vowel of an ending
    AccentRule{u"#", u"AH", u"C", u"AE"},
    AccentRule{u"*", u"IY", u"#", u"IH"}, // happy, at court and in the north
    AccentRule{u"*", u"IY", u"#", u"EY"},
    AccentRule{u"C", u"AH", u"C", u"IH"}, // the weak vowels
    AccentRule{u"C", u"IH", u"C", u"AH"},
    AccentRule{u"V", u"T", u"V", u"D"}, // the tapped t
    AccentRule{u"*", u"OW", u"#", u"AO"}, // the long o of the north
    AccentRule{u"*", u"OW", u"#", u"UH"}, // and of the south, which ends like put
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

} // namespace

QList<Phones> accentsOf(const QList<Phones> &plain, qsizetype limit)
{
    QList<Phones> ways = plain;
    for (const AccentRule &rule : accentRules) {
        for (const Phones &from : plain) {
            for (qsizetype at = 0; at < from.size() && ways.size() < limit; ++at) {
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

} // namespace kelo
