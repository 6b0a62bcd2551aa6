#include "connection.h"

#include "core/store/errors.h"
#include "core/text/collation.h"
#include "core/text/like.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QUrl>

#include <exception>
#include <map>
#include <sqlite3.h>
#include <string>

namespace lx::store::detail {

namespace {

// "LXAR": marks a SQLite file as one of ours.
constexpr int kApplicationId = 0x4C584152;
const char *const kCatalogTable = "__lexarbor_catalog";

int collateLx(void *, int lenA, const void *a, int lenB, const void *b)
{
    return text::CompareText(std::string_view(static_cast<const char *>(a), size_t(lenA)),
                             std::string_view(static_cast<const char *>(b), size_t(lenB)));
}

std::string_view textArg(sqlite3_value *v)
{
    const auto *p = reinterpret_cast<const char *>(sqlite3_value_text(v));
    return std::string_view(p ? p : "", size_t(sqlite3_value_bytes(v)));
}

void likeFunction(sqlite3_context *ctx, int, sqlite3_value **argv)
{
    if (sqlite3_value_type(argv[0]) == SQLITE_NULL || sqlite3_value_type(argv[1]) == SQLITE_NULL) {
        sqlite3_result_null(ctx);
        return;
    }
    // Read the pattern first: text conversion of one argument must not move the other.
    const std::string pattern(textArg(argv[1]));
    sqlite3_result_int(ctx, text::LikeNoCase(textArg(argv[0]), pattern) ? 1 : 0);
}

Cell valueCell(sqlite3_value *v)
{
    switch (sqlite3_value_type(v)) {
    case SQLITE_NULL:
        return Cell::null();
    case SQLITE_INTEGER:
        return Cell::fromInteger(sqlite3_value_int64(v));
    case SQLITE_FLOAT:
        return Cell::fromReal(sqlite3_value_double(v));
    default:
        return Cell::fromText(textArg(v));
    }
}

// lx_compare(a, b): -1, 0 or 1 as the dialect orders a against b (a number against a text by the
// text's value), Null when either is Null.
void compareFunction(sqlite3_context *ctx, int, sqlite3_value **argv)
{
    const Cell a = valueCell(argv[0]);
    const Cell b = valueCell(argv[1]);
    if (const std::optional<int> order = sql::CompareValues(a, b))
        sqlite3_result_int(ctx, *order < 0 ? -1 : (*order > 0 ? 1 : 0));
    else
        sqlite3_result_null(ctx);
}

// lx_in(x, a, b, ...): x IN (a, b, ...) with lx_compare's equality.
void inFunction(sqlite3_context *ctx, int argc, sqlite3_value **argv)
{
    const Cell x = valueCell(argv[0]);
    bool unknown = false;
    for (int i = 1; i < argc; ++i) {
        const std::optional<int> order = sql::CompareValues(x, valueCell(argv[i]));
        if (order == 0)
            return sqlite3_result_int(ctx, 1);
        unknown = unknown || !order;
    }
    if (unknown)
        sqlite3_result_null(ctx);
    else
        sqlite3_result_int(ctx, 0);
}

// lx_between(x, lo, hi): x BETWEEN lo AND hi with lx_compare's order.
void betweenFunction(sqlite3_context *ctx, int, sqlite3_value **argv)
{
    const Cell x = valueCell(argv[0]);
    const std::optional<int> lo = sql::CompareValues(x, valueCell(argv[1]));
    const std::optional<int> hi = sql::CompareValues(x, valueCell(argv[2]));
    if ((lo && *lo < 0) || (hi && *hi > 0))
        sqlite3_result_int(ctx, 0);
    else if (!lo || !hi)
        sqlite3_result_null(ctx);
    else
        sqlite3_result_int(ctx, 1);
}

// Connections to the same file share one change stamp, so a cursor notices writes made
// through another handle of this process, and one list of pending reads, so a write through any
// handle lets every unfinished read of the file end first.
std::shared_ptr<SharedFile> sharedFileFor(const QString &path)
{
    static std::map<QString, std::weak_ptr<SharedFile>> files;
    const QString key = QFileInfo(path).canonicalFilePath();
    auto &slot = files[key];
    if (auto existing = slot.lock())
        return existing;
    auto file = std::make_shared<SharedFile>();
    slot = file;
    return file;
}

// Whether a statement may change the file. A pragma may checkpoint or change the journal, which
// an active read of the same connection would hold back.
bool MayWrite(sqlite3_stmt *stmt)
{
    if (!sqlite3_stmt_readonly(stmt))
        return true;
    const char *text = sqlite3_sql(stmt);
    while (text && (*text == ' ' || *text == '\t' || *text == '\n' || *text == '\r'))
        ++text;
    return text && qstrnicmp(text, "PRAGMA", 6) == 0;
}

QString sqliteMessage(sqlite3 *db, int rc)
{
    return QString::fromUtf8(db ? sqlite3_errmsg(db) : sqlite3_errstr(rc));
}

// The file's user_version names the text order its indexes were built with.
int CollationMarkOf(sqlite3 *db)
{
    sqlite3_stmt *stmt = nullptr;
    int mark = 0;
    if (sqlite3_prepare_v2(db, "PRAGMA user_version", -1, &stmt, nullptr) == SQLITE_OK &&
        sqlite3_step(stmt) == SQLITE_ROW)
        mark = sqlite3_column_int(stmt, 0);
    sqlite3_finalize(stmt);
    return mark;
}

// Rebuilds the indexes of a file built under another text order, once, and marks it. A file
// that can't be written now (read-only, or another writer holds it) keeps its old order for this
// session. Returns a SQLite result code, SQLITE_OK when nothing failed that matters.
int RebuildForCollation(sqlite3 *db)
{
    const int mark = text::CollationMark();
    if (CollationMarkOf(db) == mark || sqlite3_db_readonly(db, "main") == 1)
        return SQLITE_OK;
    int rc = sqlite3_exec(db, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr);
    if (rc != SQLITE_OK)
        return rc;
    if (CollationMarkOf(db) != mark) { // another process may have done it meanwhile
        const std::string sql = "REINDEX \"LX\"; PRAGMA user_version = " + std::to_string(mark);
        rc = sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr);
    }
    sqlite3_exec(db, rc == SQLITE_OK ? "COMMIT" : "ROLLBACK", nullptr, nullptr, nullptr);
    return rc;
}

bool fileAndFolderWritable(const QString &path)
{
    const QFileInfo file(path);
    return file.isWritable() && QFileInfo(file.absolutePath()).isWritable();
}

// Read-only and immutable: no lock, no journal, no -wal or -shm file. The path goes in as a URI,
// percent-encoded where it holds "?", "#" or "%".
QByteArray immutableUri(const QString &path)
{
    return QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath()).toEncoded() +
           QByteArrayLiteral("?immutable=1");
}

