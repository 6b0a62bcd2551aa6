#pragma once

#include "ontology/edit/onto_options.h"
#include "ontology/store/onto_editor.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QRadioButton;
class QScrollBar;
class QStatusBar;
class QTreeWidget;

namespace lx::ui {

// "Options": the settings of the open ontology. The caller sets the parents limit, the list
// mode and the naming rule, shows the dialog modally and takes it back with Result(). Cancel
// only puts "0" in the parents box; the caller's reading of that "0" is all it undoes.
class frmOntoOptions : public QDialog {
    Q_OBJECT

public:
    frmOntoOptions();

    // The parents limit as the caller shows it, without the advice of a user's change.
    void ShowMaxParents(int maxParents);
    // The dialog as the user left it.
    OntoOptionsResult Result() const;

    void chkAddNames_Click();
    void optAsIs_Click();
    void optConvert_Click();
    void txtNoParents_Change();
    void UpDown1_Change();
    void cmdAdd_Click();
    void cmdActivate_Click();
    void cmdRemove_Click();
    void cmdTransfer_Click();
    void cmdLink_Click();
    void cmdRelease_Click();
    void cmdOK_Click();
    void cmdCancel_Click();
    // All subsets with their counts, the first selected, and the active one's name.
    void FillSubsets();
    // The linked termbase files.
    void FillLinks();

    // Naming
    QCheckBox *chkNameRestrict, *chkAddNames;
    QRadioButton *optAsIs, *optConvert;
    // Languages
    QComboBox *cbxLangs;
    QTreeWidget *lvwLangs;
    // Search list and parents
    QRadioButton *optEvery, *optTop, *optMy;
    QLineEdit *txtNoParents;
    QScrollBar *UpDown1;
    // Subsets
    QTreeWidget *ListView1;
    QLabel *lblActiveSubset;
    QLineEdit *txtNewSubset;
    QPushButton *cmdAdd, *cmdActivate, *cmdRemove, *cmdTransfer;
    // Linked databases
    QTreeWidget *ListView2;
    QPushButton *cmdLink, *cmdRelease;
    QPushButton *cmdOK, *cmdCancel;
    // What a long task is doing, and how far it has come.
    QStatusBar *StatusBar1;
    QProgressBar *ProgressBar1;

public Q_SLOTS:
    // Escape and the window's close button cancel.
    void reject() override;

private:
    QWidget *buildNamingTab();
    QWidget *buildLanguagesTab();
    QWidget *buildListTab();
    QWidget *buildSubsetsTab();
    QWidget *buildLinksTab();
    void connectControls();
    void fillLanguages();
    void showAutoName(quint8 autoName);
    QString selectedSubset() const;
    void showStage(const QString &stage);
    void showCount(qint64 done, qint64 total);

    bool m_loaded = false; // Form_Load is over: clicks come from the user
};

// mnuToolsOptions: the options dialog over the open ontology, and what it changed taken back.
void ShowOntologyOptions(OntologyEditor &editor);

} // namespace lx::ui
