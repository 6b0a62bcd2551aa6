#include "ontology/edit/links.h"

#include "core/interaction.h"
#include "core/process.h"
#include "core/store/database.h"
#include "core/store/recordset.h"
#include "core/store/types.h"

#include <QDateTime>
#include <QFileInfo>
#include <QStringList>

#include <optional>

namespace lx {

using namespace lx::store;

namespace {

void DropLink(Recordset &links)
{
    UI().MsgBox(QStringLiteral("Link will be deleted. You can link databases from the ") +
                Process().Quote + QStringLiteral("Options dialog box") + Process().Quote);
    links.Delete();
}

} // namespace

void CheckTermBaseLinks()
{
    Recordset links = Process().OntoDB.OpenRecordset(QStringLiteral("TermBases"), dbOpenTable);
    for (; !links.Eof(); links.MoveNext()) {
        const QString path = links.Value(u"DBName").toString();
        if (QFileInfo(path).isFile())
            continue;
        if (UI().MsgBox(QStringLiteral("TermBase ") + path +
                            QStringLiteral(" can't be found. Do you want to find it?"),
                        msg::YesNo) == msg::No) {
            DropLink(links);
            continue;
        }
        FileDialogRequest request;
        request.filter = QStringLiteral("Termbase Files (*.ltb)|*.ltb|") +
                         QStringLiteral("All files (*.*)|*.*|");
        request.filterIndex = 1;
        request.initialDir = TermBasesFolder();
        const std::optional<QString> file = UI().GetOpenFileName(request);
        if (!file)
            break; // a cancelled dialog ends the check
        if (file->isEmpty()) {
            DropLink(links);
            continue;
        }
        links.Edit();
        links.Collect(u"DBName", *file);
        links.Update();
    }
    links.Close();
}

bool PropagateConceptToTermBases(const QString &newId, const QString &oldId, int operation)
{
    CheckTermBaseLinks();
    Recordset links = Process().OntoDB.OpenRecordset(QStringLiteral("TermBases"), dbOpenTable);
    if (links.Eof()) {
        links.Close();
        return false;
    }
    for (; !links.Eof(); links.MoveNext()) {
        Database termbase = DBEngine::OpenDatabase(links.Value(u"DBName").toString());
        Recordset concepts = termbase.OpenRecordset(QStringLiteral("CONCEPTS"), dbOpenTable);
        concepts.SetIndex(QStringLiteral("Concept"));
        if (operation == opAddConcept) {
            concepts.Seek(u"=", newId);
            if (concepts.NoMatch()) {
                concepts.AddNew();
                concepts.Collect(u"Concept", newId);
                concepts.Update();
            }
        } else if (operation == opDeleteConcept) {
            concepts.Seek(u"=", oldId);
            if (!concepts.NoMatch())
                concepts.Delete();
        } else {
            concepts.Seek(u"=", oldId);
            if (!concepts.NoMatch()) {
                concepts.Edit();
                concepts.Collect(u"Concept", newId);
                concepts.Update();
            }
        }
        concepts.Close();
        termbase.Close();
    }
    links.Close();
    return true;
}

bool AssignTermbase(const QString &path, const std::function<void(const QString &)> &status)
{
    ProcessState &p = Process();
    Database termbase = DBEngine::OpenDatabase(path);
    Recordset tbConcepts = termbase.OpenRecordset(QStringLiteral("CONCEPTS"), dbOpenTable);
    tbConcepts.SetIndex(QStringLiteral("Concept"));
    Recordset ontoConcepts =
        p.OntoDB.OpenRecordset(QStringLiteral("SELECT * FROM CONCEPTS"), dbOpenDynaset);
    status(QStringLiteral("Checking consistency..."));
    QStringList unmatched;
    if (tbConcepts.RecordCount() > 0)
        tbConcepts.MoveFirst();
    for (; !tbConcepts.Eof(); tbConcepts.MoveNext()) {
        const QString identifier = tbConcepts.Value(u"Concept").toString();
        ontoConcepts.FindFirst(QStringLiteral("Concept = ") + p.Quote + identifier + p.Quote);
        if (ontoConcepts.NoMatch())
            unmatched.append(identifier);
    }
    if (!unmatched.isEmpty()) {
        if (UI().MsgBox(QString::number(unmatched.size()) + QStringLiteral(" concepts used in ") +
                            path + QStringLiteral(" didn't match any concept in ") + p.OntoPath +
                            QStringLiteral(". If you proceed these concepts will be deleted "
                                           "from your termbase."),
                        msg::YesNo) == msg::No) {
            ontoConcepts.Close();
            tbConcepts.Close();
            termbase.Close();
            return false;
        }
        status(QStringLiteral("Deleting unmatched..."));
        for (const QString &identifier : std::as_const(unmatched)) {
            tbConcepts.Seek(u"=", identifier);
            if (!tbConcepts.NoMatch())
                tbConcepts.Delete();
        }
    }
    status(QStringLiteral("Adding concepts..."));
    long added = 0;
    if (ontoConcepts.RecordCount() > 0)
        ontoConcepts.MoveFirst();
    for (; !ontoConcepts.Eof(); ontoConcepts.MoveNext()) {
        const QString identifier = ontoConcepts.Value(u"Concept").toString();
        tbConcepts.Seek(u"=", identifier);
        if (tbConcepts.NoMatch()) {
            tbConcepts.AddNew();
            tbConcepts.Collect(u"Concept", identifier);
            tbConcepts.Update();
            ++added;
        }
    }
    Recordset meta = termbase.OpenRecordset(QStringLiteral("MetaData"), dbOpenTable);
    meta.MoveFirst();
    meta.Edit();
    meta.Collect(u"Modified", QDateTime::currentDateTime());
    meta.Collect(u"Ontology", p.OntoPath);
    meta.Update();
    meta.Close();
    Recordset links = p.OntoDB.OpenRecordset(QStringLiteral("TermBases"), dbOpenTable);
    links.AddNew();
    links.Collect(u"DBName", path);
    links.Update();
    links.Close();
    ontoConcepts.Close();
    tbConcepts.Close();
    termbase.Close();
    if (added > 0)
        UI().MsgBox(QString::number(added) + QStringLiteral(" concepts were added to ") + path +
                        QStringLiteral(" in order to make it ") +
                        QStringLiteral("consistent with ") + p.OntoPath + QStringLiteral("."),
                    msg::Information);
    return true;
}

void ReleaseTermbase(const QString &path)
{
    Recordset links =
        Process().OntoDB.OpenRecordset(QStringLiteral("SELECT * FROM TermBases"), dbOpenDynaset);
    links.FindFirst(QStringLiteral("DBName = ") + Process().Quote + path + Process().Quote);
    if (!links.NoMatch()) {
        links.Edit();
        links.Delete();
    }
    links.Close();
}

} // namespace lx
