#pragma once

#include "core/signal_label.h"
#include "publish/report_selection.h"
#include "ui/forms.h"

#include <QWidget>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QProgressBar;
class QPushButton;
class QRadioButton;
class QStatusBar;

namespace lx::ui {

// The report dialog: a set of concepts picked from a list, and an output folder; then a page for
// each (of a concept, or of a term entry), or an export file. Its job word, set through lblStart,
// says which: "Ontology", "TermBase" or "OntologyExport".
class frmGenHTML : public QWidget, public UnloadSteps {
    Q_OBJECT

public:
    frmGenHTML();

    void lblStart_Change();
    void optAll_Click();
    void optSelect_Click();
    void optRegExp_Click();
    void optHier_Click();
    void optSubset_Click();
    void lstConcepts_Click();
    void cmdSelect_Click();
    void cmdClear_Click();
    void cmdRefresh_Click();
    void cmdBrowse_Click();
    void cmdCancel_Click();
    void cmdOK_Click();
    void optAlpha_Click();
    void optAsEntered_Click();
    void GenerateReports();
    void Form_Unload() override;

    QLabel *StatusPanel(int panel) const;
    int SelectedCount() const;

    QGroupBox *fraSelect, *fraSort, *fraInclude;
    QListWidget *lstConcepts;
    QRadioButton *optAll, *optSelect, *optRegExp, *optHier, *optSubset;
    QLineEdit *txtRegExp;
    QComboBox *cbxSubset;
    QPushButton *cmdSelect, *cmdClear, *cmdRefresh;
    QRadioButton *optAsEntered, *optAlpha;
    QCheckBox *chkAncestors, *chkDescendants, *chkInhRels, *chkInhAttrs, *chkCSReport;
    QLineEdit *txtPath;
    QPushButton *cmdBrowse, *cmdOK, *cmdCancel;
    QProgressBar *ProgressBar1;
    QStatusBar *StatusBar1;
    SignalLabel *lblStart;

    QString OutputFolder;
    QString SortState; // "Alpha" or "AsEntered"

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    QWidget *buildSelectFrame();
    QWidget *buildListPane();
    QWidget *buildOutputPane();
    void connectControls();
    // The options set the enabled boxes; each first clears the selection.
    void setMode(QRadioButton *option, bool regExp, bool subset, bool select);
    void showSelectedCount();
    void selectIndexes(const QList<int> &indexes);
    void refill(bool alphabetical);
    QStringList items() const;

    ReportList m_list;
    bool m_filled = false; // the guard: the list's click handler is mute while false
    QList<QLabel *> m_panels;
};

// Opens the dialog for a job, with its caption and output folder: "Ontology" (reports of
// concepts), "OntologyExport" (an export file), "TermBase" (reports of term entries).
frmGenHTML &ShowGenHTML(const QString &caption, const QString &folder, const QString &job);
// The editor's Generate HTML Reports and Export, and the termbase editor's reports.
void ShowOntologyReports();
void ShowOntologyExport();
void ShowTermbaseReports();

} // namespace lx::ui
