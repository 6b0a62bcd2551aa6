#include "core/store/errors.h"
#include "core/store/sql/jetsql.h"
#include "core/text/collation.h"
#include "core/text/like.h"
#include "emit.h"
#include "parser.h"

#include <charconv>
#include <cmath>
#include <forward_list>
#include <memory>
#include <string>

// FindFirst criteria over rows held in memory: the parsed expression becomes a tree of nodes
// built once; a row is then tested without allocating, unless the criteria concatenate text.
namespace lx::store::sql {

namespace detail {

std::optional<double> TextNumber(std::string_view s)
{
    while (!s.empty() && s.front() == ' ')
        s.remove_prefix(1);
    while (!s.empty() && s.back() == ' ')
        s.remove_suffix(1);
    if (s.empty())
        return std::nullopt;
    double v = 0;
    const auto r = std::from_chars(s.data(), s.data() + s.size(), v);
    if (r.ec != std::errc() || r.ptr != s.data() + s.size() || !std::isfinite(v))
        return std::nullopt;
    return v;
}

} // namespace detail

namespace {

using namespace detail;

enum class Tri : std::int8_t { False, True, Unknown };

Tri Not(Tri t)
{
    return t == Tri::Unknown ? t : (t == Tri::True ? Tri::False : Tri::True);
}

Tri FromBool(bool b)
{
    return b ? Tri::True : Tri::False;
}

// Holds the text that concatenation produces while one row is being tested.
struct Scratch {
    std::forward_list<std::string> strings;
    std::string_view keep(std::string s)
    {
        strings.push_front(std::move(s));
        return strings.front();
    }
};

double AsDouble(const Cell &c)
{
    return c.kind == Cell::Integer ? static_cast<double>(c.integer) : c.real;
}

bool IsNumber(const Cell &c)
{
    return c.kind == Cell::Integer || c.kind == Cell::Real;
}

// The text of a value, written into buf for a number (buf must hold 32 chars).
std::string_view AsText(const Cell &c, char *buf)
{
    if (c.kind == Cell::Text)
        return c.text;
    std::to_chars_result r{};
    if (c.kind == Cell::Integer)
        r = std::to_chars(buf, buf + 32, c.integer);
    else if (c.kind == Cell::Real)
        r = std::to_chars(buf, buf + 32, c.real);
    else
        return {};
    return {buf, static_cast<std::size_t>(r.ptr - buf)};
}

template <class T> int Sign(T a, T b)
{
    return a < b ? -1 : (a > b ? 1 : 0);
}

// Orders a against b: numbers by value, text by the store's collation, a number against a text
// by the text's value when it is a number. Nothing when they cannot be ordered (then they are
// unequal, and a number sorts before a text). textNumber, when given, is the value of b's text.
std::optional<int> Order(const Cell &a, const Cell &b, const std::optional<double> *textNumber)
{
    if (a.kind == Cell::Text && b.kind == Cell::Text)
        return text::CompareText(a.text, b.text);
    if (a.kind == Cell::Integer && b.kind == Cell::Integer)
        return Sign(a.integer, b.integer);
    if (IsNumber(a) && IsNumber(b))
        return Sign(AsDouble(a), AsDouble(b));
    if (IsNumber(a)) {
        const std::optional<double> n = textNumber ? *textNumber : TextNumber(b.text);
        if (n)
            return Sign(AsDouble(a), *n);
        return std::nullopt;
    }
    const std::optional<double> n = TextNumber(a.text);
    if (n)
        return Sign(*n, AsDouble(b));
    return std::nullopt;
}

// Where a stands against b when Order cannot say: every number before every text.
int Unordered(const Cell &a)
{
    return IsNumber(a) ? -1 : 1;
}

Tri Compare(const Cell &a, const Cell &b, BinaryOp op,
            const std::optional<double> *textNumber = nullptr)
{
    if (a.kind == Cell::Null || b.kind == Cell::Null)
        return Tri::Unknown;
    const std::optional<int> o = Order(a, b, textNumber);
    if (!o) {
        switch (op) {
        case BinaryOp::Eq:
            return Tri::False;
        case BinaryOp::Ne:
            return Tri::True;
        default: {
            const int c = Unordered(a);
            return FromBool(op == BinaryOp::Lt || op == BinaryOp::Le ? c < 0 : c > 0);
        }
        }
    }
    const int c = *o;
    switch (op) {
    case BinaryOp::Eq:
        return FromBool(c == 0);
    case BinaryOp::Ne:
        return FromBool(c != 0);
    case BinaryOp::Lt:
        return FromBool(c < 0);
    case BinaryOp::Gt:
        return FromBool(c > 0);
    case BinaryOp::Le:
        return FromBool(c <= 0);
    case BinaryOp::Ge:
        return FromBool(c >= 0);
    default:
        return Tri::Unknown;
    }
}

Cell FromTri(Tri t)
{
    return t == Tri::Unknown ? Cell::null() : Cell::fromInteger(t == Tri::True ? kTrue : 0);
}

class Node {
public:
    virtual ~Node() = default;
    virtual Cell value(Scratch &s, const Cell *row) const { return FromTri(test(s, row)); }
    virtual Tri test(Scratch &s, const Cell *row) const
    {
        const Cell c = value(s, row);
        switch (c.kind) {
        case Cell::Null:
            return Tri::Unknown;
        case Cell::Integer:
            return FromBool(c.integer != 0);
        case Cell::Real:
            return FromBool(c.real != 0);
        case Cell::Text: {
            const std::optional<double> n = TextNumber(c.text);
            return FromBool(n && *n != 0);
        }
        }
        return Tri::Unknown;
    }
};
using NodePtr = std::unique_ptr<Node>;

// A literal; its text lives here so that the cell can view it.
class Const : public Node {
public:
    explicit Const(const Expr &e)
    {
        switch (e.kind) {
        case ExprKind::Integer:
            m_cell = Cell::fromInteger(e.integer);
            break;
        case ExprKind::Real:
            m_cell = Cell::fromReal(e.real);
            break;
        case ExprKind::Text:
        case ExprKind::Date:
            m_text = e.text.toStdString();
            m_cell = Cell::fromText(m_text);
            m_number = TextNumber(m_text);
            break;
        default:
            break;
        }
    }
    Cell value(Scratch &, const Cell *) const override { return m_cell; }
    const Cell &cell() const { return m_cell; }
    const std::optional<double> &number() const { return m_number; }

private:
    std::string m_text;
    Cell m_cell;
    std::optional<double> m_number;
};

class Column : public Node {
public:
    explicit Column(int index) : m_index(index) {}
    Cell value(Scratch &, const Cell *row) const override { return row[m_index]; }
    int index() const { return m_index; }

private:
    int m_index;
};

class NotNode : public Node {
public:
    explicit NotNode(NodePtr a) : m_a(std::move(a)) {}
    Tri test(Scratch &s, const Cell *row) const override { return Not(m_a->test(s, row)); }

private:
    NodePtr m_a;
};

class AndOr : public Node {
public:
    AndOr(bool isAnd, NodePtr a, NodePtr b) : m_and(isAnd), m_a(std::move(a)), m_b(std::move(b)) {}
    Tri test(Scratch &s, const Cell *row) const override
    {
        // The deciding value ends the test early; Unknown wins over the other one.
        const Tri decide = m_and ? Tri::False : Tri::True;
        const Tri a = m_a->test(s, row);
        if (a == decide)
            return a;
        const Tri b = m_b->test(s, row);
        if (b == decide)
            return b;
        return a == Tri::Unknown || b == Tri::Unknown ? Tri::Unknown : Not(decide);
    }

private:
    bool m_and;
    NodePtr m_a;
    NodePtr m_b;
};

class CompareNode : public Node {
public:
    CompareNode(BinaryOp op, NodePtr a, NodePtr b) : m_op(op), m_a(std::move(a)), m_b(std::move(b))
    {}
    Tri test(Scratch &s, const Cell *row) const override
    {
        return Compare(m_a->value(s, row), m_b->value(s, row), m_op);
    }

private:
    BinaryOp m_op;
    NodePtr m_a;
    NodePtr m_b;
};

// column op literal, the usual criteria: no virtual call for either side.
class ColumnCompareConst : public Node {
public:
    ColumnCompareConst(BinaryOp op, int index, std::unique_ptr<Const> literal)
        : m_op(op), m_index(index), m_literal(std::move(literal))
    {}
    Tri test(Scratch &, const Cell *row) const override
    {
        const Cell &c = row[m_index];
        const Cell &lit = m_literal->cell();
        if (c.kind == Cell::Text && lit.kind == Cell::Text && m_op == BinaryOp::Eq)
            return FromBool(text::EqualText(c.text, lit.text));
        return Compare(c, lit, m_op, lit.kind == Cell::Text ? &m_literal->number() : nullptr);
    }

private:
    BinaryOp m_op;
    int m_index;
    std::unique_ptr<Const> m_literal;
};

class LikeNode : public Node {
public:
    LikeNode(NodePtr a, NodePtr pattern) : m_a(std::move(a)), m_pattern(std::move(pattern)) {}
    Tri test(Scratch &s, const Cell *row) const override
    {
        const Cell a = m_a->value(s, row);
        const Cell p = m_pattern->value(s, row);
        if (a.kind == Cell::Null || p.kind == Cell::Null)
            return Tri::Unknown;
        char abuf[32];
        char pbuf[32];
        return FromBool(text::LikeNoCase(AsText(a, abuf), AsText(p, pbuf)));
    }

private:
    NodePtr m_a;
    NodePtr m_pattern;
};

class ColumnLikeConst : public Node {
public:
    ColumnLikeConst(int index, std::string pattern) : m_index(index), m_pattern(std::move(pattern))
    {}
    Tri test(Scratch &, const Cell *row) const override
    {
        const Cell &c = row[m_index];
        if (c.kind == Cell::Text)
            return FromBool(text::LikeNoCase(c.text, m_pattern));
        if (c.kind == Cell::Null)
            return Tri::Unknown;
        char buf[32];
        return FromBool(text::LikeNoCase(AsText(c, buf), m_pattern));
    }

private:
    int m_index;
    std::string m_pattern;
};

class IsNullNode : public Node {
public:
    explicit IsNullNode(NodePtr a) : m_a(std::move(a)) {}
    Tri test(Scratch &s, const Cell *row) const override
    {
        return FromBool(m_a->value(s, row).kind == Cell::Null);
    }

private:
    NodePtr m_a;
};

class InNode : public Node {
public:
    InNode(NodePtr a, std::vector<NodePtr> list) : m_a(std::move(a)), m_list(std::move(list)) {}
    Tri test(Scratch &s, const Cell *row) const override
    {
        const Cell a = m_a->value(s, row);
        Tri result = Tri::False;
        for (const NodePtr &item : m_list) {
            const Tri t = Compare(a, item->value(s, row), BinaryOp::Eq);
            if (t == Tri::True)
                return t;
            if (t == Tri::Unknown)
                result = t;
        }
        return result;
    }

private:
    NodePtr m_a;
    std::vector<NodePtr> m_list;
};

class BetweenNode : public Node {
public:
    BetweenNode(NodePtr a, NodePtr lo, NodePtr hi)
        : m_a(std::move(a)), m_lo(std::move(lo)), m_hi(std::move(hi))
    {}
    Tri test(Scratch &s, const Cell *row) const override
    {
        const Cell a = m_a->value(s, row);
        const Tri lo = Compare(a, m_lo->value(s, row), BinaryOp::Ge);
        if (lo == Tri::False)
            return lo;
        const Tri hi = Compare(a, m_hi->value(s, row), BinaryOp::Le);
        if (hi == Tri::False)
            return hi;
        return lo == Tri::Unknown || hi == Tri::Unknown ? Tri::Unknown : Tri::True;
    }

private:
    NodePtr m_a;
    NodePtr m_lo;
    NodePtr m_hi;
};

// The dialect's &: Null reads as empty text, unless both sides are Null.
class ConcatNode : public Node {
public:
    ConcatNode(NodePtr a, NodePtr b) : m_a(std::move(a)), m_b(std::move(b)) {}
    Cell value(Scratch &s, const Cell *row) const override
    {
        const Cell a = m_a->value(s, row);
        const Cell b = m_b->value(s, row);
        if (a.kind == Cell::Null && b.kind == Cell::Null)
            return Cell::null();
        char abuf[32];
        char bbuf[32];
        std::string joined(AsText(a, abuf));
        joined += AsText(b, bbuf);
        return Cell::fromText(s.keep(std::move(joined)));
    }
    Tri test(Scratch &s, const Cell *row) const override { return Node::test(s, row); }

private:
    NodePtr m_a;
    NodePtr m_b;
};

// Arithmetic: whole numbers stay whole unless they overflow; / always divides exactly. Text
// that is not a number, or a division by zero, gives Null.
class ArithNode : public Node {
public:
    ArithNode(BinaryOp op, NodePtr a, NodePtr b) : m_op(op), m_a(std::move(a)), m_b(std::move(b)) {}
    Cell value(Scratch &s, const Cell *row) const override
    {
        const std::optional<Cell> a = Numeric(m_a->value(s, row));
        const std::optional<Cell> b = Numeric(m_b->value(s, row));
        if (!a || !b)
            return Cell::null();
        if (a->kind == Cell::Integer && b->kind == Cell::Integer && m_op != BinaryOp::Div) {
            std::int64_t r = 0;
            bool overflow = false;
            if (m_op == BinaryOp::Add)
                overflow = __builtin_add_overflow(a->integer, b->integer, &r);
            else if (m_op == BinaryOp::Sub)
                overflow = __builtin_sub_overflow(a->integer, b->integer, &r);
            else
                overflow = __builtin_mul_overflow(a->integer, b->integer, &r);
            if (!overflow)
                return Cell::fromInteger(r);
        }
        const double x = AsDouble(*a);
        const double y = AsDouble(*b);
        switch (m_op) {
        case BinaryOp::Add:
            return Cell::fromReal(x + y);
        case BinaryOp::Sub:
            return Cell::fromReal(x - y);
        case BinaryOp::Mul:
            return Cell::fromReal(x * y);
        default:
            return y == 0 ? Cell::null() : Cell::fromReal(x / y);
        }
    }
    Tri test(Scratch &s, const Cell *row) const override { return Node::test(s, row); }

