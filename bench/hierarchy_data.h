#pragma once

#include <QString>

namespace lx::bench {

inline constexpr int kHierarchyDepth = 15;

// An ontology file of kConcepts concepts in an IS-A hierarchy under the top concept "ALL"
// (type 100): at most kHierarchyDepth levels below it, about one concept in ten with a second
// parent, no cycles. Made once per run.
const QString &HierarchyFile();
// A concept kHierarchyDepth levels below "ALL" in that file.
QString DeepConcept();

} // namespace lx::bench
