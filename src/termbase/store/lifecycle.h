#pragma once

#include "termbase/store/tb_editor.h"

#include <QString>

#include <optional>

// Creating, opening and closing the one open termbase, and its options. The metadata lives in
// Process().TermMeta from open to close; the MetaData row on disk is written at creation and
// again at close.
namespace lx {

// The commands of the termbase editor's "File" and "Tools" menus, with their error handling.
void NewTermbase(TermbaseEditor &editor);            // mnuFileNew
void OpenTermbaseByDialog(TermbaseEditor &editor);   // mnuFileOPen
void CloseTermbaseCommand(TermbaseEditor &editor);   // mnuFileClose, and the first half of Exit
void EditTermbaseProperties(TermbaseEditor &editor); // mnuFileProperties
void SetTermbaseOptions(TermbaseEditor &editor);     // mnuToolsOptions

// Opens the file at `path` under the open ontology. A file of another working ontology is
// refused, and `path` is emptied: callers pass Process().TermPath.
void OpenTermbase(TermbaseEditor &editor, QString &path);
// The working ontology a termbase file names, read without writing to the file; a file that
// can't be read gets the message of a failed open, and nothing.
std::optional<QString> WorkingOntologyOf(const QString &path);
// Opens a termbase named outside the program (its file given to the program at start) as the
// open-by-dialog command would after its dialog.
void OpenNamedTermbase(TermbaseEditor &editor, const QString &path);

// Writes MetaData back (Modified = now, Ontology untouched), closes the file and empties the
// editor.
void CloseTermbase(TermbaseEditor &editor);

// The folders beside a termbase, named after its metadata name.
QString TermbasePublishFolder(const QString &name);
QString TermbaseBackFolder(const QString &name);

} // namespace lx
