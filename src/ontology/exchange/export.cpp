#include "ontology/exchange/export.h"

#include "core/interaction.h"
#include "core/process.h"
#include "core/store/database.h"
#include "core/store/errors.h"
#include "core/store/types.h"
#include "ontology/store/lookups.h"
#include "publish/text_channel.h"

#include <QFile>

namespace lx {

using namespace store;

namespace {

const QString kCrLf = QStringLiteral("\r\n");

QString text(const Recordset &rs, QStringView field)
{
    const QVariant value = rs.Value(field);
    return value.isNull() ? QString() : value.toString();
}

QString record(const QString &identifier, const QString &phrase, const QString &filler)
{
    return QStringLiteral("(") + identifier + QLatin1Char(' ') + phrase + QLatin1Char(' ') +
           filler + QStringLiteral(")");
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
        const QString slot = fixedName.isEmpty() ? text(rs, name) : fixedName;
        const QString kind = rs.Value(u"Default").toBool() ? QStringLiteral("DEFAULT") : plain;
        append(records, count,
               record(identifier, slot + QLatin1Char(' ') + kind, text(rs, filler)));
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
    QString block;
    Recordset parents =
        Process().OntoDB.OpenRecordset(QStringLiteral("SELECT * FROM ISA WHERE Concept = ") +
                                           Quoted(identifier) + QStringLiteral(" ORDER BY ISA"),
                                       dbOpenSnapshot);
    if (parents.RecordCount() > 0) {
        const QString type = QString::number(ConceptType(identifier));
        for (; !parents.Eof(); parents.MoveNext())
            block += record(identifier, QStringLiteral("IS-A VALUE"),
                            text(parents, u"ISA") + QLatin1Char(' ') + type) +
                     kCrLf;
    }
    parents.Close();
    block += record(identifier, QStringLiteral("DEFINITION VALUE"), ConceptDefinition(identifier)) +
             kCrLf;
    QStringList children;
    GetChildren(identifier, children);
    for (const QString &child : children)
        block += record(identifier, QStringLiteral("SUBCLASSES VALUE"), child) + kCrLf;
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

void WriteExportFile(const QString &path, const QStringList &identifiers,
                     const std::function<void(int)> &exported)
{
    TextChannel file(path);
    int done = 0;
    for (const QString &identifier : identifiers) {
        file.Print(BuildConceptExport(identifier));
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
