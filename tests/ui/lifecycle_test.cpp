#include "ontology/store/lifecycle.h"
#include "open_ontology_fixture.h"
#include "support/temp_store.h"
#include "termbase/store/schema.h"

#include <QAction>
#include <QCoreApplication>
#include <QDir>
#include <QDropEvent>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenuBar>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QUrl>

namespace {

using lx::Process;
using lx::test::SampleMeta;
using lx::test::VisibleMenus;
using lx::ui::Forms;
using lx::ui::frmOntoEdit;
using lx::ui::frmProperties;
using Kind = lx::ScriptedInteraction::Kind;
namespace msg = lx::msg;

using LifecycleTest = lx::test::OpenOntologyTest;

TEST_F(LifecycleTest, NewAsksForAFileAndItsPropertiesThenOpensIt)
{
    const QString path = ontology(QStringLiteral("birds"));
    QString caption;
    lx::PropertiesTexts shown;
    user.answerSaveFile(path)
        .onModal([&](QWidget *dialog) {
            auto &properties = *qobject_cast<frmProperties *>(dialog);
            caption = dialog->windowTitle();
            shown = properties.Texts();
            properties.txtName->setText(QStringLiteral("Birds"));
            properties.txtOwner->setText(QStringLiteral("Field station"));
            properties.cmdOK->click();
        })
        .answerMsgBox(msg::OK);
    form.mnuFileNew->trigger();

    ASSERT_EQ(user.calls().size(), 3);
    const lx::FileDialogRequest &save = user.calls()[0].request;
    EXPECT_EQ(user.calls()[0].kind, Kind::SaveFile);
    EXPECT_EQ(save.filter, QStringLiteral("Ontology Files (*.ont)|*.ont|"));
    EXPECT_EQ(save.filterIndex, 1);
    EXPECT_EQ(save.defaultExt, QStringLiteral("ont"));
    EXPECT_EQ(save.initialDir, lx::OntologiesFolder());
    EXPECT_EQ(caption, QStringLiteral("Ontology Properties"));
    EXPECT_TRUE(shown.Name.isEmpty());
    EXPECT_EQ(shown.Created, shown.Modified);
    EXPECT_LE(qAbs(lx::TextToDate(shown.Created).secsTo(QDateTime::currentDateTime())), 5);
    EXPECT_EQ(user.calls()[2].text, QStringLiteral("Ontology \"Birds\" has been created!"));
    EXPECT_EQ(user.calls()[2].style, msg::Information);

    // Open now, in the window's ontology state.
    EXPECT_EQ(Process().OntoPath, path);
    EXPECT_EQ(Process().OntoFolder, lx::OntologiesFolder());
    EXPECT_TRUE(Process().OntoDB.isOpen());
    EXPECT_EQ(form.windowTitle(), QStringLiteral("Ontology Editor - Birds"));
    EXPECT_EQ(VisibleMenus(form).size(), 6);
    EXPECT_TRUE(folderExists(lx::OntologiesFolder() + QStringLiteral("Birds-publish")));
    EXPECT_FALSE(Process().TopConcept.isEmpty());
    EXPECT_EQ(form.CurrentConcept, Process().TopConcept);
    lx::test::FlushDeletes();
    EXPECT_EQ(Forms().list(), QList<QWidget *>{&form}) << "the dialog is unloaded";

    // The new row: the dialog's texts and the defaults.
    EXPECT_EQ(lx::test::MetaDataField(path, u"Owner").toString(), QStringLiteral("Field station"));
    EXPECT_EQ(lx::test::MetaDataField(path, u"MaxParents").toInt(), 2);
    EXPECT_EQ(lx::test::MetaDataField(path, u"ListTop").toInt(), 0);
    EXPECT_EQ(lx::test::MetaDataField(path, u"DefLang").toString(), QStringLiteral("en"));
    EXPECT_TRUE(lx::test::MetaDataField(path, u"Naming").toBool());
    EXPECT_EQ(lx::test::MetaDataField(path, u"AutoName").toInt(), 0);
    EXPECT_EQ(lx::test::MetaDataField(path, u"ActiveSet").toInt(), 1);
}

TEST_F(LifecycleTest, NewClosesTheOpenOntologyBeforeACancelledDialog)
{
    const QString birds = sample(QStringLiteral("Birds"));
    openByDialog(birds);
    ASSERT_EQ(Process().OntoPath, birds);

    user.answerSaveFile(std::nullopt);
    form.mnuFileNew->trigger();

    EXPECT_EQ(user.calls().size(), 2) << "a cancel says nothing";
    expectNoOntologyState();
    EXPECT_GT(lx::test::MetaDataField(birds, u"Modified").toDateTime().date().year(), 2001)
        << "closed, with its metadata written";
}

TEST_F(LifecycleTest, NewOnAnExistingFileSaysSoAndOpensNothing)
{
    const QString birds = sample(QStringLiteral("Birds"));
    user.answerSaveFile(birds).answerMsgBox(msg::OK);
    form.mnuFileNew->trigger();

    ASSERT_EQ(user.calls().size(), 2);
    EXPECT_EQ(user.calls()[1].text, QStringLiteral("Ontology exists already!"));
    EXPECT_EQ(user.calls()[1].style, msg::OKOnly);
    expectNoOntologyState();
    EXPECT_EQ(Process().OntoFolder, lx::OntologiesFolder()) << "set before the store refused";
    EXPECT_EQ(lx::test::MetaDataField(birds, u"Name").toString(), QStringLiteral("Birds"));
}

TEST_F(LifecycleTest, OpenByDialogShowsTheFirstConceptAndNamesTheTop)
{
    const QString birds = sample(QStringLiteral("Birds"));
    openByDialog(birds);

    ASSERT_EQ(user.calls().size(), 1);
    const lx::FileDialogRequest &open = user.calls()[0].request;
    EXPECT_EQ(open.filter, QStringLiteral("Ontology Files (*.ont)|*.ont|All files (*.*)|*.*|"));
    EXPECT_EQ(open.filterIndex, 1);
    EXPECT_EQ(open.initialDir, lx::OntologiesFolder());

    EXPECT_EQ(form.windowTitle(), QStringLiteral("Ontology Editor - Birds"));
    EXPECT_EQ(Process().OntoFolder, lx::OntologiesFolder());
    EXPECT_TRUE(folderExists(lx::OntologiesFolder() + QStringLiteral("Birds-publish")));
    EXPECT_EQ(VisibleMenus(form).size(), 6);
    for (int place = 1; place <= frmOntoEdit::ToolBarPlaces; ++place)
        EXPECT_TRUE(form.ToolButton(place)->isEnabled()) << "place " << place;
    EXPECT_TRUE(form.mnuFileProperties->isEnabled());
    EXPECT_EQ(form.cursor().shape(), Qt::ArrowCursor);

    // The view shows the list's first concept, while CurrentConcept names the top.
    EXPECT_EQ(form.ListText(), QStringLiteral("ANIMAL"));
    EXPECT_EQ(form.txtDef->toPlainText(), QStringLiteral("Undefined")) << "a Null repaired";
    EXPECT_EQ(form.StatusPanel(2)->text(), QStringLiteral("OBJECT"));
    EXPECT_EQ(Process().TopConcept, QStringLiteral("THING"));
    EXPECT_EQ(form.CurrentConcept, QStringLiteral("THING"));
    EXPECT_EQ(form.StatusPanel(3)->text(), QStringLiteral("4 listed"));
    EXPECT_EQ(form.StatusPanel(4)->text(), QStringLiteral("4 total"));
    EXPECT_EQ(Process().OntoMeta.Owner, QStringLiteral("Field station"));
    EXPECT_LE(qAbs(Process().OntoMeta.Modified.secsTo(QDateTime::currentDateTime())), 5);
    EXPECT_EQ(Process().OntoMeta.Created, SampleMeta{}.created);
}

TEST_F(LifecycleTest, CloseWritesModifiedAndLeavesTheLastTotal)
{
    const QString birds = sample(QStringLiteral("Birds"), 2);
    openByDialog(birds);
    EXPECT_EQ(form.StatusPanel(3)->text(), QStringLiteral("3 listed")) << "no relations in mode 2";

    form.mnuFileClose->trigger();

    expectNoOntologyState();
    EXPECT_TRUE(Process().OntoFolder.isEmpty());
    EXPECT_FALSE(Process().OntoDB.isOpen());
    EXPECT_EQ(form.StatusPanel(4)->text(), QStringLiteral("4 total"));
    EXPECT_TRUE(form.StatusPanel(3)->text().isEmpty());
    EXPECT_TRUE(form.txtDef->toPlainText().isEmpty());
    // Nothing was changed, and yet Modified is the time of closing.
    const QDateTime modified = lx::test::MetaDataField(birds, u"Modified").toDateTime();
    EXPECT_LE(qAbs(modified.secsTo(QDateTime::currentDateTime())), 5);
    EXPECT_EQ(lx::test::MetaDataField(birds, u"Created").toDateTime(), SampleMeta{}.created);
    EXPECT_EQ(lx::test::MetaDataField(birds, u"ListTop").toInt(), 2);
}

TEST_F(LifecycleTest, AFileThatIsNoStoreFileIsNotAnOntology)
{
    const QString notes = ontology(QStringLiteral("notes"));
    lx::test::WriteTextFile(notes, "These are field notes, not an ontology.\n");
    openByDialog(notes, 1);

    ASSERT_EQ(user.calls().size(), 2);
    EXPECT_EQ(user.calls()[1].text, QStringLiteral("Not an Lexarbor ontology - ") + notes);
    EXPECT_EQ(user.calls()[1].style, msg::Critical);
    EXPECT_EQ(user.calls()[1].title, QStringLiteral("Error"));
    expectNoOntologyState();
    // The publish folder is still looked for, with OntoFolder empty: in the working directory,
    // under the name still in OntoMeta (none yet).
    EXPECT_TRUE(folderExists(cwd.filePath(QStringLiteral("-publish"))));
}

TEST_F(LifecycleTest, AStoreFileWithoutMetaDataIsNotAnOntology)
{
    const QString other = ontology(QStringLiteral("other"));
    lx::store::Database db = lx::store::DBEngine::Workspaces(0).CreateDatabase(
        other, lx::store::dbLangGeneral, lx::store::dbVersion40);
    lx::store::TableDef table = db.CreateTableDef(QStringLiteral("Birds"));
    table.Fields.push_back(table.CreateField(QStringLiteral("Name"), lx::store::dbText, 50));
    db.Append(table);
    db.Close();

    openByDialog(other, 1);

    ASSERT_EQ(user.calls().size(), 2);
    EXPECT_EQ(user.calls()[1].text, QStringLiteral("Not an Lexarbor ontology - ") + other);
    EXPECT_EQ(user.calls()[1].style, msg::Critical);
    expectNoOntologyState();
}

TEST_F(LifecycleTest, AnyOtherFailureIsAnOpenError)
{
    const QString birds = sample(QStringLiteral("Birds"));
    openByDialog(birds);
    form.mnuFileClose->trigger();

    const QString gone = ontology(QStringLiteral("gone"));
    openByDialog(gone, 1);

    ASSERT_EQ(user.calls().size(), 3);
    EXPECT_EQ(user.calls()[2].text, QStringLiteral("Open Error"));
    EXPECT_EQ(user.calls()[2].title, QStringLiteral("Error"));
    expectNoOntologyState();
    EXPECT_TRUE(folderExists(cwd.filePath(QStringLiteral("Birds-publish"))))
        << "named after the ontology open before";
}

TEST_F(LifecycleTest, ARenamedOntologyGetsASecondPublishFolderAtTheNextOpen)
{
    const QString birds = sample(QStringLiteral("Birds"));
    openByDialog(birds);
    user.onModal(nameIt(QStringLiteral("Fauna")));
    form.mnuFileProperties->trigger();
    EXPECT_EQ(form.windowTitle(), QStringLiteral("Ontology Editor - Fauna"));
    EXPECT_EQ(lx::test::MetaDataField(birds, u"Name").toString(), QStringLiteral("Birds"))
        << "the file changes only at close";

    form.mnuFileClose->trigger();
    EXPECT_EQ(lx::test::MetaDataField(birds, u"Name").toString(), QStringLiteral("Fauna"));
    openByDialog(birds);

    EXPECT_EQ(form.windowTitle(), QStringLiteral("Ontology Editor - Fauna"));
    EXPECT_TRUE(folderExists(lx::OntologiesFolder() + QStringLiteral("Fauna-publish")));
    EXPECT_TRUE(folderExists(lx::OntologiesFolder() + QStringLiteral("Birds-publish")));
}

TEST_F(LifecycleTest, PropertiesAreFilledFromTheMetadataAndCheckTheName)
{
    openByDialog(sample(QStringLiteral("Birds")));
    const QString longest(25, QLatin1Char('n'));
    lx::PropertiesTexts shown;
    QList<bool> stayed;
    user.onModal([&](QWidget *dialog) {
            auto &properties = *qobject_cast<frmProperties *>(dialog);
            properties.show();
            shown = properties.Texts();
            for (const QString &name : {QString(), longest + QLatin1Char('n'), longest}) {
                properties.txtName->setText(name);
                properties.cmdOK->click();
                stayed << properties.isVisible();
            }
        })
        .answerMsgBox(msg::OK)
        .answerMsgBox(msg::OK);
    form.mnuFileProperties->trigger();

    EXPECT_EQ(shown.Name, QStringLiteral("Birds"));
    EXPECT_EQ(shown.Owner, QStringLiteral("Field station"));
    EXPECT_EQ(lx::TextToDate(shown.Created), SampleMeta{}.created);
    ASSERT_EQ(user.calls().size(), 4);
    EXPECT_EQ(user.calls()[2].text, QStringLiteral("You MUST specify a name."));
    EXPECT_EQ(user.calls()[2].style, msg::Exclamation);
    EXPECT_EQ(user.calls()[3].text,
              QStringLiteral("A maximum of 25 characters\r\nis allowed for the name"));
    EXPECT_EQ(user.calls()[3].style, msg::Exclamation);
    EXPECT_EQ(stayed, (QList<bool>{true, true, false}));
    EXPECT_EQ(Process().OntoMeta.Name, longest);
    EXPECT_EQ(form.windowTitle(), QStringLiteral("Ontology Editor - ") + longest);
}

TEST_F(LifecycleTest, ADroppedFileOpensOverTheOpenOneWithoutClosingIt)
{
    const QString birds = sample(QStringLiteral("Birds"));
    openByDialog(birds);
    QDir(home.path()).mkdir(QStringLiteral("elsewhere"));
    const QString fish = home.filePath(QStringLiteral("elsewhere/fish.ont"));
    lx::test::WriteOntologyFile(fish, SampleMeta{QStringLiteral("Fish")}, lx::test::Sample);

    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(fish)});
    // The user drags the file over the window and lets go.
    QDragEnterEvent enter(QPoint(20, 20), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&form, &enter);
    ASSERT_TRUE(enter.isAccepted());
    QDropEvent drop(QPointF(20, 20), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&form, &drop);

    EXPECT_EQ(Process().OntoPath, fish);
    EXPECT_EQ(form.windowTitle(), QStringLiteral("Ontology Editor - Fish"));
    EXPECT_EQ(Process().OntoFolder, lx::OntologiesFolder()) << "left as it was";
    EXPECT_FALSE(folderExists(home.filePath(QStringLiteral("elsewhere/Fish-publish"))));
    EXPECT_EQ(lx::test::MetaDataField(birds, u"Modified").toDateTime(), SampleMeta{}.modified)
        << "the old ontology's metadata isn't written";
}

