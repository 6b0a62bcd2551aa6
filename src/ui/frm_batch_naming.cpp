#include "ui/frm_batch_naming.h"

#include "core/command.h"
#include "core/interaction.h"
#include "core/process.h"
#include "core/store/errors.h"
#include "ontology/edit/batch_naming.h"
#include "ontology/edit/names.h"
#include "ontology/edit/subsets.h"
#include "ontology/store/lookups.h"
#include "ui/frm_onto_edit.h"
#include "ui/key_filter.h"
#include "ui/named.h"
#include "ui/window_place.h"

#include <QApplication>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QStatusBar>
#include <QStringListModel>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace lx::ui {

namespace {

QRadioButton *Option(QWidget *parent, const char *caption, const char *name)
{
    return Named(new QRadioButton(QString::fromLatin1(caption), parent), QString::fromLatin1(name));
}

QPushButton *Button(QWidget *parent, const char *caption, const char *name)
{
    return Named(new QPushButton(QString::fromLatin1(caption), parent), QString::fromLatin1(name));
}

// A frame of options side by side.
QGroupBox *OptionFrame(QWidget *parent, const QString &caption,
                       std::initializer_list<QWidget *> options)
{
    auto *frame = new QGroupBox(caption, parent);
    auto *layout = new QHBoxLayout(frame);
    for (QWidget *option : options) {
        option->setParent(frame);
        layout->addWidget(option);
    }
    return frame;
}

// Runs of neighbouring indexes become one range each, so that a whole list selects at once.
QItemSelection RangesOf(const QAbstractItemModel &model, const QList<int> &indexes)
{
    QItemSelection selection;
    for (qsizetype i = 0; i < indexes.size();) {
        qsizetype last = i;
        while (last + 1 < indexes.size() && indexes[last + 1] == indexes[last] + 1)
            ++last;
        selection.select(model.index(indexes[i], 0), model.index(indexes[last], 0));
        i = last + 1;
    }
    return selection;
}

} // namespace

frmBatchNaming::frmBatchNaming()
    : lstConcepts(Named(new QListView(this), QStringLiteral("lstConcepts"))),
      lvwLangs(Named(new QTreeWidget(this), QStringLiteral("lvwLangs"))),
      optAdd(Option(this, "Add names", "optAdd")),
      optRemove(Option(this, "Remove names", "optRemove")),
      optAsIs(Option(this, "Same as Identifier", "optAsIs")),
      optConvert(Option(this, "Remove restrictions", "optConvert")),
      optAsEntered(Option(this, "As entered", "optAsEntered")),
      optAlpha(Option(this, "Alphabetically", "optAlpha")), optAll(Option(this, "All", "optAll")),
      optSelect(Option(this, "Select manually", "optSelect")),
      optSubset(Option(this, "Subset", "optSubset")),
      optHier(Option(this, "Subhierarchy", "optHier")),
      optRegExp(Option(this, "Expression", "optRegExp")),
      cbxSubset(Named(new QComboBox(this), QStringLiteral("cbxSubset"))),
      txtRegExp(Named(new QLineEdit(this), QStringLiteral("txtRegExp"))),
      cmdSelect(Button(this, "Select", "cmdSelect")),
      cmdClear(Button(this, "Clear Selection", "cmdClear")),
      cmdRefresh(Button(this, "Refresh List", "cmdRefresh")), cmdOK(Button(this, "OK", "cmdOK")),
      cmdCancel(Button(this, "&Close", "cmdCancel")),
      StatusBar1(Named(new QStatusBar(this), QStringLiteral("StatusBar1"))),
      StatusPanel2(new QLabel(this)),
      ProgressBar1(Named(new QProgressBar(this), QStringLiteral("ProgressBar1"))),
      lblStart(Named(new SignalLabel(this), QStringLiteral("lblStart"))),
      m_concepts(new QStringListModel(this))
{
    setObjectName(QStringLiteral("frmBatchNaming"));
    setWindowTitle(QStringLiteral("Batch Naming"));
    lstConcepts->setModel(m_concepts);
    lstConcepts->setSelectionMode(QAbstractItemView::ExtendedSelection);
    lstConcepts->setEditTriggers(QAbstractItemView::NoEditTriggers);
    lstConcepts->setUniformItemSizes(true); // the list may hold a whole ontology
    lstConcepts->setToolTip(QStringLiteral("Use CTRL and SHIFT for multi-selection"));
    lvwLangs->setHeaderLabels({QStringLiteral("Language"), QStringLiteral("ISO")});
    lvwLangs->setRootIsDecorated(false);
    txtRegExp->installEventFilter(this);

    auto *sort = OptionFrame(this, QStringLiteral("Sort"), {optAsEntered, optAlpha});
    auto *left = new QVBoxLayout;
    left->addWidget(lstConcepts, 1);
    left->addWidget(sort);
    auto *right = new QVBoxLayout;
    right->addWidget(buildSelectFrame());
    right->addWidget(buildRunFrames(), 1);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    right->addLayout(buttons);
    auto *middle = new QHBoxLayout;
    middle->addLayout(left, 1);
    middle->addLayout(right, 1);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(middle, 1);
    layout->addWidget(StatusBar1);
    // The bar lies over the first panel while a run goes on.
    StatusBar1->addWidget(ProgressBar1, 1);
    StatusBar1->addWidget(StatusPanel2, 1);
    ProgressBar1->hide();

    optAlpha->setChecked(true);
    m_sort = QStringLiteral("Alpha");
    optSelect->setChecked(true);
    selectMode(optSelect);
    optAdd->setChecked(true);
    optConvert->setChecked(true);
    cmdOK->setDefault(true);
    TabOrder({lstConcepts, optAsEntered, optAlpha,   optAll,    optSelect, optSubset,  cbxSubset,
              optHier,     optRegExp,    txtRegExp,  cmdSelect, cmdClear,  cmdRefresh, optAdd,
              optRemove,   optAsIs,      optConvert, lvwLangs,  cmdOK,     cmdCancel});
    resize(700, 560);
    RestoreSize(*this, windowTitle());

    fillLanguages();
    connectHandlers();
}

