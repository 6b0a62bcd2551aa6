#pragma once

#include "termbase/edit/records.h"

#include <QDialog>

class QLineEdit;
class QPushButton;

namespace lx::ui {

// A person of the backmatter. Its answer is txtAlias, left filled (OK) or emptied (cancel)
// when it hides; OK also writes the person's page, asking before one is overwritten.
class frmPerson : public QDialog {
    Q_OBJECT

public:
    frmPerson();
    PersonFields Fields() const;
    void cmdOK_Click();
    void cmdCancel_Click();

    QLineEdit *txtAlias, *txtName, *txtRole, *txtEmail, *txtPhone, *txtRemarks;
    QPushButton *cmdOK, *cmdCancel;

public Q_SLOTS:
    void reject() override;

protected:
    void hideEvent(QHideEvent *event) override;
};

// "Bibliographical Record": its answer is txtDescriptor, left filled or emptied.
class frmBiblio : public QDialog {
    Q_OBJECT

public:
    frmBiblio();
    BiblioFields Fields() const;
    void cmdOK_Click();
    void cmdCancel_Click();

    QLineEdit *txtDescriptor, *txtAuthor, *txtDate, *txtArticle, *txtBook, *txtPages, *txtPHouse,
        *txtPPlace;
    QPushButton *cmdOK, *cmdCancel;

public Q_SLOTS:
    void reject() override;

protected:
    void hideEvent(QHideEvent *event) override;
};

} // namespace lx::ui
