#pragma once

#include <QString>

// The open ontology as a SKOS concept scheme in Turtle, UTF-8: for publishing the concept
// system to tools outside the program. Only reads the file.
namespace lx {

// The base IRI offered for an ontology of that name: http://example.org/<name>/, the name
// percent-encoded.
QString DefaultSkosBase(const QString &ontologyName);

// `text` as one IRI path segment: unreserved ASCII as it is, everything else as the
// percent-encoded bytes of its UTF-8.
QString IriSegment(const QString &text);

// `text` as a Turtle string literal with its quotes.
QString TurtleString(const QString &text);

// Writes the open ontology to `path` (replaced when it exists) with every IRI under `base`;
// returns the number of concepts written. StoreError 75 when the file can't be written.
int WriteSkosFile(const QString &path, const QString &base);

// The menu's export of the open ontology: the file asked for through a save dialog, the base
// through an input box offering DefaultSkosBase, then the file and a word on what went out.
// False when the user cancelled either question.
bool ExportOpenOntologyAsSkos();

} // namespace lx
