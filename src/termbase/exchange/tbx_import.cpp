#include "termbase/exchange/tbx_import.h"

#include "core/filters.h"
#include "core/interaction.h"
#include "core/process.h"
#include "core/store/database.h"
#include "core/store/errors.h"
#include "core/text/like.h"
#include "ontology/edit/concepts.h"
#include "ontology/edit/links.h"
#include "ontology/edit/names.h"
#include "ontology/store/schema.h"
#include "termbase/edit/categories.h"
#include "termbase/exchange/tbx_map.h"
#include "termbase/store/lifecycle.h"
#include "termbase/store/tb_editor.h"

#include <QDate>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QRegularExpression>
#include <QSet>
#include <QTextStream>
#include <QXmlStreamReader>

#include <optional>

namespace lx {

using namespace store;

namespace {

const QString kTbxNamespace = QStringLiteral("urn:iso:std:iso:30042:ed-2");
const QString kXmlNamespace = QStringLiteral("http://www.w3.org/XML/1998/namespace");

// ---------------------------------------------------------------------------------------------
// What the file says, before anything is written.

// An element under an entry, a language section or a term.
struct Item {
    QString Category;
    QString Value;          // text, picklist or number value; a date as yyyy-MM-dd
    QString Lang;           // for a category that needs one
    QString TargetId;       // a cross-reference: the id in the file it points at
    QString RecordCategory; // a reference to a backmatter record: the record's category,
    QString RecordId;       // and its id in the file,
    QString RecordValue;    // or the value that names it
    QString RecordPath;     // a file record: the file as the file names it
    QString Id;             // its own id in the file, for cross-references to it
    QList<Item> Children;   // what its group holds beside it, where the termbase takes it
    qint64 Line = 0;
};

struct TermIn {
    QString Text;
    QList<Item> Items;
    qint64 Line = 0;
    qint32 Elem = 0;
};

struct SectionIn {
    QString Lang;
    QList<Item> Items;
    QList<TermIn> Terms;
    qint64 Line = 0;
    qint32 Elem = 0;
};

struct EntryIn {
    QString Id;
    QList<Item> Items;
    QList<SectionIn> Sections;
    qint64 Line = 0;
    qint32 Elem = 0;
    bool Written = false;
};

struct RecordIn {
    QString Id;
    QString Category;
    QString Value;
    QString Path;                              // a file record: the file as the file names it
    QList<std::pair<QString, QString>> Fields; // field category, value
    qint64 Line = 0;
    qint32 Elem = 0;
};

// Where an id of the file stands: the entry, section and term around it, or a record.
struct IdPlace {
    int Entry = -1;
    int Section = -1;
    int Term = -1;
    int Record = -1;
};

// A data category as the termbase keeps it.
struct TbCategory {
    QString GI;
    QString Type;
    QString ValueType;
    QString Parent;
    bool NeedsLang = false;
};

// The vocabulary of the open termbase, read once.
struct Vocabulary {
    QHash<QString, TbCategory> Categories;
    QSet<QString> Picklist;        // category + '\n' + value
    QSet<QString> Families;        // parent + '\n' + child, "all" as parent too
    QHash<QString, QString> Langs; // lower case -> langID

    void load(Database &db)
    {
        ForEachRow(db,
                   QStringLiteral("SELECT categoryID, GI_name, type, value_type, needs_lang, "
                                  "parentCatID FROM datcats"),
                   [&](const Recordset &rs) {
                       Categories.insert(TextOrEmpty(rs.Value(u"categoryID")),
                                         {TextOrEmpty(rs.Value(u"GI_name")),
                                          TextOrEmpty(rs.Value(u"type")),
                                          TextOrEmpty(rs.Value(u"value_type")),
                                          TextOrEmpty(rs.Value(u"parentCatID")),
                                          rs.Value(u"needs_lang").toBool()});
                   });
        ForEachRow(db, QStringLiteral("SELECT categoryID, value FROM picklists"),
                   [&](const Recordset &rs) {
                       Picklist.insert(TextOrEmpty(rs.Value(u"categoryID")) + QLatin1Char('\n') +
                                       TextOrEmpty(rs.Value(u"value")));
                   });
        ForEachRow(
            db, QStringLiteral("SELECT parentCategoryID, childCategoryID FROM valid_families"),
            [&](const Recordset &rs) {
                Families.insert(TextOrEmpty(rs.Value(u"parentCategoryID")) + QLatin1Char('\n') +
                                TextOrEmpty(rs.Value(u"childCategoryID")));
            });
        ForEachRow(db, QStringLiteral("SELECT langID FROM langs"), [&](const Recordset &rs) {
            const QString id = TextOrEmpty(rs.Value(u"langID"));
            Langs.insert(id.toLower(), id);
        });
    }
    bool allows(const QString &parent, const QString &child) const
    {
        return Families.contains(parent + QLatin1Char('\n') + child) ||
               Families.contains(QStringLiteral("all\n") + child);
    }
    // A language of the file as a language of the termbase: the code itself, else its first
    // subtag ("en" for "en-US"); empty when the termbase has neither.
    QString language(const QString &xmlLang) const
    {
        const QString lower = xmlLang.trimmed().toLower();
        if (Langs.contains(lower))
            return Langs.value(lower);
        return Langs.value(lower.section(QLatin1Char('-'), 0, 0));
    }
};

// The record category that a category without a value of its own points at.
QString RecordOf(const QString &categoryId, const TbCategory &category)
{
    if (category.ValueType != QLatin1String("none"))
        return {};
    return RefRecordCategory(categoryId);
}

// Where a record keeps its own value.
bool RecordInRefValues(const QString &recordCategory)
{
    return recordCategory == QLatin1String("x5.5") || recordCategory == QLatin1String("x11.1");
}

// The cross-reference whose description is the text: those made by a click carry their
// category's type word ("relatedTerm"); any other text is the description of a plain one.
const tbx::Category *CrossReferenceNamed(const QString &text)
{
    const tbx::Category *plain = tbx::FindCategory(u"10.18");
    for (const tbx::Category &c : tbx::Categories()) {
        if (c.Of == tbx::Kind::Basic && c.Element == u"ref" && c.Targets && c.Word == text)
            return &c;
    }
    return plain;
}

// A target that names a file by its path, not an address of the web or of mail.
bool IsFilePath(const QString &target)
{
    static const QRegularExpression scheme(QStringLiteral("^[A-Za-z][A-Za-z0-9+.-]*:"));
    return !target.isEmpty() && !scheme.match(target).hasMatch();
}

// ---------------------------------------------------------------------------------------------
// Reading the file.

enum class Level { Entry, Section, Term };

tbx::Level MapLevel(Level level)
{
    switch (level) {
    case Level::Entry:
        return tbx::ConceptLevel;
    case Level::Section:
        return tbx::LanguageLevel;
    case Level::Term:
        return tbx::TermLevel;
    }
    return tbx::NoLevel;
}

class Reader {
public:
    Reader(QIODevice &file, const Vocabulary &vocabulary, QStringList &log)
        : m_xml(&file), m_vocabulary(vocabulary), m_log(log)
    {}

    bool read();