QWidget *frmBatchNaming::buildSelectFrame()
{
    auto *frame = Named(new QGroupBox(QStringLiteral("Select"), this), QStringLiteral("fraSelect"));
    auto *grid = new QGridLayout(frame);
    for (QWidget *control :
         std::initializer_list<QWidget *>{optAll, optSelect, optSubset, cbxSubset, optHier,
                                          optRegExp, txtRegExp, cmdSelect, cmdClear, cmdRefresh})
        control->setParent(frame);
    grid->addWidget(optAll, 0, 0);
    grid->addWidget(optSelect, 1, 0);
    grid->addWidget(optSubset, 2, 0);
    grid->addWidget(cbxSubset, 2, 1);
    grid->addWidget(optHier, 3, 0);
    grid->addWidget(optRegExp, 4, 0);
    grid->addWidget(txtRegExp, 4, 1);
    auto *buttons = new QHBoxLayout;
    for (QPushButton *button : {cmdSelect, cmdClear, cmdRefresh})
        buttons->addWidget(button);
    grid->addLayout(buttons, 5, 0, 1, 2);
    grid->setColumnStretch(1, 1);
    return frame;
}

QWidget *frmBatchNaming::buildRunFrames()
{
    auto *box = new QWidget(this);
    auto *layout = new QVBoxLayout(box);
    layout->setContentsMargins(0, 0, 0, 0);
    auto *action = OptionFrame(box, QStringLiteral("Add or remove names in the selected language"),
                               {optAdd, optRemove});
    auto *naming = OptionFrame(box, QStringLiteral("Names"), {optAsIs, optConvert});
    lvwLangs->setParent(box);
    layout->addWidget(action);
    layout->addWidget(naming);
    layout->addWidget(lvwLangs, 1);
    lvwLangs->setMinimumHeight(80);
    return box;
}

