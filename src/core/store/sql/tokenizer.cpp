#include "tokenizer.h"

#include <array>
#include <charconv>
#include <limits>
#include <string>

namespace lx::store::sql::detail {

namespace {

bool IsNameStart(QChar c)
{
    return c.isLetter() || c == u'_';
}

bool IsNamePart(QChar c)
{
    return c.isLetterOrNumber() || c == u'_';
}

bool IsDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

constexpr std::array kReserved = {
    "ALL",      "AND",         "AS",    "ASC",    "BETWEEN", "BY",    "DESC",
    "DISTINCT", "DISTINCTROW", "FROM",  "FULL",   "IN",      "INNER", "IS",
    "JOIN",     "LEFT",        "LIKE",  "NOT",    "NULL",    "ON",    "OR",
    "ORDER",    "OUTER",       "RIGHT", "SELECT", "WHERE",   "TRUE",  "FALSE",
};

} // namespace

bool Token::isKeyword(const char *keyword) const
{
    return kind == TokenKind::Name &&
           text.compare(QLatin1String(keyword), Qt::CaseInsensitive) == 0;
}

bool Token::isSymbol(const char *symbol) const
{
    return kind == TokenKind::Symbol && text == QLatin1String(symbol);
}

bool IsReservedWord(QStringView word)
{
    for (const char *r : kReserved) {
        if (word.compare(QLatin1String(r), Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}

std::vector<Token> Tokenize(QStringView s)
{
    std::vector<Token> out;
    const qsizetype n = s.size();
    qsizetype i = 0;
    auto invalidToEnd = [&](qsizetype start) {
        out.push_back({TokenKind::Invalid, start, n - start, s.sliced(start).toString(), 0, 0});
        i = n;
    };
    while (i < n) {
        const QChar c = s[i];
        if (c.isSpace()) {
            ++i;
            continue;
        }
        const qsizetype start = i;
        Token t;
        t.pos = start;
        if (c == u'"' || c == u'\'') {
            // A doubled quote inside stands for one quote.
            QString value;
            ++i;
            bool closed = false;
            while (i < n) {
                if (s[i] == c) {
                    if (i + 1 < n && s[i + 1] == c) {
                        value += c;
                        i += 2;
                        continue;
                    }
                    ++i;
                    closed = true;
                    break;
                }
                value += s[i++];
            }
            if (!closed) {
                invalidToEnd(start);
                break;
            }
            t.kind = TokenKind::String;
            t.text = std::move(value);
        } else if (c == u'[') {
            const qsizetype close = s.indexOf(u']', i + 1);
            if (close < 0) {
                invalidToEnd(start);
                break;
            }
            const QStringView name = s.sliced(i + 1, close - i - 1);
            bool clean = !name.trimmed().isEmpty();
            for (QChar ch : name)
                clean = clean && ch.unicode() >= 0x20;
            i = close + 1;
            t.kind = clean ? TokenKind::BracketName : TokenKind::Invalid;
            t.text = name.toString();
        } else if (c == u'#') {
            const qsizetype close = s.indexOf(u'#', i + 1);
            if (close < 0) {
                invalidToEnd(start);
                break;
            }
            t.kind = TokenKind::Date;
            t.text = s.sliced(i + 1, close - i - 1).trimmed().toString();
            i = close + 1;
        } else if (IsDigit(c) || (c == u'.' && i + 1 < n && IsDigit(s[i + 1]) &&
                                  (out.empty() || (out.back().kind != TokenKind::Name &&
                                                   out.back().kind != TokenKind::BracketName)))) {
            // Digits, an optional fraction and exponent. A letter right after the digits starts
            // the next token, so "12AND" reads as 12 AND.
            bool real = false;
            while (i < n && IsDigit(s[i]))
                ++i;
            if (i < n && s[i] == u'.') {
                real = true;
                ++i;
                while (i < n && IsDigit(s[i]))
                    ++i;
            }
            if (i + 1 < n && (s[i] == u'e' || s[i] == u'E')) {
                qsizetype j = i + 1;
                if (j + 1 < n && (s[j] == u'+' || s[j] == u'-'))
                    ++j;
                if (j < n && IsDigit(s[j])) {
                    real = true;
                    i = j;
                    while (i < n && IsDigit(s[i]))
                        ++i;
                }
            }
            const std::string digits = s.sliced(start, i - start).toString().toStdString();
            const char *first = digits.data();
            const char *last = first + digits.size();
            if (!real) {
                qint64 v = 0;
                const auto r = std::from_chars(first, last, v);
                if (r.ec == std::errc() && r.ptr == last) {
                    t.kind = TokenKind::Integer;
                    t.integer = v;
                } else {
                    real = true; // too long for 64 bits
                }
            }
            if (real) {
                double v = 0;
                const auto r = std::from_chars(first, last, v);
                const bool ok = r.ec == std::errc() && r.ptr == last;
                t.kind = ok ? TokenKind::Real : TokenKind::Invalid;
                t.real = ok ? v : 0;
            }
            t.text = QString::fromStdString(digits);
        } else if (IsNameStart(c)) {
            while (i < n && IsNamePart(s[i]))
                ++i;
            t.kind = TokenKind::Name;
            t.text = s.sliced(start, i - start).toString();
        } else {
            static constexpr std::array kTwo = {"<>", "<=", ">="};
            t.kind = TokenKind::Invalid;
            for (const char *two : kTwo) {
                if (i + 1 < n && c == QLatin1Char(two[0]) && s[i + 1] == QLatin1Char(two[1])) {
                    t.kind = TokenKind::Symbol;
                    t.text = QString::fromLatin1(two);
                    i += 2;
                    break;
                }
            }
            if (t.kind == TokenKind::Invalid) {
                if (QStringView(u"=<>(),.;&+-*/").contains(c))
                    t.kind = TokenKind::Symbol;
                t.text = c;
                ++i;
            }
        }
        t.len = i - start;
        out.push_back(std::move(t));
    }
    Token end;
    end.pos = n;
    out.push_back(std::move(end));
    return out;
}

} // namespace lx::store::sql::detail