    QList<EntryIn> Entries;
    QList<RecordIn> Records;
    QHash<QString, IdPlace> Ids;
    bool Failed = false;

private:
    void error(qint64 line, const QString &text)
    {
        Failed = true;
        m_log << QStringLiteral("line %1: %2").arg(line).arg(text);
    }
    void warn(qint64 line, const QString &text)
    {
        m_log << QStringLiteral("line %1: %2").arg(line).arg(text);
    }
    qint64 line() const { return m_xml.lineNumber(); }
    QString attribute(QStringView name) const
    {
        return m_xml.attributes().value(name.toString()).toString();
    }
    QString langOf(const QString &inherited) const
    {
        const QStringView own = m_xml.attributes().value(kXmlNamespace, QStringLiteral("lang"));
        return own.isEmpty() ? inherited : own.toString();
    }
    void registerId(const IdPlace &place);
    bool checkRoot();
    void readText(const QString &lang);
    void readEntry(const QString &lang);
    void readSection(EntryIn &entry, const QString &lang);
    void readTerm(SectionIn &section, const QString &lang);
    void readTermChildren(TermIn &term, const QString &lang);
    // One data element at `level`, the reader on its start; its items into `into`. `group` is
    // the element a descripGrp or termNoteGrp holds, which gives a source its category.
    void readData(QList<Item> &into, Level level, const QString &lang, const QString &group = {});
    void readGroup(QList<Item> &into, Level level, const QString &lang);
    // The text of a data element, its attributes and line.
    struct Data {
        QString Element, Type, Target, Text;
        qint64 Line;
    };
    void readValue(QList<Item> &into, Level level, const QString &lang, const QString &group,
                   const Data &data);
    void readTransaction(QList<Item> &into, Level level, const QString &lang);
    void readBack();
    void readRecord(const tbx::Category &record);

    void addItem(QList<Item> &into, const QString &categoryId, const QString &text,
                 const QString &target, const QString &lang, qint64 at, bool isXref = false);
    void addNote(QList<Item> &into, const QString &word, const QString &text, const QString &lang,
                 qint64 at);
    // A value kept as a note, with a line saying so.
    void asNote(QList<Item> &into, const QString &word, const QString &text, const QString &lang,
                qint64 at, const QString &why);

