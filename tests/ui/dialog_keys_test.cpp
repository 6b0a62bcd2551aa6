#include "ui/frm_note.h"
#include "ui/frm_properties.h"
#include "ui/frm_tb_properties.h"
#include "ui_fixture.h"

#include <QApplication>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>

namespace lx::test {
namespace {

using DialogKeysTest = UiTest;

// The names of the controls that Tab reaches, once round, starting at `first`.
QStringList TabRound(QWidget *dialog, const QString &first)
{
    QStringList names;
    QWidget *control = dialog;
    do {
        control = control->nextInFocusChain();
        if (control != dialog && control->isVisibleTo(dialog) && control->isEnabled() &&
            (control->focusPolicy() & Qt::TabFocus))
            names << control->objectName();
    } while (control != dialog);
    const qsizetype at = names.indexOf(first);
    return at < 0 ? names : names.mid(at) + names.mid(0, at);
}

// Tab goes down the boxes as they stand, Contact after Description; typing starts in the name.
TEST_F(DialogKeysTest, PropertiesTabInScreenOrder)
{
    const QStringList boxes{QStringLiteral("txtName"),     QStringLiteral("txtCreated"),
                            QStringLiteral("txtModified"), QStringLiteral("txtOwner"),
                            QStringLiteral("txtAuthor"),   QStringLiteral("txtDescription"),
                            QStringLiteral("txtContact"),  QStringLiteral("cmdOK")};
    auto &ontology = ui::Forms().Load<ui::frmProperties>();
    EXPECT_EQ(TabRound(&ontology, boxes.first()), boxes);
    auto &termbase = ui::Forms().Load<ui::frmTBProperties>();
    EXPECT_EQ(TabRound(&termbase, QStringLiteral("txtWOntology")),
              QStringList{QStringLiteral("txtWOntology")} + boxes);

    termbase.show();
    termbase.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&termbase));
    EXPECT_EQ(QApplication::focusWidget(), termbase.txtName);
}

// In a note, Enter makes a line and Tab moves on; Ctrl+Enter presses OK.
TEST_F(DialogKeysTest, NoteTabMovesOnAndCtrlEnterIsOK)
{
    auto &note = ui::Forms().Load<ui::frmNote>();
    note.show();
    note.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&note));
    note.txtNote->setFocus();
    QTest::keyClicks(note.txtNote, QStringLiteral("one"));
    QTest::keyClick(note.txtNote, Qt::Key_Return);
    QTest::keyClicks(note.txtNote, QStringLiteral("two"));
    QTest::keyClick(note.txtNote, Qt::Key_Tab);
    EXPECT_EQ(note.txtNote->toPlainText(), QStringLiteral("one\ntwo"));
    EXPECT_EQ(QApplication::focusWidget(), note.cmdOK);

    note.txtNote->setFocus();
    QTest::keyClick(note.txtNote, Qt::Key_Return, Qt::ControlModifier);
    EXPECT_FALSE(note.isVisible()) << "OK hides the dialog";
    EXPECT_EQ(note.txtNote->toPlainText(), QStringLiteral("one\ntwo"));
}

} // namespace
} // namespace lx::test
