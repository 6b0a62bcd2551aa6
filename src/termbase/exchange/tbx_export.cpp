#include "termbase/exchange/tbx_export.h"

#include "core/file_steps.h"
#include "core/interaction.h"
#include "core/process.h"
#include "core/program.h"
#include "core/store/database.h"
#include "core/store/errors.h"
#include "core/store/recordset.h"
#include "termbase/exchange/tbx_map.h"

#include <QDate>
#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QSaveFile>
#include <QSet>
#include <QXmlStreamWriter>

#include <vector>

namespace lx {

using namespace store;

namespace {

const QString kNamespace = QStringLiteral("urn:iso:std:iso:30042:ed-2");
constexpr int NoElement = -1;

struct CategoryInfo {
    QString Id;
    QString Word; // the termbase's own type word, for categories the map doesn't know
    const tbx::Category *Row = nullptr;

    bool is(QStringView id) const { return Id == id; }
    tbx::Kind kind() const { return Row ? Row->Of : tbx::Kind::Note; }
};

struct Element {
    qint32 Id = 0;
    qint32 Parent = 0;
    int Category = 0;
    int FirstChild = NoElement;
    int NextSibling = NoElement;
    qint32 Target = 0; // the first row of pointers
    QString Value;     // the value row, the concept of an entry, the text of a term
    QString Lang;
    bool Written = false; // stands in the file as an element of its own that can carry an id
};

struct Meta {
    QString Name, Description, Author, Owner, Contact;
};

// The whole termbase in one pass over each table.
class TbxSource {
public:
    explicit TbxSource(Database &db)
    {
        ForEachRow(db, QStringLiteral("SELECT categoryID, type FROM datcats"),
                   [this](const Recordset &rs) {
                       const int i = category(TextOrEmpty(rs.Value(u"categoryID")));
                       Categories[i].Word = TextOrEmpty(rs.Value(u"type"));
                   });
        ForEachRow(db, QStringLiteral("SELECT * FROM elements ORDER BY elemID"),
                   [&](const Recordset &rs) {
                       Element e;
                       e.Id = rs.Value(u"elemID").toInt();
                       e.Parent = rs.Value(u"parentID").toInt();
                       e.Category = category(TextOrEmpty(rs.Value(u"categoryID")));
                       m_index.insert(e.Id, int(Elements.size()));
                       Elements.push_back(std::move(e));
                   });
        link();
        auto values = [&](const QString &table, auto read) {
            ForEachRow(db, QStringLiteral("SELECT * FROM ") + table, [&](const Recordset &rs) {
                const int i = Find(rs.Value(u"elemID").toInt());
                if (i != NoElement)
                    read(Elements[size_t(i)], rs);
            });
        };
        auto text = [](QStringView field) {
            return [field](Element &e, const Recordset &rs) {
                e.Value = TextOrEmpty(rs.Value(field));
            };
        };
        values(QStringLiteral("TE_CONCEPTS"), text(u"Concept"));
        values(QStringLiteral("text_values"), text(u"value"));
        values(QStringLiteral("picklist_values"), text(u"value"));
        values(QStringLiteral("ref_values"), text(u"value"));
        values(QStringLiteral("number_values"), text(u"value"));
        values(QStringLiteral("date_values"), [](Element &e, const Recordset &rs) {
            e.Value = rs.Value(u"value").toDate().toString(Qt::ISODate);
        });
        values(QStringLiteral("TERMS"), [](Element &e, const Recordset &rs) {
            e.Value = TextOrEmpty(rs.Value(u"term"));
            e.Lang = TextOrEmpty(rs.Value(u"langID"));
        });
        values(QStringLiteral("elements_use_lang"),
               [](Element &e, const Recordset &rs) { e.Lang = TextOrEmpty(rs.Value(u"langID")); });
        values(QStringLiteral("pointers"), [](Element &e, const Recordset &rs) {
            if (e.Target == 0)
                e.Target = rs.Value(u"targetID").toInt();
        });
        ForEachRow(db, QStringLiteral("SELECT * FROM MetaData"), [this](const Recordset &rs) {
            Info.Name = TextOrEmpty(rs.Value(u"Name"));
            Info.Description = TextOrEmpty(rs.Value(u"Description"));
            Info.Author = TextOrEmpty(rs.Value(u"Author"));
            Info.Owner = TextOrEmpty(rs.Value(u"Owner"));
            Info.Contact = TextOrEmpty(rs.Value(u"Contact"));
        });
    }

