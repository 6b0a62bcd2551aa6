#include "ui/frm_onto_options.h"

#include "core/command.h"
#include "core/interaction.h"
#include "core/process.h"
#include "ontology/edit/links.h"
#include "ontology/edit/names.h"
#include "ontology/edit/subsets.h"
#include "ontology/store/lookups.h"
#include "ui/forms.h"
#include "ui/frm_transfer.h"
#include "ui/list_views.h"
#include "ui/named.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QStatusBar>
#include <QTabWidget>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace lx::ui {

namespace {

constexpr int MostParents = 9;

QTreeWidget *MakeListView(QWidget *parent, const QString &name, const QStringList &heads)
{
    auto *view = Named(new QTreeWidget(parent), name);
    view->setHeaderLabels(heads);
    view->setRootIsDecorated(false);
    view->setUniformRowHeights(true);
    return view;
}

const QString kAutoNamingHelp =
    QStringLiteral("This option adds names to concepts as they are entered.\n"
                   "Names are entered for the default language only.\n"
                   "The options are the following:\n"
                   "- Same as Identifier: the concept's identifier will be kept as entered.\n"
                   "- Remove naming restrictions: this is good if you are using the "
                   "'Apply naming restrictions' option: letters will be converted to "
                   "lower case and hyphens to blanks.\n"
                   "These options also apply to batch conversions.");

} // namespace

frmOntoOptions::frmOntoOptions()
{
    setObjectName(QStringLiteral("frmOntoOptions"));
    setWindowTitle(QStringLiteral("Options"));
    auto *tabs = new QTabWidget(this);
    tabs->addTab(buildNamingTab(), QStringLiteral("Naming"));
    tabs->addTab(buildLanguagesTab(), QStringLiteral("Languages"));
    tabs->addTab(buildListTab(), QStringLiteral("Search List"));
    tabs->addTab(buildSubsetsTab(), QStringLiteral("Subsets"));
    tabs->addTab(buildLinksTab(), QStringLiteral("Linked Databases"));
    cmdOK = Named(new QPushButton(QStringLiteral("OK"), this), QStringLiteral("cmdOK"));
    cmdCancel = Named(new QPushButton(QStringLiteral("Cancel"), this), QStringLiteral("cmdCancel"));
    cmdOK->setDefault(true);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    StatusBar1 = Named(new QStatusBar(this), QStringLiteral("StatusBar1"));
    StatusBar1->setSizeGripEnabled(false);
    ProgressBar1 = Named(new QProgressBar(StatusBar1), QStringLiteral("ProgressBar1"));
    ProgressBar1->setMaximumWidth(180);
    ProgressBar1->setValue(0);
    ProgressBar1->hide(); // shown while a task counts
    StatusBar1->addPermanentWidget(ProgressBar1);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(tabs);
    layout->addLayout(buttons);
    layout->addWidget(StatusBar1);
    resize(520, 460);
    connectControls();

    fillLanguages();
    FillSubsets();
    FillLinks();
    showAutoName(Process().OntoMeta.AutoName);
    m_loaded = true;
}

QWidget *frmOntoOptions::buildNamingTab()
{
    auto *tab = new QWidget;
    chkNameRestrict = Named(new QCheckBox(QStringLiteral("Apply naming restrictions"), tab),
                            QStringLiteral("chkNameRestrict"));
    chkNameRestrict->setToolTip(QStringLiteral("Only upper-case ASCII and hyphens"));
    chkAddNames = Named(new QCheckBox(QStringLiteral("Use automatic naming"), tab),
                        QStringLiteral("chkAddNames"));
    optAsIs = Named(new QRadioButton(QStringLiteral("Same as Identifier"), tab),
                    QStringLiteral("optAsIs"));
    optConvert = Named(new QRadioButton(QStringLiteral("Remove naming restrictions"), tab),
                       QStringLiteral("optConvert"));
    auto *layout = new QVBoxLayout(tab);
    layout->addWidget(chkNameRestrict);
    layout->addWidget(chkAddNames);
    layout->addWidget(optAsIs);
    layout->addWidget(optConvert);
    layout->addStretch();
    return tab;
}