    static std::optional<Cell> Numeric(const Cell &c)
    {
        if (IsNumber(c))
            return c;
        if (c.kind == Cell::Text) {
            if (const std::optional<double> n = TextNumber(c.text))
                return Cell::fromReal(*n);
        }
        return std::nullopt;
    }

private:
    BinaryOp m_op;
    NodePtr m_a;
    NodePtr m_b;
};

class NegateNode : public Node {
public:
    explicit NegateNode(NodePtr a) : m_a(std::move(a)) {}
    Cell value(Scratch &s, const Cell *row) const override
    {
        const std::optional<Cell> a = ArithNode::Numeric(m_a->value(s, row));
        if (!a)
            return Cell::null();
        if (a->kind == Cell::Integer && a->integer != INT64_MIN)
            return Cell::fromInteger(-a->integer);
        return Cell::fromReal(-AsDouble(*a));
    }
    Tri test(Scratch &s, const Cell *row) const override { return Node::test(s, row); }

private:
    NodePtr m_a;
};

class Builder {
public:
    explicit Builder(const std::function<std::optional<ColumnSlot>(ColumnRef)> &column)
        : m_column(column)
    {}

    NodePtr build(const Expr &e)
    {
        switch (e.kind) {
        case ExprKind::Null:
        case ExprKind::Integer:
        case ExprKind::Real:
        case ExprKind::Text:
        case ExprKind::Date:
            return std::make_unique<Const>(e);
        case ExprKind::Column:
            return std::make_unique<Column>(slot(e));
        case ExprKind::Not:
            return std::make_unique<NotNode>(build(*e.args[0]));
        case ExprKind::Negate:
            return std::make_unique<NegateNode>(build(*e.args[0]));
        case ExprKind::Binary:
            return binary(e);
        case ExprKind::Like: {
            NodePtr node;
            const Expr &a = *e.args[0];
            const Expr &p = *e.args[1];
            if (a.kind == ExprKind::Column && p.kind == ExprKind::Text)
                node = std::make_unique<ColumnLikeConst>(slot(a), p.text.toStdString());
            else
                node = std::make_unique<LikeNode>(build(a), build(p));
            return negated(e, std::move(node));
        }
        case ExprKind::IsNull:
            return negated(e, std::make_unique<IsNullNode>(build(*e.args[0])));
        case ExprKind::In: {
            std::vector<NodePtr> list;
            for (std::size_t i = 1; i < e.args.size(); ++i)
                list.push_back(build(*e.args[i]));
            return negated(e, std::make_unique<InNode>(build(*e.args[0]), std::move(list)));
        }
        case ExprKind::Between:
            return negated(e, std::make_unique<BetweenNode>(build(*e.args[0]), build(*e.args[1]),
                                                            build(*e.args[2])));
        }
        return std::make_unique<Const>(e);
    }

private:
    static NodePtr negated(const Expr &e, NodePtr node)
    {
        return e.negated ? std::make_unique<NotNode>(std::move(node)) : std::move(node);
    }

