#include "ui/frm_dc_help.h"

#include "core/command.h"
#include "core/process.h"
#include "ontology/store/seed.h"
#include "termbase/edit/category_help.h"
#include "ui/frm_tb_editor.h"
#include "ui/images.h"
#include "ui/local_browser.h"
#include "ui/named.h"
#include "ui/window_place.h"

#include <QAction>
#include <QComboBox>
#include <QMenu>
#include <QToolBar>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <exception>

namespace lx::ui {

namespace {

// The least room that leaves the browser usable.
constexpr QSize MinimumSize(290, 135);

QAction *ToolButton(QToolBar *bar, const char *key, const char *tip)
{
    const QString name = QString::fromLatin1(key);
    QAction *button = bar->addAction(Image(name), name);
    button->setObjectName(name);
    button->setToolTip(QString::fromLatin1(tip));
    return button;
}

} // namespace

frmDCHelp::frmDCHelp()
    : cbxDCs(Named(new QComboBox(this), QStringLiteral("cbxDCs"))),
      Browser(Named(new LocalBrowser(this), QStringLiteral("Browser"))),
      Toolbar1(Named(new QToolBar(this), QStringLiteral("Toolbar1"))),
      lblTarget(Named(new SignalLabel(this), QStringLiteral("lblTarget")))
{
    setObjectName(QStringLiteral("frmDCHelp"));
    setWindowTitle(Caption);
    setWindowFlag(Qt::Window);
    setMinimumSize(MinimumSize);
    Toolbar1->setIconSize(QSize(20, 20));
    for (const auto &[key, tip] : {std::pair{"back", "Back"}, std::pair{"forward", "Forward"}}) {
        QAction *button = ToolButton(Toolbar1, key, tip);
        connect(button, &QAction::triggered, this,
                [this, key = QString::fromLatin1(key)] { Toolbar1_ButtonClick(key); });
    }
    Toolbar1->addSeparator();
    Toolbar1->addWidget(cbxDCs);
    cbxDCs->setToolTip(QStringLiteral("Selected Data Category"));
    cbxDCs->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(Toolbar1);
    layout->addWidget(Browser, 1); // the layout gives the browser what the toolbar leaves
    resize(620, 560);
    RestoreSize(*this, Caption);

    // The help is a file beside the program, put there from the program's own copy if missing.
    // A load that fails leaves the window without pages rather than stopping the command.
    try {
        EnsureHelpFile();
        Browser->SetFolders({AppPath()});
        cbxDCs->addItems(CategoryHelpItems());
    } catch (const std::exception &) {
    }
    cbxDCs->setCurrentIndex(-1);
    connect(cbxDCs, &QComboBox::activated, this, Command(this, &frmDCHelp::cbxDCs_Click));
    connect(lblTarget, &SignalLabel::captionChanged, this,
            Command(this, &frmDCHelp::lblTarget_Change));
}

void frmDCHelp::cbxDCs_Click()
{
    const QString id = CategoryOfHelpItem(cbxDCs->currentText());
    if (!id.isEmpty())
        lblTarget->setCaption(CategoryHelpAddress(id));
}

void frmDCHelp::lblTarget_Change()
{
    if (lblTarget->caption().isEmpty())
        return;
    Browser->Navigate(lblTarget->caption());
    if (isMinimized())
        showNormal();
}

void frmDCHelp::Toolbar1_ButtonClick(const QString &key)
{
    if (key == QLatin1String("back"))
        Browser->GoBack();
    else if (key == QLatin1String("forward"))
        Browser->GoForward();
}

void frmDCHelp::Form_Unload()
{
    SaveSize(*this, Caption);
}

void ShowCategoryHelp(const QString &categoryId)
{
    const QString address = CategoryHelpAddress(categoryId);
    if (address.isEmpty())
        return; // the backmatter's categories have no help
    auto *help = qobject_cast<frmDCHelp *>(Forms().FindByCaption(frmDCHelp::Caption));
    if (!help)
        help = &Forms().Load<frmDCHelp>();
    help->lblTarget->setCaption(address);
    ShowOverMain(*help);
}

void mnuHelpDCShow_Click(frmTBEDitor &editor)
{
    const QTreeWidgetItem *node = editor.Tree2->currentItem();
    if (!node)
        return;
    const QString id = CategoryIdByName(node->text(0));
    if (!id.isEmpty())
        ShowCategoryHelp(id);
}

void AttachCategoryHelp(frmTBEDitor &editor)
{
    auto *mnuHelpDC = Named(new QMenu(&editor), QStringLiteral("mnuHelpDC"));
    QAction *show = Named(mnuHelpDC->addAction(QStringLiteral("Help on this")),
                          QStringLiteral("mnuHelpDCShow"));
    QObject::connect(show, &QAction::triggered, &editor,
                     [&editor] { RunCommand([&editor] { mnuHelpDCShow_Click(editor); }); });
    // A right click selects the node under the pointer, as a click would, and opens the menu.
    editor.Tree2->setContextMenuPolicy(Qt::CustomContextMenu);
    QObject::connect(editor.Tree2, &QWidget::customContextMenuRequested, mnuHelpDC,
                     [&editor, mnuHelpDC](const QPoint &at) {
                         if (QTreeWidgetItem *node = editor.Tree2->itemAt(at))
                             editor.Tree2->setCurrentItem(node);
                         mnuHelpDC->popup(editor.Tree2->viewport()->mapToGlobal(at));
                     });
}

} // namespace lx::ui
