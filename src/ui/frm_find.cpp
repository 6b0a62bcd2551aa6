#include "ui/frm_find.h"

#include "core/command.h"
#include "core/interaction.h"
#include "core/text/like.h"
#include "termbase/edit/assert.h"
#include "ui/forms.h"
#include "ui/frm_tb_editor.h"
#include "ui/named.h"
#include "ui/window_place.h"

#include <QAbstractItemModel>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSet>
#include <QSignalBlocker>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>
#include <vector>

namespace lx::ui {

namespace {

constexpr int HistoryLength = 20;

bool Matches(const QTreeWidgetItem *node, const QString &pattern)
{
    return node && text::Like(node->text(0), pattern);
}

// The nodes of the tree in their order, from a given node on. The way down is kept as a stack
// of (parent, row), so that each step costs the same however many siblings a node has.
class PreOrder {
public:
    explicit PreOrder(QTreeWidgetItem *start) : m_current(start)
    {
        for (QTreeWidgetItem *at = start; at && at->parent(); at = at->parent())
            m_way.insert(m_way.begin(), {at->parent(), at->parent()->indexOfChild(at)});
    }
    QTreeWidgetItem *current() const { return m_current; }
    void next()
    {
        if (m_current && m_current->childCount() > 0) {
            m_way.emplace_back(m_current, 0);
            m_current = m_current->child(0);
            return;
        }
        while (!m_way.empty()) {
            auto &[parent, row] = m_way.back();
            if (++row < parent->childCount()) {
                m_current = parent->child(row);
                return;
            }
            m_way.pop_back();
        }
        m_current = nullptr; // the one top node is done
    }

private:
    QTreeWidgetItem *m_current;
    std::vector<std::pair<QTreeWidgetItem *, int>> m_way;
};

QTreeWidgetItem *LastSibling(QTreeWidgetItem *node)
{
    QTreeWidgetItem *parent = node->parent();
    return parent ? parent->child(parent->childCount() - 1) : node;
}

} // namespace

frmFind::frmFind(frmTBEDitor &editor) : QDialog(&editor), m_editor(editor)
{
    setObjectName(QStringLiteral("frmFind"));
    setWindowTitle(QStringLiteral("Find"));
    cbxFind = Named(new QComboBox(this), QStringLiteral("cbxFind"));
    cbxFind->setEditable(true);
    cbxFind->setInsertPolicy(QComboBox::NoInsert);
    cbxFind->setMinimumWidth(240);
    chkFullWord =
        Named(new QCheckBox(QStringLiteral("&Full word"), this), QStringLiteral("chkFullWord"));
    Frame1 = Named(new QGroupBox(QStringLiteral("Element type"), this), QStringLiteral("Frame1"));
    optFindT =
        Named(new QRadioButton(QStringLiteral("&Terms"), Frame1), QStringLiteral("optFindT"));
    optFindC =
        Named(new QRadioButton(QStringLiteral("Conce&pts"), Frame1), QStringLiteral("optFindC"));
    optFindC->setChecked(true);
    cmdFind = Named(new QPushButton(QStringLiteral("Find &Next"), this), QStringLiteral("cmdFind"));
    cmdCancel =
        Named(new QPushButton(QStringLiteral("&Cancel"), this), QStringLiteral("cmdCancel"));
    cmdFind->setDefault(true);
    cmdFind->setEnabled(false);

    auto *types = new QHBoxLayout(Frame1);
    types->addWidget(optFindT);
    types->addWidget(optFindC);
    auto *left = new QVBoxLayout;
    left->addWidget(cbxFind);
    left->addWidget(chkFullWord);
    left->addWidget(Frame1);
    auto *buttons = new QVBoxLayout;
    buttons->addWidget(cmdFind);
    buttons->addWidget(cmdCancel);
    buttons->addStretch();
    auto *layout = new QHBoxLayout(this);
    layout->addLayout(left, 1);
    layout->addLayout(buttons);
    TabOrder({cbxFind, chkFullWord, optFindT, optFindC, cmdFind, cmdCancel});
    RestoreSize(*this, windowTitle());

    cbxFind->lineEdit()->installEventFilter(this);
    connect(cbxFind, &QComboBox::editTextChanged, this,
            [this](const QString &text) { cmdFind->setEnabled(!text.isEmpty()); });
    connect(cbxFind, &QComboBox::activated, this, [this] { cmdFind->setEnabled(true); });
    connect(cmdFind, &QPushButton::clicked, this, Command(this, &frmFind::cmdFind_Click));
    connect(cmdCancel, &QPushButton::clicked, this, Command(this, &frmFind::cmdCancel_Click));
    for (QRadioButton *option : {optFindT, optFindC})
        connect(option, &QRadioButton::clicked, this, Command(this, &frmFind::ElementTypeChanged));
}

QString frmFind::Pattern() const
{
    const QString text = cbxFind->currentText();
    return chkFullWord->isChecked() ? text : text + QLatin1Char('*');
}

std::optional<QChar> frmFind::ConceptKey(QChar key)
{
    if (key.isLower())
        return key.toUpper();
    if ((key >= QLatin1Char('A') && key <= QLatin1Char('Z')) || key.isDigit() ||
        key == QLatin1Char('-'))
        return key;
    if (key == QLatin1Char(' ') || key == QLatin1Char('_'))
        return QLatin1Char('-');
    return std::nullopt;
}

// With concepts to find, what is typed takes the form of a concept name.
bool frmFind::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != cbxFind->lineEdit() || event->type() != QEvent::KeyPress ||
        !optFindC->isChecked())
        return QDialog::eventFilter(watched, event);
    const auto *key = static_cast<QKeyEvent *>(event);
    switch (key->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        RunCommand([this] { cmdFind_Click(); });
        return true;
    case Qt::Key_Backspace:
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
    case Qt::Key_Escape:
        return false;
    default:
        break;
    }
    const QString text = key->text();
    if (text.size() != 1 || (key->modifiers() & (Qt::ControlModifier | Qt::AltModifier)))
        return true;
    if (const std::optional<QChar> typed = ConceptKey(text.at(0)))
        cbxFind->lineEdit()->insert(QString(*typed));
    return true;
}

