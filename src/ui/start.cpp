#include "ui/start.h"

#include "core/interaction.h"
#include "core/process.h"
#include "ontology/store/lifecycle.h"
#include "ontology/store/seed.h"
#include "ui/forms.h"
#include "ui/frm_onto_edit.h"

#include <QFileInfo>

namespace lx::ui {

void Main(std::chrono::milliseconds splashInterval, const QStringList &arguments)
{
    auto &main = Forms().Get<frmOntoEdit>(); // its load runs here
    main.setEnabled(false);
    UI().SetMousePointer(pointer::Hourglass);
    auto &splash = Forms().Load<frmSplash>(splashInterval);
    splash.show();
    EnsureProgramFolders();
    EnsureSeedFile(); // without it, making an ontology fails later with the store's error
    main.show();
    // An ontology named on the command line (a double click on its file) opens as if dropped.
    for (const QString &argument : arguments) {
        if (argument.endsWith(QLatin1String(".ont"), Qt::CaseInsensitive)) {
            OpenDroppedOntology(main, {QFileInfo(argument).absoluteFilePath()});
            break;
        }
    }
    splash.raise(); // stay above the window just shown, with or without a window manager
}

} // namespace lx::ui
