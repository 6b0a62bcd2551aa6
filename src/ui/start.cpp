#include "ui/start.h"

#include "core/interaction.h"
#include "core/process.h"
#include "ontology/store/lifecycle.h"
#include "ontology/store/seed.h"
#include "termbase/store/lifecycle.h"
#include "ui/forms.h"
#include "ui/frm_onto_edit.h"
#include "ui/frm_tb_editor.h"

#include <QFileInfo>

namespace lx::ui {

namespace {

void OpenTermbaseAtStart(frmOntoEdit &main, const QString &path)
{
    const std::optional<QString> ontology = WorkingOntologyOf(path);
    if (!ontology)
        return;
    OpenDroppedOntology(main, {*ontology});
    if (Process().OntoPath.isEmpty())
        return; // the ontology said why it didn't open
    ShowTermbaseEditor();
    OpenNamedTermbase(Forms().Get<frmTBEDitor>(), path);
}

// An export file goes into an ontology, and none is open yet: the user may make a new one for
// it, as "New" makes one, and import the file there.
void ImportAtStart(frmOntoEdit &main, const QString &path)
{
    if (UI().MsgBox(QStringLiteral("Import ") + QFileInfo(path).fileName() +
                        QStringLiteral(" into a new ontology?"),
                    msg::Question | msg::YesNo) != msg::Yes)
        return;
    NewOntology(main);
    if (!Process().OntoPath.isEmpty())
        main.ImportFile(path);
}

} // namespace

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
    // The first file named on the command line (a double click on it) opens: an ontology as if
    // dropped, a termbase in its editor under its working ontology, an export file into a new
    // ontology.
    for (const QString &argument : arguments) {
        const QString path = QFileInfo(argument).absoluteFilePath();
        if (argument.endsWith(QLatin1String(".ont"), Qt::CaseInsensitive)) {
            OpenDroppedOntology(main, {path});
            break;
        }
        if (argument.endsWith(QLatin1String(".ltb"), Qt::CaseInsensitive)) {
            OpenTermbaseAtStart(main, path);
            break;
        }
        if (argument.endsWith(QLatin1String(".oxp"), Qt::CaseInsensitive)) {
            ImportAtStart(main, path);
            break;
        }
    }
    splash.raise(); // stay above the window just shown, with or without a window manager
}

} // namespace lx::ui
