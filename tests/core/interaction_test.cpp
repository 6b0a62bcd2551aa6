#include "core/interaction.h"

#include <gtest/gtest.h>

namespace {

using lx::ScriptedInteraction;
using Kind = ScriptedInteraction::Kind;
namespace msg = lx::msg;

TEST(ScriptedInteraction, UnscriptedCallsAreRecordedAndCancelled)
{
    ScriptedInteraction ui;
    ui.answerOpenFile(QStringLiteral("/a.ont"));

    // The script expects a file dialog, the program asks a question first.
    EXPECT_EQ(ui.MsgBox(QStringLiteral("Sure?"), msg::YesNo | msg::Question | msg::DefaultButton2),
              msg::Cancel);
    EXPECT_EQ(ui.InputBox(QStringLiteral("Name")), QString());
    ui.ShowModal(nullptr);
    EXPECT_EQ(ui.GetOpenFileName({}), QStringLiteral("/a.ont"));
    EXPECT_EQ(ui.GetSaveFileName({}), std::nullopt);

    ASSERT_EQ(ui.unexpectedCalls().size(), 4);
    const auto &ask = ui.unexpectedCalls()[0];
    EXPECT_EQ(ask.text, QStringLiteral("Sure?"));
    EXPECT_EQ(ask.icon, msg::Question);
    EXPECT_EQ(ask.defaultButton, msg::DefaultButton2);
    EXPECT_EQ(ui.unexpectedCalls()[2].kind, Kind::Modal);
    EXPECT_EQ(ui.unexpectedCalls()[3].kind, Kind::SaveFile);
    EXPECT_EQ(ui.calls().size(), 5);
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
