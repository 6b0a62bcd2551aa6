#include "edit_fixture.h"
#include "ontology/edit/onto_options.h"

using namespace lx;

namespace {

using OptionsTest = EditTest;

TEST_F(OptionsTest, AParentsBoxOfZeroSkipsOnlyTheLimitAndTheListMode)
{
    OntoMetaData &meta = Process().OntoMeta;
    meta.MaxParents = 2;
    meta.ListTop = 3;
    StoreOntoOptions({QStringLiteral("0"), 1, {true, true, false}, QStringLiteral("French"), true});
    EXPECT_EQ(meta.MaxParents, 2);
    EXPECT_EQ(meta.ListTop, 3);
    EXPECT_EQ(meta.DefLang, QStringLiteral("fr"));
    EXPECT_TRUE(meta.Naming);
    EXPECT_EQ(column(QStringLiteral("SELECT * FROM Languages WHERE Show = -1"), u"Lang_ID"),
              (QStringList{QStringLiteral("en"), QStringLiteral("fr")}));

    StoreOntoOptions({QStringLiteral("7"), 1, {}, QStringLiteral("German"), false});
    EXPECT_EQ(meta.MaxParents, 7);
    EXPECT_EQ(meta.ListTop, 1);
}

TEST_F(OptionsTest, TheParentsBoxIsReadAsAByte)
{
    EXPECT_EQ(TextAsByte(QStringLiteral(" 9 ")), 9);
    EXPECT_STORE_ERROR(TextAsByte(QStringLiteral("nine")), 13);
    EXPECT_STORE_ERROR(TextAsByte(QStringLiteral("-1")), 6);
    EXPECT_EQ(LeadingNumber(QStringLiteral("12a")), 12);
    EXPECT_EQ(LeadingNumber(QStringLiteral("abc")), 0);
}

} // namespace