    int Find(qint32 elemID) const { return m_index.value(elemID, NoElement); }
    const CategoryInfo &CategoryOf(int i) const
    {
        return Categories[size_t(Elements[size_t(i)].Category)];
    }

    std::vector<Element> Elements; // in elemID order
    std::vector<CategoryInfo> Categories;
    Meta Info;

private:
    int category(const QString &id)
    {
        const auto found = m_categories.constFind(id);
        if (found != m_categories.cend())
            return *found;
        CategoryInfo info;
        info.Id = id;
        info.Word = id;
        info.Row = tbx::FindCategory(id);
        Categories.push_back(info);
        m_categories.insert(id, int(Categories.size() - 1));
        return int(Categories.size() - 1);
    }

    // Children in elemID order, as first child and next sibling.
    void link()
    {
        std::vector<int> last(Elements.size(), NoElement);
        for (size_t i = 0; i < Elements.size(); ++i) {
            const int parent = Find(Elements[i].Parent);
            if (parent == NoElement || parent == int(i))
                continue;
            if (last[size_t(parent)] == NoElement)
                Elements[size_t(parent)].FirstChild = int(i);
            else
                Elements[size_t(last[size_t(parent)])].NextSibling = int(i);
            last[size_t(parent)] = int(i);
        }
    }

    QHash<QString, int> m_categories;
    QHash<qint32, int> m_index;
};

// Text XML 1.0 can hold: other control characters, U+FFFE, U+FFFF and unpaired surrogates go.
bool IsXmlText(QStringView text)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text[i].unicode();
        if (c >= 0x20 && c < 0xD800)
            continue;
        if (c == 0x9 || c == 0xA || c == 0xD || (c >= 0xE000 && c <= 0xFFFD))
            continue;
        if (QChar::isHighSurrogate(c) && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            ++i;
            continue;
        }
        return false;
    }
    return true;
}

QString XmlText(const QString &text)
{
    if (IsXmlText(text))
        return text;
    QString kept;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const qsizetype length =
            text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate() ? 2
                                                                                             : 1;
        const QStringView one = QStringView(text).mid(i, length);
        if (IsXmlText(one))
            kept += one;
        i += length - 1;
    }
    return kept;
}

QString ElementId(qint32 elemID)
{
    return QStringLiteral("e.") + QString::number(elemID);
}

// What one element of an entry becomes.
struct Output {
    enum class Form { TermNote, Descrip, Admin, Ref, Xref, Transac, Note };
    Form Is = Form::Note;
    QString Type;   // the type attribute; for Transac the transaction type's value
    QString Part;   // Transac: "responsibility" or "date"
    QString Text;   // the content
    QString Target; // an element's id, or the URI of an xref
    QString Lang;
    bool Counted = false; // a note for want of a place
};

class TbxWriter {
public:
    TbxWriter(TbxSource &source, QIODevice *device, QString backPath)
        : m_s(source), m_x(device), m_backPath(std::move(backPath))
    {
        plan();
        markTargets();
    }

    TbxExportResult Write(const TbxProgress &progress)
    {
        m_x.setAutoFormatting(true);
        m_x.setAutoFormattingIndent(1);
        m_x.writeStartDocument();
        m_x.writeStartElement(QStringLiteral("tbx"));
        m_x.writeDefaultNamespace(kNamespace);
        m_x.writeAttribute(QStringLiteral("type"), QStringLiteral("TBX-Basic"));
        m_x.writeAttribute(QStringLiteral("style"), QStringLiteral("dca"));
        m_x.writeAttribute(QStringLiteral("xml:lang"), m_fileLang);
        header();
        m_x.writeStartElement(QStringLiteral("text"));
        m_x.writeStartElement(QStringLiteral("body"));
        const int total = int(m_entries.size());
        int done = 0;
        for (const int entry : m_entries) {
            writeEntry(entry);
            if (progress && (++done % 1000 == 0 || done == total))
                progress(done, total);
        }
        if (progress && total == 0)
            progress(0, 0);
        m_x.writeEndElement(); // body
        back();
        m_x.writeEndElement(); // text
        m_x.writeEndElement(); // tbx
        m_x.writeEndDocument();
        return m_result;
    }

private:
    const Element &at(int i) const { return m_s.Elements[size_t(i)]; }
    const CategoryInfo &cat(int i) const { return m_s.CategoryOf(i); }
    tbx::Kind kind(int i) const { return cat(i).kind(); }

