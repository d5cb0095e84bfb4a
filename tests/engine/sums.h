#pragma once

#include "music/midi_writer.h"
#include "support/files.h"

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QRegularExpression>
#include <QString>
#include <QTest>

#include <algorithm>
#include <random>

/// What is heard of a piece and known of its notes. Its checksum stands in tests for what is too
/// much to write down: it changes with any of it.
inline QByteArray everythingOf(const kelo::engine::Piece &piece)
{
    const auto midi = writeMidiFile(piece);
    QByteArray all(reinterpret_cast<const char *>(midi.data()), qsizetype(midi.size()));
    for (const double bar : piece.bars)
        all += QByteArray::number(bar) + ' ';
    for (const int number : piece.barNumbers)
        all += QByteArray::number(number) + ' ';
    for (const kelo::engine::NoteMark &mark : piece.marks)
        all += QByteArray::number(int(mark.hand) + 10 * mark.finger) + (mark.grace ? "g" : "")
            + (mark.trill ? "t" : "") + (mark.rolled ? "r" : "");
    return all;
}

/// How the sums differ from those of that name in sums.txt; empty where they don't. They change
/// with anything that a test put into them. With KELO_WRITE_SCRIPTS set they are kept instead.
inline QString unlikeKept(const QString &name, const QList<int> &sums)
{
    const QString file = QFINDTESTDATA("sums.txt");
    QStringList lines = QString::fromUtf8(kelo::test::readFile(file)).split(u'\n');
    QString now = name + u':';
    for (const int sum : sums)
        now += u' ' + QString::number(sum);
    const auto kept = std::ranges::find_if(
        lines, [&](const QString &line) { return line.startsWith(name + u':'); });
    if (!qEnvironmentVariableIsSet("KELO_WRITE_SCRIPTS"))
        return kept != lines.end() && *kept == now ? QString() : now;
    if (kept != lines.end())
        *kept = now;
    else
        lines.insert(lines.size() - 1, now);
    kelo::test::writeFile(file, lines.join(u'\n').toUtf8());
    return {};
}

/// Chance that is the same everywhere and every time.
class Chance {
public:
    explicit Chance(unsigned seed)
        : random_(seed + 1)
    {
    }

    int below(int end) { return static_cast<int>(random_() % static_cast<unsigned>(end)); }
    /// True once in so many times.
    bool oneIn(int times) { return below(times) == 0; }
    template <typename List> auto of(const List &list) { return list[below(int(list.size()))]; }

    /// Text by rules, a line "name: text" each: "$name" stands for any line of that name, "{a|b}"
    /// for any of these.
    using Rules = QMultiMap<QByteArray, QByteArray>;
    static Rules rulesIn(const QString &file)
    {
        Rules rules;
        for (const QByteArray &line : kelo::test::readFile(file).split('\n'))
            rules.insert(line.left(line.indexOf(": ")), line.mid(line.indexOf(": ") + 2));
        return rules;
    }
    QByteArray text(const Rules &rules, QByteArray pattern)
    {
        for (qsizetype open; (open = pattern.lastIndexOf('{')) >= 0;) {
            const qsizetype length = pattern.indexOf('}', open) + 1 - open;
            pattern.replace(open, length, of(pattern.mid(open + 1, length - 2).split('|')));
        }
        static const QRegularExpression names(QStringLiteral("\\$([a-z]+)"));
        for (auto name = names.match(QString::fromUtf8(pattern)); name.hasMatch();
             name = names.match(QString::fromUtf8(pattern)))
            pattern.replace(name.capturedStart(), name.capturedLength(),
                text(rules, of(rules.values(name.captured(1).toUtf8()))));
        return pattern;
    }

private:
    std::minstd_rand random_;
};
