#pragma once

#include "core/signal_label.h"
#include "ui/forms.h"

#include <QWidget>

class QComboBox;
class QToolBar;

namespace lx::ui {

class LocalBrowser;
class frmTBEDitor;

// "Data Categories Help": the help file of the data categories in the embedded browser, at the
// section of one category. Modeless; loaded at first use, it stays until the termbase editor
// closes.
class frmDCHelp : public QWidget, public UnloadSteps {
    Q_OBJECT

public:
    static inline const QString Caption = QStringLiteral("Data Categories Help");

    frmDCHelp();

    void cbxDCs_Click();
    void lblTarget_Change();
    void Toolbar1_ButtonClick(const QString &key);
    void Form_Unload() override;

    QComboBox *cbxDCs;
    LocalBrowser *Browser;
    QToolBar *Toolbar1;
    SignalLabel *lblTarget; // the address to go to; a new one starts the navigation
};

// Opens the help at a category's section, loading the window first if it isn't open; nothing
// for a category of the backmatter. The window comes to the front.
void ShowCategoryHelp(const QString &categoryId);

// The help commands of the termbase editor: "Help on this" in the menu that a right click in
// the category tree opens (mnuHelpDC), and the toolbar's help button.
void AttachCategoryHelp(frmTBEDitor &editor);
void mnuHelpDCShow_Click(frmTBEDitor &editor);

} // namespace lx::ui
