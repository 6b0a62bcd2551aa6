#pragma once

#include "core/store/types.h"

#include <QString>

#include <vector>

namespace lx::store {

// Objects that describe a file's structure; used when a new file is built, and kept in the
// file so every connection knows the field types, sizes and rules the engine enforces.

struct Field {
    QString Name;
    int Type = dbText;
    int Size = 0;       // characters, for Text
    int Attributes = 0; // dbAutoIncrField
    bool AllowZeroLength = false;
    QString ForeignName; // in a Relation: the field of the foreign table

    bool isAutoNumber() const { return (Attributes & dbAutoIncrField) != 0; }
    bool isText() const { return Type == dbText || Type == dbMemo; }
};

struct Index {
    QString Name;
    std::vector<Field> Fields;
    bool Primary = false;
    bool Unique = false;

    Field CreateField(const QString &name) const
    {
        Field f;
        f.Name = name;
        return f;
    }
};

struct TableDef {
    QString Name;
    std::vector<Field> Fields;
    std::vector<Index> Indexes;

    Field CreateField(const QString &name, int type, int size = 0) const;
    Index CreateIndex(const QString &name) const { return Index{name, {}, false, false}; }

    // Lookups without regard to case; -1 or nullptr when absent.
    int fieldIndex(QStringView name) const;
    const Index *findIndex(QStringView name) const;
    const Index *primaryIndex() const;
};

struct Relation {
    QString Name;
    QString Table;        // the primary table
    QString ForeignTable; // the table that refers to it
    int Attributes = 0;
    std::vector<Field> Fields; // Name in Table, ForeignName in ForeignTable

    Field CreateField(const QString &name) const
    {
        Field f;
        f.Name = name;
        return f;
    }
    bool cascadesUpdates() const { return (Attributes & dbRelationUpdateCascades) != 0; }
    bool cascadesDeletes() const { return (Attributes & dbRelationDeleteCascades) != 0; }
};

// The structure of one file.
struct Catalog {
    std::vector<TableDef> tables;
    std::vector<Relation> relations;

    const TableDef *findTable(QStringView name) const;
    const Relation *findRelation(QStringView name) const;

    QByteArray toJson() const;
    static Catalog fromJson(const QByteArray &json, bool *ok);
};

} // namespace lx::store
