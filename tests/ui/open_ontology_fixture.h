#pragma once

#include "core/process.h"
#include "ontology/store/seed.h"
#include "ontology_files.h"
#include "support/working_folder.h"
#include "ui/frm_onto_edit.h"
#include "ui/frm_properties.h"
#include "ui_fixture.h"

#include <QAction>
#include <QDir>
#include <QFileInfo>
#include <QLineEdit>
#include <QListView>
#include <QMenuBar>
#include <QPushButton>
#include <QTemporaryDir>

namespace lx::test {

// Four concepts whose top isn't first in the list, and one of them a relation.
inline const QList<SampleConcept> Sample{
    {QStringLiteral("THING"), 100, QStringLiteral("Whatever there is")},
    {QStringLiteral("ANIMAL"), 1, QVariant()},
    {QStringLiteral("BIRD"), 1, QStringLiteral("A feathered animal")},
    {QStringLiteral("EATS"), 4, QStringLiteral("Takes as food")},
};

// The menus of the menu bar that the editor shows.
inline QStringList VisibleMenus(const ui::frmOntoEdit &form)
{
    QStringList menus;
    for (const QAction *menu : form.menuBar()->actions()) {
        if (menu->isVisible())
            menus << menu->text();
    }
    return menus;
}

// A user at the ontology editor, with a program folder holding the seed and a working
// directory of the test's own: a failed open makes its publish folder relative to the working
// directory.
class OpenOntologyTest : public UiTest {
protected:
    OpenOntologyTest()
    {
        EnsureProgramFolders();
        EnsureSeedFile();
    }

    static QString ontology(const QString &title)
    {
        return OntologiesFolder() + title + QStringLiteral(".ont");
    }
    static bool folderExists(const QString &path) { return QFileInfo(path).isDir(); }

    // The sample concepts in a file named after `name`, in the default folder.
    static QString sample(const QString &name, quint8 listTop = 0)
    {
        const QString path = ontology(name.toLower());
        WriteOntologyFile(path, SampleMeta{name, listTop}, Sample);
        return path;
    }

    // Opens by the dialog; the user then acknowledges `messages` boxes.
    void openByDialog(const QString &path, int messages = 0)
    {
        user.answerOpenFile(path);
        for (int i = 0; i < messages; ++i)
            user.answerMsgBox(msg::OK);
        form.mnuFileOpen->trigger();
    }

    // The user names the ontology in the properties dialog and presses OK.
    static ScriptedInteraction::ModalScript nameIt(const QString &name)
    {
        return [name](QWidget *dialog) {
            auto *properties = qobject_cast<ui::frmProperties *>(dialog);
            ASSERT_NE(properties, nullptr);
            properties->txtName->setText(name);
            properties->cmdOK->click();
        };
    }

    void expectNoOntologyState()
    {
        EXPECT_TRUE(Process().OntoPath.isEmpty());
        EXPECT_EQ(form.windowTitle(), QStringLiteral("Ontology Editor"));
        EXPECT_EQ(VisibleMenus(form).size(), 3);
        EXPECT_FALSE(form.ToolButton(3)->isEnabled());
        EXPECT_FALSE(form.mnuFileProperties->isEnabled());
        EXPECT_TRUE(form.CurrentConcept.isEmpty());
        EXPECT_EQ(form.dblConcepts->model()->rowCount(), 0);
        EXPECT_EQ(form.cursor().shape(), Qt::ArrowCursor);
    }

    WorkingFolder cwd;
    ui::frmOntoEdit &form = ui::Forms().Get<ui::frmOntoEdit>();
};

} // namespace lx::test