void frmFind::hideEvent(QHideEvent *event)
{
    SaveSize(*this, windowTitle());
    QDialog::hideEvent(event);
}

void frmFind::ElementTypeChanged()
{
    cbxFind->setEditText(QString());
    if (QTreeWidgetItem *first = m_editor.Tree1->topLevelItem(0))
        m_editor.Tree1->setCurrentItem(first);
    cbxFind->setFocus();
}

void frmFind::cmdCancel_Click()
{
    cbxFind->setEditText(QString());
    hide();
}

// The newest search first, twenty at most; the same text twice is kept once.
void frmFind::remember(const QString &text)
{
    if (text == LastSearch)
        return;
    if (cbxFind->count() == HistoryLength)
        cbxFind->removeItem(HistoryLength - 1);
    cbxFind->insertItem(0, text);
    cbxFind->setEditText(text);
    LastSearch = text;
}

void frmFind::cmdFind_Click()
{
    const QString text = cbxFind->currentText();
    if (text.isEmpty())
        return;
    remember(text);
    if (optFindC->isChecked())
        findConcept(Pattern(), 0);
    else
        findTerm(Pattern());
}

void frmFind::select(QTreeWidgetItem *node)
{
    m_editor.Tree1->setCurrentItem(node);
    m_editor.Tree1->scrollToItem(node);
}

// From the selected concept on along its siblings, wrapping round; else from the first entry.
void frmFind::findConcept(const QString &pattern, int depth)
{
    QTreeWidget *tree = m_editor.Tree1;
    QTreeWidgetItem *node = tree->currentItem();
    if (Matches(node, pattern) && node->parent() && LastSibling(node) != node) {
        QTreeWidgetItem *parent = node->parent();
        const int last = parent->childCount() - 1;
        for (int i = parent->indexOfChild(node) + 1; i <= last; ++i) {
            QTreeWidgetItem *sibling = parent->child(i);
            if (Matches(sibling, pattern)) {
                sibling->setExpanded(true);
                select(sibling);
                return;
            }
        }
        // Round to the first sibling: it is the next match when it matches itself.
        if (depth < 1) {
            QTreeWidgetItem *first = parent->child(0);
            select(first);
            if (Matches(first, pattern)) {
                first->setExpanded(true);
                return;
            }
            findConcept(pattern, depth + 1);
            return;
        }
    }
    tree->hide();
    QTreeWidgetItem *start = nullptr;
    if (node && frmTBEDitor::NodeKind(node) == QLatin1String("concept"))
        start = node->parent();
    else
        start = openBody();
    QTreeWidgetItem *found = nullptr;
    for (int i = 0; start && i < start->childCount() && !found; ++i) {
        if (Matches(start->child(i), pattern))
            found = start->child(i);
    }
    if (found) {
        found->setExpanded(true);
        select(found);
    } else {
        tree->show();
        if (start)
            select(start);
        UI().MsgBox(QStringLiteral("String not found"), msg::Exclamation);
    }
    tree->show();
}

// The first node read afresh, and its "body*" child opened.
QTreeWidgetItem *frmFind::openBody()
{
    QTreeWidgetItem *root = m_editor.Tree1->topLevelItem(0);
    if (!root)
        return nullptr;
    root->setExpanded(false);
    root->setExpanded(true);
    for (int i = 0; i < root->childCount(); ++i) {
        QTreeWidgetItem *child = root->child(i);
        if (text::Like(child->text(0), u"body*")) {
            if (!child->isExpanded())
                child->setExpanded(true);
            return child;
        }
    }
    return nullptr;
}

