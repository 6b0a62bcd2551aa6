#pragma once

#include "ontology/exchange/import.h"

#include <QDialog>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QProgressBar;
class QPushButton;
class QRadioButton;
class QStatusBar;

namespace lx::ui {

// "Import": an export file read into the open ontology, in two stages, each with its log: a
// shallow check that counts records, then the import.
class frmImport : public QDialog {
    Q_OBJECT

public:
    frmImport();

    void cmdOpenFile_Click();
    // The file to import, as if chosen with "Open File" (a file given to the program at start).
    void SetImportFile(const QString &file);
    void cmdCheckFile_Click();
    void cmdImport_Click();
    void cmdSaveLog_Click();
    void cmdClear_Click();
    void cmdClose_Click();

    QPushButton *cmdOpenFile, *cmdCheckFile, *cmdImport, *cmdSaveLog, *cmdClear, *cmdClose;
    QLineEdit *txtImportFile;
    QPlainTextEdit *txtLog;
    // Shown, as the log's instructions name them; what runs depends on the file alone.
    QCheckBox *chkConcepts, *chkDefs, *Check1, *Check2;
    QRadioButton *optOWYes, *optOWNo, *optOWAsk;
    QStatusBar *StatusBar1;
    QLabel *StatusPanel2;
    QProgressBar *ProgressBar1;

    OntologyImport Import;

public Q_SLOTS:
    void reject() override;

private:
    void progress(const QString &status, int line, int lines);
};

} // namespace lx::ui
