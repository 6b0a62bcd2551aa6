#pragma once

#include "termbase/store/tb_editor.h"

#include <QString>

#include <optional>

// The records of the backmatter that entries point at: subject field sets, URLs and FPIs (one
// value each), persons and bibliographic sources (a value and a child per filled field), and
// files of pictures, sound, video, tables and contexts, copied beside the termbase.
namespace lx {

// Asks for the value of a subject field set ("AddSubjectFieldSet"), a URL ("AddUrl") or an FPI
// ("AddFpi") and writes the record under CurrentElemID. False when nothing was written.
bool AddTextRecord(TermbaseEditor &editor, const QString &command);

struct PersonFields {
    QString Alias, Name, Role, Email, Phone, Remarks;
};
struct BiblioFields {
    QString Descriptor, Author, Date, Article, Book, Pages, PHouse, PPlace;
};
// The record under CurrentElemID with a child for each filled field; its number.
qint32 AddPersonRecord(TermbaseEditor &editor, const PersonFields &person);
// Why an alias can't name a person (it names the person's page too), or nothing.
std::optional<QString> AliasProblem(const QString &alias);
qint32 AddBibliographyRecord(TermbaseEditor &editor, const BiblioFields &source);

// The file dialog's filter for a file record's category, or nothing for another category.
std::optional<QString> BinaryRecordFilter(const QString &categoryId);
// Copies `source` under its own name into the "-back" and "-publish" folders and writes its
// record (once per name) under the category's container. False, after a message, when the
// file can't be read, its name can't be kept, or a copy fails; nothing is half-copied.
bool AddBinaryRecord(TermbaseEditor &editor, const QString &categoryId, const QString &source);

} // namespace lx
