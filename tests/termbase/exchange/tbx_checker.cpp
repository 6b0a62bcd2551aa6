#include "tbx_checker.h"

#include <QDate>
#include <QHash>
#include <QRegularExpression>
#include <QSet>
#include <QXmlStreamReader>

namespace lx::test {

const XmlNode *XmlNode::child(const QString &name) const
{
    for (const XmlNode &c : Children) {
        if (c.Name == name)
            return &c;
    }
    return nullptr;
}

std::vector<const XmlNode *> XmlNode::children(const QString &name) const
{
    std::vector<const XmlNode *> found;
    for (const XmlNode &c : Children) {
        if (c.Name == name)
            found.push_back(&c);
    }
    return found;
}

std::optional<XmlNode> ParseXml(const QByteArray &xml, QString *error)
{
    QXmlStreamReader reader(xml);
    std::vector<XmlNode> open;
    std::optional<XmlNode> root;
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement: {
            XmlNode node;
            node.Name = reader.name().toString();
            node.Namespace = reader.namespaceUri().toString();
            for (const QXmlStreamAttribute &a : reader.attributes())
                node.Attributes.insert(a.qualifiedName().toString(), a.value().toString());
            open.push_back(std::move(node));
            break;
        }
        case QXmlStreamReader::Characters:
            if (!open.empty())
                open.back().Text += reader.text();
            break;
        case QXmlStreamReader::EndElement: {
            XmlNode done = std::move(open.back());
            open.pop_back();
            if (open.empty())
                root = std::move(done);
            else
                open.back().Children.push_back(std::move(done));
            break;
        }
        default:
            break;
        }
    }
    if (reader.hasError()) {
        if (error)
            *error = reader.errorString();
        return std::nullopt;
    }
    return root;
}

