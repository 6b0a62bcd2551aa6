#pragma once

#include "publish/html_stuff.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

// The open ontology read whole, once, for a run that writes the page of every concept: each
// table in one pass instead of a handful of queries per page, and the inherited slots worked
// out in memory instead of row by row in Inherit.
namespace lx {

// Answers as the store and the inheritance engine would, as long as nothing but Inherit is
// written while it lives. The rows of Inherit are kept in memory, beginning with those in the
// table, and go on from one computation to the next as in the table, so that a direct child of
// the top concept shows what the computation before it left.
class WholeOntologySource final : public ConceptPageSource {
public:
    // Reads CONCEPTS, ISA, RELATIONS, ATTRIBUTES and Inherit of the open ontology.
    WholeOntologySource();
    ~WholeOntologySource() override;
    WholeOntologySource(const WholeOntologySource &) = delete;
    WholeOntologySource &operator=(const WholeOntologySource &) = delete;

    // The identifiers of CONCEPTS in the order of the table.
    const QStringList &concepts() const;

    QString definition(const QString &identifier) override;
    QStringList parents(const QString &identifier) override;
    QStringList children(const QString &identifier) override;
    QStringList descendants(const QString &identifier) override;
    QStringList ancestors(const QString &identifier) override;
    std::vector<PageSlot> relations(const QString &identifier) override;
    std::vector<PageSlot> attributes(const QString &identifier) override;
    std::vector<InheritRow> inherited(const QString &identifier, const QString &include) override;

    // Writes the rows held for Inherit into the table, as the engine would have left it, once
    // a computation has changed them.
    void storeInherit();

private:
    struct Data;
    std::unique_ptr<Data> d;
};

} // namespace lx
