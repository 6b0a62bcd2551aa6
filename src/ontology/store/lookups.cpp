#include "ontology/store/lookups.h"

#include "core/interaction.h"
#include "core/process.h"
#include "core/store/errors.h"

#include <optional>

namespace lx {

using namespace store;

namespace {

const QString kErrorTitle = QStringLiteral("Error");

// A Null read into a number is the platform's "Invalid use of Null", as everywhere else.
int intValue(const FieldRef &field)
{
    const QVariant v = field.Value();
    if (v.isNull())
        throw StoreError::make(err::InvalidUseOfNull);
    return v.toInt();
}

// CONCEPTS as a snapshot on the row of the identifier; nothing when no row has it. No row can
// hold a double quote in its identifier, so such an identifier is answered without a query,
// which it would break out of.
std::optional<Recordset> findConcept(const QString &identifier)
{
    if (identifier.contains(QLatin1Char('"')))
        return std::nullopt;
    // The index finds the row the search "Concept = identifier" would, without reading the
    // table: identifiers are unique and compare in the same order.
    Recordset rs = Process().OntoDB.OpenRecordset(QStringLiteral("CONCEPTS"), dbOpenTable);
    rs.SetIndex(QStringLiteral("Concept"));
    rs.Seek(u"=", identifier);
    if (rs.NoMatch())
        return std::nullopt;
    return rs;
}

} // namespace

// --- Concepts ---------------------------------------------------------------------------------

bool ConceptExists(const QString &identifier)
{
    return findConcept(identifier).has_value();
}

int ConceptType(const QString &identifier)
{
    const std::optional<Recordset> rs = findConcept(identifier);
    if (!rs) {
        UI().MsgBox(QStringLiteral("Critical error. Error code LX010. Please Report."),
                    msg::Critical, kErrorTitle);
        return 1;
    }
    return intValue(rs->Fields(u"Type"));
}

QString ConceptDefinition(const QString &identifier)
{
    const std::optional<Recordset> rs = findConcept(identifier);
    if (!rs) {
        UI().MsgBox(QStringLiteral("Critical error. Error code LX038. Please Report."),
                    msg::Critical, kErrorTitle);
        return QString();
    }
    const QVariant definition = rs->Fields(u"definition").Value();
    if (definition.isNull())
        return QStringLiteral("Undefined");
    QString text = definition.toString();
    FlattenLines(text);
    return Process().Quote + text + Process().Quote;
}

// The table is walked in its stored order and the walk stops at the first match: the top
// concept is nearly always the first row, so a large ontology costs no more than a small one.
QString GetTopConcept()
{
    Recordset rs = Process().OntoDB.OpenRecordset(QStringLiteral("CONCEPTS"), dbOpenTable);
    for (; !rs.Eof(); rs.MoveNext())
        if (rs.Fields(u"Type").Value().toInt() == 100)
            return rs.Fields(u"Concept").Text();
    // A file from before the top-level type: its "ALL" becomes the top concept, on disk too
    // unless the file is open read-only.
    rs.SetIndex(QStringLiteral("Concept"));
    rs.Seek(u"=", QStringLiteral("ALL"));
    if (!rs.NoMatch() && Process().OntoDB.Updatable()) {
        rs.Edit();
        rs.Collect(u"Type", 100);
        rs.Update();
    }
    return QStringLiteral("ALL");
}

// --- Languages and subsets --------------------------------------------------------------------

QString LanguageNameOf(const QString &code)
{
    Recordset rs = Process().OntoDB.OpenRecordset(QStringLiteral("Languages"), dbOpenTable);
    rs.SetIndex(QStringLiteral("Lang_ID"));
    rs.Seek(u"=", code);
    return rs.NoMatch() ? QString() : rs.Fields(u"Language").Text();
}

QString LanguageCodeOf(const QString &name)
{
    Recordset rs = Process().OntoDB.OpenRecordset(QStringLiteral("Languages"), dbOpenTable);
    rs.SetIndex(QStringLiteral("Language"));
    rs.Seek(u"=", name);
    return rs.NoMatch() ? QString() : rs.Fields(u"Lang_ID").Text();
}

int SubsetIdOf(const QString &name)
{
    Recordset rs = Process().OntoDB.OpenRecordset(QStringLiteral("Subsets"), dbOpenTable);
    rs.MoveFirst();
    rs.SetIndex(QStringLiteral("Subset"));
    rs.Seek(u"=", name);
    if (rs.NoMatch()) {
        UI().MsgBox(QStringLiteral("Critical error. Please Report. Error Code LX005"));
        return 0;
    }
    if (rs.Fields(u"subset_ID").Value().isNull()) {
        rs.Edit();
        rs.Collect(u"subset_ID", 1);
        rs.Update();
        return 1;
    }
    return intValue(rs.Fields(u"subset_ID"));
}

QString SubsetNameOf(int subsetId)
{
    // The key goes in as a byte; a number outside 0 to 255 doesn't convert.
    if (subsetId < 0 || subsetId > 255)
        throw StoreError::make(err::Overflow);
    Recordset rs = Process().OntoDB.OpenRecordset(QStringLiteral("Subsets"), dbOpenTable);
    rs.SetIndex(QStringLiteral("Subset_ID"));
    rs.Seek(u"=", subsetId);
    return rs.NoMatch() ? QStringLiteral("Error") : rs.Fields(u"Subset").Text();
}

long CountSubset(int subsetId)
{
    Recordset rs = Process().OntoDB.OpenRecordset(
        QStringLiteral("SELECT Concept FROM CONCEPTS WHERE (Subset_ID = ") +
            QString::number(subsetId) + QStringLiteral(")"),
        dbOpenSnapshot);
    if (rs.RecordCount() > 0)
        rs.MoveLast();
    return rs.RecordCount();
}

} // namespace lx
