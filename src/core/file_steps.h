#pragma once

#include <QString>

#include <exception>

// Small steps on files and folders that the life cycles of both kinds of file share.
namespace lx {

// The runtime error of a folder that can't be made.
inline constexpr int PathFileAccessError = 75;

// The path less the file title, with its trailing separator.
QString FolderOf(const QString &path);

// Makes the folder (one level) unless it is there; StoreError 75 "Path/File access error"
// when it can't be made.
void CreateFolderIfMissing(const QString &folder);

// Runs one statement of a routine that goes on whatever fails.
template <class Step> void IgnoreErrors(Step &&step)
{
    try {
        step();
    } catch (const std::exception &) {
        // Ignored: the next statement runs regardless.
    }
}

} // namespace lx
