#pragma once

#include <QStringList>
#include <QUrl>
#include <QWidget>

class QWebEngineView;

namespace lx::ui {

// Whether the embedded browser may load `url`: a local file inside one of `folders` (after
// "..", links and case are resolved), or a blank page. Everything else, the web included, is
// refused.
bool LocalPageAllowed(const QUrl &url, const QStringList &folders);

// Whether a followed link leaves the program for the user's own browser: an address of the web
// or of mail.
bool GoesToUserBrowser(const QUrl &url);

// The embedded browser: the pages and files of the program's own folders, without scripts or
// network; a link to the web goes to the user's own browser. The engine starts at the first
// page shown, not with the window that holds the browser.
class LocalBrowser : public QWidget {
    Q_OBJECT

public:
    explicit LocalBrowser(QWidget *parent = nullptr);
    ~LocalBrowser() override;

    // The folders pages may come from; a page outside them isn't loaded.
    void SetFolders(const QStringList &folders);
    const QStringList &Folders() const { return m_folders; }

    // A file of one of the folders, with an anchor ("page.html#x") if wanted.
    void Navigate(const QString &file);
    void GoBack();
    void GoForward();
    void Refresh();
    // The address of the page asked for last; empty before the first.
    QUrl LocationURL() const { return m_location; }
    // The engine's view, made on first use.
    QWebEngineView *View();

Q_SIGNALS:
    // A page of the folders is about to load, by a link or by Navigate: a receiver may still
    // write the file.
    void BeforeNavigate(const QUrl &url);
    void NavigateComplete(const QUrl &url, bool ok);

private:
    class Page;
    class Guard;

    QWebEngineView *m_view = nullptr;
    Guard *m_guard = nullptr;
    QStringList m_folders;
    QUrl m_location;
};

} // namespace lx::ui
