// The termbase editor's TBX export as the user runs it from the File menu.
#include "element_tree_fixture.h"

#include <QFile>
#include <QMenu>
#include <QProgressBar>

namespace lx::test {
namespace {

using Kind = ScriptedInteraction::Kind;

using TbxMenuTest = ElementTreeUi;

TEST_F(TbxMenuTest, AsksTheFileThenWritesTheEntriesAndSaysWhatWentOut)
{
    QAction *item = editor->mnuFileExportTbx;
    EXPECT_EQ(item->text(), QStringLiteral("Export as TBX..."));
    EXPECT_TRUE(editor->mnuFile->actions().contains(item));
    EXPECT_TRUE(item->isEnabled());

    const QString out = TermBasesFolder() + QStringLiteral("birds.tbx");
    const qsizetype before = user.calls().size();
    user.answerSaveFile(out).answerMsgBox(msg::OK);
    item->trigger();
    ASSERT_EQ(user.calls().size(), before + 2);
    const auto &save = user.calls()[before];
    EXPECT_EQ(save.kind, Kind::SaveFile);
    EXPECT_EQ(save.request.fileName, QStringLiteral("Bird terms.tbx"));
    const auto &told = user.calls()[before + 1];
    EXPECT_EQ(told.title, QStringLiteral("Export as TBX"));
    // BIRD has a term; ANIMAL, EATS and the entry without a concept have none. The
    // cross-reference to an entry can't name it.
    EXPECT_EQ(told.text, QStringLiteral("1 entry, 1 term; 1 element written as a note for want of "
                                        "a TBX-Basic counterpart; 3 entries without terms left "
                                        "out.\r\nWritten to ") +
                             out);
    EXPECT_TRUE(user.unexpectedCalls().isEmpty());
    EXPECT_FALSE(editor->ProgressBar1->isVisible());

    QFile file(out);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray tbx = file.readAll();
    EXPECT_TRUE(tbx.contains("<conceptEntry id=\"BIRD\">"));
    EXPECT_TRUE(tbx.contains("<term>heron</term>"));
}

TEST_F(TbxMenuTest, CancellingWritesNothingAndAClosedTermbaseAsksNothing)
{
    const QString out = TermBasesFolder() + QStringLiteral("birds.tbx");
    user.answerSaveFile(std::nullopt);
    editor->mnuFileExportTbx->trigger();
    EXPECT_FALSE(QFile::exists(out));

    // A folder that isn't there: the user is told, and nothing is written.
    const QString nowhere = TermBasesFolder() + QStringLiteral("no/such/birds.tbx");
    user.answerSaveFile(nowhere).answerMsgBox(msg::OK);
    editor->mnuFileExportTbx->trigger();
    EXPECT_EQ(user.calls().back().icon, msg::Critical);
    EXPECT_FALSE(QFile::exists(nowhere));
    EXPECT_TRUE(user.unexpectedCalls().isEmpty());

    editor->mnuFileClose->trigger();
    const qsizetype before = user.calls().size();
    editor->mnuFileExportTbx->trigger();
    EXPECT_EQ(user.calls().size(), before);
}

} // namespace
} // namespace lx::test