namespace {

const QString kNamespace = QStringLiteral("urn:iso:std:iso:30042:ed-2");

// One step of a content model: one of `names`, between `min` and `max` times.
struct Step {
    QStringList Names;
    int Min = 1;
    int Max = 1;
};
constexpr int Many = 1 << 30;

const QStringList kAux{"descrip",    "descripGrp", "admin", "adminGrp",
                       "transacGrp", "note",       "ref",   "xref"};

// The content models of the core structure, for the elements written.
const QHash<QString, std::vector<Step>> &models()
{
    static const QHash<QString, std::vector<Step>> m{
        {"tbx", {{{"tbxHeader"}}, {{"text"}}}},
        {"tbxHeader", {{{"fileDesc"}}, {{"encodingDesc"}, 0}, {{"revisionDesc"}, 0}}},
        {"fileDesc", {{{"titleStmt"}, 0}, {{"publicationStmt"}, 0}, {{"sourceDesc"}, 1, Many}}},
        {"titleStmt", {{{"title"}}, {{"note"}, 0, Many}}},
        {"sourceDesc", {{{"p"}, 1, Many}}},
        {"text", {{{"body"}}, {{"back"}, 0}}},
        {"body", {{{"conceptEntry"}, 1, Many}}},
        {"back", {{{"refObjectSec"}, 0, Many}}},
        {"refObjectSec", {{{"refObject"}, 1, Many}}},
        {"refObject", {{{"item", "itemSet", "itemGrp"}, 1, Many}}},
        {"conceptEntry", {{kAux, 0, Many}, {{"langSec"}, 1, Many}}},
        {"langSec", {{kAux, 0, Many}, {{"termSec"}, 1, Many}}},
        {"termSec", {{{"term"}}, {{"termNote", "termNoteGrp"}, 0, Many}, {kAux, 0, Many}}},
        {"descripGrp",
         {{{"descrip"}},
          {{"descripNote", "admin", "adminGrp", "transacGrp", "note", "ref", "xref"}, 0, Many}}},
        {"adminGrp", {{{"admin"}}, {{"adminNote", "note", "ref", "xref"}, 0, Many}}},
        {"termNoteGrp",
         {{{"termNote"}}, {{"admin", "adminGrp", "transacGrp", "note", "ref", "xref"}, 0, Many}}},
        {"transacGrp", {{{"transac"}}, {{"transacNote", "date", "note", "ref", "xref"}, 0, Many}}},
    };
    return m;
}

// Elements that hold text only (no inline markup is written).
const QSet<QString> kLeaves{"term",    "termNote",    "descrip", "admin", "note",  "ref", "xref",
                            "transac", "transacNote", "date",    "item",  "title", "p"};

struct Attributes {
    QStringList Allowed;
    QStringList Required;
};

const QHash<QString, Attributes> &attributes()
{
    const QStringList data{"xml:lang", "id", "target", "datatype", "type", "module"};
    static const QHash<QString, Attributes> a{
        {"tbx", {{"type", "style", "xml:lang"}, {"type", "style", "xml:lang"}}},
        {"conceptEntry", {{"id"}, {}}},
        {"langSec", {{"xml:lang"}, {"xml:lang"}}},
        {"termSec", {{"id"}, {}}},
        {"term", {{"id"}, {}}},
        {"descrip", {data, {"type"}}},
        {"admin", {data, {"type"}}},
        {"termNote", {data, {"type"}}},
        {"ref", {data, {"type"}}},
        {"transac", {data, {"type"}}},
        {"transacNote", {data, {"type"}}},
        {"xref", {{"id", "target", "type", "module"}, {"target", "type"}}},
        {"note", {{"id", "xml:lang"}, {}}},
        {"refObjectSec", {{"id", "type"}, {"type"}}},
        {"item", {{"id", "type"}, {}}},
        {"p", {{"id", "xml:lang", "type"}, {}}},
        {"title", {{"id", "xml:lang"}, {}}},
        {"titleStmt", {{"id", "xml:lang"}, {}}},
        {"sourceDesc", {{"id", "xml:lang"}, {}}},
    };
    return a;
}

// The data categories of TBX-Basic on each element.
const QHash<QString, QSet<QString>> &types()
{
    static const QHash<QString, QSet<QString>> t{
        {"descrip", {"context", "definition", "subjectField"}},
        {"admin", {"customerSubset", "projectSubset", "source"}},
        {"termNote",
         {"administrativeStatus", "grammaticalGender", "geographicalUsage", "partOfSpeech",
          "termLocation", "termType"}},
        {"ref", {"crossReference"}},
        {"xref", {"externalCrossReference", "xGraphic"}},
        {"transac", {"transactionType"}},
        {"transacNote", {"responsibility"}},
    };
    return t;
}

// Where a data category may stand: the elements its parent (or its group's parent) may be.
const QHash<QString, QSet<QString>> &levels()
{
    static const QHash<QString, QSet<QString>> l{
        {"customerSubset", {"termSec"}},
        {"projectSubset", {"termSec"}},
        {"context", {"termSec"}},
        {"definition", {"conceptEntry", "langSec"}},
        {"subjectField", {"conceptEntry"}},
        {"crossReference", {"conceptEntry", "termSec"}},
        {"externalCrossReference", {"conceptEntry", "termSec"}},
        {"xGraphic", {"conceptEntry"}},
    };
    return l;
}

const QHash<QString, QSet<QString>> &closedValues()
{
    static const QHash<QString, QSet<QString>> v{
        {"administrativeStatus",
         {"admittedTerm-admn-sts", "deprecatedTerm-admn-sts", "supersededTerm-admn-sts",
          "preferredTerm-admn-sts"}},
        {"partOfSpeech", {"adjective", "noun", "other", "verb", "adverb"}},
        {"grammaticalGender", {"masculine", "feminine", "neuter", "other"}},
        {"termType", {"fullForm", "acronym", "abbreviation", "shortForm", "variant", "phrase"}},
        {"termLocation",
         {"checkBox", "comboBox", "comboBoxElement", "dialogBox", "groupBox", "informativeMessage",
          "interactiveMessage", "menuItem", "progressBar", "pushButton", "radioButton", "slider",
          "spinBox", "tab", "tableText", "textBox", "toolTip", "user-definedType"}},
        {"transactionType", {"origination", "modification"}},
    };
    return v;
}

class Checker {
public:
    QStringList Run(const XmlNode &root)
    {
        if (root.Name != QLatin1String("tbx"))
            fail(root.Name, QStringLiteral("the document element is not tbx"));
        if (root.attr("type") != QLatin1String("TBX-Basic"))
            fail(QStringLiteral("tbx"), QStringLiteral("type is not TBX-Basic"));
        if (root.attr("style") != QLatin1String("dca"))
            fail(QStringLiteral("tbx"), QStringLiteral("style is not dca"));
        walk(root, nullptr, nullptr, QStringLiteral("tbx"));
        for (const auto &[target, path] : m_targets) {
            if (!m_ids.contains(target))
                fail(path, QStringLiteral("target ") + target + QStringLiteral(" names no id"));
        }
        return m_errors;
    }

private:
    void fail(const QString &path, const QString &what)
    {
        m_errors << path + QStringLiteral(": ") + what;
    }

    void walk(const XmlNode &n, const XmlNode *parent, const XmlNode *grandparent,
              const QString &path)
    {
        if (n.Namespace != kNamespace)
            fail(path, QStringLiteral("outside the TBX namespace"));
        content(n, path);
        attributesOf(n, path);
        dataCategory(n, parent, grandparent, path);
        int i = 0;
        for (const XmlNode &c : n.Children)
            walk(c, &n, parent, path + u'/' + c.Name + u'[' + QString::number(++i) + u']');
    }

