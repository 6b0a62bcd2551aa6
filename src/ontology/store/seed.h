#pragma once

#include "core/file_steps.h"

#include <QString>

namespace lx {

// Fills the new ontology at OntoPath with the rows of the seed file: subsets, concepts, IS-A
// links, inverses, the domains and ranges in RELATIONS, languages. OntoDB is first opened anew
// on OntoPath. Store errors go to the caller; a missing or empty seed table stops the copy at
// MoveFirst and leaves the file half filled.
void CopySeedContent();

// Puts the copy of res.dat built into the program at SeedDatabasePath() when no file is there,
// so a fresh program folder can make ontologies; an existing file is left as it is. False if the
// copy can't be made. Defined with the built-in copy itself, in lexarbor_seed_data.
bool EnsureSeedFile();

// The data category help beside the program (AppPath, "DCHelp.html"), put there in the same way
// from the copy built into the program. Returns its path, or an empty string if the copy can't
// be made.
QString EnsureHelpFile();

} // namespace lx
