#pragma once

#include <QList>
#include <QString>

#include <optional>

// The element tree of a termbase as the editor shows it: what a row of `elements` looks like as
// a node (key, kind, text), the children of an element one level at a time, and the way up from
// an element to the root. No widgets: the editor window turns these into tree items.
namespace lx {

// The text of the one child that stands under a node whose branch isn't loaded yet.
inline const QString PlaceholderText = QStringLiteral("FCNGMPSSBLND");
// The kind (and image key) of the root.
inline const QString RootKind = QStringLiteral("termbase");

// "n1" for the root, else "n", a blank and the number.
QString ElementKey(qint32 elemId);
// The number back from a key: the first character cut, the rest read as a number.
qint32 KeyElement(const QString &key);

// Where the text of a node comes from, besides the category's name.
enum class ElementSource {
    Name,           // the category's name
    Concept,        // Concept in TE_CONCEPTS
    Language,       // langID in elements_use_lang, then the language's name
    Term,           // term in TERMS
    RefValue,       // value in ref_values
    TextValue,      // value in text_values
    PointerRef,     // targetID in pointers, then the target's value in ref_values
    PointerText,    // targetID in pointers, then the target's value in text_values
    PointerTextName // the same, after the name and ": "
};

struct ElementRule {
    QString Kind; // empty for a language section: it comes with the language
    ElementSource Source = ElementSource::Name;
};
// How elements of a category are shown; the first rule that fits counts.
ElementRule ElementRuleOf(const QString &categoryId);

// The text and kind of a language section of `langId`; with no language row, kind "world" and
// the category's name.
struct ElementLook {
    QString Kind;
    QString Text;
};
ElementLook LanguageSectionLook(const std::optional<QString> &langId, const QString &name);

// One value of an element as the open recordsets hold it; nothing when the row is missing.
// `Source` is one of Concept, Language, Term, RefValue, TextValue, or PointerRef/PointerText for
// the pointer's target number.
std::optional<QString> SeekElementValue(ElementSource source, qint32 elemId);

// The look of one element of `categoryId`, its values read from the open recordsets.
ElementLook ClassifyElement(qint32 elemId, const QString &categoryId);

// One child of an element, ready to become a node.
struct ElementNode {
    qint32 Parent = 0;
    qint32 ElemID = 0;
    QString CategoryID;
    QString Kind;
    QString Text;
    bool HasChildren = false; // then it gets the placeholder child
};

// The children of an element: under the root in the table's order, under any other in the
// order of categoryID; `ofRoot` says which of the two reads applies.
QList<ElementNode> ReadElementChildren(qint32 elemId, bool ofRoot);
// The elements `depth` levels below `top` in one read, each branch as ReadElementChildren reads
// it (in category order when `ordered`), the branches in the order of their parents' numbers.
QList<ElementNode> ReadElementLevel(qint32 top, int depth, bool ordered = true);

// The element and its ancestors below the root, the element first, read through rsElements. A
// number without a row ends the list there; so does a parent seen twice, in a damaged file.
QList<qint32> ElementPath(qint32 elemId);

// The target of a cross-reference element: the targetID of its first row in pointers; 0 when
// there is none.
qint32 CrossRefTarget(qint32 elemId);

// The file name of the backmatter record an element points at (its value in ref_values), or
// nothing when the pointer or the record is missing.
std::optional<QString> BackmatterFileOf(qint32 elemId);

} // namespace lx
