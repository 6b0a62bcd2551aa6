#include "ontology/edit/links.h"

#include "core/file_steps.h"
#include "core/interaction.h"
#include "core/process.h"
#include "core/store/database.h"
#include "core/store/errors.h"
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
        request.title = QStringLiteral("Find TermBase");
        request.filter = QStringLiteral("Termbase Files (*.ltb)|*.ltb|") +
                         QStringLiteral("All files (*.*)|*.*|");
        request.filterIndex = 1;
        request.initialDir = TermBasesFolder();
        const std::optional<QString> file = UI().GetOpenFileName(request);
        if (!file)
            break; // a cancelled dialog ends the check
        if (file->isEmpty() || RefuseDoubleQuotedPath(*file)) {
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

namespace {

// Tells the progress of a stage now and then: a bar doesn't need every row.
class StageCounter {
public:
    StageCounter(const AssignProgress &progress, qint64 total)
        : m_progress(progress), m_total(total)
    {
        m_progress.count(0, m_total);
    }
    void step()
    {
        if (++m_done % 512 == 0)
            m_progress.count(m_done, m_total);
    }
    ~StageCounter() { m_progress.count(m_done, m_total); }

    StageCounter(const StageCounter &) = delete;
    StageCounter &operator=(const StageCounter &) = delete;

private:
    const AssignProgress &m_progress;
    qint64 m_total;
    qint64 m_done = 0;
};

// The termbase's concepts that no concept of the ontology matches, in the termbase's order.
QStringList UnmatchedConcepts(Recordset &tbConcepts, Recordset &ontoConcepts,
                              const AssignProgress &progress)
{
    const QString &quote = Process().Quote;
    QStringList unmatched;
    StageCounter counter(progress, tbConcepts.RecordCount());
    if (tbConcepts.RecordCount() > 0)
        tbConcepts.MoveFirst();
    for (; !tbConcepts.Eof(); tbConcepts.MoveNext()) {
        const QString identifier = tbConcepts.Value(u"Concept").toString();
        // No concept of the ontology holds a double quote; criteria with one would match others.
        bool found = false;
        if (!identifier.contains(QLatin1Char('"'))) {
            ontoConcepts.FindFirst(QStringLiteral("Concept = ") + quote + identifier + quote);
            found = !ontoConcepts.NoMatch();
        }
        if (!found)
            unmatched.append(identifier);
        counter.step();
    }
    return unmatched;
}

bool ConfirmDeletingUnmatched(qsizetype count, const QString &path)
{
    return UI().MsgBox(QString::number(count) + QStringLiteral(" concepts used in ") + path +
                           QStringLiteral(" didn't match any concept in ") + Process().OntoPath +
                           QStringLiteral(". If you proceed these concepts will be deleted "
                                          "from your termbase."),
                       msg::YesNo) != msg::No;
}

void DeleteUnmatched(Recordset &tbConcepts, const QStringList &unmatched,
                     const AssignProgress &progress)
{
    StageCounter counter(progress, unmatched.size());
    for (const QString &identifier : unmatched) {
        tbConcepts.Seek(u"=", identifier);
        if (!tbConcepts.NoMatch())
            tbConcepts.Delete();
        counter.step();
    }
}

// Adds to the termbase every concept of the ontology it lacks; returns how many.
long AddMissingConcepts(Recordset &tbConcepts, Recordset &ontoConcepts,
                        const AssignProgress &progress)
{
    long added = 0;
    StageCounter counter(progress, ontoConcepts.RecordCount());
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
        counter.step();
    }
    return added;
}

void MarkWorkingOntology(Database &termbase)
{
    Recordset meta = termbase.OpenRecordset(QStringLiteral("MetaData"), dbOpenTable);
    meta.MoveFirst();
    meta.Edit();
    meta.Collect(u"Modified", QDateTime::currentDateTime());
    meta.Collect(u"Ontology", Process().OntoPath);
    meta.Update();
    meta.Close();
}

void AddLink(const QString &path)
{
    Recordset links = Process().OntoDB.OpenRecordset(QStringLiteral("TermBases"), dbOpenTable);
    links.AddNew();
    links.Collect(u"DBName", path);
    links.Update();
    links.Close();
}

} // namespace

bool AssignTermbase(const QString &path, const AssignProgress &progress)
{
    ProcessState &p = Process();
    if (RefuseDoubleQuotedPath(path))
        return false;
    // Both files are written, the ontology last: a file that can't be is found out before
    // anything changes.
    if (!p.OntoDB.Updatable()) {
        UI().MsgBox(ReadOnlyFileError(p.OntoPath).description(), msg::Exclamation);
        return false;
    }
    Database termbase = DBEngine::OpenDatabase(path);
    if (!termbase.Updatable()) {
        termbase.Close();
        UI().MsgBox(ReadOnlyFileError(path).description(), msg::Exclamation);
        return false;
    }
    Recordset tbConcepts = termbase.OpenRecordset(QStringLiteral("CONCEPTS"), dbOpenTable);
    tbConcepts.SetIndex(QStringLiteral("Concept"));
    Recordset ontoConcepts =
        p.OntoDB.OpenRecordset(QStringLiteral("SELECT * FROM CONCEPTS"), dbOpenDynaset);
    progress.status(QStringLiteral("Checking consistency..."));
    const QStringList unmatched = UnmatchedConcepts(tbConcepts, ontoConcepts, progress);
    if (!unmatched.isEmpty()) {
        if (!ConfirmDeletingUnmatched(unmatched.size(), path)) {
            ontoConcepts.Close();
            tbConcepts.Close();
            termbase.Close();
            return false;
        }
        progress.status(QStringLiteral("Deleting unmatched..."));
        DeleteUnmatched(tbConcepts, unmatched, progress);
    }
    progress.status(QStringLiteral("Adding concepts..."));
    const long added = AddMissingConcepts(tbConcepts, ontoConcepts, progress);
    MarkWorkingOntology(termbase);
    AddLink(path);
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

QStringList ReadTermBaseLinks()
{
    QStringList paths;
    Recordset links = Process().OntoDB.OpenRecordset(QStringLiteral("TermBases"), dbOpenTable);
    for (; !links.Eof(); links.MoveNext())
        paths.append(links.Value(u"DBName").toString());
    links.Close();
    return paths;
}

void ReleaseTermbase(const QString &path)
{
    ProcessState &p = Process();
    if (!p.OntoDB.Updatable()) {
        UI().MsgBox(ReadOnlyFileError(p.OntoPath).description(), msg::Exclamation);
        return;
    }
    Recordset links =
        p.OntoDB.OpenRecordset(QStringLiteral("SELECT * FROM TermBases"), dbOpenDynaset);
    if (path.contains(QLatin1Char('"'))) {
        // A link made before such paths were refused: criteria can't hold it, so the rows are
        // compared one by one, as the store compares text.
        while (!links.Eof() &&
               links.Value(u"DBName").toString().compare(path, Qt::CaseInsensitive) != 0)
            links.MoveNext();
        if (!links.Eof())
            links.Delete();
    } else {
        links.FindFirst(QStringLiteral("DBName = ") + p.Quote + path + p.Quote);
        if (!links.NoMatch()) {
            links.Edit();
            links.Delete();
        }
    }
    links.Close();
}

} // namespace lx
