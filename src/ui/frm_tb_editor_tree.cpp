// The element tree of the termbase editor: Tree1 read from the file a branch at a time, kept in
// step after a write, opened down to an element, with its toolbar buttons and popup.
#include "core/command.h"
#include "core/interaction.h"
#include "core/text/collation.h"
#include "termbase/edit/categories.h"
#include "termbase/edit/element_tree.h"
#include "termbase/edit/modify.h"
#include "ui/forms.h"
#include "ui/frm_tb_editor.h"
#include "ui/images.h"
#include "ui/list_views.h"

#include <QAction>
#include <QComboBox>
#include <QEvent>
#include <QGroupBox>
#include <QHash>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QToolBar>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include <algorithm>
#include <functional>
#include <map>
#include <numeric>
#include <vector>

namespace lx::ui {

namespace {

const QString BodyText = QStringLiteral("body");

// What the nodes of one kind and category share, image included (drawing an image costs far
// more than a node). A branch of a hundred thousand entries holds one of these, not a copy in
// each node; they live as long as the program.
struct NodeClass {
    QString Kind;
    QString Category;
    QIcon Icon;
};

const NodeClass *ClassOf(const QString &kind, const QString &category)
{
    static std::map<std::pair<QString, QString>, NodeClass> classes;
    auto found = classes.find({kind, category});
    if (found == classes.end())
        found = classes.emplace(std::pair{kind, category}, NodeClass{kind, category, Image(kind)})
                    .first;
    return &found->second;
}

// A node of an element: its number, its class and its text. A branch may hold a hundred
// thousand of them, so the item keeps its text itself (shared with the text read) and nothing
// more than these.
class ElementItem : public QTreeWidgetItem {
public:
    static constexpr int Type = QTreeWidgetItem::UserType + 1;

    ElementItem(qint32 elemId, const NodeClass *of, const QString &text)
        : QTreeWidgetItem(Type), ElemID(elemId), Class(of), m_text(text)
    {}

    QVariant data(int column, int role) const override
    {
        if (column == 0 && role == Qt::DecorationRole)
            return Class->Icon;
        if (column == 0 && (role == Qt::DisplayRole || role == Qt::EditRole))
            return m_text;
        return QTreeWidgetItem::data(column, role);
    }

    // An edit in the tree arrives as EditRole: the window decides whether the label changes.
    void setData(int column, int role, const QVariant &value) override
    {
        if (column != 0 || (role != Qt::DisplayRole && role != Qt::EditRole)) {
            QTreeWidgetItem::setData(column, role, value);
            return;
        }
        const QString text = value.toString();
        if (role == Qt::EditRole) {
            if (auto *editor =
                    treeWidget() ? qobject_cast<frmTBEDitor *>(treeWidget()->window()) : nullptr)
                RunCommand([&] { editor->Tree1_AfterLabelEdit(this, text); });
            return;
        }
        if (text == m_text)
            return;
        m_text = text;
        emitDataChanged();
    }

    const qint32 ElemID;
    const NodeClass *const Class;
    bool SortsChildren = false; // "body": its entries stand in the order of their concepts

private:
    QString m_text;
};

// The placeholder child that stands for a branch not read yet; its text is the marker.
class PlaceholderItem : public QTreeWidgetItem {
public:
    static constexpr int Type = QTreeWidgetItem::UserType + 2;

    PlaceholderItem() : QTreeWidgetItem(Type) {}

