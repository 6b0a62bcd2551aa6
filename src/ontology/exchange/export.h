#pragma once

#include <QString>
#include <QStringList>

#include <functional>

// The ontology's one text exchange format: a flat list of slot records, one line each, grouped
// by concept, in the single-byte code page with CR LF after every line.
namespace lx {

// The concept's block: its IS-A records, its definition, its subclasses and its local slots,
// one record a line, without the final line end.
QString BuildConceptExport(const QString &identifier);

// Appends the concept's slot records to `records` and counts them on from `count` (a signed
// 16-bit count: beyond 32,767 records it overflows).
void CollectSlotRecords(const QString &identifier, QStringList &records, qint16 &count);

// Writes the blocks of `identifiers`, in their order, to `path` (a fresh file); `exported`
// hears after each block how many are out. StoreError 75 when the file can't be written.
void WriteExportFile(const QString &path, const QStringList &identifiers,
                     const std::function<void(int)> &exported = {});

// The dialog's part of an export: the file name asked for in `folder` (empty: stop), the
// one-button question over an existing file, then the file. False when nothing was written.
bool ExportSelectedConcepts(const QString &folder, const QStringList &identifiers,
                            const std::function<void(int)> &exported = {});

} // namespace lx
