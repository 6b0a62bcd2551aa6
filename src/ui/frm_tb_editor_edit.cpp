// The termbase editor's changes to elements that exist: a value through the edit frame, the
// text of a term or a backmatter record in place in the tree, a concept in the ontology editor,
// and the deletion of an element with everything below it and everything that points at it.
#include "core/command.h"
#include "core/interaction.h"
#include "core/process.h"
#include "core/text/like.h"
#include "publish/term_entry_page.h"
#include "termbase/edit/assert.h"
#include "termbase/edit/categories.h"
#include "termbase/edit/element_tree.h"
#include "termbase/edit/modify.h"
#include "termbase/edit/records.h"
#include "ui/forms.h"
#include "ui/frm_onto_edit.h"
#include "ui/frm_records.h"
#include "ui/frm_tb_editor.h"

#include <QComboBox>
#include <QDate>
#include <QDateTime>
#include <QEvent>
#include <QGroupBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSlider>
#include <QTreeWidget>

#include <functional>

namespace lx::ui {

namespace {

QString DateText(const QVariant &value)
{
    const QDate date =
        value.typeId() == QMetaType::QDateTime ? value.toDateTime().date() : value.toDate();
    return date.isValid() ? date.toString(QStringLiteral("dd/MM/yyyy")) : value.toString();
}

bool KindIn(const QString &kind, std::initializer_list<const char *> kinds)
{
    for (const char *each : kinds) {
        if (kind == QLatin1String(each))
            return true;
    }
    return false;
}

// Hands a press of the mouse on a control to the window.
class PressWatch : public QObject {
public:
    PressWatch(QObject *parent, std::function<void()> handler)
        : QObject(parent), m_handler(std::move(handler))
    {}

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::MouseButtonPress)
            RunCommand(m_handler);
        return QObject::eventFilter(watched, event);
    }

private:
    std::function<void()> m_handler;
};

} // namespace

void frmTBEDitor::wireEditCommands()
{
    connect(cmdEdit, &QPushButton::clicked, this, Command(this, &frmTBEDitor::cmdEdit_Click));
    txtData->installEventFilter(new PressWatch(txtData, [this] { txtData_Click(); }));
}

// The frame filled for a change of the selected element's value.
void frmTBEDitor::OpenElementForEdit()
{
    QTreeWidgetItem *node = Tree1->currentItem();
    if (!node)
        return;
    txtElem->setText(node->parent() ? node->parent()->text(0) : QString());
    txtDC->setText(node->text(0));
    QVariant value;
    QString valueType;
    QString language;
    ReadElementValue(KeyElement(NodeKey(node)), value, valueType, language, false);
    if (value.isNull() || value.toString().isEmpty()) {
        fraEdit->hide();
        return;
    }
    if (valueType == QLatin1String("text")) {
        txtData->setText(value.toString());
        txtData->show();
        fraEdit->show();
        txtData->setFocus();
    } else if (valueType == QLatin1String("picklist")) {
        lstData->show();
        lstData->clear();
        lstData->addItems(ReadPicklist(NodeCategory(node)));
        fraEdit->show();
        const QList<QListWidgetItem *> found =
            lstData->findItems(value.toString(), Qt::MatchExactly);
        if (!found.isEmpty())
            lstData->setCurrentItem(found.first());
        lstData->setFocus();
    } else if (valueType == QLatin1String("date")) {
        mskData->setText(DateText(value));
        mskData->show();
        fraEdit->show();
        mskData->setFocus();
    } else if (valueType == QLatin1String("number") && NodeCategory(node) == QLatin1String("3.4")) {
        sldData->setValue(value.toInt());
        sldData->show();
        fraEdit->show();
        sldData->setFocus();
    }
    if (!language.isEmpty()) {
        lstLang->clear();
        lstLang->addItems(ReadLanguageCodes());
        lstLang->setCurrentIndex(lstLang->findText(language));
        lstLang->show();
    }
    cmdAssert->hide();
    cmdEdit->show();
    cmdEdit->setDefault(true);
}

// The new value from the first control shown; emptying a value asks to delete the element.
void frmTBEDitor::cmdEdit_Click()
{
    QTreeWidgetItem *node = Tree1->currentItem();
    if (!node || IsPlaceholderNode(node))
        return;
    ElementEdit edit;
    edit.Element = KeyElement(NodeKey(node));
    if (!txtData->isHidden()) {
        edit.ValueType = QStringLiteral("text");
        edit.Value = txtData->text();
    } else if (!lstData->isHidden()) {
        edit.ValueType = QStringLiteral("picklist");
        edit.Value = lstData->currentItem() ? lstData->currentItem()->text() : QString();
    } else if (!sldData->isHidden()) {
        edit.ValueType = QStringLiteral("number");
        edit.Value = sldData->value();
    } else if (!mskData->isHidden()) {
        edit.ValueType = QStringLiteral("date");
        edit.Value = mskData->text();
    }
    if (IsEmptyEditValue(edit.Value) ||
        (edit.ValueType == QLatin1String("date") &&
         mskData->text().remove(QLatin1Char('/')).trimmed().isEmpty())) {
        mnuElemDelete_Click();
        return;
    }
    if (edit.ValueType == QLatin1String("date")) {
        const std::optional<QDate> date = AcceptedDate(edit.Value.toString());
        if (!date)
            return;
        edit.Value = *date;
    }
    edit.LanguageShown = !lstLang->isHidden();
    edit.Language = lstLang->currentText();
    if (!WriteElementValue(edit))
        return;
    ReturnToElement();
}

