#pragma once

#include "core/store/recordset.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

// Subsets of the open ontology: the table Subsets, the active subset in OntoMeta.ActiveSet,
// and the moving of concepts from one subset to another. A concept belongs to one subset, and
// removing a subset removes its concepts by the store's cascade.
namespace lx {

// A subset as the options dialog lists it.
struct SubsetRow {
    QString Subset;
    long Count = 0;
};
// All subsets in order of Subset_ID, with their concept counts.
QList<SubsetRow> ReadSubsets();
// The subset names in the table's own order, for the transfer's lists.
QStringList ReadSubsetNames();

// The lowest Subset_ID from 2 to 127 that no subset holds.
std::optional<int> FreeSubsetId();
// The add of the options dialog with its checks and messages; true when the subset was added.
bool AddSubset(const QString &name);
// The named subset becomes the active one; false, after the critical box, if it isn't there.
bool ActivateSubset(const QString &name);
// Asks first; unless the answer is No, the subset goes and its concepts with it. True if it
// went.
bool RemoveSubset(const QString &name);

// The header of the transfer's list: "3 Concepts in General subset".
QString TransferHeader(long count, const QString &subset);

// The concepts of the transfer's source subset, kept open while the dialog shows them, and
// the move of the ticked ones to the target.
class SubsetTransfer {
public:
    // Opens the subset's concepts in identifier order and returns them.
    QStringList OpenSource(int subsetId);
    bool HasRows() const;
    // Moves each of `ticked` still in the source to `targetId`; returns how many moved.
    int Transfer(const QStringList &ticked, int targetId);
    void Close();

private:
    store::Recordset m_rs;
};

} // namespace lx
