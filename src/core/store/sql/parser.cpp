#include "parser.h"

#include "core/store/errors.h"
#include "tokenizer.h"

#include <QDate>
#include <QTime>

namespace lx::store::sql::detail {

namespace {

// How deeply an expression may nest, counted on the SQLite text it becomes, where every
// operation stands in parentheses: one level for each parenthesis, NOT, unary minus or
// operation around an operand that is itself an operation; two around the operands of a
// comparison, LIKE, IN or BETWEEN (they may become function calls, which nest more); one more
// for a truth value taken as a value. The left operand that continues a run of the same
// operators ("a + b - c", a list of ORs) adds nothing. SQLite's parser stack, of about 100
// entries, takes at least 30 such levels in every form, with a statement wrapped around criteria
// and a query's WHERE; past this, a syntax error.
constexpr int kMaxNesting = 24;
// How tall the tree of one expression may be: runs of operators count one each. Keeps every
// recursive pass over the tree shallow and stays under SQLite's own limit of 1000 on the height
// of its expressions, which our text at most doubles.
constexpr int kMaxHeight = 300;

ExprPtr MakeExpr(ExprKind kind)
{
    auto e = std::make_unique<Expr>();
    e->kind = kind;
    return e;
}

ExprPtr MakeBinary(BinaryOp op, ExprPtr a, ExprPtr b)
{
    auto e = MakeExpr(ExprKind::Binary);
    e->op = op;
    e->args.push_back(std::move(a));
    e->args.push_back(std::move(b));
    return e;
}

bool TakesTwoLevels(const Expr &e)
{
    switch (e.kind) {
    case ExprKind::Binary:
        return IsComparison(e.op);
    case ExprKind::Like:
    case ExprKind::In:
    case ExprKind::Between:
        return true;
    default:
        return false;
    }
}

// The nesting and height of e from its operands' (see kMaxNesting).
void Measure(Expr &e)
{
    int nesting = 0;
    int height = 0;
    const int levels = TakesTwoLevels(e) ? 2 : 1;
    for (std::size_t i = 0; i < e.args.size(); ++i) {
        const Expr &a = *e.args[i];
        height = std::max(height, a.height);
        const bool continuesRun = i == 0 && e.kind == ExprKind::Binary &&
                                  a.kind == ExprKind::Binary && IsChainOp(e.op) &&
                                  ContinuesChain(e.op, a.op);
        // A truth value taken as a value is negated (True is -1): one level more.
        const int negated = TakesValues(e) && IsTruth(a) ? 1 : 0;
        nesting = std::max(nesting, a.nesting + (continuesRun ? 0 : levels + negated));
    }
    e.nesting = nesting;
    e.height = height + 1;
}

class Parser {
public:
    explicit Parser(QStringView text) : m_text(text), m_tokens(Tokenize(text)) {}

    SelectStatement select();
    ExprPtr criteria();

private:
    const Token &peek(std::size_t ahead = 0) const
    {
        const std::size_t i = m_pos + ahead;
        return i < m_tokens.size() ? m_tokens[i] : m_tokens.back();
    }
    const Token &take()
    {
        const Token &t = peek();
        if (m_pos + 1 < m_tokens.size())
            ++m_pos;
        return t;
    }
    bool acceptKeyword(const char *keyword)
    {
        if (!peek().isKeyword(keyword))
            return false;
        take();
        return true;
    }
    bool acceptSymbol(const char *symbol)
    {
        if (!peek().isSymbol(symbol))
            return false;
        take();
        return true;
    }
    void expectKeyword(const char *keyword)
    {
        if (!acceptKeyword(keyword))
            fail();
    }
    void expectSymbol(const char *symbol)
    {
        if (!acceptSymbol(symbol))
            fail();
    }
    bool atName() const
    {
        const Token &t = peek();
        return t.kind == TokenKind::BracketName ||
               (t.kind == TokenKind::Name && !IsReservedWord(t.text));
    }
    [[noreturn]] void fail() const;
    void beginExpression(int error)
    {
        m_error = error;
        m_exprStart = peek().pos;
    }

