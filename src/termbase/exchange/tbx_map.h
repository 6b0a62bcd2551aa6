#pragma once

#include <QString>
#include <QStringView>

#include <optional>
#include <span>

// How each data category of a termbase stands in a TBX-Basic file (ISO 30042, DCA style), and
// back. One row a category of the seed: the exporter reads it forwards, the importer backwards.
namespace lx::tbx {

enum class Kind {
    Frame,   // the file's own structure: root, header, body, entry, section, term, backmatter
    Heading, // a heading of the category tree, never an element of a termbase
    Basic,   // a TBX-Basic data category: <Element type="Type">
    Note,    // no TBX-Basic counterpart: <note>Word: value</note>
    Record,  // a backmatter record: a refObject in the refObjectSec of type Type
    Item,    // a field of a backmatter record: an item of type Type in its refObject
};

// Where a TBX-Basic data category may stand.
enum Level : unsigned {
    NoLevel = 0,
    ConceptLevel = 1,  // conceptEntry
    LanguageLevel = 2, // langSec
    TermLevel = 4,     // termSec
    AnyLevel = 7,
};

struct Category {
    QStringView Id;   // the seed's categoryID
    QStringView Word; // the seed's type word: it names the category in a note
    Kind Of;
    // Basic: descrip, termNote, admin, ref, xref, note, or transacGrp (see Value). Frame: the
    // TBX element that stands for it. Record: refObject. Item: item.
    QStringView Element;
    // Basic: the type attribute (empty for note; for transacGrp the part beside the transac:
    // "responsibility" for a transacNote that points at a person, "date" for a date). Note:
    // Word. Record: the type of its refObjectSec. Item: the item's type.
    QStringView Type;
    unsigned Levels = NoLevel; // Basic only
    // transacGrp: the text of its transac of type transactionType. Record: the item type of
    // the record's own value.
    QStringView Value = {};
    // Basic: the row chosen when a file is read back and several categories share Element and
    // Type; the others come back as it.
    bool Primary = true;
    // Basic: the element points somewhere: target= names the record in the back matter or the
    // element cross-referenced.
    bool Targets = false;
};

// Every row, in the seed's order.
std::span<const Category> Categories();
const Category *FindCategory(QStringView id);

// A TBX-Basic category of a file read back: the primary row of Element and Type (and, for a
// transacGrp, its transaction type); among two primaries the one whose Targets matches.
const Category *CategoryFromTbx(QStringView element, QStringView type, QStringView value = {},
                                bool hasTarget = false);

bool AllowedAt(const Category &category, Level level);

// Categories whose TBX-Basic data category has a closed list of values.
bool HasFixedValues(QStringView id);
// The TBX-Basic value of a seed value, or nothing when the list has no counterpart (the
// element then goes out as a note). A category without a closed list keeps its value.
std::optional<QString> TbxValue(QStringView id, const QString &seedValue);
// The seed value of a TBX-Basic value of the category, or nothing when it has none.
std::optional<QString> SeedValue(QStringView id, const QString &tbxValue);
// The closed TBX-Basic list of values of an element and type, empty when the list is open.
QStringList FixedTbxValues(QStringView element, QStringView type);

// The text of the note that carries a category without counterpart (or a TBX-Basic category
// where the dialect doesn't allow it, or with a value outside its closed list), and its
// reverse: the category and value of a note written so, or nothing for any other note. A
// Note row goes before a Basic row of the same word.
QString NoteText(QStringView word, const QString &value);
struct NoteValue {
    const Category *Of = nullptr;
    QString Value;
};
std::optional<NoteValue> ParseNote(const QString &text);

// A concept identifier as the id of its conceptEntry, an NCName: ASCII letters, digits and
// hyphens stay, "_" doubles, any other character (and a first character that can't start a
// name) is "_u" with its code point in hex and "_". The escape is one-to-one and never
// yields a ".", so ids of other elements with a "." can't meet one. The reverse gives nothing
// for an id not written so.
QString EntryId(const QString &conceptId);
std::optional<QString> ConceptOfEntryId(const QString &id);

} // namespace lx::tbx
