#pragma once

#include "core/signal_label.h"

#include <QList>
#include <QMainWindow>

class QAction;
class QGroupBox;
class QLabel;
class QLineEdit;
class QListView;
class QMenu;
class QTabWidget;
class QToolBar;

namespace lx::ui {

// The ontology editor, the program's main window.
class frmOntoEdit : public QMainWindow {
    Q_OBJECT

public:
    frmOntoEdit();

    // Toolbar places count from 1, separators included, as the handlers name them.
    static constexpr int ToolBarPlaces = 16;
    QAction *ToolButton(int place) const { return m_places.value(place - 1); }
    QLabel *StatusPanel(int panel) const { return m_panels.value(panel - 1); }

    void EnableOntologyCommands();
    void DisableOntologyCommands();
    void UpdateStatusCounts();

    void ToolBar1_ButtonClick(const QString &key);
    void mnuHelpTool_Click();
    void mnuHelpAbout_Click();
    void mnuFileExit_Click();

    // The concept on screen and the counts of the list.
    QString BaseCaption;
    QString CurrentConcept;
    quint8 CurrentType = 0;
    qint32 TotalConcepts = 0;
    qint32 ListedConcepts = 0;

    QMenu *mnuFile, *mnuEdit, *mnuConcept, *mnuTree, *mnuTools, *mnuHelp;
    QAction *mnuFileNew, *mnuFileOpen, *mnuFileClose, *mnuFileImport, *mnuFileExport,
        *mnuFileProperties, *mnuFileExit;
    QAction *mnuEditCopy, *mnuEditCut, *mnuEditPaste;
    QAction *mnuConceptAdd, *mnuConceptEdit, *mnuConceptEditDef, *mnuConceptDelete, *mnuConceptTree,
        *mnuConceptNote;
    QAction *mnuTreeFull, *mnuTreeObject, *mnuTreeEvent, *mnuTreeRel, *mnuTreeAttr,
        *mnuTreeSelConcept;
    QAction *mnuToolsTBEd, *mnuToolsOntoNav, *mnuGenHTML, *mnuToolsBatchNaming, *mnuToolsListNotes,
        *mnuToolsOptions;
    QAction *mnuHelpTool, *mnuHelpAbout;

    QToolBar *ToolBar1;
    QGroupBox *frmSearch;
    QLineEdit *txtCptSearch;
    QListView *dblConcepts;
    QTabWidget *tbsEdit;

    // Hidden labels through which the dialogs signal a new concept, relation or attribute.
    SignalLabel *lblNewCpt, *lblNewRel, *lblNewAttr;

private:
    void buildMenus();
    void buildToolBar();
    void buildCentre();
    void buildStatusBar();
    void setOntologyCommands(bool enabled);

    QList<QAction *> m_places;
    QList<QLabel *> m_panels;
};

} // namespace lx::ui
