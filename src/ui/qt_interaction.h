#pragma once

#include "core/interaction.h"

namespace lx::ui {

// The facade over the toolkit's own boxes, dialogs, clipboard and cursor.
class QtInteraction : public Interaction {
public:
    std::optional<QString> GetOpenFileName(const FileDialogRequest &request) override;
    std::optional<QString> GetSaveFileName(const FileDialogRequest &request) override;
    std::optional<QString> BrowseForFolder(const QString &title,
                                           const QString &initialDir) override;
    void ShowModal(QWidget *form) override;
    QString ClipboardText() override;
    void SetClipboardText(const QString &text) override;
    void SetMousePointer(int pointer) override;
    int MousePointer() const override { return m_pointer; }
    void OpenInUserBrowser(const QUrl &url) override;

protected:
    int showMessage(const QString &prompt, int style, const QString &title) override;
    QString showInput(const QString &prompt, const QString &title,
                      const QString &defaultText) override;

private:
    int m_pointer = pointer::Default;
};

// "Ontology Files (*.ont)|*.ont|All files (*.*)|*.*|" as the toolkit's name filters: the
// description of each pair with the pattern it really applies.
QStringList NameFilters(const QString &classicFilter);

} // namespace lx::ui
