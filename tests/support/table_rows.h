#pragma once

#include "core/store/database.h"

#include <QDir>
#include <QFile>
#include <QStringList>
#include <QVariant>

#include <gtest/gtest.h>
#include <initializer_list>
#include <utility>

// Rows of a store as text, to compare with the seed sources, and small helpers to count and
// add rows.
namespace lx::test {

#ifdef LEXARBOR_SEED_SOURCES
// One seed source as sorted text rows "value<tab>value...", its header line dropped.
inline QStringList SourceRows(const char *file)
{
    QFile f(QDir(QStringLiteral(LEXARBOR_SEED_SOURCES)).filePath(QString::fromLatin1(file)));
    EXPECT_TRUE(f.open(QIODevice::ReadOnly)) << file;
    QStringList rows;
    bool header = true;
    for (const QString &line : QString::fromUtf8(f.readAll()).split(QLatin1Char('\n'))) {
        if (line.isEmpty() || line.startsWith(QLatin1Char('#')))
            continue;
        if (!std::exchange(header, false))
            rows << line;
    }
    rows.sort();
    return rows;
}
#endif

// A value as the seed sources write it: "-" for none, booleans as true and false.
inline QString Text(const QVariant &v)
{
    if (v.isNull())
        return QStringLiteral("-");
    if (v.typeId() == QMetaType::Bool)
        return v.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    return v.toString();
}

// A table's rows as sorted text rows of `fields`.
inline QStringList TableRows(store::Database &db, const QString &table,
                             std::initializer_list<QStringView> fields)
{
    QStringList rows;
    store::Recordset rs = db.OpenRecordset(table, store::dbOpenSnapshot);
    for (; !rs.Eof(); rs.MoveNext()) {
        QStringList values;
        for (QStringView f : fields)
            values << Text(rs.Value(f));
        rows << values.join(QLatin1Char('\t'));
    }
    rows.sort();
    return rows;
}

inline long Count(store::Database &db, const QString &sql)
{
    store::Recordset rs = db.OpenRecordset(sql, store::dbOpenSnapshot);
    if (rs.RecordCount() == 0)
        return 0;
    rs.MoveLast();
    return rs.RecordCount();
}

inline void AddRow(store::Database &db, const char *table,
                   std::initializer_list<std::pair<QStringView, QVariant>> values)
{
    store::Recordset rs = db.OpenRecordset(QString::fromLatin1(table), store::dbOpenTable);
    rs.AddNew();
    for (const auto &[field, value] : values)
        rs.Collect(field, value);
    rs.Update();
}

} // namespace lx::test
