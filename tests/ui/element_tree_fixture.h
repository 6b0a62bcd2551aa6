#pragma once

#include "core/store/database.h"
#include "open_ontology_fixture.h"
#include "ui/frm_tb_editor.h"
#include "ui/frm_tb_properties.h"

#include <QAction>
#include <QToolBar>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

namespace lx::test {

using ui::frmTBEDitor;

// A termbase open in the editor, with a few term entries written straight to its file:
// under body the entries 100 (BIRD), 101 (ANIMAL), 102 (EATS) and 103 (no concept row); under
// 100 the English section 110 with the term 120 "heron" and the cross-reference 121 to 102.
class ElementTreeUi : public OpenOntologyTest {
protected:
    void SetUp() override
    {
        openByDialog(sample(QStringLiteral("Birds")));
        form.mnuToolsTBEd->trigger();
        editor = ui::Forms().Find<frmTBEDitor>();
        ASSERT_NE(editor, nullptr);
        user.answerSaveFile(TermBasesFolder() + QStringLiteral("birds.ltb"))
            .onModal([](QWidget *dialog) {
                auto *properties = qobject_cast<ui::frmTBProperties *>(dialog);
                properties->txtName->setText(QStringLiteral("Bird terms"));
                properties->cmdOK->click();
            })
            .answerMsgBox(msg::OK);
        editor->mnuFileNew->trigger();
        ASSERT_FALSE(Process().TermPath.isEmpty());

        entry(100, "BIRD");
        entry(101, "ANIMAL");
        entry(102, "EATS");
        element(103, "0.3", 3);
        element(110, "0.4", 100);
        add("elements_use_lang", {{"elemID", 110}, {"langID", "en"}});
        element(120, "1", 110);
        add("TERMS", {{"elemID", 120}, {"term", "heron"}, {"langID", "en"}});
        element(121, "9.2.3", 120);
        add("pointers", {{"elemID", 121}, {"targetID", 102}});
        tree = editor->Tree1;
    }

    void add(const char *table, std::initializer_list<std::pair<const char *, QVariant>> row)
    {
        store::Recordset rs =
            Process().TermDB.OpenRecordset(QString::fromLatin1(table), store::dbOpenTable);
        rs.AddNew();
        for (const auto &[name, value] : row)
            rs.Collect(QString::fromLatin1(name), value);
        rs.Update();
        rs.Close();
    }
    void element(qint32 id, const char *category, qint32 parent)
    {
        add("elements", {{"elemID", id}, {"categoryID", category}, {"parentID", parent}});
    }
    void entry(qint32 id, const char *name)
    {
        element(id, "0.3", 3);
        add("TE_CONCEPTS", {{"elemID", id}, {"Concept", name}});
    }

    QTreeWidgetItem *root() const { return tree->topLevelItem(0); }
    static QStringList texts(const QTreeWidgetItem *node)
    {
        QStringList list;
        for (int i = 0; i < node->childCount(); ++i)
            list << node->child(i)->text(0);
        return list;
    }
    QTreeWidgetItem *find(const QString &key) const
    {
        for (QTreeWidgetItemIterator it(tree); *it; ++it) {
            if (frmTBEDitor::NodeKey(*it) == key)
                return *it;
        }
        return nullptr;
    }
    QTreeWidgetItem *body() const { return find(QStringLiteral("n 3")); }
    void select(QTreeWidgetItem *node)
    {
        tree->setCurrentItem(node);
        editor->Tree1_NodeClick(node);
    }
    bool enabled(const char *button) const
    {
        return editor->ToolBar1->findChild<QAction *>(QString::fromLatin1(button))->isEnabled();
    }

    frmTBEDitor *editor = nullptr;
    QTreeWidget *tree = nullptr;
};

} // namespace lx::test
