#include "voice/wake_lab/wake_lab_report.h"

#include "voice/name/taught_name.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace kelo {

bool namesIt(const QString &words, const QString &name)
{
    return tokensOf(words, name).contains(nameToken(name));
}

bool requestIsIn(const QString &words, const QString &phrase, const QString &name)
{
    const auto request = [&](const QString &text) {
        const QStringList tokens = tokensOf(text, name);
        return tokens.sliced(tokens.lastIndexOf(nameToken(name)) + 1);
    };
    return namesIt(words, name) && request(words) == request(phrase);
}

void PassResult::count(const QString &phrase, bool named, bool asked)
{
    for (Tally *tally : {&all_, &phrases_[phrase]}) {
        tally->samples += 1;
        tally->hits += named;
        tally->requests += asked;
    }
}

QString PassResult::ofPhrase(const QString &phrase) const
{
    const Tally tally = phrases_.value(phrase);
    return u"%1 of %2"_s.arg(tally.hits).arg(tally.samples);
}

QString adviceOn(const QString &name, const PassResult &taught, int falseNames, int seconds)
{
    const int ofTen = qRound(10.0 * taught.hits() / std::max(taught.samples(), 1));
    QString advice = u"%1 is heard %2 times of 10"_s.arg(name).arg(ofTen);
    if (falseNames > 0)
        advice += u", and sometimes when nobody said it"_s;
    if (ofTen >= 9 && falseNames == 0)
        advice += u": a good name."_s;
    else
        advice += u"; a longer name with sounds that stand out is heard more surely."_s;
    advice += u" What was asked for after it was heard %1 times of 10."_s.arg(
        qRound(10.0 * taught.requests() / std::max(taught.samples(), 1)));
    return advice
        + u" How often it is heard when nobody says it, %1 seconds of talk cannot tell."_s.arg(
            seconds);
}

} // namespace kelo
