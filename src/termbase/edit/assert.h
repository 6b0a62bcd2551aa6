#pragma once

#include "termbase/store/tb_editor.h"

#include <QDate>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

// Asserting: the one place where term entries, language sections, terms, attributes and
// references to backmatter records are written, and the cross-reference made by a second click
// in the element tree. Each write stands by itself, as the editor's other writes do.
namespace lx {

// The termbase's concepts, for the entry list, and the language codes of `langs`.
QStringList ReadTermbaseConcepts();
QStringList ReadLanguageCodes();

// The edit frame as the assert reads it.
struct AssertInput {
    enum class Source { None, Text, Picklist, Refs, Number, Concepts, Date };
    QString CategoryId;         // lblEdit
    Source From = Source::None; // the first visible control, in the frame's order
    QString Value;              // its text (a slider's number as text)
    bool LanguageShown = false;
    QString Language; // the text of lstLang
    qint32 Parent = 0;
};

// Where an assert went, for the window to show it.
struct AssertResult {
    enum class Branch { None, Term, Entry, Backmatter, General };
    Branch Went = Branch::None;
    bool Written = false;
    bool SectionsFound = false; // a term: the concept had sections of some language
    bool NewSection = false;    // a term: a section of its language was made
    bool RefusedForLanguage = false;
};
AssertResult AssertElement(TermbaseEditor &editor, const AssertInput &input);

// A new element numbered after the highest in use; its number.
qint32 AddElementRow(TermbaseEditor &editor, const QString &category, qint32 parent);

// A date typed as dd/mm/yyyy; a text that is no day of the calendar is told, and gives nothing.
std::optional<QDate> AcceptedDate(const QString &text);

// The cross-reference from `source` to the clicked `target`, of the pane's `category`: its
// checks (told) and, if they pass, its rows. True when written.
bool CompleteCrossReference(TermbaseEditor &editor, qint32 source, qint32 target,
                            const QString &targetCategory, const QString &category);

// The message that starts the picking of a cross-reference.
void TellCrossReferencePicking();

} // namespace lx
