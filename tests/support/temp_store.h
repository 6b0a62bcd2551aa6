#pragma once

#include "core/store/database.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

// Expects `statement` to throw the record store's error number `expected`.
#define EXPECT_STORE_ERROR(statement, expected)                                                    \
    do {                                                                                           \
        try {                                                                                      \
            statement;                                                                             \
            ADD_FAILURE() << "expected store error " << (expected);                                \
        } catch (const lx::store::StoreError &e) {                                                 \
            EXPECT_EQ(e.number(), (expected)) << e.description().toStdString();                    \
        }                                                                                          \
    } while (0)

// While it lives, the store takes every file for one it may not write, as for a user without
// write access (root, who runs the tests in CI, may write anything). Files already open keep
// their mode.
class NoWriteAccess {
public:
    NoWriteAccess()
        : m_old(lx::store::DBEngine::SetWritableCheck([](const QString &) { return false; }))
    {}
    ~NoWriteAccess() { lx::store::DBEngine::SetWritableCheck(m_old); }
    NoWriteAccess(const NoWriteAccess &) = delete;
    NoWriteAccess &operator=(const NoWriteAccess &) = delete;

private:
    lx::store::DBEngine::WritableCheck m_old;
};

// The bytes of a file, to show that it was left as it was.
inline QByteArray FileBytes(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// A folder of its own for each test, removed afterwards.
class TempFolder {
public:
    QString path(const QString &name) const { return m_dir.filePath(name); }
    QString root() const { return m_dir.path(); }

private:
    QTemporaryDir m_dir;
};