    template <typename F> void forChildren(int i, F f) const
    {
        for (int c = at(i).FirstChild; c != NoElement; c = at(c).NextSibling)
            f(c);
    }

    bool hasTerm(int section) const
    {
        bool found = false;
        forChildren(section, [&](int c) { found = found || cat(c).is(u"1"); });
        return found;
    }

    // An element, and all below it, written inside an entry or a record.
    void markTree(int i)
    {
        std::vector<int> stack{i};
        while (!stack.empty()) {
            const int e = stack.back();
            stack.pop_back();
            // Sections can carry no id; entries carry their concept's.
            m_s.Elements[size_t(e)].Written = !cat(e).is(u"0.4") && !cat(e).is(u"0.3");
            forChildren(e, [&](int c) { stack.push_back(c); });
        }
    }

    // Which entries, records and loose elements go out, before anything is written: a
    // cross-reference can only name an element that is in the file.
    void plan()
    {
        for (int i = 0; i < int(m_s.Elements.size()); ++i) {
            const CategoryInfo &c = cat(i);
            if (c.is(u"0.3")) {
                planEntry(i);
                continue;
            }
            const int parent = m_s.Find(at(i).Parent);
            if (parent == NoElement || parent == i)
                continue;
            const tbx::Kind parentKind = kind(parent);
            if (parentKind != tbx::Kind::Frame || cat(parent).is(u"0.3") ||
                cat(parent).is(u"0.4") || cat(parent).is(u"1"))
                continue;
            if (c.kind() == tbx::Kind::Record) {
                m_records.push_back(i);
                m_inBack.insert(i);
                markTree(i);
            } else if (c.kind() != tbx::Kind::Frame) {
                m_loose.push_back(i);
                markTree(i);
            }
        }
        if (m_fileLang.isEmpty())
            m_fileLang = QStringLiteral("en");
    }

    void planEntry(int entry)
    {
        bool anyTerm = false;
        forChildren(entry, [&](int c) {
            if (!cat(c).is(u"0.4"))
                return;
            if (hasTerm(c)) {
                anyTerm = true;
                if (m_fileLang.isEmpty() && !at(c).Lang.isEmpty())
                    m_fileLang = at(c).Lang;
            }
        });
        if (!anyTerm) {
            ++m_result.EntriesWithoutTerms;
            return;
        }
        m_entries.push_back(entry);
        forChildren(entry, [&](int c) {
            if (!cat(c).is(u"0.4"))
                markTree(c);
            else if (hasTerm(c))
                markTree(c);
            else
                ++m_result.SectionsWithoutTerms;
        });
    }

    void text(const QString &element, const QString &content)
    {
        m_x.writeTextElement(element, XmlText(content));
    }

    void idOf(int i)
    {
        if (m_targeted.contains(at(i).Id) && at(i).Written)
            m_x.writeAttribute(QStringLiteral("id"), ElementId(at(i).Id));
    }

