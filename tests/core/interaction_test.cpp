#include "core/interaction.h"

#include <gtest/gtest.h>

namespace {

using lx::ScriptedInteraction;
using Kind = ScriptedInteraction::Kind;
namespace msg = lx::msg;

TEST(ScriptedInteraction, RecordsTextTitleButtonsIconAndDefault)
{
    ScriptedInteraction ui;
    ui.answerMsgBox(msg::No).answerMsgBox(msg::OK);

    EXPECT_EQ(ui.MsgBox(QStringLiteral("Delete it?"),
                        msg::YesNo | msg::Question | msg::DefaultButton2,
                        QStringLiteral("Confirm")),
              msg::No);
    EXPECT_EQ(ui.MsgBox(QStringLiteral("Done")), msg::OK);

    ASSERT_EQ(ui.calls().size(), 2);
    const auto &ask = ui.calls()[0];
    EXPECT_EQ(ask.kind, Kind::MsgBox);
    EXPECT_EQ(ask.text, QStringLiteral("Delete it?"));
    EXPECT_EQ(ask.title, QStringLiteral("Confirm"));
    EXPECT_EQ(ask.buttons, msg::YesNo);
    EXPECT_EQ(ask.icon, msg::Question);
    EXPECT_EQ(ask.defaultButton, msg::DefaultButton2);
    // No title given: the program's name, as every box of the program shows.
    EXPECT_EQ(ui.calls()[1].title, QStringLiteral("Lexarbor"));
    EXPECT_EQ(ui.calls()[1].buttons, msg::OKOnly);
    EXPECT_EQ(ui.calls()[1].icon, 0);
    EXPECT_TRUE(ui.unexpectedCalls().isEmpty());
}

TEST(ScriptedInteraction, InputBoxAndDialogsAnswerInOrder)
{
    ScriptedInteraction ui;
    ui.answerInputBox(QStringLiteral("out.oxp"))
        .answerSaveFile(std::nullopt)
        .answerOpenFile(QStringLiteral("/o/a.ont"))
        .answerFolder(QStringLiteral("/pub"));

    EXPECT_EQ(ui.InputBox(QStringLiteral("Enter output file name: "), QStringLiteral("File Name"),
                          QStringLiteral("export.oxp")),
              QStringLiteral("out.oxp"));
    EXPECT_EQ(
        ui.GetSaveFileName({.title = QStringLiteral("New"), .defaultExt = QStringLiteral("ont")}),
        std::nullopt);
    EXPECT_EQ(ui.GetOpenFileName({.filter = QStringLiteral("Ontology Files (*.ont)|*.ont|")}),
              QStringLiteral("/o/a.ont"));
    EXPECT_EQ(ui.BrowseForFolder(QStringLiteral("Output"), QStringLiteral("/")),
              QStringLiteral("/pub"));

    ASSERT_EQ(ui.calls().size(), 4);
    EXPECT_EQ(ui.calls()[0].defaultText, QStringLiteral("export.oxp"));
    EXPECT_EQ(ui.calls()[0].title, QStringLiteral("File Name"));
    EXPECT_EQ(ui.calls()[1].request.defaultExt, QStringLiteral("ont"));
    EXPECT_EQ(ui.calls()[2].request.filter, QStringLiteral("Ontology Files (*.ont)|*.ont|"));
    EXPECT_EQ(ui.calls()[3].request.initialDir, QStringLiteral("/"));
    EXPECT_EQ(ui.pendingAnswers(), 0);
}

TEST(ScriptedInteraction, UnscriptedCallsAreRecordedAndCancelled)
{
    ScriptedInteraction ui;
    ui.answerOpenFile(QStringLiteral("/a.ont"));

    // The script expects a file dialog, the program asks a question first.
    EXPECT_EQ(ui.MsgBox(QStringLiteral("Sure?"), msg::YesNo), msg::Cancel);
    EXPECT_EQ(ui.InputBox(QStringLiteral("Name")), QString());
    ui.ShowModal(nullptr);
    EXPECT_EQ(ui.GetOpenFileName({}), QStringLiteral("/a.ont"));
    EXPECT_EQ(ui.GetSaveFileName({}), std::nullopt);

    ASSERT_EQ(ui.unexpectedCalls().size(), 4);
    EXPECT_EQ(ui.unexpectedCalls()[0].text, QStringLiteral("Sure?"));
    EXPECT_EQ(ui.unexpectedCalls()[2].kind, Kind::Modal);
    EXPECT_EQ(ui.unexpectedCalls()[3].kind, Kind::SaveFile);
    EXPECT_EQ(ui.calls().size(), 5);
}

TEST(ScriptedInteraction, PointerAndClipboardKeepState)
{
    ScriptedInteraction ui;
    ui.SetMousePointer(lx::pointer::Hourglass);
    ui.SetMousePointer(lx::pointer::Default);
    EXPECT_EQ(ui.MousePointer(), lx::pointer::Default);
    EXPECT_EQ(ui.pointerHistory(), (QList<int>{11, 0}));
    ui.SetClipboardText(QStringLiteral("CONCEPT"));
    EXPECT_EQ(ui.ClipboardText(), QStringLiteral("CONCEPT"));
}

TEST(InteractionScope, InstallsAndRestores)
{
    ScriptedInteraction outer;
    ScriptedInteraction inner;
    const lx::InteractionScope outerScope(outer);
    {
        const lx::InteractionScope innerScope(inner);
        EXPECT_EQ(&lx::UI(), &inner);
    }
    EXPECT_EQ(&lx::UI(), &outer);
}

} // namespace
