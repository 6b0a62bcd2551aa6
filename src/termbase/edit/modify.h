#pragma once

#include <QString>
#include <QVariant>

// Changing and removing elements: a value through the edit frame, the text of a term or a
// backmatter record in place, and the deletion of an element with its branch and every element
// that points at it.
namespace lx {

// The value written back by the edit frame: the type names the value table ("text",
// "picklist", "number", "date"); `language`, when shown, replaces the element's own.
struct ElementEdit {
    qint32 Element = 0;
    QString ValueType;
    QVariant Value;
    bool LanguageShown = false;
    QString Language;
};
// False, after TB004, when the element has no row in the value table; nothing is written then.
bool WriteElementValue(const ElementEdit &edit);
// An empty text or the number 0: the edit asks to delete the element instead.
bool IsEmptyEditValue(const QVariant &value);

// Whether the text of a node of `kind` under a node of `parentKind` may be edited in place.
bool LabelEditAllowed(const QString &kind, const QString &parentKind);
// The new text of a term (in TERMS) or a backmatter record (in text_values). False when the
// element or its row is missing: the label stays as it was.
bool RenameElement(qint32 elemId, const QString &kind, const QString &text);

// The question before a delete; true on yes.
bool ConfirmElementDelete();

// What a delete took with it.
struct ElementDeletion {
    qint32 Parent = 0;           // of the deleted element; 0 when it was not found
    bool SectionDeleted = false; // a term's section, left empty, went too
    int Referrers = 0;           // elements that pointed at `pointedAt` and went first
};
// Deletes every element that points at `pointedAt` (each with its branch), then `elemId` with
// its branch, values and pointers; for a term, its section too when nothing is left in it.
// A failed step doesn't stop the next.
ElementDeletion DeleteElement(qint32 elemId, qint32 pointedAt, bool isTerm);

} // namespace lx
