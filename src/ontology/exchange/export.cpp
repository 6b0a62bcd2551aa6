#include "ontology/exchange/export.h"

#include "core/filters.h"
#include "core/interaction.h"
#include "core/process.h"
#include "core/store/database.h"
#include "core/store/errors.h"
#include "core/store/types.h"
#include "ontology/store/lookups.h"
#include "publish/text_channel.h"

#include <QFile>
#include <QHash>

#include <functional>
#include <optional>

namespace lx {

using namespace store;

namespace {

const QString kCrLf = QStringLiteral("\r\n");

QString record(const QString &identifier, const QString &phrase, const QString &filler)
{
    return QStringLiteral("(") + identifier + QLatin1Char(' ') + phrase + QLatin1Char(' ') +
           filler + QStringLiteral(")");
}

QString slotRecord(const QString &identifier, const QString &slot, bool isDefault,
                   const QString &plain, const QString &filler)
{
    return record(identifier,
                  slot + QLatin1Char(' ') + (isDefault ? QStringLiteral("DEFAULT") : plain),
                  filler);
}

// The block's lines before its slots: the IS-A links with the concept's type, the definition,
// the subclasses; each line with its end.
QString blockHead(const QString &identifier, const QStringList &parents, int type,
                  const QString &definition, const QStringList &children)
{
    QString head;
    for (const QString &parent : parents)
        head += record(identifier, QStringLiteral("IS-A VALUE"),
                       parent + QLatin1Char(' ') + QString::number(type)) +
                kCrLf;
    head += record(identifier, QStringLiteral("DEFINITION VALUE"), definition) + kCrLf;
    for (const QString &child : children)
        head += record(identifier, QStringLiteral("SUBCLASSES VALUE"), child) + kCrLf;
    return head;
}

void append(QStringList &records, qint16 &count, const QString &line)
{
    if (count == std::numeric_limits<qint16>::max())
        throw StoreError::make(err::Overflow);
    ++count;
    records.append(line);
}

// The rows of a slot selection as records: the name, the kind word (DEFAULT over `plain`), the
// filler.
void appendSlots(const QString &identifier, const QString &query, QStringView name,
                 const QString &fixedName, QStringView filler, const QString &plain,
                 QStringList &records, qint16 &count)
{
    Recordset rs = Process().OntoDB.OpenRecordset(query, dbOpenSnapshot);
    for (; !rs.Eof(); rs.MoveNext()) {
        const QString slot = fixedName.isEmpty() ? TextOrEmpty(rs.Value(name)) : fixedName;
        const QString kind = rs.Value(u"Default").toBool() ? QStringLiteral("DEFAULT") : plain;
        append(records, count,
               record(identifier, slot + QLatin1Char(' ') + kind, TextOrEmpty(rs.Value(filler))));
    }
    rs.Close();
}

} // namespace

void CollectSlotRecords(const QString &identifier, QStringList &records, qint16 &count)
{
    const int type = ConceptType(identifier);
    const QString relations =
        QStringLiteral("SELECT * FROM RELATIONS WHERE Concept1 = ") + Quoted(identifier);
    const QString attributes =
        QStringLiteral("SELECT * FROM ATTRIBUTES WHERE Concept = ") + Quoted(identifier);
    const QString sem = QStringLiteral("SEM");
    const QString value = QStringLiteral("VALUE");
    if (type != 3 && type != 4) {
        appendSlots(identifier, relations + QStringLiteral(" ORDER BY Rel"), u"Rel", {},
                    u"Concept2", sem, records, count);
        appendSlots(identifier, attributes + QStringLiteral(" ORDER BY Attribute"), u"Attribute",
                    {}, u"Value", value, records, count);
        return;
    }
    const QString domain = QStringLiteral("DOMAIN");
    const QString range = QStringLiteral("RANGE");
    appendSlots(identifier,
                relations + QStringLiteral(" AND Rel = ") + Quoted(domain) +
                    QStringLiteral(" ORDER BY Concept2"),
                u"Rel", domain, u"Concept2", sem, records, count);
    if (type == 3)
        appendSlots(identifier,
                    attributes + QStringLiteral(" AND Attribute = ") + Quoted(range) +
                        QStringLiteral(" ORDER BY Attribute"),
                    u"Attribute", range, u"Value", value, records, count);
    else
        appendSlots(identifier,
                    relations + QStringLiteral(" AND Rel = ") + Quoted(range) +
                        QStringLiteral(" ORDER BY Concept2"),
                    u"Rel", range, u"Concept2", sem, records, count);
}

QString BuildConceptExport(const QString &identifier)
{
    const QStringList parents = ReadColumn(Process().OntoDB,
                                           QStringLiteral("SELECT * FROM ISA WHERE Concept = ") +
                                               Quoted(identifier) + QStringLiteral(" ORDER BY ISA"),
                                           u"ISA");
    // The type is looked up only for the IS-A records, before the definition.
    const int type = parents.isEmpty() ? 0 : ConceptType(identifier);
    const QString definition = ConceptDefinition(identifier);
    QStringList children;
    GetChildren(identifier, children);
    QString block = blockHead(identifier, parents, type, definition, children);
    // The array comes in with one empty place per subclass; they are passed over.
    QStringList slots;
    for (qsizetype i = 0; i < children.size(); ++i)
        slots.append(QString());
    qint16 count = qint16(std::min<qsizetype>(children.size(), 32767));
    CollectSlotRecords(identifier, slots, count);
    for (const QString &slot : std::as_const(slots)) {
        if (!slot.isEmpty())
            block += slot + kCrLf;
    }
    block.chop(2);
    return block;
}

namespace {

// Everything an export of many concepts reads, in a few passes over the tables, grouped by
// concept in the orders the one-concept selections give.
class ExportSource {
public:
    struct Slot {
        QString Name;
        bool Default = false;
        QString Filler;
    };
    struct Concept {
        QVariant Type;
        QVariant Definition;
        QStringList Parents, Children;
        QList<Slot> Relations, Attributes, Domains, RelationRanges, AttributeRanges;
    };