    void header()
    {
        const Meta &m = m_s.Info;
        m_x.writeStartElement(QStringLiteral("tbxHeader"));
        m_x.writeStartElement(QStringLiteral("fileDesc"));
        m_x.writeStartElement(QStringLiteral("titleStmt"));
        text(QStringLiteral("title"), m.Name);
        for (const int i : m_loose)
            flatNotes(i);
        m_x.writeEndElement();
        m_x.writeStartElement(QStringLiteral("sourceDesc"));
        text(QStringLiteral("p"), QStringLiteral("The termbase ") + m.Name +
                                      QStringLiteral(", exported by ") + ProgramName() +
                                      QLatin1Char(' ') + ProgramVersion());
        const std::pair<const char *, QString> fields[] = {{"Description", m.Description},
                                                           {"Author", m.Author},
                                                           {"Owner", m.Owner},
                                                           {"Contact", m.Contact}};
        for (const auto &[label, value] : fields) {
            if (!value.isEmpty())
                text(QStringLiteral("p"),
                     QString::fromLatin1(label) + QStringLiteral(": ") + value);
        }
        m_x.writeEndElement(); // sourceDesc
        m_x.writeEndElement(); // fileDesc
        m_x.writeEndElement(); // tbxHeader
    }

    void writeEntry(int entry)
    {
        ++m_result.Entries;
        m_x.writeStartElement(QStringLiteral("conceptEntry"));
        m_x.writeAttribute(QStringLiteral("id"), entryId(entry));
        forChildren(entry, [&](int c) {
            if (!cat(c).is(u"0.4"))
                attribute(c, tbx::ConceptLevel);
        });
        forChildren(entry, [&](int c) {
            if (cat(c).is(u"0.4") && hasTerm(c))
                section(c);
        });
        m_x.writeEndElement();
    }

    // The concept's id, or the element's when the concept is missing or met before.
    QString entryId(int entry)
    {
        const QString &conceptId = at(entry).Value;
        if (!conceptId.isEmpty() && !m_entryIds.contains(conceptId)) {
            m_entryIds.insert(conceptId);
            return tbx::EntryId(conceptId);
        }
        return ElementId(at(entry).Id);
    }

    void section(int s)
    {
        m_x.writeStartElement(QStringLiteral("langSec"));
        m_x.writeAttribute(QStringLiteral("xml:lang"),
                           at(s).Lang.isEmpty() ? QStringLiteral("und") : at(s).Lang);
        forChildren(s, [&](int c) {
            if (!cat(c).is(u"1"))
                attribute(c, tbx::LanguageLevel);
        });
        forChildren(s, [&](int c) {
            if (cat(c).is(u"1"))
                term(c);
        });
        m_x.writeEndElement();
    }

    void term(int t)
    {
        ++m_result.Terms;
        m_x.writeStartElement(QStringLiteral("termSec"));
        idOf(t);
        text(QStringLiteral("term"), at(t).Value);
        // The term's notes stand before its other data.
        forChildren(t, [&](int c) {
            if (resolve(c, tbx::TermLevel).Is == Output::Form::TermNote)
                attribute(c, tbx::TermLevel);
        });
        forChildren(t, [&](int c) {
            if (resolve(c, tbx::TermLevel).Is != Output::Form::TermNote)
                attribute(c, tbx::TermLevel);
        });
        m_x.writeEndElement();
    }

    bool isFileRecord(int record) const
    {
        const tbx::Category *row = cat(record).Row;
        return row && row->Of == tbx::Kind::Record && row->Value == u"file";
    }

    QString filePath(const QString &name) const
    {
        return m_backPath.isEmpty() ? name : m_backPath + QLatin1Char('/') + name;
    }

