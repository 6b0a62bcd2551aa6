#include "support/temp_store.h"
#include "ui/local_browser.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>

#include <gtest/gtest.h>

using namespace lx::ui;

namespace {

void write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

TEST(LocalBrowser, PagesComeOnlyFromTheFoldersAndTheWebGoesToTheUsersBrowser)
{
    TempFolder folder;
    const QString site = folder.path(QStringLiteral("tb-publish"));
    const QString other = folder.path(QStringLiteral("tb-private"));
    QDir().mkpath(site);
    QDir().mkpath(other);
    write(site + QStringLiteral("/a.html"), "<p>a</p>");
    write(other + QStringLiteral("/b.html"), "<p>b</p>");
    const QStringList folders{site};

    auto local = [](const QString &path) { return QUrl::fromLocalFile(path); };
    EXPECT_TRUE(LocalPageAllowed(local(site + QStringLiteral("/a.html")), folders));
    EXPECT_TRUE(LocalPageAllowed(local(site + QStringLiteral("/not-yet.html")), folders));
    EXPECT_TRUE(LocalPageAllowed(QUrl(QStringLiteral("about:blank")), folders));
    // Out of the folder by "..", by a neighbour whose name starts the same, by another scheme.
    EXPECT_FALSE(LocalPageAllowed(local(site + QStringLiteral("/../tb-private/b.html")), folders));
    EXPECT_FALSE(LocalPageAllowed(local(site + QStringLiteral("x/a.html")), folders));
    EXPECT_FALSE(LocalPageAllowed(local(other + QStringLiteral("/b.html")), folders));
    EXPECT_FALSE(LocalPageAllowed(QUrl(QStringLiteral("https://example.org/a.html")), folders));
    EXPECT_FALSE(LocalPageAllowed(QUrl(QStringLiteral("file://server/share/a.html")), folders));
    EXPECT_FALSE(LocalPageAllowed(local(site + QStringLiteral("/a.html")), {}));
    // A link out of the folder through a symbolic link stays out.
    ASSERT_TRUE(QFile::link(other, site + QStringLiteral("/door")));
    EXPECT_FALSE(LocalPageAllowed(local(site + QStringLiteral("/door/b.html")), folders));

    EXPECT_TRUE(GoesToUserBrowser(QUrl(QStringLiteral("HTTPS://example.org/"))));
    EXPECT_TRUE(GoesToUserBrowser(QUrl(QStringLiteral("mailto:someone@example.org"))));
    EXPECT_FALSE(GoesToUserBrowser(local(site + QStringLiteral("/a.html"))));
    EXPECT_FALSE(GoesToUserBrowser(QUrl(QStringLiteral("javascript:alert(1)"))));
}

TEST(LocalBrowser, ShowsAPageOfItsFolderAndRefusesOneOutside)
{
    TempFolder folder;
    const QString site = folder.path(QStringLiteral("site"));
    QDir().mkpath(site);
    write(site + QStringLiteral("/a.html"), "<html><body><p>a</p></body></html>");
    write(folder.path(QStringLiteral("b.html")), "<html><body><p>b</p></body></html>");

    LocalBrowser browser;
    browser.SetFolders({site});
    browser.resize(400, 300);
    QSignalSpy done(&browser, &LocalBrowser::NavigateComplete);
    browser.Navigate(site + QStringLiteral("/a.html#x"));
    ASSERT_TRUE(done.wait(30000));
    EXPECT_TRUE(done.takeFirst().at(1).toBool());
    EXPECT_EQ(browser.LocationURL().fragment(), QStringLiteral("x"));

    browser.Navigate(folder.path(QStringLiteral("b.html")));
    if (done.isEmpty())
        done.wait(5000);
    // The refused page never loads: either nothing finishes or the load fails.
    for (const QList<QVariant> &each : std::as_const(done))
        EXPECT_FALSE(each.at(1).toBool() && each.at(0).toUrl() == QUrl::fromLocalFile(folder.path(
                                                                      QStringLiteral("b.html"))));
}

} // namespace