    QVariant data(int column, int role) const override
    {
        if (column == 0 && role == Qt::DisplayRole)
            return PlaceholderText;
        return QTreeWidgetItem::data(column, role);
    }
};

const ElementItem *AsElement(const QTreeWidgetItem *node)
{
    return node && node->type() == ElementItem::Type ? static_cast<const ElementItem *>(node)
                                                     : nullptr;
}

void AddPlaceholder(QTreeWidgetItem *node)
{
    node->addChild(new PlaceholderItem);
}

bool IsPlaceholder(const QTreeWidgetItem *node)
{
    return node && node->type() == PlaceholderItem::Type;
}

QTreeWidgetItem *ChildWithKey(QTreeWidgetItem *node, const QString &key)
{
    for (int i = 0; i < node->childCount(); ++i) {
        if (frmTBEDitor::NodeKey(node->child(i)) == key)
            return node->child(i);
    }
    return nullptr;
}

// Collapsing drops the branch and expanding reads it again.
void Reload(QTreeWidgetItem *node)
{
    node->setExpanded(false);
    node->setExpanded(true);
}

void Show(QTreeWidget *tree, QTreeWidgetItem *node)
{
    tree->setCurrentItem(node);
    tree->scrollToItem(node);
}

// Hands the release of a mouse button on the tree to the window.
class MouseUpWatch : public QObject {
public:
    MouseUpWatch(QObject *parent, std::function<void(Qt::MouseButton)> handler)
        : QObject(parent), m_handler(std::move(handler))
    {}

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::MouseButtonRelease) {
            const Qt::MouseButton button = static_cast<QMouseEvent *>(event)->button();
            RunCommand([&] { m_handler(button); });
        }
        return QObject::eventFilter(watched, event);
    }

private:
    std::function<void(Qt::MouseButton)> m_handler;
};

} // namespace

// Nodes of other trees (the category pane) carry their key as data.
QString frmTBEDitor::NodeKey(const QTreeWidgetItem *node)
{
    if (const ElementItem *element = AsElement(node))
        return ElementKey(element->ElemID);
    return node ? node->data(0, Qt::UserRole).toString() : QString();
}

bool frmTBEDitor::IsPlaceholderNode(const QTreeWidgetItem *node)
{
    return IsPlaceholder(node);
}

QString frmTBEDitor::NodeKind(const QTreeWidgetItem *node)
{
    const ElementItem *element = AsElement(node);
    return element ? element->Class->Kind : QString();
}

QString frmTBEDitor::NodeCategory(const QTreeWidgetItem *node)
{
    const ElementItem *element = AsElement(node);
    return element ? element->Class->Category : QString();
}

void frmTBEDitor::buildElementTree()
{
    Tree1->setUniformRowHeights(true);
    Tree1->setContextMenuPolicy(Qt::PreventContextMenu); // the popup comes on the release
    Tree1->viewport()->installEventFilter(new KeepCurrentOnRightPress(Tree1));
    Tree1->viewport()->installEventFilter(
        new MouseUpWatch(Tree1, [this](Qt::MouseButton button) { Tree1_MouseUp(button); }));
    connect(Tree1, &QTreeWidget::itemExpanded, this,
            [this](QTreeWidgetItem *node) { RunCommand([=, this] { Tree1_Expand(node); }); });
    connect(Tree1, &QTreeWidget::itemCollapsed, this,
            [this](QTreeWidgetItem *node) { RunCommand([=, this] { Tree1_Collapse(node); }); });
    connect(Tree1, &QTreeWidget::itemClicked, this,
            [this](QTreeWidgetItem *node) { RunCommand([=, this] { Tree1_NodeClick(node); }); });

    mnuElem = new QMenu(this);
    mnuElem->setObjectName(QStringLiteral("mnuElem"));
    mnuElemDelete = mnuElem->addAction(QStringLiteral("&Delete"));
    mnuElemDelete->setObjectName(QStringLiteral("mnuElemDelete"));
    mnuElemModify = mnuElem->addAction(QStringLiteral("&Modify"));
    mnuElemModify->setObjectName(QStringLiteral("mnuElemModify"));
    mnuElemSep1 = mnuElem->addSeparator();
    mnuElemSep1->setObjectName(QStringLiteral("mnuElemSep1"));
    mnuElemGoTo = mnuElem->addAction(QStringLiteral("Go to x-ref'ed element"));
    mnuElemGoTo->setObjectName(QStringLiteral("mnuElemGoTo"));
    connect(mnuElemDelete, &QAction::triggered, this,
            Command(this, &frmTBEDitor::mnuElemDelete_Click));
    connect(mnuElemModify, &QAction::triggered, this,
            Command(this, &frmTBEDitor::mnuElemModify_Click));
    // Terms and backmatter records are renamed in place, by F2 or a click on the selected node.
    Tree1->setEditTriggers(QAbstractItemView::EditKeyPressed | QAbstractItemView::SelectedClicked);
    connect(mnuElemGoTo, &QAction::triggered, this, Command(this, &frmTBEDitor::mnuElemGoTo_Click));
}

