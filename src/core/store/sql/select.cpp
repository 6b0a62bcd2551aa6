#include "core/store/errors.h"
#include "core/store/sql/jetsql.h"
#include "emit.h"
#include "parser.h"

#include <QSet>

namespace lx::store::sql {

namespace {

using namespace detail;

bool SameName(QStringView a, QStringView b)
{
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

const QString kRowid = QStringLiteral(".rowid");

// Resolves a parsed statement against the catalog and assembles its SQLite text.
class SelectCompiler {
public:
    explicit SelectCompiler(const TableLookup &tables) : m_tables(tables) {}

    CompiledQuery compile(SelectStatement &st);

private:
    struct Table {
        const CatalogTable *table;
        QString alias;
    };

    void collectSources(const FromNode &node, bool nullable);
    QString fromText(FromNode &node);
    void resolve(Expr &e);
    bool resolveColumn(Expr &e);
    int sourceByAlias(QStringView alias) const;
    void addColumn(int source, int column);
    void referencedSources(const Expr &e, std::vector<bool> &used) const;
    void collectJoinKeys(const Expr &on);

    const TableLookup &m_tables;
    CompiledQuery m_q;
    std::vector<Table> m_sources;
    std::vector<const Expr *> m_columnExprs; // per output column: its expression, or null
    QStringList m_unknown;
    QSet<QString> m_unknownFolded;
    std::vector<bool> m_hasAlias;
    std::size_t m_leaf = 0;
};

void SelectCompiler::collectSources(const FromNode &node, bool nullable)
{
    if (node.isJoin) {
        collectSources(*node.left, nullable || node.joinType == JoinType::Right);
        collectSources(*node.right, nullable || node.joinType == JoinType::Left);
        return;
    }
    const CatalogTable *table = m_tables ? m_tables(node.table) : nullptr;
    if (!table)
        throw StoreError::make(err::CannotFindInputTable, node.table);
    const QString alias = node.alias.isEmpty() ? table->name : node.alias;
    if (sourceByAlias(alias) >= 0)
        throw StoreError::make(err::SyntaxErrorInFrom); // the same name twice needs an alias
    m_sources.push_back({table, alias});
    m_q.sources.push_back({table->name, alias, nullable});
}

int SelectCompiler::sourceByAlias(QStringView alias) const
{
    for (std::size_t i = 0; i < m_sources.size(); ++i) {
        if (SameName(m_sources[i].alias, alias))
            return static_cast<int>(i);
    }
    return -1;
}

// Joins nest to the left as written; a join on the right of another keeps its parentheses.
QString SelectCompiler::fromText(FromNode &node)
{
    if (!node.isJoin) {
        const Table &t = m_sources[m_leaf++]; // leaves come in the order they were collected
        QString out = SqlIdentifier(t.table->name);
        if (t.alias != t.table->name)
            out += QStringLiteral(" AS ") + SqlIdentifier(t.alias);
        return out;
    }
    static const QString kJoin[] = {QStringLiteral(" INNER JOIN "), QStringLiteral(" LEFT JOIN "),
                                    QStringLiteral(" RIGHT JOIN ")};
    QString out = fromText(*node.left) + kJoin[static_cast<int>(node.joinType)];
    if (node.right->isJoin)
        out += u'(' + fromText(*node.right) + u')';
    else
        out += fromText(*node.right);
    resolve(*node.on);
    collectJoinKeys(*node.on);
    return out + QStringLiteral(" ON ") + EmitExpr(*node.on);
}

// An unqualified name that more than one FROM table has is taken from the first of them, in
// the order the tables are written.
bool SelectCompiler::resolveColumn(Expr &e)
{
    int first = 0;
    int last = static_cast<int>(m_sources.size()) - 1;
    if (!e.qualifier.isEmpty()) {
        first = last = sourceByAlias(e.qualifier);
        if (first < 0)
            return false;
    }
    for (int s = first; s <= last; ++s) {
        const Table &t = m_sources[static_cast<std::size_t>(s)];
        for (std::size_t c = 0; c < t.table->columns.size(); ++c) {
            const CatalogColumn &col = t.table->columns[c];
            if (!SameName(col.name, e.text))
                continue;
            e.source = s;
            e.column = static_cast<int>(c);
            e.type = col.type;
            e.typeKnown = true;
            e.sql = SqlIdentifier(t.alias) + u'.' + SqlIdentifier(col.name);
            return true;
        }
    }
    return false;
}

// The column equalities among the ANDed terms of an ON condition, each as written.
void SelectCompiler::collectJoinKeys(const Expr &on)
{
    if (on.kind != ExprKind::Binary)
        return;
    if (on.op == BinaryOp::And) {
        collectJoinKeys(*on.args[0]);
        collectJoinKeys(*on.args[1]);
        return;
    }
    const Expr &a = *on.args[0];
    const Expr &b = *on.args[1];
    if (on.op != BinaryOp::Eq || a.kind != ExprKind::Column || b.kind != ExprKind::Column ||
        a.source < 0 || b.source < 0 || a.source == b.source)
        return;
    auto name = [this](const Expr &c) {
        return m_sources[static_cast<std::size_t>(c.source)]
            .table->columns[static_cast<std::size_t>(c.column)]
            .name;
    };
    m_q.joinKeys.push_back({a.source, name(a), b.source, name(b)});
}

void SelectCompiler::resolve(Expr &e)
{
    if (e.kind == ExprKind::Column && !resolveColumn(e)) {
        // An unknown name counts as a parameter; the error reports how many distinct ones there
        // are.
        const QString name = e.writtenName();
        const QString folded = name.toCaseFolded();
        if (!m_unknownFolded.contains(folded)) {
            m_unknownFolded.insert(folded);
            m_unknown.push_back(name);
        }
        e.sql = QStringLiteral("NULL");
    }
    for (ExprPtr &a : e.args)
        resolve(*a);
}

void SelectCompiler::addColumn(int source, int column)
{
    const Table &t = m_sources[static_cast<std::size_t>(source)];
    const CatalogColumn &col = t.table->columns[static_cast<std::size_t>(column)];
    m_q.columns.push_back({col.name, source, col.name, col.type});
    m_q.columnSql.push_back(SqlIdentifier(t.alias) + u'.' + SqlIdentifier(col.name));
    m_columnExprs.push_back(nullptr);
    m_hasAlias.push_back(false);
}

void SelectCompiler::referencedSources(const Expr &e, std::vector<bool> &used) const
{
    if (e.kind == ExprKind::Column && e.source >= 0)
        used[static_cast<std::size_t>(e.source)] = true;
    for (const ExprPtr &a : e.args)
        referencedSources(*a, used);
}

CompiledQuery SelectCompiler::compile(SelectStatement &st)
{
    m_q.distinct = st.distinct;
    m_q.distinctRow = st.distinctRow;
    for (const auto &part : st.from)
        collectSources(*part, false);

    QStringList fromParts;
    for (auto &part : st.from)
        fromParts.push_back(fromText(*part));
    m_q.fromSql = QStringLiteral("FROM ") + fromParts.join(QStringLiteral(", "));

    int exprNumber = 1000;
    for (SelectItem &item : st.items) {
        if (item.kind == SelectItem::Star || item.kind == SelectItem::TableStar) {
            int first = 0;
            int last = static_cast<int>(m_sources.size()) - 1;
            if (item.kind == SelectItem::TableStar) {
                first = last = sourceByAlias(item.qualifier);
                if (first < 0)
                    throw StoreError::make(err::CannotFindInputTable, item.qualifier);
            }
            for (int s = first; s <= last; ++s) {
                const auto count = m_sources[static_cast<std::size_t>(s)].table->columns.size();
                for (std::size_t c = 0; c < count; ++c)
                    addColumn(s, static_cast<int>(c));
            }
            continue;
        }
        Expr &e = *item.expr;
        resolve(e);
        OutputColumn out;
        if (e.kind == ExprKind::Column && e.source >= 0) {
            out.source = e.source;
            out.baseColumn = m_sources[static_cast<std::size_t>(e.source)]
                                 .table->columns[static_cast<std::size_t>(e.column)]
                                 .name;
            out.name = out.baseColumn;
        } else {
            out.name = QStringLiteral("Expr") + QString::number(exprNumber++);
        }
        if (!item.alias.isEmpty())
            out.name = item.alias;
        out.type = ExprType(e);
        m_q.columns.push_back(out);
        m_q.columnSql.push_back(EmitExpr(e));
        m_columnExprs.push_back(&e);
        m_hasAlias.push_back(!item.alias.isEmpty());
    }

    if (st.where)
        resolve(*st.where);

    // ORDER BY may also name a result column by its alias or by its position.
    QStringList orderTerms;
    for (OrderItem &item : st.orderBy) {
        Expr &e = *item.expr;
        QString term;
        bool text = false;
        auto resultColumn = [&](std::size_t i) {
            term = m_q.columnSql[i];
            const FieldType type = m_q.columns[i].type;
            text = m_q.columns[i].source < 0 && (type == dbText || type == dbMemo);
        };
        if (e.kind == ExprKind::Integer) {
            if (e.integer < 1 || e.integer > static_cast<qint64>(m_q.columns.size()))
                throw StoreError::make(err::SyntaxErrorInOrderBy);
            resultColumn(static_cast<std::size_t>(e.integer - 1));
        } else {
            bool found = false;
            if (e.kind == ExprKind::Column && e.qualifier.isEmpty() && !resolveColumn(e)) {
                for (std::size_t i = 0; i < m_q.columns.size() && !found; ++i) {
                    if (m_hasAlias[i] && SameName(m_q.columns[i].name, e.text)) {
                        resultColumn(i);
                        found = true;
                    }
                }
            }
            if (!found) {
                resolve(e);
                term = EmitExpr(e);
                text = e.kind != ExprKind::Column && IsTextExpr(e);
            }
        }
        // A plain text column sorts by its declared collation already.
        if (text)
            term += QStringLiteral(" COLLATE \"LX\"");
        if (item.descending)
            term += QStringLiteral(" DESC");
        orderTerms.push_back(term);
    }

    if (!m_unknown.isEmpty())
        throw StoreError::make(err::TooFewParameters, QString::number(m_unknown.size()));

    // Result names: a field name that comes from more than one table is qualified by its table.
    for (std::size_t i = 0; i < m_q.columns.size(); ++i) {
        const OutputColumn &c = m_q.columns[i];
        if (m_hasAlias[i] || c.source < 0)
            continue;
        for (std::size_t j = 0; j < m_q.columns.size(); ++j) {
            const OutputColumn &d = m_q.columns[j];
            if (j != i && !m_hasAlias[j] && d.source >= 0 && d.source != c.source &&
                SameName(d.baseColumn, c.baseColumn)) {
                m_q.columns[i].name =
                    m_sources[static_cast<std::size_t>(c.source)].alias + u'.' + c.baseColumn;
                break;
            }
        }
    }

    for (const Table &t : m_sources)
        m_q.rowidSql.push_back(SqlIdentifier(t.alias) + kRowid);
    if (st.where)
        m_q.whereSql = EmitExpr(*st.where);
    if (!orderTerms.isEmpty())
        m_q.orderBySql = QStringLiteral("ORDER BY ") + orderTerms.join(QStringLiteral(", "));

    // DISTINCTROW keeps one row per combination of the rows of the tables that give columns;
    // it changes nothing when every table gives some.
    if (m_q.distinctRow) {
        std::vector<bool> used(m_sources.size(), false);
        for (std::size_t i = 0; i < m_q.columns.size(); ++i) {
            if (m_columnExprs[i])
                referencedSources(*m_columnExprs[i], used);
            else
                used[static_cast<std::size_t>(m_q.columns[i].source)] = true;
        }
        QStringList group;
        for (std::size_t s = 0; s < used.size(); ++s) {
            if (used[s])
                group.push_back(m_q.rowidSql[s]);
        }
        if (!group.isEmpty() && group.size() < static_cast<qsizetype>(used.size()))
            m_q.groupBySql = QStringLiteral("GROUP BY ") + group.join(QStringLiteral(", "));
    }

    // DISTINCT rows are values only: the rowid places hold NULL so equal values fold together.
    QStringList result;
    for (const QString &rowid : m_q.rowidSql)
        result.push_back(m_q.distinct ? QStringLiteral("NULL") : rowid);
    for (const QString &col : m_q.columnSql)
        result.push_back(col);
    m_q.sql = QStringLiteral("SELECT ") + (m_q.distinct ? QStringLiteral("DISTINCT ") : QString()) +
              result.join(QStringLiteral(", ")) + u' ' + m_q.fromSql;
    if (!m_q.whereSql.isEmpty())
        m_q.sql += QStringLiteral(" WHERE ") + m_q.whereSql;
    if (!m_q.groupBySql.isEmpty())
        m_q.sql += u' ' + m_q.groupBySql;
    if (!m_q.orderBySql.isEmpty())
        m_q.sql += u' ' + m_q.orderBySql;
    return std::move(m_q);
}

void ResolveCriteria(Expr &e, const std::function<std::optional<ColumnSql>(ColumnRef)> &columnSql)
{
    if (e.kind == ExprKind::Column) {
        std::optional<ColumnSql> c = columnSql ? columnSql({e.qualifier, e.text}) : std::nullopt;
        if (!c)
            throw StoreError::make(err::UnknownFieldInCriteria, e.writtenName());
        e.sql = std::move(c->sql);
        e.typeKnown = c->type.has_value();
        e.type = c->type.value_or(dbText);
    }
    for (ExprPtr &a : e.args)
        ResolveCriteria(*a, columnSql);
}

} // namespace

CompiledQuery CompileSelect(QStringView jetSql, const TableLookup &tables)
{
    SelectStatement st = ParseSelect(jetSql);
    return SelectCompiler(tables).compile(st);
}

QString CompileCriteriaSql(QStringView criteria,
                           const std::function<std::optional<ColumnSql>(ColumnRef)> &columnSql)
{
    ExprPtr e = ParseCriteria(criteria);
    ResolveCriteria(*e, columnSql);
    return EmitExpr(*e);
}

} // namespace lx::store::sql
