#include "ontology/edit/links.h"

#include "core/interaction.h"
#include "core/process.h"
#include "core/store/database.h"
#include "core/store/recordset.h"
#include "core/store/types.h"

#include <QFileInfo>

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

} // namespace lx
