#include "voice/ear_line.h"

#include <QTextBoundaryFinder>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

constexpr int charactersSent = 600;

QString lastCharacters(const QString &text, int count)
{
    if (text.size() <= count)
        return text;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    finder.toEnd();
    qsizetype start = text.size();
    for (int i = 0; i < count && start > 0; ++i)
        start = finder.toPreviousBoundary();
    return text.sliced(start);
}

} // namespace

QString earLine(const QString &words, bool final)
{
    QString clean = words;
    clean.removeIf([](QChar unit) { return unit < u' ' || unit == u'~'; });
    return (final ? "~ear 1 "_L1 : "~ear 0 "_L1) + lastCharacters(clean, charactersSent) + u'\n';
}

} // namespace kelo
