#include "core/store/errors.h"
#include "core/store/recordset_impl.h"
#include "core/store/sql/jetsql.h"

#include <QSet>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <unordered_map>

namespace lx::store::detail {

namespace {

// What a query recordset needs of its compiled query: its tables, columns and join keys.
class QueryCursor : public RecordsetImpl {
protected:
    QueryCursor(std::shared_ptr<Connection> c, sql::CompiledQuery query)
        : RecordsetImpl(std::move(c)), m_query(std::move(query))
    {
        Connection &conn = connection();
        m_defs.reserve(m_query.sources.size());
        for (const sql::Source &s : m_query.sources)
            m_defs.push_back(conn.table(s.table));
        for (size_t i = 0; i < m_defs.size(); ++i)
            m_sources.push_back(SourceTable{&m_defs[i], m_query.sources[i].alias});
        for (const sql::OutputColumn &oc : m_query.columns) {
            Column col{oc.name, oc.type, oc.source, -1, QString()};
            if (oc.source >= 0) {
                const TableDef &def = m_defs[size_t(oc.source)];
                col.baseField = def.fieldIndex(oc.baseColumn);
                col.type = def.Fields[size_t(col.baseField)].Type;
                col.sourceAlias = m_query.sources[size_t(oc.source)].alias;
                if (col.baseField < 0)
                    col.source = -1;
            }
            m_columns.push_back(col);
        }
        for (const sql::JoinKey &k : m_query.joinKeys)
            m_joinKeys.push_back(
                JoinKey{k.leftSource, m_defs[size_t(k.leftSource)].fieldIndex(k.leftColumn),
                        k.rightSource, m_defs[size_t(k.rightSource)].fieldIndex(k.rightColumn)});
    }

    QString selectOf(const std::vector<QString> &terms) const
    {
        const QStringList list(terms.begin(), terms.end());
        return QStringLiteral("SELECT ") + list.join(QLatin1Char(',')) + QLatin1Char(' ') +
               m_query.fromSql;
    }
    QString whereClause() const
    {
        return m_query.whereSql.isEmpty()
                   ? QString()
                   : QStringLiteral(" WHERE (") + m_query.whereSql + QLatin1Char(')');
    }
    QString orderClause() const
    {
        return m_query.orderBySql.isEmpty() ? QString() : QLatin1Char(' ') + m_query.orderBySql;
    }

    std::optional<sql::ColumnSql> criteriaColumnSql(sql::ColumnRef ref) const
    {
        const std::optional<int> i = findColumn(ref);
        if (!i)
            return std::nullopt;
        return sql::ColumnSql{m_query.columnSql[size_t(*i)], FieldType(m_columns[size_t(*i)].type)};
    }

    std::optional<int> findColumn(sql::ColumnRef ref) const
    {
        for (size_t i = 0; i < m_columns.size(); ++i) {
            const Column &c = m_columns[i];
            if (ref.qualifier.isEmpty()) {
                if (c.name.compare(ref.name, Qt::CaseInsensitive) == 0)
                    return int(i);
                continue;
            }
            if (c.name.compare(ref.qualifier.toString() + QLatin1Char('.') + ref.name.toString(),
                               Qt::CaseInsensitive) == 0)
                return int(i);
            if (c.source >= 0 && c.sourceAlias.compare(ref.qualifier, Qt::CaseInsensitive) == 0 &&
                m_defs[size_t(c.source)].Fields[size_t(c.baseField)].Name.compare(
                    ref.name, Qt::CaseInsensitive) == 0)
                return int(i);
        }
        return std::nullopt;
    }

