#include "core/store/database.h"
#include "open_ontology_fixture.h"
#include "termbase/edit/categories.h"
#include "ui/frm_tb_editor.h"
#include "ui/frm_tb_options.h"
#include "ui/frm_tb_properties.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QSplitter>
#include <QTreeWidget>

namespace lx::test {
namespace {

using ui::frmTBEDitor;
using Kind = ScriptedInteraction::Kind;

// A user with an ontology open who has started the termbase editor.
class TermbaseEditorTest : public OpenOntologyTest {
protected:
    void SetUp() override
    {
        openByDialog(sample(QStringLiteral("Birds")));
        form.mnuToolsTBEd->trigger();
        editor = ui::Forms().Find<frmTBEDitor>();
        ASSERT_NE(editor, nullptr);
        base = user.calls().size();
    }

    // The user's exchanges since the termbase editor came up.
    const ScriptedInteraction::Call &call(qsizetype i) const { return user.calls()[base + i]; }
    qsizetype callCount() const { return user.calls().size() - base; }

    static QString termbase(const QString &title)
    {
        return TermBasesFolder() + title + QStringLiteral(".ltb");
    }

    // New by the menu: the user saves at `path`, names the termbase and acknowledges.
    void createTermbase(const QString &path, const QString &name)
    {
        user.answerSaveFile(path)
            .onModal([&](QWidget *dialog) {
                auto *properties = qobject_cast<ui::frmTBProperties *>(dialog);
                ASSERT_NE(properties, nullptr);
                dialogCaption = dialog->windowTitle();
                workingOntology = properties->txtWOntology->text();
                properties->txtName->setText(name);
                properties->cmdOK->click();
            })
            .answerMsgBox(msg::OK);
        editor->mnuFileNew->trigger();
    }

    // Sets the options dialog as `choose` says and leaves it by OK or Cancel; then acknowledges
    // `messages` boxes.
    void setOptions(const std::function<void(ui::frmTBOptions &)> &choose, bool cancel = false,
                    int messages = 0)
    {
        user.onModal([=](QWidget *dialog) {
            auto *options = qobject_cast<ui::frmTBOptions *>(dialog);
            ASSERT_NE(options, nullptr);
            choose(*options);
            (cancel ? options->cmdCancel : options->cmdOK)->click();
        });
        for (int i = 0; i < messages; ++i)
            user.answerMsgBox(msg::OK);
        editor->mnuToolsOptions->trigger();
    }

    bool toolsShown() const { return editor->mnuTools->menuAction()->isVisible(); }

