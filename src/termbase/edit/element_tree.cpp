#include "termbase/edit/element_tree.h"

#include "core/process.h"
#include "core/store/database.h"
#include "core/store/types.h"
#include "core/text/collation.h"
#include "core/text/like.h"
#include "termbase/edit/categories.h"

#include <QHash>
#include <QSet>

#include <array>
#include <functional>

namespace lx {

using namespace store;

namespace {

bool like(const QString &id, const char *pattern)
{
    return text::Like(id, QString::fromLatin1(pattern));
}

bool oneOf(const QString &id, std::initializer_list<const char *> ids)
{
    for (const char *each : ids) {
        if (id == QLatin1String(each))
            return true;
    }
    return false;
}

// Between two identifiers in text order, both ends included: "10.2.2.10" lies between
// "10.2.2.1" and "10.2.2.9", and nothing lies between "x4" and "x11".
bool inRange(const QString &id, const char *low, const char *high)
{
    return text::CompareText(id, QString::fromLatin1(low)) >= 0 &&
           text::CompareText(id, QString::fromLatin1(high)) <= 0;
}

QString fieldText(const Recordset &rs, int column)
{
    const QVariant value = rs.Fields(column).Value();
    return TextOrEmpty(value);
}

// The value column of the first row found by elemID, or nothing.
std::optional<QString> seekValue(Recordset &rs, qint32 elemId, QStringView column)
{
    if (!rs.isOpen())
        return std::nullopt;
    rs.Seek(u"=", elemId);
    if (rs.NoMatch())
        return std::nullopt;
    const QVariant value = rs.Value(column);
    return TextOrEmpty(value);
}

// The table, its value column and the join that gives the values of every child of a parent.
struct SourceTable {
    const char *table;
    const char *column;
};

std::optional<SourceTable> tableOf(ElementSource source)
{
    switch (source) {
    case ElementSource::Concept:
        return SourceTable{"TE_CONCEPTS", "Concept"};
    case ElementSource::Language:
        return SourceTable{"elements_use_lang", "langID"};
    case ElementSource::Term:
        return SourceTable{"TERMS", "term"};
    case ElementSource::RefValue:
        return SourceTable{"ref_values", "value"};
    case ElementSource::TextValue:
        return SourceTable{"text_values", "value"};
    default:
        return std::nullopt;
    }
}

using ValueOf = std::function<std::optional<QString>(ElementSource, qint32)>;

// How a category is shown and its name, worked out once for all its elements.
struct CategoryLook {
    ElementRule rule;
    QString name;
};

CategoryLook categoryLook(const QString &categoryId)
{
    return {ElementRuleOf(categoryId), CategoryName(categoryId)};
}

// The target's value for the pointer sources, through `valueOf` for the rest.
ElementLook look(qint32 elemId, const CategoryLook &category, const ValueOf &valueOf)
{
    const ElementRule &rule = category.rule;
    const QString &name = category.name;
    auto orName = [&](const std::optional<QString> &value) { return value ? *value : name; };
    switch (rule.Source) {
    case ElementSource::Name:
        return {rule.Kind, name};
    case ElementSource::Language:
        return LanguageSectionLook(valueOf(rule.Source, elemId), name);
    case ElementSource::PointerRef:
    case ElementSource::PointerText:
    case ElementSource::PointerTextName: {
        const std::optional<QString> target = SeekElementValue(ElementSource::PointerRef, elemId);
        std::optional<QString> value;
        if (target) {
            const ElementSource of = rule.Source == ElementSource::PointerRef
                                         ? ElementSource::RefValue
                                         : ElementSource::TextValue;
            value = SeekElementValue(of, target->toInt());
        }
        if (value && rule.Source == ElementSource::PointerTextName)
            value = name + QStringLiteral(": ") + *value;
        return {rule.Kind, orName(value)};
    }
    default:
        return {rule.Kind, orName(valueOf(rule.Source, elemId))};
    }
}

// The values of one source for every child of `parentId` that has a row, by element.
QHash<qint32, QString> childValues(ElementSource source, qint32 parentId)
{
    QHash<qint32, QString> values;
    const std::optional<SourceTable> table = tableOf(source);
    if (!table)
        return values;
    const QString t = QString::fromLatin1(table->table);
    Recordset rs = Process().TermDB.OpenRecordset(
        QStringLiteral("SELECT %1.elemID, %1.%2 FROM %1 INNER JOIN elements ON %1.elemID = "
                       "elements.elemID WHERE elements.parentID = %3")
            .arg(t, QString::fromLatin1(table->column), QString::number(parentId)),
        dbOpenSnapshot);
    for (; !rs.Eof(); rs.MoveNext())
        values.insert(rs.Fields(0).Value().toInt(), fieldText(rs, 1));
    rs.Close();
    return values;
}

// The children of `parentId` that have children of their own, in one read.
QSet<qint32> childrenWithChildren(qint32 parentId)
{
    QSet<qint32> parents;
    Recordset rs = Process().TermDB.OpenRecordset(
        QStringLiteral("SELECT DISTINCT grand.parentID FROM elements INNER JOIN elements AS "
                       "grand ON grand.parentID = elements.elemID WHERE elements.parentID = ") +
            QString::number(parentId),
        dbOpenSnapshot);
    for (; !rs.Eof(); rs.MoveNext())
        parents.insert(rs.Fields(0).Value().toInt());
    rs.Close();
    return parents;
}

} // namespace

QString ElementKey(qint32 elemId)
{
    if (elemId == 1)
        return QStringLiteral("n1");
    // The number as it prints with its sign place: a blank before a positive one.
    return QStringLiteral("n") + (elemId >= 0 ? QStringLiteral(" ") : QString()) +
           QString::number(elemId);
}

qint32 KeyElement(const QString &key)
{
    return key.mid(1).trimmed().toInt();
}

ElementRule ElementRuleOf(const QString &id)
{
    using S = ElementSource;
    auto rule = [](const char *kind, S source = S::Name) {
        return ElementRule{QString::fromLatin1(kind), source};
    };
    if (id == QLatin1String("2.1") || like(id, "2.2.?") || like(id, "2.3.?") || like(id, "2.4.?") ||
        like(id, "2.8.?") || like(id, "2.9.?") || like(id, "3.?"))
        return rule("attribute");
    if (id == QLatin1String("0.3"))
        return rule("concept", S::Concept);
    if (id == QLatin1String("0.4"))
        return ElementRule{QString(), S::Language};
    if (id == QLatin1String("1"))
        return rule("term", S::Term);
    if (id == QLatin1String("8"))
        return rule("note");
    if (id == QLatin1String("x3"))
        return rule("responsibles");
    if (id == QLatin1String("x5.5"))
        return rule("binary", S::RefValue);
    if (id == QLatin1String("5.3x"))
        return rule("context", S::PointerRef);
    static const std::array<const char *, 5> media{"figure", "audio", "video", "table", "binary"};
    for (int i = 0; i < 5; ++i) {
        if (id == QStringLiteral("5.5.%1").arg(i + 1))
            return rule(media[size_t(i)], S::PointerRef);
    }
    if (inRange(id, "10.2.2.1", "10.2.2.9") || oneOf(id, {"10.20", "4", "10.21.1", "10.21.2"})) {
        if (like(id, "10.2.2.*"))
            return rule("responsible", S::PointerTextName);
        if (id == QLatin1String("10.20"))
            return rule("pub", S::PointerText);
        if (id == QLatin1String("4"))
            return rule("subjectfield", S::PointerText);
        return rule("url", S::PointerText);
    }
    if (inRange(id, "9.2.1", "9.2.4") ||
        oneOf(id, {"3.5x", "3.2x", "10.6.1", "10.18.5", "10.18.6"}))
        return rule("xref");
    if (id == QLatin1String("10.18"))
        return rule("xref", S::TextValue);
    if (id == QLatin1String("x10.3"))
        return rule("subset");
    static const std::array<std::pair<const char *, const char *>, 5> records{{
        {"xx4", "subjectfield"},
        {"x10.2.2", "responsible"},
        {"x10.20", "pub"},
        {"x10.21.1", "url"},
        {"x10.21.2", "url"},
    }};
    for (const auto &[record, kind] : records) {
        if (id == QLatin1String(record))
            return rule(kind, S::TextValue);
    }
    if (id == QLatin1String("x4.2"))
        return rule("classifsystem");
    if (oneOf(id, {"x7.2", "x9.1"}))
        return rule("conceptsystem");
    if (id == QLatin1String("x11.1"))
        return rule("context", S::RefValue);
    if (oneOf(id, {"x1", "x2"}) || inRange(id, "x4", "x11"))
        return rule("container");
    if (like(id, "0*"))
        return rule("folder");
    return rule("attribute");
}

ElementLook LanguageSectionLook(const std::optional<QString> &langId, const QString &name)
{
    if (!langId)
        return {QStringLiteral("world"), name};
    static const std::array<std::pair<const char *, const char *>, 10> languages{{
        {"en", "English"},
        {"es", "Spanish"},
        {"de", "German"},
        {"fr", "French"},
        {"ca", "Catalan"},
        {"it", "Italian"},
        {"sv", "Swedish"},
        {"no", "Norwegian"},
        {"nl", "Dutch"},
        {"da", "Danish"},
    }};
    for (const auto &[code, language] : languages) {
        if (*langId == QLatin1String(code))
            return {QStringLiteral("ls") + *langId, QString::fromLatin1(language)};
    }
    return {QStringLiteral("lsgen"), *langId};
}

std::optional<QString> SeekElementValue(ElementSource source, qint32 elemId)
{
    ProcessState &p = Process();
    switch (source) {
    case ElementSource::Concept:
        return seekValue(p.rsTEConcepts, elemId, u"Concept");
    case ElementSource::Language:
        return seekValue(p.rsElemLang, elemId, u"langID");
    case ElementSource::Term:
        return seekValue(p.rsTerms, elemId, u"term");
    case ElementSource::RefValue:
        return seekValue(p.rsRefValues, elemId, u"value");
    case ElementSource::TextValue:
        return seekValue(p.rsTextValues, elemId, u"value");
    case ElementSource::PointerRef:
    case ElementSource::PointerText:
    case ElementSource::PointerTextName:
        return seekValue(p.rsPointers, elemId, u"targetID");
    case ElementSource::Name:
        break;
    }
    return std::nullopt;
}

ElementLook ClassifyElement(qint32 elemId, const QString &categoryId)
{
    return look(elemId, categoryLook(categoryId), SeekElementValue);
}

QList<ElementNode> ReadElementChildren(qint32 elemId, bool ofRoot)
{
    QList<ElementNode> nodes;
    {
        QString sql =
            QStringLiteral("SELECT * from elements WHERE parentID = ") + QString::number(elemId);
        if (!ofRoot)
            sql += QStringLiteral(" ORDER BY CategoryID");
        Recordset rs = Process().TermDB.OpenRecordset(sql, dbOpenSnapshot);
        if (rs.RecordCount() < 1)
            return nodes;
        rs.MoveLast();
        rs.MoveFirst();
        nodes.reserve(rs.RecordCount());
        for (; !rs.Eof(); rs.MoveNext()) {
            ElementNode node;
            node.ElemID = rs.Fields(0).Value().toInt();
            node.CategoryID = fieldText(rs, 1);
            nodes.append(node);
        }
        rs.Close();
    }

    // Each value table is read once for all the children that need it, not once per child.
    QHash<QString, CategoryLook> categories;
    QHash<ElementSource, QHash<qint32, QString>> values;
    for (const ElementNode &node : std::as_const(nodes)) {
        if (categories.contains(node.CategoryID))
            continue;
        const CategoryLook &category =
            *categories.insert(node.CategoryID, categoryLook(node.CategoryID));
        const ElementSource source = category.rule.Source;
        if (tableOf(source) && !values.contains(source))
            values.insert(source, childValues(source, elemId));
    }
    const ValueOf valueOf = [&](ElementSource source, qint32 id) -> std::optional<QString> {
        const QHash<qint32, QString> &of = values[source];
        const auto found = of.constFind(id);
        return found == of.cend() ? std::nullopt : std::optional<QString>(*found);
    };
    const QSet<qint32> withChildren = childrenWithChildren(elemId);
    for (ElementNode &node : nodes) {
        const ElementLook seen = look(node.ElemID, *categories.constFind(node.CategoryID), valueOf);
        node.Key = ElementKey(node.ElemID);
        node.Kind = seen.Kind;
        node.Text = seen.Text;
        node.HasChildren = withChildren.contains(node.ElemID);
    }
    return nodes;
}

QList<qint32> ElementPath(qint32 elemId)
{
    QList<qint32> path;
    QSet<qint32> seen;
    Recordset &rs = Process().rsElements;
    for (qint32 at = elemId; at != 1 && !seen.contains(at);) {
        seen.insert(at);
        path.append(at);
        rs.Seek(u"=", at);
        if (rs.NoMatch())
            break;
        at = rs.Value(u"parentID").toInt();
    }
    return path;
}

qint32 CrossRefTarget(qint32 elemId)
{
    const std::optional<QString> target = SeekElementValue(ElementSource::PointerRef, elemId);
    return target ? target->toInt() : 0;
}

} // namespace lx
