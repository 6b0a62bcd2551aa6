#include "ontology/exchange/skos.h"

#include "core/file_steps.h"
#include "core/interaction.h"
#include "core/process.h"
#include "core/store/database.h"
#include "core/store/errors.h"
#include "core/store/types.h"

#include <QDateTime>
#include <QFile>
#include <QHash>
#include <QList>
#include <QMap>

#include <functional>
#include <utility>

namespace lx {

using namespace store;

namespace {

const QString kBlocked = QStringLiteral("*NOTHING*");
const QString kUndefined = QStringLiteral("Undefined");

bool IsUnreserved(char16_t c)
{
    return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z') || (c >= u'0' && c <= u'9') ||
           c == u'-' || c == u'.' || c == u'_' || c == u'~';
}

// The characters a Turtle IRI can't hold between its angle brackets.
bool IsIriForbidden(char16_t c)
{
    return c <= 0x20 || QStringView(u"<>\"{}|^`\\").contains(QChar(c));
}

QString PercentByte(uchar byte)
{
    return QLatin1Char('%') + QString::number(byte, 16).toUpper().rightJustified(2, u'0');
}

// A base as the user typed it, made safe for angle brackets and ending in a separator ("/"
// unless it ends in "#" or ":" already, as in "urn:x:").
QString CleanBase(const QString &base)
{
    QString clean;
    for (const QChar c : base) {
        if (!IsIriForbidden(c.unicode())) {
            clean += c;
            continue;
        }
        for (const char byte : QString(c).toUtf8())
            clean += PercentByte(uchar(byte));
    }
    if (!clean.endsWith(QLatin1Char('/')) && !clean.endsWith(QLatin1Char('#')) &&
        !clean.endsWith(QLatin1Char(':')))
        clean += QLatin1Char('/');
    return clean;
}

// A language tag Turtle accepts: letters, then hyphenated letters and digits.
bool IsLanguageTag(const QString &tag)
{
    const QStringList parts = tag.split(QLatin1Char('-'));
    for (qsizetype i = 0; i < parts.size(); ++i) {
        const QString &part = parts[i];
        if (part.isEmpty() || part.size() > 8)
            return false;
        for (const QChar c : part) {
            const bool letter = c.isLetter() && c.unicode() < 0x80;
            if (!letter && !(i > 0 && c.isDigit() && c.unicode() < 0x80))
                return false;
        }
    }
    return true;
}

QString Literal(const QString &text, const QString &language)
{
    QString literal = TurtleString(text);
    if (IsLanguageTag(language))
        literal += QLatin1Char('@') + language.toLower();
    return literal;
}

QString DateLiteral(const QDateTime &when)
{
    return TurtleString(when.toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss"))) +
           QStringLiteral("^^xsd:dateTime");
}

struct Slot {
    QString Name;
    QString Filler;
};

struct Label {
    QString Language;
    QString Name;
};

struct SkosConcept {
    QString Id;
    int Type = 0;
    QString Definition;
    int Subset = 1;
    QStringList Broader, Narrower, Notes;
    QList<Label> Labels;
    QList<Slot> Relations, Attributes;
};

// The whole ontology in one pass over each table, concepts in the store's order.
class SkosSource {
public:
    SkosSource()
    {
        Database &db = Process().OntoDB;
        ForEachRow(db, QStringLiteral("SELECT * FROM CONCEPTS ORDER BY Concept"),
                   [this](const Recordset &rs) {
                       SkosConcept c;
                       c.Id = TextOrEmpty(rs.Value(u"Concept"));
                       c.Type = rs.Value(u"Type").toInt();
                       c.Definition = TextOrEmpty(rs.Value(u"Definition"));
                       const QVariant subset = rs.Value(u"Subset_ID");
                       c.Subset = subset.isNull() ? 1 : subset.toInt();
                       if (c.Type == 4)
                           UsedRelations.insert(key(c.Id), c.Id);
                       else if (c.Type == 3)
                           UsedAttributes.insert(key(c.Id), c.Id);
                       m_index.insert(key(c.Id), Concepts.size());
                       Concepts.append(std::move(c));
                   });
        ForEachRow(db, QStringLiteral("SELECT * FROM ISA ORDER BY Concept, ISA"),
                   [this](const Recordset &rs) {
                       const QString child = TextOrEmpty(rs.Value(u"Concept"));
                       const QString parent = TextOrEmpty(rs.Value(u"ISA"));
                       if (SkosConcept *c = find(child))
                           c->Broader << Canonical(parent);
                       if (SkosConcept *p = find(parent))
                           p->Narrower << Canonical(child);
                   });
        ForEachRow(db, QStringLiteral("SELECT * FROM Names ORDER BY Name_ID"),
                   [this](const Recordset &rs) {
                       if (SkosConcept *c = find(TextOrEmpty(rs.Value(u"Concept"))))
                           c->Labels << Label{TextOrEmpty(rs.Value(u"Lang_ID")),
                                              TextOrEmpty(rs.Value(u"Name"))};
                   });
        ForEachRow(db, QStringLiteral("SELECT * FROM Notes ORDER BY Note_ID"),
                   [this](const Recordset &rs) {
                       const QString note = TextOrEmpty(rs.Value(u"Note"));
                       SkosConcept *c = find(TextOrEmpty(rs.Value(u"Concept")));
                       if (c && !note.isEmpty())
                           c->Notes << note;
                   });
        ForEachRow(db, QStringLiteral("SELECT * FROM RELATIONS ORDER BY Relation_ID"),
                   [this](const Recordset &rs) {
                       const QString rel = TextOrEmpty(rs.Value(u"Rel"));
                       const QString filler = TextOrEmpty(rs.Value(u"Concept2"));
                       if (isDomainOrRange(rel) ||
                           filler.compare(kBlocked, Qt::CaseInsensitive) == 0)
                           return;
                       if (SkosConcept *c = find(TextOrEmpty(rs.Value(u"Concept1")))) {
                           c->Relations << Slot{Canonical(rel), Canonical(filler)};
                           UsedRelations.insert(key(rel), Canonical(rel));
                       }
                   });
        ForEachRow(db, QStringLiteral("SELECT * FROM ATTRIBUTES ORDER BY Property_ID"),
                   [this](const Recordset &rs) {
                       const QString name = TextOrEmpty(rs.Value(u"Attribute"));
                       const QString value = TextOrEmpty(rs.Value(u"Value"));
                       if (isDomainOrRange(name) ||
                           value.compare(kBlocked, Qt::CaseInsensitive) == 0)
                           return;
                       if (SkosConcept *c = find(TextOrEmpty(rs.Value(u"Concept")))) {
                           c->Attributes << Slot{Canonical(name), value};
                           UsedAttributes.insert(key(name), Canonical(name));
                       }
                   });
        ForEachRow(db, QStringLiteral("SELECT * FROM INVERSES ORDER BY Relation, Inverse"),
                   [this](const Recordset &rs) {
                       Inverses << Slot{Canonical(TextOrEmpty(rs.Value(u"Relation"))),
                                        Canonical(TextOrEmpty(rs.Value(u"Inverse")))};
                   });
        ForEachRow(db, QStringLiteral("SELECT * FROM Subsets ORDER BY Subset_ID"),
                   [this](const Recordset &rs) {
                       Subsets << std::pair{rs.Value(u"Subset_ID").toInt(),
                                            TextOrEmpty(rs.Value(u"Subset"))};
                   });
        ForEachRow(db, QStringLiteral("SELECT * FROM MetaData ORDER BY MetaData_ID"),
                   [this](const Recordset &rs) {
                       Meta.Name = TextOrEmpty(rs.Value(u"Name"));
                       Meta.Author = TextOrEmpty(rs.Value(u"Author"));
                       Meta.Owner = TextOrEmpty(rs.Value(u"Owner"));
                       Meta.Contact = TextOrEmpty(rs.Value(u"Contact"));
                       Meta.Description = TextOrEmpty(rs.Value(u"Description"));
                       Meta.Created = rs.Value(u"Created").toDateTime();
                       Meta.Modified = rs.Value(u"Modified").toDateTime();
                   });
    }

    // The spelling of the concept's own row: links and slots may differ from it in case.
    QString Canonical(const QString &identifier) const
    {
        const auto found = m_index.constFind(key(identifier));
        return found == m_index.cend() ? identifier : Concepts[*found].Id;
    }

    QList<SkosConcept> Concepts;
    // The relation and attribute concepts with those named in slots, by case-folded identifier.
    QMap<QString, QString> UsedRelations, UsedAttributes;
    QList<Slot> Inverses;
    QList<std::pair<int, QString>> Subsets;
    OntoMetaData Meta;

private:
    static QString key(const QString &identifier) { return identifier.toCaseFolded(); }
    static bool isDomainOrRange(const QString &name)
    {
        return name.compare(QLatin1String("DOMAIN"), Qt::CaseInsensitive) == 0 ||
               name.compare(QLatin1String("RANGE"), Qt::CaseInsensitive) == 0;
    }
    SkosConcept *find(const QString &identifier)
    {
        const auto found = m_index.constFind(key(identifier));
        return found == m_index.cend() ? nullptr : &Concepts[*found];
    }

    QHash<QString, qsizetype> m_index;
};

// The file, written in large pieces; a failed write is the store's file error.
class TurtleFile {
public:
    explicit TurtleFile(const QString &path) : m_file(path)
    {
        if (!m_file.open(QIODevice::WriteOnly | QIODevice::Truncate))
            fail();
    }
    void Write(const QString &text)
    {
        m_buffer += text.toUtf8();
        if (m_buffer.size() > (1 << 20))
            Flush();
    }
    void Flush()
    {
        if (m_file.write(m_buffer) != m_buffer.size())
            fail();
        m_buffer.clear();
    }
    void Close()
    {
        Flush();
        if (!m_file.flush())
            fail();
        m_file.close();
    }

private:
    [[noreturn]] static void fail()
    {
        throw StoreError(PathFileAccessError, QStringLiteral("Path/File access error"));
    }
    QFile m_file;
    QByteArray m_buffer;
};

// One subject's statements: "subject p o ;\n    p o .\n".
class Statements {
public:
    explicit Statements(const QString &subject) : m_text(subject) {}
    void Add(const QString &predicate, const QString &object)
    {
        m_text += (m_first ? QStringLiteral(" ") : QStringLiteral(" ;\n    ")) + predicate +
                  QLatin1Char(' ') + object;
        m_first = false;
    }
    QString Text() const { return m_text + QStringLiteral(" .\n\n"); }

private:
    QString m_text;
    bool m_first = true;
};

class SkosWriter {
public:
    SkosWriter(const SkosSource &source, const QString &base)
        : m_source(source), m_base(CleanBase(base))
    {}

    void Write(TurtleFile &file) const
    {
        file.Write(QStringLiteral("@prefix skos: <http://www.w3.org/2004/02/skos/core#> .\n"
                                  "@prefix rdfs: <http://www.w3.org/2000/01/rdf-schema#> .\n"
                                  "@prefix owl: <http://www.w3.org/2002/07/owl#> .\n"
                                  "@prefix dct: <http://purl.org/dc/terms/> .\n"
                                  "@prefix xsd: <http://www.w3.org/2001/XMLSchema#> .\n\n"));
        file.Write(scheme());
        for (const SkosConcept &c : m_source.Concepts)
            file.Write(conceptBlock(c));
        for (const QString &rel : m_source.UsedRelations)
            file.Write(relation(rel));
        for (const QString &attribute : m_source.UsedAttributes)
            file.Write(attributeProperty(attribute));
        for (const auto &[id, name] : m_source.Subsets)
            file.Write(collection(id, name));
    }

private:
    QString iri(const QString &path) const { return QLatin1Char('<') + m_base + path + u'>'; }
    QString conceptIri(const QString &id) const
    {
        return iri(QStringLiteral("concept/") + IriSegment(id));
    }
    QString relationIri(const QString &id) const
    {
        return iri(QStringLiteral("relation/") + IriSegment(id));
    }
    QString attributeIri(const QString &id) const
    {
        return iri(QStringLiteral("attribute/") + IriSegment(id));
    }
    QString subsetIri(int id) const { return iri(QStringLiteral("subset/") + QString::number(id)); }

    QString scheme() const
    {
        Statements s(iri({}));
        s.Add(QStringLiteral("a"), QStringLiteral("skos:ConceptScheme"));
        const OntoMetaData &meta = m_source.Meta;
        const auto text = [&s](const char *predicate, const QString &value) {
            if (!value.isEmpty())
                s.Add(QLatin1String(predicate), TurtleString(value));
        };
        text("dct:title", meta.Name);
        text("dct:description", meta.Description);
        text("dct:creator", meta.Author);
        text("dct:publisher", meta.Owner);
        text("rdfs:comment",
             meta.Contact.isEmpty() ? QString() : QStringLiteral("Contact: ") + meta.Contact);
        if (meta.Created.isValid())
            s.Add(QStringLiteral("dct:created"), DateLiteral(meta.Created));
        if (meta.Modified.isValid())
            s.Add(QStringLiteral("dct:modified"), DateLiteral(meta.Modified));
        for (const SkosConcept &c : m_source.Concepts) {
            if (c.Type == 100)
                s.Add(QStringLiteral("skos:hasTopConcept"), conceptIri(c.Id));
        }
        return s.Text();
    }

    QString conceptBlock(const SkosConcept &c) const
    {
        Statements s(conceptIri(c.Id));
        s.Add(QStringLiteral("a"), QStringLiteral("skos:Concept"));
        s.Add(QStringLiteral("skos:inScheme"), iri({}));
        if (c.Type == 100)
            s.Add(QStringLiteral("skos:topConceptOf"), iri({}));
        s.Add(QStringLiteral("skos:notation"), TurtleString(c.Id));
        // The first name in a language is the preferred one; SKOS allows one per language.
        // A name given twice in a language goes out once: SKOS keeps a label from being both.
        QStringList preferred, given;
        for (const Label &label : c.Labels) {
            const QString language = label.Language.toLower();
            const QString both = language + u'\n' + label.Name;
            if (label.Name.isEmpty() || given.contains(both))
                continue;
            given << both;
            const bool first = !preferred.contains(language);
            if (first)
                preferred << language;
            s.Add(first ? QStringLiteral("skos:prefLabel") : QStringLiteral("skos:altLabel"),
                  Literal(label.Name, label.Language));
        }
        if (!c.Definition.isEmpty() && c.Definition != kUndefined)
            s.Add(QStringLiteral("skos:definition"), TurtleString(c.Definition));
        for (const QString &note : c.Notes)
            s.Add(QStringLiteral("skos:editorialNote"), TurtleString(note));
        for (const QString &parent : c.Broader)
            s.Add(QStringLiteral("skos:broader"), conceptIri(parent));
        for (const QString &child : c.Narrower)
            s.Add(QStringLiteral("skos:narrower"), conceptIri(child));
        for (const Slot &slot : c.Relations)
            s.Add(relationIri(slot.Name), conceptIri(slot.Filler));
        for (const Slot &slot : c.Attributes)
            s.Add(attributeIri(slot.Name), TurtleString(slot.Filler));
        return s.Text();
    }

    QString relation(const QString &id) const
    {
        Statements s(relationIri(id));
        s.Add(QStringLiteral("a"), QStringLiteral("owl:ObjectProperty"));
        s.Add(QStringLiteral("rdfs:subPropertyOf"), QStringLiteral("skos:related"));
        s.Add(QStringLiteral("rdfs:label"), TurtleString(id));
        s.Add(QStringLiteral("rdfs:isDefinedBy"), conceptIri(id));
        for (const Slot &pair : m_source.Inverses) {
            if (pair.Name == id)
                s.Add(QStringLiteral("owl:inverseOf"), relationIri(pair.Filler));
        }
        return s.Text();
    }

    QString attributeProperty(const QString &id) const
    {
        Statements s(attributeIri(id));
        s.Add(QStringLiteral("a"), QStringLiteral("owl:DatatypeProperty"));
        s.Add(QStringLiteral("rdfs:label"), TurtleString(id));
        s.Add(QStringLiteral("rdfs:isDefinedBy"), conceptIri(id));
        return s.Text();
    }

    QString collection(int id, const QString &name) const
    {
        Statements s(subsetIri(id));
        s.Add(QStringLiteral("a"), QStringLiteral("skos:Collection"));
        s.Add(QStringLiteral("skos:prefLabel"), TurtleString(name));
        for (const SkosConcept &c : m_source.Concepts) {
            if (c.Subset == id)
                s.Add(QStringLiteral("skos:member"), conceptIri(c.Id));
        }
        return s.Text();
    }

    const SkosSource &m_source;
    QString m_base;
};

} // namespace

QString DefaultSkosBase(const QString &ontologyName)
{
    const QString name =
        ontologyName.trimmed().isEmpty() ? QStringLiteral("ontology") : ontologyName.trimmed();
    return QStringLiteral("http://example.org/") + IriSegment(name) + QLatin1Char('/');
}

QString IriSegment(const QString &text)
{
    QString segment;
    segment.reserve(text.size());
    for (const QChar c : text) {
        if (IsUnreserved(c.unicode()))
            segment += c;
    }
    if (segment.size() == text.size())
        return segment;
    segment.clear();
    for (const char byte : text.toUtf8()) {
        if (IsUnreserved(char16_t(uchar(byte))))
            segment += QLatin1Char(byte);
        else
            segment += PercentByte(uchar(byte));
    }
    return segment;
}

QString TurtleString(const QString &text)
{
    QString out;
    out.reserve(text.size() + 2);
    out += QLatin1Char('"');
    for (const QChar c : text) {
        switch (c.unicode()) {
        case u'"':
            out += QStringLiteral("\\\"");
            break;
        case u'\\':
            out += QStringLiteral("\\\\");
            break;
        case u'\n':
            out += QStringLiteral("\\n");
            break;
        case u'\r':
            out += QStringLiteral("\\r");
            break;
        case u'\t':
            out += QStringLiteral("\\t");
            break;
        default:
            if (c.unicode() < 0x20 || c.unicode() == 0x7F)
                out += QStringLiteral("\\u") +
                       QString::number(c.unicode(), 16).toUpper().rightJustified(4, u'0');
            else
                out += c;
        }
    }
    out += QLatin1Char('"');
    return out;
}

int WriteSkosFile(const QString &path, const QString &base)
{
    const SkosSource source;
    TurtleFile file(path);
    SkosWriter(source, base).Write(file);
    file.Close();
    return int(source.Concepts.size());
}

bool ExportOpenOntologyAsSkos()
{
    const QString name = Process().OntoMeta.Name;
    FileDialogRequest request;
    request.title = QStringLiteral("Export as SKOS");
    request.filter = QStringLiteral("Turtle (*.ttl)|*.ttl|All files (*.*)|*.*");
    request.initialDir = Process().OntoFolder;
    request.fileName =
        (name.isEmpty() ? QStringLiteral("ontology") : name) + QStringLiteral(".ttl");
    request.defaultExt = QStringLiteral("ttl");
    const std::optional<QString> path = UI().GetSaveFileName(request);
    if (!path || path->isEmpty())
        return false;
    const QString base = UI().InputBox(QStringLiteral("Base IRI of the concepts:"),
                                       QStringLiteral("Export as SKOS"), DefaultSkosBase(name));
    if (base.trimmed().isEmpty())
        return false;
    const int concepts = WriteSkosFile(*path, base.trimmed());
    UI().MsgBox(QString::number(concepts) + QStringLiteral(" concepts exported to ") + *path,
                msg::Information, QStringLiteral("Export as SKOS"));
    return true;
}

} // namespace lx
