// Until the element tree is built: what the edit frame asks of it.
#include "ui/frm_tb_editor.h"

#include <QTreeWidget>

namespace lx::ui {

QString frmTBEDitor::SelectedElementKind() const
{
    const QTreeWidgetItem *node = Tree1->currentItem();
    return node ? node->data(0, Qt::UserRole + 1).toString() : QString();
}

void frmTBEDitor::ShowAssertedElement(const AssertResult &) {}

} // namespace lx::ui