    QXmlStreamReader m_xml;
    const Vocabulary &m_vocabulary;
    QStringList &m_log;
    IdPlace m_here; // the entry, section and term being read
};

void Reader::registerId(const IdPlace &place)
{
    const QString id = attribute(u"id");
    if (id.isEmpty())
        return;
    if (Ids.contains(id)) {
        error(line(), QStringLiteral("the id \"%1\" is used twice").arg(id));
        return;
    }
    Ids.insert(id, place);
}

bool Reader::checkRoot()
{
    while (!m_xml.atEnd() && !m_xml.isStartElement())
        m_xml.readNext();
    if (m_xml.hasError() || !m_xml.isStartElement())
        return false;
    const QStringView name = m_xml.name();
    const QString type = attribute(u"type");
    if (name == u"tbx") {
        if (!m_xml.namespaceUri().isEmpty() && m_xml.namespaceUri() != kTbxNamespace) {
            error(line(), QStringLiteral("not a TBX file of ISO 30042: namespace ") +
                              m_xml.namespaceUri().toString());
            return false;
        }
        if (type != QLatin1String("TBX-Basic")) {
            error(line(), QStringLiteral("the dialect \"%1\" is not TBX-Basic").arg(type));
            return false;
        }
        if (attribute(u"style") == QLatin1String("dct")) {
            error(line(), QStringLiteral("the DCT style of TBX-Basic is not read; only the DCA "
                                         "style is"));
            return false;
        }
        return true;
    }
    if (name == u"martif") {
        if (!type.startsWith(QLatin1String("TBX-Basic"))) {
            error(line(), QStringLiteral("the dialect \"%1\" is not TBX-Basic").arg(type));
            return false;
        }
        return true;
    }
    error(line(), QStringLiteral("not a TBX file: the root element is <%1>").arg(name));
    return false;
}

bool Reader::read()
{
    if (!checkRoot()) {
        if (m_xml.hasError())
            error(line(), QStringLiteral("not XML: ") + m_xml.errorString());
        return false;
    }
    const QString lang = langOf({});
    while (m_xml.readNextStartElement()) {
        const QStringView name = m_xml.name();
        if (name == u"tbxHeader" || name == u"martifHeader")
            m_xml.skipCurrentElement(); // the header says nothing the termbase keeps
        else if (name == u"text")
            readText(lang);
        else {
            error(line(), QStringLiteral("unknown element <%1>").arg(name));
            m_xml.skipCurrentElement();
        }
    }
    if (m_xml.hasError())
        error(line(), QStringLiteral("not XML: ") + m_xml.errorString());
    return !Failed;
}

void Reader::readText(const QString &lang)
{
    while (m_xml.readNextStartElement()) {
        const QStringView name = m_xml.name();
        if (name == u"body") {
            while (m_xml.readNextStartElement()) {
                if (m_xml.name() == u"conceptEntry" || m_xml.name() == u"termEntry")
                    readEntry(langOf(lang));
                else {
                    error(line(), QStringLiteral("unknown element <%1>").arg(m_xml.name()));
                    m_xml.skipCurrentElement();
                }
            }
        } else if (name == u"back")
            readBack();
        else {
            error(line(), QStringLiteral("unknown element <%1>").arg(name));
            m_xml.skipCurrentElement();
        }
    }
}

void Reader::readEntry(const QString &lang)
{
    EntryIn entry;
    entry.Line = line();
    entry.Id = attribute(u"id");
    if (entry.Id.isEmpty())
        error(line(), QStringLiteral("an entry without an id"));
    m_here = IdPlace{int(Entries.size()), -1, -1, -1};
    registerId(m_here);
    while (m_xml.readNextStartElement()) {
        if (m_xml.name() == u"langSec" || m_xml.name() == u"langSet")
            readSection(entry, lang);
        else
            readData(entry.Items, Level::Entry, langOf(lang));
        m_here = IdPlace{int(Entries.size()), -1, -1, -1};
    }
    Entries.append(std::move(entry));
}

void Reader::readSection(EntryIn &entry, const QString &lang)
{
    SectionIn section;
    section.Line = line();
    const QString own = m_xml.attributes().value(kXmlNamespace, QStringLiteral("lang")).toString();
    if (own.isEmpty())
        error(line(), QStringLiteral("a language section without a language (xml:lang)"));
    else {
        section.Lang = m_vocabulary.language(own);
        if (section.Lang.isEmpty())
            error(line(),
                  QStringLiteral("the language \"%1\" is not a language of the termbase").arg(own));
    }
    m_here.Section = int(entry.Sections.size());
    m_here.Term = -1;
    registerId(m_here);
    const QString inner = own.isEmpty() ? lang : own;
    while (m_xml.readNextStartElement()) {
        const QStringView name = m_xml.name();
        if (name == u"termSec" || name == u"tig" || name == u"ntig")
            readTerm(section, inner);
        else
            readData(section.Items, Level::Section, langOf(inner));
        m_here.Term = -1;
    }
    entry.Sections.append(std::move(section));
}

void Reader::readTerm(SectionIn &section, const QString &lang)
{
    TermIn term;
    term.Line = line();
    m_here.Term = int(section.Terms.size());
    registerId(m_here);
    readTermChildren(term, lang);
    if (term.Text.trimmed().isEmpty())
        error(term.Line, QStringLiteral("a term section without a term"));
    section.Terms.append(std::move(term));
}

void Reader::readTermChildren(TermIn &term, const QString &lang)
{
    while (m_xml.readNextStartElement()) {
        const QStringView name = m_xml.name();
        if (name == u"term") {
            registerId(m_here);
            term.Text = m_xml.readElementText(QXmlStreamReader::IncludeChildElements);
        } else if (name == u"termGrp")
            readTermChildren(term, lang); // the martif form's ntig: term and notes in a group
        else
            readData(term.Items, Level::Term, langOf(lang));
    }
}

void Reader::readData(QList<Item> &into, Level level, const QString &lang, const QString &group)
{
    const qint64 at = line();
    const QString element = m_xml.name().toString();
    registerId(m_here);
    if (element == QLatin1String("descripGrp") || element == QLatin1String("termNoteGrp") ||
        element == QLatin1String("adminGrp")) {
        readGroup(into, level, lang);
        return;
    }
    if (element == QLatin1String("transacGrp")) {
        readTransaction(into, level, lang);
        return;
    }
    const QString type = attribute(u"type");
    const QString target = attribute(u"target");
    const QString id = attribute(u"id");
    const QString text = m_xml.readElementText(QXmlStreamReader::IncludeChildElements);
    const qsizetype before = into.size();
    readValue(into, level, lang, group, {element, type, target, text, at});
    if (!id.isEmpty() && into.size() > before)
        into.last().Id = id;
}

void Reader::readValue(QList<Item> &into, Level level, const QString &lang, const QString &group,
                       const Data &data)
{
    const auto &[element, type, target, text, at] = data;
    if (element == QLatin1String("note")) {
        if (const auto noted = tbx::ParseNote(text)) {
            addItem(into, noted->Of->Id.toString(), noted->Value, {}, lang, at);
            return;
        }
        addItem(into, QStringLiteral("8"), text, {}, lang, at);
        return;
    }
    const tbx::Category *category = nullptr;
    if (element == QLatin1String("admin") && type == QLatin1String("source") && target.isEmpty()) {
        // A source beside a definition or a context is the source of that.
        if (group == QLatin1String("definition"))
            category = tbx::FindCategory(u"10.19.3");
        else if (group == QLatin1String("context"))
            category = tbx::FindCategory(u"10.19.4");
    }
    if (!category)
        category = tbx::CategoryFromTbx(element, type, {}, !target.isEmpty());
    if (category && category->Id == QLatin1String("10.18"))
        category = CrossReferenceNamed(text.trimmed());
    // An external reference to a path rather than an address is a file: a sound, a video, a
    // table or other binary data, kept as a file record.
    if (category && category->Id == QLatin1String("10.21.1") && IsFilePath(target))
        category = tbx::FindCategory(u"5.5.5");
    if (!category) {
        if (!tbx::FixedTbxValues(element, type).isEmpty())
            asNote(into, type, text, lang, at,
                   QStringLiteral("<%1 type=\"%2\"> has no counterpart here").arg(element, type));
        else if (type.isEmpty())
            error(at, QStringLiteral("unknown element <%1>").arg(element));
        else
            error(at, QStringLiteral("unknown data category <%1 type=\"%2\">").arg(element, type));
        return;
    }
    QString value = text;
    if (tbx::HasFixedValues(category->Id)) {
        const auto seed = tbx::SeedValue(category->Id, text.trimmed());
        if (!seed) {
            asNote(into, category->Word.toString(), text, lang, at,
                   QStringLiteral("the value \"%1\" of %2 is not in its list").arg(text, type));
            return;
        }
        value = *seed;
    }
    if (!tbx::AllowedAt(*category, MapLevel(level)))
        warn(at,
             QStringLiteral("<%1 type=\"%2\"> is not TBX-Basic at this level").arg(element, type));
    addItem(into, category->Id.toString(), value, target, lang, at,
            element == QLatin1String("xref"));
}

void Reader::readGroup(QList<Item> &into, Level level, const QString &lang)
{
    QString group;
    QList<Item> held;
    while (m_xml.readNextStartElement()) {
        if (group.isEmpty() && m_xml.name() != u"admin" && m_xml.name() != u"note")
            group = attribute(u"type");
        readData(held, level, langOf(lang), group);
    }
    // What the group holds beside its first element goes under that element where the termbase
    // takes it there, else beside it.
    for (qsizetype i = 0; i < held.size(); ++i) {
        if (i > 0 && m_vocabulary.allows(into.last().Category, held[i].Category))
            into.last().Children.append(held[i]);
        else
            into.append(held[i]);
    }
}

void Reader::readTransaction(QList<Item> &into, Level level, const QString &lang)
{
    const qint64 at = line();
    QString kind, person, personTarget, date;
    qint64 personLine = at, dateLine = at;
    while (m_xml.readNextStartElement()) {
        const QStringView name = m_xml.name();
        registerId(m_here);
        if (name == u"transac")
            kind = m_xml.readElementText(QXmlStreamReader::IncludeChildElements).trimmed();
        else if (name == u"transacNote") {
            personLine = line();
            personTarget = attribute(u"target");
            person = m_xml.readElementText(QXmlStreamReader::IncludeChildElements).trimmed();
        } else if (name == u"date") {
            dateLine = line();
            date = m_xml.readElementText(QXmlStreamReader::IncludeChildElements).trimmed();
        } else
            readData(into, level, langOf(lang));
    }
    const tbx::Category *who =
        tbx::CategoryFromTbx(u"transacGrp", u"responsibility", kind, !personTarget.isEmpty());
    const tbx::Category *when = tbx::CategoryFromTbx(u"transacGrp", u"date", kind);
    if (!who || !when) {
        asNote(into, kind, (person + QLatin1Char(' ') + date).trimmed(), lang, at,
               QStringLiteral("the transaction \"%1\" has no counterpart here").arg(kind));
        return;
    }
    if (!person.isEmpty() || !personTarget.isEmpty())
        addItem(into, who->Id.toString(), person, personTarget, lang, personLine);
    if (!date.isEmpty())
        addItem(into, when->Id.toString(), date, {}, lang, dateLine);
}

void Reader::addNote(QList<Item> &into, const QString &word, const QString &text,
                     const QString &lang, qint64 at)
{
    addItem(into, QStringLiteral("8"), tbx::NoteText(word, text), {}, lang, at);
}

void Reader::asNote(QList<Item> &into, const QString &word, const QString &text,
                    const QString &lang, qint64 at, const QString &why)
{
    warn(at, why + QStringLiteral(": kept as a note"));
    addNote(into, word, text, lang, at);
}

void Reader::addItem(QList<Item> &into, const QString &categoryId, const QString &text,
                     const QString &target, const QString &lang, qint64 at, bool isXref)
{
    const auto found = m_vocabulary.Categories.constFind(categoryId);
    if (found == m_vocabulary.Categories.constEnd()) {
        error(at, QStringLiteral("the category %1 is not in the termbase").arg(categoryId));
        return;
    }
    const TbCategory &category = *found;
    Item item;
    item.Category = categoryId;
    item.Line = at;
    if (category.NeedsLang) {
        item.Lang = m_vocabulary.language(lang);
        if (item.Lang.isEmpty()) {
            error(at, lang.isEmpty()
                          ? QStringLiteral("no language for a %1").arg(category.Type)
                          : QStringLiteral("the language \"%1\" is not a language of the termbase")
                                .arg(lang));
            return;
        }
    }
    const QString word = category.Type;
    if (category.GI == QLatin1String("ptr")) {
        if (target.isEmpty()) {
            asNote(into, word, text, lang, at,
                   QStringLiteral("a cross-reference without a target"));
            return;
        }
        item.TargetId = target;
        item.Value = text.trimmed().isEmpty() ? word : text.trimmed();
    } else if (const QString record = RecordOf(categoryId, category); !record.isEmpty()) {
        item.RecordCategory = record;
        if (isXref && RecordInRefValues(record)) {
            item.RecordValue = QFileInfo(target).fileName();
            item.RecordPath = target;
        } else if (isXref)
            item.RecordValue = target;
        else if (!target.isEmpty())
            item.RecordId = target;
        else
            item.RecordValue = text.trimmed();
        if (item.RecordId.isEmpty() && item.RecordValue.isEmpty()) {
            warn(at, QStringLiteral("an empty %1: dropped").arg(word));
            return;
        }
    } else if (category.ValueType == QLatin1String("picklist")) {
        item.Value = text.trimmed();
        if (!m_vocabulary.Picklist.contains(categoryId + QLatin1Char('\n') + item.Value)) {
            asNote(into, word, text, lang, at,
                   QStringLiteral("the value \"%1\" is not in the list of %2").arg(text, word));
            return;
        }
    } else if (category.ValueType == QLatin1String("date")) {
        const QDate date = QDate::fromString(text.trimmed().left(10), Qt::ISODate);
        if (!date.isValid()) {
            asNote(into, word, text, lang, at, QStringLiteral("\"%1\" is not a date").arg(text));
            return;
        }
        item.Value = date.toString(Qt::ISODate);
    } else if (category.ValueType == QLatin1String("number")) {
        bool ok = false;
        text.trimmed().toInt(&ok);
        if (!ok) {
            asNote(into, word, text, lang, at, QStringLiteral("\"%1\" is not a number").arg(text));
            return;
        }
        item.Value = text.trimmed();
    } else if (category.ValueType == QLatin1String("text")) {
        item.Value = text;
        if (text.trimmed().isEmpty()) {
            warn(at, QStringLiteral("an empty %1: dropped").arg(word));
            return;
        }
    } else {
        error(at, QStringLiteral("a %1 can't be imported into an entry").arg(word));
        return;
    }
    into.append(item);
}

void Reader::readBack()
{
    while (m_xml.readNextStartElement()) {
        const QStringView name = m_xml.name();
        if (name != u"refObjectSec" && name != u"refObjectList") {
            error(line(), QStringLiteral("unknown element <%1>").arg(name));
            m_xml.skipCurrentElement();
            continue;
        }
        const QString type = attribute(u"type");
        const tbx::Category *record = nullptr;
        for (const tbx::Category &c : tbx::Categories()) {
            if (c.Of == tbx::Kind::Record && c.Type == type)
                record = &c;
        }
        if (!record) {
            error(line(), QStringLiteral("unknown back matter section \"%1\"").arg(type));
            m_xml.skipCurrentElement();
            continue;
        }
        while (m_xml.readNextStartElement()) {
            if (m_xml.name() == u"refObject")
                readRecord(*record);
            else {
                error(line(), QStringLiteral("unknown element <%1>").arg(m_xml.name()));
                m_xml.skipCurrentElement();
            }
        }
    }
}

void Reader::readRecord(const tbx::Category &record)
{
    RecordIn in;
    in.Line = line();
    in.Id = attribute(u"id");
    in.Category = record.Id.toString();
    registerId(IdPlace{-1, -1, -1, int(Records.size())});
    QString name; // a person's full name, the alias when the record has none
    const QString prefix = in.Category + QLatin1Char('.');
    while (m_xml.readNextStartElement()) {
        const qint64 at = line();
        const QString type = attribute(u"type");
        const QString text = m_xml.readElementText(QXmlStreamReader::IncludeChildElements);
        if (type == record.Value) {
            // A file is kept by its own name; the path is where the file was written from.
            in.Value = RecordInRefValues(in.Category) ? QFileInfo(text).fileName() : text;
            in.Path = text;
            continue;
        }
        const tbx::Category *field = nullptr;
        for (const tbx::Category &c : tbx::Categories()) {
            if (c.Of == tbx::Kind::Item && c.Type == type && c.Id.startsWith(prefix))
                field = &c;
        }
        if (!field) {
            warn(at, QStringLiteral("the item \"%1\" of a %2 has no counterpart here: dropped")
                         .arg(type, record.Word));
            continue;
        }
        if (field->Id == QLatin1String("x10.2.2.2"))
            name = text;
        in.Fields.append({field->Id.toString(), text});
    }
    if (in.Value.isEmpty())
        in.Value = !name.isEmpty() ? name : in.Id;
    if (in.Value.isEmpty())
        error(in.Line, QStringLiteral("a %1 without a value or an id").arg(record.Word));
    Records.append(std::move(in));
}

// ---------------------------------------------------------------------------------------------
// Writing.

struct ElementRow {
    qint32 Id;
    QString Category;
    qint32 Parent;
};

// The rows to add, collected while the plan is made, and written at the end in an order the
// relations accept.
struct Rows {
    QList<ElementRow> Elements;
    QList<std::pair<qint32, QString>> Text, Picklist, Number, Date, Ref, Lang;
    QList<std::pair<qint32, QString>> TeConcepts; // entry, concept
    QList<std::tuple<qint32, QString, QString>> Terms;
    QList<std::pair<qint32, qint32>> Pointers;
    QStringList Concepts;
    QStringList Files; // files of new file records, as the TBX file names them
};

// The termbase as it stands, as far as the import needs it.
struct Existing {
    QHash<QString, qint32> Entries; // concept -> entry element
    QSet<QString> Concepts;         // CONCEPTS of the termbase
    QHash<QString, qint32> Records; // category + '\n' + value -> record element
    QHash<QString, qint32> Containers;
    qint32 Body = 0;
    qint32 Last = 0;

