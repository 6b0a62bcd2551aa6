#include "ui/frm_import.h"

#include "core/command.h"
#include "core/interaction.h"
#include "core/process.h"
#include "core/store/errors.h"
#include "publish/text_channel.h"
#include "ui/forms.h"
#include "ui/named.h"
#include "ui/window_place.h"

#include <QApplication>
#include <QCheckBox>
#include <QFile>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QStatusBar>
#include <QVBoxLayout>

namespace lx::ui {

frmImport::frmImport()
    : cmdOpenFile(Named(new QPushButton(QStringLiteral("Input File:"), this),
                        QStringLiteral("cmdOpenFile"))),
      cmdCheckFile(Named(new QPushButton(QStringLiteral("Check File"), this),
                         QStringLiteral("cmdCheckFile"))),
      cmdImport(
          Named(new QPushButton(QStringLiteral("Import!"), this), QStringLiteral("cmdImport"))),
      cmdSaveLog(
          Named(new QPushButton(QStringLiteral("Save Log"), this), QStringLiteral("cmdSaveLog"))),
      cmdClear(
          Named(new QPushButton(QStringLiteral("Clear Log"), this), QStringLiteral("cmdClear"))),
      cmdClose(Named(new QPushButton(QStringLiteral("Close"), this), QStringLiteral("cmdClose"))),
      txtImportFile(Named(new QLineEdit(this), QStringLiteral("txtImportFile"))),
      txtLog(Named(new QPlainTextEdit(this), QStringLiteral("txtLog"))),
      StatusBar1(Named(new QStatusBar(this), QStringLiteral("StatusBar1"))),
      StatusPanel2(new QLabel(this)),
      ProgressBar1(Named(new QProgressBar(this), QStringLiteral("ProgressBar1")))
{
    setObjectName(QStringLiteral("frmImport"));
    setWindowTitle(QStringLiteral("Import"));
    txtImportFile->setReadOnly(true);
    txtLog->setReadOnly(true);
    txtLog->setLineWrapMode(QPlainTextEdit::NoWrap);

    auto *import = new QGroupBox(QStringLiteral("Import"), this);
    auto *importLayout = new QVBoxLayout(import);
    chkConcepts =
        Named(new QCheckBox(QStringLiteral("Concepts"), import), QStringLiteral("chkConcepts"));
    chkDefs =
        Named(new QCheckBox(QStringLiteral("Definitions"), import), QStringLiteral("chkDefs"));
    Check1 = Named(new QCheckBox(QStringLiteral("Relations"), import), QStringLiteral("Check1"));
    Check2 = Named(new QCheckBox(QStringLiteral("Attributes"), import), QStringLiteral("Check2"));
    for (QCheckBox *box : {chkConcepts, chkDefs, Check1, Check2}) {
        box->setChecked(true);
        importLayout->addWidget(box);
    }
    auto *overwrite = new QGroupBox(QStringLiteral("Overwrite"), this);
    auto *overwriteLayout = new QVBoxLayout(overwrite);
    optOWYes =
        Named(new QRadioButton(QStringLiteral("Yes"), overwrite), QStringLiteral("optOWYes"));
    optOWNo = Named(new QRadioButton(QStringLiteral("No"), overwrite), QStringLiteral("optOWNo"));
    optOWAsk =
        Named(new QRadioButton(QStringLiteral("Ask me!"), overwrite), QStringLiteral("optOWAsk"));
    optOWYes->setChecked(true);
    for (QRadioButton *option : {optOWYes, optOWNo, optOWAsk})
        overwriteLayout->addWidget(option);

    auto *file = new QHBoxLayout;
    file->addWidget(cmdOpenFile);
    file->addWidget(txtImportFile, 1);
    auto *side = new QVBoxLayout;
    side->addWidget(import);
    side->addWidget(overwrite);
    side->addStretch();
    for (QPushButton *button : {cmdCheckFile, cmdImport, cmdSaveLog, cmdClear, cmdClose})
        side->addWidget(button);
    auto *middle = new QHBoxLayout;
    middle->addWidget(txtLog, 1);
    middle->addLayout(side);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(file);
    layout->addLayout(middle, 1);
    layout->addWidget(StatusBar1);
    // The bar lies over the first panel while a stage runs.
    StatusBar1->addWidget(ProgressBar1, 1);
    StatusBar1->addWidget(StatusPanel2, 1);
    ProgressBar1->hide();
    cmdCheckFile->setEnabled(false);
    cmdImport->setEnabled(false);
    TabOrder({cmdOpenFile, txtImportFile, txtLog, chkConcepts, chkDefs, Check1, Check2, optOWYes,
              optOWNo, optOWAsk, cmdCheckFile, cmdImport, cmdSaveLog, cmdClear, cmdClose});
    resize(720, 520);
    RestoreSize(*this, windowTitle());

    txtLog->setPlainText(ImportInstructions());
    connect(cmdOpenFile, &QPushButton::clicked, this, Command(this, &frmImport::cmdOpenFile_Click));
    connect(cmdCheckFile, &QPushButton::clicked, this,
            Command(this, &frmImport::cmdCheckFile_Click));
    connect(cmdImport, &QPushButton::clicked, this, Command(this, &frmImport::cmdImport_Click));
    connect(cmdSaveLog, &QPushButton::clicked, this, Command(this, &frmImport::cmdSaveLog_Click));
    connect(cmdClear, &QPushButton::clicked, this, Command(this, &frmImport::cmdClear_Click));
    connect(cmdClose, &QPushButton::clicked, this, Command(this, &frmImport::cmdClose_Click));
}

void frmImport::progress(const QString &status, int line, int lines)
{
    StatusPanel2->setText(status);
    ProgressBar1->setVisible(!status.isEmpty());
    ProgressBar1->setMaximum(std::max(lines, 1));
    ProgressBar1->setValue(status.isEmpty() ? 0 : std::min(line, ProgressBar1->maximum()));
    if (line % 500 == 0)
        QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void frmImport::cmdOpenFile_Click()
{
    FileDialogRequest request;
    request.title = QStringLiteral("Input File");
    request.filter = QStringLiteral("Ontology Export Files (*.oxp)|*.oxp|") +
                     QStringLiteral("All files (*.*)|*.*|");
    request.filterIndex = 1;
    request.initialDir = OntologiesFolder();
    const std::optional<QString> file = UI().GetOpenFileName(request);
    if (file)
        SetImportFile(*file);
}

void frmImport::SetImportFile(const QString &file)
{
    Import.FileName = file;
    txtImportFile->setText(file);
    cmdCheckFile->setEnabled(true);
}

void frmImport::cmdCheckFile_Click()
{
    UI().SetMousePointer(pointer::Hourglass);
    try {
        txtLog->setPlainText(Import.CheckFile(
            [this](const QString &status, int line, int lines) { progress(status, line, lines); }));
    } catch (const store::StoreError &) {
        UI().SetMousePointer(pointer::Default);
        throw;
    }
    if (Import.ImportEnabled)
        cmdImport->setEnabled(true);
    UI().SetMousePointer(pointer::Default);
}

void frmImport::cmdImport_Click()
{
    UI().SetMousePointer(pointer::Hourglass);
    const QString log = Import.Import(
        [this](const QString &status, int line, int lines) { progress(status, line, lines); });
    txtLog->setPlainText(txtLog->toPlainText() + log);
    UI().SetMousePointer(pointer::Default);
}

// The one-button question over an existing file goes whatever the answer.
void frmImport::cmdSaveLog_Click()
{
    FileDialogRequest request;
    request.title = QStringLiteral("Save Log");
    request.filter =
        QStringLiteral("Text Files (*.txt)|*.oxp|") + QStringLiteral("All files (*.*)|*.*|");
    request.filterIndex = 1;
    request.initialDir = OntologiesFolder();
    const std::optional<QString> file = UI().GetSaveFileName(request);
    if (!file)
        return;
    if (QFile::exists(*file)) {
        UI().MsgBox(QStringLiteral("File exists. Overwrite?"), msg::OKOnly | msg::Question,
                    QStringLiteral("Confirm overwrite"));
        QFile::remove(*file);
    }
    TextChannel out(*file);
    out.Print(txtLog->toPlainText().replace(QStringLiteral("\n"), QStringLiteral("\r\n")));
    out.Close();
}

void frmImport::cmdClear_Click()
{
    txtLog->clear();
}

void frmImport::cmdClose_Click()
{
    SaveSize(*this, windowTitle());
    Forms().Unload(this);
}

void frmImport::reject()
{
    cmdClose_Click();
}

} // namespace lx::ui
