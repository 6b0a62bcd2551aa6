#include "ontology/edit/concepts.h"

#include "core/interaction.h"
#include "core/process.h"
#include "core/store/database.h"
#include "core/store/types.h"
#include "ontology/store/lookups.h"

namespace lx {

using namespace store;

namespace {

const QString kLineBreak = QStringLiteral("\r\n");
const QString kErrorTitle = QStringLiteral("Error");

QString orUndefined(const QString &definition)
{
    return definition.isEmpty() ? QStringLiteral("Undefined") : definition;
}

void addConceptRow(Recordset &rs, const QString &identifier, const QString &definition, int type)
{
    rs.AddNew();
    rs.Collect(u"Concept", identifier);
    rs.Collect(u"definition", orUndefined(definition));
    rs.Collect(u"Type", type);
    rs.Collect(u"subset_ID", Process().OntoMeta.ActiveSet);
    rs.Update();
}

void addPair(Recordset &rs, QStringView first, const QString &a, QStringView second,
             const QString &b)
{
    rs.AddNew();
    rs.Collect(first, a);
    rs.Collect(second, b);
    rs.Update();
}

// The checks of the add, in their order; the first refusal is told.
bool checkNewConcept(const NewConceptTexts &texts)
{
    if (texts.Concept.isEmpty()) {
        UI().MsgBox(QStringLiteral("You must specify a concept name"), msg::Exclamation,
                    kErrorTitle);
        return false;
    }
    if (texts.Parent.isEmpty()) {
        UI().MsgBox(QStringLiteral("You must make this concept ") + kLineBreak +
                        QStringLiteral("a CHILD of an existent concept."),
                    msg::Exclamation, kErrorTitle);
        return false;
    }
    if (texts.Parent == texts.Concept) {
        UI().MsgBox(QStringLiteral("A concept can't have itself as its superordinate concept."),
                    msg::Information, kErrorTitle);
        return false;
    }
    return true;
}

} // namespace

QString ParentListQuery(int type)
{
    // The first match among the options, in their order; the object's list otherwise.
    const char *const where[] = {"WHERE Type = 1 OR Type = 100 ", "WHERE Type = 2 OR Type = 100 ",
                                 "WHERE Type = 3 OR Type = 100 ", "WHERE Type = 4 OR Type = 100 "};
    const int option = type >= ctObject && type <= ctRelation ? type : ctObject;
    return QStringLiteral("SELECT Concept From CONCEPTS ") +
           QString::fromLatin1(where[option - 1]) + QStringLiteral("ORDER BY Concept");
}

QStringList ReadParentList(int type)
{
    QStringList parents;
    Recordset rs = Process().OntoDB.OpenRecordset(ParentListQuery(type), dbOpenSnapshot);
    for (; !rs.Eof(); rs.MoveNext())
        parents.append(rs.Value(u"Concept").toString());
    return parents;
}

bool AddConcept(NewConceptTexts &texts, const InverseDialog &askInverse)
{
    ProcessState &p = Process();
    texts.Concept = ReplaceDoubleQuotes(texts.Concept);
    if (p.OntoMeta.Naming)
        texts.Concept = NormalizeIdentifier(texts.Concept);
    // Whatever was typed as the definition gives way to the identifier.
    texts.Def = ReplaceDoubleQuotes(texts.Concept);
    if (!checkNewConcept(texts))
        return false;

    Recordset concepts = p.OntoDB.OpenRecordset(QStringLiteral("CONCEPTS"), dbOpenDynaset);
    concepts.FindFirst(QStringLiteral("Concept= ") + Quoted(texts.Concept));
    if (!concepts.NoMatch()) {
        UI().MsgBox(QStringLiteral("The string you have used to name the concept ") + kLineBreak +
                        QStringLiteral("(") + p.Quote + texts.Concept + p.Quote +
                        QStringLiteral(")") + kLineBreak +
                        QStringLiteral("is already in use. Please, try again."),
                    msg::Critical, QStringLiteral("error"));
        return false;
    }
    if (texts.Type == ctRelation)
        return AddInverseRelation(texts.Concept, texts.Parent, texts.Def, askInverse());

    addConceptRow(concepts, texts.Concept, texts.Def, texts.Type);
    Recordset isa = p.OntoDB.OpenRecordset(QStringLiteral("ISA"), dbOpenTable);
    addPair(isa, u"Concept", texts.Concept, u"ISA", texts.Parent);
    return true;
}

bool AddInverseRelation(const QString &relation, const QString &parent, const QString &definition,
                        const InverseTexts &inverse)
{
    const QString inverseDef = orUndefined(inverse.Def);
    const QString relationDef = orUndefined(definition);
    const auto refuse = [](const char *text) {
        UI().MsgBox(QString::fromLatin1(text), msg::Exclamation);
        return false;
    };
    if (inverse.Concept.isEmpty())
        return refuse("You must specify an inverse relation");
    if (inverse.Parent.isEmpty())
        return refuse("You must specify a parent for the new relation");
    if (inverse.Concept == relation)
        return refuse("A relation and its inverse can't have the same name!");

    // No check that the inverse is free: a duplicate fails in the store at its Update, with the
    // relation's row already written.
    Database &db = Process().OntoDB;
    Recordset concepts = db.OpenRecordset(QStringLiteral("CONCEPTS"), dbOpenTable);
    addConceptRow(concepts, relation, relationDef, ctRelation);
    addConceptRow(concepts, inverse.Concept, inverseDef, ctRelation);
    concepts.Close();

    Recordset isa = db.OpenRecordset(QStringLiteral("ISA"), dbOpenTable);
    addPair(isa, u"Concept", relation, u"ISA", parent);
    addPair(isa, u"Concept", inverse.Concept, u"ISA", inverse.Parent);
    isa.Close();

    Recordset inverses = db.OpenRecordset(QStringLiteral("INVERSES"), dbOpenTable);
    inverses.SetIndex(QStringLiteral("Relation"));
    addPair(inverses, u"Relation", relation, u"Inverse", inverse.Concept);
    addPair(inverses, u"Relation", inverse.Concept, u"Inverse", relation);
    return true;
}

bool RenameConcept(const QString &oldId, const QString &newId)
{
    Recordset rs = Process().OntoDB.OpenRecordset(QStringLiteral("CONCEPTS"), dbOpenDynaset);
    rs.FindFirst(QStringLiteral("Concept= ") + Quoted(newId));
    if (!rs.NoMatch()) {
        UI().MsgBox(QStringLiteral("Concept:") + kLineBreak + QStringLiteral("(") + Quoted(newId) +
                        QStringLiteral(")") + kLineBreak +
                        QStringLiteral("is already in use. Please, try again."),
                    msg::OKOnly, QStringLiteral("error"));
        return false;
    }
    rs.FindFirst(QStringLiteral("Concept= ") + Quoted(oldId));
    if (!rs.NoMatch()) {
        rs.Edit();
        rs.Collect(u"Concept", newId);
        rs.Update();
    }
    return true;
}

void SaveDefinition(const QString &identifier, const QString &definition)
{
    Recordset rs = Process().OntoDB.OpenRecordset(QStringLiteral("CONCEPTS"), dbOpenTable);
    rs.SetIndex(QStringLiteral("Concept"));
    rs.Seek(u"=", identifier);
    if (rs.NoMatch())
        return;
    rs.Edit();
    rs.Collect(u"definition", definition);
    rs.Update();
}

std::optional<DeletedConcept> DeleteConcept(OntologyEditor &editor)
{
    ProcessState &p = Process();
    if (p.OntoPath.isEmpty()) {
        UI().MsgBox(QStringLiteral("No ontology is currently in use"));
        return std::nullopt;
    }
    const QString identifier = editor.CurrentConcept;
    if (identifier.isEmpty()) {
        UI().MsgBox(QStringLiteral("You must select a concept in the list"));
        return std::nullopt;
    }
    const auto confirm = [](const QString &question) {
        return UI().MsgBox(question, msg::YesNo | msg::Exclamation,
                           QStringLiteral("Confirm Deletion")) == msg::Yes;
    };
    if (!confirm(QStringLiteral(" Are you sure you want to delete this concept?") + kLineBreak +
                 identifier + kLineBreak +
                 QStringLiteral("All references to this concept will be deleted as well. "
                                "Proceed?")))
        return std::nullopt;

    DeletedConcept deleted{identifier, {}};
    if (editor.CurrentType == ctRelation) {
        if (!confirm(QStringLiteral("This concept is a relation. Its inverse relation will also "
                                    "be deleted. Proceed?")))
            return std::nullopt;
        editor.rsInverses.Seek(u"=", identifier);
        if (!editor.rsInverses.NoMatch())
            deleted.Inverse = editor.rsInverses.Value(u"Inverse").toString();
    }
    // The top concept is refused only once the user has said yes.
    if (editor.CurrentType == ctTop) {
        UI().MsgBox(QStringLiteral("This is the top-level concept.") + kLineBreak +
                    QStringLiteral("It cannot be deleted."));
        return std::nullopt;
    }

    Recordset rs = p.OntoDB.OpenRecordset(QStringLiteral("CONCEPTS"), dbOpenDynaset);
    for (const QString &gone : {deleted.Identifier, deleted.Inverse}) {
        if (gone.isEmpty())
            continue;
        rs.FindFirst(QStringLiteral("Concept = ") + Quoted(gone));
        if (rs.NoMatch())
            continue;
        rs.Delete(); // the store's cascades take every row that names it
        rs.Requery();
    }
    return deleted;
}

void DeleteOrphanConcepts(const std::function<void(const QString &)> &deleted)
{
    const QString query =
        QStringLiteral("SELECT DISTINCTROW CONCEPTS.Concept AS Conseto, ") +
        QStringLiteral("CONCEPTS.Definition, CONCEPTS.Type ") +
        QStringLiteral("FROM CONCEPTS LEFT JOIN ISA ON CONCEPTS.Concept = "
                       "ISA.Concept ") +
        QStringLiteral("WHERE ((CONCEPTS.Type <> 100) AND (ISA.Concept Is Null))");
    // Each pass may leave the children of what it deleted without a parent.
    for (;;) {
        Recordset rs = Process().OntoDB.OpenRecordset(query, dbOpenDynaset);
        if (rs.Eof())
            return;
        rs.MoveLast();
        rs.MoveFirst();
        for (; !rs.Eof(); rs.MoveNext()) {
            const QString orphan = rs.Value(u"Conseto").toString();
            rs.Delete();
            deleted(orphan);
        }
    }
}

} // namespace lx