QWidget *frmOntoOptions::buildLanguagesTab()
{
    auto *tab = new QWidget;
    cbxLangs = Named(new QComboBox(tab), QStringLiteral("cbxLangs"));
    lvwLangs = MakeListView(tab, QStringLiteral("lvwLangs"),
                            {QStringLiteral("Language"), QStringLiteral("ISO")});
    auto *layout = new QVBoxLayout(tab);
    layout->addWidget(new QLabel(QStringLiteral("Default Language"), tab));
    layout->addWidget(cbxLangs);
    layout->addWidget(new QLabel(QStringLiteral("Select working language(s)"), tab));
    layout->addWidget(lvwLangs, 1);
    return tab;
}

QWidget *frmOntoOptions::buildListTab()
{
    auto *tab = new QWidget;
    optEvery =
        Named(new QRadioButton(QStringLiteral("View everything including relationships"), tab),
              QStringLiteral("optEvery"));
    optTop = Named(new QRadioButton(QStringLiteral("View everything except relationships"), tab),
                   QStringLiteral("optTop"));
    optMy = Named(new QRadioButton(QStringLiteral("View only the Active Subset"), tab),
                  QStringLiteral("optMy"));
    // Shown when the stored limit isn't from 1 to 4.
    txtNoParents = Named(new QLineEdit(QStringLiteral("2"), tab), QStringLiteral("txtNoParents"));
    txtNoParents->setMaximumWidth(48);
    UpDown1 = Named(new QScrollBar(Qt::Vertical, tab), QStringLiteral("UpDown1"));
    UpDown1->setRange(1, MostParents);
    UpDown1->setValue(2);
    UpDown1->setInvertedAppearance(true); // its up arrow counts up
    UpDown1->setFixedHeight(txtNoParents->sizeHint().height());

    auto *list = new QGroupBox(QStringLiteral("Search list"), tab);
    auto *listLayout = new QVBoxLayout(list);
    listLayout->addWidget(optEvery);
    listLayout->addWidget(optTop);
    listLayout->addWidget(optMy);
    auto *parents = new QGroupBox(QStringLiteral("Parents of a concept"), tab);
    auto *parentsLayout = new QHBoxLayout(parents);
    parentsLayout->addWidget(new QLabel(QStringLiteral("Maximum:"), parents));
    parentsLayout->addWidget(txtNoParents);
    parentsLayout->addWidget(UpDown1);
    parentsLayout->addStretch();
    auto *layout = new QVBoxLayout(tab);
    layout->addWidget(list);
    layout->addWidget(parents);
    layout->addStretch();
    return tab;
}

QWidget *frmOntoOptions::buildSubsetsTab()
{
    auto *tab = new QWidget;
    ListView1 = MakeListView(tab, QStringLiteral("ListView1"),
                             {QStringLiteral("Subset"), QStringLiteral("Concepts")});
    lblActiveSubset = Named(new QLabel(tab), QStringLiteral("lblActiveSubset"));
    txtNewSubset = Named(new QLineEdit(tab), QStringLiteral("txtNewSubset"));
    cmdAdd = Named(new QPushButton(QStringLiteral("&Add"), tab), QStringLiteral("cmdAdd"));
    cmdActivate =
        Named(new QPushButton(QStringLiteral("Ac&tivate"), tab), QStringLiteral("cmdActivate"));
    cmdRemove = Named(new QPushButton(QStringLiteral("&Remove"), tab), QStringLiteral("cmdRemove"));
    cmdTransfer =
        Named(new QPushButton(QStringLiteral("Tran&sfer..."), tab), QStringLiteral("cmdTransfer"));

    auto *active = new QHBoxLayout;
    active->addWidget(new QLabel(QStringLiteral("Active Subset:"), tab));
    active->addWidget(lblActiveSubset, 1);
    auto *side = new QVBoxLayout;
    side->addWidget(cmdActivate);
    side->addWidget(cmdRemove);
    side->addWidget(cmdTransfer);
    side->addStretch();
    auto *list = new QHBoxLayout;
    list->addWidget(ListView1, 1);
    list->addLayout(side);
    auto *add = new QHBoxLayout;
    add->addWidget(txtNewSubset, 1);
    add->addWidget(cmdAdd);
    auto *layout = new QVBoxLayout(tab);
    layout->addLayout(active);
    layout->addLayout(list, 1);
    layout->addWidget(new QLabel(QStringLiteral("New Subset Definition"), tab));
    layout->addLayout(add);
    TabOrder({ListView1, cmdActivate, cmdRemove, cmdTransfer, txtNewSubset, cmdAdd});
    return tab;
}