sqlite3 *openHandle(const QString &path, const QByteArray &name, int flags)
{
    sqlite3 *db = nullptr;
    const int rc = sqlite3_open_v2(name.constData(), &db, flags, nullptr);
    if (rc != SQLITE_OK) {
        const QString message = sqliteMessage(db, rc);
        sqlite3_close(db);
        throw StoreError::make(err::CannotOpenFile, path, message);
    }
    return db;
}

// Side files that an earlier read-only open left behind carry the file's old permissions and
// would keep a file that is writable again from being written. Without a log in them they hold
// nothing, and go.
void dropStaleSideFiles(const QString &path)
{
    const QFileInfo wal(path + QStringLiteral("-wal"));
    const QFileInfo shm(path + QStringLiteral("-shm"));
    const bool stale = (wal.exists() && !writableCheck()(wal.filePath())) ||
                       (shm.exists() && !writableCheck()(shm.filePath()));
    if (!stale || wal.size() > 0)
        return;
    QFile::remove(wal.filePath());
    QFile::remove(shm.filePath());
}

} // namespace

// ---------------------------------------------------------------------------------------------

Statement::Statement(Connection *connection, sqlite3_stmt *stmt, bool *inUse)
    : m_connection(connection), m_stmt(stmt), m_inUse(inUse)
{}

