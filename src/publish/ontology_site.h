#pragma once

#include <QDateTime>
#include <QString>

#include <functional>
#include <optional>

// The published ontology as a small web site: a page for every concept, an index of them all
// and a frame page that shows the index beside the pages. Every link is relative, so the
// folder works wherever it is copied.
namespace lx {

// How the index and frame page are named after the ontology: its name trimmed and in lower
// case, inner blanks kept.
QString SiteName(const QString &ontologyName);

// Text for an attribute value between double quotes: "&", "<", ">" and the double quote as
// entities.
QString AttributeText(const QString &text);

// The index page in its chunks: the head (two chunks), one entry per concept, the tail.
QString IndexHead(const QString &siteName);
QString IndexStamp(const QDateTime &now);
QString IndexEntry(const QString &identifier);
QString IndexTail();
// The frame page in its two chunks: the head, then the frames.
QString FramePageHead();
QString FramePageFrames(const QString &siteName);

// The question before a whole publish and the report after it.
QString PublishWholeQuestion(const QString &ontologyFolder);
QString PublishWholeReport(const QString &siteName);

// Writes a page with all sections for every concept of the open ontology, in table order, into
// `folder` (with its final separator), then the index `siteName`-index.html and the frame page
// `siteName`-publish.html. `progress` hears the total first (done 0) and then after each page.
// Returns the number of pages. StoreError 75 when a file can't be written.
int PublishWholeOntology(const QString &folder, const QString &siteName,
                         const std::function<void(int done, int total)> &progress = {});

// The identifier a page address stands for: the file name, less its last five characters
// (".html"). Only the last path separator counts.
QString IdentifierOfPage(const QString &localFile);

// The navigator's pages on demand: when the browser is about to show `localFile`, the page of
// its concept is written into `folder` unless it is there already. Returns whether a page was
// written. A file outside `folder`, or one that isn't a page (".html"), is left alone.
bool WritePageIfMissing(const QString &localFile, const QString &folder);

} // namespace lx