    ExprPtr expression();
    ExprPtr orTerm();
    ExprPtr andTerm();
    ExprPtr notTerm();
    ExprPtr comparison();
    ExprPtr concatenation();
    ExprPtr additive();
    ExprPtr multiplicative();
    ExprPtr unary();
    ExprPtr primary();
    ExprPtr columnName();

    ExprPtr measured(ExprPtr e);
    ExprPtr binary(BinaryOp op, ExprPtr a, ExprPtr b)
    {
        return measured(MakeBinary(op, std::move(a), std::move(b)));
    }
    ExprPtr balanced(BinaryOp op, std::vector<ExprPtr> &terms, std::size_t from, std::size_t to);
    void enter()
    {
        if (++m_depth > kMaxNesting)
            fail();
    }

    std::unique_ptr<FromNode> joins();
    std::unique_ptr<FromNode> fromTerm();

    QStringView m_text;
    std::vector<Token> m_tokens;
    std::size_t m_pos = 0;
    int m_error = err::SyntaxErrorInExpression;
    qsizetype m_exprStart = 0;
    int m_depth = 0;     // parentheses, NOT and minus around the point being read
    int m_joinDepth = 0; // parentheses of FROM around an ON condition
};

// Every node is measured as it is made, so nothing deeper than the limits is ever built.
ExprPtr Parser::measured(ExprPtr e)
{
    Measure(*e);
    if (e->nesting + m_joinDepth > kMaxNesting || e->height > kMaxHeight)
        fail();
    return e;
}

// A run of ANDs or ORs as a balanced tree, so that a long generated list of conditions does not
// make a tree as deep as it is long.
ExprPtr Parser::balanced(BinaryOp op, std::vector<ExprPtr> &terms, std::size_t from, std::size_t to)
{
    if (to - from == 1)
        return std::move(terms[from]);
    const std::size_t mid = from + (to - from + 1) / 2;
    return binary(op, balanced(op, terms, from, mid), balanced(op, terms, mid, to));
}

void Parser::fail() const
{
    if (m_error != err::SyntaxErrorInQueryExpression)
        throw StoreError::make(m_error);
    // The message quotes the expression: from its start up to the end of its clause.
    std::size_t i = m_pos;
    while (i + 1 < m_tokens.size()) {
        const Token &t = m_tokens[i];
        if (t.isSymbol(";") || t.isKeyword("FROM") || t.isKeyword("WHERE") ||
            t.isKeyword("ORDER") || t.isKeyword("INNER") || t.isKeyword("LEFT") ||
            t.isKeyword("RIGHT") || t.isKeyword("JOIN"))
            break;
        ++i;
    }
    qsizetype end = m_exprStart;
    for (std::size_t k = 0; k < i; ++k) {
        if (m_tokens[k].pos >= m_exprStart)
            end = m_tokens[k].pos + m_tokens[k].len;
    }
    throw StoreError::make(m_error, m_text.sliced(m_exprStart, end - m_exprStart).toString());
}

SelectStatement Parser::select()
{
    SelectStatement st;
    if (!acceptKeyword("SELECT"))
        throw StoreError::make(err::InvalidSql);
    beginExpression(err::SyntaxErrorInQueryExpression);
    if (acceptKeyword("DISTINCT"))
        st.distinct = true;
    else if (acceptKeyword("DISTINCTROW"))
        st.distinctRow = true;
    else
        acceptKeyword("ALL");

    do {
        beginExpression(err::SyntaxErrorInQueryExpression);
        SelectItem item;
        const Token &t = peek();
        if (t.isSymbol("*")) {
            take();
            item.kind = SelectItem::Star;
        } else if ((t.kind == TokenKind::Name || t.kind == TokenKind::BracketName) &&
                   peek(1).isSymbol(".") && peek(2).isSymbol("*")) {
            item.kind = SelectItem::TableStar;
            item.qualifier = take().text;
            take();
            take();
        } else {
            item.kind = SelectItem::Value;
            item.expr = expression();
            if (acceptKeyword("AS")) {
                if (!atName())
                    fail();
                item.alias = take().text;
            }
        }
        st.items.push_back(std::move(item));
    } while (acceptSymbol(","));

    if (!acceptKeyword("FROM"))
        fail();
    m_error = err::SyntaxErrorInFrom;
    do {
        st.from.push_back(joins());
    } while (acceptSymbol(","));

    if (acceptKeyword("WHERE")) {
        beginExpression(err::SyntaxErrorInQueryExpression);
        st.where = expression();
    }
    if (acceptKeyword("ORDER")) {
        m_error = err::SyntaxErrorInOrderBy;
        expectKeyword("BY");
        do {
            OrderItem item;
            item.expr = expression();
            if (acceptKeyword("DESC"))
                item.descending = true;
            else
                acceptKeyword("ASC");
            st.orderBy.push_back(std::move(item));
        } while (acceptSymbol(","));
    }
    acceptSymbol(";");
    if (peek().kind != TokenKind::End)
        fail();
    return st;
}

ExprPtr Parser::criteria()
{
    m_error = err::SyntaxErrorInExpression;
    ExprPtr e = expression();
    if (peek().kind != TokenKind::End)
        fail();
    return e;
}

std::unique_ptr<FromNode> Parser::joins()
{
    auto left = fromTerm();
    for (;;) {
        JoinType type = JoinType::Inner;
        if (acceptKeyword("INNER")) {
            type = JoinType::Inner;
        } else if (acceptKeyword("LEFT")) {
            type = JoinType::Left;
            acceptKeyword("OUTER");
        } else if (acceptKeyword("RIGHT")) {
            type = JoinType::Right;
            acceptKeyword("OUTER");
        } else if (!peek().isKeyword("JOIN")) {
            return left;
        }
        m_error = err::SyntaxErrorInJoin;
        expectKeyword("JOIN");
        auto right = fromTerm();
        m_error = err::SyntaxErrorInJoin;
        expectKeyword("ON");
        auto join = std::make_unique<FromNode>();
        join->isJoin = true;
        join->joinType = type;
        join->left = std::move(left);
        join->right = std::move(right);
        join->on = expression();
        left = std::move(join);
        m_error = err::SyntaxErrorInFrom;
    }
}

std::unique_ptr<FromNode> Parser::fromTerm()
{
    m_error = err::SyntaxErrorInFrom;
    if (acceptSymbol("(")) {
        enter();
        ++m_joinDepth;
        auto inner = joins();
        m_error = err::SyntaxErrorInFrom;
        expectSymbol(")");
        --m_joinDepth;
        --m_depth;
        return inner;
    }
    if (!atName())
        fail();
    auto node = std::make_unique<FromNode>();
    node->table = take().text;
    if (acceptKeyword("AS")) {
        if (!atName())
            fail();
        node->alias = take().text;
    } else if (atName()) {
        node->alias = take().text;
    }
    return node;
}

// Precedence, loosest first: OR, AND, NOT, comparisons (with LIKE, IS, IN, BETWEEN), &, + -,
// * /, unary minus.
ExprPtr Parser::expression()
{
    enter();
    ExprPtr e = orTerm();
    --m_depth;
    return e;
}

ExprPtr Parser::orTerm()
{
    std::vector<ExprPtr> terms;
    terms.push_back(andTerm());
    while (acceptKeyword("OR"))
        terms.push_back(andTerm());
    return balanced(BinaryOp::Or, terms, 0, terms.size());
}

ExprPtr Parser::andTerm()
{
    std::vector<ExprPtr> terms;
    terms.push_back(notTerm());
    while (acceptKeyword("AND"))
        terms.push_back(notTerm());
    return balanced(BinaryOp::And, terms, 0, terms.size());
}

ExprPtr Parser::notTerm()
{
    if (acceptKeyword("NOT")) {
        enter();
        auto e = MakeExpr(ExprKind::Not);
        e->args.push_back(notTerm());
        --m_depth;
        return measured(std::move(e));
    }
    return comparison();
}

// One comparison at most: "a = b = c" is refused rather than read as a comparison of a truth
// value, which is nearly always a value with a stray quote spliced into the text.
ExprPtr Parser::comparison()
{
    ExprPtr left = concatenation();
    struct OpName {
        const char *symbol;
        BinaryOp op;
    };
    static constexpr OpName kOps[] = {
        {"=", BinaryOp::Eq}, {"<>", BinaryOp::Ne}, {"<", BinaryOp::Lt},
        {">", BinaryOp::Gt}, {"<=", BinaryOp::Le}, {">=", BinaryOp::Ge},
    };
    for (const OpName &o : kOps) {
        if (acceptSymbol(o.symbol))
            return binary(o.op, std::move(left), concatenation());
    }
    if (acceptKeyword("IS")) {
        auto e = MakeExpr(ExprKind::IsNull);
        e->negated = acceptKeyword("NOT");
        expectKeyword("NULL");
        e->args.push_back(std::move(left));
        return measured(std::move(e));
    }
    bool negated = false;
    if (peek().isKeyword("NOT") &&
        (peek(1).isKeyword("LIKE") || peek(1).isKeyword("IN") || peek(1).isKeyword("BETWEEN"))) {
        take();
        negated = true;
    }
    if (acceptKeyword("LIKE")) {
        auto e = MakeExpr(ExprKind::Like);
        e->negated = negated;
        e->args.push_back(std::move(left));
        e->args.push_back(concatenation());
        return measured(std::move(e));
    }
    if (acceptKeyword("IN")) {
        auto e = MakeExpr(ExprKind::In);
        e->negated = negated;
        e->args.push_back(std::move(left));
        expectSymbol("(");
        do {
            e->args.push_back(concatenation());
        } while (acceptSymbol(","));
        expectSymbol(")");
        return measured(std::move(e));
    }
    if (acceptKeyword("BETWEEN")) {
        auto e = MakeExpr(ExprKind::Between);
        e->negated = negated;
        e->args.push_back(std::move(left));
        e->args.push_back(concatenation());
        expectKeyword("AND");
        e->args.push_back(concatenation());
        return measured(std::move(e));
    }
    return left;
}

ExprPtr Parser::concatenation()
{
    ExprPtr e = additive();
    while (acceptSymbol("&"))
        e = binary(BinaryOp::Concat, std::move(e), additive());
    return e;
}

ExprPtr Parser::additive()
{
    ExprPtr e = multiplicative();
    for (;;) {
        if (acceptSymbol("+"))
            e = binary(BinaryOp::Add, std::move(e), multiplicative());
        else if (acceptSymbol("-"))
            e = binary(BinaryOp::Sub, std::move(e), multiplicative());
        else
            return e;
    }
}

ExprPtr Parser::multiplicative()
{
    ExprPtr e = unary();
    for (;;) {
        if (acceptSymbol("*"))
            e = binary(BinaryOp::Mul, std::move(e), unary());
        else if (acceptSymbol("/"))
            e = binary(BinaryOp::Div, std::move(e), unary());
        else
            return e;
    }
}

ExprPtr Parser::unary()
{
    if (acceptSymbol("-")) {
        enter();
        auto e = MakeExpr(ExprKind::Negate);
        e->args.push_back(unary());
        --m_depth;
        return measured(std::move(e));
    }
    while (acceptSymbol("+")) {
    }
    return primary();
}

ExprPtr Parser::primary()
{
    const Token &t = peek();
    switch (t.kind) {
    case TokenKind::String: {
        auto e = MakeExpr(ExprKind::Text);
        e->text = take().text;
        return e;
    }
    case TokenKind::Integer: {
        auto e = MakeExpr(ExprKind::Integer);
        e->integer = take().integer;
        return e;
    }
    case TokenKind::Real: {
        auto e = MakeExpr(ExprKind::Real);
        e->real = take().real;
        return e;
    }
    case TokenKind::Date: {
        const std::optional<QString> date = ParseDateLiteral(t.text);
        if (!date)
            fail();
        take();
        auto e = MakeExpr(ExprKind::Date);
        e->text = *date;
        return e;
    }
    case TokenKind::BracketName:
        return columnName();
    case TokenKind::Name:
        if (t.isKeyword("NULL")) {
            take();
            return MakeExpr(ExprKind::Null);
        }
        if (t.isKeyword("TRUE") || t.isKeyword("FALSE")) {
            auto e = MakeExpr(ExprKind::Integer);
            e->integer = t.isKeyword("TRUE") ? -1 : 0;
            take();
            return e;
        }
        if (IsReservedWord(t.text))
            fail();
        return columnName();
    case TokenKind::Symbol:
        if (t.isSymbol("(")) {
            take();
            ExprPtr e = expression();
            expectSymbol(")");
            return e;
        }
        fail();
    default:
        fail();
    }
}

// name, [name], or either qualified by a table: after the dot a reserved word is a plain name.
ExprPtr Parser::columnName()
{
    auto e = MakeExpr(ExprKind::Column);
    e->text = take().text;
    if (acceptSymbol(".")) {
        const Token &t = peek();
        if (t.kind != TokenKind::Name && t.kind != TokenKind::BracketName)
            fail();
        e->qualifier = std::move(e->text);
        e->text = take().text;
    }
    if (peek().isSymbol("(") || peek().isSymbol("."))
        fail(); // functions and deeper names are not part of the dialect
    return e;
}

} // namespace

SelectStatement ParseSelect(QStringView text)
{
    return Parser(text).select();
}

ExprPtr ParseCriteria(QStringView text)
{
    return Parser(text).criteria();
}

std::optional<QString> ParseDateLiteral(QStringView body)
{
    QDate date(1899, 12, 30);
    QTime time(0, 0);
    bool haveDate = false;
    bool haveTime = false;
    bool pm = false;
    bool am = false;
    // "yyyy-MM-ddTHH:mm:ss" has its parts joined by a T.
    QString normal = body.trimmed().toString();
    if (normal.size() > 10 && normal[10] == u'T')
        normal[10] = u' ';
    const QStringList parts = normal.split(u' ', Qt::SkipEmptyParts);
    if (parts.isEmpty())
        return std::nullopt;
    for (const QString &part : parts) {
        if (part.compare(QLatin1String("AM"), Qt::CaseInsensitive) == 0 && haveTime && !am && !pm) {
            am = true;
        } else if (part.compare(QLatin1String("PM"), Qt::CaseInsensitive) == 0 && haveTime && !am &&
                   !pm) {
            pm = true;
        } else if (part.contains(u':') && !haveTime) {
            for (const char *f : {"H:m:s", "H:m"}) {
                time = QTime::fromString(part, QLatin1String(f));
                if (time.isValid())
                    break;
            }
            if (!time.isValid())
                return std::nullopt;
            haveTime = true;
        } else if ((part.contains(u'-') || part.contains(u'/')) && !haveDate && !haveTime) {
            for (const char *f : {"yyyy-M-d", "M/d/yyyy", "yyyy/M/d"}) {
                date = QDate::fromString(part, QLatin1String(f));
                if (date.isValid())
                    break;
            }
            if (!date.isValid())
                return std::nullopt;
            haveDate = true;
        } else {
            return std::nullopt;
        }
    }
    if (am || pm) {
        int h = time.hour();
        if (h < 1 || h > 12)
            return std::nullopt;
        h = h % 12 + (pm ? 12 : 0);
        time = QTime(h, time.minute(), time.second());
    }
    return date.toString(QLatin1String("yyyy-MM-dd")) + u'T' +
           time.toString(QLatin1String("HH:mm:ss"));
}

} // namespace lx::store::sql::detail
