#include "ontology/store/seed.h"
#include "open_ontology_fixture.h"
#include "termbase/edit/categories.h"
#include "termbase/edit/category_help.h"
#include "ui/frm_dc_help.h"
#include "ui/frm_tb_editor.h"
#include "ui/frm_tb_properties.h"
#include "ui/local_browser.h"

#include <QComboBox>
#include <QMenu>
#include <QRegularExpression>
#include <QTreeWidget>

namespace lx::test {
namespace {

using namespace Qt::StringLiterals;
using ui::frmDCHelp;
using ui::frmTBEDitor;

// A new termbase open in the editor, its categories named in English.
class CategoryHelpTest : public OpenOntologyTest {
protected:
    void SetUp() override
    {
        openByDialog(sample(u"Birds"_s));
        form.mnuToolsTBEd->trigger();
        editor = ui::Forms().Find<frmTBEDitor>();
        ASSERT_NE(editor, nullptr);
        user.answerSaveFile(TermBasesFolder() + u"birds.ltb"_s)
            .onModal([](QWidget *dialog) {
                auto *properties = qobject_cast<ui::frmTBProperties *>(dialog);
                properties->txtName->setText(u"Bird terms"_s);
                properties->cmdOK->click();
            })
            .answerMsgBox(msg::OK);
        editor->mnuFileNew->trigger();
        ASSERT_FALSE(Process().TermPath.isEmpty());
        asked = user.calls().size();
    }

    static frmDCHelp *help()
    {
        return qobject_cast<frmDCHelp *>(ui::Forms().FindByCaption(u"Data Categories Help"));
    }
    static QString address(const QString &id) { return AppPath() + u"/DCHelp.html#"_s + id; }

    QTreeWidgetItem *categoryNode(const QString &id) const
    {
        QTreeWidgetItemIterator it(editor->Tree2);
        for (; *it; ++it) {
            if ((*it)->data(0, Qt::UserRole).toString() == u"n"_s + id)
                return *it;
        }
        return nullptr;
    }

