#include "termbase/edit/assert.h"

#include "core/interaction.h"
#include "core/process.h"
#include "core/store/database.h"
#include "core/store/types.h"
#include "core/text/like.h"
#include "termbase/edit/categories.h"

#include <QDate>

#include <optional>

namespace lx {

using namespace store;

namespace {

const QString kErrorTitle = QStringLiteral("Error");
constexpr int MaxDescription = 50;

qint32 addElement(TermbaseEditor &editor, const QString &category, qint32 parent)
{
    return AddElementRow(editor, category, parent);
}

} // namespace

qint32 AddElementRow(TermbaseEditor &editor, const QString &category, qint32 parent)
{
    Recordset &rs = Process().rsElements;
    rs.AddNew();
    rs.Collect(u"elemID", editor.LastElemID + 1);
    rs.Collect(u"categoryID", category);
    rs.Collect(u"parentID", parent);
    rs.Update();
    return ++editor.LastElemID;
}

namespace {

void addRow(const char *table, std::initializer_list<std::pair<QStringView, QVariant>> fields)
{
    Recordset rs = Process().TermDB.OpenRecordset(QString::fromLatin1(table), dbOpenTable);
    rs.AddNew();
    for (const auto &[name, value] : fields)
        rs.Collect(name, value);
    rs.Update();
    rs.Close();
}

bool isBackmatterReference(const QString &id)
{
    if (id == QLatin1String("10.20") || id == QLatin1String("4") ||
        id == QLatin1String("10.21.1") || id == QLatin1String("10.21.2"))
        return true;
    for (int i = 1; i <= 10; ++i) {
        if (id == QStringLiteral("10.2.2.%1").arg(i))
            return true;
    }
    return false;
}

QDate parseDate(const QString &text)
{
    return QDate::fromString(text, QStringLiteral("dd/MM/yyyy"));
}

} // namespace

std::optional<QDate> AcceptedDate(const QString &text)
{
    const QDate date = parseDate(text);
    if (date.isValid())
        return date;
    UI().MsgBox(QStringLiteral("The date ") + text +
                    QStringLiteral(" is no day of the calendar: type it as dd/mm/yyyy."),
                msg::Critical, kErrorTitle);
    return std::nullopt;
}

namespace {

// The checks on the value before anything is written; the first refusal is told.
bool valueAccepted(const AssertInput &input)
{
    const bool blank =
        input.Value.trimmed().isEmpty() ||
        (input.From == AssertInput::Source::Number && input.Value == QLatin1String("0"));
    if (blank) {
        UI().MsgBox(QStringLiteral("You must specify a value"), msg::Critical, kErrorTitle);
        return false;
    }
    if (input.From == AssertInput::Source::Date && !AcceptedDate(input.Value))
        return false;
    if (input.From == AssertInput::Source::Picklist && input.CategoryId.size() > 0 &&
        !isBackmatterReference(input.CategoryId) &&
        !ReadColumn(Process().TermDB,
                    QStringLiteral("SELECT * from picklists WHERE categoryID = ") +
                        Quoted(input.CategoryId),
                    u"Value")
             .contains(input.Value)) {
        UI().MsgBox(QStringLiteral("The value ") + input.Value +
                        QStringLiteral(" is not in the list of this category."),
                    msg::Critical, kErrorTitle);
        return false;
    }
    return true;
}

// A term goes into the section of its language under the selected concept, made if needed.
void assertTerm(TermbaseEditor &editor, const AssertInput &input, AssertResult &result)
{
    ProcessState &p = Process();
    Recordset sections = p.TermDB.OpenRecordset(
        QStringLiteral("SELECT * FROM elements WHERE categoryID = '0.4' AND parentID = ") +
            QString::number(input.Parent),
        dbOpenSnapshot);
    bool found = false;
    for (; !sections.Eof(); sections.MoveNext()) {
        result.SectionsFound = true;
        const qint32 section = sections.Value(u"elemID").toInt();
        p.rsElemLang.Seek(u"=", section);
        if (p.rsElemLang.NoMatch())
            return; // a section that lost its language: nothing is written
        if (p.rsElemLang.Value(u"langID").toString() != input.Language)
            continue;
        const qint32 term = addElement(editor, QStringLiteral("1"), section);
        ++editor.TermCount;
        addRow("TERMS", {{u"elemID", term}, {u"term", input.Value}, {u"langID", input.Language}});
        found = true;
        break;
    }
    sections.Close();
    if (!found) {
        const qint32 section = addElement(editor, QStringLiteral("0.4"), input.Parent);
        const qint32 term = addElement(editor, QStringLiteral("1"), section);
        addRow("elements_use_lang", {{u"elemID", section}, {u"langID", input.Language}});
        addRow("TERMS", {{u"elemID", term}, {u"term", input.Value}, {u"langID", input.Language}});
        ++editor.TermCount;
        result.NewSection = true;
    }
    result.Written = true;
}

// A concept has one term entry at most; the joined row writes the element and its concept.
void assertEntry(TermbaseEditor &editor, const AssertInput &input, AssertResult &result)
{
    Recordset rs = Process().TermDB.OpenRecordset(
        QStringLiteral("SELECT elements.elemID, elements.categoryID, elements.parentID, "
                       "TE_Concepts.Concept FROM elements INNER JOIN TE_CONCEPTS ON "
                       "elements.elemID = TE_CONCEPTS.elemID"),
        dbOpenDynaset);
    rs.FindFirst(QStringLiteral("Concept = ") + Quoted(input.Value));
    if (!rs.NoMatch()) {
        UI().MsgBox(QStringLiteral("TermEntry exists!"), msg::Information, kErrorTitle);
        rs.Close();
        return;
    }
    rs.AddNew();
    rs.Collect(u"elemID", editor.LastElemID + 1);
    rs.Collect(u"categoryID", QStringLiteral("0.3"));
    rs.Collect(u"parentID", input.Parent);
    rs.Collect(u"Concept", input.Value);
    rs.Update();
    rs.Close();
    ++editor.LastElemID;
    ++editor.EntryCount;
    result.Written = true;
}

// The first record whose value is `value`.
std::optional<qint32> elementWithValue(const QList<RecordValue> &records, const QString &value)
{
    for (const RecordValue &r : records) {
        if (r.Value == value)
            return r.Element;
    }
    return std::nullopt;
}

// A pointer to the backmatter record whose value is the chosen text; 0 when none has it.
void assertBackmatterReference(TermbaseEditor &editor, const AssertInput &input,
                               AssertResult &result)
{
    const QString &id = input.CategoryId;
    const QList<RecordValue> records =
        RecordValues(BackmatterSource(id), QStringLiteral("text_values"));
    if (records.isEmpty()) {
        // An empty backmatter: the element stands without a pointer.
        addElement(editor, id, input.Parent);
        result.Written = true;
        return;
    }
    const qint32 target = elementWithValue(records, input.Value).value_or(0);
    // A record removed since the list was filled: a pointer to it could only point nowhere.
    if (target == 0) {
        UI().MsgBox(QStringLiteral("The record ") + input.Value +
                        QStringLiteral(" is no longer in the backmatter."),
                    msg::Critical, kErrorTitle);
        return;
    }
    const qint32 element = addElement(editor, id, input.Parent);
    addRow("pointers", {{u"elemID", element}, {u"targetID", target}});
    result.Written = true;
}

// The record that a reference names by its value: a file or context record by ref_values, a
// classification system, concept system or subset record where its value is kept, as text.
std::optional<qint32> refTarget(const AssertInput &input)
{
    const QString record = RefRecordCategory(input.CategoryId);
    if (RecordValueTable(record) == QLatin1String("text_values"))
        return elementWithValue(RecordValues(record, QStringLiteral("text_values")), input.Value);
    Recordset &refs = Process().rsRefValues;
    refs.SetIndex(QStringLiteral("value"));
    refs.Seek(u"=", input.Value);
    std::optional<qint32> target;
    if (!refs.NoMatch())
        target = refs.Value(u"elemID").toInt();
    refs.SetIndex(QStringLiteral("elemID"));
    return target;
}

void assertGeneral(TermbaseEditor &editor, const AssertInput &input, bool needsLang,
                   AssertResult &result)
{
    using Source = AssertInput::Source;
    const qint32 element = addElement(editor, input.CategoryId, input.Parent);
    result.Written = true;
    switch (input.From) {
    case Source::Text:
        addRow("text_values", {{u"elemID", element}, {u"value", input.Value}});
        break;
    case Source::Picklist:
        addRow("picklist_values", {{u"elemID", element}, {u"value", input.Value}});
        break;
    case Source::Refs: {
        const std::optional<qint32> target = refTarget(input);
        if (!target) {
            UI().MsgBox(QStringLiteral("Inconsistency error. Element does not exist. Error Code "
                                       "TB005"),
                        msg::Critical, kErrorTitle);
            return; // the element stays without its value
        }
        addRow("pointers", {{u"elemID", element}, {u"targetID", *target}});
        break;
    }
    case Source::Date:
        addRow("date_values", {{u"elemID", element}, {u"value", parseDate(input.Value)}});
        break;
    case Source::Number:
        addRow("number_values", {{u"elemID", element}, {u"value", input.Value.toInt()}});
        break;
    case Source::Concepts:
    case Source::None:
        break;
    }
    if (needsLang)
        addRow("elements_use_lang", {{u"elemID", element}, {u"langID", input.Language}});
}

} // namespace

QStringList ReadTermbaseConcepts()
{
    return ReadColumn(Process().TermDB, QStringLiteral("SELECT * FROM CONCEPTS ORDER BY Concept"),
                      u"Concept");
}

QStringList ReadLanguageCodes()
{
    return ReadColumn(Process().TermDB, QStringLiteral("SELECT * FROM langs ORDER BY langID"),
                      u"langID");
}

AssertResult AssertElement(TermbaseEditor &editor, const AssertInput &input)
{
    AssertResult result;
    if (input.LanguageShown && input.Language.isEmpty()) {
        UI().MsgBox(QStringLiteral("This element requires a language to be specified"),
                    msg::Information, kErrorTitle);
        result.RefusedForLanguage = true;
        return result;
    }
    if (input.CategoryId.isEmpty())
        return result;
    if (!valueAccepted(input))
        return result;
    const QString &id = input.CategoryId;
    if (id == QLatin1String("1")) {
        result.Went = AssertResult::Branch::Term;
        assertTerm(editor, input, result);
    } else if (id == QLatin1String("0.3")) {
        result.Went = AssertResult::Branch::Entry;
        assertEntry(editor, input, result);
    } else if (isBackmatterReference(id)) {
        result.Went = AssertResult::Branch::Backmatter;
        assertBackmatterReference(editor, input, result);
    } else {
        result.Went = AssertResult::Branch::General;
        assertGeneral(editor, input, CategoryNeedsLang(id), result);
    }
    return result;
}

void TellCrossReferencePicking()
{
    UI().MsgBox(QStringLiteral("Select the cross-referenced element on the elements tree. Expand "
                               "branches by clicking on the '+' symbol"),
                msg::Information, QStringLiteral("New Cross-reference"));
}

bool CompleteCrossReference(TermbaseEditor &editor, qint32 source, qint32 target,
                            const QString &targetCategory, const QString &category)
{
    if (target == source) {
        UI().MsgBox(QStringLiteral("An element can't be cross-referenced to itself!"),
                    msg::Exclamation);
        return false;
    }
    if (text::Like(targetCategory, u"0*")) {
        UI().MsgBox(QStringLiteral("Element can't be cross-referenced."), msg::Exclamation);
        return false;
    }
    const bool described = category == QLatin1String("10.18");
    if (!described && targetCategory != QLatin1String("1")) {
        UI().MsgBox(QStringLiteral("Not a valid cross-reference for ") + CategoryName(category) +
                        QStringLiteral(". Only terms, can be cross-referenced  by an element of "
                                       "this kind."),
                    msg::Exclamation);
        return false;
    }
    QString description;
    if (described) {
        description = UI().InputBox(QStringLiteral("Enter a description for this cross-reference."),
                                    QStringLiteral("Cross-reference Name"));
        if (description.size() > MaxDescription) {
            UI().MsgBox(QStringLiteral("That isn't short... Try again."), msg::Exclamation,
                        kErrorTitle);
            return false;
        }
        if (description.isEmpty())
            return false;
    } else {
        description = CategoryType(category);
        if (description.isEmpty()) {
            UI().MsgBox(QStringLiteral("Data integrity error. Data category not found. Error "
                                       "Code TB002."),
                        msg::OKOnly, kErrorTitle);
            return false;
        }
    }
    const qint32 element = addElement(editor, category, source);
    addRow("text_values", {{u"elemID", element}, {u"value", description}});
    addRow("pointers", {{u"elemID", element}, {u"targetID", target}});
    return true;
}

} // namespace lx