    Output resolve(int i, tbx::Level level) const
    {
        using Form = Output::Form;
        const Element &e = at(i);
        const CategoryInfo &info = cat(i);
        const int target = e.Target ? m_s.Find(e.Target) : NoElement;
        const bool toRecord = target != NoElement && kind(target) == tbx::Kind::Record;
        const QString value = toRecord ? at(target).Value : e.Value;
        Output o;
        o.Lang = e.Lang;
        const tbx::Category *row = info.Row;
        if (row && row->Of == tbx::Kind::Basic && tbx::AllowedAt(*row, level)) {
            // A record named by id only where the back matter holds it.
            const QString recordId =
                toRecord && m_inBack.contains(target) ? ElementId(at(target).Id) : QString();
            if (row->Element == u"termNote") {
                if (const std::optional<QString> mapped = tbx::TbxValue(row->Id, value)) {
                    o.Is = Form::TermNote;
                    o.Type = row->Type.toString();
                    o.Text = *mapped;
                    return o;
                }
            } else if (row->Element == u"descrip" || row->Element == u"admin") {
                o.Is = row->Element == u"descrip" ? Form::Descrip : Form::Admin;
                o.Type = row->Type.toString();
                o.Text = value;
                o.Target = recordId;
                return o;
            } else if (row->Element == u"ref") {
                if (target != NoElement && at(target).Written) {
                    o.Is = Form::Ref;
                    o.Type = row->Type.toString();
                    o.Text = e.Value;
                    o.Target = ElementId(at(target).Id);
                    return o;
                }
            } else if (row->Element == u"xref") {
                if (toRecord && !value.isEmpty()) {
                    o.Is = Form::Xref;
                    o.Type = row->Type.toString();
                    o.Text = value;
                    o.Target = isFileRecord(target) ? filePath(value) : value;
                    return o;
                }
            } else if (row->Element == u"transacGrp") {
                o.Is = Form::Transac;
                o.Type = row->Value.toString();
                o.Part = row->Type.toString();
                o.Text = value;
                o.Target = recordId;
                return o;
            } else if (row->Element == u"note") {
                o.Text = value;
                return o;
            }
        }
        o.Text = tbx::NoteText(row ? row->Word : QStringView(info.Word), value);
        o.Counted = true;
        return o;
    }

    bool hasChildren(int i) const { return at(i).FirstChild != NoElement; }

    void attribute(int i, tbx::Level level)
    {
        using Form = Output::Form;
        const Output o = resolve(i, level);
        const bool grouped = hasChildren(i) && (o.Is == Form::TermNote || o.Is == Form::Descrip ||
                                                o.Is == Form::Admin);
        if (grouped) {
            const QString group = o.Is == Form::TermNote  ? QStringLiteral("termNoteGrp")
                                  : o.Is == Form::Descrip ? QStringLiteral("descripGrp")
                                                          : QStringLiteral("adminGrp");
            m_x.writeStartElement(group);
            write(i, o);
            forChildren(i, [&](int c) { flatNotes(c); });
            m_x.writeEndElement();
            return;
        }
        write(i, o);
        // A transaction holds its notes; after a note, a ref or an xref they follow as siblings.
        if (o.Is != Form::Transac)
            forChildren(i, [&](int c) { flatNotes(c); });
    }

    void write(int i, const Output &o)
    {
        using Form = Output::Form;
        if (o.Counted)
            ++m_result.Notes;
        switch (o.Is) {
        case Form::Transac:
            m_x.writeStartElement(QStringLiteral("transacGrp"));
            idOf(i);
            m_x.writeStartElement(QStringLiteral("transac"));
            m_x.writeAttribute(QStringLiteral("type"), QStringLiteral("transactionType"));
            m_x.writeCharacters(o.Type);
            m_x.writeEndElement();
            if (o.Part == QLatin1String("date")) {
                if (QDate::fromString(o.Text, Qt::ISODate).isValid())
                    text(QStringLiteral("date"), o.Text);
            } else {
                m_x.writeStartElement(QStringLiteral("transacNote"));
                m_x.writeAttribute(QStringLiteral("type"), o.Part);
                if (!o.Target.isEmpty())
                    m_x.writeAttribute(QStringLiteral("target"), o.Target);
                m_x.writeCharacters(XmlText(o.Text));
                m_x.writeEndElement();
            }
            forChildren(i, [&](int c) { flatNotes(c); });
            m_x.writeEndElement();
            return;
        case Form::Note:
            m_x.writeStartElement(QStringLiteral("note"));
            break;
        case Form::Xref:
            m_x.writeStartElement(QStringLiteral("xref"));
            idOf(i);
            m_x.writeAttribute(QStringLiteral("type"), o.Type);
            m_x.writeAttribute(QStringLiteral("target"), XmlText(o.Target));
            m_x.writeCharacters(XmlText(o.Text));
            m_x.writeEndElement();
            return;
        case Form::TermNote:
            m_x.writeStartElement(QStringLiteral("termNote"));
            break;
        case Form::Descrip:
            m_x.writeStartElement(QStringLiteral("descrip"));
            break;
        case Form::Admin:
            m_x.writeStartElement(QStringLiteral("admin"));
            break;
        case Form::Ref:
            m_x.writeStartElement(QStringLiteral("ref"));
            break;
        }
        idOf(i);
        if (!o.Lang.isEmpty())
            m_x.writeAttribute(QStringLiteral("xml:lang"), o.Lang);
        if (o.Is != Form::Note)
            m_x.writeAttribute(QStringLiteral("type"), o.Type);
        if (!o.Target.isEmpty())
            m_x.writeAttribute(QStringLiteral("target"), o.Target);
        m_x.writeCharacters(XmlText(o.Text));
        m_x.writeEndElement();
    }

