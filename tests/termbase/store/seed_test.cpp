#include "core/store/database.h"
#include "support/table_rows.h"
#include "termbase_fixture.h"

#include <QSet>

using namespace lx;
using namespace lx::store;
using namespace lx::test;

using NewTermbaseTest = TermbaseFixture;

TEST_F(NewTermbaseTest, HoldsTheSeedRowsAndEveryConceptButTheTopOne)
{
    Database db = createTermbase();
    EXPECT_EQ(TableRows(db, QStringLiteral("charsets"), {u"charsetID", u"description", u"wsd"}),
              SourceRows("tb_charsets.tsv"));
    EXPECT_EQ(
        TableRows(db, QStringLiteral("langs"), {u"langID", u"description", u"charsetID", u"order"}),
        SourceRows("tb_langs.tsv"));
    EXPECT_EQ(TableRows(db, QStringLiteral("datcats"),
                        {u"categoryID", u"GI_name", u"type", u"value_type", u"needs_lang",
                         u"forms_link", u"parentCatID"}),
              SourceRows("tb_datcats.tsv"));
    // The seed tool leaves the kind of value of a category unchecked: a misspelt one goes in.
    static const QSet<QString> valueTypes = {QStringLiteral("text"),   QStringLiteral("picklist"),
                                             QStringLiteral("number"), QStringLiteral("date"),
                                             QStringLiteral("none"),   QStringLiteral("container")};
    for (const QString &row :
         TableRows(db, QStringLiteral("datcats"), {u"categoryID", u"value_type"}))
        EXPECT_TRUE(valueTypes.contains(row.section(QLatin1Char('\t'), 1))) << row.toStdString();
    EXPECT_EQ(TableRows(db, QStringLiteral("datcats_names"), {u"categoryID", u"langID", u"name"}),
              SourceRows("tb_datcats_names.tsv"));
    EXPECT_EQ(TableRows(db, QStringLiteral("elements"), {u"elemID", u"categoryID", u"parentID"}),
              SourceRows("tb_elements.tsv"));
    EXPECT_EQ(TableRows(db, QStringLiteral("picklists"), {u"categoryID", u"value"}),
              SourceRows("tb_picklists.tsv"));
    EXPECT_EQ(TableRows(db, QStringLiteral("valid_families"),
                        {u"parentCategoryID", u"childCategoryID", u"occurrence"}),
              SourceRows("tb_valid_families.tsv"));
    for (const char *table :
         {"TE_CONCEPTS", "TERMS", "pointers", "text_values", "ref_values", "picklist_values",
          "number_values", "date_values", "elements_use_lang", "MetaData"})
        EXPECT_EQ(TableRows(db, QString::fromLatin1(table), {}).size(), 0) << table;

    QStringList expected = TableRows(Process().OntoDB, QStringLiteral("CONCEPTS"), {u"Concept"});
    expected.removeOne(QStringLiteral("ALL"));
    EXPECT_EQ(TableRows(db, QStringLiteral("CONCEPTS"), {u"Concept"}), expected);
    EXPECT_FALSE(expected.isEmpty());
}
