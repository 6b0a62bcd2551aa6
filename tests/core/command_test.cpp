#include "core/command.h"
#include "core/store/errors.h"
#include "support/scripted_user.h"

using namespace lx;

TEST(Command, AStoreFailureEndsTheCommandWithNumberAndDescriptionAndTheProgramGoesOn)
{
    test::ScriptedUser user;
    user.answerMsgBox(msg::OK);
    bool after = false;
    RunCommand([&] {
        throw store::StoreError::make(store::err::DuplicateKey);
        after = true; // never reached: the failure ends the command
    });
    EXPECT_FALSE(after);
    ASSERT_EQ(user.calls().size(), 1);
    const auto &call = user.calls().front();
    EXPECT_TRUE(call.text.startsWith(QStringLiteral("Error 3022 - The changes you requested")));
    EXPECT_EQ(call.icon, msg::Critical);
    EXPECT_EQ(call.title, QStringLiteral("Lexarbor"));

    int runs = 0;
    RunCommand([&] { ++runs; });
    EXPECT_EQ(runs, 1);
}
