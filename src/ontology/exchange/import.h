#pragma once

#include <QString>
#include <QStringList>

#include <functional>

// Reading an export file into the open ontology: a shallow check that counts the records by
// kind, then one pass per kind it handles (IS-A, DEFINITION, DOMAIN). A line is judged by a
// few text searches and cut at fixed places after its keyword.
namespace lx {

// 1 IS-A, 2 SUBCLASSES, 3 DEFINITION, 4 DOMAIN, 5 RANGE, 9 anything else.
int ClassifyImportLine(const QString &line);
// The fields of a line of `kind`; false for a line that isn't a record.
bool ParseImportLine(const QString &line, int kind, QStringList &fields);

// Progress of a pass: its status text (empty at the end), the line reached and the count.
using ImportProgress = std::function<void(const QString &status, int line, int lines)>;

// The state of the import dialog: the file, its line count and the record counters, which a
// second check adds to.
class OntologyImport {
public:
    QString FileName;
    qint32 LineCount = 0;
    qint32 Definitions = 0, Concepts = 0, Subclasses = 0, Domains = 0, Ranges = 0, Properties = 0;

    // The log of a check: it replaces the dialog's. Sets ImportEnabled when there is something
    // to import.
    QString CheckFile(const ImportProgress &progress = {});
    // What the passes write to the log, then their report; to be appended.
    QString Import(const ImportProgress &progress = {});
    bool ImportEnabled = false;

    // The passes, each giving the number of slots it counts as added.
    int ImportConceptSlots(QString &log, const ImportProgress &progress);
    int ImportDefinitionSlots(QString &log, bool &overwrite, const ImportProgress &progress);
    int ImportDomainSlots(QString &log, bool &overwrite, const ImportProgress &progress);

private:
    QStringList readLines() const;
    // Runs `handle` on each line of `kind`, with the frame every pass shares.
    void pass(int kind, const QString &status, const ImportProgress &progress,
              const std::function<void(int number, const QString &line)> &handle) const;
};

// The first lines of the dialog's log.
QString ImportInstructions();

} // namespace lx
