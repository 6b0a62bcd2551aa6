#pragma once

#include <QDialog>
#include <QString>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QPushButton;
class QRadioButton;
class QTreeWidgetItem;

namespace lx::ui {

class frmTBEDitor;

// "Find": looks for a concept or a term among the nodes of the termbase editor's element tree,
// opening branches as it goes, and selects what it finds. It searches the tree, not the file.
class frmFind : public QDialog {
    Q_OBJECT

public:
    explicit frmFind(frmTBEDitor &editor);

    // The text with "*" behind it, or the text alone for a full word.
    QString Pattern() const;
    void cmdFind_Click();
    void cmdCancel_Click();
    void FindNextTerm();
    // A click on either option starts a search afresh from the first node.
    void ElementTypeChanged();
    // The key as a typed concept name takes it, or nothing for a key that is dropped.
    static std::optional<QChar> ConceptKey(QChar key);

    QComboBox *cbxFind;
    QCheckBox *chkFullWord;
    QGroupBox *Frame1;
    QRadioButton *optFindT, *optFindC;
    QPushButton *cmdFind, *cmdCancel;
    QString LastSearch;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void remember(const QString &text);
    void findConcept(const QString &pattern, int depth);
    void findTerm(const QString &pattern);
    QTreeWidgetItem *openBody();
    void select(QTreeWidgetItem *node);

    frmTBEDitor &m_editor;
};

// Shows the find dialog of the editor, loading it the first time.
void ShowFind(frmTBEDitor &editor);

} // namespace lx::ui