    // The children of the entries to merge into, read only when there are such entries.
    bool TreeRead = false;
    QHash<qint32, QList<std::pair<qint32, QString>>> Children; // parent -> (element, category)
    QHash<qint32, QString> Values;                             // element -> value or term
    QHash<qint32, QString> Langs;
    QHash<qint32, qint32> Pointers;

    void load(Database &db)
    {
        ForEachRow(db, QStringLiteral("SELECT elemID, Concept FROM TE_CONCEPTS"),
                   [&](const Recordset &rs) {
                       Entries.insert(TextOrEmpty(rs.Value(u"Concept")),
                                      rs.Value(u"elemID").toInt());
                   });
        for (const QString &c :
             ReadColumn(db, QStringLiteral("SELECT Concept FROM CONCEPTS"), u"Concept"))
            Concepts.insert(c);
        for (const char *table : {"text_values", "ref_values"}) {
            const QString t = QString::fromLatin1(table);
            ForEachRow(db,
                       QStringLiteral("SELECT elements.elemID, categoryID, value FROM elements "
                                      "INNER JOIN %1 ON elements.elemID = %1.elemID WHERE "
                                      "categoryID >= 'x' AND categoryID < 'y'")
                           .arg(t),
                       [&](const Recordset &rs) {
                           const QString key = TextOrEmpty(rs.Value(u"categoryID")) +
                                               QLatin1Char('\n') + TextOrEmpty(rs.Value(u"value"));
                           if (!Records.contains(key))
                               Records.insert(key, rs.Value(u"elemID").toInt());
                       });
        }
        // The body and the backmatter folder under the root, then the folder's containers.
        qint32 back = 0;
        ForEachRow(db, QStringLiteral("SELECT elemID, categoryID FROM elements WHERE parentID = 1"),
                   [&](const Recordset &rs) {
                       const QString category = TextOrEmpty(rs.Value(u"categoryID"));
                       if (category == QLatin1String("0.2"))
                           Body = rs.Value(u"elemID").toInt();
                       else if (category == QLatin1String("0.5"))
                           back = rs.Value(u"elemID").toInt();
                   });
        ForEachRow(db,
                   QStringLiteral("SELECT elemID, categoryID FROM elements WHERE parentID = ") +
                       QString::number(back),
                   [&](const Recordset &rs) {
                       const QString category = TextOrEmpty(rs.Value(u"categoryID"));
                       if (!Containers.contains(category))
                           Containers.insert(category, rs.Value(u"elemID").toInt());
                   });
        // The highest number in use, as the editor finds it at opening.
        Recordset elements = db.OpenRecordset(QStringLiteral("elements"), dbOpenTable);
        elements.SetIndex(QStringLiteral("elemID"));
        if (elements.RecordCount() > 0) {
            elements.MoveLast();
            Last = elements.Value(u"elemID").toInt();
        }
    }

