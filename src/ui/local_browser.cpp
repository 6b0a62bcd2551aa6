#include "ui/local_browser.h"

#include "core/interaction.h"

#include <QDir>
#include <QFileInfo>
#include <QVBoxLayout>
#include <QWebEngineHistory>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineSettings>
#include <QWebEngineUrlRequestInfo>
#include <QWebEngineUrlRequestInterceptor>
#include <QWebEngineView>

namespace lx::ui {

namespace {

// A path as the file system resolves it: links followed where the file exists, "." and ".."
// gone either way.
QString resolved(const QString &path)
{
    const QFileInfo info(path);
    const QString canonical = info.canonicalFilePath();
    return canonical.isEmpty() ? QDir::cleanPath(info.absoluteFilePath()) : canonical;
}

bool inside(const QString &path, const QString &folder)
{
    const Qt::CaseSensitivity cs =
#ifdef Q_OS_WIN
        Qt::CaseInsensitive;
#else
        Qt::CaseSensitive;
#endif
    const QString root = resolved(folder);
    if (root.isEmpty())
        return false;
    return path.compare(root, cs) == 0 ||
           path.startsWith(root.endsWith(QLatin1Char('/')) ? root : root + QLatin1Char('/'), cs);
}

} // namespace

bool LocalPageAllowed(const QUrl &url, const QStringList &folders)
{
    if (url.scheme() == QLatin1String("about"))
        return url.path() == QLatin1String("blank");
    if (!url.isLocalFile() || !url.host().isEmpty())
        return false;
    const QString path = resolved(url.toLocalFile());
    for (const QString &folder : folders) {
        if (!folder.isEmpty() && inside(path, folder))
            return true;
    }
    return false;
}

bool GoesToUserBrowser(const QUrl &url)
{
    const QString scheme = url.scheme().toLower();
    return scheme == QLatin1String("http") || scheme == QLatin1String("https") ||
           scheme == QLatin1String("ftp") || scheme == QLatin1String("mailto");
}

// Every request the engine makes, sub-resources included, checked against the folders: no byte
// comes from the network.
class LocalBrowser::Guard : public QWebEngineUrlRequestInterceptor {
public:
    explicit Guard(const LocalBrowser *browser, QObject *parent)
        : QWebEngineUrlRequestInterceptor(parent), m_browser(browser)
    {}

    void interceptRequest(QWebEngineUrlRequestInfo &info) override
    {
        const QUrl url = info.requestUrl();
        if (url.scheme() == QLatin1String("data"))
            return;
        if (!LocalPageAllowed(url, m_browser->Folders()))
            info.block(true);
    }

private:
    const LocalBrowser *m_browser;
};

// Followed links: a page of the folders opens here, an address of the web in the user's own
// browser, anything else nowhere. A link that asks for a new window opens in this one.
class LocalBrowser::Page : public QWebEnginePage {
public:
    Page(QWebEngineProfile *profile, LocalBrowser *browser, QObject *parent)
        : QWebEnginePage(profile, parent), m_browser(browser)
    {}

protected:
    bool acceptNavigationRequest(const QUrl &url, NavigationType type, bool) override
    {
        if (GoesToUserBrowser(url)) {
            if (type == NavigationTypeLinkClicked)
                UI().OpenInUserBrowser(url);
            return false;
        }
        if (!LocalPageAllowed(url, m_browser->Folders()))
            return false;
        Q_EMIT m_browser->BeforeNavigate(url);
        return true;
    }

    QWebEnginePage *createWindow(WebWindowType) override { return this; }

private:
    LocalBrowser *m_browser;
};

LocalBrowser::LocalBrowser(QWidget *parent) : QWidget(parent)
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
}

LocalBrowser::~LocalBrowser()
{
    // The view takes its page with it, before the profile goes.
    delete m_view;
}

void LocalBrowser::SetFolders(const QStringList &folders)
{
    m_folders = folders;
}

QWebEngineView *LocalBrowser::View()
{
    if (m_view)
        return m_view;
    // A profile of its own, in memory only: nothing of what is shown is kept on disk.
    auto *profile = new QWebEngineProfile(this);
    profile->setHttpCacheType(QWebEngineProfile::MemoryHttpCache);
    profile->setPersistentCookiesPolicy(QWebEngineProfile::NoPersistentCookies);
    m_guard = new Guard(this, profile);
    profile->setUrlRequestInterceptor(m_guard);
    QWebEngineSettings *settings = profile->settings();
    settings->setAttribute(QWebEngineSettings::JavascriptEnabled, false);
    settings->setAttribute(QWebEngineSettings::JavascriptCanOpenWindows, false);
    settings->setAttribute(QWebEngineSettings::LocalContentCanAccessRemoteUrls, false);
    settings->setAttribute(QWebEngineSettings::LocalContentCanAccessFileUrls, true);
    settings->setAttribute(QWebEngineSettings::PluginsEnabled, false);
    settings->setAttribute(QWebEngineSettings::DnsPrefetchEnabled, false);
    settings->setAttribute(QWebEngineSettings::AutoLoadIconsForPage, false);

    m_view = new QWebEngineView(this);
    m_view->setPage(new Page(profile, this, m_view));
    m_view->setContextMenuPolicy(Qt::NoContextMenu);
    connect(m_view, &QWebEngineView::loadFinished, this,
            [this](bool ok) { Q_EMIT NavigateComplete(m_view->url(), ok); });
    layout()->addWidget(m_view);
    return m_view;
}

void LocalBrowser::Navigate(const QString &file)
{
    const qsizetype hash = file.indexOf(QLatin1Char('#'));
    QUrl url = QUrl::fromLocalFile(hash < 0 ? file : file.left(hash));
    if (hash >= 0)
        url.setFragment(file.mid(hash + 1));
    m_location = url;
    View()->setUrl(url);
}

void LocalBrowser::GoBack()
{
    if (m_view)
        m_view->back();
}

void LocalBrowser::GoForward()
{
    if (m_view)
        m_view->forward();
}

void LocalBrowser::Refresh()
{
    if (m_view)
        m_view->reload();
}

} // namespace lx::ui
