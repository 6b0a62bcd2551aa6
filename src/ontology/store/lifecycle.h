#pragma once

#include "ontology/store/onto_editor.h"

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <optional>

// Creating, opening, closing and describing the one open ontology, keeping the process block
// true while doing it. The metadata lives in Process().OntoMeta from open to close; the
// MetaData row on disk is written at creation and again at close.
namespace lx {

// The commands of the ontology editor's "Ontology" menu, whole, with their error handling.
void NewOntology(OntologyEditor &editor);                                   // mnuFileNew
void OpenOntologyByDialog(OntologyEditor &editor);                          // mnuFileOpen
void OpenDroppedOntology(OntologyEditor &editor, const QStringList &files); // a file dropped
void EditOntologyProperties(OntologyEditor &editor);                        // mnuFileProperties

// Opens the file at `path` into the process block and the editor. A failure is reported and
// ends in CloseOntology(path). Callers pass Process().OntoPath.
void OpenOntology(OntologyEditor &editor, QString &path);
// Writes MetaData back (Modified = now), unloads the other windows and empties the editor.
// Every step runs even when the one before failed. `path` is emptied: callers pass
// Process().OntoPath.
void CloseOntology(OntologyEditor &editor, QString &path);

// The check of the properties dialog's OK: the warning to show, or nothing if the name will do.
std::optional<QString> CheckPropertiesName(const QString &name);

// The folder for published reports, named after the metadata name: OntoFolder & name &
// "-publish". With OntoFolder empty, it is relative to the working directory.
QString PublishFolder();

} // namespace lx
