#include "core/interaction.h"
#include "core/store/database.h"
#include "fake_editor.h"
#include "support/temp_store.h"
#include "termbase/store/lifecycle.h"
#include "termbase_fixture.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sqlite3.h>

using namespace lx;
using namespace lx::store;

namespace {

class TermbaseLifeCycle : public TermbaseFixture {
protected:
    void SetUp() override
    {
        TermbaseFixture::SetUp();
        Process().OntoFolder = OntologiesFolder();
    }

    // The user creates a termbase at termbasePath() and fills the properties.
    void createByUser()
    {
        ScriptedInteraction user;
        InteractionScope scope(user);
        user.answerSaveFile(termbasePath()).answerMsgBox(msg::OK);
        NewTermbase(editor);
        ASSERT_TRUE(user.unexpectedCalls().isEmpty());
        ASSERT_EQ(user.calls().size(), 2);
        EXPECT_EQ(user.calls()[1].text, QStringLiteral("TermBase \"Demo\" has been created!"));
        EXPECT_EQ(user.calls()[1].icon, msg::Information);
    }

    // Sets MetaData.Ontology of the closed termbase file.
    void setWorkingOntology(const QString &path)
    {
        Database db = DBEngine::OpenDatabase(termbasePath());
        Recordset rs = db.OpenRecordset(QStringLiteral("SELECT * FROM MetaData"), dbOpenDynaset);
        rs.Edit();
        rs.Collect(u"Ontology", path);
        rs.Update();
        rs.Close();
        db.Close();
    }

    QString openByUser(const QString &path)
    {
        ScriptedInteraction user;
        InteractionScope scope(user);
        user.answerOpenFile(path).answerMsgBox(msg::OK);
        OpenTermbaseByDialog(editor);
        return user.calls().size() > 1 ? user.calls()[1].text : QString();
    }

    FakeTermbaseEditor editor;
};

} // namespace

TEST_F(TermbaseLifeCycle, ANewTermbaseIsLinkedToItsOntologyAndOpenBelowIt)
{
    createByUser();
    ProcessState &p = Process();
    EXPECT_EQ(p.TermPath, termbasePath());
    EXPECT_EQ(p.TermFolder, TermBasesFolder());
    EXPECT_EQ(editor.propertiesOntology, p.OntoPath);
    EXPECT_EQ(editor.caption, QStringLiteral("TermBase Editor - Demo"));
    EXPECT_EQ(editor.ontologyPanel, QStringLiteral("Demo"));
    EXPECT_TRUE(editor.enabled);
    EXPECT_FALSE(editor.asList);
    EXPECT_EQ(editor.viewLoads, 1);
    EXPECT_EQ(editor.EntryCount, 0);
    EXPECT_EQ(editor.LastElemID, 15) << "the last element of the seeded frame";
    EXPECT_TRUE(QFileInfo(TermBasesFolder() + QStringLiteral("Demo-publish")).isDir());
    EXPECT_TRUE(QFileInfo(TermBasesFolder() + QStringLiteral("Demo-back")).isDir());

    Recordset links = p.OntoDB.OpenRecordset(QStringLiteral("TermBases"), dbOpenSnapshot);
    ASSERT_FALSE(links.Eof());
    EXPECT_EQ(links.Value(u"DBName").toString(), termbasePath());

    EXPECT_EQ(p.TermMeta.Name, QStringLiteral("Demo"));
    EXPECT_EQ(p.TermMeta.Owner, QStringLiteral("Owner"));
    EXPECT_EQ(p.TermMeta.Ontology, p.OntoPath);
    EXPECT_EQ(p.TermMeta.DCLang, QStringLiteral("en"));
    EXPECT_EQ(p.TermMeta.DCList, QStringLiteral("tree"));
    EXPECT_FALSE(p.TermMeta.CSBrowser);
}