void frmTBEDitor::LoadRootNode()
{
    Tree1->clear();
    auto *root = new ElementItem(1, ClassOf(RootKind, QStringLiteral("0")),
                                 CategoryName(QStringLiteral("0")));
    AddPlaceholder(root);
    Tree1->addTopLevelItem(root);
}

void frmTBEDitor::ExpandElementNode(QTreeWidgetItem *node)
{
    const QList<ElementNode> children =
        ReadElementChildren(KeyElement(NodeKey(node)), NodeKind(node) == RootKind);
    AddElementItems(node, children, 0, children.size());
}

// The nodes of children[from, to) under `node`; "body" puts its entries in the order of their
// concepts, worked out on indices so that the nodes themselves stay where they are.
void frmTBEDitor::AddElementItems(QTreeWidgetItem *node, const QList<ElementNode> &children,
                                  qsizetype from, qsizetype to)
{
    std::vector<qsizetype> order(size_t(to - from));
    std::iota(order.begin(), order.end(), from);
    const ElementItem *parent = AsElement(node);
    if (parent && parent->SortsChildren) {
        std::stable_sort(order.begin(), order.end(), [&](qsizetype a, qsizetype b) {
            return text::CompareText(children[a].Text, children[b].Text) < 0;
        });
    }
    QList<QTreeWidgetItem *> items;
    items.reserve(qsizetype(order.size()));
    const NodeClass *of = nullptr;
    const QString parentKind = NodeKind(node);
    for (const qsizetype i : order) {
        const ElementNode &child = children[i];
        if (!of || of->Kind != child.Kind || of->Category != child.CategoryID)
            of = ClassOf(child.Kind, child.CategoryID);
        auto *item = new ElementItem(child.ElemID, of, child.Text);
        item->SortsChildren = child.Text == BodyText;
        if (LabelEditAllowed(child.Kind, parentKind))
            item->setFlags(item->flags() | Qt::ItemIsEditable);
        if (child.HasChildren)
            AddPlaceholder(item);
        items.append(item);
    }
    node->addChildren(items);
}

// Reads, under `top`, the branches of the closed nodes of `nodes`, all of which stand `depth`
// levels below it, with one read of the level below instead of one per node. The nodes stay
// closed: rows go and come far faster while the tree has few open nodes to keep track of.
void frmTBEDitor::ReadBranchesAtOnce(QTreeWidgetItem *top, const QList<QTreeWidgetItem *> &nodes,
                                     int depth)
{
    QHash<qint32, QTreeWidgetItem *> closed;
    for (QTreeWidgetItem *node : nodes) {
        if (node->childCount() == 1 && IsPlaceholder(node->child(0)))
            closed.insert(AsElement(node)->ElemID, node);
    }
    if (!closed.isEmpty()) {
        const QList<ElementNode> level = ReadElementLevel(KeyElement(NodeKey(top)), depth + 1);
        for (qsizetype from = 0; from < level.size();) {
            qsizetype to = from + 1;
            while (to < level.size() && level[to].Parent == level[from].Parent)
                ++to;
            if (QTreeWidgetItem *node = closed.value(level[from].Parent)) {
                delete node->takeChild(0);
                AddElementItems(node, level, from, to);
            }
            from = to;
        }
    }
}