void frmBatchNaming::connectHandlers()
{
    for (QRadioButton *option : {optAll, optSelect, optSubset, optHier, optRegExp})
        connect(option, &QRadioButton::toggled, this, [this, option](bool on) {
            if (on)
                RunCommand([this, option] { selectMode(option); });
        });
    connect(optAlpha, &QRadioButton::toggled, this, [this](bool on) {
        if (on)
            RunCommand([this] { optAlpha_Click(); });
    });
    connect(optAsEntered, &QRadioButton::toggled, this, [this](bool on) {
        if (on)
            RunCommand([this] { optAsEntered_Click(); });
    });
    connect(lstConcepts, &QListView::clicked, this,
            Command(this, &frmBatchNaming::lstConcepts_Click));
    connect(lstConcepts->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        if (m_ready)
            showCount();
    });
    connect(cmdSelect, &QPushButton::clicked, this,
            Command(this, &frmBatchNaming::cmdSelect_Click));
    connect(cmdClear, &QPushButton::clicked, this, Command(this, &frmBatchNaming::cmdClear_Click));
    connect(cmdRefresh, &QPushButton::clicked, this,
            Command(this, &frmBatchNaming::cmdRefresh_Click));
    connect(cmdOK, &QPushButton::clicked, this, Command(this, &frmBatchNaming::cmdOK_Click));
    connect(cmdCancel, &QPushButton::clicked, this, &frmBatchNaming::cmdCancel_Click);
    connect(lblStart, &SignalLabel::captionChanged, this,
            Command(this, &frmBatchNaming::lblStart_Change));
}

void frmBatchNaming::fillLanguages()
{
    for (const LanguageItem &language : ReadLanguages())
        new QTreeWidgetItem(lvwLangs, {language.Language, language.LangId});
    if (lvwLangs->topLevelItemCount() > 0)
        lvwLangs->setCurrentItem(lvwLangs->topLevelItem(0));
}

QStringList frmBatchNaming::ListedConcepts() const
{
    return m_concepts->stringList();
}

QList<int> frmBatchNaming::SelectedIndexes() const
{
    QList<int> rows;
    for (const QModelIndex &index : lstConcepts->selectionModel()->selectedIndexes())
        rows.append(index.row());
    std::sort(rows.begin(), rows.end());
    return rows;
}

void frmBatchNaming::SelectIndexes(const QList<int> &indexes)
{
    lstConcepts->selectionModel()->select(RangesOf(*m_concepts, indexes),
                                          QItemSelectionModel::Select);
}

void frmBatchNaming::showCount()
{
    StatusPanel2->setText(QString::number(lstConcepts->selectionModel()->selectedIndexes().size()) +
                          QStringLiteral(" Concepts selected"));
}

void frmBatchNaming::fillList(bool alphabetical)
{
    m_concepts->setStringList(ReadBatchConcepts(alphabetical));
    m_sort = alphabetical ? QStringLiteral("Alpha") : QStringLiteral("AsEntered");
}

// The job word reads the list in identifier order and adds the subsets to the combo, which
// keeps what it held: a refresh lists them again.
void frmBatchNaming::lblStart_Change()
{
    if (lblStart->caption().isEmpty())
        return;
    m_ready = false;
    fillList(true);
    if (m_concepts->rowCount() == 0)
        UI().MsgBox(QStringLiteral("The list of concepts is empty!"));
    cbxSubset->addItems(ReadSubsetNames());
    StatusPanel2->setText(QStringLiteral("0 Concepts selected"));
    m_ready = true;
}

// Each mode starts from an empty selection and enables what it needs.
void frmBatchNaming::selectMode(QRadioButton *option)
{
    cmdClear_Click();
    txtRegExp->setEnabled(option == optRegExp);
    cbxSubset->setEnabled(option == optSubset);
    cmdSelect->setEnabled(option != optSelect);
    if (option == optRegExp)
        txtRegExp->setFocus();
}

// A click on the list outside the subhierarchy mode switches to manual selection, whose start
// clears the selection, the clicked line with it.
void frmBatchNaming::lstConcepts_Click()
{
    if (!optHier->isChecked() && !optSelect->isChecked())
        optSelect->setChecked(true);
    if (m_ready)
        showCount();
}

