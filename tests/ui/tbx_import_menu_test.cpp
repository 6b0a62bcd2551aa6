// The termbase editor's TBX import as the user runs it from the File menu.
#include "element_tree_fixture.h"
#include "ontology/store/lookups.h"

#include <QFile>
#include <QMenu>
#include <QProgressBar>

namespace lx::test {
namespace {

using Kind = ScriptedInteraction::Kind;

class TbxImportMenuTest : public ElementTreeUi {
protected:
    QString write(const char *name, const QByteArray &text)
    {
        const QString path = TermBasesFolder() + QString::fromLatin1(name);
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        return path;
    }
    int terms()
    {
        int count = 0;
        store::ForEachRow(Process().TermDB, QStringLiteral("SELECT elemID FROM TERMS"),
                          [&](const store::Recordset &) { ++count; });
        return count;
    }
};

TEST_F(TbxImportMenuTest, AsksTheFileAndTheParentOfMissingConceptsThenReloadsTheTree)
{
    QAction *item = editor->mnuFileImportTbx;
    EXPECT_EQ(item->text(), QStringLiteral("Import TBX..."));
    EXPECT_TRUE(editor->mnuFile->actions().contains(item));
    EXPECT_TRUE(item->isEnabled());

    const QString in = write(
        "in.tbx", "<tbx type='TBX-Basic' style='dca' xml:lang='en' "
                  "xmlns='urn:iso:std:iso:30042:ed-2'><text><body>"
                  "<conceptEntry id='BIRD'><langSec xml:lang='en'><termSec><term>heron</term>"
                  "</termSec><termSec><term>egret</term></termSec></langSec></conceptEntry>"
                  "<conceptEntry id='GRIFFIN'><langSec xml:lang='en'><termSec><term>griffin</term>"
                  "</termSec></langSec></conceptEntry></body></text></tbx>");
    // The sample ontology has no languages yet; a new concept's first name needs its own.
    store::Recordset languages =
        Process().OntoDB.OpenRecordset(QStringLiteral("Languages"), store::dbOpenTable);
    languages.AddNew();
    languages.Collect(u"Lang_ID", QStringLiteral("en"));
    languages.Collect(u"Language", QStringLiteral("English"));
    languages.Update();
    languages.Close();
    const int entriesBefore = editor->EntryCount;
    const qsizetype before = user.calls().size();
    user.answerOpenFile(in)
        .answerMsgBox(msg::Yes)
        .answerInputBox(QStringLiteral("ANIMAL"))
        .answerMsgBox(msg::OK);
    item->trigger();
    ASSERT_EQ(user.calls().size(), before + 4);
    EXPECT_EQ(user.calls()[before].kind, Kind::OpenFile);
    EXPECT_TRUE(user.calls()[before + 1].text.contains(QStringLiteral("GRIFFIN")));
    EXPECT_EQ(user.calls()[before + 3].title, QStringLiteral("Import TBX"));
    EXPECT_TRUE(user.calls()[before + 3].text.startsWith(
        QStringLiteral("1 entries added, 1 merged, 0 left out; 2 new terms.")))
        << user.calls()[before + 3].text.toStdString();
    EXPECT_TRUE(user.unexpectedCalls().isEmpty());
    EXPECT_FALSE(editor->ProgressBar1->isVisible());

    EXPECT_TRUE(ConceptExists(QStringLiteral("GRIFFIN")));
    EXPECT_EQ(editor->EntryCount, entriesBefore + 1);
    EXPECT_TRUE(QFile::exists(in + QStringLiteral(".log")));
    // The tree was read again: the new entry stands under body.
    root()->setExpanded(true);
    ASSERT_NE(body(), nullptr);
    body()->setExpanded(true);
    EXPECT_TRUE(texts(body()).contains(QStringLiteral("GRIFFIN")))
        << texts(body()).join(u',').toStdString();
}

TEST_F(TbxImportMenuTest, ABadFileIsToldAndChangesNothingAndCancelAsksNoMore)
{
    const int before = terms();
    const QString bad = write("bad.tbx", "<tbx type='TBX-Core'/>");
    user.answerOpenFile(bad).answerMsgBox(msg::OK);
    editor->mnuFileImportTbx->trigger();
    EXPECT_EQ(user.calls().back().icon, msg::Critical);
    EXPECT_TRUE(user.calls().back().text.contains(QStringLiteral("is not TBX-Basic")));
    EXPECT_EQ(terms(), before);

    // Missing concepts: Cancel at the question stops before anything is written.
    const QString in = write("in.tbx", "<tbx type='TBX-Basic' style='dca' xml:lang='en' "
                                       "xmlns='urn:iso:std:iso:30042:ed-2'><text><body>"
                                       "<conceptEntry id='GRIFFIN'><langSec xml:lang='en'>"
                                       "<termSec><term>griffin</term></termSec></langSec>"
                                       "</conceptEntry></body></text></tbx>");
    user.answerOpenFile(in).answerMsgBox(msg::Cancel);
    editor->mnuFileImportTbx->trigger();
    EXPECT_EQ(terms(), before);
    EXPECT_FALSE(ConceptExists(QStringLiteral("GRIFFIN")));

    user.answerOpenFile(std::nullopt);
    editor->mnuFileImportTbx->trigger();
    EXPECT_TRUE(user.unexpectedCalls().isEmpty());
}

} // namespace
} // namespace lx::test
