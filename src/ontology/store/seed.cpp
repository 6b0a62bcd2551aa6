#include "seed.h"

#include "core/process.h"
#include "core/store/database.h"

#include <initializer_list>

namespace lx {

using namespace store;

namespace {

// All rows of one table, field by field, in the seed's table order.
void CopyTable(Database &onto, Database &seed, const QString &table,
               std::initializer_list<QStringView> fields)
{
    Recordset destination = onto.OpenRecordset(table, dbOpenDynaset);
    Recordset source = seed.OpenRecordset(table, dbOpenTable);
    source.MoveFirst();
    while (!source.Eof()) {
        destination.AddNew();
        for (QStringView field : fields)
            destination.Collect(field, source.Value(field));
        destination.Update();
        source.MoveNext();
    }
    destination.Close();
    source.Close();
}

} // namespace

void CopySeedContent()
{
    ProcessState &process = Process();
    process.OntoDB = DBEngine::OpenDatabase(process.OntoPath);
    Database seed = DBEngine::OpenDatabase(SeedDatabasePath(), false, false, kSeedConnect);
    // A subset before its concepts, a concept before its links. Default and the AutoNumber of
    // RELATIONS stay behind: no seeded slot is a default.
    CopyTable(process.OntoDB, seed, QStringLiteral("Subsets"), {u"subset_ID", u"Subset"});
    CopyTable(process.OntoDB, seed, QStringLiteral("CONCEPTS"),
              {u"Concept", u"definition", u"Type", u"subset_ID"});
    CopyTable(process.OntoDB, seed, QStringLiteral("ISA"), {u"Concept", u"ISA"});
    CopyTable(process.OntoDB, seed, QStringLiteral("INVERSES"), {u"Relation", u"Inverse"});
    CopyTable(process.OntoDB, seed, QStringLiteral("RELATIONS"),
              {u"Concept1", u"Rel", u"Concept2"});
    CopyTable(process.OntoDB, seed, QStringLiteral("Languages"),
              {u"Lang_ID", u"Language", u"Show"});
    seed.Close();
}

} // namespace lx
