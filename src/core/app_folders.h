#pragma once

#include <QString>

#include <functional>

namespace lx {

// The folder AppPath gives, without a trailing separator: home (LEXARBOR_HOME) when set, else
// the executable's folder when it can be written, else the user's data folder (an installed
// copy). The check of the folder is passed in, so that a read-only folder can be stood for
// where permissions don't hold (root).
QString ResolveAppPath(const QString &home, const QString &programFolder,
                       const std::function<bool(const QString &)> &writable,
                       const QString &dataFolder);
// The user's data folder the program falls back to, ~/.local/share/Lexarbor by default; the
// window program's AppDataLocation, shared by the console program under its own name.
QString UserDataFolder();
// share/lexarbor beside the executable's bin folder: the seed and help files installed with the
// program, absent in a build folder.
QString SharedDataFolder();

} // namespace lx
