#include "core/store/errors.h"
#include "core/store/recordset_impl.h"
#include "core/store/sql/jetsql.h"

#include <climits>

namespace lx::store::detail {

namespace {

using sql::SqlIdentifier;

// A table recordset is live: it holds only its position (the current row's index key and
// rowid) and reads rows in index order from the table whenever it moves, so it sees what any
// recordset has added or deleted. Rows come a page at a time while nothing is written.
class TableCursor final : public RecordsetImpl {
public:
    TableCursor(std::shared_ptr<Connection> c, const TableDef &def)
        : RecordsetImpl(std::move(c)), m_def(def), m_current(int(def.Fields.size()) + 1)
    {
        setColumnsFromTable(m_def);
        QStringList fields{QStringLiteral("rowid")};
        for (const Field &f : m_def.Fields)
            fields << SqlIdentifier(f.Name);
        m_select = QStringLiteral("SELECT %1 FROM %2 ")
                       .arg(fields.join(QLatin1Char(',')), SqlIdentifier(m_def.Name));
        m_sources.front().def = &m_def;
        moveFirstIfAny();
    }

    int type() const override { return dbOpenTable; }

    long recordCount() override
    {
        Connection &c = connection();
        if (m_countStamp != c.changeStamp()) {
            Statement s =
                c.prepare(QStringLiteral("SELECT count(*) FROM %1").arg(SqlIdentifier(m_def.Name)));
            s.step();
            m_count = long(s.integer(0));
            m_countStamp = c.changeStamp();
        }
        return m_count;
    }

    void moveFirst() override
    {
        if (!fetchPage(QString(), {}, false))
            noCurrentRecord();
    }

    void moveLast() override
    {
        if (!fetchPage(QString(), {}, true))
            noCurrentRecord();
    }

    void moveNext() override
    {
        if (m_eof)
            noCurrentRecord();
        if (!m_has) {
            moveFirstIfAny();
            return;
        }
        const std::uint64_t stamp = connection().changeStamp();
        if (m_pageStamp == stamp && m_pageNext < m_page.size()) {
            takeFromPage(m_pageNext++);
            return;
        }
        if (!fetchAfter(false)) {
            m_eof = true;
            m_has = false;
        }
    }

    void movePrevious() override
    {
        if (m_bof)
            noCurrentRecord();
        if (!m_has) {
            if (m_eof && recordCount() > 0)
                moveLast();
            return;
        }
        if (!fetchAfter(true)) {
            m_bof = true;
            m_has = false;
        }
    }

    const Cell *currentRow() override
    {
        refreshCurrent();
        return m_current.row(0) + 1;
    }

    std::vector<std::int64_t> currentRowids() override
    {
        refreshCurrent();
        return {m_current.row(0)[0].integer};
    }

    Bookmark bookmark() override
    {
        if (!m_has)
            noCurrentRecord();
        return m_current.row(0)[0].integer;
    }

    void setBookmark(Bookmark b) override
    {
        Statement s = connection().prepare(m_select + QStringLiteral("WHERE rowid=?"));
        s.bindInt(1, b);
        if (!s.step())
            throw StoreError::make(err::RecordIsDeleted);
        takeRow(s);
    }

    QString index() const override { return m_indexName; }

    void setIndex(const QString &name) override
    {
        const Index *idx = m_def.findIndex(name);
        if (!idx)
            throw StoreError::make(err::ItemNotFound);
        m_indexName = idx->Name;
        m_keyFields.clear();
        for (const Field &f : idx->Fields)
            m_keyFields.push_back(m_def.fieldIndex(f.Name));
        m_pageStamp = 0;
        moveFirstIfAny();
    }

