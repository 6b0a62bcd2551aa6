// lexarbor-mkseed SOURCE-FOLDER OUTPUT-FILE [HELP-FILE]
//
// Builds the seed file res.dat from the text sources under resources/seed, one source a table,
// and, when asked, the data category help DCHelp.html from the same sources and the
// definitions in tb_datcats_help.tsv.
// A source is UTF-8 text: lines starting with '#' and blank lines are skipped, the first other
// line names the columns, and each further line is one row, its values separated by tabs.
// Any fault in a source stops the build with the file, the line and the reason, and leaves an
// earlier output as it was, so a broken seed never reaches the program.

#include "core/store/database.h"
#include "core/store/errors.h"
#include "help_page.h"
#include "ontology/store/schema.h"
#include "termbase/store/schema.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QRegularExpression>
#include <QSet>
#include <QStringDecoder>
#include <QStringList>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

namespace {

using namespace lx;
using namespace lx::store;

enum class Kind { Text, Byte, Long, Boolean };

struct Column {
    const char *name; // header word and field name alike
    Kind kind;
    bool nullable = false; // "-" stands for Null
};

struct SourceTable {
    const char *file;
    const char *table;
    std::vector<Column> columns;
};

// The seed tables in the order of the file's relations: a subset before its concepts, a concept
// before its links. Termbase seed tables go after these, with their builder in kBuilders.
const std::vector<SourceTable> &SourceTables()
{
    static const std::vector<SourceTable> tables = {
        {"subsets.tsv", "Subsets", {{"Subset_ID", Kind::Byte}, {"Subset", Kind::Text}}},
        {"concepts.tsv",
         "CONCEPTS",
         {{"Concept", Kind::Text},
          {"Type", Kind::Byte},
          {"Subset_ID", Kind::Byte},
          {"Definition", Kind::Text}}},
        {"isa.tsv", "ISA", {{"Concept", Kind::Text}, {"ISA", Kind::Text}}},
        {"inverses.tsv", "INVERSES", {{"Relation", Kind::Text}, {"Inverse", Kind::Text}}},
        {"relations.tsv",
         "RELATIONS",
         {{"Concept1", Kind::Text}, {"Rel", Kind::Text}, {"Concept2", Kind::Text}}},
        {"languages.tsv",
         "Languages",
         {{"Lang_ID", Kind::Text}, {"Language", Kind::Text}, {"Show", Kind::Boolean}}},
        // The termbase tables, a character set before its languages, a category before its
        // names, elements, picklist values and families.
        {"tb_charsets.tsv",
         "charsets",
         {{"charsetID", Kind::Text}, {"description", Kind::Text}, {"wsd", Kind::Text}}},
        {"tb_langs.tsv",
         "langs",
         {{"langID", Kind::Text},
          {"description", Kind::Text},
          {"charsetID", Kind::Text},
          {"order", Kind::Byte}}},
        {"tb_datcats.tsv",
         "datcats",
         {{"categoryID", Kind::Text},
          {"GI_name", Kind::Text},
          {"type", Kind::Text},
          {"value_type", Kind::Text},
          {"needs_lang", Kind::Boolean},
          {"forms_link", Kind::Boolean},
          {"parentCatID", Kind::Text, true}}},
        {"tb_datcats_names.tsv",
         "datcats_names",
         {{"categoryID", Kind::Text}, {"langID", Kind::Text}, {"name", Kind::Text}}},
        {"tb_elements.tsv",
         "elements",
         {{"elemID", Kind::Long}, {"categoryID", Kind::Text}, {"parentID", Kind::Long, true}}},
        {"tb_picklists.tsv", "picklists", {{"categoryID", Kind::Text}, {"value", Kind::Text}}},
        {"tb_valid_families.tsv",
         "valid_families",
         {{"parentCategoryID", Kind::Text},
          {"childCategoryID", Kind::Text},
          {"occurrence", Kind::Text}}},
    };
    return tables;
}

// The definitions of the categories: a source of the help, not of the seed file.
const SourceTable &HelpSourceLayout()
{
    static const SourceTable layout{
        "tb_datcats_help.tsv", nullptr, {{"categoryID", Kind::Text}, {"definition", Kind::Text}}};
    return layout;
}

// Table builders run on the empty file before any row goes in.
const std::function<void(Database &)> kBuilders[] = {BuildOntologyTables, BuildTermbaseSeedTables};

// The concepts that the program looks for by name.
const char *const kRequiredConcepts[] = {"ALL",
                                         "OBJECT",
                                         "EVENT",
                                         "PROPERTY",
                                         "RELATION",
                                         "ATTRIBUTE",
                                         "PHYSICAL-OBJECT",
                                         "MENTAL-OBJECT",
                                         "INTANGIBLE-OBJECT",
                                         "SOCIAL-OBJECT",
                                         "PHYSICAL-EVENT",
                                         "MENTAL-EVENT",
                                         "SOCIAL-EVENT",
                                         "DOMAIN",
                                         "RANGE",
                                         "*NOTHING*"};

struct SourceError {
    QString where; // "file:line", or the file alone
    QString message;
};

struct Row {
    int line;
    QStringList values;
};

struct Source {
    const SourceTable *layout;
    QString path;
    std::vector<Row> rows;

