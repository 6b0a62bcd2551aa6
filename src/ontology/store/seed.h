#pragma once

#include "core/store/database.h"

namespace lx {

// Copies the seed rows (concepts, links, slots, languages, subsets) from the seed file
// beside the program into a new ontology. The seed file and its content come with the
// ontology life cycle; until then a new ontology starts with its tables empty.
void CopySeedContent(store::Database &db);

} // namespace lx