    void seek(QStringView op, const QVariantList &keys) override
    {
        if (m_keyFields.empty())
            throw StoreError(err::InvalidOperation,
                             QStringLiteral("Operation invalid without a current index."));
        if (keys.isEmpty() || size_t(keys.size()) > m_keyFields.size())
            throw StoreError::make(err::InvalidOperation);
        const QString o = op.trimmed().toString();
        static const QStringList ops{QStringLiteral("="), QStringLiteral(">="), QStringLiteral(">"),
                                     QStringLiteral("<="), QStringLiteral("<")};
        if (!ops.contains(o))
            throw StoreError::make(err::InvalidOperation);
        const bool backwards = o.startsWith(QLatin1Char('<'));
        QStringList where;
        std::vector<Cell> cells;
        std::vector<std::string> holders(size_t(keys.size()));
        for (qsizetype i = 0; i < keys.size(); ++i) {
            const Field &f = m_def.Fields[size_t(m_keyFields[size_t(i)])];
            // The last key takes the operator; the ones before it must match.
            const QString cmp = i + 1 == keys.size() ? o : QStringLiteral("=");
            where << SqlIdentifier(f.Name) + cmp + QLatin1Char('?');
            Cell cell;
            try {
                cell = toCell(keys[i], f, holders[size_t(i)]);
            } catch (const StoreError &) {
                m_noMatch = true; // a key that can't be in the field isn't there
                return;
            }
            cells.push_back(cell);
        }
        Statement s = connection().prepare(m_select + QStringLiteral("WHERE ") +
                                           where.join(QStringLiteral(" AND ")) +
                                           orderBy(backwards) + QStringLiteral(" LIMIT 1"));
        for (size_t i = 0; i < cells.size(); ++i)
            s.bindCell(int(i) + 1, cells[i]);
        m_noMatch = !s.step();
        if (!m_noMatch)
            takeRow(s);
    }

protected:
    void afterInsert(const std::vector<std::int64_t> &rowids) override
    {
        m_lastModified = rowids.front();
    }
    void afterUpdate() override {}
    void afterDelete() override { m_deleted = true; }

private:
    void moveFirstIfAny()
    {
        m_has = false;
        m_eof = m_bof = !fetchPage(QString(), {}, false);
    }

    QString orderBy(bool descending) const
    {
        const QString dir = descending ? QStringLiteral(" DESC") : QString();
        QStringList terms;
        for (int f : m_keyFields)
            terms << SqlIdentifier(m_def.Fields[size_t(f)].Name) + dir;
        terms << QStringLiteral("rowid") + dir;
        return QStringLiteral(" ORDER BY ") + terms.join(QLatin1Char(','));
    }

    // Rows after (or before) the current one in index order. Index fields may hold Null,
    // which sorts first; a row-value comparison serves when the current key has no Null.
    bool fetchAfter(bool before)
    {
        const Cell *row = m_current.row(0);
        std::vector<Cell> key;
        std::vector<QString> names;
        bool hasNull = false;
        for (int f : m_keyFields) {
            key.push_back(row[f + 1]);
            names.push_back(SqlIdentifier(m_def.Fields[size_t(f)].Name));
            hasNull = hasNull || row[f + 1].kind == Cell::Null;
        }
        key.push_back(row[0]);
        names.push_back(QStringLiteral("rowid"));

        std::vector<Cell> binds;
        QString where;
        if (!before && !hasNull) {
            QStringList marks;
            for (size_t i = 0; i < names.size(); ++i)
                marks << QStringLiteral("?");
            where = QStringLiteral("(%1)>(%2)")
                        .arg(QStringList(names.begin(), names.end()).join(QLatin1Char(',')),
                             marks.join(QLatin1Char(',')));
            binds = key;
        } else {
            where = chain(names, key, 0, before, binds);
        }
        return fetchPage(QStringLiteral("WHERE ") + where, binds, before);
    }