    frmTBEDitor *editor = nullptr;
    qsizetype base = 0;
    QString dialogCaption, workingOntology;
};

} // namespace

TEST_F(TermbaseEditorTest, StartsEmptyFromTheOntologyEditor)
{
    EXPECT_TRUE(editor->isVisible());
    EXPECT_EQ(editor->windowTitle(), QStringLiteral("TermBase Editor"));
    EXPECT_EQ(editor->ToolButton(1)->objectName(), QStringLiteral("new"));
    EXPECT_EQ(editor->ToolButton(20)->objectName(), QStringLiteral("help"));
    EXPECT_TRUE(editor->ToolButton(2)->isEnabled());
    EXPECT_FALSE(editor->ToolButton(3)->isEnabled());
    EXPECT_FALSE(editor->mnuFileClose->isEnabled());
    EXPECT_FALSE(toolsShown());
    EXPECT_EQ(editor->StatusPanel(2)->text(), QStringLiteral("0 Term Entries"));

    form.mnuToolsTBEd->trigger();
    EXPECT_EQ(ui::Forms().WithCaptionLike(u"TermBase Editor*").size(), 1) << "one window";
}

// Every place shows its image and names its command; the two mode buttons switch the modes,
// and the Help menu offers what the ontology editor's does.
TEST_F(TermbaseEditorTest, ToolbarPlacesShowImagesAndSwitchModes)
{
    for (int place = 1; place <= frmTBEDitor::ToolBarPlaces; ++place) {
        const QAction *button = editor->ToolButton(place);
        if (button->isSeparator())
            continue;
        EXPECT_FALSE(button->icon().isNull()) << place;
        EXPECT_EQ(button->text(), button->toolTip()) << place;
    }
    editor->EnableEditor();
    editor->ToolButton(14)->trigger();
    EXPECT_TRUE(editor->mnuEditBrowser->isChecked()) << "Browse Mode";
    EXPECT_FALSE(editor->mnuEditEditor->isChecked());
    EXPECT_TRUE(editor->ToolButton(17)->isEnabled());
    editor->ToolButton(13)->trigger();
    EXPECT_TRUE(editor->mnuEditEditor->isChecked()) << "Edit Mode again";
    EXPECT_FALSE(editor->ToolButton(17)->isEnabled());

    QStringList help;
    for (const QAction *item : editor->mnuHelp->actions())
        help << item->text();
    EXPECT_EQ(help, (QStringList{QStringLiteral("&Help Tool"), QStringLiteral("&About")}));
    user.answerMsgBox(msg::OK);
    editor->mnuHelpTool->trigger();
    EXPECT_EQ(user.calls().last().text, QStringLiteral("Not yet!"));
}

// Replacing the ontology unloads the editor at once: its termbase is closed before the file
// dialog comes up, and nothing of it reaches the status bar of the ontology opened next.
TEST_F(TermbaseEditorTest, ReplacingTheOntologyClosesTheTermbaseBeforeTheDialog)
{
    createTermbase(termbase(QStringLiteral("birds")), QStringLiteral("Bird terms"));
    const QString fish = sample(QStringLiteral("Fish"));

    struct Watcher : ScriptedUser {
        std::optional<QString> GetOpenFileName(const FileDialogRequest &request) override
        {
            termPath = Process().TermPath;
            editorLoaded = ui::Forms().Find<frmTBEDitor>() != nullptr;
            return ScriptedUser::GetOpenFileName(request);
        }
        QString termPath = QStringLiteral("not asked");
        bool editorLoaded = true;
    } watcher;
    watcher.answerOpenFile(fish);
    form.mnuFileOpen->trigger();
    EXPECT_TRUE(watcher.termPath.isEmpty());
    EXPECT_FALSE(watcher.editorLoaded);

    const QString subset = form.StatusPanel(1)->text();
    EXPECT_FALSE(subset.isEmpty());
    FlushDeletes();
    EXPECT_EQ(form.StatusPanel(1)->text(), subset);
}

// The editor comes up whole on the screen and, once closed, comes back where it was left.
TEST_F(TermbaseEditorTest, OpensOnScreenAndComesBackWhereItWasLeft)
{
    const QRect screen = editor->screen()->availableGeometry();
    EXPECT_TRUE(screen.contains(editor->frameGeometry())) << "fits the screen";
    editor->setGeometry(QRect(screen.topLeft() + QPoint(40, 50), QSize(520, 380)));
    editor->splitter->setSizes({120, 380});
    const QList<int> sizes = editor->splitter->sizes();
    editor->close();
    FlushDeletes();
    EXPECT_EQ(ui::Forms().Find<frmTBEDitor>(), nullptr) << "closing unloads it";

    form.mnuToolsTBEd->trigger();
    editor = ui::Forms().Find<frmTBEDitor>();
    ASSERT_NE(editor, nullptr);
    EXPECT_EQ(editor->geometry(), QRect(screen.topLeft() + QPoint(40, 50), QSize(520, 380)));
    EXPECT_EQ(editor->splitter->sizes(), sizes);
}

TEST_F(TermbaseEditorTest, ATermbaseBesideItsOntologyIsRefused)
{
    const QString path = OntologiesFolder() + QStringLiteral("birds.ltb");
    user.answerSaveFile(path).answerMsgBox(msg::OK);
    editor->mnuFileNew->trigger();
    ASSERT_EQ(callCount(), 2);
    EXPECT_EQ(call(1).text,
              QStringLiteral("A termbase cannot reside in the same folder as its working "
                             "ontology.\r\nTip: save all your ontologies in one folder and your "
                             "termbases in another."));
    EXPECT_FALSE(QFileInfo::exists(path));
    EXPECT_TRUE(Process().TermPath.isEmpty());
    EXPECT_EQ(editor->windowTitle(), QStringLiteral("TermBase Editor"));
}

TEST_F(TermbaseEditorTest, NewOpensTheTermbaseBelowItsOntologyAndCloseAndOpenFollow)
{
    const QString path = termbase(QStringLiteral("birds"));
    createTermbase(path, QStringLiteral("Bird terms"));

    ASSERT_EQ(callCount(), 3);
    const FileDialogRequest &save = call(0).request;
    EXPECT_EQ(save.title, QStringLiteral("New TermBase"));
    EXPECT_EQ(save.filter, QStringLiteral("Lexarbor TB files (*.ltb)|*.ltb|"));
    EXPECT_EQ(save.defaultExt, QStringLiteral("ltb"));
    EXPECT_EQ(save.initialDir, TermBasesFolder());
    EXPECT_EQ(dialogCaption, QStringLiteral("TermBase Properties"));
    EXPECT_EQ(workingOntology, Process().OntoPath);
    EXPECT_EQ(call(2).text, QStringLiteral("TermBase \"Bird terms\" has been created!"));

    EXPECT_EQ(editor->windowTitle(), QStringLiteral("TermBase Editor - Bird terms"));
    EXPECT_EQ(form.StatusPanel(1)->text(), QStringLiteral("Bird terms"));
    EXPECT_EQ(editor->StatusPanel(1)->text(), QStringLiteral("Birds"));
    EXPECT_EQ(editor->StatusPanel(3)->text(), QStringLiteral("0 Terms"));
    EXPECT_TRUE(editor->ToolButton(14)->isEnabled());
    EXPECT_FALSE(editor->ToolButton(16)->isEnabled()) << "Browse Mode's buttons";
    EXPECT_TRUE(toolsShown());
    {
        store::Database tb = store::DBEngine::OpenDatabase(path);
        store::Recordset concepts =
            tb.OpenRecordset(QStringLiteral("CONCEPTS"), store::dbOpenSnapshot);
        concepts.MoveLast();
        EXPECT_EQ(concepts.RecordCount(), Sample.size() - 1) << "all concepts but the top";
    }

    editor->mnuFileClose->trigger();
    EXPECT_EQ(editor->windowTitle(), QStringLiteral("TermBase Editor"));
    EXPECT_TRUE(form.StatusPanel(1)->text().isEmpty());
    EXPECT_TRUE(editor->StatusPanel(2)->text().isEmpty());
    EXPECT_TRUE(Process().TermPath.isEmpty());

    user.answerOpenFile(path);
    editor->mnuFileOPen->trigger();
    EXPECT_EQ(user.calls().last().request.filter,
              QStringLiteral("Lexarbor TermBase Files (*.ltb)|*.ltb|All files (*.*)|*.*|"));
    EXPECT_EQ(editor->windowTitle(), QStringLiteral("TermBase Editor - Bird terms"));
    EXPECT_EQ(Process().TermPath, path);

    // Exit closes the termbase and this window only.
    editor->mnuFileExit->trigger();
    FlushDeletes();
    EXPECT_EQ(ui::Forms().Find<frmTBEDitor>(), nullptr);
    EXPECT_TRUE(Process().TermPath.isEmpty());
    EXPECT_FALSE(Process().OntoPath.isEmpty());
    EXPECT_TRUE(form.StatusPanel(1)->text().isEmpty());
}

TEST_F(TermbaseEditorTest, ATermbaseOfAnotherOntologyIsRefused)
{
    const QString path = termbase(QStringLiteral("birds"));
    createTermbase(path, QStringLiteral("Bird terms"));
    // Opening another ontology closes this one and unloads the termbase editor with it.
    openByDialog(sample(QStringLiteral("Fish")));
    FlushDeletes();
    EXPECT_TRUE(Process().TermPath.isEmpty());
    form.mnuToolsTBEd->trigger();
    editor = ui::Forms().Find<frmTBEDitor>();
    ASSERT_NE(editor, nullptr);
    form.txtCptSearch->setText(QStringLiteral("BIRD"));

    user.answerOpenFile(path).answerMsgBox(msg::OK);
    editor->mnuFileOPen->trigger();
    EXPECT_EQ(user.calls().last().text,
              QStringLiteral("This TermBase's Working Ontology is ") +
                  ontology(QStringLiteral("birds")) +
                  QStringLiteral(". You can't use it with current current Working ontology (") +
                  ontology(QStringLiteral("fish")) + QStringLiteral(")."));
    EXPECT_EQ(user.calls().last().title, QStringLiteral("Error"));
    EXPECT_TRUE(Process().TermPath.isEmpty());
    EXPECT_EQ(editor->windowTitle(), QStringLiteral("TermBase Editor"));
    EXPECT_EQ(form.StatusPanel(1)->text(), QStringLiteral("General"))
        << "the subset of BIRD stays: the termbase's name never came";
}

TEST_F(TermbaseEditorTest, OptionsRefuseOtherLanguagesAndCancelKeepsTheOldOnes)
{
    createTermbase(termbase(QStringLiteral("birds")), QStringLiteral("Bird terms"));
    TermMetaData &meta = Process().TermMeta;

    bool englishShown = false;
    setOptions(
        [&](ui::frmTBOptions &options) {
            englishShown = options.optEnglish->isChecked() && options.optTree->isChecked();
            options.optFrench->setChecked(true);
        },
        false, 1);
    EXPECT_TRUE(englishShown);
    EXPECT_EQ(user.calls().last().text, QStringLiteral("Not available yet."));
    EXPECT_EQ(meta.DCLang, QStringLiteral("en"));

    // Cancel puts the language and the check box back, not the form of the pane.
    const qsizetype before = user.calls().size();
    setOptions(
        [](ui::frmTBOptions &options) {
            options.optGerman->setChecked(true);
            options.chkCSBrowser->setChecked(true);
            options.optList->setChecked(true);
        },
        true);
    EXPECT_EQ(user.calls().size(), before + 1) << "only the dialog, no message";
    EXPECT_EQ(meta.DCLang, QStringLiteral("en"));
    EXPECT_FALSE(meta.CSBrowser);
    EXPECT_EQ(meta.DCList, QStringLiteral("list"));
    EXPECT_FALSE(editor->ListView1->isHidden());
    EXPECT_TRUE(editor->Tree2->isHidden());

    setOptions([](ui::frmTBOptions &options) {
        options.optSpanish->setChecked(true);
        options.optTree->setChecked(true);
    });
    EXPECT_EQ(meta.DCLang, QStringLiteral("es"));
    EXPECT_EQ(meta.DCList, QStringLiteral("tree"));
    EXPECT_FALSE(editor->Tree2->isHidden());
}

} // namespace lx::test

