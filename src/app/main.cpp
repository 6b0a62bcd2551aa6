#include "core/interaction.h"
#include "core/process.h"
#include "core/program.h"
#include "ui/forms.h"
#include "ui/images.h"
#include "ui/qt_interaction.h"
#include "ui/start.h"

#include <QApplication>

#include <exception>
#include <unistd.h>

int main(int argc, char **argv)
{
    lx::StartWithHugePageHeap(argv);
    // The embedded browser's sandbox refuses to run as root unless told not to.
    if (geteuid() == 0 && !qEnvironmentVariableIsSet("QTWEBENGINE_DISABLE_SANDBOX"))
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");

    // The embedded browser shares the toolkit's drawing contexts; this must precede the
    // application object.
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication app(argc, argv);
    QApplication::setApplicationName(lx::ProgramName());
    QApplication::setApplicationVersion(lx::ProgramVersion());
    QApplication::setWindowIcon(lx::ui::Image(QStringLiteral("tree")));
    // Desktops match the windows to the installed entry lexarbor.desktop by this name.
    QGuiApplication::setDesktopFileName(QStringLiteral("lexarbor"));
    lx::KeepLargeBuffersInHeap();

    lx::ui::QtInteraction interaction;
    const lx::InteractionScope scope(interaction);
    int rc = 1;
    try {
        lx::ui::Main(lx::ui::frmSplash::DefaultInterval, QApplication::arguments().mid(1));
        rc = QApplication::exec();
    } catch (const std::exception &error) {
        // Start has no handling of its own: the failure's text, and the program ends. The
        // windows go first, so that the splash's timer can't take the message box with it.
        lx::ui::Forms().UnloadAll();
        lx::UI().SetMousePointer(lx::pointer::Default);
        lx::UI().MsgBox(QString::fromLocal8Bit(error.what()), lx::msg::Critical);
    }
    lx::ui::Forms().UnloadAll();
    return rc;
}
