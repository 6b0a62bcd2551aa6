#pragma once

#include <QString>
#include <QStringView>

#include <vector>

namespace lx::store::sql::detail {

enum class TokenKind {
    Name,        // a plain name or keyword
    BracketName, // [a name], never a keyword
    String,      // "..." or '...'
    Integer,
    Real,
    Date,    // #...#, text is the part between the signs
    Symbol,  // = <> < > <= >= ( ) , . ; & + - * /
    Invalid, // a character that starts no token, or an unterminated literal or bracket
    End,
};

struct Token {
    TokenKind kind = TokenKind::End;
    qsizetype pos = 0; // offset in the source text
    qsizetype len = 0;
    QString text; // name, string value, date body or symbol
    qint64 integer = 0;
    double real = 0;

    bool isKeyword(const char *keyword) const;
    bool isSymbol(const char *symbol) const;
};

// Splits the whole text into tokens, the last one End. Never throws: what cannot be read
// becomes an Invalid token, which the parser reports with the error of the clause it is in.
std::vector<Token> Tokenize(QStringView text);

// True for the words that cannot be a plain name (a qualified name "t.order" still may be one).
bool IsReservedWord(QStringView word);

} // namespace lx::store::sql::detail
