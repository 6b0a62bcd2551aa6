#include "termbase/store/schema.h"

#include "core/store/table_shapes.h"
#include "termbase/store/seed.h"

#include <QSet>

#include <functional>
#include <initializer_list>
#include <vector>

namespace lx {

using namespace store;

namespace {

// A value table: one row per element at most.
void appendValueTable(Database &db, const char *name, int type, int size, bool indexValue = false)
{
    if (indexValue)
        AppendTable(db, name, {{"elemID", dbLong}, {"value", type, size}},
                    {{"elemID", {"elemID"}, true}, {"value", {"value"}}});
    else
        AppendTable(db, name, {{"elemID", dbLong}, {"value", type, size}},
                    {{"elemID", {"elemID"}, true}});
}

struct TableShape {
    const char *name;
    std::function<void(Database &)> build;
};

// The eighteen tables in the order of creation.
const std::vector<TableShape> &Tables()
{
    static const std::vector<TableShape> tables = {
        {"CONCEPTS",
         [](Database &db) {
             AppendTable(db, "CONCEPTS", {{"Concept", dbText, 255}},
                         {{"Concept", {"Concept"}, true}});
         }},
        {"datcats",
         [](Database &db) {
             AppendTable(db, "datcats",
                         {{"categoryID", dbText, 10},
                          {"GI_name", dbText, 15},
                          {"type", dbText, 32},
                          {"value_type", dbText, 9},
                          {"needs_lang", dbBoolean},
                          {"forms_link", dbBoolean},
                          {"parentCatID", dbText, 10}},
                         {{"categoryID", {"categoryID"}, true}, {"parentCatID", {"parentCatID"}}});
         }},
        {"datcats_names",
         [](Database &db) {
             AppendTable(db, "datcats_names",
                         {{"categoryID", dbText, 10}, {"langID", dbText, 3}, {"name", dbText, 255}},
                         {{"cat-lang", {"categoryID", "langID"}, true}});
         }},
        {"elements",
         [](Database &db) {
             AppendTable(db, "elements",
                         {{"elemID", dbLong}, {"categoryID", dbText, 10}, {"parentID", dbLong}},
                         {{"elemID", {"elemID"}, true},
                          {"categoryID", {"categoryID"}},
                          {"parentID", {"parentID"}}});
         }},
        {"charsets",
         [](Database &db) {
             AppendTable(db, "charsets",
                         {{"charsetID", dbText, 20}, {"description", dbMemo}, {"wsd", dbMemo}},
                         {{"charsetID", {"charsetID"}, true}});
         }},
        {"date_values", [](Database &db) { appendValueTable(db, "date_values", dbDate, 0); }},
        {"number_values", [](Database &db) { appendValueTable(db, "number_values", dbLong, 0); }},
        {"picklist_values",
         [](Database &db) { appendValueTable(db, "picklist_values", dbText, 255); }},
        {"ref_values", [](Database &db) { appendValueTable(db, "ref_values", dbText, 255, true); }},
        {"text_values", [](Database &db) { appendValueTable(db, "text_values", dbMemo, 0); }},
        {"elements_use_lang",
         [](Database &db) {
             AppendTable(db, "elements_use_lang", {{"elemID", dbLong}, {"langID", dbText, 3}},
                         {{"elemID", {"elemID"}, true}, {"langID", {"langID"}}});
         }},
        {"langs",
         [](Database &db) {
             AppendTable(db, "langs",
                         {{"langID", dbText, 3},
                          {"description", dbMemo},
                          {"charsetID", dbText, 20},
                          {"wsd", dbMemo},
                          {"collating_sequence", dbMemo},
                          {"noise_list", dbMemo},
                          {"order", dbByte}},
                         {{"langID", {"langID"}, true}, {"charsetID", {"charsetID"}}});
         }},
        {"MetaData",
         [](Database &db) {
             // The index keeps the name it has always had in these files.
             AppendTable(db, "MetaData",
                         {{"MetaID", dbLong, 0, false, true},
                          {"Name", dbText, 25},
                          {"Created", dbDate},
                          {"Modified", dbDate},
                          {"Owner", dbText, 150, true},
                          {"Author", dbText, 200, true},
                          {"Contact", dbText, 150, true},
                          {"Description", dbText, 255, true},
                          {"Ontology", dbText, 255},
                          {"DCLang", dbText, 3},
                          {"DCList", dbText, 50},
                          {"CSBrowser", dbBoolean}},
                         {{"langID", {"MetaID"}, true}});
         }},
        {"picklists",
         [](Database &db) {
             AppendTable(db, "picklists", {{"categoryID", dbText, 10}, {"value", dbText, 255}},
                         {{"elemID", {"categoryID", "value"}, true}});
         }},
        {"pointers",
         [](Database &db) {
             AppendTable(db, "pointers", {{"elemID", dbLong}, {"targetID", dbLong}},
                         {{"elem-target", {"elemID", "targetID"}, true},
                          {"elemID", {"elemID"}},
                          {"targetID", {"targetID"}}});
         }},
        {"TE_CONCEPTS",
         [](Database &db) {
             AppendTable(db, "TE_CONCEPTS", {{"elemID", dbLong}, {"Concept", dbText, 255}},
                         {{"elemID", {"elemID"}, true}});
         }},
        {"TERMS",
         [](Database &db) {
             AppendTable(db, "TERMS", {{"elemID", dbLong}, {"term", dbMemo}, {"langID", dbText, 3}},
                         {{"elemID", {"elemID"}, true}, {"langID", {"langID"}}});
         }},
        {"valid_families",
         [](Database &db) {
             AppendTable(db, "valid_families",
                         {{"parentCategoryID", dbText, 10},
                          {"childCategoryID", dbText, 10},
                          {"occurrence", dbText, 1}},
                         {{"parent-child", {"parentCategoryID", "childCategoryID"}, true}});
         }},
    };
    return tables;
}

// The twenty-one relations in the order of creation.
constexpr RelationShape kRelations[] = {
    {"elements-TERMS", "elements", "elemID", "TERMS", "elemID"},
    {"elements_TE_CONCEPTS", "elements", "elemID", "TE_CONCEPTS", "elemID"},
    {"Concepts-TE_CONCEPTS", "CONCEPTS", "Concept", "TE_CONCEPTS", "Concept"},
    {"elements-elements", "elements", "elemID", "elements", "parentID"},
    {"elements-pointers1", "elements", "elemID", "pointers", "elemID"},
    {"elements-pointers2", "elements", "elemID", "pointers", "targetID"},
    {"elements-numbers", "elements", "elemID", "number_values", "elemID"},
    {"elements-refs", "elements", "elemID", "ref_values", "elemID"},
    {"elements-texts", "elements", "elemID", "text_values", "elemID"},
    {"elements-dates", "elements", "elemID", "date_values", "elemID"},
    {"elements-picklists", "elements", "elemID", "picklist_values", "elemID"},
    {"elements-elements_use_lang", "elements", "elemID", "elements_use_lang", "elemID"},
    {"langs-elements_use_lang", "langs", "langID", "elements_use_lang", "langID"},
    {"langs-datcats_names", "langs", "langID", "datcats_names", "langID"},
    {"charsets-langs", "charsets", "charsetID", "langs", "charsetID"},
    {"datcats-elements", "datcats", "categoryID", "elements", "categoryID"},
    {"datcats-datcats_names", "datcats", "categoryID", "datcats_names", "categoryID"},
    {"datcats-datcats", "datcats", "categoryID", "datcats", "parentCatID"},
    {"datcats-valid_families1", "datcats", "categoryID", "valid_families", "parentCategoryID"},
    {"datcats-valid_families2", "datcats", "categoryID", "valid_families", "childCategoryID"},
    {"datcats-picklists", "datcats", "categoryID", "picklists", "categoryID"},
};

// The tables named, in the order of creation, and the relations between two of them.
void buildSome(Database &db, const QSet<QString> &names)
{
    for (const TableShape &table : Tables())
        if (names.contains(QString::fromLatin1(table.name)))
            table.build(db);
    for (const RelationShape &relation : kRelations)
        if (names.contains(QString::fromLatin1(relation.table)) &&
            names.contains(QString::fromLatin1(relation.foreignTable)))
            AppendRelation(db, relation);
}

} // namespace

void BuildTermbaseTables(Database &db)
{
    QSet<QString> all;
    for (const TableShape &table : Tables())
        all.insert(QString::fromLatin1(table.name));
    buildSome(db, all);
}

void BuildTermbaseSeedTables(Database &db)
{
    buildSome(db, {QStringLiteral("charsets"), QStringLiteral("langs"), QStringLiteral("datcats"),
                   QStringLiteral("datcats_names"), QStringLiteral("elements"),
                   QStringLiteral("picklists"), QStringLiteral("valid_families")});
}

void CreateTermbaseSchema(const QString &path)
{
    Database db = DBEngine::Workspaces(0).CreateDatabase(path, dbLangGeneral, dbVersion40);
    BuildTermbaseTables(db);
    db.Close();
    CopyTermbaseSeed(path);
    CopyWorkingConcepts(path);
}

} // namespace lx