    sql::CompiledQuery m_query;
    std::vector<TableDef> m_defs;
};

// A snapshot is a copy of the rows taken at open (and at Requery). A long one copies its rows as
// they are asked for: its statement stays open, in the read transaction that began at the open,
// until the last row is read or the file is about to be written (then it reads the rest at
// once). Its count comes from the store while rows are still unread.
class SnapshotCursor final : public QueryCursor, private PendingRead {
public:
    SnapshotCursor(std::shared_ptr<Connection> c, sql::CompiledQuery query, int reportedType)
        : QueryCursor(std::move(c), std::move(query)), m_type(reportedType),
          m_rows(int(m_columns.size()))
    {
        load();
    }
    ~SnapshotCursor() override { stopReading(); }
    SnapshotCursor(const SnapshotCursor &) = delete;
    SnapshotCursor &operator=(const SnapshotCursor &) = delete;

    int type() const override { return m_type; }
    bool updatable() const override { return false; }
    long recordCount() override
    {
        if (!m_reading)
            return long(m_rows.size());
        if (m_count < 0)
            m_count = countRows();
        return m_count;
    }

    void moveFirst() override { moveTo(0); }
    void moveLast() override
    {
        readRest();
        moveTo(long(m_rows.size()) - 1);
    }
    void moveNext() override
    {
        if (m_eof)
            noCurrentRecord();
        if (!have(size_t(++m_pos) + 1)) {
            m_pos = long(m_rows.size());
            m_eof = true;
        } else {
            m_bof = false;
        }
    }
    void movePrevious() override
    {
        if (m_bof)
            noCurrentRecord();
        if (--m_pos < 0) {
            m_pos = -1;
            m_bof = true;
        } else {
            m_eof = false;
        }
    }

    const Cell *currentRow() override
    {
        if (m_pos < 0 || m_pos >= long(m_rows.size()))
            noCurrentRecord();
        return m_rows.row(size_t(m_pos));
    }
    std::vector<std::int64_t> currentRowids() override { noCurrentRecord(); }

    Bookmark bookmark() override
    {
        currentRow();
        return m_pos;
    }
    void setBookmark(Bookmark b) override { moveTo(long(b)); }

    // Rows already copied first, then the unread ones one by one: the search reads no further
    // than its match.
    void findFirst(const QString &criteria, bool fromCurrent) override
    {
        const sql::Predicate match = sql::CompileCriteria(
            criteria, [this](sql::ColumnRef ref) -> std::optional<sql::ColumnSlot> {
                const std::optional<int> i = findColumn(ref);
                if (!i)
                    return std::nullopt;
                return sql::ColumnSlot{*i, FieldType(m_columns[size_t(*i)].type)};
            });
        size_t i = fromCurrent ? size_t(m_pos + 1) : 0;
        do {
            for (const size_t n = m_rows.size(); i < n; ++i) {
                if (match(m_rows.row(i))) {
                    m_noMatch = false;
                    moveTo(long(i));
                    return;
                }
            }
        } while (have(i + 1));
        m_noMatch = true;
    }

    void requery() override { load(); }

protected:
    void afterInsert(const std::vector<std::int64_t> &) override {}
    void afterUpdate() override {}
    void afterDelete() override {}

private:
    // Rows copied at the open; a snapshot no longer than this reads all of them at once.
    static constexpr size_t kFirstRows = 256;

    void load()
    {
        stopReading();
        m_rows.reset(int(m_columns.size()));
        m_count = -1;
        m_statement.emplace(connection().prepare(m_query.sql));
        m_reading = true;
        connection().addPendingRead(this);
        have(kFirstRows);
        m_pos = 0;
        m_eof = m_bof = m_rows.empty();
    }

    // Whether the snapshot has `rows` rows, reading on until it does or has none left.
    bool have(size_t rows)
    {
        if (m_rows.size() >= rows)
            return true;
        // The statement gives the rowids first (Null under DISTINCT), then the columns.
        const int skip = int(m_sources.size());
        const int width = int(m_columns.size());
        try {
            while (m_reading && m_rows.size() < rows) {
                if (!m_statement->step()) {
                    stopReading();
                    break;
                }
                for (int col = 0; col < width; ++col)
                    m_rows.append(m_statement->cell(skip + col));
            }
        } catch (...) {
            stopReading();
            throw;
        }
        return m_rows.size() >= rows;
    }

