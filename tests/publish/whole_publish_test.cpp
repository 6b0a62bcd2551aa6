// The whole publish builds its pages from the ontology read once; every page must be the page
// that the writer of one page, asking the store, writes in the same order, and Inherit must be
// left as that writer leaves it.
#include "core/store/database.h"
#include "ontology/store/seed.h"
#include "page_fixture.h"
#include "publish/ontology_site.h"
#include "publish/whole_ontology_source.h"
#include "support/seed_home.h"

#include <QDir>
#include <QMap>

#include <random>

using namespace lx;

namespace {

QString S(const char *text)
{
    return QString::fromUtf8(text);
}

// The pages of a folder by file name, the date of each stamp taken out; the index and frame
// page left aside.
QMap<QString, QByteArray> PagesIn(const QString &folder)
{
    QMap<QString, QByteArray> pages;
    for (const QString &name : QDir(folder).entryList(QDir::Files)) {
        if (name.startsWith(QStringLiteral("site-")))
            continue;
        QByteArray page = FileBytes(folder + name);
        const QByteArray head = "Updated: ";
        const qsizetype from = page.indexOf(head) + head.size();
        const qsizetype to = page.indexOf("</SMALL>", from);
        if (from >= head.size() && to >= 0)
            page.replace(from, to - from, "NOW");
        pages.insert(name, page);
    }
    return pages;
}

void SetInherit(const std::vector<InheritRow> &rows)
{
    ClearInherit();
    store::Recordset &rs = Process().rsInherit;
    for (const InheritRow &row : rows) {
        rs.AddNew();
        rs.Collect(u"Attr", row.Attr);
        rs.Collect(u"Value", row.Value);
        rs.Collect(u"From", row.From);
        rs.Update();
    }
}

// Publishes the open ontology into root/fast, then writes the page of each concept into
// root/slow one at a time in table order, from the rows of Inherit the publish began with.
// Returns the pages, which the caller may look into further.
QMap<QString, QByteArray> ExpectPublishIsPageByPage(const QString &root)
{
    const QString fast = root + QStringLiteral("/fast/");
    const QString slow = root + QStringLiteral("/slow/");
    EXPECT_TRUE(QDir().mkpath(fast) && QDir().mkpath(slow));
    const std::vector<InheritRow> before = InheritRows();
    const int written = PublishWholeOntology(fast, QStringLiteral("site"));
    const std::vector<InheritRow> afterPublish = InheritRows();

    SetInherit(before);
    const QStringList concepts =
        store::ReadColumn(Process().OntoDB, QStringLiteral("CONCEPTS"), u"Concept");
    for (const QString &id : concepts)
        WriteConceptPage(id, slow, true, true, true, true);
    EXPECT_EQ(written, concepts.size());
    EXPECT_EQ(afterPublish, InheritRows());

    const QMap<QString, QByteArray> published = PagesIn(fast);
    const QMap<QString, QByteArray> oneByOne = PagesIn(slow);
    EXPECT_EQ(published.keys(), oneByOne.keys());
    for (auto it = oneByOne.cbegin(); it != oneByOne.cend(); ++it)
        EXPECT_EQ(published.value(it.key()).toStdString(), it.value().toStdString())
            << it.key().toStdString();
    return published;
}

// A generated ontology with what makes the engine and the walks take care: several parents,
// a cycle, blocked and default slots, a blocking value given as a default, a slot repeated
// under names equal but for case, links that spell a concept in another case, values Inherit
// refuses (too long, Null), orphans, fixed top nodes, and names, notes and subsets that the
// pages don't show.
class GeneratedOntologyTest : public ConceptPageTest {
protected:
    void SetUp() override
    {
        ConceptPageTest::SetUp();
        const store::WriteBatch batch(db);
        std::mt19937 rng(19);
        const auto pick = [&](int n) { return int(rng() % unsigned(n)); };
        for (const char *top : {"OBJECT", "EVENT"})
            isa(S(top), S("ALL"));
        const QStringList rels{S("HAS-PART"), S("MADE-OF"), S("USED-BY"), S("LOCATED-IN")};
        const QStringList attrs{S("COLOR"), S("WEIGHT"), S("SIZE")};
        QStringList ids{S("OBJECT"), S("EVENT")};
        for (int i = 0; i < 120; ++i) {
            const QString id = QStringLiteral("C-%1").arg(i);
            if (i % 3 == 0)
                define(id, i % 2 ? QVariant(S("A <thing> & more")) : QVariant());
            // A few concepts stand right below the top, which leaves their inherited rows to
            // the page before them.
            const QString parent = i % 17 == 0 ? S("ALL") : ids[pick(int(ids.size()))];
            isa(id, parent);
            const QString second = ids[pick(int(ids.size()))];
            if (i % 4 == 1 && second != parent)
                isa(id, second);
            ids << id;
        }
        for (int i = 0; i < 160; ++i) {
            const QString id = ids[pick(int(ids.size()))];
            const QString rel = rels[pick(int(rels.size()))];
            const bool blocked = pick(9) == 0;
            relation(id, rel, blocked ? kNothing : ids[pick(int(ids.size()))], pick(4) == 0);
            const QString attr = attrs[pick(int(attrs.size()))];
            QVariant value = pick(8) == 0 ? QVariant(kNothing) : QVariant(QString::number(i));
            if (i % 40 == 7)
                value = QString(300, u'x'); // longer than Inherit takes
            else if (i % 40 == 9)
                value = QVariant(); // Null
            attribute(id, attr, value, pick(4) == 0);
        }
        // Same slot names spelt in other cases, on a concept and below it.
        isa(S("CASED"), S("C-5"));
        addRow(S("RELATIONS"), {{u"Concept1", S("CASED")},
                                {u"Rel", S("has-part")},
                                {u"Default", false},
                                {u"Concept2", S("C-7")}});
        relation(S("CASED"), S("HAS-PART"), S("C-1"));
        addRow(S("ATTRIBUTES"), {{u"Concept", S("CASED")},
                                 {u"Attribute", S("Color")},
                                 {u"Default", true},
                                 {u"Value", S("blue")}});
        attribute(S("CASED"), S("COLOR"), S("BLUE"));
        attribute(S("CASED"), S("COLOR"), S("green"));
        addRow(S("ATTRIBUTES"), {{u"Concept", S("C-5")},
                                 {u"Attribute", S("color")},
                                 {u"Default", false},
                                 {u"Value", S("Green")}});
        // A blocking value as a default blocks nothing.
        relation(S("C-6"), S("MADE-OF"), kNothing, true);
        // A cycle below the top, and concepts with no parent at all.
        isa(S("LOOP-A"), S("C-3"));
        isa(S("LOOP-B"), S("LOOP-A"));
        isa(S("LOOP-A"), S("LOOP-B"));
        attribute(S("LOOP-B"), S("SIZE"), S("big"));
        isa(S("LOOP-C"), S("LOOP-B"));
        // Links that spell a concept in another case than CONCEPTS does.
        isa(S("MIXED"), S("C-4"));
        addRow(S("ISA"), {{u"Concept", S("mixed")}, {u"ISA", S("c-8")}});
        isa(S("ÁRBOL"), S("C-2"));
        addRow(S("ISA"), {{u"Concept", S("árbol")}, {u"ISA", S("C-6")}});
        relation(S("C-8"), S("HAS-PART"), S("ÁRBOL"));
        define(S("ORPHAN"), S("Nobody's child."));
        isa(S("ORPHAN-CHILD"), S("ORPHAN"));
        attribute(S("ORPHAN"), S("SIZE"), S("tiny"));
        relation(S("ORPHAN-CHILD"), S("USED-BY"), S("C-9"));

        addRow(S("Languages"), {{u"Lang_ID", S("en")}, {u"Language", S("English")}});
        addRow(S("Languages"), {{u"Lang_ID", S("es")}, {u"Language", S("Spanish")}});
        addRow(S("Subsets"), {{u"Subset_ID", 1}, {u"Subset", S("Core")}});
        for (int i = 0; i < 20; ++i) {
            const QString id = ids[pick(int(ids.size()))];
            addRow(S("Names"),
                   {{u"Concept", id}, {u"Lang_ID", i % 2 ? S("en") : S("es")}, {u"Name", id}});
            addRow(S("Notes"), {{u"Concept", id}, {u"Note", S("note")}});
        }
    }
};

TEST_F(GeneratedOntologyTest, PublishedPagesAreThePagesWrittenOneByOne)
{
    // Rows left by an earlier computation: the first direct child of the top shows them.
    addInheritRow({S("OLD-SLOT"), S("old value"), S("C-2")});
    addInheritRow({S("COLOR"), S("gray"), S("C-2")});
    const QMap<QString, QByteArray> pages = ExpectPublishIsPageByPage(folder.path(S("site")));
    ASSERT_GT(pages.size(), 120);
    // The cases that need care did come up.
    EXPECT_TRUE(pages.value(S("C-0.html")).contains("OLD-SLOT"));
    const QByteArray cased = pages.value(S("CASED.html"));
    EXPECT_TRUE(cased.contains(R"(<small><a href = "has-part.html">has-part</a> : )") &&
                cased.contains(R"(<small><a href = "HAS-PART.html">HAS-PART</a> : )"));
    EXPECT_TRUE(pages.value(S("LOOP-C.html")).contains("big"));
    EXPECT_TRUE(pages.value(S("C-8.html")).contains(R"(<a href = "mixed.html">mixed </a>)"));
    bool blockedSomewhere = false;
    for (const QByteArray &page : pages)
        blockedSomewhere = blockedSomewhere || page.contains("*NOTHING*.html\">*NOTHING*</a>");
    EXPECT_TRUE(blockedSomewhere);
}

// A publish when Inherit starts empty and only direct children of the top come first: nothing
// is computed for them, and Inherit is left as it was.
TEST_F(ConceptPageTest, PublishOfOnlyDirectChildrenLeavesInheritAlone)
{
    isa(S("THING"), S("ALL"));
    attribute(S("THING"), S("SIZE"), S("any"));
    addInheritRow({S("KEPT"), S("as it was"), S("ALL")});
    ExpectPublishIsPageByPage(folder.path(S("site")));
    EXPECT_EQ(InheritRows(), (std::vector<InheritRow>{{S("KEPT"), S("as it was"), S("ALL")}}));
}

TEST(PublishedSeedOntology, PagesAreThePagesWrittenOneByOne)
{
    SeedHome home;
    ResetProcessState();
    Process().Quote = QStringLiteral("\"");
    Process().OntoPath = home.path(QStringLiteral("seed.ont"));
    store::Database db = CreateOntologySchema(Process().OntoPath);
    Process().TopConcept = QStringLiteral("ALL");
    Process().rsInherit = db.OpenRecordset(QStringLiteral("Inherit"), store::dbOpenTable);
    Process().rsInherit.SetIndex(QStringLiteral("Attr"));
    EXPECT_EQ(ExpectPublishIsPageByPage(home.path(QStringLiteral("pages"))).size(), 71);
    Process().rsInherit.Close();
    db.Close();
    ResetProcessState();
}

} // namespace
