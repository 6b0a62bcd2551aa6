#pragma once

#include "core/signal_label.h"
#include "ui/forms.h"

#include <QDialog>

class QButtonGroup;
class QComboBox;
class QLabel;
class QLineEdit;
class QListView;
class QProgressBar;
class QPushButton;
class QRadioButton;
class QStatusBar;
class QStringListModel;
class QTreeWidget;

namespace lx::ui {

// "Batch Naming": names added to, or removed from, many concepts in one language. The concepts
// are picked in a list by hand, all at once, by subset, by subhierarchy or by a pattern.
// Modeless; the list is read when lblStart receives its job word.
class frmBatchNaming : public QDialog, public UnloadSteps {
    Q_OBJECT

public:
    // The job word that fills the list.
    static inline const QString Job = QStringLiteral("Names");

    frmBatchNaming();

    void lblStart_Change();
    void cmdSelect_Click();
    void cmdClear_Click();
    void cmdRefresh_Click();
    void cmdOK_Click();
    void cmdCancel_Click();
    void optAlpha_Click();
    void optAsEntered_Click();
    void lstConcepts_Click();
    void Form_Unload() override;

    // The items of lstConcepts, in the order shown.
    QStringList ListedConcepts() const;
    // The indexes of the selected items, in list order.
    QList<int> SelectedIndexes() const;
    // Selects the items at `indexes` besides those selected already.
    void SelectIndexes(const QList<int> &indexes);

    QListView *lstConcepts;
    QTreeWidget *lvwLangs;
    QRadioButton *optAdd, *optRemove, *optAsIs, *optConvert, *optAsEntered, *optAlpha;
    QRadioButton *optAll, *optSelect, *optSubset, *optHier, *optRegExp;
    QComboBox *cbxSubset;
    QLineEdit *txtRegExp;
    QPushButton *cmdSelect, *cmdClear, *cmdRefresh, *cmdOK, *cmdCancel;
    QStatusBar *StatusBar1;
    QLabel *StatusPanel2;
    QProgressBar *ProgressBar1;
    SignalLabel *lblStart;

public Q_SLOTS:
    void reject() override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *buildSelectFrame();
    QWidget *buildRunFrames();
    void connectHandlers();
    void fillLanguages();
    void fillList(bool alphabetical);
    void selectMode(QRadioButton *option);
    void showCount();
    void run(const QStringList &concepts);

    QStringListModel *m_concepts;
    QString m_sort;       // "Alpha" or "AsEntered"
    bool m_ready = false; // false while the list fills or code selects in bulk
};

// mnuToolsBatchNaming: the dialog over the main window, its list read as it opens.
void ShowBatchNaming();

} // namespace lx::ui