TEST_F(LifecycleTest, CloseUnloadsTheOtherWindowsButTheEditorsNamesakes)
{
    openByDialog(sample(QStringLiteral("Birds")));
    auto &tree = Forms().Load<QWidget>();
    tree.setWindowTitle(QStringLiteral("Birds - Full tree"));
    auto &namesake = Forms().Load<QWidget>();
    namesake.setWindowTitle(QStringLiteral("Ontology Editor (spare)"));

    form.mnuFileClose->trigger();
    EXPECT_EQ(Forms().list(), (QList<QWidget *>{&form, &namesake}));
}

TEST_F(LifecycleTest, ClosingTheWindowClosesTheOntologyAndUnloadsTheRest)
{
    const QString birds = sample(QStringLiteral("Birds"));
    openByDialog(birds);
    auto &namesake = Forms().Load<QWidget>();
    namesake.setWindowTitle(QStringLiteral("Ontology Editor (spare)"));
    form.close();

    EXPECT_TRUE(Process().OntoPath.isEmpty());
    EXPECT_EQ(Forms().list(), QList<QWidget *>{&form});
    EXPECT_GT(lx::test::MetaDataField(birds, u"Modified").toDateTime().date().year(), 2001);
}

TEST_F(LifecycleTest, ExitClosesTheOntologyFirst)
{
    const QString birds = sample(QStringLiteral("Birds"));
    openByDialog(birds);
    form.mnuFileExit->trigger();

    EXPECT_TRUE(Process().OntoPath.isEmpty());
    EXPECT_FALSE(Process().OntoDB.isOpen());
    EXPECT_GT(lx::test::MetaDataField(birds, u"Modified").toDateTime().date().year(), 2001);
}

