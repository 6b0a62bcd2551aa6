#include "ui/images.h"

#include <QHash>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

#include <cmath>
#include <functional>
#include <numbers>

namespace lx::ui {

namespace {

// Every image is drawn on a 32 x 32 grid and scaled to the sizes the toolkit asks for.
constexpr qreal Grid = 32;

const QColor Ink(0x3a, 0x44, 0x52);
const QColor Paper(0xfd, 0xfd, 0xfb);
const QColor Blue(0x2f, 0x6f, 0xb8);
const QColor LightBlue(0xcf, 0xe1, 0xf6);
const QColor Green(0x2e, 0x9a, 0x4f);
const QColor Red(0xc8, 0x3a, 0x32);
const QColor Amber(0xf2, 0xc1, 0x4e);
const QColor DarkAmber(0xc4, 0x8f, 0x1c);

QPen Outline(const QColor &color, qreal width = 1.6)
{
    return QPen(color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
}

// A sheet with a folded corner.
void DrawPage(QPainter &p, const QRectF &r, const QColor &fill = Paper)
{
    const qreal fold = r.width() * 0.32;
    QPainterPath sheet;
    sheet.moveTo(r.topLeft());
    sheet.lineTo(r.right() - fold, r.top());
    sheet.lineTo(r.right(), r.top() + fold);
    sheet.lineTo(r.bottomRight());
    sheet.lineTo(r.bottomLeft());
    sheet.closeSubpath();
    p.setPen(Outline(Ink));
    p.setBrush(fill);
    p.drawPath(sheet);
    QPainterPath corner;
    corner.moveTo(r.right() - fold, r.top());
    corner.lineTo(r.right() - fold, r.top() + fold);
    corner.lineTo(r.right(), r.top() + fold);
    p.setBrush(QColor(0xe4, 0xe7, 0xec));
    p.drawPath(corner);
}

void DrawLines(QPainter &p, qreal left, qreal right, qreal top, int count, const QColor &color)
{
    p.setPen(Outline(color, 1.4));
    for (int i = 0; i < count; ++i)
        p.drawLine(QPointF(left, top + i * 4), QPointF(right - (i % 2) * 3, top + i * 4));
}

enum class Mark { Plus, Minus, Cross, Star };

// A round badge in the lower right corner.
void DrawBadge(QPainter &p, const QPointF &centre, const QColor &color, Mark mark)
{
    const qreal radius = 7;
    p.setPen(QPen(Qt::white, 1.5));
    p.setBrush(color);
    p.drawEllipse(centre, radius, radius);
    p.setPen(Outline(Qt::white, 2.2));
    const qreal arm = 3.6;
    switch (mark) {
    case Mark::Plus:
        p.drawLine(centre - QPointF(arm, 0), centre + QPointF(arm, 0));
        p.drawLine(centre - QPointF(0, arm), centre + QPointF(0, arm));
        break;
    case Mark::Minus:
        p.drawLine(centre - QPointF(arm, 0), centre + QPointF(arm, 0));
        break;
    case Mark::Cross:
        p.drawLine(centre - QPointF(arm - 0.8, arm - 0.8), centre + QPointF(arm - 0.8, arm - 0.8));
        p.drawLine(centre + QPointF(-(arm - 0.8), arm - 0.8),
                   centre + QPointF(arm - 0.8, -(arm - 0.8)));
        break;
    case Mark::Star: {
        QPainterPath star;
        for (int i = 0; i < 10; ++i) {
            const qreal r = i % 2 ? 2.0 : 4.6;
            const qreal angle = -std::numbers::pi / 2 + i * std::numbers::pi / 5;
            const QPointF point = centre + QPointF(r * std::cos(angle), r * std::sin(angle));
            i == 0 ? star.moveTo(point) : star.lineTo(point);
        }
        star.closeSubpath();
        p.setPen(Qt::NoPen);
        p.setBrush(Qt::white);
        p.drawPath(star);
        break;
    }
    }
}

// A concept: a rounded box with a dot, as the hierarchy draws them.
void DrawNode(QPainter &p, const QRectF &r, const QColor &fill, const QColor &edge)
{
    p.setPen(Outline(edge, 1.5));
    p.setBrush(fill);
    p.drawRoundedRect(r, 2.5, 2.5);
}

void DrawFolder(QPainter &p, bool open)
{
    p.setPen(Outline(DarkAmber));
    p.setBrush(QColor(0xe0, 0xa8, 0x32));
    QPainterPath back;
    back.moveTo(3, 8);
    back.lineTo(12, 8);
    back.lineTo(14.5, 10.5);
    back.lineTo(27, 10.5);
    back.lineTo(27, 26);
    back.lineTo(3, 26);
    back.closeSubpath();
    p.drawPath(back);
    p.setBrush(Amber);
    QPainterPath front;
    if (open) {
        front.moveTo(7, 14.5);
        front.lineTo(30, 14.5);
        front.lineTo(26.5, 26);
        front.lineTo(3, 26);
    } else {
        front.moveTo(3, 13.5);
        front.lineTo(27, 13.5);
        front.lineTo(27, 26);
        front.lineTo(3, 26);
    }
    front.closeSubpath();
    p.drawPath(front);
}

void DrawNew(QPainter &p)
{
    DrawPage(p, QRectF(6, 3, 19, 25));
    DrawLines(p, 10, 21, 13, 3, QColor(0xb8, 0xc0, 0xcc));
    DrawBadge(p, QPointF(24, 24), DarkAmber, Mark::Star);
}

void DrawOpen(QPainter &p)
{
    DrawFolder(p, true);
}

void DrawClose(QPainter &p)
{
    DrawFolder(p, false);
    DrawBadge(p, QPointF(24, 24), Red, Mark::Cross);
}

void DrawProperties(QPainter &p)
{
    DrawPage(p, QRectF(6, 3, 19, 25));
    p.setPen(Outline(Blue, 1.3));
    p.setBrush(LightBlue);
    for (int i = 0; i < 3; ++i)
        p.drawRect(QRectF(9.5, 10 + i * 5.5, 3, 3));
    DrawLines(p, 15, 22, 11.5, 1, Ink);
    DrawLines(p, 15, 22, 17, 1, Ink);
    DrawLines(p, 15, 22, 22.5, 1, Ink);
}

void DrawTree(QPainter &p)
{
    p.setPen(Outline(Ink, 1.4));
    p.drawLine(QPointF(16, 11), QPointF(16, 15.5));
    p.drawLine(QPointF(7.5, 15.5), QPointF(24.5, 15.5));
    p.drawLine(QPointF(7.5, 15.5), QPointF(7.5, 20));
    p.drawLine(QPointF(24.5, 15.5), QPointF(24.5, 20));
    DrawNode(p, QRectF(10.5, 3.5, 11, 7.5), Blue, Blue.darker(130));
    DrawNode(p, QRectF(2.5, 20, 10, 7.5), LightBlue, Blue);
    DrawNode(p, QRectF(19.5, 20, 10, 7.5), LightBlue, Blue);
}

void DrawConcept(QPainter &p)
{
    p.setPen(Outline(Ink, 1.4));
    p.drawLine(QPointF(13, 10), QPointF(13, 16));
    DrawNode(p, QRectF(6, 3, 14, 7.5), LightBlue, Blue);
    DrawNode(p, QRectF(4, 16, 17, 9), Blue, Blue.darker(130));
}

void DrawNewConcept(QPainter &p)
{
    DrawConcept(p);
    DrawBadge(p, QPointF(24, 24), Green, Mark::Plus);
}

void DrawDeleteConcept(QPainter &p)
{
    DrawConcept(p);
    DrawBadge(p, QPointF(24, 24), Red, Mark::Minus);
}

// A sticky note: blank without a note, written on with one.
void DrawNote(QPainter &p, bool written)
{
    QPainterPath note;
    note.moveTo(5, 5);
    note.lineTo(27, 5);
    note.lineTo(27, 21);
    note.lineTo(21, 27);
    note.lineTo(5, 27);
    note.closeSubpath();
    p.setPen(Outline(DarkAmber));
    p.setBrush(written ? Amber : QColor(0xff, 0xf6, 0xd6));
    p.drawPath(note);
    QPainterPath curl;
    curl.moveTo(27, 21);
    curl.lineTo(21, 21);
    curl.lineTo(21, 27);
    p.setBrush(written ? DarkAmber : QColor(0xf0, 0xdc, 0xa0));
    p.drawPath(curl);
    if (written)
        DrawLines(p, 9, 23, 11, 3, Ink);
}

void DrawTermbaseEditor(QPainter &p)
{
    // A closed book with a bookmark.
    p.setPen(Outline(QColor(0x1f, 0x4d, 0x80)));
    p.setBrush(QColor(0x3d, 0x7d, 0xc4));
    p.drawRoundedRect(QRectF(6, 3, 20, 26), 2, 2);
    p.setBrush(Paper);
    p.drawRect(QRectF(9, 24, 17, 3));
    p.setPen(Outline(QColor(0x1f, 0x4d, 0x80), 1.2));
    p.drawLine(QPointF(9, 3.5), QPointF(9, 24));
    p.setPen(Outline(Paper, 1.6));
    p.drawLine(QPointF(13, 9), QPointF(22, 9));
    p.drawLine(QPointF(13, 13), QPointF(20, 13));
    p.setPen(Qt::NoPen);
    p.setBrush(Red);
    QPainterPath ribbon;
    ribbon.moveTo(20, 3);
    ribbon.lineTo(24, 3);
    ribbon.lineTo(24, 18);
    ribbon.lineTo(22, 16);
    ribbon.lineTo(20, 18);
    ribbon.closeSubpath();
    p.drawPath(ribbon);
}

void DrawHelp(QPainter &p)
{
    p.setPen(Outline(Blue.darker(130)));
    p.setBrush(Blue);
    p.drawEllipse(QPointF(16, 16), 12.5, 12.5);
    QFont font(QStringLiteral("Sans Serif"));
    font.setBold(true);
    font.setPixelSize(18);
    p.setFont(font);
    p.setPen(Qt::white);
    p.drawText(QRectF(4, 4, 24, 24), Qt::AlignCenter, QStringLiteral("?"));
}

// The termbase editor's images.

void DrawFind(QPainter &p)
{
    p.setPen(Outline(Ink, 3.2));
    p.drawLine(QPointF(19.5, 19.5), QPointF(27.5, 27.5));
    p.setPen(Outline(Ink, 2));
    p.setBrush(LightBlue);
    p.drawEllipse(QPointF(13, 13), 8.5, 8.5);
    p.setPen(Outline(Paper, 1.6));
    p.drawArc(QRectF(8, 8, 10, 10), 100 * 16, 70 * 16);
}

// A term entry: a card with a coloured head.
void DrawEntry(QPainter &p)
{
    p.setPen(Outline(Ink));
    p.setBrush(Paper);
    p.drawRoundedRect(QRectF(3.5, 6, 23, 19), 2, 2);
    p.setPen(Qt::NoPen);
    p.setBrush(Blue);
    p.drawRect(QRectF(4.3, 6.8, 21.4, 4.5));
    DrawLines(p, 7.5, 20, 15.5, 2, QColor(0xb8, 0xc0, 0xcc));
    DrawBadge(p, QPointF(24, 24), Green, Mark::Plus);
}

// A term: a word on a tag.
void DrawTerm(QPainter &p)
{
    QPainterPath tag;
    tag.moveTo(3, 9);
    tag.lineTo(21, 9);
    tag.lineTo(27, 15.5);
    tag.lineTo(21, 22);
    tag.lineTo(3, 22);
    tag.closeSubpath();
    p.setPen(Outline(Blue.darker(130)));
    p.setBrush(LightBlue);
    p.drawPath(tag);
    QFont font(QStringLiteral("Sans Serif"));
    font.setBold(true);
    font.setPixelSize(10);
    p.setFont(font);
    p.setPen(Ink);
    p.drawText(QRectF(3, 9, 18, 13), Qt::AlignCenter, QStringLiteral("Ab"));
    DrawBadge(p, QPointF(24, 24), Green, Mark::Plus);
}

void DrawDelete(QPainter &p)
{
    p.setPen(Outline(Ink, 1.5));
    p.setBrush(QColor(0xe4, 0xe7, 0xec));
    QPainterPath bin;
    bin.moveTo(8, 10);
    bin.lineTo(24, 10);
    bin.lineTo(22.5, 28);
    bin.lineTo(9.5, 28);
    bin.closeSubpath();
    p.drawPath(bin);
    p.drawLine(QPointF(5.5, 7.5), QPointF(26.5, 7.5));
    p.drawLine(QPointF(13, 7.5), QPointF(13.5, 4.5));
    p.drawLine(QPointF(13.5, 4.5), QPointF(18.5, 4.5));
    p.drawLine(QPointF(18.5, 4.5), QPointF(19, 7.5));
    p.setPen(Outline(Red, 2.2));
    p.drawLine(QPointF(12.5, 14.5), QPointF(19.5, 23.5));
    p.drawLine(QPointF(19.5, 14.5), QPointF(12.5, 23.5));
}

// Edit Mode: a pencil over a line of text.
void DrawPencil(QPainter &p)
{
    DrawLines(p, 4, 16, 27, 1, QColor(0xb8, 0xc0, 0xcc));
    p.save();
    p.translate(16, 15);
    p.rotate(45);
    p.setPen(Outline(DarkAmber, 1.3));
    p.setBrush(Amber);
    p.drawRect(QRectF(-3.2, -12, 6.4, 17));
    p.setBrush(Red);
    p.drawRect(QRectF(-3.2, -14.5, 6.4, 3));
    QPainterPath tip;
    tip.moveTo(-3.2, 5);
    tip.lineTo(3.2, 5);
    tip.lineTo(0, 11);
    tip.closeSubpath();
    p.setBrush(QColor(0xf3, 0xdd, 0xb5));
    p.drawPath(tip);
    p.restore();
}

// Browse Mode: a globe.
void DrawGlobe(QPainter &p)
{
    const QPointF centre(16, 16);
    p.setPen(Outline(Blue.darker(130), 1.6));
    p.setBrush(LightBlue);
    p.drawEllipse(centre, 12.5, 12.5);
    p.setBrush(Qt::NoBrush);
    p.setPen(Outline(Blue, 1.3));
    p.drawEllipse(centre, 5.5, 12.5);
    p.drawLine(QPointF(16, 3.5), QPointF(16, 28.5));
    p.drawLine(QPointF(3.5, 16), QPointF(28.5, 16));
    p.drawLine(QPointF(6, 9.5), QPointF(26, 9.5));
    p.drawLine(QPointF(6, 22.5), QPointF(26, 22.5));
}

void DrawArrow(QPainter &p, bool forward)
{
    if (!forward) {
        p.translate(Grid, 0);
        p.scale(-1, 1);
    }
    QPainterPath arrow;
    arrow.moveTo(4, 12.5);
    arrow.lineTo(16, 12.5);
    arrow.lineTo(16, 6);
    arrow.lineTo(28, 16);
    arrow.lineTo(16, 26);
    arrow.lineTo(16, 19.5);
    arrow.lineTo(4, 19.5);
    arrow.closeSubpath();
    p.setPen(Outline(Blue.darker(130), 1.5));
    p.setBrush(Blue);
    p.drawPath(arrow);
}

void DrawRefresh(QPainter &p)
{
    p.setPen(Outline(Green, 3.2));
    p.setBrush(Qt::NoBrush);
    p.drawArc(QRectF(6, 6, 20, 20), 60 * 16, 280 * 16);
    QPainterPath head;
    head.moveTo(17, 1.5);
    head.lineTo(25.5, 6.5);
    head.lineTo(17.5, 12.5);
    head.closeSubpath();
    p.setPen(Outline(Green, 1.2));
    p.setBrush(Green);
    p.drawPath(head);
}

// An element of a termbase: a tile of its own colour with a short label.
void DrawTile(QPainter &p, const QColor &fill, const QString &label)
{
    p.setPen(Outline(fill.darker(140), 1.4));
    p.setBrush(fill);
    p.drawRoundedRect(QRectF(3.5, 5.5, 25, 21), 3.5, 3.5);
    QFont font(QStringLiteral("Sans Serif"));
    font.setBold(true);
    font.setPixelSize(label.size() > 2 ? 9 : 12);
    p.setFont(font);
    p.setPen(Qt::white);
    p.drawText(QRectF(3.5, 5.5, 25, 21), Qt::AlignCenter, label);
}

// A language section: a page with the language's code on a band.
void DrawSection(QPainter &p, const QString &code)
{
    DrawPage(p, QRectF(6, 3, 20, 26));
    p.setPen(Qt::NoPen);
    p.setBrush(Green);
    p.drawRect(QRectF(4, 13, 24, 11));
    QFont font(QStringLiteral("Sans Serif"));
    font.setBold(true);
    font.setPixelSize(9);
    p.setFont(font);
    p.setPen(Qt::white);
    p.drawText(QRectF(4, 13, 24, 11), Qt::AlignCenter, code);
}

// A category of the pane that may or may not stand under the current element.
void DrawState(QPainter &p, bool active)
{
    p.setPen(Outline(active ? Green.darker(130) : QColor(0x9a, 0xa0, 0xa8), 1.6));
    p.setBrush(active ? Green : QColor(0xe4, 0xe7, 0xec));
    p.drawEllipse(QPointF(16, 16), 8, 8);
}

void AddElementDrawings(QHash<QString, std::function<void(QPainter &)>> &drawings)
{
    struct Tile {
        const char *key;
        QColor fill;
        const char *label;
    };
    const Tile tiles[] = {
        {"attribute", QColor(0x6a, 0x8f, 0x3a), "a"},
        {"xref", QColor(0x7b, 0x55, 0xb0), "\u2192"},
        {"subjectfield", QColor(0xb0, 0x6a, 0x2a), "SF"},
        {"context", QColor(0x4a, 0x7a, 0x8c), "\u201c\u201d"},
        {"figure", QColor(0x2e, 0x86, 0x8a), "Fig"},
        {"audio", QColor(0x8a, 0x4a, 0x7a), "\u266a"},
        {"video", QColor(0x8a, 0x2e, 0x4a), "\u25b6"},
        {"table", QColor(0x4a, 0x5a, 0x8a), "Tab"},
        {"binary", QColor(0x5a, 0x5a, 0x5a), "01"},
        {"responsible", QColor(0x2f, 0x6f, 0xb8), "R"},
        {"responsibles", QColor(0x1f, 0x4d, 0x80), "RR"},
        {"pub", QColor(0x9a, 0x6a, 0x1c), "Pub"},
        {"url", QColor(0x2e, 0x7a, 0x4f), "@"},
        {"container", QColor(0x8a, 0x7a, 0x5a), "[ ]"},
        {"classifsystem", QColor(0x6a, 0x4a, 0x2a), "CS"},
        {"conceptsystem", QColor(0x3a, 0x6a, 0x9a), "CP"},
        {"subset", QColor(0xa0, 0x3a, 0x5a), "S"},
    };
    for (const Tile &tile : tiles) {
        const QColor fill = tile.fill;
        const QString label = QString::fromUtf8(tile.label);
        drawings.insert(QString::fromLatin1(tile.key),
                        [fill, label](QPainter &p) { DrawTile(p, fill, label); });
    }
    for (const char *code : {"en", "es", "de", "fr", "ca", "it", "sv", "no", "nl", "da"}) {
        const QString upper = QString::fromLatin1(code).toUpper();
        drawings.insert(QStringLiteral("ls") + QString::fromLatin1(code),
                        [upper](QPainter &p) { DrawSection(p, upper); });
    }
    drawings.insert(QStringLiteral("lsgen"),
                    [](QPainter &p) { DrawSection(p, QStringLiteral("..")); });
    drawings.insert(QStringLiteral("termbase"), DrawTermbaseEditor);
    drawings.insert(QStringLiteral("folder"), [](QPainter &p) { DrawFolder(p, false); });
    drawings.insert(QStringLiteral("note"), [](QPainter &p) { DrawNote(p, true); });
    drawings.insert(QStringLiteral("world"), DrawGlobe);
    drawings.insert(QStringLiteral("active"), [](QPainter &p) { DrawState(p, true); });
    drawings.insert(QStringLiteral("inactive"), [](QPainter &p) { DrawState(p, false); });
}

using Drawing = std::function<void(QPainter &)>;

const QHash<QString, Drawing> &Drawings()
{
    static const QHash<QString, Drawing> drawings = [] {
        QHash<QString, Drawing> all{
            {QStringLiteral("new"), DrawNew},
            {QStringLiteral("open"), DrawOpen},
            {QStringLiteral("close"), DrawClose},
            {QStringLiteral("properties"), DrawProperties},
            {QStringLiteral("tree"), DrawTree},
            {QStringLiteral("newcpt"), DrawNewConcept},
            {QStringLiteral("delcpt"), DrawDeleteConcept},
            {QStringLiteral("note-out"), [](QPainter &p) { DrawNote(p, false); }},
            {QStringLiteral("note-in"), [](QPainter &p) { DrawNote(p, true); }},
            {QStringLiteral("tbeditor"), DrawTermbaseEditor},
            {QStringLiteral("help"), DrawHelp},
            {QStringLiteral("find"), DrawFind},
            {QStringLiteral("concept"), DrawEntry},
            {QStringLiteral("term"), DrawTerm},
            {QStringLiteral("delete"), DrawDelete},
            {QStringLiteral("editor"), DrawPencil},
            {QStringLiteral("browser"), DrawGlobe},
            {QStringLiteral("back"), [](QPainter &p) { DrawArrow(p, false); }},
            {QStringLiteral("forward"), [](QPainter &p) { DrawArrow(p, true); }},
            {QStringLiteral("refresh"), DrawRefresh},
        };
        AddElementDrawings(all);
        return all;
    }();
    return drawings;
}

QPixmap Render(const Drawing &draw, int size)
{
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.scale(size / Grid, size / Grid);
    draw(painter);
    return pixmap;
}

// The image of a command that can't be used now: grey and faded, whatever its colours.
QPixmap Disabled(const QPixmap &pixmap)
{
    QImage image = pixmap.toImage().convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const int grey = 96 + qGray(line[x]) / 2;
            line[x] = qRgba(grey, grey, grey, qAlpha(line[x]) * 2 / 5);
        }
    }
    return QPixmap::fromImage(image);
}

} // namespace

// Each icon is drawn once, at every size, the first time it is asked for: lists and trees ask
// for the same few keys on every row.
QIcon Image(const QString &key)
{
    static QHash<QString, QIcon> drawn;
    if (const auto cached = drawn.constFind(key); cached != drawn.cend())
        return *cached;
    const auto found = Drawings().constFind(key);
    if (found == Drawings().cend())
        return {};
    QIcon icon;
    for (int size : {16, 24, 32, 48, 64}) {
        const QPixmap pixmap = Render(*found, size);
        icon.addPixmap(pixmap);
        icon.addPixmap(Disabled(pixmap), QIcon::Disabled);
    }
    drawn.insert(key, icon);
    return icon;
}

QPixmap DrawImage(const QString &key, int size)
{
    const auto found = Drawings().constFind(key);
    return found == Drawings().cend() ? QPixmap() : Render(*found, size);
}

} // namespace lx::ui