    void readRest() override { have(SIZE_MAX); }

    void stopReading()
    {
        if (!m_reading)
            return;
        m_reading = false;
        m_statement.reset();
        m_connection->removePendingRead(this);
    }

    // The count of the rows as of the open: the statement's read transaction is still open, so
    // the store counts the same rows without their being copied.
    long countRows()
    {
        const bool plain = !m_query.distinct && m_query.groupBySql.isEmpty();
        const QString text =
            plain ? QStringLiteral("SELECT count(*) ") + m_query.fromSql + whereClause()
                  : QStringLiteral("SELECT count(*) FROM (") + m_query.sql + QLatin1Char(')');
        Statement s = connection().prepare(text);
        return s.step() ? long(s.integer(0)) : 0;
    }

    void moveTo(long pos)
    {
        if (pos < 0 || !have(size_t(pos) + 1))
            noCurrentRecord();
        m_pos = pos;
        m_eof = m_bof = false;
    }

    int m_type;
    RowStore m_rows;
    std::optional<Statement> m_statement;
    bool m_reading = false;
    long m_count = -1;
    long m_pos = 0;
};

// A dynaset holds the rowids of its rows from the open (or the last Requery), reads their
// values live, and takes in the rows added through itself.
class DynasetCursor final : public QueryCursor {
public:
    DynasetCursor(std::shared_ptr<Connection> c, sql::CompiledQuery query)
        : QueryCursor(std::move(c), std::move(query)), m_stride(m_sources.size()),
          m_current(int(m_columns.size()))
    {
        QStringList where;
        for (size_t i = 0; i < m_sources.size(); ++i)
            where << m_query.rowidSql[i] + (m_query.sources[i].nullable ? QStringLiteral(" IS ?")
                                                                        : QStringLiteral("=?"));
        m_readSql = selectOf(m_query.columnSql) + QStringLiteral(" WHERE ") +
                    where.join(QStringLiteral(" AND "));
        load();
    }

    int type() const override { return dbOpenDynaset; }

    long recordCount() override { return long(rowCount() - m_goneCount); }

    void moveFirst() override
    {
        if (!settle(0, +1))
            noCurrentRecord();
    }
    void moveLast() override
    {
        if (!settle(long(rowCount()) - 1, -1))
            noCurrentRecord();
    }
    void moveNext() override
    {
        if (m_eof)
            noCurrentRecord();
        if (!settle(m_pos + 1, +1)) {
            m_pos = long(rowCount());
            m_eof = true;
        }
    }
    void movePrevious() override
    {
        if (m_bof)
            noCurrentRecord();
        if (!settle(m_pos - 1, -1)) {
            m_pos = -1;
            m_bof = true;
        }
    }

    const Cell *currentRow() override
    {
        if (m_pos < 0 || size_t(m_pos) >= rowCount())
            noCurrentRecord();
        if (m_gone[size_t(m_pos)] || !read(m_pos))
            throw StoreError::make(err::RecordIsDeleted);
        return m_current.row(0);
    }

    std::vector<std::int64_t> currentRowids() override
    {
        currentRow();
        const std::int64_t *k = &m_keys[size_t(m_pos) * m_stride];
        return std::vector<std::int64_t>(k, k + m_stride);
    }

    Bookmark bookmark() override
    {
        currentRow();
        return m_pos;
    }
    void setBookmark(Bookmark b) override
    {
        if (b < 0 || size_t(b) >= rowCount())
            throw StoreError::make(err::RecordIsDeleted);
        m_pos = long(b);
        m_eof = m_bof = false;
    }