    void loadTree(Database &db)
    {
        TreeRead = true;
        ForEachRow(db, QStringLiteral("SELECT elemID, categoryID, parentID FROM elements"),
                   [&](const Recordset &rs) {
                       Children[rs.Value(u"parentID").toInt()].append(
                           {rs.Value(u"elemID").toInt(), TextOrEmpty(rs.Value(u"categoryID"))});
                   });
        for (const char *table :
             {"text_values", "picklist_values", "number_values", "ref_values"}) {
            ForEachRow(db, QStringLiteral("SELECT elemID, value FROM ") + QLatin1String(table),
                       [&](const Recordset &rs) {
                           Values.insert(rs.Value(u"elemID").toInt(),
                                         TextOrEmpty(rs.Value(u"value")));
                       });
        }
        ForEachRow(db, QStringLiteral("SELECT elemID, value FROM date_values"),
                   [&](const Recordset &rs) {
                       Values.insert(rs.Value(u"elemID").toInt(),
                                     rs.Value(u"value").toDate().toString(Qt::ISODate));
                   });
        ForEachRow(db, QStringLiteral("SELECT elemID, term FROM TERMS"), [&](const Recordset &rs) {
            Values.insert(rs.Value(u"elemID").toInt(), TextOrEmpty(rs.Value(u"term")));
        });
        ForEachRow(db, QStringLiteral("SELECT elemID, langID FROM elements_use_lang"),
                   [&](const Recordset &rs) {
                       Langs.insert(rs.Value(u"elemID").toInt(), TextOrEmpty(rs.Value(u"langID")));
                   });
        ForEachRow(db, QStringLiteral("SELECT elemID, targetID FROM pointers"),
                   [&](const Recordset &rs) {
                       Pointers.insert(rs.Value(u"elemID").toInt(), rs.Value(u"targetID").toInt());
                   });
    }
};

QString Signature(const QString &category, const QString &value, const QString &lang, qint32 target)
{
    return category + QLatin1Char('\n') + value + QLatin1Char('\n') + lang + QLatin1Char('\n') +
           QString::number(target);
}

class Planner {
public:
    Planner(Reader &file, Existing &existing, const Vocabulary &vocabulary, QStringList &log)
        : m_file(file), m_existing(existing), m_vocabulary(vocabulary), m_log(log),
          m_next(existing.Last)
    {}

    void records();
    // The entry `index` of the file under `conceptId`; true when it merged into an entry there.
    bool entry(int index, const QString &conceptId);
    void pointers();
    qint32 last() const { return m_next; }

    Rows Out;
    int Terms = 0;

private:
    qint32 add(const QString &category, qint32 parent)
    {
        Out.Elements.append({++m_next, category, parent});
        m_children[parent].append({m_next, category});
        return m_next;
    }
    // The children of `parent` that are there already, by their signatures.
    QHash<QString, qint32> &signatures(qint32 parent);
    qint32 section(qint32 entry, const QString &lang);
    qint32 term(qint32 section, const QString &text, const QString &lang);
    void items(qint32 parent, const QString &parentCategory, const QList<Item> &items);
    void item(qint32 parent, const Item &item);
    // The element of an item under `parent`, and whether it is new: one just like it that is
    // there already stands for it.
    std::pair<qint32, bool> write(qint32 parent, const Item &item, qint32 target);
    qint32 record(const QString &category, const QString &value, const QString &path);

