#pragma once

#include "core/store/errors.h"
#include "core/store/types.h"
#include "support/empty_ontology.h"
#include "support/scripted_user.h"

// An ontology as the process's open one, with three languages (English and German shown,
// French not), the subset "General" and a scripted user for the boxes.
class EditTest : public EmptyOntologyTest {
protected:
    void SetUp() override
    {
        EmptyOntologyTest::SetUp();
        lx::Process().OntoMeta.DefLang = QStringLiteral("en");
        lx::Process().OntoMeta.ActiveSet = 1;
        addLanguage(QStringLiteral("en"), QStringLiteral("English"), true);
        addLanguage(QStringLiteral("fr"), QStringLiteral("French"), false);
        addLanguage(QStringLiteral("de"), QStringLiteral("German"), true);
        addSubset(1, QStringLiteral("General"));
    }
    void addLanguage(const QString &code, const QString &name, bool show)
    {
        addRow(QStringLiteral("Languages"),
               {{u"Lang_ID", code}, {u"Language", name}, {u"Show", show}});
    }
    void addSubset(int id, const QString &name)
    {
        addRow(QStringLiteral("Subsets"), {{u"Subset_ID", id}, {u"Subset", name}});
    }
    void addConcept(const QString &id, int subset = 1)
    {
        addRow(QStringLiteral("CONCEPTS"), {{u"Concept", id},
                                            {u"Definition", QStringLiteral("Undefined")},
                                            {u"Type", 1},
                                            {u"Subset_ID", subset}});
    }

    lx::test::ScriptedUser user;
};
