#include "ui/frm_names.h"

#include "core/process.h"
#include "ontology/store/lookups.h"
#include "ui/forms.h"
#include "ui/key_filter.h"
#include "ui/list_views.h"
#include "ui/named.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace lx::ui {

namespace {

constexpr int LangIdColumn = 1;

} // namespace

frmNames::frmNames()
    : txtConcept(Named(new QLineEdit(this), QStringLiteral("txtConcept"))),
      txtName(Named(new QLineEdit(this), QStringLiteral("txtName"))),
      txtDef(Named(new QPlainTextEdit(this), QStringLiteral("txtDef"))),
      lvwLangs(Named(new QTreeWidget(this), QStringLiteral("lvwLangs"))),
      cmdOK(Named(new QPushButton(QStringLiteral("OK"), this), QStringLiteral("cmdOK"))),
      cmdCancel(
          Named(new QPushButton(QStringLiteral("&Cancel"), this), QStringLiteral("cmdCancel"))),
      lblStart(new SignalLabel(this))
{
    setObjectName(QStringLiteral("frmNames"));
    setWindowTitle(QStringLiteral("Naming & Defining"));
    lvwLangs->setHeaderLabels({QStringLiteral("Language"), QStringLiteral("ISO")});
    lvwLangs->setRootIsDecorated(false);
    lvwLangs->header()->setSectionsClickable(true);
    txtDef->setTabChangesFocus(true);
    txtConcept->installEventFilter(this);
    cmdOK->setDefault(true);

    auto *form = new QFormLayout;
    form->addRow(QStringLiteral("LANGUAGE-INDEPENDENT IDENTIFIER"), txtConcept);
    form->addRow(QStringLiteral("LANGUAGE-DEPENDENT NAME"), txtName);
    form->addRow(QStringLiteral("DEFINITION"), txtDef);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(lvwLangs, 1);
    layout->addLayout(buttons);
    resize(520, 420);

    connect(lblStart, &SignalLabel::captionChanged, this, &frmNames::lblStart_Change);
    connect(cmdOK, &QPushButton::clicked, this, &frmNames::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmNames::cmdCancel_Click);
    connect(lvwLangs, &QTreeWidget::itemClicked, this, &frmNames::lvwLangs_ItemClick);
    connect(lvwLangs->header(), &QHeaderView::sectionClicked, this,
            &frmNames::lvwLangs_ColumnClick);

    fillLanguages();
}

// The working languages in the table's order, the default one ticked, and "en" selected
// whatever the default is; without "en" the first row takes the selection.
void frmNames::fillLanguages()
{
    const QString &defLang = Process().OntoMeta.DefLang;
    QTreeWidgetItem *english = nullptr;
    for (const LanguageItem &language : ReadWorkingLanguages()) {
        auto *item = new QTreeWidgetItem(lvwLangs, {language.Language, language.LangId});
        item->setCheckState(0, language.LangId == defLang ? Qt::Checked : Qt::Unchecked);
        if (!english && language.LangId == QLatin1String("en"))
            english = item;
    }
    QTreeWidgetItem *selected = english ? english : lvwLangs->topLevelItem(0);
    if (selected) {
        lvwLangs->setCurrentItem(selected);
        lvwLangs->scrollToItem(selected);
    }
}

void frmNames::lblStart_Change()
{
    const QString &mode = lblStart->caption();
    if (mode == QLatin1String("Name")) {
        txtConcept->setEnabled(false);
        txtDef->setEnabled(false);
        txtName->setToolTip(QStringLiteral("Enter name, then click OK"));
    } else if (mode == QLatin1String("Rename")) {
        lvwLangs->setEnabled(false);
        txtName->setEnabled(false);
        txtDef->setEnabled(false);
        txtConcept->setToolTip(QStringLiteral("Modify identifier, then click OK"));
    } else if (mode == QLatin1String("Definition")) {
        txtConcept->setEnabled(false);
        lvwLangs->setEnabled(false);
        txtName->setEnabled(false);
        txtDef->setToolTip(QStringLiteral("Edit the text, then click OK"));
    }
    lvwLangs->setToolTip(QStringLiteral("Use Lexarbor's options s to Add/Remove languages"));
}

void frmNames::cmdOK_Click()
{
    NamesTexts texts{txtConcept->text(), txtName->text(), txtDef->toPlainText()};
    if (!AcceptNamesTexts(lblStart->caption(), texts))
        return;
    txtConcept->setText(texts.Concept);
    txtName->setText(texts.Name);
    if (txtDef->toPlainText() != texts.Def)
        txtDef->setPlainText(texts.Def);
    lblStart->setCaption(QStringLiteral("OK"));
    hide();
}

void frmNames::cmdCancel_Click()
{
    lblStart->setCaption(QStringLiteral("Cancel"));
    hide();
}

void frmNames::reject()
{
    cmdCancel_Click();
}

void frmNames::lvwLangs_ItemClick(QTreeWidgetItem *item)
{
    if (!item)
        return;
    for (int i = 0; i < lvwLangs->topLevelItemCount(); ++i)
        lvwLangs->topLevelItem(i)->setCheckState(0, Qt::Unchecked);
    item->setCheckState(0, Qt::Checked);
    lvwLangs->setCurrentItem(item);
}

void frmNames::lvwLangs_ColumnClick(int column)
{
    SortByColumn(lvwLangs, column);
}

int frmNames::txtConcept_KeyPress(int key)
{
    return FilterConceptKey(key);
}

QString frmNames::SelectedLangId() const
{
    const QTreeWidgetItem *item = lvwLangs->currentItem();
    return item ? item->text(LangIdColumn) : QString();
}

void frmNames::SelectLanguage(const QString &language)
{
    for (int i = 0; i < lvwLangs->topLevelItemCount(); ++i) {
        QTreeWidgetItem *item = lvwLangs->topLevelItem(i);
        if (item->text(0) == language)
            lvwLangs->setCurrentItem(item);
    }
}

// Typed characters go through the identifier filter, as in the editor's search box.
bool frmNames::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == txtConcept &&
        FilterTypedKey(txtConcept, event, [this](int key) { return txtConcept_KeyPress(key); }))
        return true;
    return QDialog::eventFilter(watched, event);
}

} // namespace lx::ui
