#pragma once

#include <QString>

#include <stdexcept>

namespace lx::store {

// The record store's error numbers. Callers test a few of them by number (3204, 3343, 3011,
// 3426); the rest end a command with a message showing number and description.
namespace err {
inline constexpr int InvalidProcedureCall = 5; // a text function given a length below 0
inline constexpr int InvalidUseOfNull = 94;
inline constexpr int Overflow = 6;
inline constexpr int Reserved = 3000; // an engine failure with no number of its own
inline constexpr int TableExists = 3010;
inline constexpr int ObjectNotFound = 3011; // e.g. a table that a query needs
inline constexpr int ObjectExists = 3012;
inline constexpr int UpdateWithoutEdit = 3020;
inline constexpr int NoCurrentRecord = 3021;
inline constexpr int DuplicateKey = 3022;
inline constexpr int FileNotFound = 3024;
inline constexpr int ReadOnly = 3027;
inline constexpr int CannotOpenFile = 3051;
inline constexpr int NullInIndex = 3058;
inline constexpr int TooFewParameters = 3061;
inline constexpr int UnknownFieldInCriteria = 3070;
inline constexpr int SyntaxErrorInQueryExpression = 3075;
inline constexpr int SyntaxErrorInExpression = 3077; // FindFirst criteria
inline constexpr int CannotFindInputTable = 3078;
inline constexpr int SyntaxErrorInFrom = 3131;
inline constexpr int SyntaxErrorInOrderBy = 3138;
inline constexpr int SyntaxErrorInJoin = 3135;
inline constexpr int FieldTooSmall = 3163;
inline constexpr int RecordIsDeleted = 3167;
inline constexpr int RelatedRecordsExist = 3200;
inline constexpr int RelatedRecordRequired = 3201;
inline constexpr int DatabaseExists = 3204;
inline constexpr int InvalidOperation = 3219;
inline constexpr int OperationNotSupported = 3251;
inline constexpr int ItemNotFound = 3265;
inline constexpr int ZeroLengthString = 3315;
inline constexpr int ValidationRule = 3317; // a value the file's rules keep out
inline constexpr int UnrecognizedFormat = 3343;
inline constexpr int DataTypeConversion = 3421;
inline constexpr int ActionCancelled = 3426;
inline constexpr int InvalidSql = 3129; // not a SELECT statement
} // namespace err

// Description of an error number, with %1 (and %2) filled from the arguments.
QString ErrorDescription(int number, const QString &arg1 = {}, const QString &arg2 = {});

// A failure of the record store: its number and the description shown to the user.
class StoreError : public std::runtime_error {
public:
    StoreError(int number, const QString &description);
    // Builds the description from the table of messages.
    static StoreError make(int number, const QString &arg1 = {}, const QString &arg2 = {});

    int number() const { return m_number; }
    const QString &description() const { return m_description; }

private:
    int m_number;
    QString m_description;
};

// Error 3027 for a file that is open read-only, naming the file.
StoreError ReadOnlyFileError(const QString &path);

} // namespace lx::store