    Reader &m_file;
    Existing &m_existing;
    const Vocabulary &m_vocabulary;
    QStringList &m_log;
    qint32 m_next;
    QHash<qint32, QList<std::pair<qint32, QString>>> m_children; // new children of a parent
    QHash<qint32, QHash<QString, qint32>> m_signatures;
    QHash<QString, qint32> m_itemElements;     // ids of the file's data elements
    QHash<qint32, QString> m_newValues;        // sections: language; terms: text
    QList<std::pair<qint32, Item>> m_pointers; // parent, cross-reference
};

void Planner::records()
{
    for (RecordIn &r : m_file.Records) {
        const QString key = r.Category + QLatin1Char('\n') + r.Value;
        if (const auto found = m_existing.Records.constFind(key);
            found != m_existing.Records.constEnd()) {
            r.Elem = *found;
            continue;
        }
        const QString container = m_vocabulary.Categories.value(r.Category).Parent;
        r.Elem = add(r.Category, m_existing.Containers.value(container));
        (RecordInRefValues(r.Category) ? Out.Ref : Out.Text).append({r.Elem, r.Value});
        if (RecordInRefValues(r.Category))
            Out.Files << r.Path;
        for (const auto &[field, value] : r.Fields) {
            if (!value.isEmpty())
                Out.Text.append({add(field, r.Elem), value});
        }
        m_existing.Records.insert(key, r.Elem);
    }
}

qint32 Planner::record(const QString &category, const QString &value, const QString &path)
{
    const QString key = category + QLatin1Char('\n') + value;
    if (const auto found = m_existing.Records.constFind(key);
        found != m_existing.Records.constEnd())
        return *found;
    const QString container = m_vocabulary.Categories.value(category).Parent;
    const qint32 id = add(category, m_existing.Containers.value(container));
    (RecordInRefValues(category) ? Out.Ref : Out.Text).append({id, value});
    if (RecordInRefValues(category))
        Out.Files << path;
    m_existing.Records.insert(key, id);
    return id;
}

QHash<QString, qint32> &Planner::signatures(qint32 parent)
{
    auto found = m_signatures.find(parent);
    if (found != m_signatures.end())
        return *found;
    QHash<QString, qint32> &map = m_signatures[parent];
    if (parent <= m_existing.Last) {
        for (const auto &[child, category] : m_existing.Children.value(parent))
            map.insert(Signature(category, m_existing.Values.value(child),
                                 m_existing.Langs.value(child), m_existing.Pointers.value(child)),
                       child);
    }
    return map;
}

qint32 Planner::section(qint32 entry, const QString &lang)
{
    const auto matches = [&](const std::pair<qint32, QString> &child) {
        if (child.second != QLatin1String("0.4"))
            return false;
        const QString code = child.first <= m_existing.Last ? m_existing.Langs.value(child.first)
                                                            : m_newValues.value(child.first);
        return code == lang;
    };
    for (const auto &child : m_existing.Children.value(entry)) {
        if (matches(child))
            return child.first;
    }
    for (const auto &child : m_children.value(entry)) {
        if (matches(child))
            return child.first;
    }
    const qint32 id = add(QStringLiteral("0.4"), entry);
    Out.Lang.append({id, lang});
    m_newValues.insert(id, lang);
    return id;
}

qint32 Planner::term(qint32 section, const QString &text, const QString &lang)
{
    for (const auto &child : m_existing.Children.value(section)) {
        if (child.second == QLatin1String("1") && m_existing.Values.value(child.first) == text)
            return child.first;
    }
    for (const auto &child : m_children.value(section)) {
        if (child.second == QLatin1String("1") && m_newValues.value(child.first) == text)
            return child.first;
    }
    const qint32 id = add(QStringLiteral("1"), section);
    Out.Terms.append({id, text, lang});
    m_newValues.insert(id, text);
    ++Terms;
    return id;
}

bool Planner::entry(int index, const QString &conceptId)
{
    EntryIn &in = m_file.Entries[index];
    bool merged = true;
    qint32 entry = m_existing.Entries.value(conceptId);
    if (!entry) {
        merged = false;
        entry = add(QStringLiteral("0.3"), m_existing.Body);
        Out.TeConcepts.append({entry, conceptId});
        m_existing.Entries.insert(conceptId, entry);
        if (!m_existing.Concepts.contains(conceptId)) {
            Out.Concepts << conceptId;
            m_existing.Concepts.insert(conceptId);
        }
    }
    in.Elem = entry;
    in.Written = true;
    items(entry, QStringLiteral("0.3"), in.Items);
    for (SectionIn &s : in.Sections) {
        s.Elem = section(entry, s.Lang);
        items(s.Elem, QStringLiteral("0.4"), s.Items);
        for (TermIn &t : s.Terms) {
            t.Elem = term(s.Elem, t.Text, s.Lang);
            items(t.Elem, QStringLiteral("1"), t.Items);
        }
    }
    return merged;
}

void Planner::items(qint32 parent, const QString &parentCategory, const QList<Item> &list)
{
    for (const Item &i : list) {
        if (m_vocabulary.allows(parentCategory, i.Category)) {
            item(parent, i);
            continue;
        }
        // Out of place for the termbase: the note says what it was.
        Item note = i;
        note.Category = QStringLiteral("8");
        const QString word = m_vocabulary.Categories.value(i.Category).Type;
        note.Value = tbx::NoteText(word, i.Value.isEmpty() ? i.RecordValue + i.RecordId : i.Value);
        note.TargetId.clear();
        note.RecordCategory.clear();
        m_log << QStringLiteral("line %1: a %2 can't stand under a %3 here: kept as a note")
                     .arg(i.Line)
                     .arg(word, m_vocabulary.Categories.value(parentCategory).Type);
        item(parent, note);
    }
}

void Planner::item(qint32 parent, const Item &i)
{
    if (!i.TargetId.isEmpty()) {
        // Its target may come later in the file: it waits until every term has its number.
        m_pointers.append({parent, i});
        return;
    }
    qint32 target = 0;
    if (!i.RecordCategory.isEmpty()) {
        if (!i.RecordId.isEmpty()) {
            const IdPlace place = m_file.Ids.value(i.RecordId);
            target = m_file.Records.value(place.Record).Elem;
        } else
            target = record(i.RecordCategory, i.RecordValue, i.RecordPath);
    }
    const auto [id, fresh] = write(parent, i, target);
    if (fresh) {
        const QString valueType = m_vocabulary.Categories.value(i.Category).ValueType;
        if (!i.RecordCategory.isEmpty())
            Out.Pointers.append({id, target});
        else if (valueType == QLatin1String("picklist"))
            Out.Picklist.append({id, i.Value});
        else if (valueType == QLatin1String("number"))
            Out.Number.append({id, i.Value});
        else if (valueType == QLatin1String("date"))
            Out.Date.append({id, i.Value});
        else
            Out.Text.append({id, i.Value});
    }
    if (!i.Id.isEmpty())
        m_itemElements.insert(i.Id, id);
    items(id, i.Category, i.Children);
}

std::pair<qint32, bool> Planner::write(qint32 parent, const Item &i, qint32 target)
{
    QHash<QString, qint32> &seen = signatures(parent);
    const QString signature = Signature(i.Category, i.Value, i.Lang, target);
    if (const auto found = seen.constFind(signature); found != seen.constEnd())
        return {*found, false};
    const qint32 id = add(i.Category, parent);
    seen.insert(signature, id);
    if (!i.Lang.isEmpty())
        Out.Lang.append({id, i.Lang});
    return {id, true};
}

// Cross-references, once every term has its number: a term is pointed at as it is; an entry or
// a section by its first term.
void Planner::pointers()
{
    for (const auto &[parent, i] : std::as_const(m_pointers)) {
        const IdPlace place = m_file.Ids.value(i.TargetId);
        qint32 target = 0;
        const bool anyTarget = i.Category == QLatin1String("10.18");
        if (anyTarget && m_itemElements.contains(i.TargetId))
            target = m_itemElements.value(i.TargetId);
        else if (place.Record >= 0)
            target = anyTarget ? m_file.Records[place.Record].Elem : 0;
        else if (place.Entry >= 0 && m_file.Entries[place.Entry].Written) {
            const EntryIn &e = m_file.Entries[place.Entry];
            const int s = place.Section >= 0 ? place.Section : 0;
            const int t = place.Term >= 0 ? place.Term : 0;
            if (s < e.Sections.size() && t < e.Sections[s].Terms.size())
                target = e.Sections[s].Terms[t].Elem;
        }
        if (!target) {
            m_log << QStringLiteral("line %1: the cross-reference to \"%2\" points at no term "
                                    "that was imported: it is left out")
                         .arg(i.Line)
                         .arg(i.TargetId);
            continue;
        }
        if (const auto [id, fresh] = write(parent, i, target); fresh) {
            Out.Text.append({id, i.Value});
            Out.Pointers.append({id, target});
        }
    }
}

void WriteRows(Database &db, const Rows &rows, const TbxImportProgress &progress)
{
    const auto table = [&](const char *name) {
        return db.OpenRecordset(QString::fromLatin1(name), dbOpenTable);
    };
    const auto pairs = [&](const char *name, QStringView field,
                           const QList<std::pair<qint32, QString>> &list, auto convert) {
        Recordset rs = table(name);
        for (const auto &[id, value] : list) {
            rs.AddNew();
            rs.Collect(u"elemID", id);
            rs.Collect(field, convert(value));
            rs.Update();
        }
    };
    const auto asText = [](const QString &v) { return QVariant(v); };
    {
        Recordset rs = table("CONCEPTS");
        for (const QString &c : rows.Concepts) {
            rs.AddNew();
            rs.Collect(u"Concept", c);
            rs.Update();
        }
    }
    {
        Recordset rs = table("elements");
        const qint64 total = rows.Elements.size();
        qint64 done = 0;
        for (const ElementRow &e : rows.Elements) {
            rs.AddNew();
            rs.Collect(u"elemID", e.Id);
            rs.Collect(u"categoryID", e.Category);
            rs.Collect(u"parentID", e.Parent);
            rs.Update();
            if (progress && ++done % 4096 == 0)
                progress(done, total);
        }
    }
    pairs("TE_CONCEPTS", u"Concept", rows.TeConcepts, asText);
    pairs("elements_use_lang", u"langID", rows.Lang, asText);
    {
        Recordset rs = table("TERMS");
        for (const auto &[id, text, lang] : rows.Terms) {
            rs.AddNew();
            rs.Collect(u"elemID", id);
            rs.Collect(u"term", text);
            rs.Collect(u"langID", lang);
            rs.Update();
        }
    }
    pairs("text_values", u"value", rows.Text, asText);
    pairs("picklist_values", u"value", rows.Picklist, asText);
    pairs("ref_values", u"value", rows.Ref, asText);
    pairs("number_values", u"value", rows.Number,
          [](const QString &v) { return QVariant(v.toInt()); });
    pairs("date_values", u"value", rows.Date,
          [](const QString &v) { return QVariant(QDate::fromString(v, Qt::ISODate)); });
    {
        Recordset rs = table("pointers");
        QSet<std::pair<qint32, qint32>> seen;
        for (const auto &pointer : rows.Pointers) {
            if (seen.contains(pointer))
                continue;
            seen.insert(pointer);
            rs.AddNew();
            rs.Collect(u"elemID", pointer.first);
            rs.Collect(u"targetID", pointer.second);
            rs.Update();
        }
    }
    if (progress)
        progress(rows.Elements.size(), rows.Elements.size());
}

// ---------------------------------------------------------------------------------------------
// The ontology's side.

struct OntologyConcepts {
    QSet<QString> All;
    QHash<QString, int> Types;

