// The program's window with a large ontology open, for measuring its memory from outside
// (e.g. the peak resident size by /usr/bin/time -v):
//   lexarbor-open-probe --write FILE   writes the 350,000-concept ontology of the benchmarks
//   lexarbor-open-probe FILE           opens FILE in the window and shows every descendant
//                                      of its top concept
#include "core/command.h"
#include "core/process.h"
#include "hierarchy_data.h"
#include "ontology/store/lifecycle.h"
#include "ui/forms.h"
#include "ui/frm_onto_edit.h"
#include "ui/qt_interaction.h"

#include <QApplication>
#include <QCheckBox>
#include <QFile>
#include <QListView>
#include <QTextStream>

int main(int argc, char **argv)
{
    lx::StartWithHugePageHeap(argv); // as the program does
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    lx::KeepLargeBuffersInHeap(); // as the program does
    const QStringList args = QApplication::arguments();
    QTextStream out(stdout);
    if (args.size() == 3 && args[1] == QStringLiteral("--write")) {
        QFile::remove(args[2]);
        return QFile::copy(lx::bench::LargeHierarchyFile(), args[2]) ? 0 : 1;
    }
    if (args.size() != 2) {
        out << "usage: lexarbor-open-probe [--write] FILE\n";
        return 2;
    }
    lx::ui::QtInteraction interaction;
    const lx::InteractionScope scope(interaction);
    auto &form = lx::ui::Forms().Get<lx::ui::frmOntoEdit>();
    form.show();
    QApplication::processEvents();
    lx::Process().Quote = QStringLiteral("\"");
    lx::RunCommand([&] { lx::OpenDroppedOntology(form, {args[1]}); });
    QApplication::processEvents();
    out << "listed " << form.ListedConcepts << " of " << form.TotalConcepts << "\n";
    lx::RunCommand([&] { form.GoToConcept(lx::Process().TopConcept); });
    form.chkActivDesc->setChecked(true);
    QApplication::processEvents();
    out << "descendants of " << lx::Process().TopConcept << ": "
        << form.lstDescendants->model()->rowCount() << "\n";
    lx::ui::Forms().UnloadAll();
    return 0;
}
