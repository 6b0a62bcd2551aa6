#include "core/store/database.h"
#include "termbase_fixture.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QSet>

#include <utility>

using namespace lx;
using namespace lx::store;

namespace {

// One seed source as text rows "value<tab>value...", its header line dropped.
QStringList SourceRows(const char *file)
{
    QFile f(QDir(QStringLiteral(LEXARBOR_SEED_SOURCES)).filePath(QString::fromLatin1(file)));
    EXPECT_TRUE(f.open(QIODevice::ReadOnly)) << file;
    QStringList rows;
    bool header = true;
    for (const QString &line : QString::fromUtf8(f.readAll()).split(QLatin1Char('\n'))) {
        if (line.isEmpty() || line.startsWith(QLatin1Char('#')))
            continue;
        if (!std::exchange(header, false))
            rows << line;
    }
    rows.sort();
    return rows;
}

QString Text(const QVariant &v)
{
    if (v.isNull())
        return QStringLiteral("-");
    if (v.typeId() == QMetaType::Bool)
        return v.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    return v.toString();
}

QStringList TableRows(Database &db, const QString &table, std::initializer_list<QStringView> fields)
{
    QStringList rows;
    Recordset rs = db.OpenRecordset(table, dbOpenSnapshot);
    for (; !rs.Eof(); rs.MoveNext()) {
        QStringList values;
        for (QStringView f : fields)
            values << Text(rs.Value(f));
        rows << values.join(QLatin1Char('\t'));
    }
    rows.sort();
    return rows;
}

struct Category {
    QString gi, type, valueType, parent;
    bool needsLang = false;
};

// The seeded category system as a new termbase holds it.
class SeedCategories : public TermbaseFixture {
protected:
    void SetUp() override
    {
        TermbaseFixture::SetUp();
        db = createTermbase();
        for (Recordset rs = db.OpenRecordset(QStringLiteral("datcats"), dbOpenSnapshot); !rs.Eof();
             rs.MoveNext())
            cats.insert(rs.Value(u"categoryID").toString(),
                        {rs.Value(u"GI_name").toString(), rs.Value(u"type").toString(),
                         rs.Value(u"value_type").toString(), rs.Value(u"parentCatID").toString(),
                         rs.Value(u"needs_lang").toBool()});
        for (Recordset rs = db.OpenRecordset(QStringLiteral("datcats_names"), dbOpenSnapshot);
             !rs.Eof(); rs.MoveNext())
            names[rs.Value(u"langID").toString()].insert(rs.Value(u"categoryID").toString(),
                                                         rs.Value(u"name").toString());
        for (Recordset rs = db.OpenRecordset(QStringLiteral("valid_families"), dbOpenSnapshot);
             !rs.Eof(); rs.MoveNext())
            families.insert({rs.Value(u"parentCategoryID").toString(),
                             rs.Value(u"childCategoryID").toString()});
    }
    void TearDown() override
    {
        db.Close();
        TermbaseFixture::TearDown();
    }

    bool allowed(const char *parent, const char *child) const
    {
        return families.contains({QString::fromLatin1(parent), QString::fromLatin1(child)});
    }

    Database db;
    QHash<QString, Category> cats;
    QHash<QString, QHash<QString, QString>> names; // language, category, name
    QSet<QPair<QString, QString>> families;
};

using NewTermbaseTest = TermbaseFixture;

} // namespace

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