    // Lexicographic "after"/"before" over the key, spelt out so that Nulls take part.
    static QString chain(const std::vector<QString> &names, const std::vector<Cell> &key, size_t i,
                         bool before, std::vector<Cell> &binds)
    {
        const QString &n = names[i];
        const bool null = key[i].kind == Cell::Null;
        QString beyond;
        if (before)
            beyond = null ? QStringLiteral("0") : QStringLiteral("(%1<? OR %1 IS NULL)").arg(n);
        else
            beyond = null ? QStringLiteral("%1 IS NOT NULL").arg(n) : QStringLiteral("%1>?").arg(n);
        if (!null)
            binds.push_back(key[i]);
        if (i + 1 == names.size())
            return beyond;
        const QString equal =
            null ? QStringLiteral("%1 IS NULL").arg(n) : QStringLiteral("%1=?").arg(n);
        if (!null)
            binds.push_back(key[i]);
        return QStringLiteral("(%1 OR (%2 AND %3))")
            .arg(beyond, equal, chain(names, key, i + 1, before, binds));
    }

    bool fetchPage(const QString &where, const std::vector<Cell> &binds, bool backwards)
    {
        Connection &c = connection();
        const int limit = backwards ? 1 : m_pageSize;
        Statement s = c.prepare(m_select + where + orderBy(backwards) + QStringLiteral(" LIMIT ") +
                                QString::number(limit));
        for (size_t i = 0; i < binds.size(); ++i)
            s.bindCell(int(i) + 1, binds[i]);
        m_page.reset(m_current.width());
        while (s.step())
            for (int col = 0; col < m_current.width(); ++col)
                m_page.append(s.cell(col));
        m_pageStamp = c.changeStamp();
        m_pageSize = std::min(m_pageSize * 2, 1024);
        if (m_page.empty())
            return false;
        takeFromPage(0);
        m_pageNext = 1;
        return true;
    }

    void takeFromPage(size_t i)
    {
        m_current.reset(m_current.width());
        const Cell *row = m_page.row(i);
        for (int col = 0; col < m_current.width(); ++col)
            m_current.append(row[col]);
        positioned();
    }

    void takeRow(const Statement &s)
    {
        m_current.reset(m_current.width());
        for (int col = 0; col < m_current.width(); ++col)
            m_current.append(s.cell(col));
        m_pageStamp = 0;
        positioned();
    }

    void positioned()
    {
        m_has = true;
        m_deleted = false;
        m_eof = m_bof = false;
        m_currentStamp = connection().changeStamp();
    }

    // Values are read live: after any write the row is read again, or found deleted.
    void refreshCurrent()
    {
        if (!m_has)
            noCurrentRecord();
        if (m_deleted)
            throw StoreError::make(err::RecordIsDeleted);
        Connection &c = connection();
        if (m_currentStamp == c.changeStamp())
            return;
        Statement s = c.prepare(m_select + QStringLiteral("WHERE rowid=?"));
        s.bindInt(1, m_current.row(0)[0].integer);
        if (!s.step()) {
            m_deleted = true;
            throw StoreError::make(err::RecordIsDeleted);
        }
        const std::uint64_t pageStamp = m_pageStamp;
        takeRow(s);
        m_pageStamp = pageStamp;
    }

    TableDef m_def;
    QString m_select;
    QString m_indexName;
    std::vector<int> m_keyFields;
    RowStore m_current;
    bool m_has = false;
    bool m_deleted = false;
    std::uint64_t m_currentStamp = 0;
    RowStore m_page;
    size_t m_pageNext = 0;
    std::uint64_t m_pageStamp = 0;
    // The first read takes one row: most table cursors are opened for a Seek or to stand on
    // the first row; a walk doubles the page from there.
    int m_pageSize = 1;
    long m_count = 0;
    std::uint64_t m_countStamp = 0;
};

} // namespace

std::unique_ptr<RecordsetImpl> openTable(std::shared_ptr<Connection> c, const TableDef &def)
{
    return std::make_unique<TableCursor>(std::move(c), def);
}

} // namespace lx::store::detail
