#pragma once

#include "core/signal_label.h"
#include "termbase/edit/assert.h"
#include "termbase/edit/categories.h"
#include "termbase/edit/element_tree.h"
#include "termbase/store/tb_editor.h"
#include "ui/forms.h"

#include <QList>
#include <QMainWindow>

#include <functional>

class QAction;
class QComboBox;
class QLineEdit;
class QListView;
class QListWidgetItem;
class QProgressBar;
class QPushButton;
class QSlider;
class QTreeWidgetItem;
class QGroupBox;
class QLabel;
class QListWidget;
class QMenu;
class QSplitter;
class QToolBar;
class QTreeWidget;
class QTreeWidgetItem;

namespace lx::ui {

class LocalBrowser;

// The termbase editor: the element tree on the left, the data category pane (or, in Browse
// Mode, the browser) on the right. Shown, not modal, from the ontology editor; its handlers are
// a thin layer over the termbase life cycle.
class frmTBEDitor : public QMainWindow, public TermbaseEditor, public UnloadSteps {
    Q_OBJECT

public:
    frmTBEDitor();

    // Toolbar places count from 1, separators included, as the handlers name them.
    static constexpr int ToolBarPlaces = 20;
    QAction *ToolButton(int place) const { return m_places.value(place - 1); }
    QLabel *StatusPanel(int panel) const { return m_panels.value(panel - 1); }

    // What the logic asks of the window.
    void SetCaption(const QString &caption) override;
    void SetWindowPointer(int pointer) override;
    void EnableEditor() override;
    void DisableEditor() override;
    void ShowCategoryPane(bool asList) override;
    void ShowCounts() override;
    void ClearStatusPanels() override;
    void ClearTermbaseView() override;
    void LoadTermbaseView() override;
    void ReloadCategoryNames() override;
    void SetOntologyPanel(const QString &text) override;
    PropertiesTexts ShowNewTermbaseProperties(const PropertiesTexts &texts,
                                              const QString &workingOntology) override;
    PropertiesTexts ShowTermbaseProperties(const PropertiesTexts &texts) override;
    TermbaseOptionsChoice ShowTermbaseOptions(const TermbaseOptionsChoice &current) override;

    // The ontology editor's word that concepts changed: the operation's digit, then the
    // ontology's current concept.
    void lblOntoComm_Change();
    void ReloadConcepts();

    void ToolBar1_ButtonClick(const QString &key);
    void mnuFileNew_Click();
    void mnuFileOPen_Click();
    void mnuFileClose_Click();
    void mnuFileProperties_Click();
    void mnuFileExit_Click();
    void mnuToolsOptions_Click();
    void mnuHelpTool_Click();
    void mnuFileExportTbx_Click();
    void mnuFileImportTbx_Click();
    // The two modes and the browser (frm_tb_editor_modes.cpp). The mode is the check of
    // mnuEditBrowser.
    void ShowEditor();
    void ShowBrowser();
    bool BrowseMode() const;
    void ShowEntryPage(QTreeWidgetItem *node);
    void ShowBackmatterFile(QTreeWidgetItem *node);
    void RegenerateEntryPage();
    void mnuFilePrint_Click();
    void ClickPaneCategory(const QString &key);
    // The termbase's folders of pages and of backmatter files, with the final separator.
    QString PublishFolder() const;
    QString BackFolder() const;
    // Changing and deleting elements (frm_tb_editor_edit.cpp).
    void OpenElementForEdit();
    void cmdEdit_Click();
    void mnuElemDelete_Click();
    void mnuElemModify_Click();
    // A label edit of Tree1 ended with `text`: the program changes the label itself.
    void Tree1_AfterLabelEdit(QTreeWidgetItem *node, const QString &text);
    void txtData_Click();
    // The records of the backmatter (frm_tb_editor_edit.cpp); the tree shows the result.
    void AddRecord(const QString &command, const QString &categoryId);
    void AddPerson();
    void AddBibliography();
    void AddBinaryRecord(const QString &categoryId);
    // The termbase closes first, then the windows that belong to the editor go; the editor's
    // place is kept for the next run.
    void Form_Unload() override;

