#include "core/store/database.h"
#include "open_ontology_fixture.h"
#include "ui/frm_import.h"
#include "ui/frm_onto_edit.h"
#include "ui/frm_splash.h"
#include "ui/frm_tb_editor.h"
#include "ui/frm_tb_properties.h"
#include "ui/start.h"
#include "ui_fixture.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QPointer>
#include <QTest>
#include <QTimer>

#include <filesystem>

namespace {

using lx::ui::Forms;
using lx::ui::frmOntoEdit;
using lx::ui::frmSplash;
namespace pointer = lx::pointer;

class StartTest : public lx::test::UiTest {
protected:
    QStringList homeEntries() const
    {
        return QDir(home.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    }
    static frmSplash *splash() { return Forms().Find<frmSplash>(); }
    static frmOntoEdit &main() { return *Forms().Find<frmOntoEdit>(); }
};

TEST_F(StartTest, MakesBothFoldersAndTheSeedFileWhenMissing)
{
    lx::ui::Main();
    EXPECT_EQ(homeEntries(), (QStringList{QStringLiteral("Ontologies"), QStringLiteral("res.dat"),
                                          QStringLiteral("TermBases")}));
}

TEST_F(StartTest, ChangesNothingWhenTheFoldersAndTheSeedFileExist)
{
    ASSERT_TRUE(QDir(home.path()).mkdir(QStringLiteral("Ontologies")));
    ASSERT_TRUE(QDir(home.path()).mkdir(QStringLiteral("TermBases")));
    QFile kept(home.filePath(QStringLiteral("TermBases/kept.ltb")));
    ASSERT_TRUE(kept.open(QIODevice::WriteOnly));
    kept.close();
    QFile seed(home.filePath(QStringLiteral("res.dat")));
    ASSERT_TRUE(seed.open(QIODevice::WriteOnly));
    seed.write("own seed");
    seed.close();

    lx::ui::Main();
    EXPECT_EQ(homeEntries(), (QStringList{QStringLiteral("Ontologies"), QStringLiteral("res.dat"),
                                          QStringLiteral("TermBases")}));
    EXPECT_EQ(QDir(home.filePath(QStringLiteral("TermBases"))).entryList(QDir::Files),
              QStringList{QStringLiteral("kept.ltb")});
    EXPECT_TRUE(QDir(home.filePath(QStringLiteral("Ontologies"))).isEmpty());
    ASSERT_TRUE(seed.open(QIODevice::ReadOnly));
    EXPECT_EQ(seed.readAll(), QByteArray("own seed"));
}

TEST_F(StartTest, StartsDisabledUnderTheSplashWithTheHourglass)
{
    lx::ui::Main();
    ASSERT_NE(splash(), nullptr);
    EXPECT_EQ(Forms().list(), (QList<QWidget *>{&main(), splash()}));
    EXPECT_FALSE(main().isEnabled());
    EXPECT_TRUE(main().isVisible());
    EXPECT_TRUE(splash()->isVisible());
    EXPECT_EQ(user.MousePointer(), pointer::Hourglass);
    EXPECT_TRUE(splash()->tmrSplash->isActive());
    EXPECT_EQ(splash()->tmrSplash->interval(), 3500);
}

TEST_F(StartTest, TimerHandsOverToTheMainWindow)
{
    lx::ui::Main();
    splash()->tmrSplash_Timer();

    EXPECT_TRUE(main().isEnabled());
    EXPECT_EQ(user.MousePointer(), pointer::Default);
    EXPECT_EQ(splash(), nullptr);
    EXPECT_TRUE(lx::Process().OntoPath.isEmpty());
    // Only new, open and help respond before an ontology is open.
    for (int place = 1; place <= frmOntoEdit::ToolBarPlaces; ++place) {
        const bool live = place == 1 || place == 2 || place == 16;
        EXPECT_EQ(main().ToolButton(place)->isEnabled(), live) << "place " << place;
    }
}

TEST_F(StartTest, TheTimerItselfFiresTheHandOver)
{
    lx::ui::Main(std::chrono::milliseconds(0));
    // A timer of no interval is due at the first pass of the event loop; no waiting.
    for (int pass = 0; pass < 10 && splash(); ++pass)
        QCoreApplication::processEvents();
    EXPECT_EQ(splash(), nullptr);
    EXPECT_TRUE(main().isEnabled());
    EXPECT_EQ(user.MousePointer(), pointer::Default);
}

// Dismissing the splash by hand leaves the main window disabled and the hourglass on.
TEST_F(StartTest, KeyOrClickOnTheSplashOnlyTakesItAway)
{
    for (int by = 0; by < 2; ++by) {
        lx::ui::Main();
        const QPointer<QTimer> timer(splash()->tmrSplash);
        if (by == 0)
            QTest::keyClick(splash(), Qt::Key_Escape);
        else
            QTest::mouseClick(splash(), Qt::LeftButton);

        EXPECT_EQ(splash(), nullptr);
        ASSERT_FALSE(timer.isNull());
        EXPECT_FALSE(timer->isActive());
        lx::test::FlushDeletes();
        EXPECT_TRUE(timer.isNull()) << "the timer goes with the splash";
        EXPECT_FALSE(main().isEnabled());
        EXPECT_EQ(user.MousePointer(), pointer::Hourglass);
        Forms().UnloadAll();
    }
}

// A double click on a file starts the program with its path; options and other files are passed
// over, and a relative path is taken from the working folder.
TEST_F(StartTest, AnOntologyNamedOnTheCommandLineIsOpened)
{
    const QString fish = home.filePath(QStringLiteral("fish.ONT"));
    lx::test::WriteOntologyFile(fish, {QStringLiteral("Fish")}, lx::test::Sample);
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(home.path()));
    lx::ui::Main(frmSplash::DefaultInterval,
                 {QStringLiteral("--style"), QStringLiteral("notes.txt"),
                  QStringLiteral("fish.ONT"), QStringLiteral("other.ont")});
    QDir::setCurrent(before);