namespace lx::test {
namespace {

// The pane's item for a category, in the tree or in the list.
QTreeWidgetItem *PaneNode(const ui::frmTBEDitor &editor, const QString &id)
{
    for (QTreeWidgetItemIterator it(editor.Tree2); *it; ++it) {
        if ((*it)->data(0, Qt::UserRole).toString() == QStringLiteral("n") + id)
            return *it;
    }
    return nullptr;
}

int ListRow(const ui::frmTBEDitor &editor, const QString &id)
{
    for (int i = 0; i < editor.ListView1->count(); ++i) {
        if (editor.ListView1->item(i)->data(Qt::UserRole).toString() == QStringLiteral("n") + id)
            return i;
    }
    return -1;
}

class CategoryPaneTest : public TermbaseEditorTest {
protected:
    void SetUp() override
    {
        TermbaseEditorTest::SetUp();
        createTermbase(termbase(QStringLiteral("pane")), QStringLiteral("Pane"));
    }
    // The user stands on an element of `category` and clicks `id` in the tree.
    void clickCategory(const QString &category, const QString &id)
    {
        editor->CurrentCategory = category;
        editor->MarkValidCategories();
        QTreeWidgetItem *node = PaneNode(*editor, id);
        ASSERT_NE(node, nullptr) << id.toStdString();
        editor->Tree2_NodeClick(node);
    }
};

TEST_F(CategoryPaneTest, TheTreeHoldsTheTopsInOrderAndTheListPutsParentsAfterTheirChildren)
{
    ASSERT_EQ(editor->Tree2->topLevelItemCount(), 1);
    QTreeWidgetItem *root = editor->Tree2->topLevelItem(0);
    EXPECT_EQ(root->text(0), QStringLiteral("DC"));
    QStringList tops;
    for (int i = 0; i < root->childCount(); ++i)
        tops << root->child(i)->data(0, Qt::UserRole).toString();
    EXPECT_EQ(tops, (QStringList{"n0", "n1", "n2", "ndescrip", "nadmin", "n100"}));
    EXPECT_LT(ListRow(*editor, QStringLiteral("2.2.1")), ListRow(*editor, QStringLiteral("2.2")));
    EXPECT_LT(ListRow(*editor, QStringLiteral("2")), ListRow(*editor, QStringLiteral("2.2")));
    EXPECT_EQ(editor->ListView1->count(), int(Process().DataCats.size()) - 2); // no DC, no all
}

TEST_F(CategoryPaneTest, MarksFollowTheElementAndOnlyActiveCategoriesOpenTheFrame)
{
    editor->txtElem->clear();
    clickCategory(QStringLiteral("0.2"), QStringLiteral("0.3"));
    EXPECT_FALSE(editor->fraEdit->isVisibleTo(editor)); // no element is current
    EXPECT_EQ(PaneNode(*editor, QStringLiteral("0.3"))->data(0, Qt::UserRole + 1).toString(),
              QStringLiteral("active"));
    EXPECT_EQ(PaneNode(*editor, QStringLiteral("1"))->data(0, Qt::UserRole + 1).toString(),
              QStringLiteral("inactive"));

    editor->txtElem->setText(QStringLiteral("BODY"));
    clickCategory(QStringLiteral("0.2"), QStringLiteral("1"));
    EXPECT_FALSE(editor->fraEdit->isVisibleTo(editor));
    clickCategory(QStringLiteral("0.2"), QStringLiteral("0.3"));
    EXPECT_TRUE(editor->fraEdit->isVisibleTo(editor));
    EXPECT_TRUE(editor->dbcConcepts->isVisibleTo(editor));
    EXPECT_EQ(editor->lblEdit->text(), QStringLiteral("0.3"));

    clickCategory(QStringLiteral("1"), QStringLiteral("2.1"));
    EXPECT_TRUE(editor->lstData->isVisibleTo(editor));
    EXPECT_FALSE(editor->dbcConcepts->isVisibleTo(editor));
    EXPECT_GT(editor->lstData->count(), 0);
    EXPECT_FALSE(editor->lstLang->isVisibleTo(editor));
    EXPECT_EQ(editor->fraEdit->title(), CategoryName(QStringLiteral("2.1")));
}

TEST_F(CategoryPaneTest, ANoteAsksForItsLanguageBeforeItIsWritten)
{
    editor->txtElem->setText(QStringLiteral("BODY"));
    editor->CurrentElemID = 3;
    clickCategory(QStringLiteral("0.2"), QStringLiteral("8"));
    EXPECT_TRUE(editor->txtData->isVisibleTo(editor));
    EXPECT_TRUE(editor->lstLang->isVisibleTo(editor));
    editor->txtData->setText(QStringLiteral("A note"));
    user.answerMsgBox(msg::OK);
    editor->cmdAssert->click();
    EXPECT_EQ(user.calls().last().text,
              QStringLiteral("This element requires a language to be specified"));
    editor->lstLang->setCurrentText(QStringLiteral("en"));
    editor->cmdAssert->click();
    store::Recordset rs = Process().TermDB.OpenRecordset(
        QStringLiteral("SELECT * FROM text_values"), store::dbOpenSnapshot);
    ASSERT_EQ(rs.RecordCount(), 1);
    EXPECT_EQ(rs.Value(u"value").toString(), QStringLiteral("A note"));
    EXPECT_TRUE(editor->txtData->text().isEmpty());
}

} // namespace
} // namespace lx::test
namespace lx::test {
namespace {

// The user stands on "body", picks a concept in the frame and asserts it: the entry shows in the
// tree, and its concept can't be asserted twice.
TEST_F(CategoryPaneTest, AnEntryAssertedFromTheFrameShowsInTheTree)
{
    QTreeWidgetItem *root = editor->Tree1->topLevelItem(0);
    editor->Tree1->expandItem(root);
    QTreeWidgetItem *body = nullptr;
    for (int i = 0; i < root->childCount(); ++i) {
        if (root->child(i)->text(0) == QLatin1String("body"))
            body = root->child(i);
    }
    ASSERT_NE(body, nullptr);
    editor->Tree1->setCurrentItem(body);
    editor->Tree1_NodeClick(body);
    EXPECT_EQ(editor->txtElem->text(), QStringLiteral("BODY"));
    editor->Tree2_NodeClick(PaneNode(*editor, QStringLiteral("0.3")));
    ASSERT_TRUE(editor->dbcConcepts->isVisibleTo(editor));
    const QModelIndex bird = editor->dbcConcepts->model()
                                 ->match(editor->dbcConcepts->model()->index(0, 0), Qt::DisplayRole,
                                         QStringLiteral("BIRD"))
                                 .value(0);
    ASSERT_TRUE(bird.isValid());
    editor->dbcConcepts->setCurrentIndex(bird);
    editor->cmdAssert->click();
    EXPECT_EQ(editor->EntryCount, 1);
    EXPECT_EQ(editor->StatusPanel(2)->text(), QStringLiteral("1 Term Entries"));
    // The tree was read again: "body" is the selected node now.
    body = editor->Tree1->currentItem();
    ASSERT_NE(body, nullptr);
    EXPECT_EQ(body->text(0), QStringLiteral("body"));
    editor->Tree1->expandItem(body);
    ASSERT_GE(body->childCount(), 1);
    EXPECT_EQ(body->child(0)->text(0), QStringLiteral("BIRD"));
}

} // namespace
} // namespace lx::test
