#include "ui/window_place.h"

#include "core/program.h"
#include "ui/forms.h"

#include <QGuiApplication>
#include <QScreen>
#include <QSettings>
#include <QSplitter>
#include <QWidget>

#include <algorithm>

namespace lx::ui {

namespace {

// Room left for the window manager's frame and title bar, which aren't known before a show.
constexpr int FrameMargin = 8;
constexpr int TitleMargin = 32;

QRect AvailableArea(const QWidget *near)
{
    const QScreen *screen = near ? near->screen() : nullptr;
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    return screen ? screen->availableGeometry() : QRect(0, 0, 1024, 768);
}

QString KeyOf(const QWidget &window, const char *what)
{
    return QStringLiteral("Windows/%1/%2").arg(window.objectName(), QLatin1String(what));
}

} // namespace

std::unique_ptr<QSettings> ProgramSettings()
{
    return std::make_unique<QSettings>(QSettings::UserScope, ProgramName(), ProgramName());
}

QSize FittingSize(QSize wanted)
{
    const QRect area = AvailableArea(nullptr);
    return wanted.boundedTo(QSize(area.width() * 9 / 10, area.height() * 9 / 10));
}

void PlaceOver(QWidget &window, const QWidget *owner)
{
    if (!window.testAttribute(Qt::WA_Resized))
        window.adjustSize(); // the size its show would give it
    const QRect area = AvailableArea(owner);
    const QSize size = window.size().boundedTo(
        QSize(area.width() - 2 * FrameMargin, area.height() - TitleMargin - FrameMargin));
    window.resize(size);
    const QPoint centre = owner ? owner->frameGeometry().center() : area.center();
    QPoint at = centre - QPoint(size.width() / 2, size.height() / 2);
    at.setX(
        std::clamp(at.x(), area.left() + FrameMargin,
                   std::max(area.left() + FrameMargin, area.right() - FrameMargin - size.width())));
    at.setY(std::clamp(
        at.y(), area.top() + TitleMargin,
        std::max(area.top() + TitleMargin, area.bottom() - FrameMargin - size.height())));
    window.move(at);
}

bool RestorePlace(QWidget &window, QSplitter *splitter)
{
    const auto settings = ProgramSettings();
    const QByteArray geometry = settings->value(KeyOf(window, "Geometry")).toByteArray();
    if (geometry.isEmpty() || !window.restoreGeometry(geometry))
        return false;
    if (splitter)
        splitter->restoreState(settings->value(KeyOf(window, "Splitter")).toByteArray());
    return true;
}

void SavePlace(const QWidget &window, const QSplitter *splitter)
{
    const auto settings = ProgramSettings();
    settings->setValue(KeyOf(window, "Geometry"), window.saveGeometry());
    if (splitter)
        settings->setValue(KeyOf(window, "Splitter"), splitter->saveState());
}

void RestoreSize(QWidget &window, const QString &variant)
{
    const QSize size =
        ProgramSettings()->value(KeyOf(window, "Size") + QLatin1Char('/') + variant).toSize();
    if (size.isValid())
        window.resize(FittingSize(size));
}

void SaveSize(const QWidget &window, const QString &variant)
{
    ProgramSettings()->setValue(KeyOf(window, "Size") + QLatin1Char('/') + variant, window.size());
}

void ShowOverMain(QWidget &window)
{
    if (!window.isVisible()) {
        // The main window is the first one loaded.
        const QList<QWidget *> forms = Forms().list();
        const QWidget *main = forms.isEmpty() ? nullptr : forms.first();
        PlaceOver(window, main && main != &window && main->isVisible() ? main : nullptr);
    }
    window.show();
    window.raise();
    window.activateWindow();
}

} // namespace lx::ui
