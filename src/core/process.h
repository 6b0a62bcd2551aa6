#pragma once

#include "core/store/database.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>
#include <string>

namespace lx {

// The ontology's MetaData row while the file is open, fields in the file's order.
struct OntoMetaData {
    QString Name;
    QDateTime Created;
    QDateTime Modified;
    QString Owner;
    QString Author;
    QString Description;
    QString Contact;
    quint8 ListTop = 0;
    quint8 MaxParents = 0;
    QString DefLang;
    bool Naming = false;
    quint8 AutoName = 0;
    quint8 ActiveSet = 0;
};

// The termbase's MetaData row while the file is open.
struct TermMetaData {
    QString Name;
    QDateTime Created;
    QDateTime Modified;
    QString Owner;
    QString Author;
    QString Description;
    QString Contact;
    QString DCLang; // "en", "es", ...
    bool CSBrowser = false;
    QString Ontology; // path of the working ontology
    QString DCList;   // "list" or "tree"
};

// What is open and its metadata, shared by every window. There is no lock and no
// notification: a window reads a field when it needs it.
struct ProcessState {
    QString Quote;      // the double quote that delimits values in queries and criteria
    QString TopConcept; // top concept of the open ontology
    QString OntoPath;   // empty: no ontology open (the one test for that)
    QString OntoFolder; // OntoPath less the file title, with its trailing separator
    OntoMetaData OntoMeta;
    QString TermPath;   // empty: no termbase open
    QString TermFolder; // with its trailing separator
    QString TermName;   // base of the sibling folders "-publish" and "-back"
    TermMetaData TermMeta;
    QList<QStringList> DataCats; // the data category table, one row per category

    store::Database OntoDB;     // the open ontology
    store::Database TermDB;     // the open termbase
    store::Recordset rsInherit; // ontology table Inherit, index Attr, kept open
    // Termbase tables kept open while the termbase is.
    store::Recordset rsElements;   // elements, index elemID
    store::Recordset rsDatCats;    // read-only view of the data categories
    store::Recordset rsElemLang;   // elements_use_lang, index elemID
    store::Recordset rsTextValues; // text_values, index elemID
    store::Recordset rsPointers;   // pointers, index elemID
    store::Recordset rsRefValues;  // ref_values, index elemID
    store::Recordset rsTEConcepts; // TE_CONCEPTS, index elemID
    store::Recordset rsTerms;      // TERMS, index elemID
};

// The one process block.
ProcessState &Process();

// A value between the process's quotes, as queries and criteria take it; nothing in it is
// doubled, so a value that may hold a quote is refused before it gets here.
inline QString Quoted(const QString &value)
{
    return Process().Quote + value + Process().Quote;
}

// Puts the block back to its state at program start (tests).
void ResetProcessState();

// Folder of the program's files without a trailing separator: LEXARBOR_HOME, else the
// executable's folder, else (not writable) the user's data folder; see core/app_folders.h.
QString AppPath();
// Default folders of ontology and termbase files, with their trailing separator.
QString OntologiesFolder();
QString TermBasesFolder();
// The copy of the seed database in AppPath.
QString SeedDatabasePath();

// Lets the heap keep the large buffers of an ontology's lists between opens: by default each one
// is a mapping of its own, handed back at free and faulted in page by page at the next open.
void KeepLargeBuffersInHeap();

// The glibc tunables that back the heap with transparent huge pages, added to `current` (the
// environment's GLIBC_TUNABLES, or null); nothing when `current` settles that tunable already.
std::optional<std::string> HugePageTunables(const char *current);
// A large termbase puts hundreds of thousands of small tree items on the heap: on huge pages
// the first opening of such a branch faults in a few hundred pages instead of tens of
// thousands, about half its time. glibc reads its tunables only as a process starts, so the
// process starts itself once more with them, then gives its environment back as it found it,
// so that programs it starts (the user's browser) don't inherit them. Call it first in main;
// when the restart fails the process goes on as it is.
void StartWithHugePageHeap(char **argv);

// Creates the ontology and termbase folders when missing; nothing else is checked.
// Throws std::filesystem::filesystem_error, with the platform's message, on failure.
void EnsureProgramFolders();

} // namespace lx
