#pragma once

#include "termbase/edit/records.h"

#include <QString>

// The page of a person of the backmatter, which entries that name the person link to.
namespace lx {

// The page's file in the termbase's "-back" folder: "per-" and the alias.
QString PersonPagePath(const QString &alias);
// Writes the page anew: the alias, then each filled field.
void WritePersonPage(const PersonFields &person);

} // namespace lx
