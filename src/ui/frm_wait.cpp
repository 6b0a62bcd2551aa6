#include "ui/frm_wait.h"

#include "core/program.h"
#include "ui/window_place.h"

#include <QCoreApplication>
#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>

namespace lx::ui {

frmWait::frmWait()
    : QWidget(nullptr, Qt::Dialog | Qt::WindowStaysOnTopHint), lblMess(new QLabel(this)),
      ProgressBar1(new QProgressBar(this)), StatusPanel1(new QLabel(this))
{
    setObjectName(QStringLiteral("frmWait"));
    setWindowTitle(ProgramName());
    lblMess->setObjectName(QStringLiteral("lblMess"));
    lblMess->setAlignment(Qt::AlignCenter);
    lblMess->setMinimumSize(320, 60);
    ProgressBar1->setObjectName(QStringLiteral("ProgressBar1"));
    ProgressBar1->setTextVisible(false);
    ProgressBar1->hide();
    StatusPanel1->setObjectName(QStringLiteral("StatusPanel1"));
    StatusPanel1->setFrameShape(QFrame::StyledPanel);
    StatusPanel1->hide();
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(lblMess);
    layout->addWidget(ProgressBar1);
    layout->addWidget(StatusPanel1);
}

void frmWait::ShowOver(const QWidget *owner)
{
    adjustSize();
    PlaceOver(*this, owner);
    show();
    repaint();
    QCoreApplication::processEvents();
}

void frmWait::Step(const QString &status)
{
    if (ProgressBar1->value() < ProgressBar1->maximum())
        ProgressBar1->setValue(ProgressBar1->value() + 1);
    StatusPanel1->setText(status);
    StatusPanel1->show();
    // Events between pages: the window repaints and the program answers while the job runs.
    QCoreApplication::processEvents();
}

} // namespace lx::ui