    ExportSource()
    {
        Database &db = Process().OntoDB;
        ForEachRow(db, QStringLiteral("SELECT * FROM CONCEPTS"), [this](const Recordset &rs) {
            Concept &c = m_concepts[key(TextOrEmpty(rs.Value(u"Concept")))];
            c.Type = rs.Value(u"Type");
            c.Definition = rs.Value(u"Definition");
        });
        ForEachRow(db, QStringLiteral("SELECT * FROM ISA ORDER BY Concept, ISA"),
                   [this](const Recordset &rs) {
                       if (Concept *c = find(TextOrEmpty(rs.Value(u"Concept"))))
                           c->Parents << TextOrEmpty(rs.Value(u"ISA"));
                   });
        ForEachRow(db, QStringLiteral("SELECT * FROM ISA ORDER BY ISA, Concept"),
                   [this](const Recordset &rs) {
                       if (Concept *c = find(TextOrEmpty(rs.Value(u"ISA"))))
                           c->Children << TextOrEmpty(rs.Value(u"Concept"));
                   });
        ForEachRow(db,
                   QStringLiteral("SELECT * FROM RELATIONS ORDER BY Concept1, Rel, Relation_ID"),
                   [this](const Recordset &rs) {
                       if (Concept *c = find(TextOrEmpty(rs.Value(u"Concept1"))))
                           c->Relations << slot(rs, u"Rel", u"Concept2");
                   });
        ForEachRow(
            db,
            QStringLiteral("SELECT * FROM RELATIONS WHERE Rel = 'DOMAIN' OR Rel = 'RANGE' ORDER "
                           "BY Concept1, Concept2, Relation_ID"),
            [this](const Recordset &rs) {
                Concept *c = find(TextOrEmpty(rs.Value(u"Concept1")));
                if (!c)
                    return;
                const bool domain = TextOrEmpty(rs.Value(u"Rel"))
                                        .compare(QLatin1String("DOMAIN"), Qt::CaseInsensitive) == 0;
                (domain ? c->Domains : c->RelationRanges) << slot(rs, u"Rel", u"Concept2");
            });
        ForEachRow(
            db, QStringLiteral("SELECT * FROM ATTRIBUTES ORDER BY Concept, Attribute, Property_ID"),
            [this](const Recordset &rs) {
                Concept *c = find(TextOrEmpty(rs.Value(u"Concept")));
                if (!c)
                    return;
                const Slot s = slot(rs, u"Attribute", u"Value");
                c->Attributes << s;
                if (s.Name.compare(QLatin1String("RANGE"), Qt::CaseInsensitive) == 0)
                    c->AttributeRanges << s;
            });
    }