TEST_F(TermbaseLifeCycle, ATermbaseInTheOntologysFolderIsRefusedAndNotMade)
{
    ScriptedInteraction user;
    InteractionScope scope(user);
    const QString path = OntologiesFolder() + QStringLiteral("here.ltb");
    user.answerSaveFile(path).answerMsgBox(msg::OK);
    NewTermbase(editor);
    ASSERT_EQ(user.calls().size(), 2);
    EXPECT_EQ(user.calls()[1].text,
              QStringLiteral("A termbase cannot reside in the same folder as its working "
                             "ontology.\r\nTip: save all your ontologies in one folder and your "
                             "termbases in another."));
    EXPECT_EQ(user.calls()[1].icon, msg::Exclamation);
    EXPECT_TRUE(Process().TermPath.isEmpty());
    EXPECT_TRUE(Process().TermFolder.isEmpty());
    EXPECT_FALSE(QFile::exists(path));
}

TEST_F(TermbaseLifeCycle, AnExistingFileAndACancelledDialog)
{
    createByUser();
    CloseTermbaseCommand(editor);
    {
        ScriptedInteraction user;
        InteractionScope scope(user);
        user.answerSaveFile(termbasePath()).answerMsgBox(msg::No);
        NewTermbase(editor);
        ASSERT_EQ(user.calls().size(), 2);
        EXPECT_EQ(user.calls()[1].text, QStringLiteral("TermBase exists already!"));
        EXPECT_EQ(user.calls()[1].buttons, msg::YesNo);
        EXPECT_TRUE(Process().TermPath.isEmpty());
    }
    ScriptedInteraction user;
    InteractionScope scope(user);
    user.answerSaveFile(std::nullopt);
    NewTermbase(editor);
    EXPECT_EQ(user.calls().size(), 1) << "a cancel says nothing";
    EXPECT_TRUE(user.unexpectedCalls().isEmpty());
}

TEST_F(TermbaseLifeCycle, CloseWritesTheMetadataBackAndReopeningShowsIt)
{
    createByUser();
    editor.propertiesAnswer.Name = QStringLiteral("Renamed");
    EditTermbaseProperties(editor);
    EXPECT_EQ(editor.caption, QStringLiteral("TermBase Editor - Renamed"));
    EXPECT_TRUE(editor.propertiesOntology.isEmpty()) << "the working ontology isn't offered";
    CloseTermbaseCommand(editor);
    ProcessState &p = Process();
    EXPECT_TRUE(p.TermPath.isEmpty());
    EXPECT_TRUE(p.TermMeta.Name.isEmpty());
    EXPECT_EQ(editor.caption, QStringLiteral("TermBase Editor"));
    EXPECT_EQ(editor.ontologyPanel, QString());
    EXPECT_EQ(editor.cleared, 1);
    EXPECT_FALSE(p.TermDB.isOpen());

    EXPECT_EQ(openByUser(termbasePath()), QString()) << "no message";
    EXPECT_EQ(p.TermPath, termbasePath());
    EXPECT_EQ(p.TermMeta.Name, QStringLiteral("Renamed"));
    EXPECT_EQ(p.TermMeta.Ontology, p.OntoPath);
    EXPECT_EQ(editor.caption, QStringLiteral("TermBase Editor - Renamed"));
    EXPECT_TRUE(QFileInfo(TermBasesFolder() + QStringLiteral("Renamed-back")).isDir());
}

TEST_F(TermbaseLifeCycle, OnlyItsOwnWorkingOntologyOpensItWhateverTheCase)
{
    createByUser();
    CloseTermbaseCommand(editor);
    ProcessState &p = Process();

    setWorkingOntology(p.OntoPath.toUpper());
    EXPECT_EQ(openByUser(termbasePath()), QString());
    EXPECT_EQ(p.TermPath, termbasePath());
    CloseTermbaseCommand(editor);

    const QString elsewhere = QStringLiteral("/moved/work.ont");
    setWorkingOntology(elsewhere);
    editor.caption.clear();
    EXPECT_EQ(openByUser(termbasePath()),
              QStringLiteral("This TermBase's Working Ontology is /moved/work.ont. You can't use "
                             "it with current current Working ontology (") +
                  p.OntoPath + QStringLiteral(")."));
    EXPECT_TRUE(p.TermPath.isEmpty());
    EXPECT_TRUE(p.TermFolder.isEmpty());
    EXPECT_FALSE(p.TermDB.isOpen());
    EXPECT_TRUE(editor.caption.isEmpty());
    // The refused open still makes the termbase's folders, with no folder in front of the name.
    EXPECT_TRUE(QFileInfo(cwd.filePath(QStringLiteral("Demo-publish"))).isDir());
    EXPECT_TRUE(QFileInfo(cwd.filePath(QStringLiteral("Demo-back"))).isDir());
}

