#pragma once

#include "core/signal_label.h"
#include "ontology/edit/concept_view.h"
#include "ontology/edit/inheritance.h"
#include "ontology/store/concept_list.h"
#include "ontology/store/onto_editor.h"

#include <QList>
#include <QMainWindow>

#include <functional>

class QAction;
class QCheckBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QListView;
class QListWidget;
class QMenu;
class QPlainTextEdit;
class QRadioButton;
class QSplitter;
class QTabWidget;
class QToolBar;
class QTreeView;
class QTreeWidget;

namespace lx::ui {

class PagedListModel;

// The ontology editor, the program's main window: concept list on the left, the tabbed view of
// the current concept on the right. Its handlers are a thin layer over the life cycle and the
// concept list of the ontology store.
class frmOntoEdit : public QMainWindow, public OntologyEditor {
    Q_OBJECT

public:
    frmOntoEdit();

    // Toolbar places count from 1, separators included, as the handlers name them.
    static constexpr int ToolBarPlaces = 16;
    QAction *ToolButton(int place) const { return m_places.value(place - 1); }
    QLabel *StatusPanel(int panel) const { return m_panels.value(panel - 1); }

    // What the logic asks of the window.
    void SetCaption(const QString &caption) override;
    void SetWindowPointer(int pointer) override;
    void EnableOntologyCommands() override;
    void DisableOntologyCommands() override;
    void UpdateStatusCounts() override;
    void ClearConceptView() override;
    void LoadConceptView() override;
    void ShowConceptList() override;
    QString SelectFirstListRow() override;
    void BindConceptList(const QString &field) override;
    void UnloadOtherWindows() override;
    PropertiesTexts ShowProperties(const PropertiesTexts &texts) override;

    // Moves the list to `identifier` through the search box; offers to change the list mode
    // when the mode hides it.
    void GoToConcept(const QString &identifier);
    // The text of the list's selected row.
    QString ListText() const;

    void ToolBar1_ButtonClick(const QString &key);
    void mnuFileNew_Click();
    void mnuFileOPen_Click();
    void mnuFileClose_Click();
    // The import dialog, modal; the list and the view are read again when it closes.
    void mnuFileImport_Click();
    // The import dialog with `file` chosen already; an empty `file` leaves the choice to the user.
    void ImportFile(const QString &file);
    void mnuFileProperties_Click();
    void mnuFileExit_Click();
    void mnuEditCopy_Click();
    void mnuToolsOptions_Click();
    void mnuHelpTool_Click();
    void mnuHelpAbout_Click();
    void txtCptSearch_Change();
    void txtDef_KeyUp(int key, Qt::KeyboardModifiers shift);
    void dblConcepts_Click();
    void dblConcepts_MouseUp();
    void lstSubclasses_DblClick();
    void lvwInherit_MouseUp();

    // The hierarchy trees, in frm_onto_edit_trees.cpp.
    void mnuTreeFull_Click();
    void mnuTreeObject_Click();
    void mnuTreeEvent_Click();
    void mnuTreeRel_Click();
    void mnuTreeAttr_Click();
    void mnuTreeSelConcept_Click();
    void mnuConceptTree_Click();

    // The concept list and its search box, in frm_onto_edit_list.cpp.
    void dblConcepts_DblClick();
    void txtCptSearch_GotFocus();
    void txtCptSearch_LostFocus();
    // The key to use for a typed character, 0 to drop it.
    int txtCptSearch_KeyPress(int key);
    void txtCptSearch_KeyUp(int key, Qt::KeyboardModifiers shift);

    // The parts of the concept view and the inheritance tab, in frm_onto_edit_view.cpp.
    void LoadSlots();
    void LoadNames();
    void LoadAncestors();
    void LoadDescendants();
    bool HasNote();
    // The note button shows whether the current concept has a note now.
    void RefreshNoteImage();
    void RefreshInheritance();
    void chkActiveAnc_Click();
    void chkActivDesc_Click();
    void optOff_Click();
    void optCumulative_Click();
    void optExclusive_Click();
    void chkInhRels_Click();
    void chkInhAttrs_Click();
    void lvwInherit_ColumnClick(int column);
    void mnuInheritGoToAttr_Click();
    void mnuInheritGoToValue_Click();
    void mnuInheritGoToFrom_Click();
    void mnuInheritCopy_Click();