void frmTBEDitor::AddRecord(const QString &command, const QString &categoryId)
{
    if (command == QLatin1String("AddPerson"))
        AddPerson();
    else if (command == QLatin1String("AddBibliography"))
        AddBibliography();
    else if (command == QLatin1String("AddBinaryRecord"))
        AddBinaryRecord(categoryId);
    else
        AddTextRecord(*this, command);
    ReturnToElement();
}

// Without an alias nothing is written, and the dialog stays loaded with what was typed.
void frmTBEDitor::AddPerson()
{
    frmPerson &dialog = Forms().Get<frmPerson>();
    UI().ShowModal(&dialog);
    if (dialog.txtAlias->text().isEmpty())
        return;
    AddPersonRecord(*this, dialog.Fields());
    Forms().Unload(&dialog);
}

void frmTBEDitor::AddBibliography()
{
    frmBiblio &dialog = Forms().Get<frmBiblio>();
    UI().ShowModal(&dialog);
    if (dialog.txtDescriptor->text().isEmpty())
        return;
    AddBibliographyRecord(*this, dialog.Fields());
    Forms().Unload(&dialog);
}

void frmTBEDitor::AddBinaryRecord(const QString &categoryId)
{
    const std::optional<QString> filter = BinaryRecordFilter(categoryId);
    if (!filter)
        return;
    FileDialogRequest request;
    request.title = QStringLiteral("Open");
    request.filter = *filter;
    request.filterIndex = 1;
    request.initialDir = AppPath();
    const std::optional<QString> file = UI().GetOpenFileName(request);
    if (!file || file->isEmpty())
        return;
    lx::AddBinaryRecord(*this, categoryId, *file);
}

void frmTBEDitor::txtData_Click()
{
    if (text::Like(txtData->text(), u"Enter*"))
        txtData->clear();
}

void frmTBEDitor::mnuElemModify_Click()
{
    QTreeWidgetItem *node = Tree1->currentItem();
    if (!node)
        return;
    const QString kind = NodeKind(node);
    const QString parentKind = NodeKind(node->parent());
    if (kind == QLatin1String("concept")) {
        if (auto *ontology = Forms().Find<frmOntoEdit>()) {
            ontology->txtCptSearch->setText(node->text(0));
            ontology->activateWindow();
            ontology->raise();
            ontology->txtCptSearch->setFocus();
        }
        return;
    }
    if (kind == QLatin1String("term")) {
        Tree1->editItem(node, 0);
        return;
    }
    if (KindIn(kind, {"pub", "url", "subjectfield", "responsible"})) {
        if (LabelEditAllowed(kind, parentKind))
            Tree1->editItem(node, 0);
        else
            UI().MsgBox(QStringLiteral("You must modify this element in the 'backmatter'."),
                        msg::Information);
    }
}

void frmTBEDitor::Tree1_AfterLabelEdit(QTreeWidgetItem *node, const QString &text)
{
    if (text == node->text(0))
        return;
    const QString kind = NodeKind(node);
    if (!LabelEditAllowed(kind, NodeKind(node->parent())))
        return;
    if (text.trimmed().isEmpty()) {
        UI().MsgBox(QStringLiteral("You must specify a value"), msg::Critical,
                    QStringLiteral("Error"));
        return;
    }
    if (!RenameElement(KeyElement(NodeKey(node)), kind, text))
        return;
    node->setText(0, text);
}

void frmTBEDitor::mnuElemDelete_Click()
{
    QTreeWidgetItem *node = Tree1->currentItem();
    if (!node || IsPlaceholderNode(node))
        return;
    const QString kind = NodeKind(node);
    if (kind == QLatin1String("folder") || kind == QLatin1String("container") || kind == RootKind)
        return;
    if (!ConfirmElementDelete())
        return;
    const bool isTerm = kind == QLatin1String("term");
    const ElementDeletion deletion =
        DeleteElement(KeyElement(NodeKey(node)), CurrentElemID, isTerm);
    if (kind == QLatin1String("concept")) {
        --EntryCount;
        // Only the sections whose branch is loaded show their terms.
        for (int i = 0; i < node->childCount(); ++i) {
            QTreeWidgetItem *section = node->child(i);
            if (!NodeKind(section).startsWith(QLatin1String("ls")))
                continue;
            for (int j = 0; j < section->childCount(); ++j)
                TermCount -= NodeKind(section->child(j)) == QLatin1String("term") ? 1 : 0;
        }
        ShowCounts();
    } else if (isTerm) {
        if (deletion.SectionDeleted && node->parent())
            Tree1->setCurrentItem(node->parent());
        --TermCount;
        ShowCounts();
    } else if (kind.startsWith(QLatin1String("ls"))) {
        TermCount -= node->childCount();
        ShowCounts();
    }
    QTreeWidgetItem *selected = Tree1->currentItem();
    QTreeWidgetItem *parent = selected ? selected->parent() : nullptr;
    if (!parent)
        return;
    Tree1->setCurrentItem(parent);
    parent->setExpanded(false);
    parent->setExpanded(true);
    Tree1_NodeClick(parent);
}

} // namespace lx::ui
