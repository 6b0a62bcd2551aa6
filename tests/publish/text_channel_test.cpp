#include "core/store/errors.h"
#include "publish/text_channel.h"
#include "support/temp_store.h"

using namespace lx;

namespace {

TEST(TextChannel, ChunksEndInCrLfAndTextIsInTheCodePage)
{
    TempFolder folder;
    const QString path = folder.path(QStringLiteral("t.html"));
    {
        TextChannel channel(path);
        channel.Print(u"one");
        channel.Print(u"two\r\n");
        channel.Print(QString::fromUtf8("€ é “q” ÿ"));
    }
    EXPECT_EQ(FileBytes(path), QByteArray("one\r\ntwo\r\n\r\n\x80 \xE9 \x93q\x94 \xFF\r\n"));

    // A new channel starts the file afresh.
    {
        TextChannel channel(path);
        channel.Print(u"x");
    }
    EXPECT_EQ(FileBytes(path), QByteArray("x\r\n"));
}

TEST(TextChannel, CharactersOutsideTheCodePageBecomeQuestionMarks)
{
    // One "?" per character, a surrogate pair too; the control characters the code page leaves
    // unassigned keep their byte.
    EXPECT_EQ(ToCodePage(QString::fromUtf8("a\u0100\U0001F600\u0081\u0080b")),
              QByteArray("a??\x81?b"));
    EXPECT_EQ(ToCodePage(u"\u20AC\u0178\u0152"), QByteArray("\x80\x9F\x8C"));
}

TEST(TextChannel, UnwritablePathIsAnAccessError)
{
    TempFolder folder;
    EXPECT_STORE_ERROR(TextChannel(folder.path(QStringLiteral("no/such/t.html"))), 75);
}

} // namespace
