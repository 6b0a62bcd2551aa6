#include "recordset_impl.h"

#include "core/store/ddl.h"
#include "core/store/errors.h"
#include "core/store/sql/jetsql.h"

#include <QDateTime>

#include <climits>
#include <cmath>

namespace lx::store::detail {

namespace {

QString placeholders(int n)
{
    QString s;
    for (int i = 0; i < n; ++i)
        s += i ? QStringLiteral(",?") : QStringLiteral("?");
    return s;
}

std::int64_t toInteger(const QVariant &value)
{
    bool ok = false;
    if (value.typeId() == QMetaType::Bool)
        return value.toBool() ? kTrue : 0;
    if (value.typeId() == QMetaType::QString) {
        const QString s = value.toString().trimmed();
        if (s.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0)
            return kTrue;
        if (s.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0)
            return 0;
        const double d = s.toDouble(&ok);
        if (!ok)
            throw StoreError::make(err::DataTypeConversion);
        return std::llround(d);
    }
    const double d = value.toDouble(&ok);
    if (!ok)
        throw StoreError::make(err::DataTypeConversion);
    return std::llround(d);
}

QString toDateText(const QVariant &value)
{
    QDateTime dt;
    if (value.typeId() == QMetaType::QDateTime)
        dt = value.toDateTime();
    else if (value.typeId() == QMetaType::QDate)
        dt = value.toDate().startOfDay();
    else if (value.typeId() == QMetaType::QString) {
        const QString s = value.toString().trimmed();
        dt = QDateTime::fromString(s, Qt::ISODate);
        if (!dt.isValid())
            dt = QDate::fromString(s, Qt::ISODate).startOfDay();
        if (!dt.isValid())
            dt = QDate::fromString(s, QStringLiteral("dd/MM/yyyy")).startOfDay();
    }
    if (!dt.isValid())
        throw StoreError::make(err::DataTypeConversion);
    return dt.toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss"));
}

bool same(QStringView a, QStringView b)
{
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

// Tables join on the values of related fields (concept identifiers above all), and queries set
// such a value between double quotes: a double quote inside one would change which rows those
// queries touch, so none gets in.
void refuseQuoteInKey(const Catalog &catalog, const TableDef &table, const Field &field,
                      const QVariant &value)
{
    if (!field.isText() || value.typeId() != QMetaType::QString)
        return;
    const QString text = value.toString();
    if (!text.contains(QLatin1Char('"')))
        return;
    for (const Relation &r : catalog.relations)
        for (const Field &f : r.Fields)
            if ((same(r.Table, table.Name) && same(f.Name, field.Name)) ||
                (same(r.ForeignTable, table.Name) && same(f.ForeignName, field.Name)))
                throw StoreError::make(err::ValidationRule, field.Name, text);
}

} // namespace

Cell toCell(const QVariant &value, const Field &field, std::string &holder)
{
    // A Yes/No field holds no Null: a row added without it, or a Null written to it, is False.
    if (value.isNull() || !value.isValid())
        return field.Type == dbBoolean ? Cell::fromInteger(0) : Cell::null();
    switch (field.Type) {
    case dbText:
    case dbMemo: {
        const QString text =
            value.typeId() == QMetaType::Bool
                ? (value.toBool() ? QStringLiteral("True") : QStringLiteral("False"))
                : value.toString();
        if (text.isEmpty() && !field.AllowZeroLength)
            throw StoreError::make(err::ZeroLengthString, field.Name);
        if (field.Type == dbText && field.Size > 0 && text.size() > field.Size)
            throw StoreError::make(err::FieldTooSmall);
        holder = text.toStdString();
        return Cell::fromText(holder);
    }
    case dbByte: {
        const std::int64_t v = toInteger(value);
        if (v < 0 || v > 255)
            throw StoreError::make(err::Overflow);
        return Cell::fromInteger(v);
    }
    case dbLong: {
        const std::int64_t v = toInteger(value);
        if (v < INT32_MIN || v > INT32_MAX)
            throw StoreError::make(err::Overflow);
        return Cell::fromInteger(v);
    }
    case dbBoolean:
        return Cell::fromInteger(toInteger(value) != 0 ? kTrue : 0);
    case dbDate:
        holder = toDateText(value).toStdString();
        return Cell::fromText(holder);
    default:
        holder = value.toString().toStdString();
        return Cell::fromText(holder);
    }
}

RecordsetImpl::RecordsetImpl(std::shared_ptr<Connection> connection)
    : m_connection(std::move(connection))
{}

Connection &RecordsetImpl::connection() const
{
    m_connection->ensureOpen();
    return *m_connection;
}

void RecordsetImpl::setColumnsFromTable(const TableDef &def)
{
    m_sources = {SourceTable{&def, def.Name}};
    m_columns.clear();
    for (size_t i = 0; i < def.Fields.size(); ++i)
        m_columns.push_back(Column{def.Fields[i].Name, def.Fields[i].Type, 0, int(i), def.Name});
    m_buffer.assign(m_columns.size(), std::nullopt);
}

void RecordsetImpl::noCurrentRecord() const
{
    throw StoreError::make(err::NoCurrentRecord);
}

int RecordsetImpl::columnIndex(QStringView name) const
{
    for (size_t i = 0; i < m_columns.size(); ++i)
        if (m_columns[i].name.compare(name, Qt::CaseInsensitive) == 0)
            return int(i);
    // "Alias.Field" reaches a column by its source even when its name is plain.
    const qsizetype dot = name.indexOf(QLatin1Char('.'));
    if (dot > 0) {
        const QStringView alias = name.left(dot);
        const QStringView field = name.mid(dot + 1);
        for (size_t i = 0; i < m_columns.size(); ++i) {
            const Column &c = m_columns[i];
            if (c.source < 0 || c.sourceAlias.compare(alias, Qt::CaseInsensitive) != 0)
                continue;
            const TableDef *def = m_sources[size_t(c.source)].def;
            if (def->Fields[size_t(c.baseField)].Name.compare(field, Qt::CaseInsensitive) == 0)
                return int(i);
        }
    }
    throw StoreError::make(err::ItemNotFound);
}

QVariant RecordsetImpl::value(int column)
{
    if (m_mode != Mode::None && m_buffer[size_t(column)])
        return *m_buffer[size_t(column)];
    if (m_mode == Mode::AddNew)
        return {};
    return cellToVariant(currentRow()[column], m_columns[size_t(column)].type);
}

QString RecordsetImpl::index() const
{
    return {};
}

void RecordsetImpl::setIndex(const QString &)
{
    throw StoreError::make(err::OperationNotSupported);
}

void RecordsetImpl::seek(QStringView, const QVariantList &)
{
    throw StoreError::make(err::OperationNotSupported);
}

void RecordsetImpl::findFirst(const QString &, bool)
{
    throw StoreError::make(err::OperationNotSupported);
}

void RecordsetImpl::requery()
{
    throw StoreError::make(err::OperationNotSupported);
}

void RecordsetImpl::addNew()
{
    if (!updatable())
        throw StoreError::make(err::ReadOnly);
    connection().ensureWritable();
    m_buffer.assign(m_columns.size(), std::nullopt);
    m_mode = Mode::AddNew;
}

void RecordsetImpl::edit()
{
    if (!updatable())
        throw StoreError::make(err::ReadOnly);
    connection().ensureWritable();
    currentRow(); // 3021 / 3167 when there is no row to edit
    m_buffer.assign(m_columns.size(), std::nullopt);
    m_mode = Mode::Edit;
}

void RecordsetImpl::collect(int column, const QVariant &value)
{
    if (m_mode == Mode::None)
        throw StoreError::make(err::UpdateWithoutEdit);
    if (m_columns[size_t(column)].source < 0)
        throw StoreError::make(err::ReadOnly);
    m_buffer[size_t(column)] = value;
}

void RecordsetImpl::update()
{
    if (m_mode == Mode::None)
        throw StoreError::make(err::UpdateWithoutEdit);
    // A failed Update leaves the row in hand, so the caller may correct it or cancel.
    if (m_mode == Mode::AddNew)
        insertRows();
    else
        updateRows();
    m_mode = Mode::None;
}

void RecordsetImpl::insertRows()
{
    Connection &c = connection();
    const size_t n = m_sources.size();
    std::vector<std::vector<std::optional<QVariant>>> values(n);
    for (size_t s = 0; s < n; ++s)
        values[s].assign(m_sources[s].def->Fields.size(), std::nullopt);
    for (size_t i = 0; i < m_columns.size(); ++i)
        if (m_buffer[i] && m_columns[i].source >= 0)
            values[size_t(m_columns[i].source)][size_t(m_columns[i].baseField)] = m_buffer[i];

    std::vector<std::int64_t> rowids(n, INT64_MIN);
    for (size_t s = 0; s < n; ++s) {
        // A row of a joined table takes its key from the row it joins.
        for (const JoinKey &k : m_joinKeys) {
            if (size_t(k.rightSource) == s && !values[s][size_t(k.rightField)])
                values[s][size_t(k.rightField)] = values[size_t(k.leftSource)][size_t(k.leftField)];
            if (size_t(k.leftSource) == s && !values[s][size_t(k.leftField)])
                values[s][size_t(k.leftField)] =
                    values[size_t(k.rightSource)][size_t(k.rightField)];
        }
        bool any = n == 1;
        for (const auto &v : values[s])
            any = any || v.has_value();
        if (!any)
            continue;

        const TableDef &def = *m_sources[s].def;
        const int alias = rowidAliasField(def);
        QStringList names;
        std::vector<Cell> cells;                  // in the order of `names`
        std::vector<Cell> row(def.Fields.size()); // the whole row, to name a failed relation
        std::vector<std::string> holders(def.Fields.size());
        for (size_t f = 0; f < def.Fields.size(); ++f) {
            const Field &field = def.Fields[f];
            if (!values[s][f] && field.isAutoNumber()) {
                if (int(f) == alias)
                    continue; // SQLite numbers the row itself
                Statement next = c.prepare(
                    QStringLiteral("SELECT coalesce(max(%1),0)+1 FROM %2")
                        .arg(sql::SqlIdentifier(field.Name), sql::SqlIdentifier(def.Name)));
                next.step();
                values[s][f] = QVariant(qlonglong(next.integer(0)));
            }
            if (values[s][f])
                refuseQuoteInKey(c.catalog(), def, field, *values[s][f]);
            names << sql::SqlIdentifier(field.Name);
            row[f] = toCell(values[s][f].value_or(QVariant()), field, holders[f]);
            cells.push_back(row[f]);
        }
        const QString text =
            names.isEmpty()
                ? QStringLiteral("INSERT INTO %1 DEFAULT VALUES").arg(sql::SqlIdentifier(def.Name))
                : QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                      .arg(sql::SqlIdentifier(def.Name), names.join(QLatin1Char(',')),
                           placeholders(int(names.size())));
        try {
            Statement insert = c.prepare(text);
            for (size_t i = 0; i < cells.size(); ++i)
                insert.bindCell(int(i) + 1, cells[i]);
            insert.step();
        } catch (const StoreError &e) {
            if (e.number() == err::RelatedRecordRequired)
                checkRelationsAfterFailure(m_sources[s], row, false);
            throw;
        }
        rowids[s] = c.lastInsertRowid();
        if (alias >= 0)
            values[s][size_t(alias)] = QVariant(qlonglong(rowids[s]));
        c.noteChange();
    }
    afterInsert(rowids);
}

void RecordsetImpl::updateRows()
{
    Connection &c = connection();
    const std::vector<std::int64_t> rowids = currentRowids();
    const Cell *row = currentRow();
    for (size_t s = 0; s < m_sources.size(); ++s) {
        const TableDef &def = *m_sources[s].def;
        QStringList sets;
        std::vector<Cell> cells;
        std::vector<std::string> holders(m_columns.size());
        for (size_t i = 0; i < m_columns.size(); ++i) {
            if (!m_buffer[i] || size_t(m_columns[i].source) != s)
                continue;
            const Field &field = def.Fields[size_t(m_columns[i].baseField)];
            refuseQuoteInKey(c.catalog(), def, field, *m_buffer[i]);
            sets << sql::SqlIdentifier(field.Name) + QStringLiteral("=?");
            cells.push_back(toCell(*m_buffer[i], field, holders[i]));
        }
        if (sets.isEmpty() || rowids[s] == INT64_MIN)
            continue;
        try {
            Statement upd =
                c.prepare(QStringLiteral("UPDATE %1 SET %2 WHERE rowid=?")
                              .arg(sql::SqlIdentifier(def.Name), sets.join(QLatin1Char(','))));
            int i = 1;
            for (const Cell &cell : cells)
                upd.bindCell(i++, cell);
            upd.bindInt(i, rowids[s]);
            upd.step();
        } catch (const StoreError &e) {
            if (e.number() == err::RelatedRecordRequired) {
                // The whole row as it would have been, to find the relation that failed.
                std::vector<Cell> full;
                std::vector<std::string> fullHolders(def.Fields.size());
                for (size_t f = 0; f < def.Fields.size(); ++f) {
                    std::optional<QVariant> changed;
                    for (size_t i = 0; i < m_columns.size(); ++i)
                        if (m_buffer[i] && size_t(m_columns[i].source) == s &&
                            size_t(m_columns[i].baseField) == f)
                            changed = m_buffer[i];
                    QVariant v = changed ? *changed : QVariant();
                    if (!changed) {
                        for (size_t i = 0; i < m_columns.size(); ++i)
                            if (size_t(m_columns[i].source) == s &&
                                size_t(m_columns[i].baseField) == f)
                                v = cellToVariant(row[i], m_columns[i].type);
                    }
                    full.push_back(toCell(v, def.Fields[f], fullHolders[f]));
                }
                checkRelationsAfterFailure(m_sources[s], full, false);
            }
            throw;
        }
        c.noteChange();
    }
    m_lastModified = bookmark();
    afterUpdate();
}

void RecordsetImpl::deleteCurrent()
{
    if (!updatable())
        throw StoreError::make(err::ReadOnly);
    connection().ensureWritable();
    m_mode = Mode::None;
    Connection &c = connection();
    currentRow();
    const std::vector<std::int64_t> rowids = currentRowids();
    std::vector<bool> gives(m_sources.size(), false);
    for (const Column &col : m_columns)
        if (col.source >= 0)
            gives[size_t(col.source)] = true;
    for (size_t s = m_sources.size(); s-- > 0;) {
        if (!gives[s] || rowids[s] == INT64_MIN)
            continue;
        try {
            Statement del = c.prepare(QStringLiteral("DELETE FROM %1 WHERE rowid=?")
                                          .arg(sql::SqlIdentifier(m_sources[s].def->Name)));
            del.bindInt(1, rowids[s]);
            del.step();
        } catch (const StoreError &e) {
            if (e.number() == err::RelatedRecordRequired)
                checkRelationsAfterFailure(m_sources[s], {}, true);
            throw;
        }
        c.noteChange();
    }
    afterDelete();
}

void RecordsetImpl::checkRelationsAfterFailure(const SourceTable &source,
                                               const std::vector<Cell> &values, bool deleting)
{
    Connection &c = connection();
    const Catalog &catalog = c.catalog();
    if (!deleting) {
        for (const Relation &r : catalog.relations) {
            if (r.ForeignTable.compare(source.def->Name, Qt::CaseInsensitive) != 0)
                continue;
            QStringList where;
            std::vector<Cell> keys;
            bool hasNull = false;
            for (const Field &f : r.Fields) {
                const int fi = source.def->fieldIndex(f.ForeignName);
                const Cell v =
                    fi >= 0 && size_t(fi) < values.size() ? values[size_t(fi)] : Cell::null();
                hasNull = hasNull || v.kind == Cell::Null;
                where << sql::SqlIdentifier(f.Name) + QStringLiteral("=?");
                keys.push_back(v);
            }
            if (hasNull)
                continue;
            Statement probe = c.prepare(
                QStringLiteral("SELECT 1 FROM %1 WHERE %2 LIMIT 1")
                    .arg(sql::SqlIdentifier(r.Table), where.join(QStringLiteral(" AND "))));
            for (size_t i = 0; i < keys.size(); ++i)
                probe.bindCell(int(i) + 1, keys[i]);
            if (!probe.step())
                throw StoreError::make(err::RelatedRecordRequired, c.table(r.Table).Name);
        }
    }
    // Otherwise the row is a parent whose children don't follow it.
    for (const Relation &r : catalog.relations)
        if (r.Table.compare(source.def->Name, Qt::CaseInsensitive) == 0 &&
            !(deleting ? r.cascadesDeletes() : r.cascadesUpdates()))
            throw StoreError::make(err::RelatedRecordsExist, r.ForeignTable);
    throw StoreError::make(err::RelatedRecordRequired, source.def->Name);
}

} // namespace lx::store::detail
