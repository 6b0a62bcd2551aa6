#include "ontology/edit/notes.h"

#include "core/process.h"
#include "core/store/database.h"
#include "core/store/recordset.h"
#include "core/store/types.h"

namespace lx {

using namespace lx::store;

namespace {

Recordset OpenNotes()
{
    Recordset rs = Process().OntoDB.OpenRecordset(QStringLiteral("Notes"), dbOpenTable);
    rs.SetIndex(QStringLiteral("Concept"));
    return rs;
}

} // namespace

NoteOutcome EditNote(const QString &identifier, const NoteDialog &dialog)
{
    if (identifier.isEmpty())
        return NoteOutcome::Unchanged;
    Recordset rs = OpenNotes();
    rs.Seek(u"=", identifier);
    const QString caption = QStringLiteral("Note - ") + identifier;
    NoteOutcome outcome = NoteOutcome::Unchanged;
    if (rs.NoMatch()) {
        const QString text = dialog(caption, QString());
        if (text != NoteCancelText) {
            // An emptied box is stored as an empty note here: there is nothing to delete.
            rs.AddNew();
            rs.Collect(u"Concept", identifier);
            rs.Collect(u"Note", text);
            rs.Collect(u"Date", QDateTime::currentDateTime());
            rs.Update();
            outcome = NoteOutcome::Added;
        }
    } else {
        const QString text = dialog(caption, rs.Fields(u"Note").Value().toString());
        if (text.isEmpty()) {
            rs.Edit();
            rs.Delete();
            outcome = NoteOutcome::Deleted;
        } else if (text != NoteCancelText) {
            rs.Edit();
            rs.Collect(u"Note", text);
            rs.Collect(u"Date", QDateTime::currentDateTime());
            rs.Update();
            outcome = NoteOutcome::Saved;
        }
    }
    rs.Close();
    return outcome;
}

QList<NoteListRow> ReadNotes()
{
    QList<NoteListRow> rows;
    Recordset rs = OpenNotes();
    if (rs.RecordCount() > 0)
        rs.MoveFirst();
    for (; !rs.Eof(); rs.MoveNext())
        rows.append({rs.Value(u"Concept").toString(), rs.Value(u"Date"), rs.Value(u"Note")});
    rs.Close();
    return rows;
}

void DeleteNotes(const QStringList &concepts)
{
    Recordset rs = OpenNotes();
    for (const QString &identifier : concepts) {
        rs.Seek(u"=", identifier);
        if (!rs.NoMatch())
            rs.Delete();
    }
    rs.Close();
}

} // namespace lx
