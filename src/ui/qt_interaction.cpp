#include "ui/qt_interaction.h"

#include "ui/window_place.h"

#include <QApplication>
#include <QClipboard>
#include <QDesktopServices>
#include <QDialog>
#include <QEventLoop>
#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QPointer>

#include <array>
#include <utility>

namespace lx::ui {

namespace {

using Button = QMessageBox::StandardButton;

// The buttons of each classic set, in the order the default-button flag counts them.
QList<Button> ButtonsOf(int style)
{
    switch (msg::ButtonSet(style)) {
    case msg::OKCancel:
        return {QMessageBox::Ok, QMessageBox::Cancel};
    case msg::AbortRetryIgnore:
        return {QMessageBox::Abort, QMessageBox::Retry, QMessageBox::Ignore};
    case msg::YesNoCancel:
        return {QMessageBox::Yes, QMessageBox::No, QMessageBox::Cancel};
    case msg::YesNo:
        return {QMessageBox::Yes, QMessageBox::No};
    case msg::RetryCancel:
        return {QMessageBox::Retry, QMessageBox::Cancel};
    default:
        return {QMessageBox::Ok};
    }
}

int AnswerOf(int button)
{
    constexpr std::array<std::pair<Button, int>, 7> answers{{
        {QMessageBox::Ok, msg::OK},
        {QMessageBox::Cancel, msg::Cancel},
        {QMessageBox::Abort, msg::Abort},
        {QMessageBox::Retry, msg::Retry},
        {QMessageBox::Ignore, msg::Ignore},
        {QMessageBox::Yes, msg::Yes},
        {QMessageBox::No, msg::No},
    }};
    for (const auto &[qt, answer] : answers) {
        if (qt == button)
            return answer;
    }
    return msg::Cancel;
}

QMessageBox::Icon IconOf(int style)
{
    switch (msg::Icon(style)) {
    case msg::Critical:
        return QMessageBox::Critical;
    case msg::Question:
        return QMessageBox::Question;
    case msg::Exclamation:
        return QMessageBox::Warning;
    case msg::Information:
        return QMessageBox::Information;
    default:
        return QMessageBox::NoIcon;
    }
}

Qt::CursorShape ShapeOf(int pointer)
{
    switch (pointer) {
    case 2:
        return Qt::CrossCursor;
    case 3:
        return Qt::IBeamCursor;
    case pointer::Hourglass:
        return Qt::WaitCursor;
    case 13:
        return Qt::BusyCursor;
    default:
        return Qt::ArrowCursor;
    }
}

// Ends a modal loop when its form is hidden (closed, or hidden by its own handler).
class HideWatcher : public QObject {
public:
    explicit HideWatcher(QEventLoop &loop) : m_loop(loop) {}

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Hide)
            m_loop.quit();
        return QObject::eventFilter(watched, event);
    }

private:
    QEventLoop &m_loop;
};

std::optional<QString> RunFileDialog(QFileDialog &dialog, const FileDialogRequest &request)
{
    dialog.setWindowTitle(request.title);
    const QStringList filters = NameFilters(request.filter);
    if (!filters.isEmpty()) {
        dialog.setNameFilters(filters);
        dialog.selectNameFilter(filters.value(request.filterIndex - 1, filters.first()));
    }
    if (!request.initialDir.isEmpty())
        dialog.setDirectory(request.initialDir);
    if (!request.fileName.isEmpty())
        dialog.selectFile(request.fileName);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return std::nullopt;
    return dialog.selectedFiles().first();
}

} // namespace

QStringList NameFilters(const QString &classicFilter)
{
    QStringList parts = classicFilter.split(QLatin1Char('|'));
    if (!parts.isEmpty() && parts.last().isEmpty())
        parts.removeLast();
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        const QString description = parts[i].trimmed();
        const QString patterns = QString(parts[i + 1]).replace(QLatin1Char(';'), QLatin1Char(' '));
        // The toolkit takes the patterns from the last parentheses, so a description that
        // names other patterns than it applies keeps its text and gets the real ones added.
        const QString applied = QStringLiteral(" (%1)").arg(patterns);
        filters << (description.endsWith(applied) ? description : description + applied);
    }
    return filters;
}

int QtInteraction::showMessage(const QString &prompt, int style, const QString &title)
{
    QMessageBox box(IconOf(style), title, prompt, QMessageBox::NoButton,
                    QApplication::activeWindow());
    const QList<Button> buttons = ButtonsOf(style);
    for (Button button : buttons)
        box.addButton(button);
    const qsizetype defaultIndex = msg::DefaultButton(style) / msg::DefaultButton2;
    box.setDefaultButton(buttons.value(defaultIndex, buttons.first()));
    box.exec();
    return AnswerOf(box.standardButton(box.clickedButton()));
}

QString QtInteraction::showInput(const QString &prompt, const QString &title,
                                 const QString &defaultText)
{
    bool ok = false;
    const QString text = QInputDialog::getText(QApplication::activeWindow(), title, prompt,
                                               QLineEdit::Normal, defaultText, &ok);
    return ok ? text : QString();
}

std::optional<QString> QtInteraction::GetOpenFileName(const FileDialogRequest &request)
{
    QFileDialog dialog(QApplication::activeWindow());
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setFileMode(QFileDialog::ExistingFile);
    return RunFileDialog(dialog, request);
}

std::optional<QString> QtInteraction::GetSaveFileName(const FileDialogRequest &request)
{
    QFileDialog dialog(QApplication::activeWindow());
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    // Callers decide what an existing file means (the store refuses to create over one).
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    dialog.setDefaultSuffix(request.defaultExt);
    return RunFileDialog(dialog, request);
}

std::optional<QString> QtInteraction::BrowseForFolder(const QString &title,
                                                      const QString &initialDir)
{
    const QString folder =
        QFileDialog::getExistingDirectory(QApplication::activeWindow(), title, initialDir);
    if (folder.isEmpty())
        return std::nullopt;
    return folder;
}

void QtInteraction::ShowModal(QWidget *form)
{
    if (!form->isVisible())
        PlaceOver(*form, QApplication::activeWindow());
    if (auto *dialog = qobject_cast<QDialog *>(form)) {
        dialog->exec();
        return;
    }
    QEventLoop loop;
    HideWatcher watcher(loop);
    const QPointer<QWidget> guard(form);
    QObject::connect(form, &QObject::destroyed, &loop, &QEventLoop::quit);
    form->installEventFilter(&watcher);
    form->setWindowModality(Qt::ApplicationModal);
    form->show();
    loop.exec(QEventLoop::DialogExec);
    if (guard) {
        form->removeEventFilter(&watcher);
        form->setWindowModality(Qt::NonModal);
    }
}

QString QtInteraction::ClipboardText()
{
    return QGuiApplication::clipboard()->text();
}

void QtInteraction::SetClipboardText(const QString &text)
{
    QGuiApplication::clipboard()->setText(text);
}

void QtInteraction::OpenInUserBrowser(const QUrl &url)
{
    QDesktopServices::openUrl(url);
}

void QtInteraction::SetMousePointer(int pointer)
{
    m_pointer = pointer;
    if (pointer == pointer::Default) {
        while (QGuiApplication::overrideCursor())
            QGuiApplication::restoreOverrideCursor();
        return;
    }
    const QCursor cursor(ShapeOf(pointer));
    if (QGuiApplication::overrideCursor())
        QGuiApplication::changeOverrideCursor(cursor);
    else
        QGuiApplication::setOverrideCursor(cursor);
}

} // namespace lx::ui
