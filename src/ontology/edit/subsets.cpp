#include "ontology/edit/subsets.h"

#include "core/interaction.h"
#include "core/process.h"
#include "core/store/types.h"
#include "ontology/store/lookups.h"

namespace lx {

using namespace store;

namespace {

constexpr int FirstFreeSubsetId = 2;
constexpr int LastSubsetId = 127;
constexpr int MaxSubsetName = 65;

Recordset OpenSubsets(const QString &index)
{
    Recordset rs = Process().OntoDB.OpenRecordset(QStringLiteral("Subsets"), dbOpenTable);
    rs.SetIndex(index);
    return rs;
}

// The add's checks before the table is touched; false after the message.
bool CheckNewSubsetName(const QString &name)
{
    if (name.isEmpty()) {
        UI().MsgBox(QStringLiteral("Enter a name for the new subset in the box. Then press 'Add'"),
                    msg::Information);
        return false;
    }
    if (name.size() > MaxSubsetName) {
        UI().MsgBox(QStringLiteral("Subset name too long. Max: 65 chars."), msg::Exclamation);
        return false;
    }
    return true;
}

} // namespace

QList<SubsetRow> ReadSubsets()
{
    QList<std::pair<int, QString>> subsets;
    Recordset rs = OpenSubsets(QStringLiteral("Subset_ID"));
    for (; !rs.Eof(); rs.MoveNext())
        subsets.append({rs.Value(u"Subset_ID").toInt(), rs.Fields(u"Subset").Text()});
    rs.Close();
    QList<SubsetRow> rows;
    for (const auto &[id, name] : subsets)
        rows.append({name, CountSubset(id)});
    return rows;
}

QStringList ReadSubsetNames()
{
    QStringList names;
    Recordset rs = Process().OntoDB.OpenRecordset(QStringLiteral("Subsets"), dbOpenTable);
    for (; !rs.Eof(); rs.MoveNext())
        names.append(rs.Fields(u"Subset").Text());
    rs.Close();
    return names;
}

std::optional<int> FreeSubsetId()
{
    for (int id = FirstFreeSubsetId; id <= LastSubsetId; ++id) {
        if (SubsetNameOf(id) == QLatin1String("Error"))
            return id;
    }
    return std::nullopt;
}

bool AddSubset(const QString &name)
{
    if (!CheckNewSubsetName(name))
        return false;
    const std::optional<int> id = FreeSubsetId();
    if (!id) {
        UI().MsgBox(QStringLiteral("You can't define more than 127 subsets for one ontology!\n"
                                   "Consider merging and removing existing subsets."),
                    msg::Exclamation, QStringLiteral("Limit reached"));
        return false;
    }
    Recordset rs = OpenSubsets(QStringLiteral("Subset"));
    rs.Seek(u"=", name);
    if (!rs.NoMatch()) {
        UI().MsgBox(QStringLiteral("Subset exists already!"), msg::Exclamation,
                    QStringLiteral("Error"));
        return false;
    }
    rs.AddNew();
    rs.Collect(u"subset_ID", *id);
    rs.Collect(u"Subset", name);
    rs.Update();
    rs.SetIndex(QStringLiteral("Subset_ID"));
    rs.Close();
    return true;
}

bool ActivateSubset(const QString &name)
{
    Recordset rs = OpenSubsets(QStringLiteral("Subset"));
    rs.Seek(u"=", name);
    const bool found = !rs.NoMatch();
    if (found)
        Process().OntoMeta.ActiveSet = quint8(rs.Value(u"subset_ID").toInt());
    rs.Close();
    if (!found)
        UI().MsgBox(QStringLiteral("Critical error. Please Report. Error Code LX005"));
    return found;
}

bool RemoveSubset(const QString &name)
{
    const int answer =
        UI().MsgBox(QStringLiteral("Are you sure you want to remove subset \n") + name +
                        QStringLiteral("?\nAll concepts assigned to this subset "
                                       "will also be removed!"),
                    msg::YesNo);
    if (answer == msg::No)
        return false;
    const int id = SubsetIdOf(name);
    Recordset rs = OpenSubsets(QStringLiteral("Subset_ID"));
    rs.Seek(u"=", id);
    rs.Edit();
    rs.Delete();
    rs.Close();
    return true;
}

QString TransferHeader(long count, const QString &subset)
{
    return QString::number(count) + QStringLiteral(" Concepts in ") + subset +
           QStringLiteral(" subset");
}

QStringList SubsetTransfer::OpenSource(int subsetId)
{
    m_rs = Process().OntoDB.OpenRecordset(QStringLiteral("SELECT Concept, Subset_ID ") +
                                              QStringLiteral("FROM CONCEPTS WHERE Subset_ID = ") +
                                              QString::number(subsetId) +
                                              QStringLiteral(" ORDER BY CONCEPT"),
                                          dbOpenDynaset);
    QStringList concepts;
    for (; !m_rs.Eof(); m_rs.MoveNext())
        concepts.append(m_rs.Fields(u"Concept").Text());
    if (!concepts.isEmpty())
        m_rs.MoveFirst();
    return concepts;
}

bool SubsetTransfer::HasRows() const
{
    return m_rs.isOpen() && m_rs.RecordCount() > 0;
}

int SubsetTransfer::Transfer(const QStringList &ticked, int targetId)
{
    const QString &quote = Process().Quote;
    int moved = 0;
    for (const QString &identifier : ticked) {
        m_rs.FindFirst(QStringLiteral("Concept = ") + quote + identifier + quote);
        if (m_rs.NoMatch())
            continue;
        m_rs.Edit();
        m_rs.Collect(u"subset_ID", targetId);
        m_rs.Update();
        ++moved;
    }
    return moved;
}

void SubsetTransfer::Close()
{
    if (m_rs.isOpen())
        m_rs.Close();
}

} // namespace lx
