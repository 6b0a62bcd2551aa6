// A concept list longer than the pages the window reads of it: the rows, their order, the
// search and the snapshot's rows as of the open must be those of a list read whole.
#include "ontology/store/concept_list.h"
#include "open_ontology_fixture.h"
#include "ui/list_views.h"

#include <QLabel>
#include <QLineEdit>
#include <QListView>

namespace {

using lx::test::AddRow;

constexpr int kConcepts = 600; // more than two pages of the list

// Identifiers alternating in case, so the store's order, which ignores case, differs from a byte
// order; every third one a relation.
QString IdOf(int i)
{
    return QStringLiteral("%1-%2")
        .arg(i % 2 ? QStringLiteral("Cpt") : QStringLiteral("CPT"))
        .arg(i, 3, 10, QLatin1Char('0'));
}

bool IsRelation(int i)
{
    return i % 3 == 0;
}

class ConceptListTest : public lx::test::OpenOntologyTest {
protected:
    // The concepts in a file of their own, opened by the dialog; the top concept sorts last.
    void openLong(quint8 listTop = 0)
    {
        QList<lx::test::SampleConcept> concepts{{QStringLiteral("ZZ-TOP"), 100}};
        for (int i = kConcepts - 1; i >= 0; --i)
            concepts.append({IdOf(i), IsRelation(i) ? 4 : 1});
        const QString path = ontology(QStringLiteral("long"));
        lx::test::WriteOntologyFile(path, {QStringLiteral("Long"), listTop}, concepts);
        openByDialog(path);
    }

    static QStringList expected(bool withRelations)
    {
        QStringList ids;
        for (int i = 0; i < kConcepts; ++i) {
            if (withRelations || !IsRelation(i))
                ids << IdOf(i);
        }
        ids << QStringLiteral("ZZ-TOP");
        return ids;
    }

    lx::ListRows &listRows() const
    {
        auto *model = dynamic_cast<lx::ui::PagedListModel *>(form.dblConcepts->model());
        EXPECT_NE(model, nullptr);
        return model->rows();
    }
    QStringList listed() const
    {
        QStringList out;
        for (int i = 0; i < form.dblConcepts->model()->rowCount(); ++i)
            out << form.dblConcepts->model()->index(i, 0).data().toString();
        return out;
    }
    // Typed afresh: the same text again would change nothing.
    void search(const QString &text)
    {
        form.txtCptSearch->clear();
        form.txtCptSearch->setText(text);
    }
};

TEST_F(ConceptListTest, OpensOnItsFirstPageAndListsEveryRowInTheStoresOrder)
{
    openLong();
    EXPECT_EQ(form.ListedConcepts, kConcepts + 1);
    EXPECT_EQ(form.StatusPanel(3)->text(), QStringLiteral("601 listed"));
    EXPECT_EQ(form.ListText(), QStringLiteral("CPT-000"));
    EXPECT_EQ(listRows().pagesRead(), 1) << "the open reads no more than the first page";
    const QStringList ids = expected(true);
    const qsizetype boundary = lx::ListRows::kPageRows;
    EXPECT_EQ(listRows().text(boundary), ids[boundary]) << "the first row of the second page";
    EXPECT_EQ(listRows().text(boundary - 1), ids[boundary - 1]);
    EXPECT_EQ(listed(), ids);
    EXPECT_EQ(listRows().pagesRead(), 3);
}

TEST_F(ConceptListTest, SearchFindsTheFirstMatchBeyondThePagesRead)
{
    openLong();
    search(QStringLiteral("cpt-50"));
    EXPECT_EQ(form.ListText(), QStringLiteral("CPT-500"));
    EXPECT_EQ(form.CurrentConcept, QStringLiteral("CPT-500"));
    EXPECT_EQ(form.dblConcepts->currentIndex().row(), 500);
    search(QStringLiteral("CPT-511"));
    EXPECT_EQ(form.ListText(), QStringLiteral("Cpt-511"));
    search(QStringLiteral("CPT-6"));
    EXPECT_EQ(form.ListText(), QStringLiteral("Cpt-511")) << "no match: the selection stays";
    search(QStringLiteral("zz"));
    EXPECT_EQ(form.dblConcepts->currentIndex().row(), kConcepts);
}

TEST_F(ConceptListTest, AConceptWrittenAfterTheOpenShowsOnlyOnceTheListIsRebuilt)
{
    openLong();
    for (const char *id : {"AAA", "CPT-2999"})
        AddRow(lx::Process().OntoDB, QStringLiteral("CONCEPTS"),
               {{u"Concept", QString::fromLatin1(id)},
                {u"Definition", QStringLiteral("Undefined")},
                {u"Type", 1},
                {u"Subset_ID", 1}});
    EXPECT_EQ(form.dblConcepts->model()->rowCount(), kConcepts + 1);
    EXPECT_EQ(listed(), expected(true)) << "the rows as of the open, the later pages too";
    search(QStringLiteral("CPT-2999"));
    EXPECT_NE(form.ListText(), QStringLiteral("CPT-2999"));

    lx::InitRSListConcepts(form);
    EXPECT_EQ(form.ListedConcepts, kConcepts + 3);
    EXPECT_EQ(form.ListText(), QStringLiteral("AAA"));
    search(QStringLiteral("CPT-2999"));
    EXPECT_EQ(form.ListText(), QStringLiteral("CPT-2999"));
    EXPECT_EQ(form.dblConcepts->currentIndex().row(), 1 + 300);
}

TEST_F(ConceptListTest, ModeTwoCountsPagesAndSearchesWithoutTheRelations)
{
    openLong(2);
    const QStringList ids = expected(false);
    EXPECT_EQ(form.ListedConcepts, ids.size());
    EXPECT_EQ(listed(), ids);
    search(QStringLiteral("CPT-597")); // a relation, beyond the first page
    EXPECT_NE(form.ListText(), QStringLiteral("Cpt-597"));
    search(QStringLiteral("CPT-598"));
    EXPECT_EQ(form.dblConcepts->currentIndex().row(), ids.indexOf(QStringLiteral("CPT-598")));
}

} // namespace