// A file the user can't write opens read-only: a good file, said once in the caption, and
// left as it was, with no side files beside it, when it is closed.
TEST_F(LifecycleTest, AReadOnlyOntologySaysSoAndIsLeftAsItWas)
{
    const QString birds = sample(QStringLiteral("Birds"));
    const QByteArray before = FileBytes(birds);
    {
        NoWriteAccess noAccess;
        openByDialog(birds);
    }
    ASSERT_EQ(user.calls().size(), 1) << "no message";
    EXPECT_EQ(form.windowTitle(), QStringLiteral("Ontology Editor - Birds (read-only)"));
    EXPECT_EQ(form.txtDef->toPlainText(), QStringLiteral("Undefined")) << "repaired on screen only";
    EXPECT_EQ(Process().TopConcept, QStringLiteral("THING"));

    user.onModal(nameIt(QStringLiteral("Fauna"))).answerMsgBox(msg::OK);
    form.mnuFileProperties->trigger();
    ASSERT_EQ(user.calls().size(), 3);
    EXPECT_EQ(user.calls()[2].text,
              QStringLiteral("Cannot update. The file is read-only: ") + birds);
    EXPECT_EQ(form.windowTitle(), QStringLiteral("Ontology Editor - Birds (read-only)"));

    form.mnuFileClose->trigger();
    expectNoOntologyState();
    EXPECT_EQ(FileBytes(birds), before);
    EXPECT_FALSE(QFileInfo::exists(birds + QStringLiteral("-wal")));
    EXPECT_FALSE(QFileInfo::exists(birds + QStringLiteral("-shm")));
}

