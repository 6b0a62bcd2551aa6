#pragma once

#include <QList>
#include <QString>
#include <QUrl>

#include <deque>
#include <functional>
#include <optional>
#include <variant>

class QWidget;

namespace lx {

// Message box styles and answers, by their classic numbers. A style is a button set, plus an
// icon, plus a default button.
namespace msg {
inline constexpr int OKOnly = 0;
inline constexpr int OKCancel = 1;
inline constexpr int AbortRetryIgnore = 2;
inline constexpr int YesNoCancel = 3;
inline constexpr int YesNo = 4;
inline constexpr int RetryCancel = 5;

inline constexpr int Critical = 16;
inline constexpr int Question = 32;
inline constexpr int Exclamation = 48;
inline constexpr int Information = 64;

inline constexpr int DefaultButton1 = 0;
inline constexpr int DefaultButton2 = 256;
inline constexpr int DefaultButton3 = 512;

inline constexpr int OK = 1;
inline constexpr int Cancel = 2;
inline constexpr int Abort = 3;
inline constexpr int Retry = 4;
inline constexpr int Ignore = 5;
inline constexpr int Yes = 6;
inline constexpr int No = 7;

inline constexpr int ButtonSet(int style)
{
    return style & 0x7;
}
inline constexpr int Icon(int style)
{
    return style & 0x70;
}
inline constexpr int DefaultButton(int style)
{
    return style & 0x300;
}
} // namespace msg

// The screen pointer's values.
namespace pointer {
inline constexpr int Default = 0;
inline constexpr int Arrow = 1;
inline constexpr int Hourglass = 11;
} // namespace pointer

// The error number of a cancelled file dialog; callers that report errors by number use it.
inline constexpr int CancelError = 32755;

// A common file dialog. The filter is in the classic form "Description|pattern|..." with an
// optional trailing bar; filterIndex counts from 1.
struct FileDialogRequest {
    QString title{};
    QString filter{};
    int filterIndex = 1;
    QString initialDir{};
    QString fileName{};
    QString defaultExt{}; // appended to a name typed without an extension (save only)
};

// Every exchange with the user that blocks a handler goes through here: message and input
// boxes, file and folder dialogs, modal windows, the clipboard and the screen pointer. Forms
// call UI(); tests put a ScriptedInteraction in its place.
class Interaction {
public:
    virtual ~Interaction() = default;

    // Returns the answer (msg::OK ... msg::No). An empty title means the program's name.
    int MsgBox(const QString &prompt, int style = msg::OKOnly, const QString &title = {});
    // Returns the text typed, or an empty text on cancel.
    QString InputBox(const QString &prompt, const QString &title = {},
                     const QString &defaultText = {});
    // Return the chosen path, or nothing when the user cancelled (error CancelError).
    virtual std::optional<QString> GetOpenFileName(const FileDialogRequest &request) = 0;
    virtual std::optional<QString> GetSaveFileName(const FileDialogRequest &request) = 0;
    virtual std::optional<QString> BrowseForFolder(const QString &title,
                                                   const QString &initialDir) = 0;

    // Shows a form modally and returns when it is hidden or closed. The caller then reads the
    // form's controls and unloads it.
    virtual void ShowModal(QWidget *form) = 0;

    virtual QString ClipboardText() = 0;
    virtual void SetClipboardText(const QString &text) = 0;

    // The screen pointer, one for the whole program (pointer::Default, Hourglass, ...).
    virtual void SetMousePointer(int pointer) = 0;
    virtual int MousePointer() const = 0;