    // The category pane and the edit frame, in frm_tb_editor_categories.cpp.
    void LoadCategoryTree();
    void AddCategoryChildren(QTreeWidgetItem *node, const CategoryNode &category, int &count);
    void MarkValidCategories();
    void HideEditFrame();
    void ShowCategoryEditor(const QString &categoryId);
    void Tree2_NodeClick(QTreeWidgetItem *node);
    void ListView1_ItemClick(QListWidgetItem *item);
    void cmdAssert_Click();
    AssertInput ReadAssertInput() const;
    bool StartCrossReference();
    void EnterCrossRefMode();
    void LeaveCrossRefMode();
    bool PickCrossReferenceTarget(qint32 target, const QString &targetCategory);
    bool CrossRefPicking = false;
    qint32 CrossRefSource = 0;
    // What the element tree shows of the selected node, and the tree after an assert.
    QString SelectedElementKind() const;
    void ShowAssertedElement(const AssertResult &result);
    // The element tree (frm_tb_editor_tree.cpp).
    void LoadRootNode();
    void ExpandElementNode(QTreeWidgetItem *node);
    void AddElementItems(QTreeWidgetItem *node, const QList<ElementNode> &children, qsizetype from,
                         qsizetype to);
    void ReadBranchesAtOnce(QTreeWidgetItem *top, const QList<QTreeWidgetItem *> &nodes, int depth);
    void ReturnToElement();
    void GoToElement(qint32 elemId);
    void SetElementToolbar();
    // What a click on an element starts, CurrentElemID and CurrentCategory being set.
    void ElementClicked();
    void Tree1_Expand(QTreeWidgetItem *node);
    void Tree1_Collapse(QTreeWidgetItem *node);
    void Tree1_NodeClick(QTreeWidgetItem *node);
    void Tree1_MouseUp(Qt::MouseButton button);
    void mnuElemGoTo_Click();
    // A node's key ("n1", "n 3", "n2.1"), its kind (the image key) and its element's category.
    static QString NodeKey(const QTreeWidgetItem *node);
    static QString NodeKind(const QTreeWidgetItem *node);
    static QString NodeCategory(const QTreeWidgetItem *node);
    static bool IsPlaceholderNode(const QTreeWidgetItem *node);
    // The key ("n" and the identifier) of a node of the category pane, and whether it is active.
    static QString CategoryNodeKey(const QTreeWidgetItem *node);
    static bool IsActiveCategoryNode(const QTreeWidgetItem *node);
    QMenu *mnuElem;
    QAction *mnuElemDelete, *mnuElemModify, *mnuElemSep1, *mnuElemGoTo;

    QMenu *mnuFile, *mnuEdit, *mnuTools, *mnuHelp;
    QAction *mnuFileNew, *mnuFileOPen, *mnuFileClose, *mnuFileProperties, *mnuFilePrint,
        *mnuFileExit, *mnuFileExportTbx, *mnuFileImportTbx;
    QAction *mnuEditFind, *mnuEditEditor, *mnuEditBrowser, *mnuToolsGenHTML, *mnuToolsOptions;
    QAction *mnuHelpTool, *mnuHelpAbout;
    QToolBar *ToolBar1;
    QLabel *lblTree1, *lblTree2;
    QTreeWidget *Tree1, *Tree2;
    SignalLabel *lblOntoComm;
    QListWidget *ListView1;
    QWidget *picBrowser;
    LocalBrowser *Browser;
    QGroupBox *fraEdit;
    QLineEdit *txtElem, *txtDC, *txtData, *mskData;
    QListWidget *lstData, *lstRefs;
    QSlider *sldData;
    QListView *dbcConcepts;
    QComboBox *lstLang;
    QPushButton *cmdAssert, *cmdEdit;
    QLabel *lblEdit;
    QProgressBar *ProgressBar1;
    // Between the element tree and the category pane.
    QSplitter *splitter;

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void buildMenus();
    void buildToolBar();
    void buildCentre();
    void buildElementTree();
    void setEditorCommands(bool enabled, int lastButton);
    void buildEditFrame();
    void buildBrowser();
    void wireEditCommands();
    void pointBrowserAtTermbase();
    void setBrowseMode(bool browse);
    void addCategoryListItem(const CategoryNode &category);
    void categoryClicked(const QString &key, const QString &image, const QString &name,
                         const std::function<void()> &takeBack);

    QList<QAction *> m_places;
    QList<QLabel *> m_panels;
};

// The menu command of the ontology editor: loads the termbase editor once and shows it.
void ShowTermbaseEditor();

// Tells every open window whose caption matches "TermBase *" through its lblOntoComm: cleared,
// then the operation's digit followed by `currentConcept`.
void SendOntoComm(int operation, const QString &currentConcept);

} // namespace lx::ui
