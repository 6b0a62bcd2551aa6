#include "ui/frm_splash.h"

#include "core/interaction.h"
#include "core/program.h"
#include "ui/forms.h"
#include "ui/frm_onto_edit.h"

#include <QFrame>
#include <QGuiApplication>
#include <QLabel>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>

namespace lx::ui {

namespace {

QLabel *MakeLabel(const QString &name, const QString &text, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    label->setObjectName(name);
    label->setAlignment(Qt::AlignCenter);
    return label;
}

} // namespace

frmSplash::frmSplash(std::chrono::milliseconds interval)
    : QWidget(nullptr, Qt::SplashScreen | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint),
      tmrSplash(new QTimer(this)),
      lblProductName(MakeLabel(QStringLiteral("lblProductName"), ProgramName(), this)),
      lblVersion(MakeLabel(QStringLiteral("lblVersion"), {}, this))
{
    setObjectName(QStringLiteral("frmSplash"));
    setWindowTitle(ProgramName());
    setFocusPolicy(Qt::StrongFocus);
    setFixedSize(460, 260);

    auto *frame = new QFrame(this);
    frame->setFrameShape(QFrame::Box);
    frame->setLineWidth(2);
    frame->setBackgroundRole(QPalette::Base);
    frame->setAutoFillBackground(true);
    auto *inner = new QVBoxLayout(frame);
    QFont big = lblProductName->font();
    big.setPointSize(big.pointSize() * 3);
    big.setBold(true);
    lblProductName->setFont(big);
    auto *subtitle =
        MakeLabel(QStringLiteral("lblSubtitle"), tr("Ontology and termbase workbench"), this);
    inner->addStretch();
    inner->addWidget(lblProductName);
    inner->addWidget(subtitle);
    inner->addStretch();
    inner->addWidget(lblVersion);
    auto *outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->addWidget(frame);

    lblVersion->setText(QStringLiteral("Versión ") + ProgramVersion());

    tmrSplash->setObjectName(QStringLiteral("tmrSplash"));
    tmrSplash->setSingleShot(true);
    tmrSplash->setInterval(interval);
    connect(tmrSplash, &QTimer::timeout, this, &frmSplash::tmrSplash_Timer);
    tmrSplash->start();
}

void frmSplash::tmrSplash_Timer()
{
    if (auto *main = Forms().Find<frmOntoEdit>()) {
        main->setEnabled(true);
        main->activateWindow(); // the focus the splash held goes back to the main window
    }
    UI().SetMousePointer(pointer::Default);
    dismiss();
}

// A key or a click only takes the splash away: the main window stays as it is.
void frmSplash::keyPressEvent(QKeyEvent *)
{
    dismiss();
}

void frmSplash::mousePressEvent(QMouseEvent *)
{
    dismiss();
}

void frmSplash::dismiss()
{
    tmrSplash->stop(); // the timer goes with the window
    Forms().Unload(this);
}

void frmSplash::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    centreOnScreen();
    activateWindow();
}

void frmSplash::centreOnScreen()
{
    if (const QScreen *screen = QGuiApplication::primaryScreen()) {
        QRect area = rect();
        area.moveCenter(screen->availableGeometry().center());
        move(area.topLeft());
    }
}

} // namespace lx::ui