    // The names of the current concept, and the first name of a new one, in
    // frm_onto_edit_names.cpp.
    void mnuNameAdd_Click();
    void mnuNameEdit_Click();
    void mnuNameDelete_Click();
    void lvwNames_MouseUp();
    void lvwNames_ColumnClick(int column);
    void AddDefaultName();
    // The working note of the current concept, in frm_onto_edit_notes.cpp.
    void mnuConceptNote_Click();
    void mnuToolsListNotes_Click();
    // A concept's birth, identifier, definition and deletion, in frm_onto_edit_concepts.cpp.
    void mnuConceptAdd_Click();
    void lblNewCpt_Change();
    void mnuConceptEdit_Click();
    void mnuConceptEditDef_Click();
    void txtDef_DblClick();
    void mnuConceptDelete_Click();
    // The slots of the current concept, in frm_onto_edit_slots.cpp.
    void lstISA_MouseUp();
    void mnuISAAdd_Click();
    void mnuISAEdit_Click();
    void mnuISADelete_Click();
    void lstRels_MouseUp();
    void lstRels_DblClick();
    void mnuRelAdd_Click();
    void mnuRelDelete_Click();
    void mnuRelGoToRel_Click();
    void mnuRelGoToConcept_Click();
    void mnuDomainAdd_Click();
    void mnuDomainDelete_Click();
    void lstAttrs_MouseUp();
    void mnuAttrAdd_Click();
    void mnuAttrDelete_Click();
    void mnuRangeAdd_Click();
    void mnuRangeDelete_Click();
    void lblNewRel_Change();
    void lblNewAttr_Change();
    // A concept's add (1), delete (2) or rename (3) carried into the linked termbases; the open
    // termbase windows hear of it, with CurrentConcept, when a link exists.
    void PropagateConceptToTermBases(const QString &newId, const QString &oldId, int operation);

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

    // Popup menus of the view's lists; mnuInstOf and mnuGoTo stand without handlers.
    QMenu *mnuISA, *mnuRel, *mnuRelGoTo, *mnuDomain, *mnuAttr, *mnuRange, *mnuName, *mnuInherit,
        *mnuInstOf, *mnuGoTo;

    QToolBar *ToolBar1;
    QGroupBox *frmSearch;
    QLineEdit *txtCptSearch;
    QListView *dblConcepts;
    QTabWidget *tbsEdit;
    // "Description"
    QPlainTextEdit *txtDef;
    QListWidget *lstISA, *lstSubclasses;
    QTreeWidget *lvwNames;
    // "Properties"
    QLabel *lblRels, *lblAttrs;
    QListWidget *lstRels, *lstAttrs;
    // "Relatives"
    QListView *lstAncestors, *lstDescendants;
    QCheckBox *chkActiveAnc, *chkActivDesc;
    // "Inheritance"
    QGroupBox *fraInherit, *fralvwInclude;
    QRadioButton *optOff, *optCumulative, *optExclusive;
    QCheckBox *chkInhRels, *chkInhAttrs;
    QTreeView *lvwInherit;

    // Hidden labels through which the dialogs signal a new concept, relation or attribute.
    SignalLabel *lblNewCpt, *lblNewRel, *lblNewAttr;

protected:
    void closeEvent(QCloseEvent *event) override;         // Form_Unload
    void dragEnterEvent(QDragEnterEvent *event) override; // files only
    void dropEvent(QDropEvent *event) override;           // Form_OLEDragDrop
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    // Construction, in frm_onto_edit_layout.cpp.
    void buildMenus();
    void buildPopupMenus();
    void routeMenus();
    void buildToolBar();
    void buildCentre();
    QWidget *buildDescriptionTab();
    QWidget *buildPropertiesTab();
    QWidget *buildRelativesTab();
    QWidget *buildInheritanceTab();
    void buildStatusBar();
    void buildShortcuts();
    void fixListColumns();

    void setOntologyCommands(bool enabled);
    void connectList();
    void connectView();
    void connectSlots();
    bool searchBoxEvent(QEvent *event);
    void showNames(const QList<NameRow> &names);
    void showSlots(const SlotLists &slots);
    void goToInheritColumn(int column);
    void feedOpenSlotDialogs();
    void setNoteImage(bool hasNote);
    void selectListRow(store::Bookmark bookmark);
    void popUp(QMenu *menu);

    QList<QAction *> m_places;
    QList<QLabel *> m_panels;
    QSplitter *m_splitter = nullptr; // between the concept list and the view
    PagedListModel *m_listModel = nullptr;
    bool m_movingList = false; // the program moves the list: not a click
    QString m_listField = QStringLiteral("Concept");
    int m_inheritSortKey = -1; // the column lvwInherit is sorted on, once a head was clicked
};

} // namespace lx::ui
