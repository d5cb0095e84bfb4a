#include "voice/accents.h"

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
    AccentRule{u"V", u"R", u"C", u""}, // no r but before vowels
    AccentRule{u"V", u"R", u"#", u""},
    AccentRule{u"*", u"ER", u"#", u"AH"},
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

/// A way to say it whose sounds from `open` on may still change.
struct Way {
    Phones phones;
    qsizetype open = 0;
};

} // namespace

QList<Phones> accentsOf(const QList<Phones> &plain, qsizetype limit)
{
    // From left to right, so that no sound changes twice: "o" to "aw" and that to "ah" is no
    // accent any more.
    QList<Phones> all = plain;
    QList<Way> ways;
    for (const Phones &phones : plain)
        ways.append({phones, 0});
    for (qsizetype next = 0; next < ways.size(); ++next) {
        const Way from = ways[next];
        for (const AccentRule &rule : accentRules) {
            for (qsizetype at = from.open; at < from.phones.size(); ++at) {
                if (all.size() >= limit)
                    return all;
                if (from.phones[at] != rule.phone || !fits(rule.before, from.phones, at - 1)
                    || !fits(rule.after, from.phones, at + 1))
                    continue;
                Way varied{from.phones, at + 1};
                if (rule.instead.isEmpty())
                    varied = {from.phones.first(at) + from.phones.sliced(at + 1), at};
                else
                    varied.phones[at] = rule.instead.toString();
                if (all.contains(varied.phones))
                    continue;
                all.append(varied.phones);
                ways.append(varied);
            }
        }
    }
    return all;
}

} // namespace kelo
