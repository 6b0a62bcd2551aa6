#pragma once

#include "core/process.h"
#include "ontology/store/lookups.h"
#include "ontology/store/schema.h"
#include "support/seed_home.h"
#include "support/working_folder.h"
#include "termbase/store/schema.h"

#include <QChar>

#include <gtest/gtest.h>

// An open ontology made from the seed in a program folder of its own, and the path of a new
// termbase beside it in the termbase folder. A refused open leaves the termbase folder empty and
// makes the termbase's own folders relative to the working directory, which is the test's own.
class TermbaseFixture : public ::testing::Test {
protected:
    void SetUp() override
    {
        lx::ResetProcessState();
        lx::ProcessState &p = lx::Process();
        p.Quote = QString(QChar(34));
        QDir().mkpath(lx::OntologiesFolder());
        QDir().mkpath(lx::TermBasesFolder());
        p.OntoPath = lx::OntologiesFolder() + QStringLiteral("work.ont");
        lx::CreateOntologySchema(p.OntoPath);
        p.TopConcept = lx::GetTopConcept();
    }
    void TearDown() override
    {
        lx::Process().OntoDB.Close();
        lx::ResetProcessState();
    }

    QString termbasePath() const { return lx::TermBasesFolder() + QStringLiteral("tb.ltb"); }

    lx::store::Database createTermbase()
    {
        lx::CreateTermbaseSchema(termbasePath());
        return lx::store::DBEngine::OpenDatabase(termbasePath());
    }

    SeedHome home;
    WorkingFolder cwd;
};