TEST_F(TermbaseLifeCycle, AFileThatIsNoTermbaseIsNamedAndTermPathStays)
{
    const QString path = TermBasesFolder() + QStringLiteral("junk.ltb");
    QFile junk(path);
    ASSERT_TRUE(junk.open(QIODevice::WriteOnly));
    junk.write("not a store file at all, just some text that is long enough to be read");
    junk.close();
    EXPECT_EQ(openByUser(path), QStringLiteral("Not an Lexarbor termbase - ") + path);
    EXPECT_EQ(Process().TermPath, path);
}

TEST_F(TermbaseLifeCycle, OptionsTakeEnglishOrSpanishOnly)
{
    createByUser();
    ProcessState &p = Process();
    {
        ScriptedInteraction user;
        InteractionScope scope(user);
        user.answerMsgBox(msg::OK);
        editor.optionsAnswer = {QStringLiteral("fr"), true, true};
        SetTermbaseOptions(editor);
        ASSERT_EQ(user.calls().size(), 1);
        EXPECT_EQ(user.calls()[0].text, QStringLiteral("Not available yet."));
        EXPECT_EQ(user.calls()[0].title, QStringLiteral("Error"));
        EXPECT_EQ(p.TermMeta.DCLang, QStringLiteral("en"));
        EXPECT_FALSE(p.TermMeta.CSBrowser) << "nothing changes";
        EXPECT_EQ(p.TermMeta.DCList, QStringLiteral("tree"));
    }
    EXPECT_EQ(editor.optionsShown.Language, QStringLiteral("en"));
    ScriptedInteraction user;
    InteractionScope scope(user);
    editor.optionsAnswer = {QStringLiteral("es"), true, true};
    SetTermbaseOptions(editor);
    EXPECT_TRUE(user.calls().isEmpty());
    EXPECT_EQ(p.TermMeta.DCLang, QStringLiteral("es"));
    EXPECT_TRUE(p.TermMeta.CSBrowser);
    EXPECT_EQ(p.TermMeta.DCList, QStringLiteral("list"));
    EXPECT_TRUE(editor.asList);
    EXPECT_EQ(editor.nameReloads, 1);

    // Kept in the file at close.
    CloseTermbaseCommand(editor);
    EXPECT_EQ(openByUser(termbasePath()), QString());
    EXPECT_EQ(p.TermMeta.DCLang, QStringLiteral("es"));
    EXPECT_EQ(p.TermMeta.DCList, QStringLiteral("list"));
    EXPECT_TRUE(editor.asList);
}