void frmBatchNaming::cmdSelect_Click()
{
    const QStringList items = ListedConcepts();
    m_ready = false;
    if (optAll->isChecked()) {
        lstConcepts->selectAll();
    } else if (optRegExp->isChecked()) {
        SelectIndexes(PickByExpression(items, txtRegExp->text()));
    } else if (optSubset->isChecked()) {
        SelectIndexes(PickBySubset(items, SubsetIdOf(cbxSubset->currentText())));
    } else if (optHier->isChecked()) {
        UI().SetMousePointer(pointer::Hourglass);
        SelectIndexes(PickSubhierarchy(items, SelectedIndexes()));
        UI().SetMousePointer(pointer::Default);
    }
    m_ready = true;
    showCount();
}

void frmBatchNaming::cmdClear_Click()
{
    m_ready = false;
    lstConcepts->clearSelection();
    m_ready = true;
    lstConcepts->scrollToTop();
    showCount();
}

void frmBatchNaming::cmdRefresh_Click()
{
    const QString job = lblStart->caption();
    m_concepts->setStringList({});
    optAlpha->setChecked(true);
    lblStart->setCaption(QString());
    lblStart->setCaption(job);
}

void frmBatchNaming::optAlpha_Click()
{
    if (m_sort == QLatin1String("Alpha"))
        return;
    UI().SetMousePointer(pointer::Hourglass);
    fillList(true);
    UI().SetMousePointer(pointer::Default);
}

void frmBatchNaming::optAsEntered_Click()
{
    if (m_sort == QLatin1String("AsEntered"))
        return;
    UI().SetMousePointer(pointer::Hourglass);
    fillList(false);
    UI().SetMousePointer(pointer::Default);
}

void frmBatchNaming::cmdOK_Click()
{
    const QList<int> rows = SelectedIndexes();
    if (rows.isEmpty()) {
        UI().MsgBox(QStringLiteral("No concepts have been selected!"), msg::Information,
                    QStringLiteral("Error"));
        return;
    }
    const QStringList items = ListedConcepts();
    QStringList concepts;
    concepts.reserve(rows.size());
    for (int row : rows)
        concepts.append(items[row]);
    run(concepts);
    if (auto *editor = Forms().Find<frmOntoEdit>())
        editor->LoadNames();
}

// The bar moves with the run; the window is repainted now and then, input waits for the end.
void frmBatchNaming::run(const QStringList &concepts)
{
    const QTreeWidgetItem *language = lvwLangs->currentItem();
    if (!language)
        return; // an ontology without languages has nothing to name in
    const QString langId = language->text(1);
    ProgressBar1->setMaximum(int(concepts.size()));
    ProgressBar1->setValue(0);
    ProgressBar1->show();
    UI().SetMousePointer(pointer::Hourglass);
    const BatchStep step = [this](int done) {
        ProgressBar1->setValue(done);
        if (done % 500 == 0)
            QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    };
    try {
        if (optAdd->isChecked())
            AddBatchNames(concepts, langId, optAsIs->isChecked(), step);
        else
            RemoveBatchNames(concepts, langId, step);
    } catch (const store::StoreError &) {
        ProgressBar1->hide();
        UI().SetMousePointer(pointer::Default);
        throw;
    }
    ProgressBar1->hide();
    UI().SetMousePointer(pointer::Default);
}

void ShowBatchNaming()
{
    auto &dialog = Forms().Get<frmBatchNaming>();
    const bool opening = !dialog.isVisible();
    ShowOverMain(dialog);
    if (opening) {
        dialog.lblStart->setCaption(QString());
        dialog.lblStart->setCaption(frmBatchNaming::Job);
    }
}

void frmBatchNaming::cmdCancel_Click()
{
    Forms().Unload(this);
}

void frmBatchNaming::reject()
{
    cmdCancel_Click();
}

void frmBatchNaming::Form_Unload()
{
    SaveSize(*this, windowTitle());
}

bool frmBatchNaming::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == txtRegExp && Process().OntoMeta.Naming &&
        FilterTypedKey(txtRegExp, event, [](int key) { return FilterNamingKey(key); }))
        return true;
    return QDialog::eventFilter(watched, event);
}

} // namespace lx::ui
