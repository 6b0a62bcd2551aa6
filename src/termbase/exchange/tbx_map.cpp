#include "termbase/exchange/tbx_map.h"

#include <QStringList>

#include <array>

namespace lx::tbx {

namespace {

constexpr unsigned CT = ConceptLevel | TermLevel;
constexpr unsigned CL = ConceptLevel | LanguageLevel;

// Shorthands for the table.
constexpr Category frame(QStringView id, QStringView word, QStringView element)
{
    return {id, word, Kind::Frame, element, {}};
}
constexpr Category heading(QStringView id, QStringView word)
{
    return {id, word, Kind::Heading, {}, {}};
}
constexpr Category note(QStringView id, QStringView word)
{
    return {id, word, Kind::Note, u"note", word};
}
constexpr Category basic(QStringView id, QStringView word, QStringView element, QStringView type,
                         unsigned levels, bool primary = true, bool targets = false)
{
    return {id, word, Kind::Basic, element, type, levels, {}, primary, targets};
}
// A pointer to a person or a date, as the transaction of the given type.
constexpr Category transaction(QStringView id, QStringView word, QStringView part,
                               QStringView transac, bool targets)
{
    return {id, word, Kind::Basic, u"transacGrp", part, AnyLevel, transac, true, targets};
}
constexpr Category record(QStringView id, QStringView word, QStringView section,
                          QStringView ownItem)
{
    return {id, word, Kind::Record, u"refObject", section, NoLevel, ownItem};
}
constexpr Category item(QStringView id, QStringView word, QStringView type)
{
    return {id, word, Kind::Item, u"item", type};
}

// One row a category of the seed, in its order.
constexpr std::array kCategories{
    heading(u"DC", u"dataCategories"),
    heading(u"all", u"anyElement"),
    frame(u"0", u"termbase", u"tbx"),
    frame(u"1", u"term", u"term"),
    heading(u"2", u"termInformation"),
    heading(u"descrip", u"description"),
    heading(u"admin", u"administrativeInformation"),
    heading(u"100", u"backmatterRecords"),
    frame(u"0.1", u"header", u"tbxHeader"),
    frame(u"0.2", u"body", u"body"),
    frame(u"0.3", u"termEntry", u"conceptEntry"),
    frame(u"0.4", u"languageSection", u"langSec"),
    frame(u"0.5", u"backmatter", u"back"),
    // Terms.
    basic(u"2.1", u"termType", u"termNote", u"termType", TermLevel),
    heading(u"2.2", u"grammar"),
    basic(u"2.2.1", u"partOfSpeech", u"termNote", u"partOfSpeech", TermLevel),
    basic(u"2.2.2", u"grammaticalGender", u"termNote", u"grammaticalGender", TermLevel),
    note(u"2.2.3", u"grammaticalNumber"),
    note(u"2.2.4", u"animacy"),
    note(u"2.2.5", u"grammaticalValency"),
    note(u"2.2.6", u"inflection"),
    heading(u"2.3", u"usage"),
    basic(u"2.3.1", u"geographicalUsage", u"termNote", u"geographicalUsage", TermLevel),
    note(u"2.3.2", u"register"),
    note(u"2.3.3", u"frequency"),
    note(u"2.3.4", u"temporalQualifier"),
    note(u"2.3.5", u"timeRestriction"),
    note(u"2.3.6", u"proprietaryRestriction"),
    note(u"2.3.7", u"usageNote"),
    heading(u"2.4", u"termOrigin"),
    note(u"2.4.1", u"termProvenance"),
    note(u"2.4.2", u"etymology"),
    note(u"2.4.3", u"sourceLanguage"),
    note(u"2.4.4", u"termFormation"),
    note(u"2.5", u"pronunciation"),
    note(u"2.6", u"hyphenation"),
    note(u"2.7", u"transcription"),
    heading(u"2.8", u"termStatus"),
    note(u"2.8.1", u"normativeAuthorization"),
    basic(u"2.8.2", u"administrativeStatus", u"termNote", u"administrativeStatus", TermLevel),
    note(u"2.8.3", u"processStatus"),
    note(u"2.8.4", u"languagePlanningQualifier"),
    note(u"2.8.5", u"transferComment"),
    heading(u"2.9", u"termStructure"),
    note(u"2.9.1", u"termElement"),
    note(u"2.9.2", u"headTerm"),
    note(u"2.9.3", u"morphologicalElement"),
    note(u"2.9.4", u"compoundType"),
    // Equivalence.
    heading(u"3", u"equivalence"),
    note(u"3.1", u"degreeOfEquivalence"),
    note(u"3.2", u"directionality"),
    basic(u"3.2x", u"directionalEquivalent", u"ref", u"crossReference", CT, false, true),
    note(u"3.3", u"equivalenceComment"),
    note(u"3.4", u"reliabilityCode"),
    note(u"3.5", u"antonymTerm"),
    basic(u"3.5x", u"antonymTerm", u"ref", u"crossReference", CT, false, true),
    note(u"3.6", u"equivalenceConstraint"),
    // Subject field: the name of the subject field set it points at.
    basic(u"4", u"subjectField", u"descrip", u"subjectField", ConceptLevel, true, true),
    note(u"4.1", u"subjectFieldCode"),
    note(u"4.2", u"classificationSystem"),
    note(u"4.3", u"subjectFieldNote"),
    // Concept description.
    heading(u"5", u"conceptDescription"),
    basic(u"5.1", u"definition", u"descrip", u"definition", CL),
    note(u"5.2", u"explanation"),
    basic(u"5.3", u"context", u"descrip", u"context", TermLevel),
    basic(u"5.3x", u"contextFile", u"xref", u"externalCrossReference", CT, false, true),
    note(u"5.4", u"example"),
    heading(u"5.5", u"illustration"),
    basic(u"5.5.1", u"figure", u"xref", u"xGraphic", ConceptLevel, true, true),
    basic(u"5.5.2", u"audio", u"xref", u"externalCrossReference", CT, false, true),
    basic(u"5.5.3", u"video", u"xref", u"externalCrossReference", CT, false, true),
    basic(u"5.5.4", u"table", u"xref", u"externalCrossReference", CT, false, true),
    basic(u"5.5.5", u"otherBinaryData", u"xref", u"externalCrossReference", CT, false, true),
    note(u"5.6", u"unit"),
    note(u"5.7", u"range"),
    note(u"5.8", u"characteristic"),
    note(u"5.9", u"quantity"),
    heading(u"6", u"conceptRelation"),
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
    heading(u"7", u"conceptStructure"),
    note(u"7.1", u"conceptPosition"),
    note(u"7.2", u"conceptSystemName"),
    note(u"7.3", u"conceptDiagram"),
    basic(u"8", u"note", u"note", {}, AnyLevel),
    heading(u"9", u"documentaryLanguage"),
    note(u"9.1", u"classificationCode"),
    note(u"9.2", u"thesaurusDescriptor"),
    basic(u"9.2.1", u"broaderTerm", u"ref", u"crossReference", CT, false, true),
    basic(u"9.2.2", u"narrowerTerm", u"ref", u"crossReference", CT, false, true),
    basic(u"9.2.3", u"relatedTerm", u"ref", u"crossReference", CT, false, true),
    basic(u"9.2.4", u"useInstead", u"ref", u"crossReference", CT, false, true),
    // Administration.
    note(u"10.1", u"entryIdentifier"),
    heading(u"10.2", u"responsibility"),
    note(u"10.2.1", u"originatingInstitution"),
    heading(u"10.2.2", u"responsiblePerson"),
    transaction(u"10.2.2.1", u"originator", u"responsibility", u"origination", true),
    note(u"10.2.2.2", u"inputter"),
    transaction(u"10.2.2.3", u"modifier", u"responsibility", u"modification", true),
    note(u"10.2.2.4", u"checker"),
    note(u"10.2.2.5", u"approver"),
    note(u"10.2.2.6", u"translator"),
    note(u"10.2.2.7", u"reviewer"),
    note(u"10.2.2.8", u"standardizer"),
    note(u"10.2.2.9", u"withdrawer"),
    note(u"10.2.2.10", u"entryResponsible"),
    heading(u"10.3", u"subset"),
    note(u"10.3.1", u"applicationSubset"),
    note(u"10.3.2", u"environmentSubset"),
    basic(u"10.3.3", u"customerSubset", u"admin", u"customerSubset", TermLevel),
    basic(u"10.3.4", u"projectSubset", u"admin", u"projectSubset", TermLevel),
    note(u"10.3.5", u"productSubset"),
    note(u"10.3.6", u"businessUnitSubset"),
    note(u"10.3.7", u"securitySubset"),
    note(u"10.4", u"sortKey"),
    note(u"10.5", u"originatingDatabase"),
    heading(u"10.6", u"seeAlsoGroup"),
    basic(u"10.6.1", u"seeAlso", u"ref", u"crossReference", CT, false, true),
    heading(u"10.7", u"transactionDates"),
    transaction(u"10.7.1", u"originationDate", u"date", u"origination", false),
    note(u"10.7.2", u"inputDate"),
    transaction(u"10.7.3", u"modificationDate", u"date", u"modification", false),
    note(u"10.7.4", u"checkDate"),
    note(u"10.7.5", u"approvalDate"),
    note(u"10.7.6", u"standardizationDate"),
    note(u"10.7.7", u"withdrawalDate"),
    note(u"10.8", u"transactionNote"),
    note(u"10.9", u"elementWorkingStatus"),
    note(u"10.10", u"reliability"),
    note(u"10.11", u"securityClass"),
    note(u"10.12", u"usageCount"),
    basic(u"10.18", u"crossReference", u"ref", u"crossReference", CT, true, true),
    basic(u"10.18.5", u"homograph", u"ref", u"crossReference", CT, false, true),
    basic(u"10.18.6", u"falseFriend", u"ref", u"crossReference", CT, false, true),
    heading(u"10.19", u"sources"),
    basic(u"10.19.1", u"source", u"admin", u"source", AnyLevel),
    basic(u"10.19.2", u"termSource", u"admin", u"source", AnyLevel, false),
    basic(u"10.19.3", u"definitionSource", u"admin", u"source", AnyLevel, false),
    basic(u"10.19.4", u"contextSource", u"admin", u"source", AnyLevel, false),
    // A bibliographic source: its descriptor, pointing at its record.
    basic(u"10.20", u"bibliographicSource", u"admin", u"source", AnyLevel, true, true),
    heading(u"10.21", u"externalReference"),
    basic(u"10.21.1", u"url", u"xref", u"externalCrossReference", CT, true, true),
    note(u"10.21.2", u"fpi"),
    // The backmatter's containers, its records and their fields.
    frame(u"x1", u"bibliography", u"back"),
    frame(u"x2", u"binaryFiles", u"back"),
    frame(u"x3", u"persons", u"back"),
    frame(u"x4", u"subjectFields", u"back"),
    frame(u"x5", u"urls", u"back"),
    frame(u"x6", u"fpis", u"back"),
    frame(u"x7", u"conceptSystems", u"back"),
    frame(u"x8", u"classificationSystems", u"back"),
    frame(u"x9", u"documentaryLanguages", u"back"),
    frame(u"x10", u"subsets", u"back"),
    frame(u"x11", u"contexts", u"back"),
    record(u"x10.20", u"bibliographicRecord", u"source", u"title"),
    item(u"x10.20.1", u"author", u"author"),
    item(u"x10.20.2", u"date", u"date"),
    item(u"x10.20.3", u"articleTitle", u"articleTitle"),
    item(u"x10.20.4", u"bookTitle", u"bookTitle"),
    item(u"x10.20.5", u"publisher", u"publisher"),
    item(u"x10.20.6", u"publicationPlace", u"publicationPlace"),
    item(u"x10.20.7", u"isbn", u"isbn"),
    item(u"x10.20.8", u"pages", u"pages"),
    record(u"x5.5", u"binaryData", u"binaryData", u"file"),
    record(u"x10.2.2", u"personRecord", u"respPerson", u"uid"),
    item(u"x10.2.2.2", u"name", u"fn"),
    item(u"x10.2.2.3", u"role", u"role"),
    item(u"x10.2.2.4", u"email", u"email"),
    item(u"x10.2.2.5", u"phone", u"tel"),
    item(u"x10.2.2.6", u"remarks", u"note"),
    record(u"xx4", u"subjectFieldSet", u"subjectFieldSet", u"subjectField"),
    record(u"x10.21.1", u"urlRecord", u"url", u"url"),
    record(u"x10.21.2", u"fpiRecord", u"fpi", u"fpi"),
    record(u"x7.2", u"conceptSystemRecord", u"conceptSystem", u"name"),
    record(u"x4.2", u"classificationSystemRecord", u"classificationSystem", u"name"),
    record(u"x9.1", u"thesaurusRecord", u"thesaurus", u"name"),
    record(u"x9.2", u"descriptorRecord", u"descriptor", u"name"),
    record(u"x10.3", u"subsetRecord", u"subset", u"name"),
    record(u"x11.1", u"contextFile", u"contextFile", u"file"),
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

QString NoteText(QStringView word, const QString &value)
{
    return word.toString() + QStringLiteral(": ") + value;
}

std::optional<NoteValue> ParseNote(const QString &text)
{
    const qsizetype colon = text.indexOf(QStringLiteral(": "));
    if (colon <= 0)
        return std::nullopt;
    const QStringView word = QStringView(text).left(colon);
    const Category *found = nullptr;
    for (const Category &c : kCategories) {
        if (c.Word != word || (c.Of != Kind::Note && c.Of != Kind::Basic))
            continue;
        if (!found || (c.Of == Kind::Note && found->Of != Kind::Note))
            found = &c;
    }
    if (!found)
        return std::nullopt;
    return NoteValue{found, text.mid(colon + 2)};
}

namespace {

bool isAsciiLetter(char32_t c)
{
    return (c >= U'A' && c <= U'Z') || (c >= U'a' && c <= U'z');
}

bool keptInId(char32_t c)
{
    return isAsciiLetter(c) || (c >= U'0' && c <= U'9') || c == U'-';
}

} // namespace

QString EntryId(const QString &conceptId)
{
    QString id;
    id.reserve(conceptId.size() + 8);
    const QList<uint> codes = conceptId.toUcs4();
    for (qsizetype i = 0; i < codes.size(); ++i) {
        const char32_t c = codes[i];
        if (c == U'_')
            id += QStringLiteral("__");
        else if (keptInId(c) && (i > 0 || isAsciiLetter(c)))
            id += QChar(char16_t(c));
        else
            id += QStringLiteral("_u") + QString::number(uint(c), 16) + QLatin1Char('_');
    }
    return id;
}

std::optional<QString> ConceptOfEntryId(const QString &id)
{
    QList<uint> codes;
    for (qsizetype i = 0; i < id.size(); ++i) {
        const QChar c = id[i];
        if (c != QLatin1Char('_')) {
            if (!keptInId(c.unicode()) || (i == 0 && !isAsciiLetter(c.unicode())))
                return std::nullopt;
            codes << c.unicode();
            continue;
        }
        if (i + 1 < id.size() && id[i + 1] == QLatin1Char('_')) {
            codes << '_';
            ++i;
            continue;
        }
        const qsizetype end = id.indexOf(QLatin1Char('_'), i + 1);
        if (i + 1 >= id.size() || id[i + 1] != QLatin1Char('u') || end < 0)
            return std::nullopt;
        bool ok = false;
        const uint code = id.mid(i + 2, end - i - 2).toUInt(&ok, 16);
        if (!ok || code == 0 || code > 0x10FFFF)
            return std::nullopt;
        codes << code;
        i = end;
    }
    if (codes.isEmpty())
        return std::nullopt;
    const QString conceptId =
        QString::fromUcs4(reinterpret_cast<const char32_t *>(codes.constData()), codes.size());
    // Only the one spelling that EntryId writes.
    if (EntryId(conceptId) != id)
        return std::nullopt;
    return conceptId;
}

} // namespace lx::tbx
