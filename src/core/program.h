#pragma once

#include <QString>

namespace lx {

// The program's name: the default title of every message and input box.
inline QString ProgramName()
{
    return QStringLiteral("Lexarbor");
}

// major.minor.revision, from the build's version number.
inline QString ProgramVersion()
{
    return QStringLiteral("%1.%2.%3")
        .arg(LEXARBOR_VERSION_MAJOR)
        .arg(LEXARBOR_VERSION_MINOR)
        .arg(LEXARBOR_VERSION_PATCH);
}

} // namespace lx