    void content(const XmlNode &n, const QString &path)
    {
        if (kLeaves.contains(n.Name)) {
            if (!n.Children.empty())
                fail(path, QStringLiteral("holds elements"));
            return;
        }
        const auto model = models().constFind(n.Name);
        if (model == models().cend()) {
            fail(path, QStringLiteral("not an element of the structure"));
            return;
        }
        if (!n.Text.trimmed().isEmpty())
            fail(path, QStringLiteral("holds text"));
        size_t at = 0;
        for (const Step &step : *model) {
            int count = 0;
            while (at < n.Children.size() && count < step.Max &&
                   step.Names.contains(n.Children[at].Name)) {
                ++at;
                ++count;
            }
            if (count < step.Min)
                fail(path, QStringLiteral("lacks ") + step.Names.join(u'|'));
        }
        if (at < n.Children.size())
            fail(path, QStringLiteral("has ") + n.Children[at].Name +
                           QStringLiteral(" where it isn't allowed"));
    }

    void attributesOf(const XmlNode &n, const QString &path)
    {
        static const QRegularExpression ncname(QStringLiteral("^[A-Za-z_][A-Za-z0-9._-]*$"));
        static const QRegularExpression language(
            QStringLiteral("^[A-Za-z]{1,8}(-[A-Za-z0-9]{1,8})*$"));
        const Attributes rules = attributes().value(n.Name, Attributes{{"id"}, {}});
        for (auto it = n.Attributes.cbegin(); it != n.Attributes.cend(); ++it) {
            if (!rules.Allowed.contains(it.key()))
                fail(path,
                     QStringLiteral("attribute ") + it.key() + QStringLiteral(" not allowed"));
        }
        for (const QString &required : rules.Required) {
            if (!n.Attributes.contains(required))
                fail(path, QStringLiteral("lacks attribute ") + required);
        }
        if (n.Attributes.contains("id")) {
            const QString id = n.attr("id");
            if (!ncname.match(id).hasMatch())
                fail(path, QStringLiteral("id ") + id + QStringLiteral(" is no name"));
            if (m_ids.contains(id))
                fail(path, QStringLiteral("id ") + id + QStringLiteral(" twice"));
            m_ids.insert(id);
        }
        if (n.Attributes.contains("xml:lang") && !language.match(n.attr("xml:lang")).hasMatch())
            fail(path, QStringLiteral("xml:lang ") + n.attr("xml:lang") +
                           QStringLiteral(" is no language tag"));
        if (n.Attributes.contains("target")) {
            if (n.attr("target").isEmpty())
                fail(path, QStringLiteral("empty target"));
            else if (n.Name != QLatin1String("xref"))
                m_targets.emplace_back(n.attr("target"), path);
        }
    }

    void dataCategory(const XmlNode &n, const XmlNode *parent, const XmlNode *grandparent,
                      const QString &path)
    {
        if (n.Name == QLatin1String("date")) {
            static const QRegularExpression form(QStringLiteral("^\\d{4}-\\d{2}-\\d{2}$"));
            if (!form.match(n.Text).hasMatch() || !QDate::fromString(n.Text, Qt::ISODate).isValid())
                fail(path, QStringLiteral("date ") + n.Text + QStringLiteral(" is no date"));
        }
        const auto allowed = types().constFind(n.Name);
        if (allowed == types().cend())
            return;
        const QString type = n.attr("type");
        if (!allowed->contains(type)) {
            fail(path,
                 QStringLiteral("type ") + type + QStringLiteral(" is not a data category here"));
            return;
        }
        // The level is the parent, or the parent of the group the element opens.
        const bool grouped = parent && parent->Name.endsWith(QLatin1String("Grp"));
        const QString level = grouped ? (grandparent ? grandparent->Name : QString())
                                      : (parent ? parent->Name : QString());
        if (n.Name == QLatin1String("termNote") && level != QLatin1String("termSec"))
            fail(path, QStringLiteral("termNote outside a termSec"));
        const auto where = levels().constFind(type);
        if (where != levels().cend() && !where->contains(level))
            fail(path, type + QStringLiteral(" can't stand in ") + level);
        const auto values = closedValues().constFind(type);
        if (values != closedValues().cend() && !values->contains(n.Text))
            fail(path, n.Text + QStringLiteral(" is not a value of ") + type);
    }

    QStringList m_errors;
    QSet<QString> m_ids;
    std::vector<std::pair<QString, QString>> m_targets;
};

} // namespace

QStringList CheckTbxBasic(const XmlNode &root)
{
    return Checker().Run(root);
}

} // namespace lx::test
