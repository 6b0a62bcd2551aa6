#include "ui/frm_gen_html.h"

#include "core/command.h"
#include "core/filters.h"
#include "core/interaction.h"
#include "core/process.h"
#include "core/text/like.h"
#include "ontology/edit/inheritance.h"
#include "ontology/exchange/export.h"
#include "ontology/store/lifecycle.h"
#include "ontology/store/lookups.h"
#include "publish/html_stuff.h"
#include "publish/term_entry_page.h"
#include "termbase/store/lifecycle.h"
#include "ui/key_filter.h"
#include "ui/named.h"
#include "ui/window_place.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QCoreApplication>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QStatusBar>
#include <QVBoxLayout>

namespace lx::ui {

namespace {

QString CountText(int count)
{
    return QString::number(count) + QStringLiteral(" Concepts selected");
}

const QString kEmptyList =
    QStringLiteral("The list of concepts is empty. No reports can be generated!");

// Lets the window repaint its bar and panel between pages; what the user types or clicks waits
// for the end of the run, which has no cancel.
void KeepPainting()
{
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

} // namespace

frmGenHTML::frmGenHTML() : QWidget(nullptr, Qt::Window)
{
    setObjectName(QStringLiteral("frmGenHTML"));
    setAttribute(Qt::WA_DeleteOnClose, false); // the collection unloads it
    lblStart = Named(new SignalLabel(this), QStringLiteral("lblStart"));

    QWidget *select = buildSelectFrame();
    QWidget *list = buildListPane();
    QWidget *output = buildOutputPane();
    StatusBar1 = Named(new QStatusBar(this), QStringLiteral("StatusBar1"));
    StatusBar1->setSizeGripEnabled(false);
    for (int stretch : {1, 2}) {
        auto *panel = new QLabel(this);
        panel->setFrameShape(QFrame::StyledPanel);
        StatusBar1->addWidget(panel, stretch);
        m_panels.append(panel);
    }
    ProgressBar1 = Named(new QProgressBar(this), QStringLiteral("ProgressBar1"));
    ProgressBar1->setMaximumWidth(160);
    ProgressBar1->hide();
    StatusBar1->addPermanentWidget(ProgressBar1);

    auto *columns = new QHBoxLayout;
    columns->addWidget(select);
    columns->addWidget(list, 1);
    columns->addWidget(output);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(columns, 1);
    layout->addWidget(StatusBar1);
    connectControls();
    TabOrder({optAll,    optSelect,    optRegExp,      txtRegExp,   optHier,     optSubset,
              cbxSubset, cmdSelect,    cmdClear,       lstConcepts, cmdRefresh,  optAsEntered,
              optAlpha,  chkAncestors, chkDescendants, chkInhRels,  chkInhAttrs, chkCSReport,
              txtPath,   cmdBrowse,    cmdOK,          cmdCancel});
}

QWidget *frmGenHTML::buildSelectFrame()
{
    fraSelect = Named(new QGroupBox(QStringLiteral("Select"), this), QStringLiteral("fraSelect"));
    optAll = Named(new QRadioButton(QStringLiteral("All (publish)"), fraSelect),
                   QStringLiteral("optAll"));
    optSelect = Named(new QRadioButton(QStringLiteral("Select manually"), fraSelect),
                      QStringLiteral("optSelect"));
    optRegExp = Named(new QRadioButton(QStringLiteral("Expression"), fraSelect),
                      QStringLiteral("optRegExp"));
    txtRegExp = Named(new QLineEdit(fraSelect), QStringLiteral("txtRegExp"));
    optHier = Named(new QRadioButton(QStringLiteral("Subhierarchy"), fraSelect),
                    QStringLiteral("optHier"));
    optSubset =
        Named(new QRadioButton(QStringLiteral("Subset"), fraSelect), QStringLiteral("optSubset"));
    cbxSubset = Named(new QComboBox(fraSelect), QStringLiteral("cbxSubset"));
    cbxSubset->setEditable(true);
    cmdSelect =
        Named(new QPushButton(QStringLiteral("Select"), fraSelect), QStringLiteral("cmdSelect"));
    cmdClear = Named(new QPushButton(QStringLiteral("Clear Selection"), fraSelect),
                     QStringLiteral("cmdClear"));
    optSelect->setChecked(true);
    txtRegExp->setEnabled(false);
    cbxSubset->setEnabled(false);
    cmdSelect->setEnabled(false);
    txtRegExp->installEventFilter(this);

    auto *layout = new QVBoxLayout(fraSelect);
    for (QWidget *control : {static_cast<QWidget *>(optAll), static_cast<QWidget *>(optSelect),
                             static_cast<QWidget *>(optRegExp), static_cast<QWidget *>(txtRegExp),
                             static_cast<QWidget *>(optHier), static_cast<QWidget *>(optSubset),
                             static_cast<QWidget *>(cbxSubset)})
        layout->addWidget(control);
    layout->addStretch(1);
    layout->addWidget(cmdSelect);
    layout->addWidget(cmdClear);
    return fraSelect;
}

QWidget *frmGenHTML::buildListPane()
{
    auto *pane = new QWidget(this);
    lstConcepts = Named(new QListWidget(pane), QStringLiteral("lstConcepts"));
    lstConcepts->setSelectionMode(QAbstractItemView::ExtendedSelection);
    lstConcepts->setToolTip(QStringLiteral("Use CTRL and SHIFT for multi-selection"));
    lstConcepts->setUniformItemSizes(true);
    lstConcepts->setMinimumWidth(200);
    cmdRefresh =
        Named(new QPushButton(QStringLiteral("Refresh List"), pane), QStringLiteral("cmdRefresh"));
    fraSort = Named(new QGroupBox(QStringLiteral("Sort"), pane), QStringLiteral("fraSort"));
    optAsEntered = Named(new QRadioButton(QStringLiteral("As entered"), fraSort),
                         QStringLiteral("optAsEntered"));
    optAlpha = Named(new QRadioButton(QStringLiteral("Alphabetically"), fraSort),
                     QStringLiteral("optAlpha"));
    optAlpha->setChecked(true);
    auto *sortLayout = new QHBoxLayout(fraSort);
    sortLayout->addWidget(optAsEntered);
    sortLayout->addWidget(optAlpha);

    auto *layout = new QVBoxLayout(pane);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(lstConcepts, 1);
    layout->addWidget(cmdRefresh);
    layout->addWidget(fraSort);
    return pane;
}

QWidget *frmGenHTML::buildOutputPane()
{
    auto *pane = new QWidget(this);
    fraInclude =
        Named(new QGroupBox(QStringLiteral("Include"), pane), QStringLiteral("fraInclude"));
    chkAncestors = Named(new QCheckBox(QStringLiteral("Ancestors"), fraInclude),
                         QStringLiteral("chkAncestors"));
    chkDescendants = Named(new QCheckBox(QStringLiteral("Descendants"), fraInclude),
                           QStringLiteral("chkDescendants"));
    chkInhRels = Named(new QCheckBox(QStringLiteral("Inherited Relations"), fraInclude),
                       QStringLiteral("chkInhRels"));
    chkInhAttrs = Named(new QCheckBox(QStringLiteral("Inherited Attributes"), fraInclude),
                        QStringLiteral("chkInhAttrs"));
    auto *includeLayout = new QVBoxLayout(fraInclude);
    // Every section by default: a page shows all the concept has unless the user leaves some
    // out.
    for (QCheckBox *box : {chkAncestors, chkDescendants, chkInhRels, chkInhAttrs}) {
        box->setChecked(true);
        includeLayout->addWidget(box);
    }
    chkCSReport = Named(new QCheckBox(QStringLiteral("Include Conceptual Structures"), pane),
                        QStringLiteral("chkCSReport"));
    chkCSReport->hide(); // shown for termbase reports only
    txtPath = Named(new QLineEdit(pane), QStringLiteral("txtPath"));
    txtPath->setMinimumWidth(220);
    cmdBrowse =
        Named(new QPushButton(QStringLiteral("&Browse..."), pane), QStringLiteral("cmdBrowse"));
    cmdOK = Named(new QPushButton(QStringLiteral("&OK"), pane), QStringLiteral("cmdOK"));
    cmdCancel = Named(new QPushButton(QStringLiteral("&Close"), pane), QStringLiteral("cmdCancel"));
    cmdOK->setDefault(true);

    auto *path = new QHBoxLayout;
    path->addWidget(txtPath, 1);
    path->addWidget(cmdBrowse);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    auto *layout = new QVBoxLayout(pane);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(fraInclude);
    layout->addWidget(chkCSReport);
    layout->addStretch(1);
    layout->addWidget(new QLabel(QStringLiteral("Output folder:"), pane));
    layout->addLayout(path);
    layout->addLayout(buttons);
    return pane;
}

void frmGenHTML::connectControls()
{
    connect(lblStart, &SignalLabel::captionChanged, this,
            Command(this, &frmGenHTML::lblStart_Change));
    const auto click = [this](QRadioButton *option, void (frmGenHTML::*handler)()) {
        connect(option, &QRadioButton::clicked, this, Command(this, handler));
    };
    click(optAll, &frmGenHTML::optAll_Click);
    click(optSelect, &frmGenHTML::optSelect_Click);
    click(optRegExp, &frmGenHTML::optRegExp_Click);
    click(optHier, &frmGenHTML::optHier_Click);
    click(optSubset, &frmGenHTML::optSubset_Click);
    click(optAlpha, &frmGenHTML::optAlpha_Click);
    click(optAsEntered, &frmGenHTML::optAsEntered_Click);
    const auto press = [this](QPushButton *button, void (frmGenHTML::*handler)()) {
        connect(button, &QPushButton::clicked, this, Command(this, handler));
    };
    press(cmdSelect, &frmGenHTML::cmdSelect_Click);
    press(cmdClear, &frmGenHTML::cmdClear_Click);
    press(cmdRefresh, &frmGenHTML::cmdRefresh_Click);
    press(cmdBrowse, &frmGenHTML::cmdBrowse_Click);
    press(cmdCancel, &frmGenHTML::cmdCancel_Click);
    press(cmdOK, &frmGenHTML::cmdOK_Click);
    connect(lstConcepts, &QListWidget::itemClicked, this,
            Command(this, &frmGenHTML::lstConcepts_Click));
}

QLabel *frmGenHTML::StatusPanel(int panel) const
{
    return m_panels.value(panel - 1);
}

int frmGenHTML::SelectedCount() const
{
    return int(lstConcepts->selectedItems().size());
}

QStringList frmGenHTML::items() const
{
    QStringList texts;
    texts.reserve(lstConcepts->count());
    for (int i = 0; i < lstConcepts->count(); ++i)
        texts.append(lstConcepts->item(i)->text());
    return texts;
}

void frmGenHTML::showSelectedCount()
{
    StatusPanel(2)->setText(CountText(SelectedCount()));
}

void frmGenHTML::selectIndexes(const QList<int> &indexes)
{
    for (const int i : indexes)
        lstConcepts->item(i)->setSelected(true);
}

void frmGenHTML::lblStart_Change()
{
    const QString job = lblStart->caption();
    if (job.isEmpty())
        return;
    const QStringList subsets = ReadReportSubsets();
    const QStringList concepts = m_list.Open(job);
    if (text::Like(job, u"*Export")) {
        chkCSReport->hide();
        fraInclude->hide();
        fraSelect->setTitle(QStringLiteral("Export"));
    }
    if (concepts.isEmpty()) {
        UI().MsgBox(kEmptyList, msg::Critical, QStringLiteral("Error"));
    } else {
        lstConcepts->addItems(concepts);
        SortState = QStringLiteral("Alpha");
        StatusPanel(2)->setText(CountText(0));
    }
    // The combo isn't emptied: a refill lists the subsets once more.
    for (const QString &name : subsets)
        cbxSubset->addItem(name);
    if (!subsets.isEmpty())
        cbxSubset->setEditText(subsets.first());
    m_filled = true;
}

void frmGenHTML::setMode(QRadioButton *option, bool regExp, bool subset, bool select)
{
    cmdClear_Click();
    txtRegExp->setEnabled(regExp);
    cbxSubset->setEnabled(subset);
    cmdSelect->setEnabled(select);
    option->setChecked(true);
    if (regExp)
        txtRegExp->setFocus();
}

void frmGenHTML::optAll_Click()
{
    setMode(optAll, false, false, true);
}

void frmGenHTML::optSelect_Click()
{
    setMode(optSelect, false, false, false);
}

void frmGenHTML::optRegExp_Click()
{
    setMode(optRegExp, true, false, true);
}

void frmGenHTML::optHier_Click()
{
    setMode(optHier, false, false, true);
}

void frmGenHTML::optSubset_Click()
{
    setMode(optSubset, false, true, true);
}

// The first click after another mode switches to manual selection, which clears the list, the
// clicked line too.
void frmGenHTML::lstConcepts_Click()
{
    if (!optHier->isChecked() && !optSelect->isChecked())
        optSelect_Click();
    if (m_filled)
        showSelectedCount();
}

void frmGenHTML::cmdSelect_Click()
{
    if (optAll->isChecked()) {
        lstConcepts->selectAll();
    } else if (optRegExp->isChecked()) {
        if (txtRegExp->text().size() < 3) {
            UI().MsgBox(QStringLiteral("Enter at least 3 characters!"), msg::Information,
                        QStringLiteral("Error"));
            return;
        }
        m_filled = false;
        const QList<int> matched = PatternSelection(items(), txtRegExp->text());
        selectIndexes(matched);
        if (matched.isEmpty())
            UI().MsgBox(QStringLiteral("No concepts matched your criteria."), msg::Information);
        m_filled = true;
    } else if (optSubset->isChecked()) {
        selectIndexes(SubsetSelection(items(), SubsetIdOf(cbxSubset->currentText())));
    } else if (optHier->isChecked()) {
        const QList<QListWidgetItem *> chosen = lstConcepts->selectedItems();
        if (chosen.size() != 1) {
            UI().MsgBox(QStringLiteral("For this option you must select ONE concept in the list."),
                        msg::Exclamation, QStringLiteral("Select error"));
            return;
        }
        const QString top = chosen.first()->text();
        if (top.isEmpty() || top == Process().TopConcept) {
            UI().MsgBox(QStringLiteral("The concept you selected is not valid."), msg::Exclamation);
            return;
        }
        UI().SetMousePointer(pointer::Hourglass);
        m_filled = false;
        QStringList descendants;
        if (GetDescendants(top, descendants) == 0)
            UI().MsgBox(QStringLiteral("The concept you selected is a leaf"), msg::Exclamation);
        else
            selectIndexes(HierarchySelection(items(), descendants, 1));
        UI().SetMousePointer(pointer::Default);
        m_filled = true;
    }
    showSelectedCount();
}

void frmGenHTML::cmdClear_Click()
{
    m_filled = false;
    lstConcepts->clearSelection();
    m_filled = true;
    lstConcepts->scrollToTop();
    showSelectedCount();
}

void frmGenHTML::cmdRefresh_Click()
{
    const QString job = lblStart->caption();
    lstConcepts->clear();
    optAlpha->setChecked(true);
    lblStart->setCaption(QString());
    lblStart->setCaption(job);
}

void frmGenHTML::refill(bool alphabetical)
{
    UI().SetMousePointer(pointer::Hourglass);
    const QStringList concepts = ReadReportConcepts(alphabetical);
    lstConcepts->clear();
    lstConcepts->addItems(concepts);
    SortState = alphabetical ? QStringLiteral("Alpha") : QStringLiteral("AsEntered");
    UI().SetMousePointer(pointer::Default);
}

void frmGenHTML::optAlpha_Click()
{
    if (SortState != QLatin1String("Alpha"))
        refill(true);
}

void frmGenHTML::optAsEntered_Click()
{
    if (SortState != QLatin1String("AsEntered"))
        refill(false);
}

void frmGenHTML::cmdBrowse_Click()
{
    const QString folder = txtPath->text();
    const std::optional<QString> chosen =
        UI().BrowseForFolder(QStringLiteral("Output folder"), folder);
    if (chosen && *chosen != folder) {
        OutputFolder = *chosen;
        txtPath->setText(*chosen);
    }
}

void frmGenHTML::cmdCancel_Click()
{
    txtPath->clear();
    m_list.Close();
    Forms().Unload(this);
}

void frmGenHTML::cmdOK_Click()
{
    if (SelectedCount() == 0) {
        UI().MsgBox(QStringLiteral("No concepts have been selected!"), msg::Information,
                    QStringLiteral("Error"));
        return;
    }
    if (!text::Like(lblStart->caption(), u"*Export")) {
        GenerateReports();
        return;
    }
    // The export: the selected items in list order, each deselected once its block is out.
    QList<int> selected;
    QStringList identifiers;
    for (int i = 0; i < lstConcepts->count(); ++i) {
        if (lstConcepts->item(i)->isSelected()) {
            selected.append(i);
            identifiers.append(lstConcepts->item(i)->text());
        }
    }
    const int total = int(identifiers.size());
    bool started = false;
    const auto exported = [&](int done) {
        if (!started) {
            UI().SetMousePointer(pointer::Hourglass);
            ProgressBar1->setRange(0, total);
            ProgressBar1->setValue(0);
            ProgressBar1->show();
            m_filled = false;
            started = true;
        }
        if (ProgressBar1->value() < ProgressBar1->maximum())
            ProgressBar1->setValue(ProgressBar1->value() + 1);
        lstConcepts->item(selected[done - 1])->setSelected(false);
        StatusPanel(2)->setText(QStringLiteral("Exported ") + QString::number(done) +
                                QStringLiteral(" out of ") + QString::number(total));
        KeepPainting();
    };
    try {
        ExportSelectedConcepts(txtPath->text(), identifiers, exported);
    } catch (...) {
        m_filled = true;
        ProgressBar1->hide();
        UI().SetMousePointer(pointer::Default);
        throw;
    }
    m_filled = true;
    ProgressBar1->hide();
    if (started)
        UI().SetMousePointer(pointer::Default);
}

void frmGenHTML::GenerateReports()
{
    UI().SetMousePointer(pointer::Hourglass);
    const int total = SelectedCount();
    const bool ancestors = chkAncestors->isChecked();
    const bool descendants = chkDescendants->isChecked();
    const bool inhRels = chkInhRels->isChecked();
    const bool inhAttrs = chkInhAttrs->isChecked();
    // The default folder ends in a separator already; a doubled one is harmless.
    const QString folder = txtPath->text() + QLatin1Char('/');
    const bool termbase = !chkCSReport->isHidden();
    const bool savedBrowser = Process().TermMeta.CSBrowser;
    Process().TermMeta.CSBrowser = chkCSReport->isChecked();
    ProgressBar1->setRange(0, total);
    ProgressBar1->show();
    ProgressBar1->setValue(0);
    m_filled = false;
    int done = 0;
    // The run blocks until its last page: the ontology stays as it is meanwhile.
    const InheritanceReadCache reads;
    const auto finish = [&] {
        m_filled = true;
        ProgressBar1->hide();
        Process().TermMeta.CSBrowser = savedBrowser;
        UI().SetMousePointer(pointer::Default);
    };
    try {
        for (int i = 0; i < lstConcepts->count(); ++i) {
            QListWidgetItem *item = lstConcepts->item(i);
            if (!item->isSelected())
                continue;
            const QString identifier = item->text();
            if (!termbase) {
                WriteConceptPage(identifier, folder, ancestors, descendants, inhRels, inhAttrs);
            } else if (const std::optional<qint32> entry = m_list.EntryOf(identifier)) {
                WriteTermEntryPage(identifier, *entry, folder, ancestors, descendants, inhRels,
                                   inhAttrs);
            } else {
                UI().MsgBox(QStringLiteral("Concept ") + identifier +
                                QStringLiteral(" is no longer part of the TermBase!"),
                            msg::Critical, QStringLiteral("Error"));
            }
            if (ProgressBar1->value() < ProgressBar1->maximum())
                ProgressBar1->setValue(ProgressBar1->value() + 1);
            ++done;
            item->setSelected(false);
            StatusPanel(2)->setText(QStringLiteral("Generated ") + QString::number(done) +
                                    QStringLiteral(" out of ") + QString::number(total));
            KeepPainting();
        }
    } catch (...) {
        finish();
        throw;
    }
    finish();
}

void frmGenHTML::Form_Unload()
{
    m_list.Close();
    if (isVisible())
        SaveSize(*this, windowTitle());
}

bool frmGenHTML::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == txtRegExp && Process().OntoMeta.Naming &&
        FilterTypedKey(txtRegExp, event, FilterNamingKey))
        return true;
    return QWidget::eventFilter(watched, event);
}

