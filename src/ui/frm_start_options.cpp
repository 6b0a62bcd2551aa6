#include "ui/frm_start_options.h"

#include <QGroupBox>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace lx::ui {

namespace {

QRadioButton *addOption(QGroupBox *group, const char *name, const QString &caption)
{
    auto *option = new QRadioButton(caption, group);
    option->setObjectName(QString::fromLatin1(name));
    group->layout()->addWidget(option);
    return option;
}

} // namespace

frmStartOptions::frmStartOptions()
{
    setObjectName(QStringLiteral("frmStartOptions"));
    setWindowTitle(QStringLiteral("Options for new ontology"));

    auto *top = new QGroupBox(QStringLiteral("Top nodes"), this);
    top->setLayout(new QVBoxLayout);
    optFullTop = addOption(top, "optFullTop", QStringLiteral("Add the full set of top nodes"));
    optReducedTop =
        addOption(top, "optReducedTop", QStringLiteral("Add only a reduced set of basic concepts"));
    optNoTop = addOption(top, "optNoTop", QStringLiteral("Do not add top nodes"));
    optFullTop->setChecked(true);

    auto *relations = new QGroupBox(QStringLiteral("Relations"), this);
    relations->setLayout(new QVBoxLayout);
    optFullRelations = addOption(relations, "optFullRelations",
                                 QStringLiteral("Add the full set of relational concepts"));
    optNoRelations = addOption(relations, "optNoRelations",
                               QStringLiteral("Do not add any relations. I will use my own"));
    optFullRelations->setChecked(true);

    cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    connect(cmdOK, &QPushButton::clicked, this, &QWidget::hide);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(top);
    layout->addWidget(relations);
    layout->addWidget(cmdOK, 0, Qt::AlignRight);
}

} // namespace lx::ui
