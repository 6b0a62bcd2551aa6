#include "schema.h"

#include "core/process.h"
#include "core/store/table_shapes.h"
#include "ontology/store/seed.h"

namespace lx {

using namespace store;

void BuildOntologyTables(Database &db)
{
    AppendTable(
        db, "CONCEPTS",
        {{"Concept", dbText, 255}, {"Definition", dbMemo}, {"Type", dbByte}, {"Subset_ID", dbByte}},
        {{"Concept", {"Concept"}, true}});
    AppendTable(
        db, "Names",
        {{"Name_ID", dbLong, 0, false, true},
         {"Concept", dbText, 255},
         {"Lang_ID", dbText, 2},
         {"Name", dbText, 255}},
        {{"Name_ID", {"Name_ID"}, true}, {"Concept", {"Concept"}}, {"Lang_ID", {"Lang_ID"}}});
    AppendTable(db, "Languages",
                {{"Lang_ID", dbText, 2}, {"Language", dbText, 255}, {"Show", dbBoolean}},
                {{"Lang_ID", {"Lang_ID"}, true}, {"Language", {"Language"}}});
    AppendTable(db, "TermBases", {{"DBName", dbMemo}}, {});
    AppendTable(db, "ISA", {{"Concept", dbText, 255}, {"ISA", dbText, 255}},
                {{"ISA", {"Concept", "ISA"}, true}});
    AppendTable(db, "ATTRIBUTES",
                {{"Property_ID", dbLong, 0, false, true},
                 {"Concept", dbText, 255},
                 {"Attribute", dbText, 50},
                 {"Default", dbBoolean},
                 {"Value", dbMemo}},
                {{"IdxProps", {"Property_ID"}, true}});
    AppendTable(db, "RELATIONS",
                {{"Relation_ID", dbLong, 0, false, true},
                 {"Concept1", dbText, 255},
                 {"Rel", dbText, 255},
                 {"Default", dbBoolean},
                 {"Concept2", dbText, 255}},
                {{"IdxRels", {"Relation_ID"}, true}});
    AppendTable(db, "INVERSES", {{"Relation", dbText, 255}, {"Inverse", dbText, 255}},
                {{"Rel-Inv", {"Relation", "Inverse"}, true},
                 {"Relation", {"Relation"}},
                 {"Inverse", {"Inverse"}}});
    AppendTable(db, "Notes",
                {{"Note_ID", dbLong, 0, false, true},
                 {"Concept", dbText, 255},
                 {"Note", dbMemo, 0, true},
                 {"Date", dbDate}},
                {{"IdxNote", {"Note_ID"}, true}, {"Concept", {"Concept"}}});
    AppendTable(db, "MetaData",
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
    AppendTable(db, "Subsets", {{"Subset_ID", dbByte}, {"Subset", dbText, 65}},
                {{"Subset_ID", {"Subset_ID"}, true}, {"Subset", {"Subset"}}});
    AppendTable(db, "Inherit",
                {{"Attr", dbText, 255}, {"Value", dbText, 255}, {"From", dbText, 255}},
                {{"AttrVal", {"Attr", "Value"}, true},
                 {"Attr", {"Attr"}},
                 {"Value", {"Value"}},
                 {"From", {"From"}}});

    AppendRelation(db, {"ConceptsISA", "CONCEPTS", "Concept", "ISA", "Concept"});
    AppendRelation(db, {"ConceptsISA2", "CONCEPTS", "Concept", "ISA", "ISA"});
    AppendRelation(db, {"ConceptsAttributes", "CONCEPTS", "Concept", "ATTRIBUTES", "Concept"});
    AppendRelation(db, {"ConceptsAttributes2", "CONCEPTS", "Concept", "ATTRIBUTES", "Attribute"});
    AppendRelation(db, {"ConceptsRelations", "CONCEPTS", "Concept", "RELATIONS", "Concept1"});
    AppendRelation(db, {"ConceptsRelations2", "CONCEPTS", "Concept", "RELATIONS", "Concept2"});
    AppendRelation(db, {"ConceptsRelations3", "CONCEPTS", "Concept", "RELATIONS", "Rel"});
    AppendRelation(db, {"ConceptsInverses1", "CONCEPTS", "Concept", "INVERSES", "Relation"});
    AppendRelation(db, {"ConceptsInverses2", "CONCEPTS", "Concept", "INVERSES", "Inverse"});
    AppendRelation(db, {"ConceptsNotes", "CONCEPTS", "Concept", "Notes", "Concept"});
    AppendRelation(db, {"ConceptsNames", "CONCEPTS", "Concept", "Names", "Concept"});
    AppendRelation(db, {"LanguagesNames", "Languages", "Lang_ID", "Names", "Lang_ID"});
    AppendRelation(db, {"SubsetsConcepts", "Subsets", "Subset_ID", "CONCEPTS", "Subset_ID"});
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
