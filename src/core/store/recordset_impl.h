#pragma once

#include "core/store/catalog.h"
#include "core/store/connection.h"
#include "core/store/recordset.h"
#include "core/store/rows.h"

#include <QVariant>

#include <memory>
#include <optional>
#include <vector>

namespace lx::store::detail {

// A column of a recordset and where it is written back.
struct Column {
    QString name;
    int type = dbText;
    int source = -1;     // index into sources(); -1: computed, read only
    int baseField = -1;  // index of the field in that source's TableDef
    QString sourceAlias; // for "Alias.Field" lookups
};

// A table behind a recordset.
struct SourceTable {
    const TableDef *def = nullptr;
    QString alias;
};

// What every recordset type shares: columns, the edit buffer, validation and the row-by-row
// writes. The types differ in how they hold and walk their rows.
class RecordsetImpl {
public:
    explicit RecordsetImpl(std::shared_ptr<Connection> connection);
    virtual ~RecordsetImpl() = default;

    virtual int type() const = 0;
    virtual long recordCount() = 0;
    virtual void moveFirst() = 0;
    virtual void moveLast() = 0;
    virtual void moveNext() = 0;
    virtual void movePrevious() = 0;
    bool eof() const { return m_eof; }
    bool bof() const { return m_bof; }

    // The current row's cells, in column order; 3021 without a current row, 3167 if deleted.
    virtual const Cell *currentRow() = 0;
    // Rowid of each source for the current row (INT64_MIN for the missing side of a join).
    virtual std::vector<std::int64_t> currentRowids() = 0;

    virtual Bookmark bookmark() = 0;
    virtual void setBookmark(Bookmark b) = 0;
    virtual QString index() const;
    virtual void setIndex(const QString &name);
    virtual void seek(QStringView op, const QVariantList &keys);
    virtual void findFirst(const QString &criteria, bool fromCurrent);
    virtual void requery();
    virtual bool updatable() const { return true; }

    int columnIndex(QStringView name) const; // 3265 when unknown
    const std::vector<Column> &columns() const { return m_columns; }
    QVariant value(int column);
    bool noMatch() const { return m_noMatch; }
    Bookmark lastModified() const { return m_lastModified; }

    void addNew();
    void edit();
    void collect(int column, const QVariant &value);
    void update();
    void cancelUpdate() { m_mode = Mode::None; }
    void deleteCurrent();

    Connection &connection() const;

protected:
    enum class Mode { None, AddNew, Edit };

    // Called after the rows were written, so the type can follow them.
    virtual void afterInsert(const std::vector<std::int64_t> &rowids) = 0;
    virtual void afterUpdate() = 0;
    virtual void afterDelete() = 0;

    void setColumnsFromTable(const TableDef &def);
    [[noreturn]] void noCurrentRecord() const;

    std::shared_ptr<Connection> m_connection;
    std::vector<SourceTable> m_sources;
    std::vector<Column> m_columns;
    // For one insert through a join: pairs of (source, field) that take each other's value.
    struct JoinKey {
        int leftSource, leftField, rightSource, rightField;
    };
    std::vector<JoinKey> m_joinKeys;
    bool m_eof = true;
    bool m_bof = true;
    bool m_noMatch = false;
    Bookmark m_lastModified = 0;

private:
    void insertRows();
    void updateRows();
    void checkRelationsAfterFailure(const SourceTable &source, const std::vector<Cell> &values,
                                    bool deleting);

    Mode m_mode = Mode::None;
    std::vector<std::optional<QVariant>> m_buffer;
};

// Converts a program value into a cell for the given field, enforcing the field's rules;
// text of the cell is kept in `holder`. Throws 3163, 3315, 3421, 6.
Cell toCell(const QVariant &value, const Field &field, std::string &holder);

std::unique_ptr<RecordsetImpl> openTable(std::shared_ptr<Connection> c, const TableDef &def);
std::unique_ptr<RecordsetImpl> openDynaset(std::shared_ptr<Connection> c, const QString &sql);
std::unique_ptr<RecordsetImpl> openSnapshot(std::shared_ptr<Connection> c, const QString &sql);

} // namespace lx::store::detail
