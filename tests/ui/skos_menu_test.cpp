// The editor's SKOS export as the user runs it from the Ontology menu.
#include "publish_fixture.h"

#include <QMenu>

namespace {

using lx::ScriptedInteraction;

class SkosMenuTest : public lx::test::PublishFormsTest {
protected:
    QAction *item()
    {
        QAction *action = form.findChild<QAction *>(QStringLiteral("mnuFileExportSkos"));
        EXPECT_NE(action, nullptr);
        return action;
    }
};

TEST_F(SkosMenuTest, AsksTheFileAndTheBaseThenWritesTheConceptsUnderThatBase)
{
    openZoo();
    QAction *skos = item();
    ASSERT_NE(skos, nullptr);
    EXPECT_EQ(skos->text(), QStringLiteral("Export as SKOS..."));
    const QList<QAction *> entries = form.mnuFile->actions();
    EXPECT_EQ(entries.indexOf(skos), entries.indexOf(form.mnuFileExport) + 1);

    const QString out = QDir(lx::Process().OntoFolder).filePath(QStringLiteral("zoo.ttl"));
    user.answerSaveFile(out).answerInputBox(QStringLiteral("http://ex.org/z/"));
    user.answerMsgBox(lx::msg::OK);
    skos->trigger();
    const QList<ScriptedInteraction::Call> &calls = user.calls();
    ASSERT_GE(calls.size(), 3);
    const auto &save = calls[calls.size() - 3];
    EXPECT_EQ(save.kind, ScriptedInteraction::Kind::SaveFile);
    EXPECT_EQ(save.request.fileName, QStringLiteral("Zoo.ttl"));
    const auto &base = calls[calls.size() - 2];
    EXPECT_EQ(base.kind, ScriptedInteraction::Kind::InputBox);
    EXPECT_EQ(base.defaultText, QStringLiteral("http://example.org/Zoo/"));
    EXPECT_TRUE(user.unexpectedCalls().isEmpty());
    const QByteArray turtle = bytes(out);
    EXPECT_TRUE(turtle.contains("<http://ex.org/z/concept/STONE> a skos:Concept"));
    EXPECT_TRUE(turtle.contains("<http://ex.org/z/subset/2> a skos:Collection"));
}

TEST_F(SkosMenuTest, CancellingEitherQuestionWritesNothing)
{
    openZoo();
    const QString out = QDir(lx::Process().OntoFolder).filePath(QStringLiteral("zoo.ttl"));
    user.answerSaveFile(std::nullopt);
    item()->trigger();
    user.answerSaveFile(out).answerInputBox(QString());
    item()->trigger();
    EXPECT_FALSE(QFile::exists(out));
    EXPECT_TRUE(user.unexpectedCalls().isEmpty());
}

} // namespace
