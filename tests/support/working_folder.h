#pragma once

#include <QDir>
#include <QTemporaryDir>

// A working directory of its own for the life of the object, removed afterwards: what the code
// writes to a relative path (a publish folder made from an empty folder name) lands there.
class WorkingFolder {
public:
    WorkingFolder() : m_old(QDir::currentPath()) { QDir::setCurrent(m_dir.path()); }
    ~WorkingFolder() { QDir::setCurrent(m_old); }
    WorkingFolder(const WorkingFolder &) = delete;
    WorkingFolder &operator=(const WorkingFolder &) = delete;

    QString filePath(const QString &name) const { return m_dir.filePath(name); }

private:
    QTemporaryDir m_dir;
    QString m_old;
};
