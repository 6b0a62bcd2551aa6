#pragma once

#include <QString>

#include <functional>

namespace lx {

namespace store {
class Database;
}

// A termbase as a TBX-Basic file (ISO 30042, DCA style, UTF-8): one conceptEntry per term entry,
// its language sections and terms, each element under the data category the TBX map gives it,
// and the backmatter's records as refObjects that the entries point at. Only reads the termbase.
struct TbxExportResult {
    int Entries = 0;
    int Terms = 0;
    int Notes = 0; // elements that went out as notes, for want of a place in TBX-Basic
    // Left out, since TBX wants a term in every entry and in every language section.
    int EntriesWithoutTerms = 0;
    int SectionsWithoutTerms = 0;
};

// Called with the entries written and their number, now and then and once at the end.
using TbxProgress = std::function<void(int done, int total)>;

// Writes the termbase open in `db`, whose file lies at `termbasePath`, to `outPath` (replaced
// when it exists, and only once the whole file is written). Files of the backmatter are named by
// their path relative to the TBX file. StoreError 75 when the file can't be written; the store's
// own errors when `db` isn't a termbase.
TbxExportResult WriteTbxFile(store::Database &db, const QString &termbasePath,
                             const QString &outPath, const TbxProgress &progress = {});

// The same for a termbase file that isn't open: opened read-only for the export.
TbxExportResult ExportTbx(const QString &termbasePath, const QString &outPath,
                          const TbxProgress &progress = {});

// What an export did, in a few words for the user.
QString TbxExportSummary(const TbxExportResult &result);

// The menu's export of the open termbase: the file asked for through a save dialog, then written
// with the hourglass up, and a word on what went out or why nothing did. False when the user
// cancelled or the file couldn't be written, or when no termbase is open (nothing is asked).
bool ExportOpenTermbaseAsTbx(const TbxProgress &progress = {});

} // namespace lx
