#pragma once

#include <QList>
#include <QString>

// The language-dependent names of concepts (table Names) and the checks of the naming dialog.
// A identifier may have any number of names, several in one language; nothing is unique.
namespace lx {

// A row of Languages as the language lists show it.
struct LanguageItem {
    QString Language;
    QString LangId;
    bool Show = false;
};

// Every row of Languages, in the table's own order.
QList<LanguageItem> ReadLanguages();
// The working languages: those rows with Show set, in the same order.
QList<LanguageItem> ReadWorkingLanguages();

// The three boxes of the naming dialog.
struct NamesTexts {
    QString Concept;
    QString Name;
    QString Def;
};

// The OK of the naming dialog under its mode ("Name", "Rename", "Definition"): cleans the box
// the mode edits, asks or warns as needed, and returns false while the dialog must stay. Any
// other mode leaves the boxes alone and accepts.
bool AcceptNamesTexts(const QString &mode, NamesTexts &texts);

// A new row of Names.
void AddName(const QString &identifier, const QString &langId, const QString &name);
// The row with `nameId` takes the language and name; a row that is gone is no error.
void EditName(qint32 nameId, const QString &langId, const QString &name);
void DeleteName(qint32 nameId);

// The first name of a identifier just created, in the default language: the identifier itself
// when AutoName is 1, else the identifier made natural (also for 0, which doesn't turn this
// off). The caller then refills the names on screen.
void AddDefaultName(const QString &identifier);

} // namespace lx