Statement::Statement(Statement &&other) noexcept
    : m_connection(other.m_connection), m_stmt(other.m_stmt), m_inUse(other.m_inUse)
{
    other.m_stmt = nullptr;
}

Statement::~Statement()
{
    if (!m_stmt)
        return;
    if (!m_inUse) {
        sqlite3_finalize(m_stmt);
        return;
    }
    sqlite3_reset(m_stmt);
    sqlite3_clear_bindings(m_stmt);
    *m_inUse = false;
}

void Statement::bindNull(int i)
{
    sqlite3_bind_null(m_stmt, i);
}

void Statement::bindInt(int i, std::int64_t v)
{
    sqlite3_bind_int64(m_stmt, i, v);
}

void Statement::bindText(int i, const std::string &utf8)
{
    sqlite3_bind_text(m_stmt, i, utf8.data(), int(utf8.size()), SQLITE_TRANSIENT);
}

void Statement::bindText(int i, QStringView text)
{
    bindText(i, text.toUtf8().toStdString());
}

void Statement::bindCell(int i, const Cell &cell)
{
    switch (cell.kind) {
    case Cell::Null:
        bindNull(i);
        break;
    case Cell::Integer:
        bindInt(i, cell.integer);
        break;
    case Cell::Real:
        sqlite3_bind_double(m_stmt, i, cell.real);
        break;
    case Cell::Text:
        sqlite3_bind_text(m_stmt, i, cell.text.data(), int(cell.text.size()), SQLITE_TRANSIENT);
        break;
    }
}

bool Statement::step()
{
    const int rc = sqlite3_step(m_stmt);
    if (rc == SQLITE_ROW)
        return true;
    if (rc == SQLITE_DONE)
        return false;
    m_connection->fail(rc);
}

int Statement::columnCount() const
{
    return sqlite3_column_count(m_stmt);
}

Cell Statement::cell(int column) const
{
    switch (sqlite3_column_type(m_stmt, column)) {
    case SQLITE_NULL:
        return Cell::null();
    case SQLITE_INTEGER:
        return Cell::fromInteger(sqlite3_column_int64(m_stmt, column));
    case SQLITE_FLOAT:
        return Cell::fromReal(sqlite3_column_double(m_stmt, column));
    default: {
        const auto *p = reinterpret_cast<const char *>(sqlite3_column_text(m_stmt, column));
        return Cell::fromText(
            std::string_view(p ? p : "", size_t(sqlite3_column_bytes(m_stmt, column))));
    }
    }
}

std::int64_t Statement::integer(int column) const
{
    return sqlite3_column_int64(m_stmt, column);
}

bool Statement::isNull(int column) const
{
    return sqlite3_column_type(m_stmt, column) == SQLITE_NULL;
}

// ---------------------------------------------------------------------------------------------

Connection::Connection(const QString &path, sqlite3 *db)
    : m_path(path), m_db(db), m_shared(sharedFileFor(path))
{}

Connection::~Connection()
{
    close();
}

