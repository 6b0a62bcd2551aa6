#include "ui/frm_tb_options.h"

#include "core/process.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace lx::ui {

namespace {

QRadioButton *MakeOption(QWidget *parent, const char *name, const QString &text, QLayout *layout)
{
    auto *option = new QRadioButton(text, parent);
    option->setObjectName(QString::fromLatin1(name));
    layout->addWidget(option);
    return option;
}

} // namespace

frmTBOptions::frmTBOptions()
{
    setObjectName(QStringLiteral("frmTBOptions"));
    setWindowTitle(QStringLiteral("TermBase Options"));
    setModal(true);

    auto *languages = new QGroupBox(QStringLiteral("Language of data categories"), this);
    auto *languageColumn = new QVBoxLayout(languages);
    optEnglish = MakeOption(languages, "optEnglish", QStringLiteral("English"), languageColumn);
    optSpanish = MakeOption(languages, "optSpanish", QStringLiteral("Spanish"), languageColumn);
    optFrench = MakeOption(languages, "optFrench", QStringLiteral("French"), languageColumn);
    optGerman = MakeOption(languages, "optGerman", QStringLiteral("German"), languageColumn);
    optItalian = MakeOption(languages, "optItalian", QStringLiteral("Italian"), languageColumn);
    optDutch = MakeOption(languages, "optDutch", QStringLiteral("Dutch"), languageColumn);

    auto *pane = new QGroupBox(QStringLiteral("Data categories as"), this);
    auto *paneColumn = new QVBoxLayout(pane);
    optList = MakeOption(pane, "optList", QStringLiteral("List"), paneColumn);
    optTree = MakeOption(pane, "optTree", QStringLiteral("Tree"), paneColumn);

    chkCSBrowser =
        new QCheckBox(QStringLiteral("Include conceptual structures while browsing"), this);
    chkCSBrowser->setObjectName(QStringLiteral("chkCSBrowser"));
    cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setDefault(true);
    cmdCancel = new QPushButton(QStringLiteral("Cancel"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));

    auto *groups = new QHBoxLayout;
    groups->addWidget(languages);
    groups->addWidget(pane);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(groups);
    layout->addWidget(chkCSBrowser);
    layout->addLayout(buttons);

    connect(cmdOK, &QPushButton::clicked, this, &frmTBOptions::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmTBOptions::cmdCancel_Click);
}

void frmTBOptions::cmdOK_Click()
{
    hide();
}

void frmTBOptions::cmdCancel_Click()
{
    checkLanguage(Process().TermMeta.DCLang);
    chkCSBrowser->setChecked(Process().TermMeta.CSBrowser);
    hide();
}

void frmTBOptions::reject()
{
    cmdCancel_Click();
}

void frmTBOptions::SetChoice(const TermbaseOptionsChoice &choice)
{
    checkLanguage(choice.Language);
    chkCSBrowser->setChecked(choice.CSBrowser);
    (choice.List ? optList : optTree)->setChecked(true);
}

TermbaseOptionsChoice frmTBOptions::Choice() const
{
    TermbaseOptionsChoice choice;
    const std::pair<QRadioButton *, const char *> codes[] = {{optEnglish, "en"}, {optSpanish, "es"},
                                                             {optFrench, "fr"},  {optGerman, "de"},
                                                             {optItalian, "it"}, {optDutch, "nl"}};
    for (const auto &[option, code] : codes) {
        if (option->isChecked())
            choice.Language = QString::fromLatin1(code);
    }
    choice.CSBrowser = chkCSBrowser->isChecked();
    choice.List = optList->isChecked();
    return choice;
}

void frmTBOptions::checkLanguage(const QString &code)
{
    const std::pair<QRadioButton *, const char *> codes[] = {{optEnglish, "en"}, {optSpanish, "es"},
                                                             {optFrench, "fr"},  {optGerman, "de"},
                                                             {optItalian, "it"}, {optDutch, "nl"}};
    for (const auto &[option, c] : codes) {
        if (code == QLatin1String(c))
            option->setChecked(true);
    }
}

} // namespace lx::ui
