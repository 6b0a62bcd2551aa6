#include "seed.h"

#include "core/process.h"
#include "core/store/database.h"
#include "core/store/table_shapes.h"

namespace lx {

using namespace store;

void CopySeedContent()
{
    ProcessState &process = Process();
    process.OntoDB = DBEngine::OpenDatabase(process.OntoPath);
    Database seed = DBEngine::OpenDatabase(SeedDatabasePath(), false, true, kSeedConnect);
    // A subset before its concepts, a concept before its links. Default and the AutoNumber of
    // RELATIONS stay behind: no seeded slot is a default.
    CopySeedTable(process.OntoDB, seed, QStringLiteral("Subsets"), {u"subset_ID", u"Subset"});
    CopySeedTable(process.OntoDB, seed, QStringLiteral("CONCEPTS"),
                  {u"Concept", u"definition", u"Type", u"subset_ID"});
    CopySeedTable(process.OntoDB, seed, QStringLiteral("ISA"), {u"Concept", u"ISA"});
    CopySeedTable(process.OntoDB, seed, QStringLiteral("INVERSES"), {u"Relation", u"Inverse"});
    CopySeedTable(process.OntoDB, seed, QStringLiteral("RELATIONS"),
                  {u"Concept1", u"Rel", u"Concept2"});
    CopySeedTable(process.OntoDB, seed, QStringLiteral("Languages"),
                  {u"Lang_ID", u"Language", u"Show"});
    seed.Close();
}

} // namespace lx