    EXPECT_EQ(lx::Process().OntoPath, QFileInfo(fish).absoluteFilePath());
    EXPECT_EQ(main().windowTitle(), QStringLiteral("Ontology Editor - Fish"));
    EXPECT_FALSE(main().isEnabled()) << "the splash still hands over";
}

TEST_F(StartTest, WithoutAnOntologyOnTheCommandLineNothingOpens)
{
    lx::ui::Main(frmSplash::DefaultInterval, {QStringLiteral("notes.txt")});
    EXPECT_TRUE(lx::Process().OntoPath.isEmpty());
}

TEST_F(StartTest, AFolderThatCantBeMadeEndsTheStart)
{
    QFile blocker(home.filePath(QStringLiteral("TermBases")));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    EXPECT_THROW(lx::ui::Main(), std::filesystem::filesystem_error);
    EXPECT_TRUE(QDir(home.filePath(QStringLiteral("Ontologies"))).exists());
}

// Files given to the program at start; makeTermbase leaves a termbase "Bird terms" made under the
// sample ontology "Birds", both closed again.
class StartWithFile : public lx::test::OpenOntologyTest {
protected:
    QString makeTermbase()
    {
        birds = sample(QStringLiteral("Birds"));
        openByDialog(birds);
        form.mnuToolsTBEd->trigger();
        const QString path = lx::TermBasesFolder() + QStringLiteral("birds.ltb");
        user.answerSaveFile(path)
            .onModal([](QWidget *dialog) {
                auto *properties = qobject_cast<lx::ui::frmTBProperties *>(dialog);
                properties->txtName->setText(QStringLiteral("Bird terms"));
                properties->cmdOK->click();
            })
            .answerMsgBox(lx::msg::OK);
        Forms().Find<lx::ui::frmTBEDitor>()->mnuFileNew->trigger();
        form.mnuFileClose->trigger();
        EXPECT_TRUE(lx::Process().OntoPath.isEmpty());
        EXPECT_TRUE(lx::Process().TermPath.isEmpty());
        return path;
    }
    QString birds;
};

TEST_F(StartWithFile, ATermbaseOpensInItsEditorUnderItsWorkingOntology)
{
    const QString termbase = makeTermbase();
    lx::ui::Main(frmSplash::DefaultInterval, {termbase, QStringLiteral("other.ont")});

    EXPECT_EQ(lx::Process().OntoPath, birds);
    EXPECT_EQ(lx::Process().TermPath, termbase);
    EXPECT_EQ(lx::Process().TermMeta.Name, QStringLiteral("Bird terms"));
    auto *editor = Forms().Find<lx::ui::frmTBEDitor>();
    ASSERT_NE(editor, nullptr);
    EXPECT_TRUE(editor->isVisible());
}

TEST_F(StartWithFile, ATermbaseThatCantBeReadSaysWhyAndOpensNothing)
{
    const QString gone = home.filePath(QStringLiteral("gone.ltb"));
    user.answerMsgBox(lx::msg::OK);
    lx::ui::Main(frmSplash::DefaultInterval, {gone});
    EXPECT_EQ(user.calls().last().text,
              QStringLiteral("Error 3024 - Could not find file '%1'.").arg(gone));
    EXPECT_EQ(user.calls().last().title, QStringLiteral("Error"));
    EXPECT_TRUE(lx::Process().OntoPath.isEmpty());
    EXPECT_FALSE(QFileInfo::exists(gone)) << "a file that could not be opened is never written";

    // Not a termbase at all: the open's own message.
    const QString text = home.filePath(QStringLiteral("text.ltb"));
    QFile file(text);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("plain text");
    file.close();
    user.answerMsgBox(lx::msg::OK);
    lx::ui::Main(frmSplash::DefaultInterval, {text});
    EXPECT_EQ(user.calls().last().text, QStringLiteral("Not an Lexarbor termbase - ") + text);
    EXPECT_TRUE(lx::Process().OntoPath.isEmpty());

    // A termbase without its metadata row names no working ontology.
    const QString termbase = makeTermbase();
    {
        lx::store::Database db = lx::store::DBEngine::OpenDatabase(termbase);
        lx::store::Recordset rows =
            db.OpenRecordset(QStringLiteral("MetaData"), lx::store::dbOpenTable);
        for (; !rows.Eof(); rows.MoveNext())
            rows.Delete();
        rows.Close();
        db.Close();
    }
    user.answerMsgBox(lx::msg::OK);
    lx::ui::Main(frmSplash::DefaultInterval, {termbase});
    EXPECT_EQ(user.calls().last().text, QStringLiteral("Not an Lexarbor termbase - ") + termbase);
    EXPECT_TRUE(lx::Process().OntoPath.isEmpty());
}

TEST_F(StartWithFile, AnExportFileIsImportedIntoANewOntologyWhenTheUserWishes)
{
    const QString exported = home.filePath(QStringLiteral("birds.oxp"));
    QFile file(exported);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();

    user.answerMsgBox(lx::msg::No);
    lx::ui::Main(frmSplash::DefaultInterval, {exported});
    EXPECT_EQ(user.calls().last().text, QStringLiteral("Import birds.oxp into a new ontology?"));
    EXPECT_TRUE(lx::Process().OntoPath.isEmpty());

    const QString made = ontology(QStringLiteral("birds"));
    QString chosen;
    user.answerMsgBox(lx::msg::Yes)
        .answerSaveFile(made)
        .onModal(nameIt(QStringLiteral("Birds")))
        .answerMsgBox(lx::msg::OK)
        .onModal([&](QWidget *dialog) {
            auto *import = qobject_cast<lx::ui::frmImport *>(dialog);
            ASSERT_NE(import, nullptr);
            chosen = import->txtImportFile->text();
            EXPECT_TRUE(import->cmdCheckFile->isEnabled());
            import->cmdClose->click();
        });
    lx::ui::Main(frmSplash::DefaultInterval, {exported});
    EXPECT_EQ(lx::Process().OntoPath, made);
    EXPECT_EQ(chosen, exported);
}

} // namespace
