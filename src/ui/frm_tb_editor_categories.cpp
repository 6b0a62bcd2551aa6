// The data category pane of the termbase editor (Tree2 or ListView1), its active and inactive
// marks, and the edit frame that a click on an active category prepares.
#include "core/command.h"
#include "core/interaction.h"
#include "core/process.h"
#include "termbase/edit/assert.h"
#include "termbase/edit/categories.h"
#include "ui/forms.h"
#include "ui/frm_tb_editor.h"
#include "ui/frm_wait.h"
#include "ui/images.h"
#include "ui/list_views.h"
#include "ui/named.h"
#include "ui/window_place.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDate>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QMenu>
#include <QProgressBar>
#include <QPushButton>
#include <QSlider>
#include <QStatusBar>
#include <QToolBar>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <functional>

namespace lx::ui {

namespace {

constexpr int KeyRole = Qt::UserRole;       // "n" and the category's identifier
constexpr int ImageRole = Qt::UserRole + 1; // "active" or "inactive"
constexpr int SliderPreset = 5;

// The identifier behind a key: the key less its first character.
QString IdOfKey(const QString &key)
{
    return key.mid(1);
}

void Mark(QTreeWidgetItem *node, bool active)
{
    const QString key = active ? QStringLiteral("active") : QStringLiteral("inactive");
    node->setIcon(0, Image(key));
    node->setData(0, ImageRole, key);
}

} // namespace

void frmTBEDitor::buildEditFrame()
{
    txtElem = Named(new QLineEdit(fraEdit), QStringLiteral("txtElem"));
    txtDC = Named(new QLineEdit(fraEdit), QStringLiteral("txtDC"));
    for (QLineEdit *box : {txtElem, txtDC})
        box->setReadOnly(true);
    txtData = Named(new QLineEdit(fraEdit), QStringLiteral("txtData"));
    txtData->setToolTip(QStringLiteral("Type in value"));
    lstData = Named(new QListWidget(fraEdit), QStringLiteral("lstData"));
    lstData->setToolTip(QStringLiteral("Choose a value from the list"));
    lstRefs = Named(new QListWidget(fraEdit), QStringLiteral("lstRefs"));
    sldData = Named(new QSlider(Qt::Horizontal, fraEdit), QStringLiteral("sldData"));
    sldData->setRange(0, 10);
    sldData->setTickPosition(QSlider::TicksBelow);
    sldData->setValue(SliderPreset);
    mskData = Named(new QLineEdit(fraEdit), QStringLiteral("mskData"));
    mskData->setInputMask(QStringLiteral("99/99/9999"));
    mskData->setToolTip(QStringLiteral("Click to change the current date"));
    dbcConcepts = MakeTextList(fraEdit, QStringLiteral("dbcConcepts"));
    dbcConcepts->setToolTip(QStringLiteral("Pick a Concept from the list"));
    lstLang = Named(new QComboBox(fraEdit), QStringLiteral("lstLang"));
    lstLang->setToolTip(QStringLiteral("ISO language code"));
    cmdAssert =
        Named(new QPushButton(QStringLiteral("&Assert"), fraEdit), QStringLiteral("cmdAssert"));
    cmdEdit = Named(new QPushButton(QStringLiteral("&OK"), fraEdit), QStringLiteral("cmdEdit"));
    lblEdit = Named(new QLabel(fraEdit), QStringLiteral("lblEdit"));
    lblEdit->hide();

    auto *form = new QFormLayout;
    form->addRow(QStringLiteral("Element"), txtElem);
    form->addRow(QStringLiteral("Category"), txtDC);
    auto *layout = new QVBoxLayout(fraEdit);
    layout->addLayout(form);
    for (QWidget *control : std::initializer_list<QWidget *>{txtData, lstData, lstRefs, sldData,
                                                             mskData, dbcConcepts, lstLang})
        layout->addWidget(control);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdAssert);
    buttons->addWidget(cmdEdit);
    layout->addLayout(buttons);
    TabOrder({Tree1, txtData, lstData, lstRefs, sldData, mskData, dbcConcepts, lstLang, cmdAssert,
              cmdEdit, Tree2, ListView1});