void frmTBEDitor::Tree1_Expand(QTreeWidgetItem *node)
{
    if (!IsPlaceholder(node->child(0)))
        return; // already read
    delete node->takeChild(0);
    ExpandElementNode(node);
}

// A branch is always read afresh: its nodes go, a placeholder stands in for them.
void frmTBEDitor::Tree1_Collapse(QTreeWidgetItem *node)
{
    if (node->childCount() == 0)
        return;
    qDeleteAll(node->takeChildren());
    AddPlaceholder(node);
    // Only the root and its placeholder left: the root is handled as clicked.
    QTreeWidgetItem *root = Tree1->topLevelItem(0);
    if (Tree1->topLevelItemCount() == 1 && root->childCount() == 1 && !root->isExpanded())
        Tree1_NodeClick(root);
}

// A click on an element: a cross-reference waiting for its target takes it; otherwise the
// element becomes the current one, and the category pane's marks follow its category.
void frmTBEDitor::Tree1_NodeClick(QTreeWidgetItem *node)
{
    if (!node || IsPlaceholder(node))
        return;
    const qint32 element = AsElement(node)->ElemID;
    const QString category = ElementCategory(element);
    if (CrossRefPicking && !PickCrossReferenceTarget(element, category))
        return;
    if (element == CurrentElemID)
        return;
    HideEditFrame();
    if (category == CurrentCategory) {
        CurrentElemID = element;
    } else {
        CurrentElemID = element;
        CurrentCategory = category;
        if (!BrowseMode())
            ElementClicked();
    }
    QTreeWidgetItem *selected = Tree1->currentItem() ? Tree1->currentItem() : node;
    const QString kind = NodeKind(selected);
    static const QStringList editable{QStringLiteral("attribute"), QStringLiteral("note"),
                                      QStringLiteral("url")};
    static const QStringList files{
        QStringLiteral("figure"),  QStringLiteral("audio"),         QStringLiteral("video"),
        QStringLiteral("table"),   QStringLiteral("binary"),        QStringLiteral("classifsystem"),
        QStringLiteral("context"), QStringLiteral("conceptsystem"), QStringLiteral("subset")};
    if (editable.contains(kind)) {
        OpenElementForEdit();
    } else if (kind == QLatin1String("concept")) {
        ShowEntryPage(selected);
        txtElem->setText(selected->text(0).toUpper());
        fraEdit->hide();
    } else if (files.contains(kind)) {
        ShowBackmatterFile(selected);
    } else {
        txtElem->setText(selected->text(0).toUpper());
        fraEdit->hide();
    }
}

// The category changed: the pane's marks and the toolbar follow it.
void frmTBEDitor::ElementClicked()
{
    MarkValidCategories();
    SetElementToolbar();
}

QString frmTBEDitor::SelectedElementKind() const
{
    return NodeKind(Tree1->currentItem());
}

// The tree after an assert shows the branch that took the new element; a term in a new
// language opens its section.
void frmTBEDitor::ShowAssertedElement(const AssertResult &result)
{
    const QString language = lstLang->currentText();
    ReturnToElement();
    if (result.Went != AssertResult::Branch::Term)
        return;
    if (QTreeWidgetItem *selected = Tree1->currentItem()) {
        for (int i = 0; i < selected->childCount(); ++i) {
            QTreeWidgetItem *child = selected->child(i);
            if (child->text(0) == language || (result.NewSection && !child->isExpanded() &&
                                               NodeKind(child).startsWith(QLatin1String("ls"))))
                child->setExpanded(true);
        }
    }
}