    void load(Database &db)
    {
        ForEachRow(db, QStringLiteral("SELECT Concept, Type FROM CONCEPTS"),
                   [&](const Recordset &rs) {
                       const QString c = TextOrEmpty(rs.Value(u"Concept"));
                       All.insert(c);
                       Types.insert(c, rs.Value(u"Type").toInt());
                   });
    }
    // The concept an entry id stands for: the id unescaped, or the id itself.
    QString conceptOf(const QString &id) const
    {
        if (const auto unescaped = tbx::ConceptOfEntryId(id); unescaped && All.contains(*unescaped))
            return *unescaped;
        if (All.contains(id))
            return id;
        return {};
    }
};

// The identifier a missing concept gets, cleaned as the "Add Concept" dialog cleans it.
QString NewConceptId(const QString &entryId)
{
    QString id = tbx::ConceptOfEntryId(entryId).value_or(entryId);
    id = ReplaceDoubleQuotes(id);
    if (Process().OntoMeta.Naming)
        id = NormalizeIdentifier(id);
    return id;
}

// The files of new file records, copied beside the termbase as the editor copies a file it
// records: a path relative to the TBX file's folder, or absolute. One already there is kept.
void CopyRecordFiles(const QStringList &files, const QDir &from, QStringList &log)
{
    const QString name = Process().TermMeta.Name;
    for (const QString &file : files) {
        if (file.isEmpty())
            continue;
        const QFileInfo source(from, file);
        if (!source.isFile()) {
            log << QStringLiteral("the file %1 is not there: its record was kept without it")
                       .arg(file);
            continue;
        }
        for (const QString &folder : {TermbaseBackFolder(name), TermbasePublishFolder(name)}) {
            const QString copy = QDir(folder).filePath(source.fileName());
            QDir().mkpath(folder);
            if (!QFileInfo::exists(copy) && !QFile::copy(source.absoluteFilePath(), copy))
                log << QStringLiteral("the file %1 could not be copied to %2").arg(file, folder);
        }
    }
}

void WriteLog(const QString &path, const QStringList &lines)
{
    if (path.isEmpty())
        return;
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text))
        return;
    QTextStream out(&file);
    for (const QString &line : lines)
        out << line << '\n';
}

TbxImportResult Refuse(TbxImportResult result, const TbxImportOptions &options)
{
    result.Failed = true;
    result.Added = result.Merged = result.Terms = 0;
    result.Log << QStringLiteral("Nothing was imported.");
    WriteLog(options.LogFile, result.Log);
    return result;
}

} // namespace

