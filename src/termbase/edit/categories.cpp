#include "termbase/edit/categories.h"

#include "core/interaction.h"
#include "core/process.h"
#include "core/store/database.h"
#include "core/store/types.h"
#include "core/text/like.h"

#include <QHash>

#include <algorithm>
#include <functional>

namespace lx {

using namespace store;

namespace {

const QString kErrorTitle = QStringLiteral("Error");

// Where each category stands in DataCats, so that a lookup needn't walk the table.
QHash<QString, qsizetype> &RowIndex()
{
    static QHash<QString, qsizetype> index;
    return index;
}

} // namespace

const QStringList *DataCatRow(const QString &categoryId)
{
    const QList<QStringList> &cats = Process().DataCats;
    const qsizetype at = RowIndex().value(categoryId, -1);
    if (at >= 0 && at < cats.size() && cats[at].value(dcId) == categoryId)
        return &cats[at];
    // The table was changed behind the index: the first row with the identifier.
    for (const QStringList &row : cats) {
        if (row.value(dcId) == categoryId)
            return &row;
    }
    return nullptr;
}

bool CategoryNeedsLang(const QString &categoryId)
{
    const QStringList *row = DataCatRow(categoryId);
    const QString flag = row ? row->value(dcNeedsLang) : QString();
    return flag.compare(QLatin1String("true"), Qt::CaseInsensitive) == 0 ||
           flag == QLatin1String("-1");
}

namespace {

QString CategoryColumn(const QString &categoryId, DataCatColumn column)
{
    const QStringList *row = DataCatRow(categoryId);
    return row ? row->value(column) : QString();
}

bool like(const QString &id, const char *pattern)
{
    return text::Like(id, QString::fromLatin1(pattern));
}

bool isBackmatterReference(const QString &id)
{
    return like(id, "10.2.2.*") || id == QLatin1String("10.20") || id == QLatin1String("4") ||
           like(id, "10.21.?");
}

} // namespace

QString BackmatterSource(const QString &id)
{
    if (id == QLatin1String("4"))
        return QStringLiteral("xx4");
    if (id == QLatin1String("10.20") || id == QLatin1String("10.21.1") ||
        id == QLatin1String("10.21.2"))
        return QStringLiteral("x") + id;
    return QStringLiteral("x10.2.2");
}

void LoadCategoryTable()
{
    ProcessState &p = Process();
    p.rsDatCats = p.TermDB.OpenRecordset(
        QStringLiteral("SELECT datcats.categoryID, datcats.GI_name, datcats.type, "
                       "datcats.value_type, datcats.needs_lang, datcats.forms_link, "
                       "datcats.parentCatId, datcats_names.name FROM datcats INNER JOIN "
                       "datcats_names ON datcats.categoryID = datcats_names.categoryID WHERE "
                       "datcats_names.langID = ") +
            Quoted(p.TermMeta.DCLang) + QStringLiteral(" ORDER BY datcats.categoryID"),
        dbOpenSnapshot);
    p.DataCats.clear();
    RowIndex().clear();
    Recordset &rs = p.rsDatCats;
    if (rs.RecordCount() < 1)
        return;
    rs.MoveLast();
    rs.MoveFirst();
    p.DataCats.reserve(rs.RecordCount());
    // Columns 1 to 6 of the query, then the name (the seventh, after parentCatId).
    const int sources[] = {0, 1, 2, 3, 4, 5, 7};
    for (; !rs.Eof(); rs.MoveNext()) {
        QStringList row;
        for (int source : sources) {
            const QVariant value = rs.Fields(source).Value();
            row.append(TextOrEmpty(value));
        }
        RowIndex().insert(row.first(), p.DataCats.size());
        p.DataCats.append(row);
    }
    rs.MoveFirst();
}

QString CategoryName(const QString &categoryId)
{
    return CategoryColumn(categoryId, dcName);
}

QString CategoryType(const QString &categoryId)
{
    return CategoryColumn(categoryId, dcType);
}

QString CategoryGI(const QString &categoryId)
{
    return CategoryColumn(categoryId, dcGI);
}

QString ElementCategory(qint32 elemId)
{
    Recordset &rs = Process().rsElements;
    rs.Seek(u"=", elemId);
    if (rs.NoMatch()) {
        UI().MsgBox(
            QStringLiteral("Element not found. Fatal Error. Please report. Error Code GL001"),
            msg::OKOnly, kErrorTitle);
        return {};
    }
    return TextOrEmpty(rs.Value(u"categoryID"));
}

QString ElementConcept(qint32 elemId)
{
    ProcessState &p = Process();
    QSet<qint32> seen; // a damaged file may hold a loop of parents
    qint32 at = elemId;
    while (at != 1 && !seen.contains(at)) {
        seen.insert(at);
        p.rsElements.Seek(u"=", at);
        if (p.rsElements.NoMatch())
            return {};
        if (TextOrEmpty(p.rsElements.Value(u"categoryID")) == QLatin1String("0.3"))
            break;
        at = p.rsElements.Value(u"parentID").toInt();
    }
    p.rsTEConcepts.Seek(u"=", at);
    return p.rsTEConcepts.NoMatch() ? QString() : TextOrEmpty(p.rsTEConcepts.Value(u"Concept"));
}

QList<CategoryNode> ReadCategoryTree()
{
    // One read of every name, grouped under the parents in categoryID order.
    QHash<QString, QList<CategoryNode>> children;
    QHash<QString, QString> names;
    {
        Recordset rs = Process().TermDB.OpenRecordset(
            QStringLiteral("SELECT datcats.categoryID, datcats.parentCatID, datcats_names.name "
                           "FROM datcats INNER JOIN datcats_names ON datcats.categoryID = "
                           "datcats_names.categoryID WHERE datcats_names.langID = ") +
                Quoted(Process().TermMeta.DCLang) + QStringLiteral(" ORDER BY datcats.categoryID"),
            dbOpenSnapshot);
        for (; !rs.Eof(); rs.MoveNext()) {
            const QString id = TextOrEmpty(rs.Value(u"categoryID"));
            children[TextOrEmpty(rs.Value(u"parentCatID")).toCaseFolded()].append(
                {id, TextOrEmpty(rs.Value(u"name")), {}});
            names.insert(id, TextOrEmpty(rs.Value(u"name")));
        }
    }
    QSet<QString> placed; // a loop of parents in a damaged file is cut where it closes
    std::function<void(CategoryNode &)> fill = [&](CategoryNode &node) {
        placed.insert(node.Id);
        node.Children = children.value(node.Id.toCaseFolded());
        node.Children.removeIf(
            [&](const CategoryNode &child) { return placed.contains(child.Id); });
        for (CategoryNode &child : node.Children)
            fill(child);
    };
    const QList<CategoryNode> &tops = children[QStringLiteral("dc")];
    QList<CategoryNode> tree;
    for (const char *id : {"0", "1", "2", "descrip", "admin", "100"}) {
        const auto found = std::find_if(tops.begin(), tops.end(), [id](const CategoryNode &top) {
            return top.Id.compare(QLatin1String(id), Qt::CaseInsensitive) == 0;
        });
        if (found == tops.end()) {
            UI().MsgBox(QStringLiteral("Data category not found. Fatal error. Please report. "
                                       "Error Code TB006"),
                        msg::OKOnly, kErrorTitle);
            break;
        }
        CategoryNode top = *found;
        fill(top);
        tree.append(top);
    }
    return tree;
}

QSet<QString> ValidChildCategories(const QString &category)
{
    QSet<QString> valid;
    Recordset rs = Process().TermDB.OpenRecordset(
        QStringLiteral("SELECT * FROM valid_families WHERE parentCategoryID = ") +
            Quoted(category) + QStringLiteral(" OR parentCategoryID = 'all'"),
        dbOpenSnapshot);
    for (; !rs.Eof(); rs.MoveNext())
        valid.insert(TextOrEmpty(rs.Value(u"childCategoryID")).toCaseFolded());
    rs.Close();
    return valid;
}

bool IsValidChild(const QSet<QString> &valid, const QString &categoryId)
{
    return valid.contains(categoryId.toCaseFolded());
}

QString RefRecordCategory(const QString &id)
{
    if (like(id, "5.5.?"))
        return QStringLiteral("x5.5");
    if (like(id, "10.3.*"))
        return QStringLiteral("x10.3");
    if (like(id, "10.2.*"))
        return QStringLiteral("x10.2.2");
    if (id == QLatin1String("4"))
        return QStringLiteral("xx4");
    for (const char *own : {"4.2", "9.2", "10.20", "10.21.1", "10.21.2"}) {
        if (id == QLatin1String(own))
            return QStringLiteral("x") + id;
    }
    if (id == QLatin1String("5.3x"))
        return QStringLiteral("x11.1");
    return {};
}

QString RecordValueTable(const QString &recordCategory)
{
    const bool asText = recordCategory == QLatin1String("x4.2") ||
                        recordCategory == QLatin1String("x9.2") ||
                        recordCategory == QLatin1String("x10.3");
    return asText ? QStringLiteral("text_values") : QStringLiteral("ref_values");
}

QList<RecordValue> RecordValues(const QString &recordCategory, const QString &table)
{
    QList<RecordValue> records;
    Recordset rs = Process().TermDB.OpenRecordset(
        QStringLiteral("SELECT ") + table +
            QStringLiteral(".elemID, value from elements INNER JOIN ") + table +
            QStringLiteral(" ON elements.elemID = ") + table +
            QStringLiteral(".elemID WHERE categoryID = ") + Quoted(recordCategory),
        dbOpenSnapshot);
    for (; !rs.Eof(); rs.MoveNext())
        records.append({rs.Value(u"elemID").toInt(), TextOrEmpty(rs.Value(u"value"))});
    rs.Close();
    return records;
}

// Records of a classification system, a concept system and a subset keep their value as text:
// they are looked for where they are written.
QStringList CollectRefValues(const QString &categoryId)
{
    const QString record = RefRecordCategory(categoryId);
    QStringList values;
    for (const RecordValue &r : RecordValues(record, RecordValueTable(record)))
        values.append(r.Value);
    return values;
}

CategoryEditor ChooseCategoryEditor(const QString &id)
{
    using Control = CategoryEditor::Control;
    CategoryEditor editor;
    const QStringList *row = DataCatRow(id);
    const QString valueType = row ? row->value(dcValueType) : QString();
    const QString gi = row ? row->value(dcGI) : QString();
    editor.Name = row ? row->value(dcName) : QString();
    editor.NeedsLang = CategoryNeedsLang(id);
    if (id == QLatin1String("1")) {
        editor.Shown = Control::Text;
        return editor;
    }
    if (id == QLatin1String("0.3")) {
        editor.Shown = Control::Concepts;
        return editor;
    }
    if (isBackmatterReference(id)) {
        for (const RecordValue &r :
             RecordValues(BackmatterSource(id), QStringLiteral("text_values")))
            editor.Values.append(r.Value);
        editor.Shown = editor.Values.isEmpty() ? Control::NoElements : Control::BackmatterList;
        return editor;
    }
    static const std::pair<const char *, const char *> records[] = {
        {"x10.20", "AddBibliography"}, {"x10.2.2", "AddPerson"}, {"xx4", "AddSubjectFieldSet"},
        {"x10.21.1", "AddUrl"},        {"x10.21.2", "AddFpi"},
    };
    for (const auto &[record, command] : records) {
        if (id == QLatin1String(record)) {
            editor.Shown = Control::Record;
            editor.RecordCommand = QString::fromLatin1(command);
            return editor;
        }
    }
    if (gi == QLatin1String("refObject")) {
        editor.Shown = Control::Record;
        editor.RecordCommand = QStringLiteral("AddBinaryRecord");
    } else if (gi == QLatin1String("ref")) {
        editor.Values = CollectRefValues(id);
        editor.Shown = editor.Values.isEmpty() ? Control::NoElements : Control::Refs;
    } else if (gi == QLatin1String("ptr")) {
        editor.Shown = Control::Pointer;
    } else if (valueType == QLatin1String("text")) {
        editor.Shown = Control::Text;
    } else if (valueType == QLatin1String("picklist")) {
        editor.Shown = Control::Picklist;
        editor.Values = ReadPicklist(id);
    } else if (valueType == QLatin1String("date")) {
        editor.Shown = Control::Date;
    } else if (valueType == QLatin1String("number")) {
        editor.Shown = Control::Number;
    }
    return editor;
}

QStringList ReadPicklist(const QString &categoryId)
{
    return ReadColumn(Process().TermDB,
                      QStringLiteral("SELECT * from picklists WHERE categoryID = ") +
                          Quoted(categoryId),
                      u"Value");
}

QString NoElementsMessage()
{
    return QStringLiteral(
        "No elements of this kind have been added to the TermBase's backmatter. In order to add "
        "new elements click on the container under the 'backmatter' folder in the elements tree, "
        "then click on the desired category in the 'data categories' tree.");
}

} // namespace lx
