#include "emit.h"

#include "core/store/sql/jetsql.h"

namespace lx::store::sql {

QString SqlLiteral(QStringView text)
{
    // SQLite ends a statement at a NUL byte, so text holding one goes in as hex.
    if (text.contains(QChar(u'\0'))) {
        return QStringLiteral("CAST(X'") + QString::fromLatin1(text.toUtf8().toHex()) +
               QStringLiteral("' AS TEXT)");
    }
    QString out;
    out.reserve(text.size() + 2);
    out += u'\'';
    for (QChar c : text) {
        if (c == u'\'')
            out += u'\'';
        out += c;
    }
    out += u'\'';
    return out;
}

QString SqlIdentifier(QStringView name)
{
    // A name cannot hold a NUL in SQLite; it is dropped rather than allowed to end the text.
    QString out;
    out.reserve(name.size() + 2);
    out += u'"';
    for (QChar c : name) {
        if (c == u'"')
            out += u'"';
        if (c != u'\0')
            out += c;
    }
    out += u'"';
    return out;
}

namespace detail {

namespace {

const QString kCollate = QStringLiteral(" COLLATE \"LX\"");

bool IsNumericColumn(const Expr &e)
{
    return e.kind == ExprKind::Column && e.typeKnown && !IsTextExpr(e);
}

// Text comparisons go by the store's collation even when no column gives it (a literal against
// an expression); a number column against a text keeps SQLite's numeric comparison.
bool NeedsCollation(const std::vector<ExprPtr> &operands)
{
    bool text = false;
    for (const ExprPtr &a : operands) {
        if (IsNumericColumn(*a))
            return false;
        text = text || IsTextExpr(*a);
    }
    return text;
}

QString Number(qint64 v)
{
    return v < 0 ? u'(' + QString::number(v) + u')' : QString::number(v);
}

QString OpText(BinaryOp op)
{
    switch (op) {
    case BinaryOp::Eq:
        return QStringLiteral(" = ");
    case BinaryOp::Ne:
        return QStringLiteral(" <> ");
    case BinaryOp::Lt:
        return QStringLiteral(" < ");
    case BinaryOp::Gt:
        return QStringLiteral(" > ");
    case BinaryOp::Le:
        return QStringLiteral(" <= ");
    case BinaryOp::Ge:
        return QStringLiteral(" >= ");
    case BinaryOp::And:
        return QStringLiteral(" AND ");
    case BinaryOp::Or:
        return QStringLiteral(" OR ");
    case BinaryOp::Add:
        return QStringLiteral(" + ");
    case BinaryOp::Sub:
        return QStringLiteral(" - ");
    case BinaryOp::Mul:
        return QStringLiteral(" * ");
    case BinaryOp::Div:
        return QStringLiteral(" / ");
    case BinaryOp::Concat:
        return QStringLiteral(" || ");
    }
    return {};
}

QString Tested(const Expr &e, bool collate)
{
    return collate ? EmitExpr(e) + kCollate : EmitExpr(e);
}

} // namespace

bool IsTextExpr(const Expr &e)
{
    switch (e.kind) {
    case ExprKind::Text:
    case ExprKind::Date:
        return true;
    case ExprKind::Column:
        return e.typeKnown && (e.type == dbText || e.type == dbMemo || e.type == dbDate);
    case ExprKind::Binary:
        return e.op == BinaryOp::Concat;
    default:
        return false;
    }
}

FieldType ExprType(const Expr &e)
{
    switch (e.kind) {
    case ExprKind::Column:
        return e.type;
    case ExprKind::Integer:
    case ExprKind::Real:
    case ExprKind::Negate:
        return dbLong;
    case ExprKind::Date:
        return dbDate;
    case ExprKind::Not:
    case ExprKind::Like:
    case ExprKind::IsNull:
    case ExprKind::In:
    case ExprKind::Between:
        return dbBoolean;
    case ExprKind::Binary:
        if (e.op == BinaryOp::Concat)
            return dbText;
        return IsComparison(e.op) || e.op == BinaryOp::And || e.op == BinaryOp::Or ? dbBoolean
                                                                                   : dbLong;
    default:
        return dbText;
    }
}

QString EmitExpr(const Expr &e)
{
    switch (e.kind) {
    case ExprKind::Null:
        return QStringLiteral("NULL");
    case ExprKind::Integer:
        return Number(e.integer);
    case ExprKind::Real:
        return QString::number(e.real, 'g', 17);
    case ExprKind::Text:
    case ExprKind::Date:
        return SqlLiteral(e.text);
    case ExprKind::Column:
        return e.sql;
    case ExprKind::Not:
        return QStringLiteral("(NOT ") + EmitExpr(*e.args[0]) + u')';
    case ExprKind::Negate:
        return QStringLiteral("(- ") + EmitExpr(*e.args[0]) + u')';
    case ExprKind::Binary: {
        const Expr &a = *e.args[0];
        const Expr &b = *e.args[1];
        if (IsComparison(e.op))
            return u'(' + Tested(a, NeedsCollation(e.args)) + OpText(e.op) + EmitExpr(b) + u')';
        if (e.op == BinaryOp::Concat) {
            // The dialect's & reads Null as an empty text.
            return QStringLiteral("(COALESCE(") + EmitExpr(a) +
                   QStringLiteral(", '') || COALESCE(") + EmitExpr(b) + QStringLiteral(", ''))");
        }
        if (e.op == BinaryOp::Div) // the dialect's / never truncates
            return QStringLiteral("(CAST(") + EmitExpr(a) + QStringLiteral(" AS REAL) / ") +
                   EmitExpr(b) + u')';
        return u'(' + EmitExpr(a) + OpText(e.op) + EmitExpr(b) + u')';
    }
    case ExprKind::Like: {
        const QString call = QStringLiteral("lx_like(") + EmitExpr(*e.args[0]) +
                             QStringLiteral(", ") + EmitExpr(*e.args[1]) + u')';
        return e.negated ? QStringLiteral("(NOT ") + call + u')' : call;
    }
    case ExprKind::IsNull:
        return u'(' + EmitExpr(*e.args[0]) +
               (e.negated ? QStringLiteral(" IS NOT NULL)") : QStringLiteral(" IS NULL)"));
    case ExprKind::In: {
        QString out = u'(' + Tested(*e.args[0], NeedsCollation(e.args)) +
                      (e.negated ? QStringLiteral(" NOT IN (") : QStringLiteral(" IN ("));
        for (std::size_t i = 1; i < e.args.size(); ++i) {
            if (i > 1)
                out += QStringLiteral(", ");
            out += EmitExpr(*e.args[i]);
        }
        return out + QStringLiteral("))");
    }
    case ExprKind::Between:
        return u'(' + Tested(*e.args[0], NeedsCollation(e.args)) +
               (e.negated ? QStringLiteral(" NOT BETWEEN ") : QStringLiteral(" BETWEEN ")) +
               EmitExpr(*e.args[1]) + QStringLiteral(" AND ") + EmitExpr(*e.args[2]) + u')';
    }
    return QStringLiteral("NULL");
}

} // namespace detail

} // namespace lx::store::sql