void frmTBEDitor::ReturnToElement()
{
    QTreeWidgetItem *node = Tree1->currentItem();
    const QTreeWidgetItem *category = Tree2->currentItem();
    if (category && CategoryGI(NodeKey(category).mid(1)) == QLatin1String("ptr")) {
        const QString sourceKey = ElementKey(CrossRefSource);
        for (QTreeWidgetItemIterator it(Tree1); *it; ++it) {
            if (NodeKey(*it) == sourceKey) {
                node = *it;
                break;
            }
        }
    }
    if (!node)
        return;
    if (node->childCount() > 0) {
        Reload(node);
        Show(Tree1, node);
        Tree1->setFocus();
        return;
    }
    const QString key = NodeKey(node);
    node->setExpanded(false);
    QTreeWidgetItem *parent = node->parent();
    if (!parent)
        return;
    Reload(parent); // `node` is gone with the old branch
    if (QTreeWidgetItem *found = ChildWithKey(parent, key)) {
        found->setExpanded(true);
        Show(Tree1, found);
    }
    Tree1->setFocus();
}

void frmTBEDitor::GoToElement(qint32 elemId)
{
    const QList<qint32> path = ElementPath(elemId);
    QTreeWidgetItem *current = Tree1->topLevelItem(0);
    if (!current)
        return;
    for (auto at = path.crbegin(); at != path.crend(); ++at) {
        const QString key = ElementKey(*at);
        if (NodeKey(current) == key)
            break;
        if (!current->isExpanded())
            current->setExpanded(true);
        QTreeWidgetItem *next = ChildWithKey(current, key);
        if (!next)
            break;
        current = next;
    }
    const QString wanted = ElementKey(elemId);
    if (NodeKey(current) == wanted) {
        current->setExpanded(false);
        Show(Tree1, current);
    } else {
        Reload(current);
        if (QTreeWidgetItem *found = ChildWithKey(current, wanted))
            Show(Tree1, found);
    }
    Tree1->show();
    Tree1->setFocus();
}

void frmTBEDitor::SetElementToolbar()
{
    QAction *entry = ToolBar1->findChild<QAction *>(QStringLiteral("concept"));
    QAction *term = ToolBar1->findChild<QAction *>(QStringLiteral("term"));
    QAction *remove = ToolBar1->findChild<QAction *>(QStringLiteral("delete"));
    for (QAction *button : {entry, term, remove})
        button->setEnabled(false);
    const QTreeWidgetItem *node = Tree1->currentItem();
    const QString kind = NodeKind(node);
    if (kind == QLatin1String("concept")) {
        term->setEnabled(true);
        remove->setEnabled(true);
    } else if (kind == QLatin1String("term")) {
        remove->setEnabled(true);
    } else if (NodeKey(node) == QLatin1String("n 3")) {
        entry->setEnabled(true);
    }
}

void frmTBEDitor::Tree1_MouseUp(Qt::MouseButton button)
{
    const QTreeWidgetItem *node = Tree1->currentItem();
    if (button != Qt::RightButton || !node || IsPlaceholder(node))
        return;
    const QString kind = NodeKind(node);
    if (kind == RootKind || kind == QLatin1String("folder"))
        return;
    static const QStringList modifiable{
        QStringLiteral("concept"), QStringLiteral("term"),        QStringLiteral("url"),
        QStringLiteral("pub"),     QStringLiteral("responsible"), QStringLiteral("subjectfield")};
    const bool modify = modifiable.contains(kind);
    mnuElemModify->setVisible(modify);
    mnuElemSep1->setVisible(modify);
    mnuElemGoTo->setVisible(kind == QLatin1String("xref"));
    mnuElem->popup(QCursor::pos());
}

void frmTBEDitor::mnuElemGoTo_Click()
{
    const qint32 target = CrossRefTarget(KeyElement(NodeKey(Tree1->currentItem())));
    if (target == 0) {
        UI().MsgBox(QStringLiteral("Data integrity error. Error Code TB001."), msg::OKOnly,
                    QStringLiteral("Error"));
        return;
    }
    GoToElement(target);
}

} // namespace lx::ui
