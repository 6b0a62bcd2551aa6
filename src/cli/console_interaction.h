#pragma once

#include "core/interaction.h"

#include <QString>

#include <optional>

namespace lx::cli {

// The program's questions at a console: messages go to stderr, a question is answered by what
// the command line said (--yes), a file dialog by the path the command named.
class ConsoleInteraction : public Interaction {
public:
    bool AnswerYes = false;
    bool Quiet = false;
    std::optional<QString> SavePath;
    std::optional<QString> OpenPath;
    int Messages = 0;

    std::optional<QString> GetOpenFileName(const FileDialogRequest &) override { return OpenPath; }
    std::optional<QString> GetSaveFileName(const FileDialogRequest &) override { return SavePath; }
    std::optional<QString> BrowseForFolder(const QString &, const QString &) override
    {
        return std::nullopt;
    }
    void ShowModal(QWidget *) override {}
    QString ClipboardText() override { return m_clipboard; }
    void SetClipboardText(const QString &text) override { m_clipboard = text; }
    void SetMousePointer(int pointer) override { m_pointer = pointer; }
    int MousePointer() const override { return m_pointer; }
    void OpenInUserBrowser(const QUrl &) override {}

protected:
    int showMessage(const QString &prompt, int style, const QString &title) override;
    QString showInput(const QString &prompt, const QString &title,
                      const QString &defaultText) override;

private:
    QString m_clipboard;
    int m_pointer = 0;
};

} // namespace lx::cli