    // The store finds the matching rows with the file's indexes; the first of them in the
    // dynaset's own order wins.
    void findFirst(const QString &criteria, bool fromCurrent) override
    {
        const QString condition = sql::CompileCriteriaSql(
            criteria, [this](sql::ColumnRef ref) { return criteriaColumnSql(ref); });
        QString text =
            selectOf(m_query.rowidSql) + QStringLiteral(" WHERE (") + condition + QLatin1Char(')');
        if (!m_appended && !m_query.whereSql.isEmpty())
            text += QStringLiteral(" AND (") + m_query.whereSql + QLatin1Char(')');
        // A small dynaset names its rows: otherwise the planner may pick the index of a column
        // of the criteria and walk every row of the table that shares its value.
        if (m_stride == 1 && rowCount() <= kListedRows)
            text += QStringLiteral(" AND ") + m_query.rowidSql.front() + QStringLiteral(" IN (") +
                    rowidList() + QLatin1Char(')');
        const bool inOrder = m_stride == 1 && m_sortedByRowid;
        if (inOrder)
            text += QStringLiteral(" ORDER BY ") + m_query.rowidSql.front();
        const long from = fromCurrent ? m_pos + 1 : 0;
        long best = -1;
        Statement s = connection().prepare(text);
        std::vector<std::int64_t> key(m_stride);
        while (s.step()) {
            for (size_t i = 0; i < m_stride; ++i)
                key[i] = s.isNull(int(i)) ? INT64_MIN : s.integer(int(i));
            const long pos = positionOf(key, from);
            if (pos < 0 || (best >= 0 && pos >= best))
                continue;
            best = pos;
            if (inOrder)
                break;
        }
        m_noMatch = best < 0;
        if (!m_noMatch) {
            m_pos = best;
            m_eof = m_bof = false;
        }
    }

    void requery() override { load(); }

protected:
    void afterInsert(const std::vector<std::int64_t> &rowids) override
    {
        if (m_stride == 1 && !m_keys.empty() && rowids.front() <= m_keys.back())
            m_sortedByRowid = false;
        m_keys.insert(m_keys.end(), rowids.begin(), rowids.end());
        m_gone.push_back(false);
        m_positions.clear();
        m_appended = true;
        m_lastModified = long(rowCount()) - 1;
    }
    void afterUpdate() override {}
    void afterDelete() override
    {
        m_gone[size_t(m_pos)] = true;
        ++m_goneCount;
    }

private:
    size_t rowCount() const { return m_gone.size(); }

    // The rows still in the dynaset, as a list of rowids for an IN clause.
    QString rowidList() const
    {
        QString list;
        for (size_t i = 0; i < m_keys.size(); ++i) {
            if (m_gone[i])
                continue;
            if (!list.isEmpty())
                list += QLatin1Char(',');
            list += QString::number(m_keys[i]);
        }
        return list;
    }
    static constexpr size_t kListedRows = 256;

    void load()
    {
        Connection &c = connection();
        // Under DISTINCTROW the query's GROUP BY keeps one row per row of the tables that give
        // columns.
        const QString groupBy =
            m_query.groupBySql.isEmpty() ? QString() : QLatin1Char(' ') + m_query.groupBySql;
        Statement s =
            c.prepare(selectOf(m_query.rowidSql) + whereClause() + groupBy + orderClause());
        m_keys.clear();
        m_positions.clear();
        std::vector<std::int64_t> key(m_stride);
        m_sortedByRowid = true;
        while (s.step()) {
            for (size_t i = 0; i < m_stride; ++i)
                key[i] = s.isNull(int(i)) ? INT64_MIN : s.integer(int(i));
            if (m_stride == 1 && !m_keys.empty() && key[0] <= m_keys.back())
                m_sortedByRowid = false;
            m_keys.insert(m_keys.end(), key.begin(), key.end());
        }
        m_gone.assign(m_keys.size() / std::max<size_t>(m_stride, 1), false);
        m_goneCount = 0;
        m_appended = false;
        m_loadStamp = c.changeStamp();
        m_readPos = -1;
        m_pos = 0;
        m_eof = m_bof = m_gone.empty();
    }

