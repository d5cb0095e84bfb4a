#pragma once

#include <QTest>

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

} // namespace kelo::test