    ProgressBar1 = Named(new QProgressBar(statusBar()), QStringLiteral("ProgressBar1"));
    ProgressBar1->setMaximumWidth(180);
    ProgressBar1->hide();
    statusBar()->addPermanentWidget(ProgressBar1);

    connect(Tree2, &QTreeWidget::itemClicked, this,
            [this](QTreeWidgetItem *node) { RunCommand([this, node] { Tree2_NodeClick(node); }); });
    connect(ListView1, &QListWidget::itemClicked, this, [this](QListWidgetItem *item) {
        RunCommand([this, item] { ListView1_ItemClick(item); });
    });
    connect(cmdAssert, &QPushButton::clicked, this, Command(this, &frmTBEDitor::cmdAssert_Click));
    HideEditFrame();
}

void frmTBEDitor::HideEditFrame()
{
    for (QWidget *control : std::initializer_list<QWidget *>{
             fraEdit, txtData, lstData, lstRefs, sldData, lstLang, dbcConcepts, mskData, cmdEdit})
        control->hide();
    fraEdit->setTitle(QString());
    txtData->clear();
    mskData->clear();
    lstData->clear();
    lstRefs->clear();
}

// The pane of the open termbase, with a wait window while it fills: a category's children
// come before it in the list, a top category before its descendants.
void frmTBEDitor::LoadCategoryTree()
{
    auto &wait = Forms().Load<frmWait>();
    wait.lblMess->setText(QStringLiteral("Loading Data Categories..."));
    PlaceOver(wait, this);
    wait.show();
    ProgressBar1->setRange(
        0, int(Process().rsDatCats.isOpen() ? Process().rsDatCats.RecordCount() : 0));
    ProgressBar1->show();
    Tree2->clear();
    ListView1->clear();
    auto *root = new QTreeWidgetItem(Tree2, {QStringLiteral("DC")});
    root->setData(0, KeyRole, QStringLiteral("nDC"));
    int count = 1;
    for (const CategoryNode &top : ReadCategoryTree()) {
        auto *node = new QTreeWidgetItem(root, {top.Name});
        node->setData(0, KeyRole, QStringLiteral("n") + top.Id);
        addCategoryListItem(top);
        AddCategoryChildren(node, top, count);
    }
    root->setExpanded(true);
    Forms().Unload(&wait);
    ProgressBar1->hide();
    StatusPanel(1)->setText(Process().OntoMeta.Name);
}

void frmTBEDitor::addCategoryListItem(const CategoryNode &category)
{
    auto *item = new QListWidgetItem(category.Name, ListView1);
    item->setData(KeyRole, QStringLiteral("n") + category.Id);
}

// The children of a category under its node, each with its own below it; the list takes a
// child after all of its descendants.
void frmTBEDitor::AddCategoryChildren(QTreeWidgetItem *node, const CategoryNode &category,
                                      int &count)
{
    for (const CategoryNode &child : category.Children) {
        auto *childNode = new QTreeWidgetItem(node, {child.Name});
        childNode->setData(0, KeyRole, QStringLiteral("n") + child.Id);
        AddCategoryChildren(childNode, child, count);
        addCategoryListItem(child);
        if (++count <= ProgressBar1->maximum())
            ProgressBar1->setValue(count);
    }
}

// Every category that may stand under the current element is marked active, opened and
// selected in the tree; in the list the others are greyed.
void frmTBEDitor::MarkValidCategories()
{
    Tree2->hide();
    Tree2->collapseAll();
    const QSet<QString> valid = ValidChildCategories(CurrentCategory);
    QTreeWidgetItemIterator it(Tree2);
    for (; *it; ++it) {
        QTreeWidgetItem *node = *it;
        const bool active = IsValidChild(valid, IdOfKey(node->data(0, KeyRole).toString()));
        Mark(node, active);
        if (active) {
            node->setSelected(true);
            for (QTreeWidgetItem *up = node; up; up = up->parent())
                up->setExpanded(true);
        }
    }
    if (Tree2->topLevelItemCount() > 0)
        Tree2->setCurrentItem(Tree2->topLevelItem(0));
    const QColor ghost = palette().color(QPalette::Disabled, QPalette::Text);
    for (int i = 0; i < ListView1->count(); ++i) {
        QListWidgetItem *item = ListView1->item(i);
        const bool active = IsValidChild(valid, IdOfKey(item->data(KeyRole).toString()));
        const QString key = active ? QStringLiteral("active") : QStringLiteral("inactive");
        item->setIcon(Image(key));
        item->setData(ImageRole, key);
        item->setForeground(active ? palette().color(QPalette::Text) : ghost);
    }
    Tree2->show();
}

