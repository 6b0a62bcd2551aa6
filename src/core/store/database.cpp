#include "database.h"

#include "core/store/connection.h"
#include "core/store/ddl.h"
#include "core/store/errors.h"
#include "core/store/recordset_impl.h"
#include "core/store/sql/jetsql.h"

#include <QRegularExpression>

#include <utility>

namespace lx::store {

using detail::Connection;

namespace {

bool same(const QString &a, const QString &b)
{
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

bool isQuery(const QString &source)
{
    static const QRegularExpression select(QStringLiteral("^\\s*(SELECT|TRANSFORM|PARAMETERS)\\b"),
                                           QRegularExpression::CaseInsensitiveOption);
    return select.match(source).hasMatch();
}

void validateTable(const TableDef &table, const Catalog &catalog)
{
    if (table.Name.trimmed().isEmpty() || table.Fields.empty())
        throw StoreError::make(err::InvalidOperation);
    if (catalog.findTable(table.Name))
        throw StoreError::make(err::TableExists, table.Name);
    for (size_t i = 0; i < table.Fields.size(); ++i)
        if (table.fieldIndex(table.Fields[i].Name) != int(i))
            throw StoreError::make(err::ObjectExists, table.Fields[i].Name);
    int primaries = 0;
    for (const Index &idx : table.Indexes) {
        if (idx.Fields.empty() || table.findIndex(idx.Name) != &idx)
            throw StoreError::make(err::InvalidOperation);
        for (const Field &f : idx.Fields)
            if (table.fieldIndex(f.Name) < 0)
                throw StoreError::make(err::ItemNotFound);
        primaries += idx.Primary ? 1 : 0;
    }
    if (primaries > 1)
        throw StoreError::make(err::InvalidOperation);
}

// The fields of the primary table must be its primary key or a unique index, or no store
// could tell which row a foreign row belongs to.
void validateRelation(const Relation &r, const Catalog &catalog)
{
    if (catalog.findRelation(r.Name))
        throw StoreError::make(err::ObjectExists, r.Name);
    const TableDef *primary = catalog.findTable(r.Table);
    const TableDef *foreign = catalog.findTable(r.ForeignTable);
    if (!primary || !foreign || r.Fields.empty())
        throw StoreError::make(err::ItemNotFound);
    for (const Field &f : r.Fields)
        if (primary->fieldIndex(f.Name) < 0 || foreign->fieldIndex(f.ForeignName) < 0)
            throw StoreError::make(err::ItemNotFound);
    for (const Index &idx : primary->Indexes) {
        if (!(idx.Primary || idx.Unique) || idx.Fields.size() != r.Fields.size())
            continue;
        bool all = true;
        for (const Field &f : r.Fields) {
            bool found = false;
            for (const Field &k : idx.Fields)
                found = found || same(k.Name, f.Name);
            all = all && found;
        }
        if (all)
            return;
    }
    throw StoreError::make(err::InvalidOperation);
}

} // namespace

Database::Database(std::shared_ptr<Connection> connection) : m_connection(std::move(connection)) {}

bool Database::isOpen() const
{
    return m_connection && m_connection->isOpen();
}

QString Database::Name() const
{
    return m_connection ? m_connection->path() : QString();
}

bool Database::Updatable() const
{
    return m_connection && m_connection->isOpen() && !m_connection->isReadOnly();
}

void Database::Close()
{
    if (m_connection)
        m_connection->close();
}

Connection &Database::connection() const
{
    if (!m_connection)
        throw StoreError::make(err::InvalidOperation);
    m_connection->ensureOpen();
    return *m_connection;
}

WriteBatch::WriteBatch(const Database &db) : m_connection(db.m_connection)
{
    db.connection().exec(QStringLiteral("SAVEPOINT write_batch"));
}

WriteBatch::~WriteBatch()
{
    if (!m_connection->isOpen())
        return;
    try {
        m_connection->exec(QStringLiteral("RELEASE write_batch"));
    } catch (const StoreError &) {
        // Nothing to report to from here; the rows stay as far as they were written.
    }
}

Transaction::Transaction(const Database &db) : m_connection(db.m_connection)
{
    Connection &c = db.connection();
    c.ensureWritable();
    c.exec(QStringLiteral("SAVEPOINT all_or_nothing"));
}

void Transaction::Commit()
{
    m_connection->exec(QStringLiteral("RELEASE all_or_nothing"));
    m_done = true;
}

Transaction::~Transaction()
{
    if (m_done || !m_connection->isOpen())
        return;
    try {
        // Cursors part way through a statement read their rest before the rows go.
        m_connection->finishPendingReads();
        m_connection->exec(QStringLiteral("ROLLBACK TO all_or_nothing"));
        m_connection->exec(QStringLiteral("RELEASE all_or_nothing"));
    } catch (const StoreError &) {
        // Nothing to report to from here: SQLite ends the transaction with the connection.
    }
    m_connection->noteChange();
}

QStringList ReadColumn(Database &db, const QString &query, QStringView field)
{
    QStringList values;
    ForEachRow(db, query,
               [&](const Recordset &rs) { values.append(TextOrEmpty(rs.Value(field))); });
    return values;
}

void ForEachRow(Database &db, const QString &query,
                const std::function<void(const Recordset &)> &row)
{
    Recordset rs = db.OpenRecordset(query, dbOpenSnapshot);
    for (; !rs.Eof(); rs.MoveNext())
        row(rs);
    rs.Close();
}

Recordset Database::OpenRecordset(const QString &source, int type)
{
    Connection &c = connection();
    const bool query = isQuery(source);
    if (type == 0)
        type = query ? dbOpenDynaset : dbOpenTable;
    if (type == dbOpenTable) {
        if (query)
            throw StoreError::make(err::InvalidOperation);
        return Recordset(detail::openTable(m_connection, c.table(source.trimmed())));
    }
    QString text = source;
    if (!query) {
        // A bare table name: all of its rows, as the table would give them.
        c.table(source.trimmed());
        text = QStringLiteral("SELECT * FROM [%1]").arg(source.trimmed());
    }
    if (type == dbOpenDynaset)
        return Recordset(detail::openDynaset(m_connection, text));
    if (type == dbOpenSnapshot)
        return Recordset(detail::openSnapshot(m_connection, text));
    throw StoreError::make(err::InvalidOperation);
}

Relation Database::CreateRelation(const QString &name, const QString &table,
                                  const QString &foreignTable, int attributes) const
{
    return Relation{name, table, foreignTable, attributes, {}};
}

void Database::Append(const TableDef &table)
{
    Connection &c = connection();
    c.ensureWritable();
    validateTable(table, c.catalog());
    const Catalog before = c.catalog();
    c.exec(QStringLiteral("BEGIN"));
    try {
        c.exec(detail::createTableSql(table, c.catalog(), table.Name));
        for (const QString &statement : detail::createIndexSql(table, c.catalog()))
            c.exec(statement);
        c.catalogForUpdate().tables.push_back(table);
        c.saveCatalog();
        c.exec(QStringLiteral("COMMIT"));
    } catch (...) {
        c.exec(QStringLiteral("ROLLBACK"));
        c.restoreCatalog(before);
        throw;
    }
}

void Database::Append(const Relation &relation)
{
    Connection &c = connection();
    c.ensureWritable();
    validateRelation(relation, c.catalog());
    const Catalog before = c.catalog();
    c.catalogForUpdate().relations.push_back(relation);
    const TableDef table = *c.catalog().findTable(relation.ForeignTable);

    // SQLite takes foreign keys only with the table, so the foreign table is built again with
    // the new key and its rows copied over.
    const QString scratch = QStringLiteral("__lexarbor_rebuild");
    c.exec(QStringLiteral("PRAGMA foreign_keys = OFF"));
    try {
        c.exec(QStringLiteral("BEGIN"));
        c.exec(detail::createTableSql(table, c.catalog(), scratch));
        c.exec(QStringLiteral("INSERT INTO %1 SELECT * FROM %2")
                   .arg(sql::SqlIdentifier(scratch), sql::SqlIdentifier(table.Name)));
        c.exec(QStringLiteral("DROP TABLE %1").arg(sql::SqlIdentifier(table.Name)));
        c.exec(QStringLiteral("ALTER TABLE %1 RENAME TO %2")
                   .arg(sql::SqlIdentifier(scratch), sql::SqlIdentifier(table.Name)));
        for (const QString &statement : detail::createIndexSql(table, c.catalog()))
            c.exec(statement);
        {
            detail::Statement check = c.prepare(
                QStringLiteral("PRAGMA foreign_key_check(%1)").arg(sql::SqlIdentifier(table.Name)));
            if (check.step())
                throw StoreError::make(err::RelatedRecordRequired, relation.Table);
        }
        c.saveCatalog();
        c.exec(QStringLiteral("COMMIT"));
    } catch (...) {
        c.exec(QStringLiteral("ROLLBACK"));
        c.restoreCatalog(before);
        c.exec(QStringLiteral("PRAGMA foreign_keys = ON"));
        throw;
    }
    c.exec(QStringLiteral("PRAGMA foreign_keys = ON"));
}

std::vector<TableDef> Database::TableDefs() const
{
    return connection().catalog().tables;
}

std::vector<Relation> Database::Relations() const
{
    return connection().catalog().relations;
}

void Database::Checkpoint()
{
    Connection &c = connection();
    if (!c.isReadOnly()) // an immutable file has no log
        c.exec(QStringLiteral("PRAGMA wal_checkpoint(TRUNCATE)"));
}

Database Workspace::CreateDatabase(const QString &path, const QString &, int)
{
    return Database(Connection::create(path));
}

Database DBEngine::OpenDatabase(const QString &path)
{
    return Database(Connection::open(path));
}

Database DBEngine::OpenDatabase(const QString &path, bool, bool readOnly, const QString &)
{
    return Database(Connection::open(path, readOnly));
}

DBEngine::WritableCheck DBEngine::SetWritableCheck(WritableCheck check)
{
    return std::exchange(detail::writableCheck(), check);
}

Workspace &DBEngine::Workspaces(int)
{
    static Workspace workspace;
    return workspace;
}

} // namespace lx::store
