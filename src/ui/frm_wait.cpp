#include "ui/frm_wait.h"

#include "core/program.h"

#include <QLabel>
#include <QVBoxLayout>

namespace lx::ui {

frmWait::frmWait()
    : QWidget(nullptr, Qt::Dialog | Qt::WindowStaysOnTopHint), lblMess(new QLabel(this))
{
    setObjectName(QStringLiteral("frmWait"));
    setWindowTitle(ProgramName());
    lblMess->setObjectName(QStringLiteral("lblMess"));
    lblMess->setAlignment(Qt::AlignCenter);
    lblMess->setMinimumSize(320, 60);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(lblMess);
}

} // namespace lx::ui
