#include "core/interaction.h"

#include "core/program.h"

#include <QtGlobal>

namespace lx {

namespace {

Interaction *g_current = nullptr;

QString OrProgramName(const QString &title)
{
    return title.isEmpty() ? ProgramName() : title;
}

const char *KindName(ScriptedInteraction::Kind kind)
{
    using Kind = ScriptedInteraction::Kind;
    switch (kind) {
    case Kind::MsgBox:
        return "message box";
    case Kind::InputBox:
        return "input box";
    case Kind::OpenFile:
        return "open dialog";
    case Kind::SaveFile:
        return "save dialog";
    case Kind::BrowseFolder:
        return "folder dialog";
    case Kind::Modal:
        return "modal form";
    }
    return "?";
}

} // namespace

int Interaction::MsgBox(const QString &prompt, int style, const QString &title)
{
    return showMessage(prompt, style, OrProgramName(title));
}

QString Interaction::InputBox(const QString &prompt, const QString &title,
                              const QString &defaultText)
{
    return showInput(prompt, OrProgramName(title), defaultText);
}

Interaction &UI()
{
    if (!g_current)
        qFatal("No interaction facade installed");
    return *g_current;
}

InteractionScope::InteractionScope(Interaction &ui) : m_previous(g_current)
{
    g_current = &ui;
}

InteractionScope::~InteractionScope()
{
    g_current = m_previous;
}

// --- ScriptedInteraction ---------------------------------------------------------------------

ScriptedInteraction &ScriptedInteraction::push(Kind kind, Answer answer)
{
    m_script.push_back({kind, std::move(answer)});
    return *this;
}

ScriptedInteraction &ScriptedInteraction::answerMsgBox(int answer)
{
    return push(Kind::MsgBox, answer);
}

ScriptedInteraction &ScriptedInteraction::answerInputBox(const QString &text)
{
    return push(Kind::InputBox, text);
}

ScriptedInteraction &ScriptedInteraction::answerOpenFile(const QString &path)
{
    return push(Kind::OpenFile, std::optional<QString>(path));
}

ScriptedInteraction &ScriptedInteraction::answerSaveFile(const QString &path)
{
    return push(Kind::SaveFile, std::optional<QString>(path));
}

ScriptedInteraction &ScriptedInteraction::answerFolder(const QString &path)
{
    return push(Kind::BrowseFolder, std::optional<QString>(path));
}

ScriptedInteraction &ScriptedInteraction::answerOpenFile(std::nullopt_t)
{
    return push(Kind::OpenFile, std::optional<QString>());
}

ScriptedInteraction &ScriptedInteraction::answerSaveFile(std::nullopt_t)
{
    return push(Kind::SaveFile, std::optional<QString>());
}

ScriptedInteraction &ScriptedInteraction::answerFolder(std::nullopt_t)
{
    return push(Kind::BrowseFolder, std::optional<QString>());
}

ScriptedInteraction &ScriptedInteraction::onModal(ModalScript script)
{
    return push(Kind::Modal, std::move(script));
}

std::optional<ScriptedInteraction::Answer> ScriptedInteraction::take(const Call &call)
{
    m_calls.append(call);
    if (m_script.empty() || m_script.front().kind != call.kind) {
        qWarning("Unscripted %s: \"%s\" (%s)", KindName(call.kind), qPrintable(call.text),
                 qPrintable(call.title));
        m_unexpected.append(call);
        return std::nullopt;
    }
    Answer answer = std::move(m_script.front().answer);
    m_script.pop_front();
    return answer;
}

int ScriptedInteraction::showMessage(const QString &prompt, int style, const QString &title)
{
    Call call{Kind::MsgBox, prompt, title};
    call.style = style;
    call.buttons = msg::ButtonSet(style);
    call.icon = msg::Icon(style);
    call.defaultButton = msg::DefaultButton(style);
    const auto answer = take(call);
    return answer ? std::get<int>(*answer) : msg::Cancel;
}

QString ScriptedInteraction::showInput(const QString &prompt, const QString &title,
                                       const QString &defaultText)
{
    Call call{Kind::InputBox, prompt, title};
    call.defaultText = defaultText;
    const auto answer = take(call);
    return answer ? std::get<QString>(*answer) : QString();
}

std::optional<QString> ScriptedInteraction::fileDialog(Kind kind, const FileDialogRequest &request)
{
    Call call{kind, {}, request.title};
    call.request = request;
    const auto answer = take(call);
    return answer ? std::get<std::optional<QString>>(*answer) : std::nullopt;
}

std::optional<QString> ScriptedInteraction::GetOpenFileName(const FileDialogRequest &request)
{
    return fileDialog(Kind::OpenFile, request);
}

std::optional<QString> ScriptedInteraction::GetSaveFileName(const FileDialogRequest &request)
{
    return fileDialog(Kind::SaveFile, request);
}

std::optional<QString> ScriptedInteraction::BrowseForFolder(const QString &title,
                                                            const QString &initialDir)
{
    FileDialogRequest request;
    request.title = title;
    request.initialDir = initialDir;
    return fileDialog(Kind::BrowseFolder, request);
}

void ScriptedInteraction::ShowModal(QWidget *form)
{
    Call call{Kind::Modal};
    call.form = form;
    if (const auto answer = take(call))
        std::get<ModalScript> (*answer)(form);
}

void ScriptedInteraction::SetMousePointer(int pointer)
{
    m_pointer = pointer;
    m_pointers.append(pointer);
}

} // namespace lx
