#include "emit.h"

#include "core/store/sql/jetsql.h"

#include <algorithm>
#include <cmath>

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

// What a value is when the statement runs, as far as the text of the expression tells.
enum class Kind { Text, Number, Null, Unknown };

Kind KindOf(const Expr &e)
{
    switch (e.kind) {
    case ExprKind::Null:
        return Kind::Null;
    case ExprKind::Column:
        if (!e.typeKnown)
            return Kind::Unknown;
        return IsTextExpr(e) ? Kind::Text : Kind::Number;
    default:
        return IsTextExpr(e) ? Kind::Text : Kind::Number;
    }
}

// A truth value taken as a value (compared, computed, joined) is True = -1 as in rows held in
// memory, where SQLite's own comparisons give 1.
QString Value(const Expr &e)
{
    return IsTruth(e) ? QStringLiteral("(- ") + EmitExpr(e) + u')' : EmitExpr(e);
}

QString Number(qint64 v)
{
    return v < 0 ? u'(' + QString::number(v) + u')' : QString::number(v);
}

QString Real(double v)
{
    return v < 0 ? u'(' + QString::number(v, 'g', 17) + u')' : QString::number(v, 'g', 17);
}

// A text literal that reads as a number, as that number.
std::optional<QString> NumberOfLiteral(const Expr &e)
{
    if (e.kind != ExprKind::Text)
        return std::nullopt;
    const std::optional<double> n = TextNumber(e.text.toStdString());
    if (!n)
        return std::nullopt;
    if (*n == std::trunc(*n) && std::abs(*n) < 9.0e15)
        return Number(static_cast<qint64>(*n));
    return Real(*n);
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

// How a comparison of two values is written. Text against text goes by the store's collation,
// numbers by value. A number against a text compares with the text's value when the text reads
// as a number, and otherwise puts every number before every text: "4.0" equals 4 and "x" never
// does, in the statement as in rows held in memory (CompareValues). SQLite itself would turn
// the number into text for a text column, so a mixed pair goes through lx_compare, unless the
// text is a literal that can be turned into a number here.
enum class Way { Native, Collated, Function };

Way WayOf(const Expr &a, const Expr &b)
{
    const Kind ka = KindOf(a);
    const Kind kb = KindOf(b);
    if (ka == Kind::Null || kb == Kind::Null)
        return Way::Native;
    // A column given without its type is taken as the other side is.
    if (ka == Kind::Unknown || kb == Kind::Unknown)
        return ka == Kind::Text || kb == Kind::Text ? Way::Collated : Way::Native;
    if (ka == Kind::Text && kb == Kind::Text)
        return Way::Collated;
    if (ka == Kind::Number && kb == Kind::Number)
        return Way::Native;
    if ((ka == Kind::Number && NumberOfLiteral(b)) || (kb == Kind::Number && NumberOfLiteral(a)))
        return Way::Native;
    return Way::Function;
}

// An operand of a comparison: a text literal facing a number becomes that number.
QString Operand(const Expr &e, const Expr &other)
{
    if (KindOf(other) == Kind::Number) {
        if (const std::optional<QString> n = NumberOfLiteral(e))
            return *n;
    }
    return Value(e);
}

QString Comparison(const Expr &a, BinaryOp op, const Expr &b)
{
    switch (WayOf(a, b)) {
    case Way::Collated:
        return u'(' + Value(a) + kCollate + OpText(op) + Value(b) + u')';
    case Way::Native:
        return u'(' + Operand(a, b) + OpText(op) + Operand(b, a) + u')';
    case Way::Function:
        break;
    }
    return QStringLiteral("(lx_compare(") + Value(a) + QStringLiteral(", ") + Value(b) + u')' +
           OpText(op) + QStringLiteral("0)");
}

// One way for all the pairs of an IN or BETWEEN, or nothing when they need different ones.
std::optional<Way> CommonWay(const std::vector<ExprPtr> &args)
{
    std::optional<Way> common;
    for (std::size_t i = 1; i < args.size(); ++i) {
        const Way w = WayOf(*args[0], *args[i]);
        if (w == Way::Function || (common && *common != w && KindOf(*args[i]) != Kind::Null))
            return std::nullopt;
        if (!common || KindOf(*args[i]) != Kind::Null)
            common = w;
    }
    return common;
}

QString Negated(bool negated, const QString &condition)
{
    return negated ? QStringLiteral("(NOT ") + condition + u')' : condition;
}

// lx_in(x, a, b, ...) and lx_between(x, lo, hi) compare as lx_compare does, with the Nulls of
// IN and BETWEEN: for the lists whose items need comparing one by one.
QString Call(const char *function, const std::vector<ExprPtr> &args)
{
    QString out = QLatin1String(function) + u'(';
    for (std::size_t i = 0; i < args.size(); ++i) {
        if (i > 0)
            out += QStringLiteral(", ");
        out += Value(*args[i]);
    }
    return out + u')';
}

// SQLite takes at most 127 arguments to a function: a long list goes in parts, ORed.
QString InCall(const std::vector<ExprPtr> &args)
{
    constexpr std::size_t kPart = 100;
    if (args.size() <= kPart + 1)
        return Call("lx_in", args);
    const QString x = Value(*args[0]);
    QString out = QStringLiteral("(");
    for (std::size_t from = 1; from < args.size(); from += kPart) {
        if (from > 1)
            out += QStringLiteral(" OR ");
        out += QStringLiteral("lx_in(") + x;
        for (std::size_t i = from; i < std::min(args.size(), from + kPart); ++i)
            out += QStringLiteral(", ") + Value(*args[i]);
        out += u')';
    }
    return out + u')';
}

QString EmitIn(const Expr &e)
{
    const std::optional<Way> way = CommonWay(e.args);
    if (!way)
        return Negated(e.negated, InCall(e.args));
    QString out = u'(' + Value(*e.args[0]) + (*way == Way::Collated ? kCollate : QString()) +
                  (e.negated ? QStringLiteral(" NOT IN (") : QStringLiteral(" IN ("));
    for (std::size_t i = 1; i < e.args.size(); ++i) {
        if (i > 1)
            out += QStringLiteral(", ");
        out += Operand(*e.args[i], *e.args[0]);
    }
    return out + QStringLiteral("))");
}

QString EmitBetween(const Expr &e)
{
    const Expr &x = *e.args[0];
    const std::optional<Way> way = CommonWay(e.args);
    if (!way)
        return Negated(e.negated, Call("lx_between", e.args));
    return u'(' + Value(x) + (*way == Way::Collated ? kCollate : QString()) +
           (e.negated ? QStringLiteral(" NOT BETWEEN ") : QStringLiteral(" BETWEEN ")) +
           Operand(*e.args[1], x) + QStringLiteral(" AND ") + Operand(*e.args[2], x) + u')';
}

// A run of + and -, of *, or of &, written flat: "(a + b - c)" is read by SQLite from the left
// as it was written, without nesting, and is emitted here without recursion along the run.
QString EmitChain(const Expr &e)
{
    std::vector<const Expr *> spine{&e};
    while (spine.back()->args[0]->kind == ExprKind::Binary &&
           ContinuesChain(e.op, spine.back()->args[0]->op))
        spine.push_back(spine.back()->args[0].get());
    const bool concat = e.op == BinaryOp::Concat;
    // The dialect's & reads Null as an empty text; literals and joined texts are never Null.
    auto operand = [concat](const Expr &x) {
        const bool neverNull = x.kind == ExprKind::Text || x.kind == ExprKind::Date ||
                               x.kind == ExprKind::Integer || x.kind == ExprKind::Real ||
                               (x.kind == ExprKind::Binary && x.op == BinaryOp::Concat);
        return concat && !neverNull
                   ? QStringLiteral("COALESCE(") + Value(x) + QStringLiteral(", '')")
                   : Value(x);
    };
    QString out = u'(' + operand(*spine.back()->args[0]);
    for (auto it = spine.rbegin(); it != spine.rend(); ++it)
        out += OpText((*it)->op) + operand(*(*it)->args[1]);
    return out + u')';
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
        return QStringLiteral("(- ") + Value(*e.args[0]) + u')';
    case ExprKind::Binary: {
        if (IsComparison(e.op))
            return Comparison(*e.args[0], e.op, *e.args[1]);
        if (IsChainOp(e.op))
            return EmitChain(e);
        if (e.op == BinaryOp::Div) // the dialect's / never truncates
            return QStringLiteral("(CAST(") + Value(*e.args[0]) + QStringLiteral(" AS REAL) / ") +
                   Value(*e.args[1]) + u')';
        return u'(' + EmitExpr(*e.args[0]) + OpText(e.op) + EmitExpr(*e.args[1]) + u')';
    }
    case ExprKind::Like:
        return Negated(e.negated, QStringLiteral("lx_like(") + Value(*e.args[0]) +
                                      QStringLiteral(", ") + Value(*e.args[1]) + u')');
    case ExprKind::IsNull:
        return u'(' + EmitExpr(*e.args[0]) +
               (e.negated ? QStringLiteral(" IS NOT NULL)") : QStringLiteral(" IS NULL)"));
    case ExprKind::In:
        return EmitIn(e);
    case ExprKind::Between:
        return EmitBetween(e);
    }
    return QStringLiteral("NULL");
}

} // namespace detail

} // namespace lx::store::sql