TbxImportResult ImportTbx(const QString &inFile, const TbxImportOptions &options,
                          const TbxImportProgress &progress)
{
    ProcessState &p = Process();
    TbxImportResult result;
    QFile file(inFile);
    if (!file.open(QIODevice::ReadOnly)) {
        result.Log << QStringLiteral("can't read %1: %2").arg(inFile, file.errorString());
        return Refuse(result, options);
    }
    Vocabulary vocabulary;
    vocabulary.load(p.TermDB);
    Reader reader(file, vocabulary, result.Log);
    reader.read();

    // Every target of the file must be one of its ids.
    for (const EntryIn &e : std::as_const(reader.Entries)) {
        const auto check = [&](const QList<Item> &items) {
            for (const Item &i : items) {
                const QString &target = i.TargetId.isEmpty() ? i.RecordId : i.TargetId;
                if (target.isEmpty())
                    continue;
                const auto place = reader.Ids.constFind(target);
                if (place == reader.Ids.constEnd())
                    result.Log << QStringLiteral("line %1: the target \"%2\" is no id of the file")
                                      .arg(i.Line)
                                      .arg(target);
                else if (!i.RecordId.isEmpty() && place->Record < 0)
                    result.Log << QStringLiteral("line %1: the target \"%2\" is no record of the "
                                                 "back matter")
                                      .arg(i.Line)
                                      .arg(target);
                else
                    continue;
                reader.Failed = true;
            }
        };
        check(e.Items);
        for (const SectionIn &s : e.Sections) {
            check(s.Items);
            for (const TermIn &t : s.Terms)
                check(t.Items);
        }
    }

    OntologyConcepts ontology;
    ontology.load(p.OntoDB);
    QStringList concepts; // the concept of each entry; empty for one that is left out
    QStringList toAdd;
    const bool adding = !options.AddConceptsUnder.isEmpty();
    if (adding && !ontology.All.contains(options.AddConceptsUnder)) {
        result.Log << QStringLiteral("the parent \"%1\" is no concept of the working ontology")
                          .arg(options.AddConceptsUnder);
        reader.Failed = true;
    }
    const int parentType = ontology.Types.value(options.AddConceptsUnder);
    if (adding && parentType == ctRelation) {
        result.Log << QStringLiteral("concepts can't be added under the relation \"%1\"")
                          .arg(options.AddConceptsUnder);
        reader.Failed = true;
    }
    for (const EntryIn &e : std::as_const(reader.Entries)) {
        QString conceptId = ontology.conceptOf(e.Id);
        if (conceptId.isEmpty() && !e.Id.isEmpty()) {
            const QString id = NewConceptId(e.Id);
            result.MissingConcepts << id;
            if (adding && !id.isEmpty() && id != options.AddConceptsUnder) {
                result.Log << QStringLiteral("line %1: the concept \"%2\" is added under \"%3\"")
                                  .arg(e.Line)
                                  .arg(id, options.AddConceptsUnder);
                if (!ontology.All.contains(id)) {
                    toAdd << id;
                    ontology.All.insert(id);
                }
                conceptId = id;
            } else
                result.Log << QStringLiteral("line %1: the concept \"%2\" is not in the working "
                                             "ontology: entry left out")
                                  .arg(e.Line)
                                  .arg(id);
        }
        concepts << conceptId;
    }
    if (reader.Failed)
        return Refuse(result, options);

    Existing existing;
    existing.load(p.TermDB);
    for (const QString &c : std::as_const(concepts)) {
        if (!c.isEmpty() && existing.Entries.contains(c)) {
            existing.loadTree(p.TermDB);
            break;
        }
    }
    Planner plan(reader, existing, vocabulary, result.Log);
    plan.records();
    for (int i = 0; i < reader.Entries.size(); ++i) {
        if (concepts[i].isEmpty()) {
            ++result.Skipped;
            continue;
        }
        if (plan.entry(i, concepts[i]))
            ++result.Merged;
        else
            ++result.Added;
    }
    plan.pointers();
    result.Terms = plan.Terms;
    if (options.CheckOnly)
        return result;

    {
        std::optional<Transaction> ontologyChange;
        if (!toAdd.isEmpty()) {
            ontologyChange.emplace(p.OntoDB);
            for (const QString &id : std::as_const(toAdd)) {
                NewConceptTexts texts{id, id, options.AddConceptsUnder,
                                      parentType >= ctObject && parentType <= ctAttribute
                                          ? parentType
                                          : int(ctObject)};
                if (!AddConcept(texts, [] { return InverseTexts{}; }))
                    throw StoreError(3022, QStringLiteral("The concept ") + id +
                                               QStringLiteral(" could not be added."));
                AddDefaultName(id);
            }
        }
        Transaction termbaseChange(p.TermDB);
        WriteRows(p.TermDB, plan.Out, progress);
        termbaseChange.Commit();
        if (ontologyChange)
            ontologyChange->Commit();
    }
    for (const QString &id : std::as_const(toAdd))
        PropagateConceptToTermBases(id, {}, opAddConcept);
    CopyRecordFiles(plan.Out.Files, QFileInfo(inFile).absoluteDir(), result.Log);
    result.LastElemID = plan.last();
    result.Log << QStringLiteral("%1 entries added, %2 merged, %3 left out; %4 new terms.")
                      .arg(result.Added)
                      .arg(result.Merged)
                      .arg(result.Skipped)
                      .arg(result.Terms);
    WriteLog(options.LogFile, result.Log);
    return result;
}

namespace {

const QString kImportTitle = QStringLiteral("Import TBX");

// The first lines of a log, for a message box; the whole of it is in the file.
QString LogExcerpt(const QStringList &log, const QString &logFile)
{
    constexpr qsizetype kShown = 15;
    QString text = log.mid(0, kShown).join(QStringLiteral("\r\n"));
    if (log.size() > kShown)
        text += QStringLiteral("\r\n...");
    return text + QStringLiteral("\r\n\r\nThe log is in ") + logFile;
}

// The parent of the concepts to add, when the user wants them added; nothing to leave them out,
// an empty text to stop.
std::optional<QString> AskParent(const TbxImportResult &check)
{
    const int answer = UI().MsgBox(
        QString::number(check.MissingConcepts.size()) +
            QStringLiteral(" entries of the file are of concepts the working ontology lacks (") +
            check.MissingConcepts.mid(0, 5).join(QStringLiteral(", ")) +
            (check.MissingConcepts.size() > 5 ? QStringLiteral(", ...") : QString()) +
            QStringLiteral(").\r\nAdd these concepts to the ontology? No leaves their entries "
                           "out."),
        msg::YesNoCancel | msg::Question, kImportTitle);
    if (answer == msg::No)
        return std::nullopt;
    if (answer != msg::Yes)
        return QString();
    return UI().InputBox(QStringLiteral("Parent of the new concepts:"), kImportTitle,
                         Process().TopConcept);
}

} // namespace

bool ImportTbxIntoOpenTermbase(TermbaseEditor &editor, const TbxImportProgress &progress)
{
    const ProcessState &p = Process();
    if (p.TermPath.isEmpty() || !p.TermDB.isOpen())
        return false;
    FileDialogRequest request;
    request.title = kImportTitle;
    request.filter = QStringLiteral("TBX files (*.tbx)|*.tbx|XML files (*.xml)|*.xml|All files "
                                    "(*.*)|*.*");
    request.initialDir = p.TermFolder;
    const std::optional<QString> path = UI().GetOpenFileName(request);
    if (!path || path->isEmpty())
        return false;
    TbxImportOptions options;
    options.LogFile = *path + QStringLiteral(".log");
    const int pointerBefore = UI().MousePointer();
    UI().SetMousePointer(pointer::Hourglass);
    try {
        options.CheckOnly = true;
        TbxImportResult result = ImportTbx(*path, options);
        options.CheckOnly = false;
        if (!result.Failed && !result.MissingConcepts.isEmpty()) {
            UI().SetMousePointer(pointerBefore);
            const std::optional<QString> parent = AskParent(result);
            if (parent && parent->isEmpty())
                return false;
            options.AddConceptsUnder = parent.value_or(QString());
            UI().SetMousePointer(pointer::Hourglass);
        }
        if (!result.Failed)
            result = ImportTbx(*path, options, progress);
        UI().SetMousePointer(pointerBefore);
        if (result.Failed) {
            UI().MsgBox(QStringLiteral("The file was not imported.\r\n\r\n") +
                            LogExcerpt(result.Log, options.LogFile),
                        msg::Critical, kImportTitle);
            return false;
        }
        editor.LastElemID = result.LastElemID;
        editor.EntryCount += result.Added;
        editor.TermCount += result.Terms;
        editor.LoadTermbaseView();
        editor.ShowCounts();
        UI().MsgBox(LogExcerpt(result.Log.mid(result.Log.size() - 1) +
                                   result.Log.mid(0, result.Log.size() - 1),
                               options.LogFile),
                    msg::Information, kImportTitle);
        return true;
    } catch (const StoreError &error) {
        UI().SetMousePointer(pointerBefore);
        UI().MsgBox(error.description() + QStringLiteral(": ") + *path, msg::Critical,
                    kImportTitle);
        return false;
    }
}

} // namespace lx
