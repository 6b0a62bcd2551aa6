#include "ontology/store/lifecycle.h"

#include "core/file_steps.h"
#include "core/interaction.h"
#include "core/process.h"
#include "core/store/database.h"
#include "core/store/errors.h"
#include "core/store/types.h"
#include "ontology/store/concept_list.h"
#include "ontology/store/lookups.h"
#include "ontology/store/schema.h"

#include <QDir>
#include <QFileInfo>

#include <exception>

namespace lx {

using namespace store;

namespace {

constexpr qsizetype MaxNameLength = 25; // the room of MetaData.Name

// Field reads that fail on Null, as a Null read into a typed variable does.
QString TextOf(const Recordset &rs, QStringView name)
{
    return rs.Fields(name).Text();
}

QVariant NotNull(const Recordset &rs, QStringView name)
{
    const QVariant value = rs.Value(name);
    if (value.isNull())
        throw StoreError::make(err::InvalidUseOfNull);
    return value;
}

quint8 ByteOf(const Recordset &rs, QStringView name)
{
    return quint8(NotNull(rs, name).toInt());
}

void ReadMetaData(Database &db, OntoMetaData &meta)
{
    Recordset rs = db.OpenRecordset(QStringLiteral("MetaData"), dbOpenTable);
    if (rs.RecordCount() > 0) {
        rs.MoveFirst();
        meta.Name = TextOf(rs, u"Name");
        meta.Created = NotNull(rs, u"Created").toDateTime();
        meta.Modified = NotNull(rs, u"Modified").toDateTime();
        meta.Owner = TextOf(rs, u"Owner");
        meta.Author = TextOf(rs, u"Author");
        meta.Description = TextOf(rs, u"Description");
        meta.Contact = TextOf(rs, u"Contact");
        meta.ListTop = ByteOf(rs, u"ListTop");
        meta.DefLang = TextOf(rs, u"DefLang");
        meta.Naming = NotNull(rs, u"Naming").toBool();
        meta.AutoName = ByteOf(rs, u"AutoName");
        meta.MaxParents = ByteOf(rs, u"MaxParents");
        meta.ActiveSet = ByteOf(rs, u"ActiveSet");
    }
    rs.Close();
}

// The row of a new ontology: the dialog's texts and the defaults.
void AddMetaDataRow(Database &db, const PropertiesTexts &texts)
{
    const QDateTime now = QDateTime::currentDateTime();
    Recordset rs = db.OpenRecordset(QStringLiteral("MetaData"), dbOpenTable);
    rs.AddNew();
    rs.Collect(u"Name", texts.Name);
    rs.Collect(u"Created", now);
    rs.Collect(u"Modified", now);
    rs.Collect(u"Owner", texts.Owner);
    rs.Collect(u"Author", texts.Author);
    rs.Collect(u"Contact", texts.Contact);
    rs.Collect(u"Description", texts.Description);
    rs.Collect(u"MaxParents", 2);
    rs.Collect(u"ListTop", 0);
    rs.Collect(u"DefLang", QStringLiteral("en"));
    rs.Collect(u"Naming", true);
    rs.Collect(u"AutoName", 0);
    rs.Collect(u"ActiveSet", 1);
    rs.Update();
    rs.Close();
}

// The last MetaData row takes OntoMeta back, Modified being the time of closing. Each
// statement on its own: a file without the table or the row loses nothing else of the close.
void WriteMetaDataAtClose(Database &db, const OntoMetaData &meta)
{
    Recordset rs;
    IgnoreErrors(
        [&] { rs = db.OpenRecordset(QStringLiteral("SELECT * FROM MetaData"), dbOpenDynaset); });
    IgnoreErrors([&] { rs.MoveLast(); });
    IgnoreErrors([&] { rs.Edit(); });
    const std::pair<QStringView, QVariant> fields[] = {
        {u"Name", meta.Name},
        {u"Created", meta.Created},
        {u"Modified", QDateTime::currentDateTime()},
        {u"Owner", meta.Owner},
        {u"Author", meta.Author},
        {u"Description", meta.Description},
        {u"Contact", meta.Contact},
        {u"ListTop", meta.ListTop},
        {u"DefLang", meta.DefLang},
        {u"Naming", meta.Naming},
        {u"AutoName", meta.AutoName},
        {u"MaxParents", meta.MaxParents},
        {u"ActiveSet", meta.ActiveSet},
    };
    for (const auto &[name, value] : fields)
        IgnoreErrors([&] { rs.Collect(name, value); });
    IgnoreErrors([&] { rs.Update(); });
    IgnoreErrors([&] { rs.Close(); });
}

void CloseOntologySteps(OntologyEditor &editor, QString &path, bool writeMetaData);

// The name of the open ontology in the window's caption; a file open read-only says so there.
QString OntologyCaption(const OntologyEditor &editor)
{
    const ProcessState &p = Process();
    QString caption = editor.BaseCaption + QStringLiteral(" - ") + p.OntoMeta.Name;
    if (p.OntoDB.isOpen() && !p.OntoDB.Updatable())
        caption += QStringLiteral(" (read-only)");
    return caption;
}

void ReportOpenError(const StoreError &error, const QString &path)
{
    if (error.number() == err::UnrecognizedFormat || error.number() == err::ObjectNotFound)
        UI().MsgBox(QStringLiteral("Not an Lexarbor ontology - ") + path, msg::Critical,
                    QStringLiteral("Error"));
    else
        UI().MsgBox(QStringLiteral("Open Error"), msg::Critical, QStringLiteral("Error"));
}

// The steps of a new ontology from the save dialog on; the store's errors go to the caller.
void CreateOntology(OntologyEditor &editor, const QString &file)
{
    ProcessState &p = Process();
    // A seed that can't be read would stop the copy half-way, with the new file made.
    if (const std::optional<QString> problem = SeedFileProblem()) {
        UI().MsgBox(*problem, msg::Critical, QStringLiteral("Error"));
        return;
    }
    p.OntoPath = file;
    p.OntoFolder = FolderOf(file);
    CreateOntologySchema(p.OntoPath); // OntoDB is open from here

    const QString now = DateToText(QDateTime::currentDateTime());
    PropertiesTexts texts;
    texts.Created = now;
    texts.Modified = now;
    texts = editor.ShowProperties(texts);
    const QString name = texts.Name;
    AddMetaDataRow(p.OntoDB, texts);

    CreateFolderIfMissing(p.OntoFolder + name + QStringLiteral("-publish"));
    p.OntoDB.Close();
    UI().MsgBox(QStringLiteral("Ontology ") + p.Quote + name + p.Quote +
                    QStringLiteral(" has been created!"),
                msg::Information);
    OpenOntology(editor, p.OntoPath);
}

} // namespace

void NewOntology(OntologyEditor &editor)
{
    ProcessState &p = Process();
    // The open ontology goes first, so a cancel below leaves none open.
    if (!p.OntoPath.isEmpty())
        CloseOntology(editor, p.OntoPath);
    try {
        FileDialogRequest request;
        request.title = QStringLiteral("New Ontology");
        request.filter = QStringLiteral("Ontology Files (*.ont)|*.ont|");
        request.filterIndex = 1;
        request.defaultExt = QStringLiteral("ont");
        request.initialDir = OntologiesFolder();
        const std::optional<QString> file = UI().GetSaveFileName(request);
        if (!file)
            return; // cancelled: nothing is said
        if (RefuseDoubleQuotedPath(*file))
            return;
        CreateOntology(editor, *file);
    } catch (const StoreError &error) {
        if (error.number() == err::DatabaseExists) {
            p.OntoPath.clear();
            UI().MsgBox(QStringLiteral("Ontology exists already!"));
            return;
        }
        UI().MsgBox(error.description());
    }
}

void OpenOntologyByDialog(OntologyEditor &editor)
{
    ProcessState &p = Process();
    if (!p.OntoPath.isEmpty())
        CloseOntology(editor, p.OntoPath);
    if (!p.OntoPath.isEmpty())
        return;
    try {
        FileDialogRequest request;
        request.title = QStringLiteral("Open Ontology");
        request.filter = QStringLiteral("Ontology Files (*.ont)|*.ont|") +
                         QStringLiteral("All files (*.*)|*.*|");
        request.filterIndex = 1;
        request.initialDir = OntologiesFolder();
        const std::optional<QString> file = UI().GetOpenFileName(request);
        if (!file || RefuseDoubleQuotedPath(*file))
            return;
        p.OntoPath = *file;
        p.OntoFolder = FolderOf(*file);
        OpenOntology(editor, p.OntoPath);
        // Also after a failed open: OntoFolder is empty then, so the folder is looked for
        // relative to the working directory, under whatever name OntoMeta still holds.
        CreateFolderIfMissing(PublishFolder());
    } catch (const StoreError &error) {
        UI().MsgBox(error.description());
    }
}

void OpenDroppedOntology(OntologyEditor &editor, const QStringList &files)
{
    // No close of an open ontology first, OntoFolder stays as it is and the publish folder
    // isn't looked at: the old handle is simply replaced.
    if (files.isEmpty() || RefuseDoubleQuotedPath(files.first()))
        return;
    ProcessState &p = Process();
    p.OntoPath = files.first();
    OpenOntology(editor, p.OntoPath);
}

void EditOntologyProperties(OntologyEditor &editor)
{
    const ProcessState &p = Process();
    OntoMetaData &meta = Process().OntoMeta;
    const PropertiesTexts shown = PropertiesTextsOf(meta);
    const PropertiesTexts texts = editor.ShowProperties(shown);
    if (!texts.Name.isEmpty() && texts != shown && !p.OntoDB.Updatable()) {
        // They would reach the file at close, which can't be written.
        UI().MsgBox(ReadOnlyFileError(p.OntoPath).description(), msg::Exclamation);
    } else if (!texts.Name.isEmpty()) {
        // Memory only: CloseOntology writes them, with Modified as the time of closing.
        meta.Name = texts.Name;
        meta.Author = texts.Author;
        meta.Contact = texts.Contact;
        meta.Created = TextToDate(texts.Created);
        meta.Description = texts.Description;
        meta.Modified = TextToDate(texts.Modified);
        meta.Owner = texts.Owner;
    }
    editor.SetCaption(OntologyCaption(editor));
}

void OpenOntology(OntologyEditor &editor, QString &path)
{
    ProcessState &p = Process();
    editor.SetWindowPointer(pointer::Hourglass);
    try {
        p.OntoDB = DBEngine::OpenDatabase(path);
        ReadMetaData(p.OntoDB, p.OntoMeta);
        p.OntoMeta.Modified = QDateTime::currentDateTime();
        editor.TotalConcepts = CountConcepts();
        InitRSListConcepts(editor);
        editor.UpdateStatusCounts();
        editor.rsInverses = p.OntoDB.OpenRecordset(QStringLiteral("INVERSES"), dbOpenTable);
        editor.rsInverses.SetIndex(QStringLiteral("Relation"));
        p.rsInherit = p.OntoDB.OpenRecordset(QStringLiteral("Inherit"), dbOpenTable);
        p.rsInherit.SetIndex(QStringLiteral("Attr"));
        // The view still shows the list's first concept; CurrentConcept names the top concept
        // until the user picks one.
        p.TopConcept = GetTopConcept();
        editor.CurrentConcept = p.TopConcept;
        editor.BindConceptList(QStringLiteral("Concept"));
        editor.SetCaption(OntologyCaption(editor));
        editor.EnableOntologyCommands();
        editor.UpdateStatusCounts();
        editor.SetWindowPointer(pointer::Arrow);
    } catch (const StoreError &error) {
        ReportOpenError(error, path);
        // A file that failed to open is not written to: its MetaData stays as it was.
        CloseOntologySteps(editor, path, false);
        editor.SetWindowPointer(pointer::Arrow);
    }
}

void CloseOntology(OntologyEditor &editor, QString &path)
{
    CloseOntologySteps(editor, path, Process().OntoDB.Updatable());
}

namespace {

void CloseOntologySteps(OntologyEditor &editor, QString &path, bool writeMetaData)
{
    ProcessState &p = Process();
    IgnoreErrors([&] { editor.UnloadOtherWindows(); });
    if (writeMetaData)
        WriteMetaDataAtClose(p.OntoDB, p.OntoMeta);
    IgnoreErrors([&] { editor.rsList.Close(); });
    IgnoreErrors([&] { p.rsInherit.Close(); });
    IgnoreErrors([&] { editor.BindConceptList(QString()); });
    IgnoreErrors([&] { editor.ClearConceptView(); });
    IgnoreErrors([&] { p.OntoDB.Close(); });
    editor.CurrentConcept.clear();
    editor.CurrentType = 0;
    path.clear();
    editor.TotalConcepts = 0;
    editor.ListedConcepts = 0;
    p.OntoFolder.clear();
    editor.SetCaption(editor.BaseCaption);
    // rsInverses stays: the next open replaces it.
    editor.DisableOntologyCommands();
    editor.UpdateStatusCounts();
}

} // namespace

std::optional<QString> CheckPropertiesName(const QString &name)
{
    if (name.isEmpty())
        return QStringLiteral("You MUST specify a name.");
    if (name.size() > MaxNameLength)
        return QStringLiteral("A maximum of 25 characters") + QStringLiteral("\r\n") +
               QStringLiteral("is allowed for the name");
    return std::nullopt;
}

QString PublishFolder()
{
    const ProcessState &p = Process();
    return p.OntoFolder + p.OntoMeta.Name + QStringLiteral("-publish");
}

} // namespace lx
