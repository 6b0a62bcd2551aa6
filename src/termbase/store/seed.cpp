#include "termbase/store/seed.h"

#include "core/file_steps.h"
#include "core/process.h"
#include "core/store/database.h"
#include "core/store/table_shapes.h"

namespace lx {

using namespace store;

void CopyTermbaseSeed(const QString &path)
{
    Database termbase = DBEngine::OpenDatabase(path);
    Database seed = DBEngine::OpenDatabase(SeedDatabasePath(), false, true, kSeedConnect);
    CopySeedTable(termbase, seed, QStringLiteral("charsets"),
                  {u"charsetID", u"description", u"wsd"});
    CopySeedTable(termbase, seed, QStringLiteral("langs"),
                  {u"langID", u"description", u"charsetID", u"order"});
    CopySeedTable(termbase, seed, QStringLiteral("datcats"),
                  {u"categoryID", u"GI_name", u"type", u"value_type", u"needs_lang", u"forms_link",
                   u"parentCatID"});
    CopySeedTable(termbase, seed, QStringLiteral("datcats_names"),
                  {u"categoryID", u"langID", u"name"});
    CopySeedTable(termbase, seed, QStringLiteral("elements"),
                  {u"elemID", u"categoryID", u"parentID"});
    CopySeedTable(termbase, seed, QStringLiteral("picklists"), {u"categoryID", u"value"});
    CopySeedTable(termbase, seed, QStringLiteral("valid_families"),
                  {u"parentCategoryID", u"childCategoryID", u"occurrence"});
    seed.Close();
    termbase.Close();
}

void CopyWorkingConcepts(const QString &path)
{
    ProcessState &p = Process();
    Database termbase = DBEngine::OpenDatabase(path);
    Recordset concepts = termbase.OpenRecordset(QStringLiteral("CONCEPTS"), dbOpenTable);
    Recordset working = p.OntoDB.OpenRecordset(QStringLiteral("SELECT * from CONCEPTS ") +
                                                   QStringLiteral("WHERE Concept <> ") + p.Quote +
                                                   p.TopConcept + p.Quote,
                                               dbOpenSnapshot);
    if (working.RecordCount() > 0) {
        working.MoveFirst();
        for (; !working.Eof(); working.MoveNext()) {
            concepts.AddNew();
            concepts.Collect(u"Concept", working.Value(u"Concept"));
            concepts.Update();
        }
    }
    working.Close();
    concepts.Close();
    termbase.Close();
}

} // namespace lx
