// lexarbor-icons: writes the program's icon as PNGs for the desktop's icon theme, drawn by the
// same code the program uses for its windows. Usage: lexarbor-icons OUTDIR SIZE...
// Each size lands in OUTDIR/SIZExSIZE/apps/lexarbor.png.
#include "ui/images.h"

#include <QDir>
#include <QGuiApplication>

#include <cstdio>

int main(int argc, char **argv)
{
    // No display is needed to draw into an image.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    const QStringList args = QGuiApplication::arguments().mid(1);
    if (args.size() < 2) {
        std::fputs("usage: lexarbor-icons OUTDIR SIZE...\n", stderr);
        return 2;
    }
    for (const QString &text : args.mid(1)) {
        const int size = text.toInt();
        const QString folder = QStringLiteral("%1/%2x%2/apps").arg(args[0]).arg(size);
        const bool written = size > 0 && QDir().mkpath(folder) &&
                             lx::ui::DrawImage(QStringLiteral("tree"), size)
                                 .save(folder + QStringLiteral("/lexarbor.png"), "PNG");
        if (!written) {
            std::fprintf(stderr, "lexarbor-icons: cannot write the %s pixel icon\n",
                         qUtf8Printable(text));
            return 1;
        }
    }
    return 0;
}
