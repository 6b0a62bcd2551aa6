#include "ui/frm_about.h"

#include "core/interaction.h"
#include "core/program.h"
#include "ui/forms.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProcess>
#include <QPushButton>
#include <QStandardPaths>
#include <QVBoxLayout>

namespace lx::ui {

namespace {

QString FindOnPath()
{
    // Dedicated hardware/system reports first, then the desktops' own overviews.
    const QStringList candidates{QStringLiteral("hardinfo2"), QStringLiteral("hardinfo"),
                                 QStringLiteral("kinfocenter"),
                                 QStringLiteral("gnome-system-monitor")};
    for (const QString &name : candidates) {
        const QString path = QStandardPaths::findExecutable(name);
        if (!path.isEmpty())
            return path;
    }
    return {};
}

QPushButton *MakeButton(const QString &name, const QString &caption, QWidget *parent)
{
    auto *button = new QPushButton(caption, parent);
    button->setObjectName(name);
    return button;
}

} // namespace

SystemInfoTool DesktopSystemInfoTool()
{
    return {FindOnPath, [](const QString &path) { return QProcess::startDetached(path, {}); }};
}

frmAbout::frmAbout(SystemInfoTool tool)
    : lblVersion(new QLabel(this)),
      cmdSysInfo(MakeButton(QStringLiteral("cmdSysInfo"), QStringLiteral("&System Info..."), this)),
      cmdOK(MakeButton(QStringLiteral("cmdOK"), QStringLiteral("OK"), this)),
      m_tool(std::move(tool))
{
    setObjectName(QStringLiteral("frmAbout"));
    setWindowTitle(QStringLiteral("About ") + ProgramName());
    lblVersion->setObjectName(QStringLiteral("lblVersion"));
    lblVersion->setText(QStringLiteral("Lexarbor. Version ") + ProgramVersion());
    QFont bold = lblVersion->font();
    bold.setBold(true);
    lblVersion->setFont(bold);

    auto *description = new QLabel(
        QStringLiteral("A workbench for terminologists: ontologies and termbases."), this);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdSysInfo);
    buttons->addWidget(cmdOK);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(lblVersion);
    layout->addWidget(description);
    layout->addStretch();
    layout->addLayout(buttons);

    cmdOK->setDefault(true);
    connect(cmdSysInfo, &QPushButton::clicked, this, &frmAbout::cmdSysInfo_Click);
    connect(cmdOK, &QPushButton::clicked, this, &frmAbout::cmdOK_Click);
}

void frmAbout::cmdSysInfo_Click()
{
    const QString path = m_tool.find ? m_tool.find() : QString();
    if (path.isEmpty() || !m_tool.start || !m_tool.start(path))
        UI().MsgBox(
            QStringLiteral("La información del sistema no está disponible en este momento"));
}

void frmAbout::cmdOK_Click()
{
    accept();
}

void ShowAbout()
{
    auto &about = Forms().Get<frmAbout>();
    UI().ShowModal(&about);
    Forms().Unload(&about);
}

} // namespace lx::ui
