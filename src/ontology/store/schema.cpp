#include "schema.h"

#include "core/process.h"
#include "ontology/store/seed.h"

#include <initializer_list>

namespace lx {

using namespace store;

namespace {

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
    bool primary = false;
};

void appendTable(Database &db, const char *name, std::initializer_list<FieldShape> fields,
                 std::initializer_list<IndexShape> indexes)
{
    TableDef td = db.CreateTableDef(QString::fromLatin1(name));
    for (const FieldShape &shape : fields) {
        Field f = td.CreateField(QString::fromLatin1(shape.name), shape.type, shape.size);
        f.AllowZeroLength = shape.zeroLength;
        if (shape.autoNumber)
            f.Attributes = dbAutoIncrField;
        td.Fields.push_back(f);
    }
    for (const IndexShape &shape : indexes) {
        Index idx = td.CreateIndex(QString::fromLatin1(shape.name));
        for (const char *field : shape.fields)
            idx.Fields.push_back(idx.CreateField(QString::fromLatin1(field)));
        idx.Primary = shape.primary;
        idx.Unique = shape.primary;
        td.Indexes.push_back(idx);
    }
    db.Append(td);
}

constexpr int kCascade = dbRelationUpdateCascades | dbRelationDeleteCascades; // 4352

void appendRelation(Database &db, const char *name, const char *table, const char *field,
                    const char *foreignTable, const char *foreignField)
{
    Relation rel = db.CreateRelation(QString::fromLatin1(name), QString::fromLatin1(table),
                                     QString::fromLatin1(foreignTable), kCascade);
    Field f = rel.CreateField(QString::fromLatin1(field));
    f.ForeignName = QString::fromLatin1(foreignField);
    rel.Fields.push_back(f);
    db.Append(rel);
}

} // namespace

void BuildOntologyTables(Database &db)
{
    appendTable(
        db, "CONCEPTS",
        {{"Concept", dbText, 255}, {"Definition", dbMemo}, {"Type", dbByte}, {"Subset_ID", dbByte}},
        {{"Concept", {"Concept"}, true}});
    appendTable(
        db, "Names",
        {{"Name_ID", dbLong, 0, false, true},
         {"Concept", dbText, 255},
         {"Lang_ID", dbText, 2},
         {"Name", dbText, 255}},
        {{"Name_ID", {"Name_ID"}, true}, {"Concept", {"Concept"}}, {"Lang_ID", {"Lang_ID"}}});
    appendTable(db, "Languages",
                {{"Lang_ID", dbText, 2}, {"Language", dbText, 255}, {"Show", dbBoolean}},
                {{"Lang_ID", {"Lang_ID"}, true}, {"Language", {"Language"}}});
    appendTable(db, "TermBases", {{"DBName", dbMemo}}, {});
    appendTable(db, "ISA", {{"Concept", dbText, 255}, {"ISA", dbText, 255}},
                {{"ISA", {"Concept", "ISA"}, true}});
    appendTable(db, "ATTRIBUTES",
                {{"Property_ID", dbLong, 0, false, true},
                 {"Concept", dbText, 255},
                 {"Attribute", dbText, 50},
                 {"Default", dbBoolean},
                 {"Value", dbMemo}},
                {{"IdxProps", {"Property_ID"}, true}});
    appendTable(db, "RELATIONS",
                {{"Relation_ID", dbLong, 0, false, true},
                 {"Concept1", dbText, 255},
                 {"Rel", dbText, 255},
                 {"Default", dbBoolean},
                 {"Concept2", dbText, 255}},
                {{"IdxRels", {"Relation_ID"}, true}});
    appendTable(db, "INVERSES", {{"Relation", dbText, 255}, {"Inverse", dbText, 255}},
                {{"Rel-Inv", {"Relation", "Inverse"}, true},
                 {"Relation", {"Relation"}},
                 {"Inverse", {"Inverse"}}});
    appendTable(db, "Notes",
                {{"Note_ID", dbLong, 0, false, true},
                 {"Concept", dbText, 255},
                 {"Note", dbMemo, 0, true},
                 {"Date", dbDate}},
                {{"IdxNote", {"Note_ID"}, true}, {"Concept", {"Concept"}}});
    appendTable(db, "MetaData",
                {{"MetaData_ID", dbLong, 0, false, true},
                 {"Name", dbText, 25},
                 {"Created", dbDate},
                 {"Modified", dbDate},
                 {"Owner", dbText, 150, true},
                 {"Author", dbText, 200, true},
                 {"Contact", dbText, 150, true},
                 {"Description", dbText, 255, true},
                 {"MaxParents", dbByte},
                 {"ListTop", dbByte},
                 {"DefLang", dbText, 2},
                 {"Naming", dbBoolean},
                 {"AutoName", dbByte},
                 {"ActiveSet", dbByte}},
                {{"IdxMD", {"MetaData_ID"}, true}});
    appendTable(db, "Subsets", {{"Subset_ID", dbByte}, {"Subset", dbText, 65}},
                {{"Subset_ID", {"Subset_ID"}, true}, {"Subset", {"Subset"}}});
    appendTable(db, "Inherit",
                {{"Attr", dbText, 255}, {"Value", dbText, 255}, {"From", dbText, 255}},
                {{"AttrVal", {"Attr", "Value"}, true},
                 {"Attr", {"Attr"}},
                 {"Value", {"Value"}},
                 {"From", {"From"}}});

    appendRelation(db, "ConceptsISA", "CONCEPTS", "Concept", "ISA", "Concept");
    appendRelation(db, "ConceptsISA2", "CONCEPTS", "Concept", "ISA", "ISA");
    appendRelation(db, "ConceptsAttributes", "CONCEPTS", "Concept", "ATTRIBUTES", "Concept");
    appendRelation(db, "ConceptsAttributes2", "CONCEPTS", "Concept", "ATTRIBUTES", "Attribute");
    appendRelation(db, "ConceptsRelations", "CONCEPTS", "Concept", "RELATIONS", "Concept1");
    appendRelation(db, "ConceptsRelations2", "CONCEPTS", "Concept", "RELATIONS", "Concept2");
    appendRelation(db, "ConceptsRelations3", "CONCEPTS", "Concept", "RELATIONS", "Rel");
    appendRelation(db, "ConceptsInverses1", "CONCEPTS", "Concept", "INVERSES", "Relation");
    appendRelation(db, "ConceptsInverses2", "CONCEPTS", "Concept", "INVERSES", "Inverse");
    appendRelation(db, "ConceptsNotes", "CONCEPTS", "Concept", "Notes", "Concept");
    appendRelation(db, "ConceptsNames", "CONCEPTS", "Concept", "Names", "Concept");
    appendRelation(db, "LanguagesNames", "Languages", "Lang_ID", "Names", "Lang_ID");
    appendRelation(db, "SubsetsConcepts", "Subsets", "Subset_ID", "CONCEPTS", "Subset_ID");
}

Database CreateOntologySchema(const QString &path)
{
    Database db = DBEngine::Workspaces(0).CreateDatabase(path, dbLangGeneral, dbVersion40);
    BuildOntologyTables(db);
    Process().OntoDB = db;
    // The seed copy works on OntoPath; callers set it already, others get it here.
    Process().OntoPath = path;
    CopySeedContent(); // opens OntoDB anew, which lets the building handle go
    return Process().OntoDB;
}

} // namespace lx
