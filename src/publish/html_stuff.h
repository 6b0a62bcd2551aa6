#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

// Static HTML pages of the open ontology's concepts. Pages link to each other by file name
// alone, so a folder of them is a small self-contained web site. A page shows the database as
// it is when the page is written: a page on its own asks the store, and a run over the whole
// ontology reads it once as it starts, nothing else writing to it until the run ends.
namespace lx {

struct InheritRow;

// A relation or attribute row as a page lists it: the slot's name, its filler or value, and
// whether it is a default (a Null Default is none).
struct PageSlot {
    QString Name;
    QString Value;
    bool Default = false;
    friend bool operator==(const PageSlot &, const PageSlot &) = default;
};

// Where a page takes what it shows, asked piece by piece in the order the page is laid out.
// One page on its own asks the store; a run over the whole ontology answers from what it read
// once. Both must give the same answers, the rows of Inherit included.
class ConceptPageSource {
public:
    virtual ~ConceptPageSource() = default;
    // The definition, empty when the concept has none or isn't there.
    virtual QString definition(const QString &identifier) = 0;
    // The ISA rows' parents, ordered by them.
    virtual QStringList parents(const QString &identifier) = 0;
    // As GetChildren, GetDescendants and GetAncestors give them.
    virtual QStringList children(const QString &identifier) = 0;
    virtual QStringList descendants(const QString &identifier) = 0;
    virtual QStringList ancestors(const QString &identifier) = 0;
    // The concept's own slots, ordered by their name.
    virtual std::vector<PageSlot> relations(const QString &identifier) = 0;
    virtual std::vector<PageSlot> attributes(const QString &identifier) = 0;
    // The rows of Inherit after ComputeInheritance (exclusive mode) with `include`.
    virtual std::vector<InheritRow> inherited(const QString &identifier,
                                              const QString &include) = 0;
};

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
// The same table from `source`.
QString BuildConceptStructures(ConceptPageSource &source, const QString &identifier, bool ancestors,
                               bool descendants, bool inheritedRelations, bool inheritedAttributes);

// Writes the concept's page into `folder` (see ConceptPagePath), replacing the file that is
// there without a question. An identifier that would lead out of the folder is refused with a
// message and nothing is written. A concept that doesn't exist still gets a page.
// StoreError 75 when the file can't be written.
void WriteConceptPage(const QString &identifier, const QString &folder, bool ancestors,
                      bool descendants, bool inheritedRelations, bool inheritedAttributes);
// The same page from `source`.
void WriteConceptPage(ConceptPageSource &source, const QString &identifier, const QString &folder,
                      bool ancestors, bool descendants, bool inheritedRelations,
                      bool inheritedAttributes);

} // namespace lx
