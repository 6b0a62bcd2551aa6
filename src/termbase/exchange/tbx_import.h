#pragma once

#include <QString>
#include <QStringList>

#include <functional>

// Reading a TBX-Basic file (the ISO 30042 form with conceptEntry, and the older martif form with
// termEntry, langSet and tig) into the open termbase. The whole file is read and checked before
// anything is written; the writes then go into one transaction, so a bad file, or a failure part
// way, leaves the termbase as it was.
namespace lx {

struct TbxImportOptions {
    QString LogFile;          // where the log goes as well; empty: nowhere
    QString AddConceptsUnder; // parent of the concepts the ontology lacks; empty: list them only
    bool CheckOnly = false;   // read, check and count, write nothing
};

struct TbxImportResult {
    bool Failed = false;         // the file was refused: nothing was written
    int Added = 0;               // new term entries
    int Merged = 0;              // entries merged into a term entry already there
    int Skipped = 0;             // entries of concepts the ontology lacks, left out
    int Terms = 0;               // new terms
    QStringList MissingConcepts; // in the file's order; added when a parent was given
    QStringList Log;             // "line N: ..." for what was refused, dropped or changed
    qint32 LastElemID = 0;       // the highest element number afterwards
};

// How far the writing has come, in entries, now and then and once at its end.
using TbxImportProgress = std::function<void(qint64 done, qint64 total)>;

// Imports `inFile` into Process().TermDB, under the working ontology Process().OntoDB. Concepts
// added under `AddConceptsUnder` go into the ontology in a transaction of its own that is
// committed only after the termbase's; then they are offered to the linked termbases. Store
// failures are thrown after both files have been put back.
TbxImportResult ImportTbx(const QString &inFile, const TbxImportOptions &options,
                          const TbxImportProgress &progress = {});

class TermbaseEditor;

// The editor's "Import TBX...": the file asked for, checked first; when the ontology lacks
// concepts of the file, whether to add them and under which parent; then the import, its log
// saved beside the file as FILE.log and its summary shown; the editor's counters follow. False
// when nothing was imported.
bool ImportTbxIntoOpenTermbase(TermbaseEditor &editor, const TbxImportProgress &progress = {});

} // namespace lx
