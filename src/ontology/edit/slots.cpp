#include "ontology/edit/slots.h"

#include "core/interaction.h"
#include "core/process.h"
#include "core/store/database.h"
#include "core/store/errors.h"
#include "core/store/types.h"

namespace lx {

using namespace store;

namespace {

const QString kLineBreak = QStringLiteral("\r\n");
const QString kErrorTitle = QStringLiteral("Error");
const QString kConfirmDelete = QStringLiteral("Confirm Delete");
const QString kByDefault = QStringLiteral(" (by default)");

Recordset open(const QString &query, int type = dbOpenDynaset)
{
    return Process().OntoDB.OpenRecordset(query, type);
}

bool confirmDelete(const QString &prompt)
{
    return UI().MsgBox(prompt, msg::YesNo | msg::Exclamation, kConfirmDelete) != msg::No;
}

// The question before a slot of the list goes: what it is, then the concept and the item.
bool confirmItemDelete(const QString &what, const QString &owner, const QString &item)
{
    return confirmDelete(QStringLiteral("Confirm deletion of ") + what + QStringLiteral(":") +
                         kLineBreak + owner + QStringLiteral(" : ") + item);
}

// The first row of a dynaset goes, if it has one: one row, however many are equal.
void deleteFirstRow(const QString &query)
{
    Recordset rs = open(query);
    if (rs.RecordCount() > 0) {
        rs.MoveFirst();
        rs.Delete();
    }
    rs.Close();
}

long countRows(const QString &query)
{
    Recordset rs = open(query, dbOpenSnapshot);
    const long count = rs.RecordCount();
    rs.Close();
    return count;
}

void addRow(Recordset &rs, std::initializer_list<std::pair<QStringView, QString>> fields,
            bool isDefault)
{
    rs.AddNew();
    for (const auto &[name, value] : fields)
        rs.Collect(name, value);
    // An unticked box leaves the field as the table's default makes it.
    if (isDefault)
        rs.Collect(u"Default", true);
    rs.Update();
}

QString relationsOf(const QString &owner)
{
    return QStringLiteral("SELECT * FROM RELATIONS WHERE Concept1 = ") + Quoted(owner);
}

QString attributesOf(const QString &owner)
{
    return QStringLiteral("SELECT * FROM ATTRIBUTES WHERE Concept = ") + Quoted(owner);
}

QString domainsOf(const QString &owner)
{
    return relationsOf(owner) + QStringLiteral(" AND Rel = ") + Quoted(QStringLiteral("DOMAIN"));
}

// A relation's ranges are concepts in RELATIONS, an attribute's are values in ATTRIBUTES.
QString rangesOf(const QString &owner, int type)
{
    if (type == 4)
        return relationsOf(owner) + QStringLiteral(" AND Rel = ") + Quoted(QStringLiteral("RANGE"));
    return attributesOf(owner) + QStringLiteral(" AND Attribute = ") +
           Quoted(QStringLiteral("RANGE"));
}

QString relationTriple(const QString &concept1, const QString &rel, const QString &concept2)
{
    return QStringLiteral("Concept1 = ") + Quoted(concept1) + QStringLiteral(" AND Rel = ") +
           Quoted(rel) + QStringLiteral(" AND Concept2 = ") + Quoted(concept2);
}

QString attributeTriple(const QString &owner, const QString &attribute, const QString &value)
{
    return QStringLiteral("Concept = ") + Quoted(owner) + QStringLiteral(" AND Attribute = ") +
           Quoted(attribute) + QStringLiteral(" AND Value = ") + Quoted(value);
}

// The inverse of a relation from INVERSES, or nothing.
std::optional<QString> inverseOf(const QString &relation)
{
    Recordset rs = Process().OntoDB.OpenRecordset(QStringLiteral("INVERSES"), dbOpenTable);
    rs.SetIndex(QStringLiteral("Relation"));
    rs.Seek(u"=", relation);
    std::optional<QString> inverse;
    if (!rs.NoMatch())
        inverse = rs.Value(u"Inverse").toString();
    rs.Close();
    return inverse;
}

QString isaLinksOf(const QString &owner)
{
    return QStringLiteral("SELECT * FROM ISA WHERE Concept = ") + Quoted(owner) +
           QStringLiteral(" ORDER BY ISA");
}

QStringList isaColumn(Recordset &rs)
{
    QStringList parents;
    for (; !rs.Eof(); rs.MoveNext())
        parents.append(rs.Value(u"ISA").toString());
    return parents;
}

void tellIsaLinkExists()
{
    UI().MsgBox(QStringLiteral("ISA link exists."), msg::Exclamation);
}

} // namespace

// --- The slot dialog ---------------------------------------------------------------------------

QString EditRelMode(const QString &caption)
{
    static const std::pair<const char *, const char *> modes[] = {
        {"Add Relation", "AddRel"}, {"Add ISA link", "AddISA"},   {"Edit ISA link", "EditISA"},
        {"Add Domain", "DR"},       {"Add Range", "DR"},          {"Edit Domain", "DR"},
        {"Edit Range", "DR"},       {"Add Attribute", "AddAttr"}, {"Edit Attribute", "EditAttr"},
    };
    for (const auto &[text, mode] : modes) {
        if (caption == QLatin1String(text))
            return QString::fromLatin1(mode);
    }
    return {};
}

QString EditRelConceptQuery(const QString &mode, int type)
{
    const QString select = QStringLiteral("SELECT Concept, Type from CONCEPTS ");
    if (mode == QLatin1String("AddRel") || mode == QLatin1String("DR") ||
        mode == QLatin1String("AddAttr"))
        return select + QStringLiteral("WHERE Type <> 3 AND Type <> 4 ORDER By Concept");
    if (mode == QLatin1String("AddISA") || mode == QLatin1String("EditISA"))
        return select + QStringLiteral("WHERE Type = ") + QString::number(type) +
               QStringLiteral(" ORDER By Concept");
    if (mode == QLatin1String("EditAttr"))
        return select + QStringLiteral("WHERE Type = 1 Or Type = 2 Or Type = 5 ORDER By Concept");
    return {};
}

QString EditRelRelationQuery(const QString &mode)
{
    QString where;
    if (mode == QLatin1String("AddRel"))
        where = QStringLiteral("WHERE Type = 4");
    else if (mode == QLatin1String("AddAttr") || mode == QLatin1String("EditAttr"))
        where = QStringLiteral("WHERE Type = 3");
    else
        return {};
    return QStringLiteral("SELECT Concept From CONCEPTS ") + where +
           QStringLiteral(" ORDER BY Concept");
}

QStringList ReadConceptColumn(const QString &query)
{
    return ReadColumn(Process().OntoDB, query, u"Concept");
}

bool CheckSlotDialog(const SlotDialogTexts &texts)
{
    if (texts.ValueShown && texts.Value.isEmpty()) {
        UI().MsgBox(QStringLiteral("You must type in a value (literal or numerical)."),
                    msg::Exclamation, kErrorTitle);
        return false;
    }
    if (texts.RelatedShown && texts.Related.isEmpty()) {
        UI().MsgBox(QStringLiteral("You must select a related concept!"), msg::Exclamation,
                    kErrorTitle);
        return false;
    }
    if (texts.Related == texts.Concept) {
        UI().MsgBox(QStringLiteral("No relation can hold between a concept and itself!"),
                    msg::Information, kErrorTitle);
        return false;
    }
    return true;
}

SlotAdd AddRelationSlot(const SlotDialogTexts &texts)
{
    Recordset rs = open(relationsOf(texts.Concept));
    if (texts.Isa.isEmpty() && texts.Relation.isEmpty()) {
        UI().MsgBox(QStringLiteral("You must select a relation!"), msg::Exclamation);
        return SlotAdd::Refused;
    }
    rs.FindFirst(relationTriple(texts.Concept, texts.Relation, texts.Related));
    if (!rs.NoMatch()) {
        UI().MsgBox(QStringLiteral("Relation exists."), msg::Critical, kErrorTitle);
        rs.Close();
        return SlotAdd::Exists;
    }
    const std::optional<QString> inverse = inverseOf(texts.Relation);
    if (!inverse) {
        UI().MsgBox(QStringLiteral("Data integrity error. Inverse relation of ") + texts.Relation +
                        QStringLiteral(" can't be found.") + kLineBreak +
                        QStringLiteral("Error Code LX001."),
                    msg::Critical);
        rs.Close();
        return SlotAdd::Refused;
    }
    addRow(rs,
           {{u"Concept1", texts.Concept}, {u"Rel", texts.Relation}, {u"Concept2", texts.Related}},
           texts.Default);
    // The dynaset holds the concept's own rows only, so the mirror is never found there: it is
    // always written, a second copy where one existed.
    rs.FindFirst(relationTriple(texts.Related, *inverse, texts.Concept));
    if (rs.NoMatch())
        addRow(rs, {{u"Concept1", texts.Related}, {u"Rel", *inverse}, {u"Concept2", texts.Concept}},
               texts.Default);
    rs.Close();
    return SlotAdd::Added;
}

SlotAdd AddAttributeSlot(const SlotDialogTexts &texts)
{
    Recordset rs = open(attributesOf(texts.Concept));
    if (texts.Relation.isEmpty()) {
        UI().MsgBox(QStringLiteral("You must select an attribute!"), msg::Exclamation, kErrorTitle);
        return SlotAdd::Refused;
    }
    rs.FindFirst(attributeTriple(texts.Concept, texts.Relation, texts.Value));
    SlotAdd outcome = SlotAdd::Added;
    if (rs.NoMatch()) {
        addRow(
            rs,
            {{u"Concept", texts.Concept}, {u"Attribute", texts.Relation}, {u"Value", texts.Value}},
            texts.Default);
    } else {
        UI().MsgBox(QStringLiteral("Attribute-value pair exists."), msg::Critical, kErrorTitle);
        outcome = SlotAdd::Exists;
    }
    rs.Close();
    return outcome;
}

// --- The editor's popups -----------------------------------------------------------------------

SlotItem SplitSlotItem(const QString &item)
{
    const qsizetype colon = item.indexOf(QLatin1Char(':'));
    const qsizetype leftLength = colon - 1; // the blank before the colon stays out
    if (leftLength < 0)
        throw StoreError::make(err::InvalidProcedureCall);
    SlotItem parts;
    parts.Left = item.left(leftLength);
    parts.Right = item.mid(leftLength + 3);
    return parts;
}

long RelationSlotCount(const QString &owner)
{
    return countRows(relationsOf(owner) + QStringLiteral(" ORDER BY Rel"));
}

long DomainCount(const QString &owner)
{
    return countRows(domainsOf(owner) + QStringLiteral("ORDER BY Concept2"));
}

long AttributeSlotCount(const QString &owner)
{
    return countRows(attributesOf(owner) + QStringLiteral(" ORDER BY Attribute"));
}

long RangeCount(const QString &owner, int type)
{
    return countRows(rangesOf(owner, type));
}

long IsaLinkCount(const QString &owner)
{
    Recordset rs =
        open(QStringLiteral("SELECT * FROM ISA WHERE Concept = ") + Quoted(owner), dbOpenSnapshot);
    rs.MoveLast();
    rs.MoveFirst();
    const long count = rs.RecordCount();
    rs.Close();
    return count;
}

bool DeleteRelationSlot(const QString &owner, const QString &item)
{
    if (item.isEmpty())
        return false;
    if (!confirmItemDelete(QStringLiteral("relation"), owner, item))
        return false;
    const SlotItem parts = SplitSlotItem(item);
    // A relation without an inverse row loses its own row only.
    const QString inverse = inverseOf(parts.Left).value_or(QString());
    const auto slotQuery = [](const QString &concept1, const QString &rel,
                              const QString &concept2) {
        return QStringLiteral("SELECT * FROM RELATIONS WHERE ") + QStringLiteral("Concept1 = ") +
               Quoted(concept1) + QStringLiteral(" AND Rel = ") + Quoted(rel) +
               QStringLiteral("AND Concept2 = ") + Quoted(concept2);
    };
    deleteFirstRow(slotQuery(owner, parts.Left, parts.Right));
    deleteFirstRow(slotQuery(parts.Right, inverse, owner));
    return true;
}

std::optional<QStringList> AddDomain(const QString &owner, const QString &domain, bool isDefault,
                                     bool listHasItems)
{
    const QString rel = QStringLiteral("DOMAIN");
    Recordset rs = open(domainsOf(owner) + QStringLiteral("ORDER BY Concept2"));
    if (listHasItems) {
        rs.FindFirst(relationTriple(owner, rel, domain));
        if (!rs.NoMatch()) {
            UI().MsgBox(QStringLiteral("Domain exists."), msg::Exclamation);
            rs.Close();
            return std::nullopt;
        }
    }
    addRow(rs, {{u"Concept1", owner}, {u"Rel", rel}, {u"Concept2", domain}}, isDefault);
    rs.Requery();
    QStringList domains;
    for (; !rs.Eof(); rs.MoveNext()) {
        QString text = rs.Value(u"Concept2").toString();
        if (rs.Value(u"Default").toBool())
            text += kByDefault;
        domains.append(text);
    }
    rs.Close();
    return domains;
}

bool AddRange(const QString &owner, int type, const QString &range, bool isDefault,
              bool listHasItems)
{
    const QString rel = QStringLiteral("RANGE");
    Recordset rs = open(rangesOf(owner, type));
    if (listHasItems) {
        rs.FindFirst(type == 4 ? relationTriple(owner, rel, range)
                               : attributeTriple(owner, rel, range));
        if (!rs.NoMatch()) {
            UI().MsgBox(QStringLiteral("Range exists."), msg::Exclamation);
            rs.Close();
            return false;
        }
    }
    if (type == 4)
        addRow(rs, {{u"Concept1", owner}, {u"Rel", rel}, {u"Concept2", range}}, isDefault);
    else
        addRow(rs, {{u"Concept", owner}, {u"Attribute", rel}, {u"Value", range}}, isDefault);
    rs.Close();
    return true;
}

bool DeleteDomain(const QString &owner, const QString &item)
{
    if (item.isEmpty())
        return false;
    if (!confirmItemDelete(QStringLiteral("DOMAIN"), owner, item))
        return false;
    deleteFirstRow(domainsOf(owner) + QStringLiteral(" AND Concept2 = ") + Quoted(item));
    return true;
}

// Unlike the domain's, this command asks before it looks at the selection.
bool DeleteRange(const QString &owner, int type, const QString &item)
{
    if (!confirmItemDelete(QStringLiteral("RANGE"), owner, item))
        return false;
    if (item.isEmpty())
        return false;
    deleteFirstRow(
        rangesOf(owner, type) +
        (type == 4 ? QStringLiteral(" AND Concept2 = ") : QStringLiteral(" AND Value = ")) +
        Quoted(item));
    return true;
}

bool DeleteAttributeSlot(const QString &owner, const QString &item)
{
    if (owner.isEmpty() || item.isEmpty())
        return false;
    if (!confirmDelete(QStringLiteral("Confirm deletion of Attribute:") + kLineBreak + item))
        return false;
    const SlotItem parts = SplitSlotItem(item);
    deleteFirstRow(attributesOf(owner) + QStringLiteral(" AND Attribute = ") + Quoted(parts.Left) +
                   QStringLiteral(" AND Value = ") + Quoted(parts.Right));
    return true;
}

// --- IS-A links --------------------------------------------------------------------------------

std::optional<QStringList> AddIsaLink(const QString &owner, const QString &parent)
{
    Recordset rs = open(isaLinksOf(owner));
    rs.FindFirst(QStringLiteral("Concept = ") + Quoted(owner) + QStringLiteral(" AND ISA = ") +
                 Quoted(parent));
    std::optional<QStringList> parents;
    if (!rs.NoMatch()) {
        tellIsaLinkExists();
    } else {
        rs.AddNew();
        rs.Collect(u"Concept", owner);
        rs.Collect(u"ISA", parent);
        rs.Update();
        rs.Requery();
        rs.MoveFirst();
        parents = isaColumn(rs);
    }
    rs.Close();
    return parents;
}

// The link that changes is the first in order of parents, whichever the user selected.
std::optional<QStringList> EditIsaLink(const QString &owner, const QString &parent)
{
    Recordset rs = open(isaLinksOf(owner));
    const Bookmark first = rs.GetBookmark();
    rs.FindFirst(QStringLiteral("Concept = ") + Quoted(owner) + QStringLiteral(" AND ISA = ") +
                 Quoted(parent));
    std::optional<QStringList> parents;
    if (!rs.NoMatch()) {
        tellIsaLinkExists();
    } else {
        rs.SetBookmark(first);
        rs.Edit();
        rs.Collect(u"ISA", parent);
        rs.Update();
        rs.Requery();
        parents = isaColumn(rs);
    }
    rs.Close();
    return parents;
}

bool DeleteIsaLink(const QString &owner, const QString &parent,
                   const std::function<void()> &clearParents,
                   const std::function<bool(const QString &)> &addParent)
{
    if (parent.isEmpty())
        return false;
    Recordset rs = open(isaLinksOf(owner));
    rs.FindFirst(QStringLiteral("Concept= ") + Quoted(owner) + QStringLiteral(" AND ") +
                 QStringLiteral("ISA= ") + Quoted(parent));
    if (UI().MsgBox(QStringLiteral("Confirm deletion of link:") + kLineBreak + owner +
                        QStringLiteral(" : ISA : ") + parent,
                    msg::YesNo | msg::Exclamation, kConfirmDelete) == msg::No) {
        rs.Close();
        return false;
    }
    rs.Edit();
    rs.Delete();
    rs.Requery();
    clearParents();
    // Each pass starts again from the first row: with two or more parents left the refill
    // repeats the first one for as long as addParent lets it.
    while (!rs.Eof()) {
        rs.MoveFirst();
        if (!addParent(rs.Value(u"ISA").toString()))
            break;
        rs.MoveNext();
    }
    rs.Close();
    return true;
}

} // namespace lx
