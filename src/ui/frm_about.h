#pragma once

#include <QDialog>

#include <functional>

class QLabel;
class QPushButton;

namespace lx::ui {

// Where the system information tool is found and how it is started; tests put their own.
struct SystemInfoTool {
    std::function<QString()> find;                  // full path, or empty when there is none
    std::function<bool(const QString &path)> start; // false when it couldn't be started
};

// The first information tool of the desktop found on PATH, started detached.
SystemInfoTool DesktopSystemInfoTool();

// The about box.
class frmAbout : public QDialog {
    Q_OBJECT

public:
    explicit frmAbout(SystemInfoTool tool = DesktopSystemInfoTool());

    void cmdSysInfo_Click();
    void cmdOK_Click();

    QLabel *lblVersion;
    QPushButton *cmdSysInfo;
    QPushButton *cmdOK;

private:
    SystemInfoTool m_tool;
};

// Shows the about box modally and unloads it after.
void ShowAbout();

} // namespace lx::ui