QWidget *frmOntoOptions::buildLinksTab()
{
    auto *tab = new QWidget;
    ListView2 =
        MakeListView(tab, QStringLiteral("ListView2"), {QStringLiteral("Linked Databases")});
    cmdLink = Named(new QPushButton(QStringLiteral("&Assign..."), tab), QStringLiteral("cmdLink"));
    cmdLink->setToolTip(QStringLiteral("Assign existing database to this ontology"));
    cmdRelease =
        Named(new QPushButton(QStringLiteral("&Release"), tab), QStringLiteral("cmdRelease"));
    auto *side = new QVBoxLayout;
    side->addWidget(cmdLink);
    side->addWidget(cmdRelease);
    side->addStretch();
    auto *layout = new QHBoxLayout(tab);
    layout->addWidget(ListView2, 1);
    layout->addLayout(side);
    return tab;
}

void frmOntoOptions::connectControls()
{
    connect(chkAddNames, &QCheckBox::clicked, this, &frmOntoOptions::chkAddNames_Click);
    connect(optAsIs, &QRadioButton::clicked, this, &frmOntoOptions::optAsIs_Click);
    connect(optConvert, &QRadioButton::clicked, this, &frmOntoOptions::optConvert_Click);
    connect(txtNoParents, &QLineEdit::textChanged, this, &frmOntoOptions::txtNoParents_Change);
    connect(UpDown1, &QScrollBar::valueChanged, this, &frmOntoOptions::UpDown1_Change);
    connect(cmdAdd, &QPushButton::clicked, this, Command(this, &frmOntoOptions::cmdAdd_Click));
    connect(cmdActivate, &QPushButton::clicked, this,
            Command(this, &frmOntoOptions::cmdActivate_Click));
    connect(cmdRemove, &QPushButton::clicked, this,
            Command(this, &frmOntoOptions::cmdRemove_Click));
    connect(cmdTransfer, &QPushButton::clicked, this,
            Command(this, &frmOntoOptions::cmdTransfer_Click));
    connect(cmdLink, &QPushButton::clicked, this, Command(this, &frmOntoOptions::cmdLink_Click));
    connect(cmdRelease, &QPushButton::clicked, this,
            Command(this, &frmOntoOptions::cmdRelease_Click));
    connect(cmdOK, &QPushButton::clicked, this, &frmOntoOptions::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmOntoOptions::cmdCancel_Click);
    for (QTreeWidget *list : {ListView1, lvwLangs}) {
        list->header()->setSectionsClickable(true);
        connect(list->header(), &QHeaderView::sectionClicked, this,
                [list](int column) { SortByColumn(list, column); });
    }
}

// Every language in the table's order, ticked when it is a working one; the default language
// chosen by name.
void frmOntoOptions::fillLanguages()
{
    for (const LanguageItem &language : ReadLanguages()) {
        auto *item = new QTreeWidgetItem(lvwLangs, {language.Language, language.LangId});
        item->setCheckState(0, language.Show ? Qt::Checked : Qt::Unchecked);
        cbxLangs->addItem(language.Language);
    }
    cbxLangs->setCurrentIndex(cbxLangs->findText(LanguageNameOf(Process().OntoMeta.DefLang)));
}