namespace {

// What the user is told when "New" stops before making anything.
QString newTermbaseRefusal(TermbaseEditor &editor, const QString &path)
{
    ScriptedInteraction user;
    InteractionScope scope(user);
    user.answerSaveFile(path).answerMsgBox(msg::OK);
    NewTermbase(editor);
    return user.calls().size() == 2 ? user.calls()[1].text : QString();
}

// "New" checks what would stop it half-way before it makes the file: a path that criteria
// can't hold, an ontology that can't take the link, a seed that can't be read.
TEST_F(TermbaseLifeCycle, NewStopsBeforeMakingAFileItCouldNotFinish)
{
    ProcessState &p = Process();
    const QString quoted = TermBasesFolder() + QStringLiteral("say \"cheese\".ltb");
    EXPECT_EQ(newTermbaseRefusal(editor, quoted),
              QStringLiteral("The file name must not contain a double quote (\"): ") + quoted);
    EXPECT_FALSE(QFile::exists(quoted));

    ASSERT_TRUE(QFile::copy(SeedDatabasePath(), SeedDatabasePath() + QStringLiteral(".kept")));
    ASSERT_TRUE(QFile::remove(SeedDatabasePath()));
    EXPECT_EQ(newTermbaseRefusal(editor, termbasePath()),
              QStringLiteral("The seed file can't be read: Could not find file '") +
                  SeedDatabasePath() + QStringLiteral("'."));
    ASSERT_TRUE(QFile::rename(SeedDatabasePath() + QStringLiteral(".kept"), SeedDatabasePath()));

    p.OntoDB.Close();
    p.OntoDB = DBEngine::OpenDatabase(p.OntoPath, false, true, QString());
    EXPECT_EQ(newTermbaseRefusal(editor, termbasePath()),
              QStringLiteral("Cannot update. The file is read-only: ") + p.OntoPath);

    EXPECT_FALSE(QFile::exists(termbasePath()));
    EXPECT_TRUE(p.TermPath.isEmpty());
}

TEST_F(TermbaseLifeCycle, AReadOnlyTermbaseSaysSoAndIsLeftAsItWas)
{
    createByUser();
    CloseTermbaseCommand(editor);
    const QByteArray before = FileBytes(termbasePath());
    {
        NoWriteAccess noAccess;
        EXPECT_EQ(openByUser(termbasePath()), QString()) << "a good file, and no message";
    }
    EXPECT_EQ(editor.caption, QStringLiteral("TermBase Editor - Demo (read-only)"));
    EXPECT_TRUE(editor.enabled);

    ScriptedInteraction user;
    InteractionScope scope(user);
    user.answerMsgBox(msg::OK);
    editor.propertiesAnswer.Name = QStringLiteral("Renamed");
    EditTermbaseProperties(editor);
    ASSERT_EQ(user.calls().size(), 1);
    EXPECT_EQ(user.calls()[0].text,
              QStringLiteral("Cannot update. The file is read-only: ") + termbasePath());
    EXPECT_EQ(Process().TermMeta.Name, QStringLiteral("Demo"));

    CloseTermbaseCommand(editor);
    EXPECT_EQ(FileBytes(termbasePath()), before);
    EXPECT_FALSE(QFile::exists(termbasePath() + QStringLiteral("-wal")));
}

// A file that fails to open is not written, not even by the close that follows.
TEST_F(TermbaseLifeCycle, AFailedOpenLeavesTheFileAsItWas)
{
    // An ontology file, whose MetaData has other fields.
    const QString ontology = TermBasesFolder() + QStringLiteral("onto.ltb");
    {
        Database db = DBEngine::Workspaces(0).CreateDatabase(ontology, dbLangGeneral);
        BuildOntologyTables(db);
        Recordset rs = db.OpenRecordset(QStringLiteral("MetaData"), dbOpenTable);
        rs.AddNew();
        rs.Collect(u"Name", QStringLiteral("Onto"));
        rs.Update();
        db.Close();
    }
    // A termbase of this ontology with a table missing behind the store's back.
    createByUser();
    CloseTermbaseCommand(editor);
    sqlite3 *raw = nullptr;
    sqlite3_open(termbasePath().toUtf8().constData(), &raw);
    ASSERT_EQ(sqlite3_exec(raw, "DROP TABLE pointers", nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(raw);

    for (const QString &path : {ontology, termbasePath()}) {
        const QByteArray before = FileBytes(path);
        EXPECT_FALSE(openByUser(path).isEmpty()) << "an error is shown";
        EXPECT_EQ(Process().TermPath, path);
        CloseTermbaseCommand(editor);
        EXPECT_EQ(FileBytes(path), before) << path.toStdString();
    }
}

} // namespace
