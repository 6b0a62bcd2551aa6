#include "publish/ontology_site.h"

#include "publish/html_stuff.h"
#include "publish/text_channel.h"
#include "publish/whole_ontology_source.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace lx {

namespace {

const QString Q = QStringLiteral("\"");
const QString kCrLf = QStringLiteral("\r\n");

bool SameFolder(const QString &a, const QString &b)
{
    return QDir::cleanPath(QFileInfo(a).absoluteFilePath()) ==
           QDir::cleanPath(QFileInfo(b).absoluteFilePath());
}

} // namespace

QString SiteName(const QString &ontologyName)
{
    return ontologyName.trimmed().toLower();
}

QString AttributeText(const QString &text)
{
    QString out = HtmlText(text);
    out.replace(u'"', QStringLiteral("&quot;"));
    return out;
}

QString IndexHead(const QString &siteName)
{
    return QStringLiteral("<html>") + kCrLf + QStringLiteral("<head>") +
           QStringLiteral("<base target=") + Q + QStringLiteral("principal") + Q +
           QStringLiteral(">") + kCrLf + QStringLiteral("<title>") + HtmlText(siteName) +
           QStringLiteral(" index </title>") + QStringLiteral("<meta name=") + Q +
           QStringLiteral("GENERATOR") + Q + QStringLiteral("content=") + Q +
           QStringLiteral("Silvanite Lexarbor") + Q + QStringLiteral(">") + kCrLf +
           QStringLiteral("</head>") + kCrLf;
}

QString IndexStamp(const QDateTime &now)
{
    return GeneratedStamp(now) + kCrLf + QStringLiteral("<CENTER><H4>INDEX</CENTER></H4>") + kCrLf +
           QStringLiteral("<hr>") + kCrLf + QStringLiteral("<p>") + kCrLf +
           QStringLiteral("<small>") + kCrLf;
}

QString IndexEntry(const QString &identifier)
{
    // The target is the page's file name as it stands, as every link to a concept is.
    return QStringLiteral("<a href = ") + Q + identifier + QStringLiteral(".") +
           QStringLiteral("html") + Q + QStringLiteral(">") + HtmlText(identifier) +
           QStringLiteral(" </a><br>") + kCrLf;
}

QString IndexTail()
{
    return QStringLiteral("</small>") + kCrLf + QStringLiteral("</p>") + kCrLf +
           QStringLiteral("</body>") + kCrLf + QStringLiteral("</html>");
}

QString FramePageHead()
{
    return QStringLiteral("<HTML>") + kCrLf + QStringLiteral("<HEAD>") +
           QStringLiteral("<TITLE>Ontology Frame Page</TITLE>") + kCrLf +
           QStringLiteral("<meta name=") + Q + QStringLiteral("GENERATOR") + Q +
           QStringLiteral(" content=") + Q + QStringLiteral("Silvanite Lexarbor") + Q +
           QStringLiteral(">") + kCrLf + QStringLiteral("</HEAD>");
}

QString FramePageFrames(const QString &siteName)
{
    // The right frame opens "ALL.html" whatever the top concept is called.
    return QStringLiteral("<frameset cols=") + Q + QStringLiteral("150,*") + Q +
           QStringLiteral(">") + kCrLf + QStringLiteral("<frame name=") + Q +
           QStringLiteral("contenido") + Q + QStringLiteral(" target=") + Q +
           QStringLiteral("principal") + Q + QStringLiteral(" src=") + Q + AttributeText(siteName) +
           QStringLiteral("-index.html") + Q + QStringLiteral(">") + kCrLf +
           QStringLiteral("<frame name=") + Q + QStringLiteral("principal") + Q +
           QStringLiteral(" src=") + Q + QStringLiteral("ALL.html") + Q + QStringLiteral(">") +
           kCrLf + QStringLiteral("<noframes>") + kCrLf + QStringLiteral("<body>") + kCrLf +
           QStringLiteral("<p>This page uses frames, but your browser does not admit them.</p>") +
           kCrLf + QStringLiteral("</body>") + kCrLf + QStringLiteral("</noframes>") + kCrLf +
           QStringLiteral("</frameset>") + kCrLf + QStringLiteral("</html>");
}

QString PublishWholeQuestion(const QString &ontologyFolder)
{
    return QStringLiteral("This process will unconditionally generate an HTML file for every "
                          "concept in ") +
           QStringLiteral("the ontology in ") + ontologyFolder +
           QStringLiteral(". It may take a long time ") +
           QStringLiteral("depending on the size of your ontology and your machine's computing "
                          "power.") +
           kCrLf + QStringLiteral("Proceed?");
}

QString PublishWholeReport(const QString &siteName)
{
    // The folder named here isn't the real one; the text is the program's as it stands.
    return QStringLiteral("You can now use your web browser to navigate your ontology. ") +
           QStringLiteral("Just double-click on file '") + siteName +
           QStringLiteral("-publish.html' in the '\\publish-ont\\' subfolder under ") +
           QStringLiteral("the folder where the ontology file is located.") + kCrLf + kCrLf +
           QStringLiteral("In order to publish your ontology on the web, simply copy all the "
                          "files ") +
           QStringLiteral("in this folder to the appropriate location on your web server.");
}

int PublishWholeOntology(const QString &folder, const QString &siteName,
                         const std::function<void(int done, int total)> &progress)
{
    QString base = folder;
    if (base.endsWith(u'\\'))
        base.back() = u'/';
    TextChannel index(base + siteName + QStringLiteral("-index.html"));
    index.Print(IndexHead(siteName));
    index.Print(IndexStamp(QDateTime::currentDateTime()));

    // Nothing but the pages is written during the run, so the ontology is read once, whole,
    // and every page is built from memory; Inherit is left as page after page would leave it.
    WholeOntologySource source;
    const QStringList &concepts = source.concepts();
    const int total = int(concepts.size());
    if (progress)
        progress(0, total);
    int done = 0;
    for (const QString &identifier : concepts) {
        WriteConceptPage(source, identifier, folder, true, true, true, true);
        // A concept whose page can't be written (its identifier would lead out of the folder)
        // gets no entry either: the index links to pages that are there.
        if (ConceptPagePath(identifier, folder))
            index.Print(IndexEntry(identifier));
        ++done;
        if (progress)
            progress(done, total);
    }
    source.storeInherit();
    index.Print(IndexTail());
    index.Close();

    TextChannel frames(base + siteName + QStringLiteral("-publish.html"));
    frames.Print(FramePageHead());
    frames.Print(FramePageFrames(siteName));
    frames.Close();
    return done;
}

QString IdentifierOfPage(const QString &localFile)
{
    const qsizetype slash = std::max(localFile.lastIndexOf(u'/'), localFile.lastIndexOf(u'\\'));
    return localFile.mid(slash + 1).chopped(std::min<qsizetype>(5, localFile.size() - slash - 1));
}

bool WritePageIfMissing(const QString &localFile, const QString &folder)
{
    // Only pages are written: any other file of the folder is left to the browser.
    if (!localFile.endsWith(QStringLiteral(".html")) ||
        !SameFolder(QFileInfo(localFile).absolutePath(), folder))
        return false;
    const QString identifier = IdentifierOfPage(localFile);
    const std::optional<QString> page = ConceptPagePath(identifier, folder);
    if (!page || QFile::exists(*page))
        return false;
    WriteConceptPage(identifier, folder, true, true, true, true);
    return true;
}

} // namespace lx
