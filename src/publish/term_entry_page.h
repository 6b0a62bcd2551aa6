#pragma once

#include "core/store/recordset.h"

#include <QString>
#include <QVariant>

// Static HTML pages of the open termbase's term entries: the entry's own data, one table per
// language section with its terms, and on request the concept's structures. A page is named
// after the entry's concept, so that cross-references make the pages a web.
namespace lx {

// One element of the tree as a value: its text (or link), the category's value type and the
// language it carries. Outputs the element doesn't give stay as they came; a language read
// leaves rsElemLang on the element's row. A value of an ordinary category comes escaped for a
// page, or as stored when `forPage` is false (the edit frame's).
void ReadElementValue(qint32 elemId, QVariant &value, QString &valueType, QString &language,
                      bool forPage = true);

// The elements of `rs` with their subtrees as text; terms below them are left to the language
// tables.
QString ElementsToHtml(store::Recordset &rs);

// Writes the page of the entry `elemId` of `entryConcept` into `folder` (with its final separator),
// replacing the file that is there. The options reach the table of structures.
void WriteTermEntryPage(const QString &entryConcept, qint32 elemId, const QString &folder,
                        bool ancestors, bool descendants, bool inheritedRelations,
                        bool inheritedAttributes);

} // namespace lx
