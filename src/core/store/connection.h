#pragma once

#include "core/store/catalog.h"
#include "core/store/sql/jetsql.h"
#include "core/store/types.h"

#include <QString>
#include <QVariant>

#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace lx::store::detail {

class Connection;

// A cursor part way through a statement of a file. Before the file is written, or the
// connection closed, it reads the rest of its rows, so it keeps them as they were when it was
// opened and no statement is left active under a write.
class PendingRead {
public:
    virtual void readRest() = 0;

protected:
    ~PendingRead() = default;
};

// What every connection of this process to one file shares.
struct SharedFile {
    std::uint64_t stamp = 1;
    struct Pending {
        const Connection *connection;
        PendingRead *read;
    };
    std::vector<Pending> pendingReads;
};

// A prepared statement borrowed from the connection's cache; reset when it goes out of scope,
// so no statement stays active between calls into the store (an active read would hold back
// the commit of the next write).
class Statement {
public:
    Statement(Connection *connection, sqlite3_stmt *stmt, bool *inUse);
    Statement(Statement &&other) noexcept;
    Statement(const Statement &) = delete;
    Statement &operator=(const Statement &) = delete;
    Statement &operator=(Statement &&) = delete;
    ~Statement();

    void bindNull(int i);
    void bindInt(int i, std::int64_t v);
    void bindText(int i, const std::string &utf8);
    void bindText(int i, QStringView text);
    void bindCell(int i, const Cell &cell);

    // True while a row is there; throws StoreError on failure.
    bool step();
    int columnCount() const;
    Cell cell(int column) const; // text is valid until the next step
    std::int64_t integer(int column) const;
    bool isNull(int column) const;

private:
    Connection *m_connection;
    sqlite3_stmt *m_stmt;
    bool *m_inUse; // the cache's flag; nullptr for a private statement, finalized here
};

// One open file: the SQLite handle, the statement cache, the file's catalog and the stamp
// that tells cursors whether anything was written since they last looked.
class Connection {
public:
    // Opens for reading and writing, or read-only (forced, or when the file or its folder can't
    // be written): then as immutable, so SQLite writes nothing, not even its side files.
    static std::shared_ptr<Connection> open(const QString &path, bool readOnly = false);
    static std::shared_ptr<Connection> create(const QString &path);
    ~Connection();

    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    void close();
    bool isOpen() const { return m_db != nullptr; }
    void ensureOpen() const;
    const QString &path() const { return m_path; }
    bool isReadOnly() const { return m_readOnly; }
    // Throws the read-only error, naming the file, when the file is open read-only.
    void ensureWritable() const;

    Statement prepare(const QString &sql);
    void exec(const QString &sql);
    // Throws the StoreError for a SQLite result code.
    [[noreturn]] void fail(int rc);

    const Catalog &catalog() const { return m_catalog; }
    Catalog &catalogForUpdate() { return m_catalog; }
    void saveCatalog();
    void restoreCatalog(const Catalog &catalog);
    const TableDef &table(QStringView name) const; // 3011 when absent
    sql::TableLookup tableLookup();

    // Changes to the file through any connection of this process.
    std::uint64_t changeStamp() const { return m_shared->stamp; }
    void noteChange() { ++m_shared->stamp; }

    // Cursors still stepping through a statement of this file; each registers until it has read
    // its last row. Any write to the file lets them all read the rest first; a close, those of
    // this connection. A failed read ends short; the first failure is thrown after the others.
    void addPendingRead(PendingRead *read);
    void removePendingRead(PendingRead *read);
    void finishPendingReads(bool ownOnly = false);

    std::int64_t lastInsertRowid() const;

    // How many prepared statements the cache keeps at most: the least recently used one is
    // finalized when a new one would pass this, so distinct query texts (a criteria per concept)
    // don't pile up for as long as the file stays open.
    static constexpr std::size_t kStatementCacheSize = 96;
    std::size_t cachedStatements() const { return m_cache.size(); }

private:
    Connection(const QString &path, sqlite3 *db);
    void configure(bool fresh);
    void loadCatalog();
    void refreshQueryCatalog();

    QString m_path;
    sqlite3 *m_db = nullptr;
    bool m_readOnly = false;
    Catalog m_catalog;
    std::vector<sql::CatalogTable> m_queryTables;
    std::shared_ptr<SharedFile> m_shared;
    void evictStatements();

    struct Cached {
        std::string sql;
        sqlite3_stmt *stmt = nullptr;
        bool inUse = false; // borrowed by a live Statement: never finalized under it
    };
    // Most recently used first; the map's keys view the texts held by the list's entries.
    std::list<Cached> m_lru;
    std::unordered_map<std::string_view, std::list<Cached>::iterator> m_cache;
    friend class Statement;
};

// Whether a file may be written: the file and its folder (SQLite puts side files beside it).
// Replaceable, so tests can stand for a user without write access, which root never is.
using WritableCheck = bool (*)(const QString &path);
WritableCheck &writableCheck();

// Value conversions between the engine's cells and the program's variants.
QVariant cellToVariant(const Cell &cell, int fieldType);

} // namespace lx::store::detail