    // The concept's block, or nothing when it must go the one-concept way (it is missing, or
    // its type is Null: that way says so).
    std::optional<QString> Block(const QString &identifier) const
    {
        const auto found = m_concepts.constFind(key(identifier));
        if (found == m_concepts.cend() || found->Type.isNull())
            return std::nullopt;
        const Concept &c = *found;
        const int type = c.Type.toInt();
        QString definition = QStringLiteral("Undefined");
        if (!c.Definition.isNull()) {
            definition = c.Definition.toString();
            FlattenLines(definition);
            definition = Quoted(definition);
        }
        QString block = blockHead(identifier, c.Parents, type, definition, c.Children);
        const auto slots = [&](const QList<Slot> &list, const QString &fixed,
                               const QString &plain) {
            for (const Slot &s : list)
                block += slotRecord(identifier, fixed.isEmpty() ? s.Name : fixed, s.Default, plain,
                                    s.Filler) +
                         kCrLf;
        };
        const QString sem = QStringLiteral("SEM");
        const QString value = QStringLiteral("VALUE");
        if (type != 3 && type != 4) {
            slots(c.Relations, {}, sem);
            slots(c.Attributes, {}, value);
        } else {
            slots(c.Domains, QStringLiteral("DOMAIN"), sem);
            if (type == 3)
                slots(c.AttributeRanges, QStringLiteral("RANGE"), value);
            else
                slots(c.RelationRanges, QStringLiteral("RANGE"), sem);
        }
        block.chop(2);
        return block;
    }

private:
    static QString key(const QString &identifier) { return identifier.toCaseFolded(); }
    Concept *find(const QString &identifier)
    {
        const auto found = m_concepts.find(key(identifier));
        return found == m_concepts.end() ? nullptr : &*found;
    }
    static Slot slot(const Recordset &rs, QStringView name, QStringView filler)
    {
        return {TextOrEmpty(rs.Value(name)), rs.Value(u"Default").toBool(),
                TextOrEmpty(rs.Value(filler))};
    }

    QHash<QString, Concept> m_concepts;
};

// Below this many concepts each block reads its own rows.
constexpr qsizetype kBulkExport = 200;

} // namespace

void WriteExportFile(const QString &path, const QStringList &identifiers,
                     const std::function<void(int)> &exported)
{
    std::optional<ExportSource> source;
    if (identifiers.size() >= kBulkExport)
        source.emplace();
    TextChannel file(path);
    int done = 0;
    for (const QString &identifier : identifiers) {
        std::optional<QString> block;
        if (source)
            block = source->Block(identifier);
        file.Print(block ? *block : BuildConceptExport(identifier));
        if (exported)
            exported(++done);
    }
    file.Close();
}

bool ExportSelectedConcepts(const QString &folder, const QStringList &identifiers,
                            const std::function<void(int)> &exported)
{
    if (identifiers.isEmpty()) {
        UI().MsgBox(QStringLiteral("No concepts have been selected!"), msg::Information,
                    QStringLiteral("Error"));
        return false;
    }
    const QString name = UI().InputBox(QStringLiteral("Enter output file name: "),
                                       QStringLiteral("File Name"), QStringLiteral("export.oxp"));
    if (name.isEmpty())
        return false;
    const QString path = folder + QLatin1Char('/') + name;
    if (QFile::exists(path)) {
        // One button only: whatever the answer, the old file goes.
        UI().MsgBox(QStringLiteral("File exists. Overwrite?"), msg::OKOnly | msg::Question,
                    QStringLiteral("Confirm overwrite"));
        QFile::remove(path);
    }
    WriteExportFile(path, identifiers, exported);
    return true;
}

} // namespace lx
