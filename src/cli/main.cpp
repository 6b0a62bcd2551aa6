// lexarbor-cli: the ontology's batch work from a console, with the program's own logic and no
// window. Messages go to stderr; the exit status says whether the command did its work.
#include "cli/console_interaction.h"
#include "core/process.h"
#include "core/program.h"
#include "core/store/errors.h"
#include "ontology/edit/concept_view.h"
#include "ontology/edit/inheritance.h"
#include "ontology/exchange/export.h"
#include "ontology/exchange/import.h"
#include "ontology/exchange/skos.h"
#include "ontology/store/lifecycle.h"
#include "ontology/store/lookups.h"
#include "ontology/store/onto_editor.h"
#include "ontology/store/seed.h"
#include "publish/ontology_site.h"
#include "termbase/exchange/tbx_export.h"
#include "termbase/exchange/tbx_import.h"
#include "termbase/store/lifecycle.h"
#include "termbase/store/tb_editor.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>

#include <cstdio>
#include <functional>
#include <map>
#include <unistd.h>

using namespace lx;

namespace {

constexpr int Failure = 1;
constexpr int Usage = 2;

const char *const kUsage =
    "usage: lexarbor-cli COMMAND [ARGS]\n"
    "  new FILE.ont                          a new ontology from the seed\n"
    "  import FILE.ont EXPORT.oxp [--log F]  read an export file into the ontology\n"
    "  export FILE.ont OUT.oxp [--as-entered] [ID...]\n"
    "                                        all concepts (alphabetical) or those named\n"
    "  publish FILE.ont [DIR]                the whole ontology as a site: a page for every\n"
    "                                        concept, an index and a frame page (DIR: the\n"
    "                                        ontology's -publish folder)\n"
    "  walk FILE.ont parents|children|ancestors|descendants ID\n"
    "  inherit FILE.ont ID [--exclusive]     the inherited slots of a concept\n"
    "  skos-export FILE.ont OUT.ttl [--base IRI]\n"
    "                                        the ontology as a SKOS concept scheme in Turtle\n"
    "                                        (IRI: http://example.org/<ontology name>/)\n"
    "  tb-new FILE.ltb FILE.ont              a new termbase under the ontology, named after\n"
    "                                        its file (not in the ontology's folder)\n"
    "  tbx-export FILE.ltb OUT.tbx           the termbase as TBX-Basic\n"
    "  tbx-import FILE.ltb IN.tbx [--log F] [--add-concepts-under PARENT]\n"
    "                                        a TBX-Basic file into the termbase: all or\n"
    "                                        nothing; entries of concepts the ontology lacks\n"
    "                                        are left out, or added under PARENT\n"
    "Each command takes --help; --yes answers the program's questions with yes.\n";

// A new ontology takes its name from its file.
class ConsoleEditor : public WindowlessEditor {
public:
    PropertiesTexts ShowProperties(const PropertiesTexts &texts) override
    {
        PropertiesTexts named = texts;
        if (named.Name.isEmpty())
            named.Name = QFileInfo(Process().OntoPath).completeBaseName();
        return named;
    }
};

// A new termbase takes its name from its file; the window's other parts are absent.
class ConsoleTermbaseEditor : public TermbaseEditor {
public:
    void SetCaption(const QString &) override {}
    void SetWindowPointer(int) override {}
    void EnableEditor() override {}
    void DisableEditor() override {}
    void ShowCategoryPane(bool) override {}
    void ShowCounts() override {}
    void ClearStatusPanels() override {}
    void ClearTermbaseView() override {}
    void LoadTermbaseView() override {}
    void ReloadCategoryNames() override {}
    void SetOntologyPanel(const QString &) override {}
    PropertiesTexts ShowNewTermbaseProperties(const PropertiesTexts &texts,
                                              const QString &) override
    {
        PropertiesTexts named = texts;
        named.Name = QFileInfo(Process().TermPath).completeBaseName();
        return named;
    }
    PropertiesTexts ShowTermbaseProperties(const PropertiesTexts &texts) override { return texts; }
    TermbaseOptionsChoice ShowTermbaseOptions(const TermbaseOptionsChoice &current) override
    {
        return current;
    }
};

// A termbase's name names its folders and is held in 25 characters.
constexpr int MaxTermbaseName = 25;

int Fail(const QString &message)
{
    std::fprintf(stderr, "lexarbor-cli: %s\n", qUtf8Printable(message));
    return Failure;
}

void Print(const QString &line)
{
    std::fprintf(stdout, "%s\n", qUtf8Printable(line));
}

// A progress line on stderr while a long run goes on, when stderr is a terminal.
void Progress(const QString &what, int done, int total)
{
    if (!isatty(fileno(stderr)) || total <= 0)
        return;
    const int width = 30;
    const int filled = int(qint64(done) * width / total);
    std::fprintf(stderr, "\r%s [%s%s] %d/%d", qUtf8Printable(what),
                 std::string(size_t(filled), '#').c_str(),
                 std::string(size_t(width - filled), ' ').c_str(), done, total);
    if (done >= total)
        std::fprintf(stderr, "\n");
}

struct Arguments {
    QStringList plain;
    QStringList flags;
    QString log;
    QString base;
    QString parent;