// The categories that the editor's logic names, with what the logic needs of them.
TEST_F(SeedCategories, EveryCategoryTheEditorNamesIsThereWithTheShapeItNeeds)
{
    const QStringList tops = {QStringLiteral("0"),     QStringLiteral("1"),
                              QStringLiteral("2"),     QStringLiteral("descrip"),
                              QStringLiteral("admin"), QStringLiteral("100")};
    for (const QString &top : tops)
        EXPECT_EQ(cats.value(top).parent, QStringLiteral("DC")) << top.toStdString();

    const QStringList ptr = {"3.2x",  "3.5x",   "9.2.1", "9.2.2",   "9.2.3",
                             "9.2.4", "10.6.1", "10.18", "10.18.5", "10.18.6"};
    for (const QString &id : ptr) {
        EXPECT_EQ(cats.value(id).gi, QStringLiteral("ptr")) << id.toStdString();
        EXPECT_FALSE(cats.value(id).type.isEmpty()) << "a cross-reference's text";
    }
    const QStringList ref = {"5.5.1", "5.5.2", "5.5.3", "5.5.4", "5.5.5",
                             "5.3x",  "4.2",   "9.2",   "10.3.1"};
    for (const QString &id : ref)
        EXPECT_EQ(cats.value(id).gi, QStringLiteral("ref")) << id.toStdString();
    EXPECT_EQ(cats.value(QStringLiteral("x5.5")).gi, QStringLiteral("refObject"));
    EXPECT_EQ(cats.value(QStringLiteral("x11.1")).gi, QStringLiteral("refObject"));
    // Only the two file records are made by the file dialog.
    for (auto it = cats.cbegin(); it != cats.cend(); ++it)
        if (it.value().gi == QLatin1String("refObject")) {
            EXPECT_TRUE(it.key() == QLatin1String("x5.5") || it.key() == QLatin1String("x11.1"));
        }

    EXPECT_EQ(cats.value(QStringLiteral("1")).valueType, QStringLiteral("text"));
    EXPECT_TRUE(cats.value(QStringLiteral("1")).needsLang);
    EXPECT_EQ(cats.value(QStringLiteral("3.4")).valueType, QStringLiteral("number"));

    QStringList backmatter = {"xx4",      "x4.2",     "x7.2",    "x9.1",    "x10.3",
                              "x10.21.1", "x10.21.2", "x10.2.2", "x10.20",  "x5.5",
                              "x11.1",    "10.20",    "4",       "10.21.1", "10.21.2"};
    for (int i = 1; i <= 11; ++i)
        backmatter << QStringLiteral("x%1").arg(i);
    for (int i = 1; i <= 10; ++i)
        backmatter << QStringLiteral("10.2.2.%1").arg(i);
    for (int i = 2; i <= 6; ++i)
        backmatter << QStringLiteral("x10.2.2.%1").arg(i);
    for (int i : {1, 2, 3, 4, 5, 6, 8})
        backmatter << QStringLiteral("x10.20.%1").arg(i);
    for (const QString &id : backmatter)
        EXPECT_TRUE(cats.contains(id)) << id.toStdString();
    // Records found by their text: a person's alias, a source's descriptor, a set's name.
    for (const char *id : {"xx4", "x10.2.2", "x10.20", "x10.21.1", "x10.21.2"})
        EXPECT_EQ(cats.value(QString::fromLatin1(id)).valueType, QStringLiteral("text")) << id;
}

TEST_F(SeedCategories, EveryReferenceInTheCategoryTablesIsACategory)
{
    for (auto it = cats.cbegin(); it != cats.cend(); ++it) {
        const QString &id = it.key();
        if (id == QLatin1String("DC"))
            continue;
        EXPECT_TRUE(cats.contains(it.value().parent)) << id.toStdString();
        static const QSet<QString> valueTypes = {"text", "picklist", "number",
                                                 "date", "none",     "container"};
        EXPECT_TRUE(valueTypes.contains(it.value().valueType)) << id.toStdString();
    }
    for (const auto &[parent, child] : std::as_const(families)) {
        EXPECT_TRUE(cats.contains(parent)) << parent.toStdString();
        EXPECT_TRUE(cats.contains(child)) << child.toStdString();
    }
    // Each picklist category has its values, and only those have any.
    QSet<QString> withValues;
    for (Recordset rs = db.OpenRecordset(QStringLiteral("picklists"), dbOpenSnapshot); !rs.Eof();
         rs.MoveNext())
        withValues << rs.Value(u"categoryID").toString();
    for (auto it = cats.cbegin(); it != cats.cend(); ++it)
        EXPECT_EQ(withValues.contains(it.key()), it.value().valueType == QLatin1String("picklist"))
            << it.key().toStdString();
}

