#pragma once

#include "core/store/database.h"

#include <QStringView>

#include <initializer_list>

// Building the tables of a new file from short descriptions, and copying seed tables into it.
// The ontology and the termbase files are made the same way.
namespace lx {

struct FieldShape {
    const char *name;
    int type;
    int size = 0;
    bool zeroLength = false;
    bool autoNumber = false;
};

struct IndexShape {
    const char *name;
    std::initializer_list<const char *> fields;
    bool primary = false; // a primary index is also the only unique one
};

// A relation of one field, with cascading updates and deletes.
struct RelationShape {
    const char *name;
    const char *table;
    const char *field;
    const char *foreignTable;
    const char *foreignField;
};

void AppendTable(store::Database &db, const char *name, std::initializer_list<FieldShape> fields,
                 std::initializer_list<IndexShape> indexes);
void AppendRelation(store::Database &db, const RelationShape &shape);

// All rows of `table` from the seed into the same table of `destination`, field by field: the
// destination opened as a dynaset, the seed as a table. An empty seed table fails at MoveFirst.
void CopySeedTable(store::Database &destination, store::Database &seed, const QString &table,
                   std::initializer_list<QStringView> fields);

} // namespace lx
