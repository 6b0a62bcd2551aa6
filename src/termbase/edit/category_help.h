#pragma once

#include <QString>
#include <QStringList>

// The way from a data category to its section of the help file beside the program: the help
// has one section a category, found by the category's identifier after "#".
namespace lx {

// The address of a category's help: the help file, "#" and the trimmed identifier. Empty for a
// category of the backmatter ("x..."), which has no help.
QString CategoryHelpAddress(const QString &categoryId);

// The identifier of the category whose name (in the names of the open termbase) is `name`; of
// several, the last in DataCats. Empty when no category has the name.
QString CategoryIdByName(const QString &name);

// The help's list of categories, in DataCats order, without those of the backmatter and those
// beginning with "0": each as the name, " (", the identifier and ")".
QStringList CategoryHelpItems();

// The identifier in an item of that list: what follows the first " (", without the brackets.
// Empty for an empty text.
QString CategoryOfHelpItem(const QString &item);

} // namespace lx
