#include "cli/console_interaction.h"

#include <cstdio>

namespace lx::cli {

int ConsoleInteraction::showMessage(const QString &prompt, int style, const QString &title)
{
    ++Messages;
    if (!Quiet) {
        QString line = prompt;
        line.replace(QStringLiteral("\r\n"), QStringLiteral(" "));
        std::fprintf(stderr, "%s: %s\n", qUtf8Printable(title), qUtf8Printable(line));
    }
    switch (msg::ButtonSet(style)) {
    case msg::YesNo:
    case msg::YesNoCancel:
        return AnswerYes ? msg::Yes : msg::No;
    case msg::OKCancel:
        return AnswerYes ? msg::OK : msg::Cancel;
    default:
        return msg::OK;
    }
}

// The default text stands for the answer: the console has nobody to type another.
QString ConsoleInteraction::showInput(const QString &, const QString &, const QString &defaultText)
{
    return defaultText;
}

} // namespace lx::cli
