#pragma once

#include "support/empty_ontology.h"

// An empty ontology, and concepts and IS-A links added one by one.
class OntologyTest : public EmptyOntologyTest {
protected:
    void addConcept(const QString &id, int type = 1,
                    const QVariant &definition = QStringLiteral("Undefined"),
                    const QVariant &subset = QVariant())
    {
        addRow(QStringLiteral("CONCEPTS"), {{u"Concept", id},
                                            {u"Definition", definition},
                                            {u"Type", type},
                                            {u"Subset_ID", subset}});
    }

    // One IS-A link: `child` is a `parent`.
    void link(const QString &child, const QString &parent)
    {
        addRow(QStringLiteral("ISA"), {{u"Concept", child}, {u"ISA", parent}});
    }
};