    [[noreturn]] void fail(int line, const QString &message) const
    {
        throw SourceError{line > 0 ? QStringLiteral("%1:%2").arg(path).arg(line) : path, message};
    }
};

Source ReadSource(const QString &folder, const SourceTable &layout)
{
    Source source{&layout, QDir(folder).filePath(QString::fromLatin1(layout.file)), {}};
    QFile file(source.path);
    if (!file.open(QIODevice::ReadOnly))
        source.fail(0, QStringLiteral("can't read: %1").arg(file.errorString()));
    QStringDecoder decode(QStringDecoder::Utf8);
    const QString text = decode(file.readAll());
    if (decode.hasError())
        source.fail(0, QStringLiteral("not UTF-8 text"));

    QStringList header;
    for (const Column &c : layout.columns)
        header << QString::fromLatin1(c.name);

    const QStringList lines = text.split(QLatin1Char('\n'));
    bool headerSeen = false;
    for (int i = 0; i < lines.size(); ++i) {
        QString line = lines[i];
        if (line.endsWith(QLatin1Char('\r')))
            line.chop(1);
        if (line.trimmed().isEmpty() || line.startsWith(QLatin1Char('#')))
            continue;
        const QStringList values = line.split(QLatin1Char('\t'));
        if (!headerSeen) {
            if (values != header)
                source.fail(i + 1, QStringLiteral("the header must read: %1")
                                       .arg(header.join(QStringLiteral(" <tab> "))));
            headerSeen = true;
            continue;
        }
        if (values.size() != header.size())
            source.fail(i + 1, QStringLiteral("%1 values, %2 expected (separate them by tabs)")
                                   .arg(values.size())
                                   .arg(header.size()));
        for (qsizetype c = 0; c < values.size(); ++c) {
            const QString &v = values[c];
            if (v.isEmpty() || v.trimmed() != v)
                source.fail(i + 1,
                            QStringLiteral("%1 is empty or has blanks around it").arg(header[c]));
            // Queries set values between double quotes without escaping them.
            if (v.contains(QLatin1Char('"')))
                source.fail(i + 1, QStringLiteral("%1 holds a double quote").arg(header[c]));
        }
        source.rows.push_back(Row{i + 1, values});
    }
    if (!headerSeen)
        source.fail(0, QStringLiteral("no header line"));
    return source;
}

QVariant Convert(const Source &source, const Row &row, int column)
{
    const Column &c = source.layout->columns[size_t(column)];
    const QString &v = row.values[column];
    if (c.nullable && v == QLatin1String("-"))
        return {};
    switch (c.kind) {
    case Kind::Text:
        return v;
    case Kind::Byte: {
        bool ok = false;
        const uint n = v.toUInt(&ok);
        if (!ok || n > 255)
            source.fail(row.line, QStringLiteral("%1 must be a number from 0 to 255").arg(c.name));
        return int(n);
    }
    case Kind::Long: {
        bool ok = false;
        const int n = v.toInt(&ok);
        if (!ok)
            source.fail(row.line, QStringLiteral("%1 must be a whole number").arg(c.name));
        return n;
    }
    case Kind::Boolean:
        if (v == QLatin1String("true"))
            return true;
        if (v == QLatin1String("false"))
            return false;
        source.fail(row.line, QStringLiteral("%1 must be true or false").arg(c.name));
    }
    return {};
}

void WriteSource(Database &db, const Source &source)
{
    Recordset rs = db.OpenRecordset(QString::fromLatin1(source.layout->table), dbOpenTable);
    for (const Row &row : source.rows) {
        std::vector<QVariant> values;
        for (int c = 0; c < int(source.layout->columns.size()); ++c)
            values.push_back(Convert(source, row, c));
        try {
            rs.AddNew();
            for (size_t c = 0; c < values.size(); ++c)
                rs.Collect(QString::fromLatin1(source.layout->columns[c].name), values[c]);
            rs.Update();
        } catch (const StoreError &e) {
            rs.CancelUpdate();
            source.fail(row.line,
                        QStringLiteral("%1 refuses the row: %2 (%3)")
                            .arg(QString::fromLatin1(source.layout->table), e.description())
                            .arg(e.number()));
        }
    }
}

const Source &SourceOf(const std::vector<Source> &sources, const char *file)
{
    for (const Source &s : sources)
        if (qstrcmp(s.layout->file, file) == 0)
            return s;
    Q_UNREACHABLE();
}

// What the store can't check itself: the shape that the program expects of a new ontology.
void CheckOntology(const std::vector<Source> &sources)
{
    const Source &concepts = SourceOf(sources, "concepts.tsv");
    const Source &isa = SourceOf(sources, "isa.tsv");
    const Source &inverses = SourceOf(sources, "inverses.tsv");
    const Source &relations = SourceOf(sources, "relations.tsv");

    static const QRegularExpression identifier(QStringLiteral("^[A-Z0-9*][A-Z0-9*-]*$"));
    static const QSet<int> knownTypes = {ctObject,  ctEvent,         ctAttribute, ctRelation,
                                         ctSpecial, ctHiddenSpecial, ctTop};
    QHash<QString, int> type;
    QHash<QString, int> lineOf;
    QString top;
    for (const Row &row : concepts.rows) {
        const QString &id = row.values[0];
        if (!identifier.match(id).hasMatch())
            concepts.fail(row.line, QStringLiteral("%1 isn't an identifier: upper-case ASCII "
                                                   "letters, digits, hyphens and asterisks")
                                        .arg(id));
        const int t = row.values[1].toInt();
        if (!knownTypes.contains(t))
            concepts.fail(row.line, QStringLiteral("unknown Type %1").arg(t));
        if (t == ctTop) {
            if (!top.isEmpty())
                concepts.fail(row.line,
                              QStringLiteral("a second top concept (Type 100) after %1").arg(top));
            top = id;
        }
        if (t == ctAttribute && id.size() > 50)
            concepts.fail(row.line, QStringLiteral("an attribute's identifier must fit the 50 "
                                                   "characters of ATTRIBUTES.Attribute"));
        type.insert(id, t);
        lineOf.insert(id, row.line);
    }
    if (top.isEmpty())
        concepts.fail(0, QStringLiteral("no top concept (Type 100)"));
    for (const char *name : kRequiredConcepts)
        if (!type.contains(QString::fromLatin1(name)))
            concepts.fail(0, QStringLiteral("%1 is missing").arg(QLatin1String(name)));

    // Every concept but the top one hangs below the top: an orphan goes at the next deletion,
    // and a cycle would keep the walks of the hierarchy from ending.
    QHash<QString, QStringList> parents;
    for (const Row &row : isa.rows) {
        if (row.values[0] == top)
            isa.fail(row.line, QStringLiteral("the top concept can't have a parent"));
        parents[row.values[0]] << row.values[1];
    }
    QHash<QString, bool> reachesTop{{top, true}};
    std::function<bool(const QString &, QSet<QString> &)> reaches = [&](const QString &id,
                                                                        QSet<QString> &path) {
        if (auto it = reachesTop.constFind(id); it != reachesTop.cend())
            return *it;
        if (path.contains(id))
            return false;
        path.insert(id);
        bool ok = !parents.value(id).isEmpty();
        for (const QString &p : parents.value(id))
            ok = ok && reaches(p, path);
        path.remove(id);
        reachesTop.insert(id, ok);
        return ok;
    };
    for (const Row &row : concepts.rows) {
        QSet<QString> path;
        const QString &id = row.values[0];
        if (id != top && parents.value(id).isEmpty())
            concepts.fail(row.line, QStringLiteral("%1 has no parent in isa.tsv").arg(id));
        if (!reaches(id, path))
            concepts.fail(row.line, QStringLiteral("%1 isn't below %2: its IS-A links go round "
                                                   "in a cycle")
                                        .arg(id, top));
    }

    // Relations come in inverse pairs, stored both ways, and carry a domain and a range.
    QSet<QPair<QString, QString>> pairs;
    QSet<QString> withInverse;
    for (const Row &row : inverses.rows) {
        for (const QString &id : row.values)
            if (type.value(id) != ctRelation)
                inverses.fail(row.line, QStringLiteral("%1 isn't a relation (Type 4)").arg(id));
        pairs.insert({row.values[0], row.values[1]});
        withInverse.insert(row.values[0]);
    }
    for (const Row &row : inverses.rows)
        if (!pairs.contains({row.values[1], row.values[0]}))
            inverses.fail(
                row.line,
                QStringLiteral("the row %1 <tab> %2 is missing").arg(row.values[1], row.values[0]));
    QSet<QString> withDomain, withRange;
    for (const Row &row : relations.rows) {
        const int t = type.value(row.values[0]);
        const bool meta =
            row.values[1] == QLatin1String("DOMAIN") || row.values[1] == QLatin1String("RANGE");
        if (!meta || (t != ctRelation && t != ctAttribute))
            relations.fail(row.line, QStringLiteral("only relations and attributes carry seeded "
                                                    "slots, and only DOMAIN and RANGE"));
        if (t == ctAttribute && row.values[1] == QLatin1String("RANGE"))
            relations.fail(row.line, QStringLiteral("an attribute's range is a value in "
                                                    "ATTRIBUTES, which isn't seeded"));
        (row.values[1] == QLatin1String("DOMAIN") ? withDomain : withRange) << row.values[0];
    }
    for (const Row &row : concepts.rows) {
        const QString &id = row.values[0];
        if (type.value(id) != ctRelation)
            continue;
        if (!withInverse.contains(id))
            concepts.fail(row.line, QStringLiteral("the relation %1 has no inverse").arg(id));
        if (!withDomain.contains(id) || !withRange.contains(id))
            concepts.fail(row.line,
                          QStringLiteral("the relation %1 needs a DOMAIN and a RANGE").arg(id));
    }

    const Source &subsets = SourceOf(sources, "subsets.tsv");
    if (std::none_of(subsets.rows.begin(), subsets.rows.end(),
                     [](const Row &r) { return r.values[0] == QLatin1String("1"); }))
        subsets.fail(0, QStringLiteral("subset 1 is missing"));
    const Source &languages = SourceOf(sources, "languages.tsv");
    if (std::none_of(languages.rows.begin(), languages.rows.end(),
                     [](const Row &r) { return r.values[0] == QLatin1String("en"); }))
        languages.fail(0, QStringLiteral("the language en is missing"));
}

bool IsBackmatter(const QString &id)
{
    return id.startsWith(QLatin1Char('x'));
}

// "Help on this" finds a category by its name in the pane, the last of equal names winning, and
// the help's list reads a category as its name, " (", its identifier and ")". So a name may not
// hold " (", and within one language no name of a category with help (any but the backmatter's)
// may be shared with another category.
void CheckNamesForHelp(const Source &names)
{
    QHash<QPair<QString, QString>, const Row *> first; // language, name
    for (const Row &row : names.rows) {
        const QString &id = row.values[0];
        if (row.values[2].contains(QStringLiteral(" (")))
            names.fail(row.line, QStringLiteral("the name of %1 holds \" (\"").arg(id));
        const QPair<QString, QString> key{row.values[1], row.values[2]};
        const Row *earlier = first.value(key);
        if (!earlier) {
            first.insert(key, &row);
            continue;
        }
        if (!IsBackmatter(id) || !IsBackmatter(earlier->values[0]))
            names.fail(row.line, QStringLiteral("%1 shares the %2 name %3 with %4")
                                     .arg(id, row.values[1], row.values[2], earlier->values[0]));
    }
}

// What the termbase editor looks for in a new termbase: the top categories below DC, a name of
// every category in the languages of the options, the frame of elements 1 and 3, and values for
// every picklist category.
void CheckTermbase(const std::vector<Source> &sources)
{
    const Source &datcats = SourceOf(sources, "tb_datcats.tsv");
    const Source &names = SourceOf(sources, "tb_datcats_names.tsv");
    const Source &elements = SourceOf(sources, "tb_elements.tsv");
    const Source &picklists = SourceOf(sources, "tb_picklists.tsv");

    QHash<QString, QString> parentOf;
    QSet<QString> picklistCategories;
    for (const Row &row : datcats.rows) {
        parentOf.insert(row.values[0], row.values[6]);
        if (row.values[3] == QLatin1String("picklist"))
            picklistCategories.insert(row.values[0]);
    }
    for (const char *top : {"0", "1", "2", "descrip", "admin", "100"})
        if (parentOf.value(QString::fromLatin1(top)) != QLatin1String("DC"))
            datcats.fail(
                0,
                QStringLiteral("the top category %1 must stand below DC").arg(QLatin1String(top)));

    QSet<QPair<QString, QString>> named;
    QHash<QString, QString> englishName;
    for (const Row &row : names.rows) {
        named.insert({row.values[0], row.values[1]});
        if (row.values[1] == QLatin1String("en"))
            englishName.insert(row.values[0], row.values[2]);
    }
    for (const Row &row : datcats.rows)
        for (const char *lang : {"en", "es"})
            if (!named.contains({row.values[0], QString::fromLatin1(lang)}))
                datcats.fail(
                    row.line,
                    QStringLiteral("%1 has no name in %2").arg(row.values[0], QLatin1String(lang)));

    QHash<QString, QString> categoryOfElement;
    for (const Row &row : elements.rows)
        categoryOfElement.insert(row.values[0], row.values[1]);
    if (categoryOfElement.value(QStringLiteral("1")) != QLatin1String("0"))
        elements.fail(0, QStringLiteral("element 1 must be the root, of category 0"));
    if (englishName.value(categoryOfElement.value(QStringLiteral("3"))) != QLatin1String("body"))
        elements.fail(0, QStringLiteral("element 3 must be the folder body"));

    QSet<QString> withValues;
    for (const Row &row : picklists.rows) {
        if (!picklistCategories.contains(row.values[0]))
            picklists.fail(row.line,
                           QStringLiteral("%1 isn't a picklist category").arg(row.values[0]));
        withValues.insert(row.values[0]);
    }
    for (const QString &id : picklistCategories)
        if (!withValues.contains(id))
            picklists.fail(0, QStringLiteral("the picklist %1 has no values").arg(id));
    CheckNamesForHelp(names);
}

// Every category but the backmatter's has a definition, and every definition a category.
void CheckHelp(const std::vector<Source> &sources, const Source &help)
{
    const Source &datcats = SourceOf(sources, "tb_datcats.tsv");
    QSet<QString> categories;
    for (const Row &row : datcats.rows)
        categories.insert(row.values[0]);
    QSet<QString> defined;
    for (const Row &row : help.rows) {
        const QString &id = row.values[0];
        if (!categories.contains(id) || IsBackmatter(id))
            help.fail(row.line,
                      QStringLiteral("%1 isn't a category with help (not in tb_datcats.tsv, or "
                                     "of the backmatter)")
                          .arg(id));
        if (defined.contains(id))
            help.fail(row.line, QStringLiteral("a second definition of %1").arg(id));
        defined.insert(id);
    }
    for (const Row &row : datcats.rows)
        if (!IsBackmatter(row.values[0]) && !defined.contains(row.values[0]))
            help.fail(0, QStringLiteral("%1 has no definition").arg(row.values[0]));
}

// The help's categories in the order of tb_datcats.tsv, a parent before its children.
std::vector<mkseed::HelpCategory> HelpCategories(const std::vector<Source> &sources,
                                                 const Source &help)
{
    QHash<QString, QString> definitions;
    for (const Row &row : help.rows)
        definitions.insert(row.values[0], row.values[1]);
    QHash<QString, QList<std::pair<QString, QString>>> names;
    for (const Row &row : SourceOf(sources, "tb_datcats_names.tsv").rows) {
        auto &list = names[row.values[0]];
        const std::pair<QString, QString> name{row.values[1], row.values[2]};
        if (row.values[1] == QLatin1String("en"))
            list.prepend(name);
        else
            list.append(name);
    }
    QHash<QString, QStringList> under;
    for (const Row &row : SourceOf(sources, "tb_valid_families.tsv").rows)
        under[row.values[1]] << row.values[0];
    QHash<QString, QStringList> values;
    for (const Row &row : SourceOf(sources, "tb_picklists.tsv").rows)
        values[row.values[0]] << row.values[1];

    std::vector<mkseed::HelpCategory> categories;
    for (const Row &row : SourceOf(sources, "tb_datcats.tsv").rows) {
        const QString &id = row.values[0];
        if (IsBackmatter(id))
            continue;
        categories.push_back({id, row.values[6], definitions.value(id), row.values[1],
                              row.values[3], row.values[4] == QLatin1String("true"),
                              names.value(id), under.value(id), values.value(id)});
    }
    return categories;
}

void RemoveFile(const QString &path)
{
    for (const char *suffix : {"", "-wal", "-shm"})
        QFile::remove(path + QLatin1String(suffix));
}

// Written beside the target and renamed at the end, like the seed file.
void WriteHelpFile(const QString &path, const QString &html)
{
    const QString part = path + QStringLiteral(".part");
    QFile file(part);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(html.toUtf8()) < 0 ||
        !file.flush()) {
        file.remove();
        throw SourceError{path, QStringLiteral("can't write the help file")};
    }
    file.close();
    QFile::remove(path);
    if (!QFile::rename(part, path)) {
        QFile::remove(part);
        throw SourceError{path, QStringLiteral("can't write the help file")};
    }
}

