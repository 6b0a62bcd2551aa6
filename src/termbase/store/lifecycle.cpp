#include "termbase/store/lifecycle.h"

#include "core/file_steps.h"
#include "core/interaction.h"
#include "core/process.h"
#include "core/store/database.h"
#include "core/store/errors.h"
#include "core/store/types.h"
#include "termbase/store/schema.h"

#include <QDir>
#include <QFileInfo>

#include <exception>
#include <optional>

namespace lx {

using namespace store;

namespace {

const QString LineBreak = QStringLiteral("\r\n");

// The sibling folders; a folder that can't be made is passed over (error 75 goes on).
void CreateSiblingFolders(const QString &name)
{
    IgnoreErrors([&] { CreateFolderIfMissing(TermbasePublishFolder(name)); });
    IgnoreErrors([&] { CreateFolderIfMissing(TermbaseBackFolder(name)); });
}

qint32 CountRows(Database &db, const QString &sql)
{
    Recordset rs = db.OpenRecordset(sql, dbOpenSnapshot);
    qint32 count = 0;
    if (rs.RecordCount() > 0) {
        rs.MoveLast();
        count = qint32(rs.RecordCount());
    }
    rs.Close();
    return count;
}

void ReadTermMetaData(Database &db, TermMetaData &meta)
{
    Recordset rs = db.OpenRecordset(QStringLiteral("MetaData"), dbOpenTable);
    if (rs.RecordCount() > 0) {
        rs.MoveFirst();
        meta.Name = rs.Value(u"Name").toString();
        meta.Created = rs.Value(u"Created").toDateTime();
        meta.Modified = rs.Value(u"Modified").toDateTime();
        meta.Owner = rs.Value(u"Owner").toString();
        meta.Author = rs.Value(u"Author").toString();
        meta.Description = rs.Value(u"Description").toString();
        meta.Contact = rs.Value(u"Contact").toString();
        meta.Ontology = rs.Value(u"Ontology").toString();
        meta.DCLang = rs.Value(u"DCLang").toString();
        meta.CSBrowser = rs.Value(u"CSBrowser").toBool(); // Null in a new file: false
        meta.DCList = rs.Value(u"DCList").toString();
    }
    rs.Close();
}

// The row of a new termbase, in the order of the table.
void AddMetaDataRow(Database &db, const PropertiesTexts &texts)
{
    const QDateTime now = QDateTime::currentDateTime();
    Recordset rs = db.OpenRecordset(QStringLiteral("MetaData"), dbOpenTable);
    rs.AddNew();
    rs.Collect(u"Name", Process().TermName);
    rs.Collect(u"Created", now);
    rs.Collect(u"Modified", now);
    rs.Collect(u"Owner", texts.Owner);
    rs.Collect(u"Author", texts.Author);
    rs.Collect(u"Contact", texts.Contact);
    rs.Collect(u"Description", texts.Description);
    rs.Collect(u"Ontology", Process().OntoPath);
    rs.Collect(u"DCLang", QStringLiteral("en"));
    rs.Collect(u"DCList", QStringLiteral("tree"));
    rs.Update();
    rs.Close();
}

// The last MetaData row takes TermMeta back, each field emptied in memory once written.
// Ontology stays as it is on disk.
void WriteMetaDataAtClose(Database &db, TermMetaData &meta)
{
    if (!db.Updatable()) {
        // Open read-only, or closed after a failed open: the file is left as it was.
        meta = TermMetaData{};
        return;
    }
    Recordset rs;
    IgnoreErrors(
        [&] { rs = db.OpenRecordset(QStringLiteral("SELECT * FROM MetaData"), dbOpenDynaset); });
    IgnoreErrors([&] { rs.MoveLast(); });
    IgnoreErrors([&] { rs.Edit(); });
    auto write = [&](QStringView field, const QVariant &value) {
        IgnoreErrors([&] { rs.Collect(field, value); });
    };
    write(u"Name", std::exchange(meta.Name, {}));
    write(u"Created", std::exchange(meta.Created, {}));
    write(u"Modified", QDateTime::currentDateTime());
    meta.Modified = {};
    write(u"Owner", std::exchange(meta.Owner, {}));
    write(u"Author", std::exchange(meta.Author, {}));
    write(u"Description", std::exchange(meta.Description, {}));
    write(u"Contact", std::exchange(meta.Contact, {}));
    write(u"DCLang", std::exchange(meta.DCLang, {}));
    write(u"DCList", std::exchange(meta.DCList, {}));
    write(u"CSBrowser", std::exchange(meta.CSBrowser, false));
    IgnoreErrors([&] { rs.Update(); });
    IgnoreErrors([&] { rs.Close(); });
}

// The tables that the editor keeps open for lookups by element, and the highest element number.
void OpenTermbaseRecordsets(TermbaseEditor &editor)
{
    ProcessState &p = Process();
    auto byElement = [&](const char *table) {
        Recordset rs = p.TermDB.OpenRecordset(QString::fromLatin1(table), dbOpenTable);
        rs.SetIndex(QStringLiteral("elemID"));
        return rs;
    };
    p.rsElements = byElement("elements");
    p.rsElemLang = byElement("elements_use_lang");
    p.rsTextValues = byElement("text_values");
    p.rsPointers = byElement("pointers");
    p.rsRefValues = byElement("ref_values");
    p.rsTEConcepts = byElement("TE_CONCEPTS");
    p.rsTerms = byElement("TERMS");
    editor.LastElemID = 0;
    if (p.rsElements.RecordCount() > 0) {
        p.rsElements.MoveLast();
        editor.LastElemID = p.rsElements.Value(u"elemID").toInt();
    }
}

void CloseTermbaseRecordsets()
{
    ProcessState &p = Process();
    for (Recordset *rs : {&p.rsElements, &p.rsDatCats, &p.rsElemLang, &p.rsTextValues,
                          &p.rsPointers, &p.rsRefValues, &p.rsTEConcepts, &p.rsTerms})
        IgnoreErrors([&] { rs->Close(); });
    p.DataCats.clear();
}

// The name of the open termbase in the editor's caption; a file open read-only says so there.
QString TermbaseCaption(const TermbaseEditor &editor)
{
    const ProcessState &p = Process();
    QString caption = editor.BaseCaption + QStringLiteral(" - ") + p.TermMeta.Name;
    if (p.TermDB.isOpen() && !p.TermDB.Updatable())
        caption += QStringLiteral(" (read-only)");
    return caption;
}

void ReportOpenError(const StoreError &error, const QString &path)
{
    if (error.number() == err::UnrecognizedFormat || error.number() == err::ObjectNotFound)
        UI().MsgBox(QStringLiteral("Not an Lexarbor termbase - ") + path, msg::OKOnly,
                    QStringLiteral("Error"));
    else
        UI().MsgBox(QStringLiteral("Error ") + QString::number(error.number()) +
                        QStringLiteral(" - ") + error.description(),
                    msg::OKOnly, QStringLiteral("Error"));
}

// The steps of a new termbase after the folder check; the store's errors go to the caller.
void CreateTermbase(TermbaseEditor &editor)
{
    ProcessState &p = Process();
    CreateTermbaseSchema(p.TermPath);

    const QString now = DateToText(QDateTime::currentDateTime());
    PropertiesTexts texts;
    texts.Created = now;
    texts.Modified = now;
    texts = editor.ShowNewTermbaseProperties(texts, p.OntoPath);
    p.TermName = texts.Name;
    p.TermDB = DBEngine::OpenDatabase(p.TermPath);
    AddMetaDataRow(p.TermDB, texts);
    CreateSiblingFolders(p.TermName);

    // The ontology knows its termbases from the start.
    Recordset links = p.OntoDB.OpenRecordset(QStringLiteral("TermBases"), dbOpenTable);
    links.AddNew();
    links.Collect(u"DBName", p.TermPath);
    links.Update();
    links.Close();

    p.TermDB.Close();
    UI().MsgBox(QStringLiteral("TermBase ") + p.Quote + p.TermName + p.Quote +
                    QStringLiteral(" has been created!"),
                msg::Information);
    OpenTermbase(editor, p.TermPath);
}

} // namespace

void NewTermbase(TermbaseEditor &editor)
{
    ProcessState &p = Process();
    if (!p.TermPath.isEmpty())
        CloseTermbaseCommand(editor);
    try {
        FileDialogRequest request;
        request.title = QStringLiteral("New TermBase");
        request.filter = QStringLiteral("Lexarbor TB files (*.ltb)|*.ltb|");
        request.filterIndex = 1;
        request.defaultExt = QStringLiteral("ltb");
        request.initialDir = TermBasesFolder();
        const std::optional<QString> file = UI().GetSaveFileName(request);
        if (!file)
            return; // cancelled: nothing is said
        if (RefuseDoubleQuotedPath(*file))
            return;
        // The new file is linked in the ontology, and made from the seed: both are checked
        // first, so the command doesn't stop half-way.
        if (!p.OntoDB.Updatable()) {
            UI().MsgBox(ReadOnlyFileError(p.OntoPath).description(), msg::Exclamation);
            return;
        }
        if (const std::optional<QString> problem = SeedFileProblem()) {
            UI().MsgBox(*problem, msg::Critical, QStringLiteral("Error"));
            return;
        }
        p.TermPath = *file;
        p.TermFolder = FolderOf(*file);
        if (p.OntoFolder == p.TermFolder) {
            UI().MsgBox(QStringLiteral("A termbase cannot reside in the same folder as its "
                                       "working ontology.") +
                            LineBreak +
                            QStringLiteral("Tip: save all your ontologies in one folder and your "
                                           "termbases in another."),
                        msg::Exclamation);
            p.TermFolder.clear();
            p.TermPath.clear();
            return;
        }
        CreateTermbase(editor);
    } catch (const StoreError &error) {
        if (error.number() == err::DatabaseExists)
            UI().MsgBox(QStringLiteral("TermBase exists already!"), msg::YesNo); // answer unused
        else
            UI().MsgBox(error.description());
        p.TermPath.clear();
    }
}

void OpenTermbaseByDialog(TermbaseEditor &editor)
{
    ProcessState &p = Process();
    if (!p.TermPath.isEmpty())
        CloseTermbaseCommand(editor);
    if (!p.TermPath.isEmpty())
        return;
    try {
        FileDialogRequest request;
        request.title = QStringLiteral("Open TermBase");
        request.filter = QStringLiteral("Lexarbor TermBase Files (*.ltb)|*.ltb|") +
                         QStringLiteral("All files (*.*)|*.*|");
        request.filterIndex = 1;
        request.initialDir = TermBasesFolder();
        const std::optional<QString> file = UI().GetOpenFileName(request);
        if (!file || RefuseDoubleQuotedPath(*file))
            return;
        p.TermPath = *file;
        p.TermFolder = FolderOf(*file);
        OpenTermbase(editor, p.TermPath);
        CreateFolderIfMissing(TermbasePublishFolder(p.TermMeta.Name));
        CreateFolderIfMissing(TermbaseBackFolder(p.TermMeta.Name));
    } catch (const StoreError &error) {
        UI().MsgBox(error.description());
        p.TermPath.clear();
    }
}

std::optional<QString> WorkingOntologyOf(const QString &path)
{
    try {
        Database db = DBEngine::OpenDatabase(path, false, true, QString());
        TermMetaData meta;
        ReadTermMetaData(db, meta);
        db.Close();
        // Without its metadata row a file names no ontology and is no termbase.
        if (meta.Ontology.isEmpty())
            throw StoreError::make(err::UnrecognizedFormat, path);
        return meta.Ontology;
    } catch (const StoreError &error) {
        ReportOpenError(error, path);
        return std::nullopt;
    }
}

void OpenNamedTermbase(TermbaseEditor &editor, const QString &path)
{
    ProcessState &p = Process();
    if (!p.TermPath.isEmpty())
        CloseTermbaseCommand(editor);
    if (!p.TermPath.isEmpty() || RefuseDoubleQuotedPath(path))
        return;
    try {
        p.TermPath = path;
        p.TermFolder = FolderOf(path);
        OpenTermbase(editor, p.TermPath);
        if (p.TermPath.isEmpty())
            return;
        CreateFolderIfMissing(TermbasePublishFolder(p.TermMeta.Name));
        CreateFolderIfMissing(TermbaseBackFolder(p.TermMeta.Name));
    } catch (const StoreError &error) {
        UI().MsgBox(error.description());
        p.TermPath.clear();
    }
}

void CloseTermbaseCommand(TermbaseEditor &editor)
{
    if (!Process().TermPath.isEmpty())
        CloseTermbase(editor);
}

void EditTermbaseProperties(TermbaseEditor &editor)
{
    ProcessState &p = Process();
    TermMetaData &meta = p.TermMeta;
    const PropertiesTexts shown = PropertiesTextsOf(meta);
    const PropertiesTexts texts = editor.ShowTermbaseProperties(shown);
    if (texts.Name.isEmpty())
        return;
    if (!p.TermDB.Updatable()) {
        // They would reach the file at close, which can't be written.
        if (texts != shown)
            UI().MsgBox(ReadOnlyFileError(p.TermPath).description(), msg::Exclamation);
        return;
    }
    // Memory only: CloseTermbase writes them, with Modified as the time of closing.
    meta.Name = texts.Name;
    meta.Author = texts.Author;
    meta.Contact = texts.Contact;
    meta.Created = TextToDate(texts.Created);
    meta.Description = texts.Description;
    meta.Modified = TextToDate(texts.Modified);
    meta.Owner = texts.Owner;
    editor.SetCaption(TermbaseCaption(editor));
}

void SetTermbaseOptions(TermbaseEditor &editor)
{
    TermMetaData &meta = Process().TermMeta;
    TermbaseOptionsChoice current;
    // Only the two languages in use are shown checked.
    if (meta.DCLang == QLatin1String("en") || meta.DCLang == QLatin1String("es"))
        current.Language = meta.DCLang;
    current.CSBrowser = meta.CSBrowser;
    current.List = meta.DCList == QLatin1String("list");
    const TermbaseOptionsChoice choice = editor.ShowTermbaseOptions(current);

    if (choice.Language != QLatin1String("en") && choice.Language != QLatin1String("es")) {
        UI().MsgBox(QStringLiteral("Not available yet."), msg::Exclamation,
                    QStringLiteral("Error"));
        return;
    }
    meta.CSBrowser = choice.CSBrowser;
    meta.DCList = choice.List ? QStringLiteral("list") : QStringLiteral("tree");
    editor.ShowCategoryPane(choice.List);
    if (choice.Language != meta.DCLang) {
        meta.DCLang = choice.Language;
        editor.ReloadCategoryNames();
    }
}

void OpenTermbase(TermbaseEditor &editor, QString &path)
{
    ProcessState &p = Process();
    editor.SetWindowPointer(pointer::Hourglass);
    try {
        p.TermDB = DBEngine::OpenDatabase(path);
        ReadTermMetaData(p.TermDB, p.TermMeta);
        if (p.TermMeta.Ontology.toLower() != p.OntoPath.toLower()) {
            // "current" stands twice in this message.
            UI().MsgBox(QStringLiteral("This TermBase's Working Ontology is ") +
                            p.TermMeta.Ontology +
                            QStringLiteral(". You can't use it with current current Working "
                                           "ontology (") +
                            p.OntoPath + QStringLiteral(")."),
                        msg::Critical, QStringLiteral("Error"));
            path.clear();
            p.TermFolder.clear();
            p.TermDB.Close();
            editor.SetWindowPointer(pointer::Arrow);
            return;
        }
        editor.ShowCategoryPane(p.TermMeta.DCList == QLatin1String("list"));
        p.TermMeta.Modified = QDateTime::currentDateTime();
        OpenTermbaseRecordsets(editor);
        editor.LoadTermbaseView();
        editor.EntryCount = CountRows(p.TermDB, QStringLiteral("SELECT elemID from elements ") +
                                                    QStringLiteral("WHERE categoryID = '0.3'"));
        editor.TermCount = CountRows(p.TermDB, QStringLiteral("SELECT elemID from elements ") +
                                                   QStringLiteral("WHERE categoryID = '1'"));
        editor.ShowCounts();
        editor.SetCaption(TermbaseCaption(editor));
        editor.EnableEditor();
        editor.SetOntologyPanel(p.TermMeta.Name);
        editor.SetWindowPointer(pointer::Arrow);
    } catch (const StoreError &error) {
        ReportOpenError(error, path);
        // Nothing is written to a file that failed to open, not even at the next close.
        IgnoreErrors([&] { p.TermDB.Close(); });
        editor.SetWindowPointer(pointer::Arrow);
    }
}

void CloseTermbase(TermbaseEditor &editor)
{
    ProcessState &p = Process();
    WriteMetaDataAtClose(p.TermDB, p.TermMeta);
    IgnoreErrors([&] { editor.ClearStatusPanels(); });
    CloseTermbaseRecordsets();
    IgnoreErrors([&] { p.TermDB.Close(); });
    IgnoreErrors([&] { editor.ClearTermbaseView(); });
    editor.EntryCount = 0;
    editor.TermCount = 0;
    editor.LastElemID = 0;
    editor.CurrentElemID = 0;
    editor.CurrentCategory.clear();
    editor.SetCaption(editor.BaseCaption);
    IgnoreErrors([&] { editor.SetOntologyPanel(QString()); });
    p.TermPath.clear();
}

QString TermbasePublishFolder(const QString &name)
{
    return Process().TermFolder + name + QStringLiteral("-publish");
}

QString TermbaseBackFolder(const QString &name)
{
    return Process().TermFolder + name + QStringLiteral("-back");
}

} // namespace lx
