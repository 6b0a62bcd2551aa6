#pragma once

#include <QString>
#include <QStringList>

// Small shared routines on the open ontology (Process().OntoDB): the rules for identifiers and
// for text that goes into queries, lookups of concepts, languages and subsets, and the walks
// over the IS-A graph. Nothing here keeps state.
namespace lx {

// Key filters for identifier boxes: the key code to use, 0 to drop the key.
int FilterConceptKey(int key);
int FilterNamingKey(int key);

QString NormalizeIdentifier(const QString &text);
QString IdentifierToName(const QString &identifier);
QString ReplaceDoubleQuotes(const QString &text);
void FlattenLines(QString &text);

bool ConceptExists(const QString &identifier);
int ConceptType(const QString &identifier);
QString ConceptDefinition(const QString &identifier);
QString GetTopConcept();

QString LanguageNameOf(const QString &code);
QString LanguageCodeOf(const QString &name);
int SubsetIdOf(const QString &name);
QString SubsetNameOf(int subsetId);
long CountSubset(int subsetId);

// The walks fill `list` and return its count; with a count of 0 the list isn't touched.
int GetChildren(const QString &identifier, QStringList &list);
int GetParents(const QString &identifier, QStringList &list);
int GetAncestors(const QString &identifier, QStringList &list);
int GetDescendants(const QString &identifier, QStringList &list);
bool IsLeaf(const QString &identifier);
bool FindInList(const QString &text, const QStringList &list);

} // namespace lx
