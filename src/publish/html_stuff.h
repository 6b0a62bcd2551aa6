#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <optional>

// Static HTML pages of the open ontology's concepts. Pages link to each other by file name
// alone, so a folder of them is a small self-contained web site. A page is built from the
// database each time it is written; nothing is cached.
namespace lx {

// The product's web site, named in the stamp of every page.
inline const QString kWebSiteAddress = QStringLiteral("https://lexarbor.org");

// Text for the body of a page: "<", ">" and "&" as entities, so that a value shows as it is
// and never turns into markup.
QString HtmlText(const QString &text);

// The stamp at the head of every page, with `now` as the program shows dates.
QString GeneratedStamp(const QDateTime &now);

// The first two chunks of every page: the head with `identifier` as its title, then the stamp
// and the heading.
QString PageHead(const QString &identifier);
QString PageTitleBlock(const QString &identifier);

// The top concept of the open ontology and the fixed nodes below it, which get pages without
// a table of structures. Compared exactly, case counting.
bool IsFixedTopNode(const QString &identifier);

// Sorts ascending in place under binary comparison: character codes, case counting.
void SortStringList(QStringList &list);

// The page of a concept in `folder`, which comes with its final separator (a backslash is taken
// for one): the folder + the identifier as it stands + ".html". Nothing when the identifier
// holds a separator or the character of code 0, so that the page would land elsewhere.
std::optional<QString> ConceptPagePath(const QString &identifier, const QString &folder);

// The table of the concept's IS-A links, slots and, as the options ask, its ancestors,
// descendants and inherited slots, as one text. The inherited rows run the inheritance engine
// (exclusive mode), which leaves its result in Inherit.
QString BuildConceptStructures(const QString &identifier, bool ancestors, bool descendants,
                               bool inheritedRelations, bool inheritedAttributes);

// Writes the concept's page into `folder` (see ConceptPagePath), replacing the file that is
// there without a question. An identifier that would lead out of the folder is refused with a
// message and nothing is written. A concept that doesn't exist still gets a page.
// StoreError 75 when the file can't be written.
void WriteConceptPage(const QString &identifier, const QString &folder, bool ancestors,
                      bool descendants, bool inheritedRelations, bool inheritedAttributes);

} // namespace lx