    bool has(const char *flag) const { return flags.contains(QLatin1String(flag)); }
};

Arguments Parse(const QStringList &args)
{
    Arguments parsed;
    for (qsizetype i = 0; i < args.size(); ++i) {
        const QString &arg = args[i];
        if (arg == QLatin1String("--log") && i + 1 < args.size())
            parsed.log = args[++i];
        else if (arg == QLatin1String("--base") && i + 1 < args.size())
            parsed.base = args[++i];
        else if (arg == QLatin1String("--add-concepts-under") && i + 1 < args.size())
            parsed.parent = args[++i];
        else if (arg.startsWith(QLatin1String("--")))
            parsed.flags << arg;
        else
            parsed.plain << arg;
    }
    return parsed;
}

// Opens FILE.ont as the program's one ontology; false, having said why, when it can't.
bool Open(ConsoleEditor &editor, cli::ConsoleInteraction &ui, const QString &path)
{
    if (!QFileInfo::exists(path)) {
        Fail(QStringLiteral("no such file: ") + path);
        return false;
    }
    Process().OntoPath = QFileInfo(path).absoluteFilePath();
    const int before = ui.Messages;
    OpenOntology(editor, Process().OntoPath);
    if (Process().OntoPath.isEmpty() || ui.Messages > before) {
        Fail(QStringLiteral("cannot open ") + path);
        return false;
    }
    return true;
}

void Close(ConsoleEditor &editor)
{
    if (!Process().OntoPath.isEmpty())
        CloseOntology(editor, Process().OntoPath);
}

QStringList AllConcepts(bool asEntered)
{
    QStringList ids;
    store::Recordset rs = Process().OntoDB.OpenRecordset(
        asEntered ? QStringLiteral("CONCEPTS")
                  : QStringLiteral("SELECT Concept FROM CONCEPTS ORDER BY Concept"),
        asEntered ? store::dbOpenTable : store::dbOpenSnapshot);
    for (; !rs.Eof(); rs.MoveNext())
        ids << rs.Value(u"Concept").toString();
    return ids;
}

int New(const Arguments &a, cli::ConsoleInteraction &ui)
{
    if (a.plain.size() != 1)
        return Usage;
    ConsoleEditor editor;
    ui.SavePath = QFileInfo(a.plain[0]).absoluteFilePath();
    if (QFileInfo::exists(*ui.SavePath))
        return Fail(QStringLiteral("the file exists already: ") + a.plain[0]);
    NewOntology(editor);
    const bool made = !Process().OntoPath.isEmpty();
    Close(editor);
    return made ? 0 : Fail(QStringLiteral("no ontology was made"));
}

int Import(const Arguments &a, cli::ConsoleInteraction &ui)
{
    if (a.plain.size() != 2)
        return Usage;
    ConsoleEditor editor;
    if (!Open(editor, ui, a.plain[0]))
        return Failure;
    OntologyImport import;
    import.FileName = a.plain[1];
    const auto progress = [](const QString &status, int line, int lines) {
        if (!status.isEmpty())
            Progress(status, line, lines);
    };
    QString log;
    try {
        log = import.CheckFile(progress);
        if (import.ImportEnabled)
            log += import.Import(progress);
    } catch (const store::StoreError &error) {
        Close(editor);
        return Fail(error.description());
    }
    Close(editor);
    if (!a.log.isEmpty()) {
        QFile file(a.log);
        if (!file.open(QIODevice::WriteOnly))
            return Fail(QStringLiteral("cannot write the log to ") + a.log);
        file.write(log.toUtf8() + "\r\n");
    } else {
        std::fprintf(stdout, "%s\n", qUtf8Printable(log));
    }
    return import.ImportEnabled ? 0 : Fail(QStringLiteral("nothing to import"));
}

int Export(const Arguments &a, cli::ConsoleInteraction &ui)
{
    if (a.plain.size() < 2)
        return Usage;
    ConsoleEditor editor;
    if (!Open(editor, ui, a.plain[0]))
        return Failure;
    const QStringList named = a.plain.mid(2);
    const QStringList ids = named.isEmpty() ? AllConcepts(a.has("--as-entered")) : named;
    for (const QString &id : named) {
        if (!ConceptExists(id)) {
            Close(editor);
            return Fail(QStringLiteral("no such concept: ") + id);
        }
    }
    try {
        QFile::remove(a.plain[1]);
        WriteExportFile(a.plain[1], ids, [&ids](int done) {
            if (done % 500 == 0 || done == int(ids.size()))
                Progress(QStringLiteral("Exporting"), done, int(ids.size()));
        });
    } catch (const store::StoreError &error) {
        Close(editor);
        return Fail(error.description());
    }
    Close(editor);
    return 0;
}

int SkosExport(const Arguments &a, cli::ConsoleInteraction &ui)
{
    if (a.plain.size() != 2)
        return Usage;
    ConsoleEditor editor;
    if (!Open(editor, ui, a.plain[0]))
        return Failure;
    const QString base = a.base.isEmpty() ? DefaultSkosBase(Process().OntoMeta.Name) : a.base;
    int concepts = 0;
    try {
        concepts = WriteSkosFile(a.plain[1], base);
    } catch (const store::StoreError &error) {
        Close(editor);
        return Fail(error.description() + QStringLiteral(": ") + a.plain[1]);
    }
    Close(editor);
    Print(QString::number(concepts) + QStringLiteral(" concepts under ") + base);
    return 0;
}

// The editor's "New": the file made from the seed, linked in the ontology, opened and closed.
int TbNew(const Arguments &a, cli::ConsoleInteraction &ui)
{
    if (a.plain.size() != 2)
        return Usage;
    const QFileInfo file(a.plain[0]);
    if (file.exists())
        return Fail(QStringLiteral("the file exists already: ") + a.plain[0]);
    if (file.completeBaseName().size() > MaxTermbaseName)
        return Fail(QStringLiteral("a termbase's name has at most 25 characters: ") +
                    file.completeBaseName());
    if (!file.absoluteDir().exists())
        return Fail(QStringLiteral("no such folder: ") + file.absolutePath());
    ConsoleEditor editor;
    if (!Open(editor, ui, a.plain[1]))
        return Failure;
    Process().OntoFolder = FolderOf(Process().OntoPath);
    if (FolderOf(file.absoluteFilePath()) == Process().OntoFolder) {
        Close(editor);
        return Fail(QStringLiteral("a termbase cannot reside in the same folder as its working "
                                   "ontology: ") +
                    a.plain[0]);
    }
    ConsoleTermbaseEditor termbase;
    ui.SavePath = file.absoluteFilePath();
    ui.Quiet = true; // the one message says that it was made
    NewTermbase(termbase);
    ui.Quiet = false;
    const bool made = !Process().TermPath.isEmpty() && QFileInfo::exists(*ui.SavePath);
    CloseTermbaseCommand(termbase);
    Close(editor);
    if (!made)
        return Fail(QStringLiteral("no termbase was made"));
    Print(QStringLiteral("TermBase ") + file.completeBaseName() + QStringLiteral(" made under ") +
          a.plain[1]);
    return 0;
}

int TbxExport(const Arguments &a, cli::ConsoleInteraction &)
{
    if (a.plain.size() != 2)
        return Usage;
    const QString &termbase = a.plain[0];
    if (!QFileInfo(termbase).isFile())
        return Fail(QStringLiteral("no such file: ") + termbase);
    TbxExportResult result;
    try {
        result = ExportTbx(termbase, a.plain[1], [](int done, int total) {
            Progress(QStringLiteral("Exporting"), done, total);
        });
    } catch (const store::StoreError &error) {
        if (error.number() == PathFileAccessError)
            return Fail(QStringLiteral("cannot write ") + a.plain[1]);
        return Fail(QStringLiteral("not a Lexarbor termbase: ") + termbase + QStringLiteral(" (") +
                    error.description() + QLatin1Char(')'));
    }
    Print(TbxExportSummary(result));
    return 0;
}

// The working ontology a termbase file names, read without opening the termbase for writing.
QString WorkingOntologyOf(const QString &termbase)
{
    store::Database db = store::DBEngine::OpenDatabase(termbase, false, true, QString());
    QString ontology;
    store::ForEachRow(db, QStringLiteral("SELECT Ontology FROM MetaData"),
                      [&](const store::Recordset &rs) {
                          if (ontology.isEmpty())
                              ontology = store::TextOrEmpty(rs.Value(u"Ontology"));
                      });
    db.Close();
    return ontology;
}

// Opens the termbase under its working ontology, imports, closes both. The log goes to --log, or
// to stdout; status 1 when the file was refused and nothing was written.
int TbxImport(const Arguments &a, cli::ConsoleInteraction &ui)
{
    if (a.plain.size() != 2)
        return Usage;
    const QString termbase = QFileInfo(a.plain[0]).absoluteFilePath();
    if (!QFileInfo(termbase).isFile())
        return Fail(QStringLiteral("no such file: ") + a.plain[0]);
    if (!QFileInfo(a.plain[1]).isFile())
        return Fail(QStringLiteral("no such file: ") + a.plain[1]);
    QString ontology;
    try {
        ontology = WorkingOntologyOf(termbase);
    } catch (const store::StoreError &error) {
        return Fail(QStringLiteral("not a Lexarbor termbase: ") + a.plain[0] +
                    QStringLiteral(" (") + error.description() + QLatin1Char(')'));
    }
    ConsoleEditor editor;
    if (!Open(editor, ui, ontology))
        return Failure;
    ConsoleTermbaseEditor window;
    ProcessState &p = Process();
    p.TermPath = termbase;
    p.TermFolder = FolderOf(termbase);
    OpenTermbase(window, p.TermPath);
    if (p.TermPath.isEmpty()) {
        Close(editor);
        return Fail(QStringLiteral("cannot open ") + a.plain[0]);
    }
    TbxImportOptions options;
    options.LogFile = a.log;
    options.AddConceptsUnder = a.parent;
    TbxImportResult result;
    try {
        result = ImportTbx(a.plain[1], options, [](qint64 done, qint64 total) {
            Progress(QStringLiteral("Importing"), int(done), int(total));
        });
    } catch (const store::StoreError &error) {
        CloseTermbase(window);
        Close(editor);
        return Fail(error.description());
    }
    CloseTermbase(window);
    Close(editor);
    if (a.log.isEmpty()) {
        for (const QString &line : std::as_const(result.Log))
            Print(line);
    } else
        Print(result.Log.last());
    return result.Failed ? Fail(QStringLiteral("nothing was imported from ") + a.plain[1]) : 0;
}

int Walk(const Arguments &a, cli::ConsoleInteraction &ui)
{
    if (a.plain.size() != 3)
        return Usage;
    ConsoleEditor editor;
    if (!Open(editor, ui, a.plain[0]))
        return Failure;
    const QString &how = a.plain[1];
    const QString &id = a.plain[2];
    if (!ConceptExists(id)) {
        Close(editor);
        return Fail(QStringLiteral("no such concept: ") + id);
    }
    QStringList found;
    if (how == QLatin1String("parents"))
        found = ReadParents(id);
    else if (how == QLatin1String("children"))
        GetChildren(id, found);
    else if (how == QLatin1String("ancestors"))
        GetAncestors(id, found);
    else if (how == QLatin1String("descendants"))
        GetDescendants(id, found);
    else {
        Close(editor);
        return Usage;
    }
    for (const QString &line : std::as_const(found))
        Print(line);
    Close(editor);
    return 0;
}

int Inherit(const Arguments &a, cli::ConsoleInteraction &ui)
{
    if (a.plain.size() != 2)
        return Usage;
    ConsoleEditor editor;
    if (!Open(editor, ui, a.plain[0]))
        return Failure;
    const QString &id = a.plain[1];
    if (!ConceptExists(id)) {
        Close(editor);
        return Fail(QStringLiteral("no such concept: ") + id);
    }
    ComputeInheritance(id, a.has("--exclusive") ? kExclusive : kCumulative, kIncludeAll);
    for (const InheritRow &row : InheritRows())
        Print(row.Attr + QLatin1Char('\t') + row.Value + QLatin1Char('\t') + row.From);
    Close(editor);
    return 0;
}

// Every concept's page with all sections, the index and the frame page, into DIR or the
// ontology's publish folder.
int Publish(const Arguments &a, cli::ConsoleInteraction &ui)
{
    if (a.plain.isEmpty() || a.plain.size() > 2)
        return Usage;
    ConsoleEditor editor;
    if (!Open(editor, ui, a.plain[0]))
        return Failure;
    const QString folder =
        a.plain.size() == 2 ? QFileInfo(a.plain[1]).absoluteFilePath() : PublishFolder();
    int pages = 0;
    try {
        if (!QDir().mkpath(folder))
            throw store::StoreError(PathFileAccessError, QStringLiteral("Path/File access error"));
        pages = PublishWholeOntology(folder + QLatin1Char('/'), SiteName(Process().OntoMeta.Name),
                                     [](int done, int total) {
                                         if (done > 0 && (done % 100 == 0 || done == total))
                                             Progress(QStringLiteral("Publishing"), done, total);
                                     });
    } catch (const store::StoreError &error) {
        Close(editor);
        return Fail(error.description() + QStringLiteral(": ") + folder);
    }
    const QString site = SiteName(Process().OntoMeta.Name);
    Close(editor);
    Print(QString::number(pages) + QStringLiteral(" pages; open ") + folder + QLatin1Char('/') +
          site + QStringLiteral("-publish.html"));
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    lx::StartWithHugePageHeap(argv);
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("lexarbor-cli"));
    QCoreApplication::setApplicationVersion(ProgramVersion());
    KeepLargeBuffersInHeap();
    QStringList args = QCoreApplication::arguments().mid(1);
    if (args.isEmpty() || args[0] == QLatin1String("--help") || args[0] == QLatin1String("-h")) {
        std::fputs(kUsage, args.isEmpty() ? stderr : stdout);
        return args.isEmpty() ? Usage : 0;
    }
    if (args[0] == QLatin1String("--version")) {
        Print(ProgramName() + QLatin1Char(' ') + ProgramVersion());
        return 0;
    }
    const QString command = args.takeFirst();
    const std::map<QString, std::function<int(const Arguments &, cli::ConsoleInteraction &)>>
        commands{{QStringLiteral("new"), New},
                 {QStringLiteral("import"), Import},
                 {QStringLiteral("export"), Export},
                 {QStringLiteral("publish"), Publish},
                 {QStringLiteral("walk"), Walk},
                 {QStringLiteral("inherit"), Inherit},
                 {QStringLiteral("skos-export"), SkosExport},
                 {QStringLiteral("tb-new"), TbNew},
                 {QStringLiteral("tbx-export"), TbxExport},
                 {QStringLiteral("tbx-import"), TbxImport}};
    const auto found = commands.find(command);
    if (found == commands.end()) {
        std::fputs(kUsage, stderr);
        return Usage;
    }
    const Arguments parsed = Parse(args);
    if (parsed.has("--help")) {
        std::fputs(kUsage, stdout);
        return 0;
    }
    cli::ConsoleInteraction ui;
    ui.AnswerYes = parsed.has("--yes");
    const InteractionScope scope(ui);
    Process().Quote = QStringLiteral("\"");
    EnsureProgramFolders();
    EnsureSeedFile();
    try {
        const int rc = found->second(parsed, ui);
        if (rc == Usage)
            std::fputs(kUsage, stderr);
        return rc;
    } catch (const store::StoreError &error) {
        return Fail(QString::number(error.number()) + QLatin1Char(' ') + error.description());
    }
}
