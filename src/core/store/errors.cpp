#include "errors.h"

#include <array>

namespace lx::store {

namespace {

struct Message {
    int number;
    const char *text;
};

// One table for every number the store raises.
constexpr std::array kMessages{
    Message{err::InvalidProcedureCall, "Invalid procedure call or argument."},
    Message{err::Overflow, "Overflow."},
    Message{err::InvalidUseOfNull, "Invalid use of Null."},
    Message{err::Reserved, "Reserved error (%1); there is no message for this error."},
    Message{err::TableExists, "Table '%1' already exists."},
    Message{err::ObjectNotFound,
            "The record store could not find the object '%1'. Make sure the object exists and "
            "that you spell its name correctly."},
    Message{err::ObjectExists, "Object '%1' already exists."},
    Message{err::UpdateWithoutEdit, "Update or CancelUpdate without AddNew or Edit."},
    Message{err::NoCurrentRecord, "No current record."},
    Message{err::DuplicateKey,
            "The changes you requested to the table were not successful because they would "
            "create duplicate values in the index, primary key, or relationship. Change the data "
            "in the field or fields that contain duplicate data, remove the index, or redefine "
            "the index to permit duplicate entries and try again."},
    Message{err::FileNotFound, "Could not find file '%1'."},
    Message{err::ReadOnly, "Cannot update. Database or object is read-only."},
    Message{err::CannotOpenFile, "The record store cannot open the file '%1'. %2"},
    Message{err::NullInIndex, "Index or primary key cannot contain a Null value."},
    Message{err::TooFewParameters, "Too few parameters. Expected %1."},
    Message{err::UnknownFieldInCriteria,
            "The record store does not recognize '%1' as a valid field name or expression."},
    Message{err::SyntaxErrorInQueryExpression,
            "Syntax error (missing operator) in query expression '%1'."},
    Message{err::SyntaxErrorInExpression, "Syntax error in expression."},
    Message{err::CannotFindInputTable,
            "The record store cannot find the input table or query '%1'. Make sure it exists "
            "and that its name is spelled correctly."},
    Message{err::InvalidSql,
            "Invalid SQL statement; expected 'DELETE', 'INSERT', 'PROCEDURE', 'SELECT', or "
            "'UPDATE'."},
    Message{err::SyntaxErrorInFrom, "Syntax error in FROM clause."},
    Message{err::SyntaxErrorInJoin, "Syntax error in JOIN operation."},
    Message{err::SyntaxErrorInOrderBy, "Syntax error in ORDER BY clause."},
    Message{err::FieldTooSmall,
            "The field is too small to accept the amount of data you attempted to add. Try "
            "inserting or pasting less data."},
    Message{err::RecordIsDeleted, "Record is deleted."},
    Message{err::RelatedRecordsExist,
            "The record cannot be deleted or changed because table '%1' includes related "
            "records."},
    Message{err::RelatedRecordRequired,
            "You cannot add or change a record because a related record is required in table "
            "'%1'."},
    Message{err::DatabaseExists, "Database already exists."},
    Message{err::InvalidOperation, "Invalid operation."},
    Message{err::OperationNotSupported, "Operation is not supported for this type of object."},
    Message{err::ItemNotFound, "Item not found in this collection."},
    Message{err::ZeroLengthString, "Field '%1' cannot be a zero-length string."},
    Message{err::ValidationRule,
            "The value %2 can't go into field '%1': an identifier can't hold a double quote (\")."},
    Message{err::UnrecognizedFormat, "Unrecognized database format '%1'."},
    Message{err::DataTypeConversion, "Data type conversion error."},
    Message{err::ActionCancelled, "This action was cancelled by an associated object."},
};

} // namespace

QString ErrorDescription(int number, const QString &arg1, const QString &arg2)
{
    for (const Message &m : kMessages) {
        if (m.number != number)
            continue;
        QString text = QString::fromLatin1(m.text);
        if (text.contains(QLatin1String("%2")))
            return text.arg(arg1, arg2);
        if (text.contains(QLatin1String("%1")))
            return text.arg(arg1);
        return text;
    }
    return ErrorDescription(err::Reserved, QString::number(number));
}

StoreError::StoreError(int number, const QString &description)
    : std::runtime_error(description.toStdString()), m_number(number), m_description(description)
{}

StoreError StoreError::make(int number, const QString &arg1, const QString &arg2)
{
    return StoreError(number, ErrorDescription(number, arg1, arg2));
}

StoreError ReadOnlyFileError(const QString &path)
{
    return StoreError(err::ReadOnly,
                      QStringLiteral("Cannot update. The file is read-only: ") + path);
}

} // namespace lx::store