void frmGenHTML::closeEvent(QCloseEvent *event)
{
    RunCommand([this] { Forms().Unload(this); });
    event->accept();
}

frmGenHTML &ShowGenHTML(const QString &caption, const QString &folder, const QString &job)
{
    auto &form = Forms().Get<frmGenHTML>();
    form.setWindowTitle(caption);
    form.txtPath->setText(folder);
    form.OutputFolder = folder;
    form.lblStart->setCaption(QString());
    form.lblStart->setCaption(job);
    if (!form.isVisible()) {
        RestoreSize(form, caption);
        ShowOverMain(form);
    } else {
        form.raise();
        form.activateWindow();
    }
    return form;
}

void ShowOntologyReports()
{
    ShowGenHTML(QStringLiteral("Generate HTML Reports (Ontology)"),
                PublishFolder() + QLatin1Char('/'), QStringLiteral("Ontology"));
}

void ShowOntologyExport()
{
    ShowGenHTML(QStringLiteral("Export Ontology"), PublishFolder() + QLatin1Char('/'),
                QStringLiteral("OntologyExport"));
}

void ShowTermbaseReports()
{
    ReportList entries;
    if (entries.Open(QStringLiteral("TermBase")).isEmpty()) {
        UI().MsgBox(kEmptyList, msg::Critical, QStringLiteral("Error"));
        return;
    }
    entries.Close();
    UI().SetMousePointer(pointer::Hourglass);
    auto &form = ShowGenHTML(QStringLiteral("Generate HTML Reports (TermBase)"),
                             TermbasePublishFolder(Process().TermMeta.Name) + QLatin1Char('/'),
                             QStringLiteral("TermBase"));
    form.chkCSReport->show();
    form.chkCSReport->setChecked(Process().TermMeta.CSBrowser);
    UI().SetMousePointer(pointer::Default);
}

} // namespace lx::ui
