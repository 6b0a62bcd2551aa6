#include "ontology/edit/concept_view.h"

#include "core/process.h"
#include "core/store/types.h"
#include "ontology/store/lookups.h"

namespace lx {

using namespace store;

namespace {

const QString kByDefault = QStringLiteral(" (by default)");

// The rows of a query as text, each from `row`; a default slot says so behind its text.
template <class RowText> QStringList ReadSlotRows(const QString &query, RowText row)
{
    QStringList rows;
    Recordset rs = Process().OntoDB.OpenRecordset(query, dbOpenDynaset);
    if (rs.RecordCount() > 0) {
        for (; !rs.Eof(); rs.MoveNext()) {
            QString text = row(rs);
            if (rs.Value(u"Default").toBool())
                text += kByDefault;
            rows.append(text);
        }
    }
    rs.Close();
    return rows;
}

QString DomainsQuery(const QString &identifier)
{
    return QStringLiteral("SELECT * FROM RELATIONS WHERE Concept1 = ") + Quoted(identifier) +
           QStringLiteral(" AND Rel = ") + Quoted(QStringLiteral("DOMAIN")) +
           QStringLiteral(" ORDER BY Concept2");
}

} // namespace

QStringList ReadParents(const QString &identifier)
{
    QStringList parents;
    Recordset rs =
        Process().OntoDB.OpenRecordset(QStringLiteral("SELECT * FROM ISA WHERE "
                                                      "Concept = ") +
                                           Quoted(identifier) + QStringLiteral(" ORDER BY ISA"),
                                       dbOpenDynaset);
    for (; !rs.Eof(); rs.MoveNext())
        parents.append(TextOrEmpty(rs.Value(u"ISA")));
    rs.Close();
    return parents;
}

QList<NameRow> ReadNames(const QString &identifier)
{
    QList<NameRow> names;
    Recordset rs = Process().OntoDB.OpenRecordset(
        QStringLiteral("SELECT * FROM NAMES WHERE Concept = ") + Quoted(identifier) +
            QStringLiteral(" ORDER BY Lang_ID, Name_ID"),
        dbOpenDynaset);
    for (; !rs.Eof(); rs.MoveNext())
        names.append({LanguageNameOf(TextOrEmpty(rs.Value(u"Lang_ID"))),
                      TextOrEmpty(rs.Value(u"Name")), rs.Value(u"Name_ID")});
    rs.Close();
    return names;
}

QStringList ReadRelationSlots(const QString &identifier)
{
    return ReadSlotRows(QStringLiteral("SELECT * FROM RELATIONS WHERE Concept1 = ") +
                            Quoted(identifier) + QStringLiteral(" ORDER BY Rel"),
                        [](const Recordset &rs) {
                            return TextOrEmpty(rs.Value(u"Rel")) + QStringLiteral(" : ") +
                                   TextOrEmpty(rs.Value(u"Concept2"));
                        });
}

QStringList ReadAttributeSlots(const QString &identifier)
{
    return ReadSlotRows(QStringLiteral("SELECT * FROM ATTRIBUTES WHERE Concept = ") +
                            Quoted(identifier) + QStringLiteral(" ORDER BY Attribute"),
                        [](const Recordset &rs) {
                            return TextOrEmpty(rs.Value(u"Attribute")) + QStringLiteral(" : ") +
                                   TextOrEmpty(rs.Value(u"Value"));
                        });
}

QStringList ReadDomains(const QString &identifier)
{
    return ReadSlotRows(DomainsQuery(identifier),
                        [](const Recordset &rs) { return TextOrEmpty(rs.Value(u"Concept2")); });
}

SlotLists ReadSlots(const QString &identifier, int type)
{
    SlotLists slots;
    if (type == 3 || type == 4) {
        slots.RelsLabel = QStringLiteral("LOCAL DOMAINS");
        slots.Rels = ReadDomains(identifier);
        slots.AttrsLabel = QStringLiteral("LOCAL RANGES");
        // An attribute's range is a free value in ATTRIBUTES; a relation's is a concept.
        if (type == 3)
            slots.Attrs = ReadSlotRows(
                QStringLiteral("SELECT * FROM ATTRIBUTES WHERE Concept = ") + Quoted(identifier) +
                    QStringLiteral(" AND Attribute = ") + Quoted(QStringLiteral("RANGE")) +
                    QStringLiteral(" ORDER BY Attribute"),
                [](const Recordset &rs) { return TextOrEmpty(rs.Value(u"Value")); });
        else
            slots.Attrs = ReadSlotRows(
                QStringLiteral("SELECT * FROM RELATIONS WHERE Concept1 = ") + Quoted(identifier) +
                    QStringLiteral(" AND Rel = ") + Quoted(QStringLiteral("RANGE")) +
                    QStringLiteral(" ORDER BY Concept2"),
                [](const Recordset &rs) { return TextOrEmpty(rs.Value(u"Concept2")); });
        return slots;
    }
    slots.RelsLabel = QStringLiteral("LOCAL RELATIONS");
    slots.Rels = ReadRelationSlots(identifier);
    slots.AttrsLabel = QStringLiteral("LOCAL ATTRIBUTES");
    slots.Attrs = ReadAttributeSlots(identifier);
    return slots;
}

QStringList ReadAncestors(const QString &identifier)
{
    QStringList list;
    GetAncestors(identifier, list);
    return list;
}

QStringList ReadDescendants(const QString &identifier)
{
    QStringList list;
    GetDescendants(identifier, list);
    return list;
}

ConceptViewData ReadConceptView(const QString &identifier, quint8 currentType)
{
    ConceptViewData view;
    view.Heading = ReadConceptHeading(identifier);
    view.Type = view.Heading.found ? view.Heading.type : currentType;
    view.HasNote = HasNote(identifier);
    view.Parents = ReadParents(identifier);
    GetChildren(identifier, view.Children);
    view.Names = ReadNames(identifier);
    view.Slots = ReadSlots(identifier, view.Type);
    return view;
}

} // namespace lx