// A file that fails to open is not written, not even by the close steps after the message.
TEST_F(LifecycleTest, AFailedOpenLeavesTheFileAsItWas)
{
    // A termbase file, whose MetaData lacks the ontology's fields.
    const QString termbase = ontology(QStringLiteral("terms"));
    {
        lx::store::Database db = lx::store::DBEngine::Workspaces(0).CreateDatabase(
            termbase, lx::store::dbLangGeneral, lx::store::dbVersion40);
        lx::BuildTermbaseTables(db);
        lx::test::AddRow(db, QStringLiteral("MetaData"), {{u"Name", QStringLiteral("Terms")}});
        db.Close();
    }
    // An ontology whose MetaData holds a Null where a number must be.
    const QString damaged = sample(QStringLiteral("Damaged"));
    {
        lx::store::Database db = lx::store::DBEngine::OpenDatabase(damaged);
        lx::store::Recordset rs = db.OpenRecordset(QStringLiteral("MetaData"));
        rs.Edit();
        rs.Collect(u"MaxParents", QVariant());
        rs.Update();
        rs.Close();
        db.Close();
    }
    for (const QString &path : {termbase, damaged}) {
        const QByteArray before = FileBytes(path);
        const qsizetype start = user.calls().size();
        openByDialog(path, 1);
        ASSERT_EQ(user.calls().size(), start + 2);
        EXPECT_EQ(user.calls()[start + 1].text, QStringLiteral("Open Error"));
        expectNoOntologyState();
        EXPECT_EQ(FileBytes(path), before) << path.toStdString();
    }
}