void frmOntoOptions::showAutoName(quint8 autoName)
{
    chkAddNames->setChecked(autoName != 0);
    optAsIs->setEnabled(autoName != 0);
    optConvert->setEnabled(autoName != 0);
    if (autoName == 1)
        optAsIs->setChecked(true);
    else if (autoName != 0)
        optConvert->setChecked(true);
}

void frmOntoOptions::FillSubsets()
{
    ListView1->clear();
    for (const SubsetRow &row : ReadSubsets())
        new QTreeWidgetItem(ListView1, {row.Subset, QString::number(row.Count)});
    if (QTreeWidgetItem *first = ListView1->topLevelItem(0))
        ListView1->setCurrentItem(first);
    lblActiveSubset->setText(SubsetNameOf(Process().OntoMeta.ActiveSet));
}

void frmOntoOptions::ShowMaxParents(int maxParents)
{
    const QSignalBlocker blockUpDown(UpDown1);
    const QSignalBlocker blockText(txtNoParents);
    UpDown1->setValue(maxParents);
    txtNoParents->setText(QString::number(maxParents));
}

OntoOptionsResult frmOntoOptions::Result() const
{
    OntoOptionsResult result;
    result.NoParents = txtNoParents->text();
    result.ListTop = optMy->isChecked() ? 1 : optTop->isChecked() ? 2 : 3;
    for (int i = 0; i < lvwLangs->topLevelItemCount(); ++i)
        result.Shown.append(lvwLangs->topLevelItem(i)->checkState(0) == Qt::Checked);
    result.DefaultLanguage = cbxLangs->currentText();
    result.Naming = chkNameRestrict->isChecked();
    return result;
}

void frmOntoOptions::chkAddNames_Click()
{
    if (!m_loaded)
        return;
    const bool ticked = chkAddNames->isChecked();
    optAsIs->setEnabled(ticked);
    optConvert->setEnabled(ticked);
    if (ticked)
        UI().MsgBox(kAutoNamingHelp, msg::Information);
}

// The naming choice is taken at the click, so Cancel doesn't undo it.
void frmOntoOptions::optAsIs_Click()
{
    Process().OntoMeta.AutoName = 1;
}

void frmOntoOptions::optConvert_Click()
{
    Process().OntoMeta.AutoName = 2;
}

void frmOntoOptions::txtNoParents_Change()
{
    if (LeadingNumber(txtNoParents->text()) <= MostParents)
        return;
    UI().MsgBox(QStringLiteral("No way!"));
    txtNoParents->setText(QString::number(MostParents));
}

void frmOntoOptions::UpDown1_Change()
{
    txtNoParents->setText(QString::number(UpDown1->value()));
    if (txtNoParents->text() == QLatin1String("3"))
        UI().MsgBox(QStringLiteral("It is highly advisable to restrict the maximum number of "
                                   "parents of each concept to 2!"),
                    msg::Exclamation);
}

void frmOntoOptions::cmdAdd_Click()
{
    if (AddSubset(txtNewSubset->text()))
        FillSubsets();
}

QString frmOntoOptions::selectedSubset() const
{
    const QTreeWidgetItem *item = ListView1->currentItem();
    return item ? item->text(0) : QString();
}

void frmOntoOptions::cmdActivate_Click()
{
    if (!ListView1->currentItem()) {
        UI().MsgBox(QStringLiteral("Select a concept from the list below first."),
                    msg::Information);
        return;
    }
    const QString name = selectedSubset();
    if (ActivateSubset(name))
        lblActiveSubset->setText(name);
}

// The row selected after the refill becomes the active subset, wherever the active one was.
void frmOntoOptions::cmdRemove_Click()
{
    if (!ListView1->currentItem()) {
        UI().MsgBox(QStringLiteral("Select a concept from the list below first."),
                    msg::Exclamation);
        return;
    }
    if (!RemoveSubset(selectedSubset()))
        return;
    FillSubsets();
    cmdActivate_Click();
}

