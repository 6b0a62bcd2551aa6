#include "element_tree_fixture.h"
#include "ui/frm_find.h"

#include <QCheckBox>
#include <QComboBox>
#include <QPushButton>
#include <QRadioButton>

namespace lx::test {
namespace {

// The tree fixture with language sections that show their code ("pt"): ANIMAL and EATS have
// one each, BIRD a second one after its English section.
class FindUi : public ElementTreeUi {
protected:
    void SetUp() override
    {
        ElementTreeUi::SetUp();
        section(111, 101, 122, "animal-pt");
        section(112, 102, 123, "comer");
        section(113, 100, 124, "ave");
        editor->mnuEditFind->trigger();
        find = ui::Forms().Find<ui::frmFind>();
        ASSERT_NE(find, nullptr);
    }

    void section(qint32 id, qint32 entry, qint32 term, const char *text)
    {
        element(id, "0.4", entry);
        add("elements_use_lang", {{"elemID", id}, {"langID", "pt"}});
        element(term, "1", id);
        add("TERMS", {{"elemID", term}, {"term", text}, {"langID", "pt"}});
    }

    QString search(const QString &text)
    {
        find->cbxFind->setEditText(text);
        find->cmdFind->click();
        return tree->currentItem() ? tree->currentItem()->text(0) : QString();
    }

    ui::frmFind *find = nullptr;
};

TEST_F(FindUi, ConceptsAreFoundAmongTheEntriesAndTheSearchWrapsRound)
{
    EXPECT_EQ(find->windowTitle(), QStringLiteral("Find"));
    EXPECT_TRUE(find->optFindC->isChecked());
    EXPECT_EQ(search(QStringLiteral("*A*")), QStringLiteral("ANIMAL"));
    EXPECT_EQ(search(QStringLiteral("*A*")), QStringLiteral("EATS"));
    EXPECT_EQ(search(QStringLiteral("*A*")), QStringLiteral("ANIMAL")) << "round to the first";
    EXPECT_EQ(search(QStringLiteral("BI")), QStringLiteral("BIRD")) << "by the beginning";
    find->chkFullWord->setChecked(true);
    user.answerMsgBox(msg::OK);
    search(QStringLiteral("BI"));
    EXPECT_EQ(user.calls().last().text, QStringLiteral("String not found"));
    EXPECT_EQ(user.calls().last().icon, msg::Exclamation);
    EXPECT_EQ(tree->currentItem()->text(0), QStringLiteral("body"));
}

// Terms are found under sections that show their code, in every entry's sections but the last;
// what stays out is reported.
TEST_F(FindUi, TermsAreFoundInTheOpenedSectionsThatShowTheirCode)
{
    find->optFindT->click();
    EXPECT_TRUE(find->cbxFind->currentText().isEmpty());
    EXPECT_EQ(tree->currentItem(), root());
    EXPECT_EQ(search(QStringLiteral("com")), QStringLiteral("comer"));
    EXPECT_EQ(search(QStringLiteral("anim")), QStringLiteral("animal-pt"));
    for (const char *hidden : {"heron", "ave"}) {
        user.answerMsgBox(msg::OK);
        search(QString::fromLatin1(hidden));
        EXPECT_EQ(user.calls().last().text, QStringLiteral("Term not found.")) << hidden;
    }
}

TEST_F(FindUi, TheHistoryKeepsTwentyAndTheSameTextOnce)
{
    user.answerMsgBox(msg::OK).answerMsgBox(msg::OK);
    search(QStringLiteral("ZEBRA"));
    search(QStringLiteral("ZEBRA"));
    EXPECT_EQ(find->cbxFind->count(), 1);
    for (int i = 1; i <= 20; ++i) {
        user.answerMsgBox(msg::OK);
        search(QStringLiteral("Z%1").arg(i));
    }
    EXPECT_EQ(find->cbxFind->count(), 20);
    EXPECT_EQ(find->cbxFind->itemText(0), QStringLiteral("Z20"));
    EXPECT_EQ(find->cbxFind->findText(QStringLiteral("ZEBRA")), -1) << "the oldest went";

    EXPECT_EQ(ui::frmFind::ConceptKey(QLatin1Char('a')), QLatin1Char('A'));
    EXPECT_EQ(ui::frmFind::ConceptKey(QLatin1Char(' ')), QLatin1Char('-'));
    EXPECT_EQ(ui::frmFind::ConceptKey(QLatin1Char('_')), QLatin1Char('-'));
    EXPECT_EQ(ui::frmFind::ConceptKey(QLatin1Char('7')), QLatin1Char('7'));
    EXPECT_FALSE(ui::frmFind::ConceptKey(QLatin1Char('*')));
    find->cmdCancel->click();
    EXPECT_FALSE(find->isVisible());
    EXPECT_TRUE(find->cbxFind->currentText().isEmpty());
}

} // namespace
} // namespace lx::test
