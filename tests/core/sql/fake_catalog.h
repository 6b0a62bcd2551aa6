#pragma once

#include "core/store/sql/jetsql.h"

#include <vector>

// A small catalog in the shape of the program's files, for translating queries in tests.
namespace lx::test {

using store::dbBoolean;
using store::dbDate;
using store::dbLong;
using store::dbMemo;
using store::dbText;

inline const std::vector<store::sql::CatalogTable> &FakeTables()
{
    static const std::vector<store::sql::CatalogTable> tables = {
        {"CONCEPTS",
         {{"Concept", dbText}, {"Definition", dbMemo}, {"Type", dbLong}, {"Subset_ID", dbLong}}},
        {"ISA", {{"Concept", dbText}, {"ISA", dbText}}},
        {"elements", {{"elemID", dbLong}, {"categoryID", dbText}, {"parentID", dbLong}}},
        {"TE_CONCEPTS", {{"elemID", dbLong}, {"Concept", dbText}}},
        {"text_values", {{"elemID", dbLong}, {"value", dbText}}},
        {"datcats", {{"categoryID", dbText}, {"parentCatID", dbText}}},
        {"datcats_names", {{"categoryID", dbText}, {"langID", dbText}, {"name", dbText}}},
        {"langs",
         {{"langID", dbText},
          {"order", dbLong},
          {"Default", dbBoolean},
          {"Date", dbDate},
          {"From", dbText},
          {"Name", dbText},
          {"Value", dbText}}},
        {"RELS", {{"Concept1", dbText}, {"Rel", dbText}, {"Concept2", dbText}}},
        {"DBS", {{"DBName", dbText}}},
    };
    return tables;
}

inline store::sql::TableLookup FakeLookup()
{
    return [](QStringView name) -> const store::sql::CatalogTable * {
        for (const auto &t : FakeTables()) {
            if (name.compare(t.name, Qt::CaseInsensitive) == 0)
                return &t;
        }
        return nullptr;
    };
}

} // namespace lx::test