int Run(const QString &folder, const QString &output, const QString &helpOutput)
{
    std::vector<Source> sources;
    for (const SourceTable &layout : SourceTables())
        sources.push_back(ReadSource(folder, layout));
    const Source help = ReadSource(folder, HelpSourceLayout());

    // Built beside the output and renamed at the end, so a failed run leaves the old file.
    const QString part = output + QStringLiteral(".part");
    RemoveFile(part);
    try {
        Database db = DBEngine::Workspaces(0).CreateDatabase(part, dbLangGeneral, dbVersion40);
        for (const auto &build : kBuilders)
            build(db);
        // The store checks keys, sizes and that every name is a concept; the checks of the
        // shape come after, on names known to exist.
        for (const Source &source : sources)
            WriteSource(db, source);
        db.Close();
        CheckOntology(sources);
        CheckTermbase(sources);
        CheckHelp(sources, help);
    } catch (...) {
        RemoveFile(part);
        throw;
    }
    RemoveFile(output);
    if (!QFile::rename(part, output)) {
        RemoveFile(part);
        throw SourceError{output, QStringLiteral("can't write the seed file")};
    }
    if (!helpOutput.isEmpty())
        WriteHelpFile(helpOutput, mkseed::CategoryHelpPage(HelpCategories(sources, help)));
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3 && argc != 4) {
        std::fprintf(stderr, "usage: lexarbor-mkseed SOURCE-FOLDER OUTPUT-FILE [HELP-FILE]\n");
        return 2;
    }
    const QString folder = QString::fromLocal8Bit(argv[1]);
    const QString output = QString::fromLocal8Bit(argv[2]);
    const QString help = argc == 4 ? QString::fromLocal8Bit(argv[3]) : QString();
    try {
        return Run(folder, output, help);
    } catch (const SourceError &e) {
        std::fprintf(stderr, "lexarbor-mkseed: %s: %s\n", qPrintable(e.where),
                     qPrintable(e.message));
    } catch (const StoreError &e) {
        std::fprintf(stderr, "lexarbor-mkseed: %s: store error %d: %s\n", qPrintable(output),
                     e.number(), qPrintable(e.description()));
    }
    return 1;
}