    // Moves to the first row from `pos` in direction `step` that still exists.
    bool settle(long pos, int step)
    {
        for (; pos >= 0 && size_t(pos) < rowCount(); pos += step) {
            if (m_gone[size_t(pos)])
                continue;
            // Nothing written since the rows were gathered: they all still exist.
            if (m_loadStamp != connection().changeStamp() && !read(pos)) {
                m_gone[size_t(pos)] = true;
                ++m_goneCount;
                continue;
            }
            m_pos = pos;
            m_eof = m_bof = false;
            return true;
        }
        return false;
    }

    bool read(long pos)
    {
        Connection &c = connection();
        if (m_readPos == pos && m_readStamp == c.changeStamp())
            return true;
        Statement s = c.prepare(m_readSql);
        const std::int64_t *k = &m_keys[size_t(pos) * m_stride];
        for (size_t i = 0; i < m_stride; ++i) {
            if (k[i] == INT64_MIN)
                s.bindNull(int(i) + 1);
            else
                s.bindInt(int(i) + 1, k[i]);
        }
        if (!s.step())
            return false;
        m_current.reset(int(m_columns.size()));
        for (int col = 0; col < int(m_columns.size()); ++col)
            m_current.append(s.cell(col));
        m_readPos = pos;
        m_readStamp = c.changeStamp();
        return true;
    }

    long positionOf(const std::vector<std::int64_t> &key, long from)
    {
        if (m_stride == 1 && m_sortedByRowid) {
            // Rows are in rowid order: a binary search finds the row.
            const auto begin = m_keys.begin() + from;
            const auto it = std::lower_bound(begin, m_keys.end(), key[0]);
            if (it == m_keys.end() || *it != key[0] || m_gone[size_t(it - m_keys.begin())])
                return -1;
            return long(it - m_keys.begin());
        }
        if (m_positions.empty())
            for (size_t p = 0; p < rowCount(); ++p)
                m_positions.emplace(m_keys[p * m_stride], long(p));
        auto [it, end] = m_positions.equal_range(key[0]);
        long best = -1;
        for (; it != end; ++it) {
            const long p = it->second;
            if (p < from || m_gone[size_t(p)] || (best >= 0 && p >= best))
                continue;
            if (std::equal(key.begin(), key.end(), m_keys.begin() + long(size_t(p) * m_stride)))
                best = p;
        }
        return best;
    }

    size_t m_stride;
    std::vector<std::int64_t> m_keys;
    std::vector<bool> m_gone;
    size_t m_goneCount = 0;
    std::unordered_multimap<std::int64_t, long> m_positions;
    bool m_sortedByRowid = true;
    bool m_appended = false;
    std::uint64_t m_loadStamp = 0;
    QString m_readSql;
    RowStore m_current;
    long m_readPos = -1;
    std::uint64_t m_readStamp = 0;
    long m_pos = 0;
};

} // namespace

std::unique_ptr<RecordsetImpl> openDynaset(std::shared_ptr<Connection> c, const QString &sql)
{
    sql::CompiledQuery query = sql::CompileSelect(sql, c->tableLookup());
    // DISTINCT gives values rather than rows: such a dynaset is a read-only copy.
    if (query.distinct)
        return std::make_unique<SnapshotCursor>(std::move(c), std::move(query), dbOpenDynaset);
    return std::make_unique<DynasetCursor>(std::move(c), std::move(query));
}

std::unique_ptr<RecordsetImpl> openSnapshot(std::shared_ptr<Connection> c, const QString &sql)
{
    sql::CompiledQuery query = sql::CompileSelect(sql, c->tableLookup());
    return std::make_unique<SnapshotCursor>(std::move(c), std::move(query), dbOpenSnapshot);
}

} // namespace lx::store::detail