    // Hands an address of the web to the user's own browser: the program never shows the web.
    virtual void OpenInUserBrowser(const QUrl &url) = 0;

protected:
    // Receive the title already resolved.
    virtual int showMessage(const QString &prompt, int style, const QString &title) = 0;
    virtual QString showInput(const QString &prompt, const QString &title,
                              const QString &defaultText) = 0;
};

// The current facade. Fatal when none is installed.
Interaction &UI();

// Installs a facade for the life of the scope and puts the previous one back after.
class InteractionScope {
public:
    explicit InteractionScope(Interaction &ui);
    ~InteractionScope();
    InteractionScope(const InteractionScope &) = delete;
    InteractionScope &operator=(const InteractionScope &) = delete;

private:
    Interaction *m_previous;
};

// A user who answers from a script, in order, and a record of everything asked. A call whose
// kind doesn't match the next scripted step (or with the script used up) is recorded in
// unexpectedCalls() and answered with a cancel: msg::Cancel, an empty text, no path, and a
// modal form left untouched.
class ScriptedInteraction : public Interaction {
public:
    enum class Kind { MsgBox, InputBox, OpenFile, SaveFile, BrowseFolder, Modal };

    struct Call {
        Kind kind{};
        QString text{};  // prompt of a box
        QString title{}; // of a box (resolved) or of a dialog
        int style = 0;   // full style of a message box
        int buttons = 0;
        int icon = 0;
        int defaultButton = 0;
        QString defaultText{};       // of an input box
        FileDialogRequest request{}; // of a file dialog; initialDir for a folder dialog
        QWidget *form = nullptr;     // of a modal show
    };

    using ModalScript = std::function<void(QWidget *form)>;

    ScriptedInteraction &answerMsgBox(int answer);
    ScriptedInteraction &answerInputBox(const QString &text);
    ScriptedInteraction &answerOpenFile(const QString &path);
    ScriptedInteraction &answerSaveFile(const QString &path);
    ScriptedInteraction &answerFolder(const QString &path);
    // Pass nothing (std::nullopt) to cancel.
    ScriptedInteraction &answerOpenFile(std::nullopt_t);
    ScriptedInteraction &answerSaveFile(std::nullopt_t);
    ScriptedInteraction &answerFolder(std::nullopt_t);
    // The script acts as the user while the form is up: it may fill and click its controls.
    // The form isn't shown by the facade.
    ScriptedInteraction &onModal(ModalScript script);

    const QList<Call> &calls() const { return m_calls; }
    const QList<Call> &unexpectedCalls() const { return m_unexpected; }
    qsizetype pendingAnswers() const { return qsizetype(m_script.size()); }
    // Every pointer value set, in order.
    const QList<int> &pointerHistory() const { return m_pointers; }

    std::optional<QString> GetOpenFileName(const FileDialogRequest &request) override;
    std::optional<QString> GetSaveFileName(const FileDialogRequest &request) override;
    std::optional<QString> BrowseForFolder(const QString &title,
                                           const QString &initialDir) override;
    void ShowModal(QWidget *form) override;
    QString ClipboardText() override { return m_clipboard; }
    void SetClipboardText(const QString &text) override { m_clipboard = text; }
    void SetMousePointer(int pointer) override;
    int MousePointer() const override { return m_pointer; }
    void OpenInUserBrowser(const QUrl &url) override { m_opened.append(url); }
    // Every address handed to the user's browser, in order.
    const QList<QUrl> &openedInUserBrowser() const { return m_opened; }

protected:
    int showMessage(const QString &prompt, int style, const QString &title) override;
    QString showInput(const QString &prompt, const QString &title,
                      const QString &defaultText) override;

private:
    using Answer = std::variant<int, QString, std::optional<QString>, ModalScript>;
    struct Step {
        Kind kind;
        Answer answer;
    };

    ScriptedInteraction &push(Kind kind, Answer answer);
    // The next step's answer if it is of this kind; else records the call as unexpected.
    std::optional<Answer> take(const Call &call);
    std::optional<QString> fileDialog(Kind kind, const FileDialogRequest &request);

    std::deque<Step> m_script;
    QList<Call> m_calls;
    QList<Call> m_unexpected;
    QList<int> m_pointers;
    QString m_clipboard;
    int m_pointer = pointer::Default;
    QList<QUrl> m_opened;
};

} // namespace lx