void frmOntoOptions::cmdTransfer_Click()
{
    auto &transfer = Forms().Load<frmTransfer>();
    UI().ShowModal(&transfer);
    Forms().Unload(&transfer);
}

// Whatever happens, the status bar and the progress bar are left clear for the next task.
void frmOntoOptions::cmdLink_Click()
{
    if (!Process().TermPath.isEmpty()) {
        UI().MsgBox(QStringLiteral("A termbase is open. Close the TermBase Editor and try again."),
                    msg::Exclamation);
        return;
    }
    FileDialogRequest request;
    request.title = QStringLiteral("Link TermBase");
    request.filter = QStringLiteral("Lexarbor TermBase Files (*.ltb)|*.ltb|");
    request.initialDir = TermBasesFolder();
    const std::optional<QString> path = UI().GetOpenFileName(request);
    if (!path || path->isEmpty())
        return;
    struct ClearProgress {
        frmOntoOptions *form;
        ~ClearProgress()
        {
            form->StatusBar1->clearMessage();
            form->ProgressBar1->setValue(0);
            form->ProgressBar1->hide();
        }
    } clear{this};
    AssignProgress progress;
    progress.status = [this](const QString &stage) { showStage(stage); };
    progress.count = [this](qint64 done, qint64 total) { showCount(done, total); };
    if (AssignTermbase(*path, progress))
        FillLinks();
}

// The task runs inside this handler: the bars are laid out and painted now, not when it is
// over. Input waits, so nothing else starts meanwhile.
void frmOntoOptions::showStage(const QString &stage)
{
    ProgressBar1->show();
    StatusBar1->showMessage(stage);
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void frmOntoOptions::showCount(qint64 done, qint64 total)
{
    const int percent = total > 0 ? int(done * 100 / total) : 100;
    if (percent == ProgressBar1->value())
        return;
    ProgressBar1->setValue(percent);
    ProgressBar1->repaint();
}

void frmOntoOptions::cmdRelease_Click()
{
    const QTreeWidgetItem *item = ListView2->currentItem();
    if (!item || !item->isSelected()) {
        UI().MsgBox(QStringLiteral("Select a database from list first."), msg::Information);
        return;
    }
    ReleaseTermbase(item->text(0));
    FillLinks();
}

void frmOntoOptions::FillLinks()
{
    ListView2->clear();
    for (const QString &path : ReadTermBaseLinks())
        new QTreeWidgetItem(ListView2, {path});
}

// The default language is always a working one.
void frmOntoOptions::cmdOK_Click()
{
    for (int i = 0; i < lvwLangs->topLevelItemCount(); ++i) {
        QTreeWidgetItem *item = lvwLangs->topLevelItem(i);
        if (item->text(0) == cbxLangs->currentText())
            item->setCheckState(0, Qt::Checked);
    }
    hide();
}

void frmOntoOptions::cmdCancel_Click()
{
    txtNoParents->setText(QStringLiteral("0"));
    hide();
}

void frmOntoOptions::reject()
{
    cmdCancel_Click();
}

void ShowOntologyOptions(OntologyEditor &editor)
{
    const OntoMetaData &meta = Process().OntoMeta;
    auto &dialog = Forms().Load<frmOntoOptions>();
    if (const std::optional<int> parents = ShownMaxParents(meta))
        dialog.ShowMaxParents(*parents);
    switch (ListTopOption(meta.ListTop)) {
    case 1:
        dialog.optMy->setChecked(true);
        break;
    case 2:
        dialog.optTop->setChecked(true);
        break;
    default:
        dialog.optEvery->setChecked(true);
    }
    dialog.chkNameRestrict->setChecked(meta.Naming);
    UI().ShowModal(&dialog);
    const OntoOptionsResult result = dialog.Result();
    Forms().Unload(&dialog);
    ApplyOntoOptions(result, editor);
}

} // namespace lx::ui