QString frmTBEDitor::CategoryNodeKey(const QTreeWidgetItem *node)
{
    return node->data(0, KeyRole).toString();
}

bool frmTBEDitor::IsActiveCategoryNode(const QTreeWidgetItem *node)
{
    return node->data(0, ImageRole).toString() == QLatin1String("active");
}

void frmTBEDitor::Tree2_NodeClick(QTreeWidgetItem *node)
{
    categoryClicked(node->data(0, KeyRole).toString(), node->data(0, ImageRole).toString(),
                    node->text(0), [this] { Tree2->clearSelection(); });
}

void frmTBEDitor::ListView1_ItemClick(QListWidgetItem *item)
{
    categoryClicked(item->data(KeyRole).toString(), item->data(ImageRole).toString(), item->text(),
                    [this] { ListView1->clearSelection(); });
}

void frmTBEDitor::categoryClicked(const QString &key, const QString &image, const QString &name,
                                  const std::function<void()> &takeBack)
{
    if (txtElem->text().isEmpty())
        return;
    if (image == QLatin1String("inactive")) {
        takeBack();
        return;
    }
    if (key == QLatin1String("nDC"))
        return; // the root of the pane is no category
    txtDC->setText(name);
    ShowCategoryEditor(IdOfKey(key));
}

void frmTBEDitor::ShowCategoryEditor(const QString &categoryId)
{
    using Control = CategoryEditor::Control;
    if (fraEdit->isVisible())
        HideEditFrame();
    const CategoryEditor editor = ChooseCategoryEditor(categoryId);
    const auto show = [&](QWidget *control) {
        control->show();
        fraEdit->setTitle(editor.Name);
        fraEdit->show();
        control->setFocus();
    };
    switch (editor.Shown) {
    case Control::Text:
        show(txtData);
        break;
    case Control::Concepts:
        SetTexts(dbcConcepts, ReadTermbaseConcepts());
        show(dbcConcepts);
        break;
    case Control::Refs:
        lstRefs->addItems(editor.Values);
        show(lstRefs);
        break;
    case Control::Picklist:
    case Control::BackmatterList:
        lstData->addItems(editor.Values);
        show(lstData);
        break;
    case Control::Date:
        mskData->setText(QDate::currentDate().toString(QStringLiteral("dd/MM/yyyy")));
        show(mskData);
        break;
    case Control::Number:
        sldData->setValue(SliderPreset);
        show(sldData);
        break;
    case Control::Record:
        AddRecord(editor.RecordCommand, categoryId);
        return;
    case Control::Pointer:
        if (!StartCrossReference())
            return;
        break;
    case Control::NoElements:
        UI().MsgBox(NoElementsMessage(), msg::Exclamation);
        return;
    case Control::None:
        break;
    }
    if (editor.NeedsLang) {
        lstLang->clear();
        lstLang->addItems(ReadLanguageCodes());
        lstLang->setCurrentIndex(-1);
        lstLang->show();
    }
    cmdAssert->show();
    cmdAssert->setDefault(true);
    lblEdit->setText(categoryId);
}

} // namespace lx::ui

