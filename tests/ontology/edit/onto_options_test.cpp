#include "edit_fixture.h"
#include "ontology/edit/onto_options.h"

using namespace lx;

namespace {

using OptionsTest = EditTest;

TEST_F(OptionsTest, TheParentsBoxIsReadAsAByte)
{
    EXPECT_EQ(TextAsByte(QStringLiteral(" 9 ")), 9);
    EXPECT_STORE_ERROR(TextAsByte(QStringLiteral("nine")), 13);
    EXPECT_STORE_ERROR(TextAsByte(QStringLiteral("-1")), 6);
    EXPECT_EQ(LeadingNumber(QStringLiteral("12a")), 12);
    EXPECT_EQ(LeadingNumber(QStringLiteral("abc")), 0);
}

} // namespace
