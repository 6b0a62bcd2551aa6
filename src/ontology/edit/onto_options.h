#pragma once

#include "core/process.h"
#include "ontology/store/onto_editor.h"

#include <QList>
#include <QString>

#include <optional>

// The user settings of the open ontology as the options dialog edits them. They live in
// Process().OntoMeta and reach the file at close; only the working languages (Languages.Show)
// are written at once.
namespace lx {

// The parents limit the dialog shows: a stored value from 1 to 4, else nothing.
std::optional<int> ShownMaxParents(const OntoMetaData &meta);
// The list mode's option in the dialog: 1 optMy, 2 optTop, 3 optEvery for any other value.
int ListTopOption(quint8 listTop);

// The parents box read as a byte: error 13 for a text that isn't a number, 6 outside 0 to 255.
quint8 TextAsByte(const QString &text);
// The number at the start of a text, 0 if none, as a typed box holds it.
int LeadingNumber(const QString &text);

// The dialog as the user left it.
struct OntoOptionsResult {
    QString NoParents;       // "0" after Cancel
    quint8 ListTop = 3;      // from the selected option
    QList<bool> Shown;       // the ticks of the working languages, in the table's order
    QString DefaultLanguage; // the name chosen as default language
    bool Naming = false;
};

// Takes the dialog back into the metadata and the languages. A parents box of "0" (Cancel)
// skips the parents limit and the list mode, and only those: the languages, the default
// language and the naming rule are taken whatever button closed the dialog.
void StoreOntoOptions(const OntoOptionsResult &result);

// StoreOntoOptions, then the list rebuilt under its mode and the counts shown.
void ApplyOntoOptions(const OntoOptionsResult &result, OntologyEditor &editor);

} // namespace lx
