#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <utility>
#include <vector>

namespace lx::mkseed {

// One data category as its help section shows it.
struct HelpCategory {
    QString id;
    QString parent;
    QString definition;
    QString gi;        // generic identifier: ptr, ref, refObject steer the editor
    QString valueType; // text, picklist, number, date, none, container
    bool needsLang = false;
    QList<std::pair<QString, QString>> names; // language code, name; English first
    QStringList allowedUnder;                 // categories it may be added under
    QStringList values;                       // of a picklist
};

// The data category help: one static page with a contents list and one section per category,
// whose id is the category's identifier, so that "DCHelp.html#5.3x" opens that section. No
// scripts. `categories` come parent before child, in the order of the contents.
QString CategoryHelpPage(const std::vector<HelpCategory> &categories);

} // namespace lx::mkseed