    // An element and all below it as notes, in the order of the tree: where a group or the
    // header holds only notes.
    void flatNotes(int i)
    {
        const CategoryInfo &c = cat(i);
        Output o;
        o.Lang = at(i).Lang;
        const int target = at(i).Target ? m_s.Find(at(i).Target) : NoElement;
        const QString value = target != NoElement && kind(target) == tbx::Kind::Record
                                  ? at(target).Value
                                  : at(i).Value;
        if (c.is(u"8")) {
            o.Text = value;
        } else {
            o.Text = tbx::NoteText(c.Row ? c.Row->Word : QStringView(c.Word), value);
            o.Counted = true;
        }
        write(i, o);
        forChildren(i, [&](int child) { flatNotes(child); });
    }

    // Records by their kind, each kind in one section, in the order the kinds are met.
    void back()
    {
        if (m_records.empty())
            return;
        QStringList order;
        QHash<QString, std::vector<int>> bySection;
        for (const int r : m_records) {
            const QString section = cat(r).Row->Type.toString();
            if (!bySection.contains(section))
                order << section;
            bySection[section].push_back(r);
        }
        m_x.writeStartElement(QStringLiteral("back"));
        for (const QString &section : std::as_const(order)) {
            m_x.writeStartElement(QStringLiteral("refObjectSec"));
            m_x.writeAttribute(QStringLiteral("type"), section);
            for (const int r : bySection[section])
                record(r);
            m_x.writeEndElement();
        }
        m_x.writeEndElement();
    }

    void item(const QString &type, const QString &value, int i = NoElement)
    {
        m_x.writeStartElement(QStringLiteral("item"));
        if (i != NoElement)
            idOf(i);
        m_x.writeAttribute(QStringLiteral("type"), type);
        m_x.writeCharacters(XmlText(value));
        m_x.writeEndElement();
    }

    void record(int r)
    {
        const tbx::Category &row = *cat(r).Row;
        m_x.writeStartElement(QStringLiteral("refObject"));
        m_x.writeAttribute(QStringLiteral("id"), ElementId(at(r).Id));
        item(row.Value.toString(), isFileRecord(r) ? filePath(at(r).Value) : at(r).Value);
        if (!at(r).Lang.isEmpty())
            item(QStringLiteral("language"), at(r).Lang);
        forChildren(r, [&](int c) { fields(c); });
        m_x.writeEndElement();
    }

    // A record's fields, and what stands below them, as items.
    void fields(int i)
    {
        const tbx::Category *row = cat(i).Row;
        if (row && row->Of == tbx::Kind::Item) {
            item(row->Type.toString(), at(i).Value, i);
        } else {
            const QString value =
                cat(i).is(u"8")
                    ? at(i).Value
                    : tbx::NoteText(row ? row->Word : QStringView(cat(i).Word), at(i).Value);
            item(QStringLiteral("note"), value, i);
        }
        forChildren(i, [&](int c) { fields(c); });
    }

    // Cross-references name their target by id.
    void markTargets()
    {
        for (const Element &e : m_s.Elements) {
            const tbx::Category *row = m_s.Categories[size_t(e.Category)].Row;
            if (e.Target != 0 && row && row->Element == u"ref")
                m_targeted.insert(e.Target);
        }
    }

