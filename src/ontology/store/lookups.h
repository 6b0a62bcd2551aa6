#pragma once

#include "core/filters.h"

#include <QString>
#include <QStringList>

// Lookups of concepts, languages and subsets in the open ontology (Process().OntoDB), and the
// walks over its IS-A graph. Nothing here keeps state.
namespace lx {

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

} // namespace lx