// Every entry is opened with its language sections but the last, so that the terms are nodes;
// then the walk looks for the next term.
void frmFind::findTerm(const QString &pattern)
{
    QTreeWidget *tree = m_editor.Tree1;
    if (Matches(tree->currentItem(), pattern)) {
        FindNextTerm();
        return;
    }
    QTreeWidgetItem *body = nullptr;
    for (QTreeWidgetItemIterator it(tree); *it && !body; ++it) {
        if ((*it)->text(0) == QLatin1String("body"))
            body = *it;
    }
    tree->hide();
    // A hundred thousand entries: rows are reached through the model by their number, since
    // asking the tree for an entry's row searches its siblings.
    QAbstractItemModel *model = tree->model();
    if (body) {
        // Closing many open entries one by one costs far more than reading the level again,
        // which leaves them all closed as well.
        const QModelIndex at = tree->indexFromItem(body);
        bool open = false;
        for (int row = 0; row < body->childCount() && !open; ++row)
            open = tree->isExpanded(model->index(row, 0, at));
        if (open) {
            body->setExpanded(false);
            body->setExpanded(true);
        }
    } else {
        body = openBody();
    }
    if (!body || body->childCount() == 0) {
        FindNextTerm();
        tree->show();
        return;
    }
    QList<QTreeWidgetItem *> entries;
    for (int i = 0; i < body->childCount(); ++i) {
        if (frmTBEDitor::NodeKind(body->child(i)) == QLatin1String("concept"))
            entries << body->child(i);
    }
    // Every branch is read while the entries stand outside the tree, where a node's rows come
    // and go without the tree's bookkeeping; opening a read node reads nothing more.
    const QList<QTreeWidgetItem *> detached = body->takeChildren();
    m_editor.ReadBranchesAtOnce(body, entries, 1);
    QList<QTreeWidgetItem *> sections;
    for (QTreeWidgetItem *entry : std::as_const(entries)) {
        const int count = entry->childCount();
        for (int i = 0; i < count && (i == 0 || i < count - 1); ++i)
            sections << entry->child(i);
    }
    m_editor.ReadBranchesAtOnce(body, sections, 2);
    body->addChildren(detached);
    const QModelIndex at = tree->indexFromItem(body);
    // The branches are read: the tree's word that a node opened would only be passed over.
    const QSignalBlocker quiet(tree);
    for (int row = 0; row < body->childCount(); ++row) {
        QTreeWidgetItem *entry = body->child(row);
        if (frmTBEDitor::NodeKind(entry) != QLatin1String("concept"))
            continue;
        const QModelIndex entryAt = model->index(row, 0, at);
        tree->expand(entryAt);
        const int count = entry->childCount();
        for (int i = 0; i < count && (i == 0 || i < count - 1); ++i)
            tree->expand(model->index(i, 0, entryAt));
    }
    FindNextTerm();
    tree->show();
}

// The next node, in the order of the tree, that stands under a section showing its language
// code and whose text is like the pattern.
void frmFind::FindNextTerm()
{
    QTreeWidget *tree = m_editor.Tree1;
    const QString pattern = Pattern();
    QSet<QString> languages;
    qsizetype longestCode = 0;
    for (const QString &code : ReadLanguageCodes()) {
        // Lower case never shortens a text, so a longer one can't match.
        const QString lower = code.toLower();
        languages.insert(lower);
        longestCode = std::max(longestCode, lower.size());
    }
    QTreeWidgetItem *start = tree->currentItem();
    QTreeWidgetItem *first = tree->topLevelItem(0);
    if (!start || start == first)
        start = first ? first->child(0) : nullptr;
    // The nodes after the start in the order of the tree; they come in runs of siblings, so a
    // parent's test is made once for its run.
    PreOrder walk(start ? start : first);
    if (walk.current() && Matches(walk.current(), pattern))
        walk.next();
    const QTreeWidgetItem *parent = nullptr;
    bool inSection = false;
    for (; walk.current(); walk.next()) {
        QTreeWidgetItem *node = walk.current();
        if (node->parent() != parent) {
            parent = node->parent();
            // Most parents are entries and terms with long texts: only a short one is looked up.
            const QString text = parent ? parent->text(0) : QString();
            inSection =
                !text.isEmpty() && text.size() <= longestCode && languages.contains(text.toLower());
        }
        if (inSection && Matches(node, pattern)) {
            tree->show();
            select(node);
            return;
        }
    }
    UI().MsgBox(QStringLiteral("Term not found."), msg::Information);
}

void ShowFind(frmTBEDitor &editor)
{
    frmFind *find = Forms().Find<frmFind>();
    if (!find)
        find = &Forms().Load<frmFind>(editor);
    if (!find->isVisible())
        PlaceOver(*find, &editor);
    find->show();
    find->raise();
    find->activateWindow();
    find->cbxFind->setFocus();
}

} // namespace lx::ui
