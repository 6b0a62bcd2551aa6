#include "termbase/edit/element_tree.h"

#include "core/process.h"
#include "core/store/database.h"
#include "core/store/graph.h"
#include "core/store/types.h"
#include "core/text/collation.h"
#include "core/text/like.h"
#include "termbase/edit/categories.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <array>
#include <functional>
#include <vector>

namespace lx {

using namespace store;

namespace {

// Below this many nodes a level's values are always reached through the level.
constexpr qsizetype WholeTableLevel = 1000;

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

// The table and value column of a source of values.
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
    return ReadElementLevel(elemId, 1, !ofRoot);
}

QList<ElementNode> ReadElementLevel(qint32 top, int depth, bool ordered)
{
    // A branch may hold a hundred thousand children: the level is read once with whether each
    // child has children of its own, each value table once for the whole level, and each
    // category's text and look are worked out once and shared by its nodes.
    QList<ElementNode> nodes;
    QHash<QString, CategoryLook> categories;
    QHash<qint32, qsizetype> at;
    TreeTable level(Process().TermDB, u"elements", u"elemID", u"parentID");
    // A deeper level is put in order here: the store would sort all of it by text.
    level.level(
        top, depth, u"categoryID", ordered && depth == 1,
        [&](std::int64_t parent, std::int64_t id, const QString &category, bool hasChildren) {
            auto known = categories.find(category);
            if (known == categories.end())
                known = categories.insert(category, categoryLook(category));
            ElementNode node;
            node.Parent = qint32(parent);
            node.ElemID = qint32(id);
            node.CategoryID = known.key();
            node.HasChildren = hasChildren;
            at.insert(node.ElemID, nodes.size());
            nodes.append(node);
        });

    std::vector<bool> done(size_t(nodes.size()), false);
    std::vector<ElementSource> sources;
    for (const CategoryLook &category : std::as_const(categories)) {
        const ElementSource source = category.rule.Source;
        if (tableOf(source) && std::find(sources.begin(), sources.end(), source) == sources.end())
            sources.push_back(source);
    }
    for (const ElementSource source : sources) {
        const SourceTable table = *tableOf(source);
        const QString tableName = QString::fromLatin1(table.table);
        const QString column = QString::fromLatin1(table.column);
        const auto take = [&](std::int64_t child, const QString &value) {
            const auto index = at.constFind(qint32(child));
            if (index == at.cend())
                return;
            ElementNode &node = nodes[*index];
            const CategoryLook &category = *categories.constFind(node.CategoryID);
            if (category.rule.Source != source)
                return;
            const ElementLook seen = look(node.ElemID, category, [&](ElementSource, qint32) {
                return std::optional<QString>(value);
            });
            node.Kind = seen.Kind;
            node.Text = seen.Text;
            done[size_t(*index)] = true;
        };
        // A large level, a body of entries, holds much of its value tables: each is read whole,
        // and the rows of other levels are passed over by number.
        if (nodes.size() >= WholeTableLevel && nodes.size() * 4 >= level.valueRows(tableName))
            level.allValues(tableName, u"elemID", column, take);
        else
            level.levelValues(top, depth, tableName, u"elemID", column, take);
    }
    // The rest have no value of their own: a name, a pointer's target, or nothing found.
    const ValueOf none = [](ElementSource, qint32) { return std::optional<QString>(); };
    for (qsizetype i = 0; i < nodes.size(); ++i) {
        if (done[size_t(i)])
            continue;
        ElementNode &node = nodes[i];
        const ElementLook seen = look(node.ElemID, *categories.constFind(node.CategoryID), none);
        node.Kind = seen.Kind;
        node.Text = seen.Text;
    }
    if (ordered && depth > 1) {
        QStringList ids = categories.keys();
        std::sort(ids.begin(), ids.end(),
                  [](const QString &x, const QString &y) { return text::CompareText(x, y) < 0; });
        QHash<QString, int> rank;
        for (int i = 0; i < ids.size(); ++i)
            rank.insert(ids[i], i);
        std::sort(nodes.begin(), nodes.end(), [&](const ElementNode &x, const ElementNode &y) {
            if (x.Parent != y.Parent)
                return x.Parent < y.Parent;
            const int rx = rank.value(x.CategoryID);
            const int ry = rank.value(y.CategoryID);
            return rx != ry ? rx < ry : x.ElemID < y.ElemID;
        });
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

std::optional<QString> BackmatterFileOf(qint32 elemId)
{
    const std::optional<QString> target = SeekElementValue(ElementSource::PointerRef, elemId);
    if (!target)
        return std::nullopt;
    return SeekElementValue(ElementSource::RefValue, target->toInt());
}

} // namespace lx
