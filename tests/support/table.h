#pragma once

#include "support/files.h"

#include <QTest>

#include <initializer_list>
#include <memory>

namespace kelo::test {

/// The table of a data-driven test: made with the names of its columns, then called once a row.
///
///     const Table<QByteArray, int> row{"text", "value"};
///     row("two words", "ninety five", 95);
template <typename... Columns> class Table {
public:
    template <typename... Names> explicit Table(Names... names)
    {
        static_assert(sizeof...(Names) == sizeof...(Columns));
        (QTest::addColumn<Columns>(names), ...);
    }

    void operator()(const char *name, const Columns &...values) const
    {
        (QTest::newRow(name) << ... << values);
    }
};

/// The lines of a text file after its first two, each cut at its arrows.
inline QList<QStringList> arrowed(const QString &file)
{
    QList<QStringList> all;
    for (const QString &line : QString::fromUtf8(readFile(file)).trimmed().split(u'\n').mid(2))
        all << line.split(QStringLiteral(" -> "));
    return all;
}

/// A row, with the column "script", for each part of a text file that begins with "== " and its
/// name. Returns what stands before them.
inline QString scriptRows(const QString &file)
{
    QStringList parts = QString::fromUtf8(readFile(file)).split(QStringLiteral("\n== "));
    const Table<QString> row{"script"};
    const QString head = parts.takeFirst();
    for (const QString &part : parts)
        row(qPrintable(part.section(u'\n', 0, 0)), part.section(u'\n', 1).trimmed());
    return head;
}

/// What is given to a function, and what it has to make of that.
template <typename Given, typename Made> struct Row {
    const char *name;
    Given given;
    Made made;
};

/// Fails at the first row of which the function makes something else.
///
///     checkRows<QByteArray, int>(numberOf, {{"two words", "ninety five", 95}});
template <typename Given, typename Made, typename Function>
void checkRows(const Function &function, std::initializer_list<Row<Given, Made>> rows)
{
    for (const auto &[name, given, expected] : rows) {
        const Made made = function(given);
        const std::unique_ptr<char[]> is(QTest::toString(made));
        const std::unique_ptr<char[]> wanted(QTest::toString(expected));
        const QString finding = QString::asprintf("%s: is %s, not %s", name,
            is ? is.get() : "something else", wanted ? wanted.get() : "as wanted");
        QVERIFY2(made == expected, qPrintable(finding));
    }
}

} // namespace kelo::test