    TbxSource &m_s;
    QXmlStreamWriter m_x;
    QString m_backPath;
    QString m_fileLang;
    std::vector<int> m_entries, m_records, m_loose;
    QSet<qint32> m_targeted;
    QSet<int> m_inBack;
    QSet<QString> m_entryIds;
    TbxExportResult m_result;
};

[[noreturn]] void FileError()
{
    throw StoreError(PathFileAccessError, QStringLiteral("Path/File access error"));
}

} // namespace

TbxExportResult WriteTbxFile(Database &db, const QString &termbasePath, const QString &outPath,
                             const TbxProgress &progress)
{
    TbxSource source(db);
    const QFileInfo termbase(termbasePath);
    const QString backFolder =
        termbase.absolutePath() + QLatin1Char('/') + source.Info.Name + QStringLiteral("-back");
    const QString backPath = QFileInfo(outPath).absoluteDir().relativeFilePath(backFolder);
    QSaveFile file(outPath);
    if (!file.open(QIODevice::WriteOnly))
        FileError();
    TbxWriter writer(source, &file, backPath);
    const TbxExportResult result = writer.Write(progress);
    if (!file.commit())
        FileError();
    return result;
}

TbxExportResult ExportTbx(const QString &termbasePath, const QString &outPath,
                          const TbxProgress &progress)
{
    Database db = DBEngine::OpenDatabase(termbasePath, false, true, QString());
    try {
        const TbxExportResult result = WriteTbxFile(db, termbasePath, outPath, progress);
        db.Close();
        return result;
    } catch (...) {
        db.Close();
        throw;
    }
}

namespace {

QString Count(int n, const char *one, const char *many)
{
    return QString::number(n) + QLatin1Char(' ') + QString::fromLatin1(n == 1 ? one : many);
}

} // namespace

QString TbxExportSummary(const TbxExportResult &result)
{
    QString text = Count(result.Entries, "entry", "entries") + QStringLiteral(", ") +
                   Count(result.Terms, "term", "terms");
    if (result.Notes > 0)
        text += QStringLiteral("; ") +
                Count(result.Notes, "element written as a note", "elements written as notes") +
                QStringLiteral(" for want of a TBX-Basic counterpart");
    if (result.EntriesWithoutTerms > 0)
        text += QStringLiteral("; ") +
                Count(result.EntriesWithoutTerms, "entry without terms", "entries without terms") +
                QStringLiteral(" left out");
    if (result.SectionsWithoutTerms > 0)
        text += QStringLiteral("; ") +
                Count(result.SectionsWithoutTerms, "language section without terms",
                      "language sections without terms") +
                QStringLiteral(" left out");
    return text + QLatin1Char('.');
}

bool ExportOpenTermbaseAsTbx(const TbxProgress &progress)
{
    const ProcessState &p = Process();
    if (p.TermPath.isEmpty() || !p.TermDB.isOpen())
        return false; // no termbase open: nothing to ask
    const QString title = QStringLiteral("Export as TBX");
    FileDialogRequest request;
    request.title = title;
    request.filter = QStringLiteral("TBX files (*.tbx)|*.tbx|All files (*.*)|*.*");
    request.initialDir = p.TermFolder;
    request.fileName = (p.TermMeta.Name.isEmpty() ? QStringLiteral("termbase") : p.TermMeta.Name) +
                       QStringLiteral(".tbx");
    request.defaultExt = QStringLiteral("tbx");
    const std::optional<QString> path = UI().GetSaveFileName(request);
    if (!path || path->isEmpty())
        return false;
    const int before = UI().MousePointer();
    UI().SetMousePointer(pointer::Hourglass);
    try {
        const TbxExportResult result = WriteTbxFile(Process().TermDB, p.TermPath, *path, progress);
        UI().SetMousePointer(before);
        UI().MsgBox(TbxExportSummary(result) + QStringLiteral("\r\nWritten to ") + *path,
                    msg::Information, title);
        return true;
    } catch (const StoreError &error) {
        UI().SetMousePointer(before);
        UI().MsgBox(error.description() + QStringLiteral(": ") + *path, msg::Critical, title);
        return false;
    }
}

} // namespace lx
