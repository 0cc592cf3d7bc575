// A test's table whose rows are values of one struct.
#pragma once

#include <QTest>
#include <QVector>

/// Adds the rows as the column "row", each under its member "name".
template <typename Row>
void addRows(const QVector<Row> &rows)
{
    QTest::addColumn<Row>("row");
    for (const Row &row : rows)
        QTest::newRow(row.name) << row;
}
