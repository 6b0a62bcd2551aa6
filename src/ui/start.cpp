#include "ui/start.h"

#include "core/interaction.h"
#include "core/process.h"
#include "ontology/store/seed.h"
#include "ui/forms.h"
#include "ui/frm_onto_edit.h"

namespace lx::ui {

void Main(std::chrono::milliseconds splashInterval)
{
    auto &main = Forms().Get<frmOntoEdit>(); // its load runs here
    main.setEnabled(false);
    UI().SetMousePointer(pointer::Hourglass);
    auto &splash = Forms().Load<frmSplash>(splashInterval);
    splash.show();
    EnsureProgramFolders();
    EnsureSeedFile(); // without it, making an ontology fails later with the store's error
    main.show();
    splash.raise(); // stay above the window just shown, with or without a window manager
}

} // namespace lx::ui
