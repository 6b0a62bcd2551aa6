#pragma once

#include "core/interaction.h"

#include <gtest/gtest.h>

namespace lx::test {

// A scripted user installed as the facade for one test. At the end the test fails if the
// program asked something the script didn't expect, or the script wasn't used up.
class ScriptedUser : public ScriptedInteraction {
public:
    ScriptedUser() : m_scope(*this) {}
    ~ScriptedUser() override
    {
        for (const Call &call : unexpectedCalls())
            ADD_FAILURE() << "unscripted call: \"" << call.text.toStdString() << "\" ("
                          << call.title.toStdString() << ")";
        EXPECT_EQ(pendingAnswers(), 0) << "scripted answers left unused";
    }

private:
    InteractionScope m_scope;
};

} // namespace lx::test