// A path with a double quote is refused before any file is made or opened.
TEST_F(LifecycleTest, APathWithADoubleQuoteIsNeitherCreatedNorOpened)
{
    const QString quoted = ontology(QStringLiteral("say \"cheese\""));
    const QString refusal = QStringLiteral("The file name must not contain a double quote (\"): ");
    user.answerSaveFile(quoted).answerMsgBox(msg::OK);
    form.mnuFileNew->trigger();
    EXPECT_FALSE(QFileInfo::exists(quoted));

    lx::test::WriteOntologyFile(quoted, SampleMeta{QStringLiteral("Cheese")}, lx::test::Sample);
    openByDialog(quoted, 1);
    ASSERT_EQ(user.calls().size(), 4);
    EXPECT_EQ(user.calls()[1].text, refusal + quoted);
    EXPECT_EQ(user.calls()[3].text, refusal + quoted);
    expectNoOntologyState();
}

// "New" reads the seed first: without it, nothing is made.
TEST_F(LifecycleTest, NewWithoutTheSeedStopsBeforeMakingTheFile)
{
    ASSERT_TRUE(QFile::remove(lx::SeedDatabasePath()));
    const QString path = ontology(QStringLiteral("birds"));
    user.answerSaveFile(path).answerMsgBox(msg::OK);
    form.mnuFileNew->trigger();
    ASSERT_EQ(user.calls().size(), 2);
    EXPECT_EQ(user.calls()[1].text,
              QStringLiteral("The seed file can't be read: Could not find file '") +
                  lx::SeedDatabasePath() + QStringLiteral("'."));
    EXPECT_FALSE(QFileInfo::exists(path));
    expectNoOntologyState();
}

} // namespace
