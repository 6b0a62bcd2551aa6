#include "ontology/exchange/import.h"

#include "core/process.h"
#include "core/store/database.h"
#include "core/store/errors.h"
#include "core/store/types.h"
#include "ontology/store/lookups.h"
#include "publish/text_channel.h"

#include <QDateTime>

namespace lx {

using namespace store;

namespace {

const QString kCrLf = QStringLiteral("\r\n");

QString Today()
{
    return QDate::currentDate().toString(QStringLiteral("yyyy-MM-dd"));
}

QString Now()
{
    return QTime::currentTime().toString(QStringLiteral("HH:mm:ss"));
}

// The keyword each kind is found by, in the order of the search.
const std::pair<int, const char *> kKinds[] = {
    {1, " IS-A "}, {2, " SUBCLASSES "}, {3, " DEFINITION "}, {4, " DOMAIN "}, {5, " RANGE "}};

// The 1-based place of the kind's keyword (its leading blank), 0 when absent.
qsizetype KeywordAt(const QString &line, int kind)
{
    for (const auto &[k, text] : kKinds) {
        if (k == kind)
            return line.indexOf(QLatin1String(text), 0, Qt::CaseInsensitive) + 1;
    }
    return 0;
}

// Mid with 1-based start; nothing for a length below 0, which no record gives.
std::optional<QString> Mid(const QString &line, qsizetype start, qsizetype length)
{
    if (start < 1 || length < 0)
        return std::nullopt;
    return line.mid(start - 1, length);
}

// A failure of the store on one line goes into the log, and the pass goes on.
void Guarded(QString &log, int number, const std::function<void()> &work)
{
    try {
        work();
    } catch (const StoreError &error) {
        log += QStringLiteral("* Error importing line #: ") + QString::number(number) +
               QStringLiteral(" -> ") + QString::number(error.number()) + QStringLiteral(" ") +
               error.description() + kCrLf;
    }
}

// The link's row by the table's key (child, parent): what the search for both would find.
bool IsaLinkExists(const QString &child, const QString &parent)
{
    Recordset rs = Process().OntoDB.OpenRecordset(QStringLiteral("ISA"), dbOpenTable);
    rs.SetIndex(QStringLiteral("ISA"));
    rs.Seek(u"=", QVariantList{child, parent});
    const bool found = !rs.NoMatch();
    rs.Close();
    return found;
}

// The criterion keeps "Rel = DOMAIN" inside the quotes of the concept, so it finds nothing.
bool DomainSlotExists(const QString &owner, const QString &filler)
{
    const QString &q = Process().Quote;
    Recordset rs = Process().OntoDB.OpenRecordset(
        QStringLiteral("SELECT * FROM RELATIONS WHERE Concept1 = ") + Quoted(owner), dbOpenDynaset);
    rs.FindFirst(QStringLiteral("Concept1 = ") + q + owner + QStringLiteral("Rel = DOMAIN") + q +
                 QStringLiteral(" AND Concept2 =") + Quoted(filler));
    const bool found = !rs.NoMatch();
    rs.Close();
    return found;
}

} // namespace

int ClassifyImportLine(const QString &line)
{
    for (const auto &[kind, text] : kKinds) {
        if (line.contains(QLatin1String(text), Qt::CaseInsensitive))
            return kind;
    }
    return 9;
}

bool ParseImportLine(const QString &line, int kind, QStringList &fields)
{
    fields.clear();
    if (line.size() < 7 || !line.startsWith(u'(') || !line.endsWith(u')'))
        return false;
    if (kind != 1 && kind != 3 && kind != 4)
        return true;
    const qsizetype p = KeywordAt(line, kind);
    const qsizetype length = line.size();
    const std::optional<QString> owner = Mid(line, 2, p - 2);
    std::optional<QString> filler;
    if (kind == 1)
        filler = Mid(line, p + 12, length - (p + 12) - 2);
    else if (kind == 3)
        filler = Mid(line, p + 19, length - (p + 19) - 1);
    else
        filler = Mid(line, p + 12, length - (p + 12));
    if (!owner || !filler)
        return false;
    fields << *owner << *filler;
    if (kind == 1)
        fields << line.mid(length - 2, 1);
    return true;
}

QString ImportInstructions()
{
    return QStringList{
        QStringLiteral("To Import an ontology file:"),
        QStringLiteral("----------------------------------------"),
        QStringLiteral("1. Choose your options from the 'Import' and 'Overwrite' frames."),
        QStringLiteral("2. Click the 'Input File' button to choose file to import data from."),
        QStringLiteral("3. Click the 'Check File' button to check the file's contents and get a "
                       "preview of changes."),
        QStringLiteral("4. Click 'Import!' to start importing data. A log will be generated."),
    }
        .join(kCrLf);
}

QStringList OntologyImport::readLines() const
{
    return ReadCodePageLines(FileName);
}

QString OntologyImport::CheckFile(const ImportProgress &progress)
{
    QString log = QStringLiteral("Shallow parsing started on ") + Today() + QStringLiteral(" at ") +
                  Now() + kCrLf;
    const QStringList lines = readLines();
    LineCount = qint32(lines.size());
    int number = 0;
    for (const QString &line : lines) {
        ++number;
        if (progress)
            progress(QStringLiteral("Performing shallow parsing..."), number, LineCount);
        const int kind = ClassifyImportLine(line);
        QStringList fields;
        if (!ParseImportLine(line, kind, fields)) {
            log += QStringLiteral("- Error on line #: ") + QString::number(number) + kCrLf;
            continue;
        }
        qint32 *counters[] = {nullptr, &Concepts, &Subclasses, &Definitions, &Domains,
                              &Ranges, nullptr,   nullptr,     nullptr,      &Properties};
        ++*counters[kind];
    }
    if (progress)
        progress(QString(), 0, LineCount);
    const auto item = [](qint32 count, const char *what) {
        return QStringLiteral("- ") + QString::number(count) + QLatin1String(what) + kCrLf;
    };
    QString summary = QStringLiteral("Import file contains: ") + kCrLf +
                      QStringLiteral("-----------------------------") + kCrLf +
                      item(Concepts, " CONCEPT slots.") + item(Subclasses, " SUBCLASSES slots.") +
                      item(Definitions, " DEFINITION slots.") +
                      item(Properties, " PROPERTY slots.") + item(Domains, " DOMAIN slots.") +
                      item(Ranges, " RANGE slots.") + kCrLf + QStringLiteral("A total of ") +
                      QString::number(LineCount) + QStringLiteral(" lines were parsed.") + kCrLf +
                      kCrLf;
    // One record of a kind is not enough to call for an import.
    if (Concepts > 1 || Definitions > 1 || Domains > 1 || Ranges > 1) {
        summary += QStringLiteral("Note that this is a shallow parsing. ") +
                   QStringLiteral("Errors may occur while importing") + kCrLf + kCrLf +
                   QStringLiteral("Click the 'Import!' button to start importing data.");
        ImportEnabled = true;
    } else {
        summary = summary + summary + QStringLiteral("Nothing to import from file: ") + kCrLf +
                  FileName + kCrLf;
    }
    return log + summary + kCrLf + QString(69, u'-') + kCrLf + kCrLf;
}

void OntologyImport::pass(int kind, const QString &status, const ImportProgress &progress,
                          const std::function<void(int, const QString &)> &handle) const
{
    const QStringList lines = readLines();
    int number = 0;
    for (const QString &line : lines) {
        ++number;
        if (progress)
            progress(status, number, LineCount);
        if (ClassifyImportLine(line) == kind)
            handle(number, line);
    }
    if (progress)
        progress(QString(), 0, LineCount);
}

int OntologyImport::ImportConceptSlots(QString &log, const ImportProgress &progress)
{
    int added = 0;
    Recordset concepts = Process().OntoDB.OpenRecordset(QStringLiteral("CONCEPTS"), dbOpenTable);
    concepts.SetIndex(QStringLiteral("Concept"));
    Recordset isa = Process().OntoDB.OpenRecordset(QStringLiteral("ISA"), dbOpenTable);
    pass(1, QStringLiteral("Importing CONCEPT slots..."), progress,
         [&](int number, const QString &line) {
             QStringList f;
             if (!ParseImportLine(line, 1, f)) {
                 log += QStringLiteral("Error parsing line #: ") + QString::number(number) + kCrLf +
                        kCrLf;
                 return;
             }
             Guarded(log, number, [&] {
                 // The first mention decides a new concept's type: one that exists is kept.
                 for (int i = 0; i < 2; ++i) {
                     concepts.Seek(u"=", f[i]);
                     if (!concepts.NoMatch())
                         continue;
                     concepts.AddNew();
                     concepts.Collect(u"Concept", f[i]);
                     concepts.Collect(u"Type", f[2]);
                     if (i == 0)
                         concepts.Collect(u"subset_ID", 1);
                     concepts.Update();
                     ++added;
                 }
                 if (!IsaLinkExists(f[0], f[1])) {
                     isa.AddNew();
                     isa.Collect(u"Concept", f[0]);
                     isa.Collect(u"ISA", f[1]);
                     isa.Update();
                 }
             });
         });
    return added;
}

int OntologyImport::ImportDefinitionSlots(QString &log, bool &overwrite,
                                          const ImportProgress &progress)
{
    int added = 0;
    Recordset concepts = Process().OntoDB.OpenRecordset(QStringLiteral("CONCEPTS"), dbOpenTable);
    concepts.SetIndex(QStringLiteral("Concept"));
    pass(3, QStringLiteral("Importing DEFINITION slots..."), progress,
         [&](int number, const QString &line) {
             QStringList f;
             if (!ParseImportLine(line, 3, f)) {
                 log += QStringLiteral("* Error parsing line #: ") + QString::number(number) +
                        kCrLf + kCrLf;
                 return;
             }
             Guarded(log, number, [&] {
                 concepts.Seek(u"=", f[0]);
                 if (concepts.NoMatch()) {
                     log += QStringLiteral("* Error importing definition: concept does not "
                                           "exists:") +
                            kCrLf + f[0] + kCrLf + kCrLf;
                     return;
                 }
                 const QString present = concepts.Value(u"definition").toString();
                 if (!present.isEmpty() && !overwrite)
                     return;
                 concepts.Edit();
                 concepts.Collect(u"definition", f[1]);
                 concepts.Update();
                 ++added;
             });
         });
    return added;
}

int OntologyImport::ImportDomainSlots(QString &log, bool & /*overwrite*/,
                                      const ImportProgress &progress)
{
    const int added = 0; // nothing counts the domains that go in
    Recordset relations = Process().OntoDB.OpenRecordset(QStringLiteral("RELATIONS"), dbOpenTable);
    pass(4, QStringLiteral("Importing DOMAIN slots..."), progress,
         [&](int number, const QString &line) {
             QStringList f;
             if (!ParseImportLine(line, 4, f)) {
                 log += QStringLiteral("Error parsing line #: ") + QString::number(number) + kCrLf +
                        kCrLf;
                 return;
             }
             Guarded(log, number, [&] {
                 if (!ConceptExists(f[0]) || !ConceptExists(f[1])) {
                     log += QStringLiteral("Warning parsing line # ") + QString::number(number) +
                            QStringLiteral(" -> Concept ") + f[0] + QStringLiteral(" or ") + f[1] +
                            QStringLiteral(" not in ontology. ") +
                            QStringLiteral("Domain slot not added") + kCrLf;
                     return;
                 }
                 if (DomainSlotExists(f[0], f[1])) {
                     log += QStringLiteral("- Warning parsing line # ") + QString::number(number) +
                            QStringLiteral(" -> Domain ") + f[1] +
                            QStringLiteral(" exists for concept ") + f[0] +
                            QStringLiteral(". DOMAIN slot not added.") + kCrLf;
                     return;
                 }
                 relations.AddNew();
                 relations.Collect(u"Concept1", f[0]);
                 relations.Collect(u"Rel", QStringLiteral("DOMAIN"));
                 relations.Collect(u"Default", false);
                 relations.Collect(u"Concept2", f[1]);
                 relations.Update();
             });
         });
    return added;
}

QString OntologyImport::Import(const ImportProgress &progress)
{
    QString log;
    QString report = kCrLf + QStringLiteral("Import process started on ") + Today() +
                     QStringLiteral(" at ") + Now() + kCrLf + QStringLiteral("IMPORT LOG:") +
                     kCrLf + QStringLiteral("--------------------------") + kCrLf;
    bool overwrite = true;
    if (Concepts > 1)
        report += QStringLiteral("- ") + QString::number(ImportConceptSlots(log, progress)) +
                  QStringLiteral(" CONCEPT slots added.") + kCrLf;
    if (Definitions > 1)
        report += QStringLiteral("- ") +
                  QString::number(ImportDefinitionSlots(log, overwrite, progress)) +
                  QStringLiteral(" DEFINITION slots added.");
    // The domains' sentence names definitions too, on the same line.
    if (Domains > 1)
        report += QStringLiteral("- ") +
                  QString::number(ImportDomainSlots(log, overwrite, progress)) +
                  QStringLiteral(" DEFINITION slots added.");
    return log + report;
}

} // namespace lx
