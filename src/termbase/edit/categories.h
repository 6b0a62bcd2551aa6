#pragma once

#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

// The vocabulary of a termbase: the data categories held in memory while it is open, their
// tree, which of them may stand under an element, and which input a category calls for.
namespace lx {

// Columns of a DataCats row, counted from 0 (the categoryID first).
enum DataCatColumn { dcId, dcGI, dcType, dcValueType, dcNeedsLang, dcFormsLink, dcName };

// Opens rsDatCats for the DCLang names and fills DataCats from it, in categoryID order.
void LoadCategoryTable();

// Columns of DataCats for a category; empty for an unknown one, without a word.
QString CategoryName(const QString &categoryId);
QString CategoryType(const QString &categoryId);
QString CategoryGI(const QString &categoryId);

// The DataCats row of a category, or null for an unknown one.
const QStringList *DataCatRow(const QString &categoryId);
// Whether the category's value carries a language (needs_lang).
bool CategoryNeedsLang(const QString &categoryId);

// The category of an element; for a number no element has, the GL001 message and empty.
QString ElementCategory(qint32 elemId);
// The concept of the term entry that holds an element: walking up to the entry ("0.3"), its
// Concept in TE_CONCEPTS; empty when there is none.
QString ElementConcept(qint32 elemId);

// One category of the pane, with its children in categoryID order.
struct CategoryNode {
    QString Id;
    QString Name;
    QList<CategoryNode> Children;
};
// The six top categories in their fixed order ("0", "1", "2", "descrip", "admin", "100"),
// each with its descendants, for the DCLang names. A top category without a name stops the
// list there after the TB006 message.
QList<CategoryNode> ReadCategoryTree();

// The categories that may stand under an element of `category` (and those allowed
// everywhere), folded to compare as the store compares text.
QSet<QString> ValidChildCategories(const QString &category);
bool IsValidChild(const QSet<QString> &valid, const QString &categoryId);

// The backmatter record category a reference points at ("x5.5" for "5.5.1", ...); empty for a
// category that refers to none.
QString RefRecordCategory(const QString &categoryId);
// The values of the records a reference category may point at, in the order of the rows.
QStringList CollectRefValues(const QString &categoryId);

// The record category that a reference to the backmatter (a responsible, "10.20", "4", a URL
// or an FPI) takes its values from.
QString BackmatterSource(const QString &categoryId);
// Where records of `recordCategory` keep their value: the records of a classification system,
// a concept system and a subset as text, the others in ref_values.
QString RecordValueTable(const QString &recordCategory);
// The records of `recordCategory` with the value each keeps in `table`, in the order of the rows.
struct RecordValue {
    qint32 Element = 0;
    QString Value;
};
QList<RecordValue> RecordValues(const QString &recordCategory, const QString &table);

// What a click on a category puts on the edit frame.
struct CategoryEditor {
    enum class Control {
        None,           // no control, only the assert button
        Text,           // txtData
        Concepts,       // dbcConcepts
        Refs,           // lstRefs, with Values
        Picklist,       // lstData, with Values
        Date,           // mskData
        Number,         // sldData
        BackmatterList, // lstData with the values of backmatter records
        Record,         // a backmatter record is made by RecordCommand
        Pointer,        // a cross-reference to pick in the element tree
        NoElements,     // the no-elements message, and nothing more
    };
    Control Shown = Control::None;
    QString Name;          // the caption of the frame
    QStringList Values;    // the rows of lstRefs or lstData
    QString RecordCommand; // "AddBibliography", "AddPerson", ... "AddBinaryRecord"
    bool NeedsLang = false;
};
CategoryEditor ChooseCategoryEditor(const QString &categoryId);

// The message of a reference whose backmatter holds no record yet.
QString NoElementsMessage();
// The values of a picklist category, in the table's order.
QStringList ReadPicklist(const QString &categoryId);

} // namespace lx
