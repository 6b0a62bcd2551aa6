#pragma once

#include "core/store/catalog.h"
#include "core/store/recordset.h"
#include "core/store/types.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

namespace lx::store {

namespace detail {
class Connection;
struct DatabaseAccess;
} // namespace detail

// The locale and format option every file is created with. The locale fixes the text order of
// the file: general, case-insensitive.
inline const QString dbLangGeneral = QStringLiteral(";LANGID=0x0409;CP=1252;COUNTRY=0");
inline constexpr int dbVersion40 = 64;

// One open store file. Copies share the same open file; Close closes it for all of them.
class Database {
public:
    Database() = default;

    bool isOpen() const;
    QString Name() const; // the file's path
    // False for a file open read-only: every write then fails with 3027, naming the file.
    bool Updatable() const;
    void Close();

    // A table name (table type by default) or a SELECT text (dynaset by default).
    Recordset OpenRecordset(const QString &source, int type = 0);

    // Building a file.
    TableDef CreateTableDef(const QString &name) const { return TableDef{name, {}, {}}; }
    Relation CreateRelation(const QString &name, const QString &table, const QString &foreignTable,
                            int attributes) const;
    void Append(const TableDef &table);    // TableDefs.Append
    void Append(const Relation &relation); // Relations.Append
    std::vector<TableDef> TableDefs() const;
    std::vector<Relation> Relations() const;

    // Writes everything still in the write-ahead log into the file itself, so the file can be
    // copied on its own while it stays open.
    void Checkpoint();

private:
    friend class DBEngine;
    friend class Workspace;
    friend class WriteBatch;
    friend class Transaction;
    friend struct detail::DatabaseAccess; // graph walks (graph.cpp) run their own query
    explicit Database(std::shared_ptr<detail::Connection> connection);
    detail::Connection &connection() const;

    std::shared_ptr<detail::Connection> m_connection;
};

// While it lives, what is written to the file goes into one transaction, written out when it
// ends; a batch under way takes it in. For scratch rows written one by one, such as the
// inheritance table of a published page, where a commit of each row would cost more than the
// work. Nothing is rolled back: a failed statement undoes only itself, as without the batch, and
// what was written stays. The file is to be closed only after its batches have ended.
class WriteBatch {
public:
    explicit WriteBatch(const Database &db);
    ~WriteBatch();
    WriteBatch(const WriteBatch &) = delete;
    WriteBatch &operator=(const WriteBatch &) = delete;

private:
    std::shared_ptr<detail::Connection> m_connection;
};

// All or nothing: what is written to the file while it lives stays only if Commit is called;
// otherwise the destructor takes every row back. For a run of writes that must not be left half
// done, such as an import. A batch may run inside it; it may not run inside a batch.
class Transaction {
public:
    explicit Transaction(const Database &db);
    ~Transaction();
    Transaction(const Transaction &) = delete;
    Transaction &operator=(const Transaction &) = delete;

    void Commit();

private:
    std::shared_ptr<detail::Connection> m_connection;
    bool m_done = false;
};

// One field of every row of a query, read as a snapshot, Null as the empty text.
QStringList ReadColumn(Database &db, const QString &query, QStringView field);
// Calls `row` with the recordset standing on each row of a query, read as a snapshot.
void ForEachRow(Database &db, const QString &query,
                const std::function<void(const Recordset &)> &row);

class Workspace {
public:
    // Creates a new file; 3204 when the file exists. Locale and option are accepted as given
    // (dbLangGeneral and dbVersion40 are the only ones in use).
    Database CreateDatabase(const QString &path, const QString &locale, int option = dbVersion40);
};

class DBEngine {
public:
    // Opens a file for reading and writing; read-only when the file or its folder can't be
    // written, without leaving side files beside it. 3024 when it doesn't exist (nothing is
    // created), 3343 when it isn't a store file.
    static Database OpenDatabase(const QString &path);
    // The form with a connect string (";pwd=..."); the password is accepted. `readOnly` opens
    // read-only whether or not the file could be written.
    static Database OpenDatabase(const QString &path, bool exclusive, bool readOnly,
                                 const QString &connect);
    static Workspace &Workspaces(int index = 0);

    // How the store tells whether a file may be written (the file and its folder writable).
    // Returns the check in force before; tests put one in for a user who can't write.
    using WritableCheck = bool (*)(const QString &path);
    static WritableCheck SetWritableCheck(WritableCheck check);
};

} // namespace lx::store
