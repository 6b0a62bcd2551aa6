#pragma once

#include "ontology/store/seed.h"

#include <QFile>
#include <QTemporaryDir>

// A program folder of its own (LEXARBOR_HOME) for the life of the object, holding the seed file
// unless told otherwise: new ontologies made there start from the seed. Needs
// lexarbor_seed_data.
class SeedHome {
public:
    explicit SeedHome(bool withSeed = true) : m_oldHome(qgetenv("LEXARBOR_HOME"))
    {
        qputenv("LEXARBOR_HOME", QFile::encodeName(m_dir.path()));
        if (withSeed)
            lx::EnsureSeedFile();
    }
    ~SeedHome()
    {
        if (m_oldHome.isNull())
            qunsetenv("LEXARBOR_HOME");
        else
            qputenv("LEXARBOR_HOME", m_oldHome);
    }
    SeedHome(const SeedHome &) = delete;
    SeedHome &operator=(const SeedHome &) = delete;

    QString path(const QString &name) const { return m_dir.filePath(name); }

private:
    QByteArray m_oldHome;
    QTemporaryDir m_dir;
};
