#pragma once

#include "termbase/store/tb_editor.h"

#include <QDialog>

class QCheckBox;
class QPushButton;
class QRadioButton;

namespace lx::ui {

// The options of the open termbase: the language of the category names, the form of the
// category pane and the browsing of conceptual structures. The caller sets it, shows it modally
// and reads it back.
class frmTBOptions : public QDialog {
    Q_OBJECT

public:
    frmTBOptions();

    void cmdOK_Click();
    // The language buttons and the check box back to the termbase's metadata; the list and tree
    // buttons stay as they are.
    void cmdCancel_Click();

    void SetChoice(const TermbaseOptionsChoice &choice);
    TermbaseOptionsChoice Choice() const;

    QRadioButton *optEnglish, *optSpanish, *optFrench, *optGerman, *optItalian, *optDutch;
    QRadioButton *optList, *optTree;
    QCheckBox *chkCSBrowser;
    QPushButton *cmdOK, *cmdCancel;

public Q_SLOTS:
    void reject() override;

private:
    void checkLanguage(const QString &code);
};

} // namespace lx::ui
