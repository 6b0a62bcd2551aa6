#pragma once

#include "core/store/database.h"

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

// A folder of its own for each test, removed afterwards.
class TempFolder {
public:
    QString path(const QString &name) const { return m_dir.filePath(name); }
    QString root() const { return m_dir.path(); }

private:
    QTemporaryDir m_dir;
};
