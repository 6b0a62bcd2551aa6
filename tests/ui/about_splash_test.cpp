#include "ui/frm_about.h"
#include "ui/frm_splash.h"
#include "ui_fixture.h"

#include <QLabel>
#include <QPushButton>

namespace {

using lx::ui::Forms;
using lx::ui::frmAbout;
using lx::ui::SystemInfoTool;

QString Version()
{
    return QStringLiteral("%1.%2.%3")
        .arg(LEXARBOR_VERSION_MAJOR)
        .arg(LEXARBOR_VERSION_MINOR)
        .arg(LEXARBOR_VERSION_PATCH);
}

class SmallFormsTest : public lx::test::UiTest {};

TEST_F(SmallFormsTest, SplashAndAboutShowTheVersion)
{
    auto &splash = Forms().Load<lx::ui::frmSplash>();
    EXPECT_EQ(splash.lblVersion->text(), QStringLiteral("Versión ") + Version());
    auto &about = Forms().Load<frmAbout>();
    EXPECT_EQ(about.lblVersion->text(), QStringLiteral("Lexarbor. Version ") + Version());
}

const QString NoSysInfo =
    QStringLiteral("La información del sistema no está disponible en este momento");

TEST_F(SmallFormsTest, SystemInfoWithoutAToolSaysSo)
{
    auto &about = Forms().Load<frmAbout>(SystemInfoTool{[] { return QString(); }, nullptr});
    user.answerMsgBox(lx::msg::OK);
    about.cmdSysInfo->click();

    ASSERT_EQ(user.calls().size(), 1);
    EXPECT_EQ(user.calls()[0].text, NoSysInfo);
    EXPECT_EQ(user.calls()[0].title, QStringLiteral("Lexarbor"));
    EXPECT_EQ(user.calls()[0].style, lx::msg::OKOnly);
}

TEST_F(SmallFormsTest, SystemInfoStartsTheToolFound)
{
    QStringList started;
    const auto start = [&started](const QString &path) {
        started << path;
        return true;
    };
    auto &about = Forms().Load<frmAbout>(
        SystemInfoTool{[] { return QStringLiteral("/usr/bin/hardinfo"); }, start});
    about.cmdSysInfo->click();
    EXPECT_EQ(started, QStringList{QStringLiteral("/usr/bin/hardinfo")});
    EXPECT_TRUE(user.calls().isEmpty());
}

TEST_F(SmallFormsTest, SystemInfoThatWontStartSaysItIsUnavailable)
{
    auto &about = Forms().Load<frmAbout>(SystemInfoTool{
        [] { return QStringLiteral("/usr/bin/hardinfo"); }, [](const QString &) { return false; }});
    user.answerMsgBox(lx::msg::OK);
    about.cmdSysInfo->click();
    ASSERT_EQ(user.calls().size(), 1);
    EXPECT_EQ(user.calls()[0].text, NoSysInfo);
}

} // namespace
