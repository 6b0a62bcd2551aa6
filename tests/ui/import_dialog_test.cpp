#include "names_options_fixture.h"
#include "ui/frm_import.h"

#include <QFile>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

using namespace lx;
using namespace lx::test;

namespace {

using ImportDialogTest = NamesOptionsTest;

// The user chooses a file, checks it, imports it and closes: the editor lists the new concepts.
TEST_F(ImportDialogTest, ACheckedFileIsImportedAndTheListShowsItsConcepts)
{
    openSample();
    const QString file = cwd.filePath(QStringLiteral("in.oxp"));
    {
        QFile out(file);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(
            "(SPARROW IS-A VALUE BIRD 1)\r\n(FINCH IS-A VALUE BIRD 1)\r\n"
            "(SPARROW DEFINITION VALUE \"Small\")\r\n(FINCH DEFINITION VALUE \"Seed eater\")\r\n");
    }
    QString checked, imported;
    bool importEnabledBefore = true;
    user.onModal([&](QWidget *shown) {
        auto *dialog = qobject_cast<ui::frmImport *>(shown);
        ASSERT_NE(dialog, nullptr);
        EXPECT_TRUE(dialog->txtLog->toPlainText().startsWith(
            QStringLiteral("To Import an ontology file:")));
        EXPECT_FALSE(dialog->cmdCheckFile->isEnabled());
        importEnabledBefore = dialog->cmdImport->isEnabled();
        dialog->cmdOpenFile->click();
        EXPECT_EQ(dialog->txtImportFile->text(), file);
        dialog->cmdCheckFile->click();
        checked = dialog->txtLog->toPlainText();
        dialog->cmdImport->click();
        imported = dialog->txtLog->toPlainText();
        dialog->cmdClose->click();
    });
    user.answerOpenFile(file);
    form.mnuFileImport->trigger();

    EXPECT_FALSE(importEnabledBefore);
    EXPECT_TRUE(checked.contains(QStringLiteral("- 2 CONCEPT slots.")));
    EXPECT_TRUE(imported.contains(QStringLiteral("- 2 CONCEPT slots added.")));
    EXPECT_TRUE(imported.contains(QStringLiteral("- 2 DEFINITION slots added.")));
    form.GoToConcept(QStringLiteral("SPARROW"));
    EXPECT_EQ(form.CurrentConcept, QStringLiteral("SPARROW"));
    EXPECT_EQ(
        column(QStringLiteral("SELECT * FROM CONCEPTS WHERE Concept = 'FINCH'"), u"Definition"),
        QStringList{QStringLiteral("Seed eater")});
}

} // namespace
