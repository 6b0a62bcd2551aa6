#pragma once

#include <QString>

namespace lx::bench {

inline constexpr int kHierarchyDepth = 15;
inline constexpr int kLargeConcepts = 350000;

// An ontology file of kConcepts concepts in an IS-A hierarchy under the top concept "ALL"
// (type 100): at most kHierarchyDepth levels below it, about one concept in ten with a second
// parent, no cycles. Made once per run.
const QString &HierarchyFile();
// A concept kHierarchyDepth levels below "ALL" in that file.
QString DeepConcept();

// The same kind of hierarchy with kSmallConcepts concepts, made once per run.
inline constexpr int kSmallConcepts = 10000;
const QString &SmallHierarchyFile();

// The same kind of hierarchy with kLargeConcepts concepts, ready to open as an ontology
// (MetaData, a subset, languages); its rows are written in one transaction. Made once per run,
// unless LEXARBOR_BENCH_LARGE_FILE names a copy made before (lexarbor-open-probe --write).
const QString &LargeHierarchyFile();
// A concept of the large hierarchy with about 20,000 descendants.
QString MidConcept();
// How many descendants MidConcept has.
int MidDescendants();

// A file of that name in the folder of the hierarchy files.
QString Beside(const QString &name);
// Copies `from` to `to`, over what stood there, side files of the store included. Throws
// std::runtime_error when it can't.
void CopyFresh(const QString &from, const QString &to);

// Adds what an open needs to a hierarchy file (MetaData, a subset, two languages) and, on
// `deep`, names, slots and a note, so that its view has something in every list.
void MakeOpenable(const QString &path, const QString &deep);

} // namespace lx::bench