TEST_F(SeedCategories, EveryCategoryHasANameInTheLanguagesOfTheOptions)
{
    for (const char *lang : {"en", "es"})
        for (auto it = cats.cbegin(); it != cats.cend(); ++it)
            EXPECT_FALSE(names.value(QString::fromLatin1(lang)).value(it.key()).isEmpty())
                << lang << " " << it.key().toStdString();
    // The editor looks for these two folders by their text, whatever the language.
    for (auto lang = names.cbegin(); lang != names.cend(); ++lang) {
        EXPECT_EQ(lang.value().value(QStringLiteral("0.2")), QStringLiteral("body"));
        EXPECT_EQ(lang.value().value(QStringLiteral("0.5")), QStringLiteral("backmatter"));
        EXPECT_EQ(lang.value().size(), cats.size()) << lang.key().toStdString();
    }
}

TEST_F(SeedCategories, EveryCategoryIsOfferedWhereItBelongs)
{
    EXPECT_TRUE(allowed("0.2", "0.3")) << "term entries under body";
    EXPECT_TRUE(allowed("0.3", "1")) << "terms under a term entry";
    EXPECT_FALSE(allowed("0.4", "1")) << "a term goes through its entry, which finds the section";
    EXPECT_TRUE(allowed("all", "8")) << "notes everywhere";
    EXPECT_TRUE(allowed("0.3", "5.1"));
    EXPECT_TRUE(allowed("1", "2.1"));
    EXPECT_TRUE(allowed("x3", "x10.2.2"));
    EXPECT_TRUE(allowed("x2", "x5.5"));
    EXPECT_TRUE(allowed("x11", "x11.1"));
    for (const auto &[parent, child] : std::as_const(families))
        EXPECT_NE(child, QStringLiteral("0.4")) << "language sections are the program's";

    // Everything that holds a value can be added somewhere; what can't is a folder of the
    // frame, a heading of the category pane or the language section.
    QSet<QString> children;
    for (const auto &[parent, child] : std::as_const(families))
        children << child;
    for (auto it = cats.cbegin(); it != cats.cend(); ++it)
        if (it.value().valueType != QLatin1String("container")) {
            EXPECT_TRUE(children.contains(it.key())) << it.key().toStdString();
        }
    // Entries and terms never stand inside backmatter records, nor records in entries.
    for (const auto &[parent, child] : std::as_const(families)) {
        const bool backParent = parent.startsWith(QLatin1Char('x'));
        const bool backChild = child.startsWith(QLatin1Char('x'));
        if (parent != QLatin1String("all")) {
            EXPECT_EQ(backParent, backChild) << parent.toStdString() << " " << child.toStdString();
        }
    }
}

TEST_F(SeedCategories, TheFixedFrameHangsBelowTheRoot)
{
    QHash<int, std::pair<QString, int>> elements;
    for (Recordset rs = db.OpenRecordset(QStringLiteral("elements"), dbOpenSnapshot); !rs.Eof();
         rs.MoveNext())
        elements.insert(rs.Value(u"elemID").toInt(),
                        {rs.Value(u"categoryID").toString(), rs.Value(u"parentID").toInt()});
    EXPECT_EQ(elements.value(1).first, QStringLiteral("0"));
    EXPECT_EQ(elements.value(3), std::make_pair(QStringLiteral("0.2"), 1));
    QHash<QString, int> byCategory;
    for (auto it = elements.cbegin(); it != elements.cend(); ++it)
        byCategory.insert(it.value().first, it.key());
    const int back = byCategory.value(QStringLiteral("0.5"));
    EXPECT_EQ(elements.value(back).second, 1);
    for (int i = 1; i <= 11; ++i)
        EXPECT_EQ(elements.value(byCategory.value(QStringLiteral("x%1").arg(i))).second, back) << i;
}