namespace lx::ui {

// The value of the first visible control of the frame, in its fixed order.
AssertInput frmTBEDitor::ReadAssertInput() const
{
    using Source = AssertInput::Source;
    AssertInput input;
    input.CategoryId = lblEdit->text();
    input.LanguageShown = !lstLang->isHidden();
    input.Language = lstLang->currentText();
    input.Parent = CurrentElemID;
    const std::pair<bool, std::pair<Source, QString>> controls[] = {
        {!txtData->isHidden(), {Source::Text, txtData->text()}},
        {!lstData->isHidden(), {Source::Picklist, CurrentText(lstData)}},
        {!lstRefs->isHidden(), {Source::Refs, CurrentText(lstRefs)}},
        {!sldData->isHidden(), {Source::Number, QString::number(sldData->value())}},
        {!dbcConcepts->isHidden(), {Source::Concepts, CurrentText(dbcConcepts)}},
        {!mskData->isHidden(), {Source::Date, mskData->text()}},
    };
    for (const auto &[shown, value] : controls) {
        if (shown) {
            input.From = value.first;
            input.Value = value.second;
            break;
        }
    }
    return input;
}

void frmTBEDitor::cmdAssert_Click()
{
    using Branch = AssertResult::Branch;
    const AssertInput input = ReadAssertInput();
    const AssertResult result = AssertElement(*this, input);
    if (result.RefusedForLanguage) {
        lstLang->setFocus();
        return;
    }
    if (!result.Written)
        return;
    switch (result.Went) {
    case Branch::Term:
        ShowCounts();
        txtData->clear();
        break;
    case Branch::Entry:
        SetTexts(dbcConcepts, {});
        ShowCounts();
        break;
    case Branch::General:
        if (input.From == AssertInput::Source::Text)
            txtData->clear();
        else if (input.From == AssertInput::Source::Picklist)
            lstData->clear();
        else if (input.From == AssertInput::Source::Refs)
            lstRefs->clear();
        else if (input.From == AssertInput::Source::Date)
            mskData->clear();
        else if (input.From == AssertInput::Source::Number)
            sldData->setValue(SliderPreset);
        break;
    case Branch::Backmatter:
    case Branch::None:
        break;
    }
    ShowAssertedElement(result);
}

// A category of pointers starts the picking of the cross-referenced element in the tree.
bool frmTBEDitor::StartCrossReference()
{
    const QString kind = SelectedElementKind();
    if (kind == QLatin1String("xref") || kind == QLatin1String("termbase") ||
        kind == QLatin1String("folder"))
        return false;
    TellCrossReferencePicking();
    CrossRefPicking = true;
    CrossRefSource = CurrentElemID;
    if (fraEdit->isVisible())
        fraEdit->hide();
    EnterCrossRefMode();
    return true;
}

void frmTBEDitor::EnterCrossRefMode()
{
    for (QWidget *part : std::initializer_list<QWidget *>{ToolBar1, Tree2, fraEdit})
        part->setEnabled(false);
    for (QAction *part : {mnuFile->menuAction(), mnuToolsOptions, mnuEdit->menuAction(),
                          mnuTools->menuAction(), mnuHelp->menuAction()})
        part->setEnabled(false);
    setCursor(Qt::ForbiddenCursor);
    Tree1->setCursor(Qt::WhatsThisCursor);
}

void frmTBEDitor::LeaveCrossRefMode()
{
    for (QWidget *part : std::initializer_list<QWidget *>{ToolBar1, Tree2, fraEdit})
        part->setEnabled(true);
    for (QAction *part : {mnuFile->menuAction(), mnuToolsOptions, mnuEdit->menuAction(),
                          mnuTools->menuAction(), mnuHelp->menuAction()})
        part->setEnabled(true);
    unsetCursor();
    Tree1->unsetCursor();
}

// The click that ends the picking: the cross-reference is written, or the picking abandoned
// with the clicked element as the current one. True when the click goes on as a plain one.
bool frmTBEDitor::PickCrossReferenceTarget(qint32 target, const QString &targetCategory)
{
    const QTreeWidgetItem *pane = Tree2->currentItem();
    const QString category = pane ? IdOfKey(pane->data(0, KeyRole).toString()) : QString();
    if (!CompleteCrossReference(*this, CrossRefSource, target, targetCategory, category)) {
        CurrentElemID = target;
        CurrentCategory = targetCategory;
        CrossRefPicking = false;
        LeaveCrossRefMode();
        return false;
    }
    CrossRefPicking = false;
    LeaveCrossRefMode();
    ShowAssertedElement({AssertResult::Branch::General, true});
    return true;
}

} // namespace lx::ui
