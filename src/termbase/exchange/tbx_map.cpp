#include "termbase/exchange/tbx_map.h"

#include <QStringList>

#include <array>

namespace lx::tbx {

namespace {

constexpr unsigned CT = ConceptLevel | TermLevel;
constexpr unsigned CL = ConceptLevel | LanguageLevel;

// Shorthands for the table.
constexpr Category frame(QStringView id, QStringView element)
{
    return {id, Kind::Frame, element, {}};
}
constexpr Category heading(QStringView id)
{
    return {id, Kind::Heading, {}, {}};
}
constexpr Category note(QStringView id, QStringView typeWord)
{
    return {id, Kind::Note, u"note", typeWord};
}
constexpr Category basic(QStringView id, QStringView element, QStringView type, unsigned levels,
                         bool primary = true, bool targets = false)
{
    return {id, Kind::Basic, element, type, levels, {}, primary, targets};
}
// A pointer to a person or a date, as the transaction of the given type.
constexpr Category transaction(QStringView id, QStringView part, QStringView transac, bool targets)
{
    return {id, Kind::Basic, u"transacGrp", part, AnyLevel, transac, true, targets};
}
constexpr Category record(QStringView id, QStringView section, QStringView ownItem)
{
    return {id, Kind::Record, u"refObject", section, NoLevel, ownItem};
}
constexpr Category item(QStringView id, QStringView type)
{
    return {id, Kind::Item, u"item", type};
}

// One row a category of the seed, in its order.
constexpr std::array kCategories{
    heading(u"DC"),
    heading(u"all"),
    frame(u"0", u"tbx"),
    frame(u"1", u"term"),
    heading(u"2"),
    heading(u"descrip"),
    heading(u"admin"),
    heading(u"100"),
    frame(u"0.1", u"tbxHeader"),
    frame(u"0.2", u"body"),
    frame(u"0.3", u"conceptEntry"),
    frame(u"0.4", u"langSec"),
    frame(u"0.5", u"back"),
    // Terms.
    basic(u"2.1", u"termNote", u"termType", TermLevel),
    heading(u"2.2"),
    basic(u"2.2.1", u"termNote", u"partOfSpeech", TermLevel),
    basic(u"2.2.2", u"termNote", u"grammaticalGender", TermLevel),
    note(u"2.2.3", u"grammaticalNumber"),
    note(u"2.2.4", u"animacy"),
    note(u"2.2.5", u"grammaticalValency"),
    note(u"2.2.6", u"inflection"),
    heading(u"2.3"),
    basic(u"2.3.1", u"termNote", u"geographicalUsage", TermLevel),
    note(u"2.3.2", u"register"),
    note(u"2.3.3", u"frequency"),
    note(u"2.3.4", u"temporalQualifier"),
    note(u"2.3.5", u"timeRestriction"),
    note(u"2.3.6", u"proprietaryRestriction"),
    note(u"2.3.7", u"usageNote"),
    heading(u"2.4"),
    note(u"2.4.1", u"termProvenance"),
    note(u"2.4.2", u"etymology"),
    note(u"2.4.3", u"sourceLanguage"),
    note(u"2.4.4", u"termFormation"),
    note(u"2.5", u"pronunciation"),
    note(u"2.6", u"hyphenation"),
    note(u"2.7", u"transcription"),
    heading(u"2.8"),
    note(u"2.8.1", u"normativeAuthorization"),
    basic(u"2.8.2", u"termNote", u"administrativeStatus", TermLevel),
    note(u"2.8.3", u"processStatus"),
    note(u"2.8.4", u"languagePlanningQualifier"),
    note(u"2.8.5", u"transferComment"),
    heading(u"2.9"),
    note(u"2.9.1", u"termElement"),
    note(u"2.9.2", u"headTerm"),
    note(u"2.9.3", u"morphologicalElement"),
    note(u"2.9.4", u"compoundType"),
    // Equivalence.
    heading(u"3"),
    note(u"3.1", u"degreeOfEquivalence"),
    note(u"3.2", u"directionality"),
    basic(u"3.2x", u"ref", u"crossReference", CT, false, true),
    note(u"3.3", u"equivalenceComment"),
    note(u"3.4", u"reliabilityCode"),
    note(u"3.5", u"antonymTerm"),
    basic(u"3.5x", u"ref", u"crossReference", CT, false, true),
    note(u"3.6", u"equivalenceConstraint"),
    // Subject field: the name of the subject field set it points at.
    basic(u"4", u"descrip", u"subjectField", ConceptLevel, true, true),
    note(u"4.1", u"subjectFieldCode"),
    note(u"4.2", u"classificationSystem"),
    note(u"4.3", u"subjectFieldNote"),
    // Concept description.
    heading(u"5"),
    basic(u"5.1", u"descrip", u"definition", CL),
    note(u"5.2", u"explanation"),
    basic(u"5.3", u"descrip", u"context", TermLevel),
    basic(u"5.3x", u"xref", u"externalCrossReference", CT, false, true),
    note(u"5.4", u"example"),
    heading(u"5.5"),
    basic(u"5.5.1", u"xref", u"xGraphic", ConceptLevel, true, true),
    basic(u"5.5.2", u"xref", u"externalCrossReference", CT, false, true),
    basic(u"5.5.3", u"xref", u"externalCrossReference", CT, false, true),
    basic(u"5.5.4", u"xref", u"externalCrossReference", CT, false, true),
    basic(u"5.5.5", u"xref", u"externalCrossReference", CT, false, true),
    note(u"5.6", u"unit"),
    note(u"5.7", u"range"),
    note(u"5.8", u"characteristic"),
    note(u"5.9", u"quantity"),
    heading(u"6"),
    note(u"6.1", u"broaderConceptGeneric"),
    note(u"6.2", u"broaderConceptPartitive"),
    note(u"6.3", u"subordinateConceptGeneric"),
    note(u"6.4", u"subordinateConceptPartitive"),
    note(u"6.5", u"coordinateConceptGeneric"),
    note(u"6.6", u"coordinateConceptPartitive"),
    note(u"6.7", u"relatedConcept"),
    note(u"6.8", u"sequentiallyRelatedConcept"),
    note(u"6.9", u"spatiallyRelatedConcept"),
    note(u"6.10", u"temporallyRelatedConcept"),
    heading(u"7"),
    note(u"7.1", u"conceptPosition"),
    note(u"7.2", u"conceptSystemName"),
    note(u"7.3", u"conceptDiagram"),
    basic(u"8", u"note", {}, AnyLevel),
    heading(u"9"),
    note(u"9.1", u"classificationCode"),
    note(u"9.2", u"thesaurusDescriptor"),
    basic(u"9.2.1", u"ref", u"crossReference", CT, false, true),
    basic(u"9.2.2", u"ref", u"crossReference", CT, false, true),
    basic(u"9.2.3", u"ref", u"crossReference", CT, false, true),
    basic(u"9.2.4", u"ref", u"crossReference", CT, false, true),
    // Administration.
    note(u"10.1", u"entryIdentifier"),
    heading(u"10.2"),
    note(u"10.2.1", u"originatingInstitution"),
    heading(u"10.2.2"),
    transaction(u"10.2.2.1", u"responsibility", u"origination", true),
    note(u"10.2.2.2", u"inputter"),
    transaction(u"10.2.2.3", u"responsibility", u"modification", true),
    note(u"10.2.2.4", u"checker"),
    note(u"10.2.2.5", u"approver"),
    note(u"10.2.2.6", u"translator"),
    note(u"10.2.2.7", u"reviewer"),
    note(u"10.2.2.8", u"standardizer"),
    note(u"10.2.2.9", u"withdrawer"),
    note(u"10.2.2.10", u"entryResponsible"),
    heading(u"10.3"),
    note(u"10.3.1", u"applicationSubset"),
    note(u"10.3.2", u"environmentSubset"),
    basic(u"10.3.3", u"admin", u"customerSubset", TermLevel),
    basic(u"10.3.4", u"admin", u"projectSubset", TermLevel),
    note(u"10.3.5", u"productSubset"),
    note(u"10.3.6", u"businessUnitSubset"),
    note(u"10.3.7", u"securitySubset"),
    note(u"10.4", u"sortKey"),
    note(u"10.5", u"originatingDatabase"),
    heading(u"10.6"),
    basic(u"10.6.1", u"ref", u"crossReference", CT, false, true),
    heading(u"10.7"),
    transaction(u"10.7.1", u"date", u"origination", false),
    note(u"10.7.2", u"inputDate"),
    transaction(u"10.7.3", u"date", u"modification", false),
    note(u"10.7.4", u"checkDate"),
    note(u"10.7.5", u"approvalDate"),
    note(u"10.7.6", u"standardizationDate"),
    note(u"10.7.7", u"withdrawalDate"),
    note(u"10.8", u"transactionNote"),
    note(u"10.9", u"elementWorkingStatus"),
    note(u"10.10", u"reliability"),
    note(u"10.11", u"securityClass"),
    note(u"10.12", u"usageCount"),
    basic(u"10.18", u"ref", u"crossReference", CT, true, true),
    basic(u"10.18.5", u"ref", u"crossReference", CT, false, true),
    basic(u"10.18.6", u"ref", u"crossReference", CT, false, true),
    heading(u"10.19"),
    basic(u"10.19.1", u"admin", u"source", AnyLevel),
    basic(u"10.19.2", u"admin", u"source", AnyLevel, false),
    basic(u"10.19.3", u"admin", u"source", AnyLevel, false),
    basic(u"10.19.4", u"admin", u"source", AnyLevel, false),
    // A bibliographic source: its descriptor, pointing at its record.
    basic(u"10.20", u"admin", u"source", AnyLevel, true, true),
    heading(u"10.21"),
    basic(u"10.21.1", u"xref", u"externalCrossReference", CT, true, true),
    note(u"10.21.2", u"fpi"),
    // The backmatter's containers, its records and their fields.
    frame(u"x1", u"back"),
    frame(u"x2", u"back"),
    frame(u"x3", u"back"),
    frame(u"x4", u"back"),
    frame(u"x5", u"back"),
    frame(u"x6", u"back"),
    frame(u"x7", u"back"),
    frame(u"x8", u"back"),
    frame(u"x9", u"back"),
    frame(u"x10", u"back"),
    frame(u"x11", u"back"),
    record(u"x10.20", u"source", u"title"),
    item(u"x10.20.1", u"author"),
    item(u"x10.20.2", u"date"),
    item(u"x10.20.3", u"articleTitle"),
    item(u"x10.20.4", u"bookTitle"),
    item(u"x10.20.5", u"publisher"),
    item(u"x10.20.6", u"publicationPlace"),
    item(u"x10.20.7", u"isbn"),
    item(u"x10.20.8", u"pages"),
    record(u"x5.5", u"binaryData", u"file"),
    record(u"x10.2.2", u"respPerson", u"uid"),
    item(u"x10.2.2.2", u"fn"),
    item(u"x10.2.2.3", u"role"),
    item(u"x10.2.2.4", u"email"),
    item(u"x10.2.2.5", u"tel"),
    item(u"x10.2.2.6", u"note"),
    record(u"xx4", u"subjectFieldSet", u"subjectField"),
    record(u"x10.21.1", u"url", u"url"),
    record(u"x10.21.2", u"fpi", u"fpi"),
    record(u"x7.2", u"conceptSystem", u"name"),
    record(u"x4.2", u"classificationSystem", u"name"),
    record(u"x9.1", u"thesaurus", u"name"),
    record(u"x9.2", u"descriptor", u"name"),
    record(u"x10.3", u"subset", u"name"),
    record(u"x11.1", u"contextFile", u"file"),
};

struct ValuePair {
    QStringView Id;
    QStringView Seed;
    QStringView Tbx;
};

// The seed values that have a TBX-Basic counterpart, for the categories whose TBX-Basic list is
// closed. A value missing here goes out as a note.
constexpr std::array kValues{
    ValuePair{u"2.1", u"fullForm", u"fullForm"},
    ValuePair{u"2.1", u"abbreviation", u"abbreviation"},
    ValuePair{u"2.1", u"acronym", u"acronym"},
    ValuePair{u"2.1", u"shortForm", u"shortForm"},
    ValuePair{u"2.1", u"variant", u"variant"},
    ValuePair{u"2.1", u"phraseologicalUnit", u"phrase"},
    ValuePair{u"2.2.1", u"noun", u"noun"},
    ValuePair{u"2.2.1", u"verb", u"verb"},
    ValuePair{u"2.2.1", u"adjective", u"adjective"},
    ValuePair{u"2.2.1", u"adverb", u"adverb"},
    ValuePair{u"2.2.1", u"other", u"other"},
    ValuePair{u"2.2.2", u"masculine", u"masculine"},
    ValuePair{u"2.2.2", u"feminine", u"feminine"},
    ValuePair{u"2.2.2", u"neuter", u"neuter"},
    ValuePair{u"2.2.2", u"otherGender", u"other"},
    ValuePair{u"2.8.2", u"preferredTerm-admn-sts", u"preferredTerm-admn-sts"},
    ValuePair{u"2.8.2", u"admittedTerm-admn-sts", u"admittedTerm-admn-sts"},
    ValuePair{u"2.8.2", u"deprecatedTerm-admn-sts", u"deprecatedTerm-admn-sts"},
    ValuePair{u"2.8.2", u"supersededTerm-admn-sts", u"supersededTerm-admn-sts"},
};

struct FixedList {
    QStringView Element;
    QStringView Type;
    QStringList Values;
};

// The closed lists of TBX-Basic, including values the seed has no counterpart for.
const std::array<FixedList, 7> &fixedLists()
{
    static const std::array<FixedList, 7> lists{
        FixedList{u"termNote",
                  u"termType",
                  {"fullForm", "acronym", "abbreviation", "shortForm", "variant", "phrase"}},
        FixedList{u"termNote", u"partOfSpeech", {"adjective", "noun", "other", "verb", "adverb"}},
        FixedList{u"termNote", u"grammaticalGender", {"masculine", "feminine", "neuter", "other"}},
        FixedList{u"termNote",
                  u"administrativeStatus",
                  {"admittedTerm-admn-sts", "deprecatedTerm-admn-sts", "supersededTerm-admn-sts",
                   "preferredTerm-admn-sts"}},
        FixedList{u"termNote",
                  u"termLocation",
                  {"checkBox", "comboBox", "comboBoxElement", "dialogBox", "groupBox",
                   "informativeMessage", "interactiveMessage", "menuItem", "progressBar",
                   "pushButton", "radioButton", "slider", "spinBox", "tab", "tableText", "textBox",
                   "toolTip", "user-definedType"}},
        FixedList{u"transac", u"transactionType", {"origination", "modification"}},
        FixedList{u"xref", u"xGraphic", {}},
    };
    return lists;
}

} // namespace

std::span<const Category> Categories()
{
    return kCategories;
}

const Category *FindCategory(QStringView id)
{
    for (const Category &c : kCategories) {
        if (c.Id == id)
            return &c;
    }
    return nullptr;
}

const Category *CategoryFromTbx(QStringView element, QStringView type, QStringView value,
                                bool hasTarget)
{
    const Category *found = nullptr;
    for (const Category &c : kCategories) {
        if (c.Of != Kind::Basic || !c.Primary || c.Element != element || c.Type != type)
            continue;
        if (element == u"transacGrp" && c.Value != value)
            continue;
        if (!found || (c.Targets == hasTarget && found->Targets != hasTarget))
            found = &c;
    }
    return found;
}

bool AllowedAt(const Category &category, Level level)
{
    return (category.Levels & level) != 0;
}

bool HasFixedValues(QStringView id)
{
    for (const ValuePair &v : kValues) {
        if (v.Id == id)
            return true;
    }
    return false;
}

std::optional<QString> TbxValue(QStringView id, const QString &seedValue)
{
    if (!HasFixedValues(id))
        return seedValue;
    for (const ValuePair &v : kValues) {
        if (v.Id == id && v.Seed == seedValue)
            return v.Tbx.toString();
    }
    return std::nullopt;
}

std::optional<QString> SeedValue(QStringView id, const QString &tbxValue)
{
    if (!HasFixedValues(id))
        return tbxValue;
    for (const ValuePair &v : kValues) {
        if (v.Id == id && v.Tbx == tbxValue)
            return v.Seed.toString();
    }
    return std::nullopt;
}

QStringList FixedTbxValues(QStringView element, QStringView type)
{
    QStringList values;
    for (const FixedList &list : fixedLists()) {
        if (list.Element == element && list.Type == type) {
            values << list.Values;
        }
    }
    return values;
}

QString NoteText(QStringView typeWord, const QString &value)
{
    return typeWord.toString() + QStringLiteral(": ") + value;
}

std::optional<NoteValue> ParseNote(const QString &text)
{
    const qsizetype colon = text.indexOf(QStringLiteral(": "));
    if (colon <= 0)
        return std::nullopt;
    const QStringView word = QStringView(text).left(colon);
    for (const Category &c : kCategories) {
        if (c.Of == Kind::Note && c.Type == word)
            return NoteValue{&c, text.mid(colon + 2)};
    }
    return std::nullopt;
}

} // namespace lx::tbx