    frmTBEDitor *editor = nullptr;
    qsizetype asked = 0;
};

// The categories of a termbase, named in `language`, that have help: all but the backmatter's.
QList<std::pair<QString, QString>> CategoriesWithHelp(const QString &language)
{
    Process().TermMeta.DCLang = language;
    LoadCategoryTable();
    QList<std::pair<QString, QString>> categories;
    for (const QStringList &row : Process().DataCats)
        if (!row[dcId].startsWith(u'x'))
            categories.append({row[dcId], row[dcName]});
    return categories;
}

// The file beside the program has a section for every category but the backmatter's, and in
// every language of the names "Help on this" finds each category by its name.
TEST_F(CategoryHelpTest, EveryCategoryWithHelpHasItsSectionAndIsFoundByItsName)
{
    const QString path = EnsureHelpFile();
    ASSERT_EQ(path, AppPath() + u"/DCHelp.html"_s);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QString html = QString::fromUtf8(file.readAll());
    QSet<QString> anchors;
    static const QRegularExpression id(u"<h2 id=\"([^\"]+)\""_s);
    for (auto match = id.globalMatch(html); match.hasNext();)
        anchors.insert(match.next().captured(1));

    const QList<std::pair<QString, QString>> english = CategoriesWithHelp(u"en"_s);
    ASSERT_GT(english.size(), 100);
    QSet<QString> wanted;
    for (const auto &[category, name] : english) {
        wanted.insert(category);
        EXPECT_TRUE(anchors.contains(category)) << category.toStdString();
    }
    EXPECT_EQ(anchors, wanted) << "no section for a category the termbase hasn't";
    EXPECT_FALSE(html.contains(u"<script"_s));

    for (const QString &language : {u"en"_s, u"es"_s, u"fr"_s, u"de"_s, u"it"_s, u"nl"_s}) {
        for (const auto &[category, name] : CategoriesWithHelp(language)) {
            EXPECT_EQ(CategoryIdByName(name), category)
                << language.toStdString() << ": " << name.toStdString();
            EXPECT_FALSE(name.contains(u" ("_s)) << name.toStdString();
        }
    }
}

TEST_F(CategoryHelpTest, HelpOnThisInTheCategoryTreeOpensTheHelpAtTheCategory)
{
    QTreeWidgetItem *context = categoryNode(u"5.3x"_s);
    ASSERT_NE(context, nullptr);
    editor->Tree2->setCurrentItem(context);
    auto *menu = editor->findChild<QMenu *>(u"mnuHelpDC"_s);
    ASSERT_NE(menu, nullptr);
    auto *show = menu->findChild<QAction *>(u"mnuHelpDCShow"_s);
    ASSERT_NE(show, nullptr);
    EXPECT_EQ(show->text(), u"Help on this"_s);
    show->trigger();

    frmDCHelp *window = help();
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(window->lblTarget->caption(), address(u"5.3x"_s));
    EXPECT_EQ(window->Browser->LocationURL(),
              QUrl::fromLocalFile(AppPath() + u"/DCHelp.html"_s).resolved(QUrl(u"#5.3x"_s)));

    // The toolbar's help goes to the term, in the same window.
    editor->ToolButton(20)->trigger();
    EXPECT_EQ(help(), window);
    EXPECT_EQ(window->lblTarget->caption(), address(u"1"_s));
    EXPECT_EQ(ui::Forms().WithCaptionLike(u"*Help").size(), 1);
    EXPECT_EQ(user.calls().size(), asked) << "nothing asked";
}

// A repeated address changes nothing on the label: the browser stays where the user went.
TEST_F(CategoryHelpTest, TheSameCategoryAgainLeavesTheBrowserWhereItIs)
{
    ui::ShowCategoryHelp(u" 5.1 "_s);
    frmDCHelp *window = help();
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(window->lblTarget->caption(), address(u"5.1"_s));
    window->Browser->Navigate(AppPath() + u"/DCHelp.html#8"_s); // the user followed a link
    ui::ShowCategoryHelp(u"5.1"_s);
    EXPECT_EQ(window->Browser->LocationURL().fragment(), u"8"_s);
}

TEST_F(CategoryHelpTest, TheBackmatterHasNoHelp)
{
    for (const QString &id : {u"x10.20"_s, u"xx4"_s, u" x5.5"_s})
        ui::ShowCategoryHelp(id);
    EXPECT_EQ(help(), nullptr);
    // Nor does a name no category has, nor a node without a name.
    auto *root = editor->Tree2->topLevelItem(0);
    ASSERT_NE(root, nullptr);
    editor->Tree2->setCurrentItem(root); // "DC", the root of the tree, no category row
    ui::mnuHelpDCShow_Click(*editor);
    EXPECT_EQ(help(), nullptr);
}

// The list leaves out the backmatter and the frame ("0..."); each item takes the browser to
// its category.
TEST_F(CategoryHelpTest, TheListOfCategoriesLeadsToEachOfThem)
{
    ui::ShowCategoryHelp(u"1"_s);
    frmDCHelp *window = help();
    ASSERT_NE(window, nullptr);
    QComboBox *list = window->cbxDCs;
    ASSERT_GT(list->count(), 100);
    EXPECT_EQ(list->itemText(list->findText(u"Term (1)"_s)), u"Term (1)"_s);
    EXPECT_GE(list->findText(u"Broader generic concept (6.1)"_s), 0);
    for (int i = 0; i < list->count(); ++i) {
        const QString item = list->itemText(i);
        const QString id = CategoryOfHelpItem(item);
        EXPECT_FALSE(id.startsWith(u'x') || id.startsWith(u'0')) << item.toStdString();
        EXPECT_EQ(item, CategoryName(id) + u" ("_s + id + u")"_s);
        list->setCurrentIndex(i);
        window->cbxDCs_Click();
        EXPECT_EQ(window->lblTarget->caption(), address(id));
    }
}

// The editor takes the help window with it as it closes; the window keeps its size.
TEST_F(CategoryHelpTest, GoesWithTheEditorAndKeepsItsSize)
{
    ui::ShowCategoryHelp(u"8"_s);
    ASSERT_NE(help(), nullptr);
    help()->resize(500, 400);
    editor->mnuFileExit->trigger();
    FlushDeletes();
    EXPECT_EQ(help(), nullptr);

    form.mnuToolsTBEd->trigger();
    ui::ShowCategoryHelp(u"8"_s);
    ASSERT_NE(help(), nullptr);
    EXPECT_EQ(help()->size(), QSize(500, 400));
}

} // namespace
} // namespace lx::test