    static bool IsLiteral(const Expr &e)
    {
        return e.kind == ExprKind::Integer || e.kind == ExprKind::Real ||
               e.kind == ExprKind::Text || e.kind == ExprKind::Date;
    }

    static BinaryOp Mirror(BinaryOp op)
    {
        switch (op) {
        case BinaryOp::Lt:
            return BinaryOp::Gt;
        case BinaryOp::Gt:
            return BinaryOp::Lt;
        case BinaryOp::Le:
            return BinaryOp::Ge;
        case BinaryOp::Ge:
            return BinaryOp::Le;
        default:
            return op;
        }
    }

    NodePtr binary(const Expr &e)
    {
        const Expr &a = *e.args[0];
        const Expr &b = *e.args[1];
        if (IsComparison(e.op)) {
            if (a.kind == ExprKind::Column && IsLiteral(b))
                return std::make_unique<ColumnCompareConst>(e.op, slot(a),
                                                            std::make_unique<Const>(b));
            if (IsLiteral(a) && b.kind == ExprKind::Column)
                return std::make_unique<ColumnCompareConst>(Mirror(e.op), slot(b),
                                                            std::make_unique<Const>(a));
            return std::make_unique<CompareNode>(e.op, build(a), build(b));
        }
        switch (e.op) {
        case BinaryOp::And:
        case BinaryOp::Or:
            return std::make_unique<AndOr>(e.op == BinaryOp::And, build(a), build(b));
        case BinaryOp::Concat:
            return std::make_unique<ConcatNode>(build(a), build(b));
        default:
            return std::make_unique<ArithNode>(e.op, build(a), build(b));
        }
    }

    int slot(const Expr &e)
    {
        std::optional<ColumnSlot> s = m_column ? m_column({e.qualifier, e.text}) : std::nullopt;
        if (!s)
            throw StoreError::make(err::UnknownFieldInCriteria, e.writtenName());
        return s->index;
    }

    const std::function<std::optional<ColumnSlot>(ColumnRef)> &m_column;
};

} // namespace

std::optional<int> CompareValues(const Cell &a, const Cell &b)
{
    if (a.kind == Cell::Null || b.kind == Cell::Null)
        return std::nullopt;
    return Order(a, b, nullptr).value_or(Unordered(a));
}

Predicate CompileCriteria(QStringView criteria,
                          const std::function<std::optional<ColumnSlot>(ColumnRef)> &column)
{
    const ExprPtr e = ParseCriteria(criteria);
    std::shared_ptr<const Node> root = Builder(column).build(*e);
    return [root](const Cell *row) {
        Scratch scratch;
        return root->test(scratch, row) == Tri::True;
    };
}

} // namespace lx::store::sql