std::shared_ptr<Connection> Connection::open(const QString &path, bool readOnly)
{
    const QFileInfo info(path);
    if (path.isEmpty() || !info.exists() || info.isDir())
        throw StoreError::make(err::FileNotFound, path);
    bool asReadOnly = readOnly || !writableCheck()(path);
    sqlite3 *db = nullptr;
    if (!asReadOnly) {
        dropStaleSideFiles(path);
        db = openHandle(path, path.toUtf8(), SQLITE_OPEN_READWRITE);
        // SQLite falls back to reading when the system refuses to write: start again immutable,
        // or its first read would leave side files behind.
        if (sqlite3_db_readonly(db, "main") == 1) {
            sqlite3_close(db);
            asReadOnly = true;
        }
    }
    if (asReadOnly)
        db = openHandle(path, immutableUri(path), SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
    std::shared_ptr<Connection> c(new Connection(path, db));
    c->m_readOnly = asReadOnly;
    c->configure(false);
    return c;
}

std::shared_ptr<Connection> Connection::create(const QString &path)
{
    if (QFileInfo::exists(path))
        throw StoreError::make(err::DatabaseExists);
    sqlite3 *db = nullptr;
    const int rc = sqlite3_open_v2(path.toUtf8().constData(), &db,
                                   SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    if (rc != SQLITE_OK) {
        const QString message = sqliteMessage(db, rc);
        sqlite3_close(db);
        throw StoreError::make(err::CannotOpenFile, path, message);
    }
    std::shared_ptr<Connection> c(new Connection(path, db));
    c->configure(true);
    return c;
}

void Connection::configure(bool fresh)
{
    sqlite3_create_collation(m_db, "LX", SQLITE_UTF8, nullptr, collateLx);
    sqlite3_create_function(m_db, "lx_like", 2, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr,
                            likeFunction, nullptr, nullptr);
    sqlite3_create_function(m_db, "lx_compare", 2, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr,
                            compareFunction, nullptr, nullptr);
    sqlite3_create_function(m_db, "lx_in", -1, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr,
                            inFunction, nullptr, nullptr);
    sqlite3_create_function(m_db, "lx_between", 3, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr,
                            betweenFunction, nullptr, nullptr);
    sqlite3_busy_timeout(m_db, 5000);
    if (fresh) {
        exec(QStringLiteral("PRAGMA application_id = %1").arg(kApplicationId));
        exec(QStringLiteral("PRAGMA user_version = %1").arg(text::CollationMark()));
        exec(QStringLiteral("CREATE TABLE \"%1\" (json TEXT NOT NULL)")
                 .arg(QLatin1String(kCatalogTable)));
        exec(QStringLiteral("INSERT INTO \"%1\" VALUES ('{}')").arg(QLatin1String(kCatalogTable)));
    } else {
        // A file that SQLite can't read as a database, or one that isn't ours, is not a store
        // file. A file that can't be read just now (locked, a folder without access) is.
        int id = 0;
        try {
            Statement s = prepare(QStringLiteral("PRAGMA application_id"));
            if (s.step())
                id = int(s.integer(0));
        } catch (const StoreError &e) {
            if (e.number() != err::UnrecognizedFormat) {
                close();
                throw;
            }
            id = 0;
        }
        if (id != kApplicationId) {
            const QString path = m_path;
            close();
            throw StoreError::make(err::UnrecognizedFormat, path);
        }
        loadCatalog();
    }
    if (!m_readOnly) {
        // Each Update or Delete is its own committed transaction; in WAL mode a commit
        // survives the process being killed right after it.
        exec(QStringLiteral("PRAGMA journal_mode = WAL"));
        exec(QStringLiteral("PRAGMA synchronous = NORMAL"));
    }
    exec(QStringLiteral("PRAGMA foreign_keys = ON"));
    // A 100,000-concept ontology is tens of megabytes; keep its hot pages in memory.
    exec(QStringLiteral("PRAGMA cache_size = -32768"));
    if (!fresh) {
        const int rc = RebuildForCollation(m_db);
        if (rc != SQLITE_OK && rc != SQLITE_BUSY && rc != SQLITE_READONLY)
            fail(rc);
    }
}

void Connection::loadCatalog()
{
    QByteArray json;
    try {
        Statement s =
            prepare(QStringLiteral("SELECT json FROM \"%1\"").arg(QLatin1String(kCatalogTable)));
        if (s.step()) {
            const Cell c = s.cell(0);
            json = QByteArray(c.text.data(), qsizetype(c.text.size()));
        }
    } catch (const StoreError &) {
        json.clear();
    }
    bool ok = false;
    m_catalog = Catalog::fromJson(json, &ok);
    if (!ok) {
        const QString path = m_path;
        close();
        throw StoreError::make(err::UnrecognizedFormat, path);
    }
    refreshQueryCatalog();
}

void Connection::saveCatalog()
{
    Statement s =
        prepare(QStringLiteral("UPDATE \"%1\" SET json = ?").arg(QLatin1String(kCatalogTable)));
    s.bindText(1, m_catalog.toJson().toStdString());
    s.step();
    refreshQueryCatalog();
    noteChange();
}

void Connection::restoreCatalog(const Catalog &catalog)
{
    m_catalog = catalog;
    refreshQueryCatalog();
}

void Connection::refreshQueryCatalog()
{
    m_queryTables.clear();
    for (const TableDef &t : m_catalog.tables) {
        sql::CatalogTable qt{t.Name, {}};
        for (const Field &f : t.Fields)
            qt.columns.push_back(sql::CatalogColumn{f.Name, FieldType(f.Type)});
        m_queryTables.push_back(std::move(qt));
    }
}

sql::TableLookup Connection::tableLookup()
{
    return [this](QStringView name) -> const sql::CatalogTable * {
        for (const sql::CatalogTable &t : m_queryTables)
            if (t.name.compare(name, Qt::CaseInsensitive) == 0)
                return &t;
        return nullptr;
    };
}

const TableDef &Connection::table(QStringView name) const
{
    if (const TableDef *t = m_catalog.findTable(name))
        return *t;
    throw StoreError::make(err::ObjectNotFound, name.toString());
}

void Connection::close()
{
    if (!m_db)
        return;
    try {
        finishPendingReads(true);
    } catch (const StoreError &) {
        // A snapshot whose rest can't be read keeps the rows it has.
    }
    for (Cached &entry : m_lru)
        sqlite3_finalize(entry.stmt);
    m_cache.clear();
    m_lru.clear();
    sqlite3_close_v2(m_db);
    m_db = nullptr;
}

void Connection::ensureOpen() const
{
    if (!m_db)
        throw StoreError::make(err::InvalidOperation);
}

void Connection::ensureWritable() const
{
    if (m_readOnly)
        throw ReadOnlyFileError(m_path);
}

Statement Connection::prepare(const QString &sql)
{
    ensureOpen();
    std::string key = sql.toStdString();
    auto it = m_cache.find(key);
    if (it != m_cache.end() && !it->second->inUse) {
        m_lru.splice(m_lru.begin(), m_lru, it->second);
        Cached &hit = m_lru.front();
        if (!m_shared->pendingReads.empty() && MayWrite(hit.stmt))
            finishPendingReads();
        hit.inUse = true;
        return Statement(this, hit.stmt, &hit.inUse);
    }
    sqlite3_stmt *stmt = nullptr;
    const int rc = sqlite3_prepare_v3(m_db, key.data(), int(key.size()), SQLITE_PREPARE_PERSISTENT,
                                      &stmt, nullptr);
    if (rc != SQLITE_OK)
        fail(rc);
    if (!m_shared->pendingReads.empty() && MayWrite(stmt)) {
        try {
            finishPendingReads();
        } catch (...) {
            sqlite3_finalize(stmt);
            throw;
        }
    }
    if (it != m_cache.end()) // the cached one is busy in an enclosing call: use a private copy
        return Statement(this, stmt, nullptr);
    m_lru.push_front(Cached{std::move(key), stmt, true});
    Cached &added = m_lru.front();
    m_cache.emplace(added.sql, m_lru.begin());
    evictStatements();
    return Statement(this, stmt, &added.inUse);
}

// Finalizes the least recently used statements past the bound, skipping any that a Statement
// still holds (an enclosing call stepping through it); those go on a later call.
void Connection::evictStatements()
{
    auto it = m_lru.end();
    while (m_cache.size() > kStatementCacheSize && it != m_lru.begin()) {
        --it;
        if (it->inUse)
            continue;
        sqlite3_finalize(it->stmt);
        m_cache.erase(it->sql);
        it = m_lru.erase(it);
    }
}

// Statement by statement, so that pending reads end before the first one that writes.
void Connection::exec(const QString &sql)
{
    ensureOpen();
    const QByteArray text = sql.toUtf8();
    const char *tail = text.constData();
    while (tail && *tail) {
        sqlite3_stmt *raw = nullptr;
        const int prepared = sqlite3_prepare_v2(m_db, tail, -1, &raw, &tail);
        const std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt *)> stmt(raw, sqlite3_finalize);
        if (prepared != SQLITE_OK)
            fail(prepared);
        if (!stmt) // only blanks or a comment were left
            continue;
        if (!m_shared->pendingReads.empty() && MayWrite(stmt.get()))
            finishPendingReads();
        int rc = SQLITE_ROW;
        while (rc == SQLITE_ROW)
            rc = sqlite3_step(stmt.get());
        if (rc != SQLITE_DONE)
            fail(rc);
    }
}

void Connection::addPendingRead(PendingRead *read)
{
    m_shared->pendingReads.push_back({this, read});
}

void Connection::removePendingRead(PendingRead *read)
{
    std::erase_if(m_shared->pendingReads,
                  [read](const SharedFile::Pending &p) { return p.read == read; });
}

void Connection::finishPendingReads(bool ownOnly)
{
    // Each read removes itself when done; a copy keeps the walk safe.
    const std::vector<SharedFile::Pending> reads = m_shared->pendingReads;
    std::exception_ptr failure;
    for (const SharedFile::Pending &p : reads) {
        if (ownOnly && p.connection != this)
            continue;
        try {
            p.read->readRest();
        } catch (...) {
            if (!failure)
                failure = std::current_exception();
        }
    }
    if (failure)
        std::rethrow_exception(failure);
}

std::int64_t Connection::lastInsertRowid() const
{
    return sqlite3_last_insert_rowid(m_db);
}

void Connection::fail(int rc)
{
    const int extended = m_db ? sqlite3_extended_errcode(m_db) : rc;
    const QString message = sqliteMessage(m_db, rc);
    switch (extended) {
    case SQLITE_CONSTRAINT_PRIMARYKEY:
    case SQLITE_CONSTRAINT_UNIQUE:
        throw StoreError::make(err::DuplicateKey);
    case SQLITE_CONSTRAINT_NOTNULL:
        throw StoreError::make(err::NullInIndex);
    case SQLITE_CONSTRAINT_FOREIGNKEY:
        throw StoreError::make(err::RelatedRecordRequired, QString());
    default:
        break;
    }
    switch (rc & 0xff) {
    case SQLITE_NOTADB:
    case SQLITE_CORRUPT:
        throw StoreError::make(err::UnrecognizedFormat, m_path);
    case SQLITE_READONLY:
        if (m_readOnly)
            throw ReadOnlyFileError(m_path);
        throw StoreError::make(err::ReadOnly);
    case SQLITE_CANTOPEN:
        throw StoreError::make(err::CannotOpenFile, m_path, message);
    default:
        break;
    }
    throw StoreError(err::Reserved, ErrorDescription(err::Reserved, QString::number(rc)) +
                                        QLatin1Char(' ') + message);
}

WritableCheck &writableCheck()
{
    static WritableCheck check = fileAndFolderWritable;
    return check;
}

QVariant cellToVariant(const Cell &cell, int fieldType)
{
    switch (cell.kind) {
    case Cell::Null:
        // A file of an earlier build may hold a Null in a Yes/No field: it reads as False.
        return fieldType == dbBoolean ? QVariant(false) : QVariant();
    case Cell::Integer:
        if (fieldType == dbBoolean)
            return QVariant(cell.integer != 0);
        if (fieldType == dbByte || fieldType == dbLong)
            return QVariant(int(cell.integer));
        if (fieldType == dbText || fieldType == dbMemo)
            return QVariant(QString::number(cell.integer));
        return QVariant(qlonglong(cell.integer));
    case Cell::Real:
        return QVariant(cell.real);
    case Cell::Text: {
        const QString text = QString::fromUtf8(cell.text.data(), qsizetype(cell.text.size()));
        if (fieldType == dbDate)
            return QVariant(QDateTime::fromString(text, Qt::ISODate));
        return QVariant(text);
    }
    }
    return {};
}

} // namespace lx::store::detail
