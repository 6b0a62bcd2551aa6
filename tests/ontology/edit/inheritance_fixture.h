#pragma once

#include "ontology/edit/inheritance.h"
#include "support/empty_ontology.h"

#include <QSet>

#include <ostream>

namespace lx {
inline void PrintTo(const InheritRow &row, std::ostream *os)
{
    *os << '(' << row.Attr.toStdString() << ", " << row.Value.toStdString() << ", "
        << row.From.toStdString() << ')';
}
} // namespace lx

// An empty ontology under the top concept "ALL" as the process's open ontology, Inherit held
// open as the life cycle holds it, and helpers that add concepts on first mention.
class InheritanceTest : public EmptyOntologyTest {
protected:
    void SetUp() override
    {
        using namespace lx::store;
        EmptyOntologyTest::SetUp();
        lx::Process().TopConcept = QStringLiteral("ALL");
        lx::Process().rsInherit = db.OpenRecordset(QStringLiteral("Inherit"), dbOpenTable);
        lx::Process().rsInherit.SetIndex(QStringLiteral("Attr"));
        addConcept(QStringLiteral("ALL"), 100);
        addConcept(lx::kNothing);
    }
    void addConcept(const QString &id, int type = 1)
    {
        if (known.contains(id))
            return;
        known.insert(id);
        addRow(QStringLiteral("CONCEPTS"), {{u"Concept", id}, {u"Type", type}});
    }

    // `child` is a `parent`.
    void isa(const QString &child, const QString &parent)
    {
        addConcept(child);
        addConcept(parent);
        addRow(QStringLiteral("ISA"), {{u"Concept", child}, {u"ISA", parent}});
    }

    void relation(const QString &c1, const QString &rel, const QString &c2, bool isDefault = false)
    {
        addConcept(c1);
        addConcept(rel, 4);
        addConcept(c2);
        addRow(QStringLiteral("RELATIONS"),
               {{u"Concept1", c1}, {u"Rel", rel}, {u"Default", isDefault}, {u"Concept2", c2}});
    }

    void attribute(const QString &c, const QString &attr, const QVariant &value,
                   const QVariant &isDefault = false)
    {
        addConcept(c);
        addConcept(attr, 3);
        addRow(QStringLiteral("ATTRIBUTES"),
               {{u"Concept", c}, {u"Attribute", attr}, {u"Default", isDefault}, {u"Value", value}});
    }

    void addInheritRow(const lx::InheritRow &row)
    {
        addRow(QStringLiteral("Inherit"),
               {{u"Attr", row.Attr}, {u"Value", row.Value}, {u"From", row.From}});
    }

    QSet<QString> known;
};
