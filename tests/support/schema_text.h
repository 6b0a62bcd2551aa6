#pragma once

#include "core/store/database.h"

#include <QRegularExpression>
#include <QStringList>

#include <initializer_list>
#include <utility>

namespace lx::test {

// A file's structure as text, in the order of creation: one line per table with its fields and
// indexes, one line per relation. For example
//   table Notes: Note_ID Long autonumber, Note Memo zero-length; index IdxNote(Note_ID) primary
//   relation ConceptsISA: CONCEPTS.Concept -> ISA.Concept cascade-update cascade-delete
// An index is "primary" when it is primary and unique; the flags name any other mix.
inline QString SchemaText(const store::Database &db)
{
    using namespace store;
    const auto typeText = [](const Field &f) {
        switch (f.Type) {
        case dbBoolean:
            return QStringLiteral("Boolean");
        case dbByte:
            return QStringLiteral("Byte");
        case dbLong:
            return QStringLiteral("Long");
        case dbDate:
            return QStringLiteral("Date");
        case dbText:
            return QStringLiteral("Text(%1)").arg(f.Size);
        case dbMemo:
            return QStringLiteral("Memo");
        default:
            return QStringLiteral("type%1").arg(f.Type);
        }
    };
    const auto flags = [](int bits, std::initializer_list<std::pair<int, const char *>> known) {
        QString text;
        for (const auto &[bit, word] : known) {
            if (bits & bit)
                text += QLatin1Char(' ') + QLatin1String(word);
            bits &= ~bit;
        }
        return bits ? text + QStringLiteral(" attributes%1").arg(bits) : text;
    };
    QStringList lines;
    for (const TableDef &t : db.TableDefs()) {
        QStringList fields;
        for (const Field &f : t.Fields)
            fields << f.Name + QLatin1Char(' ') + typeText(f) +
                          flags(f.Attributes, {{dbAutoIncrField, "autonumber"}}) +
                          (f.AllowZeroLength ? QStringLiteral(" zero-length") : QString());
        QStringList parts{QStringLiteral("table ") + t.Name + QStringLiteral(": ") +
                          fields.join(QStringLiteral(", "))};
        for (const Index &i : t.Indexes) {
            QStringList keys;
            for (const Field &f : i.Fields)
                keys << f.Name;
            const QString kind = i.Primary && i.Unique ? QStringLiteral(" primary")
                                 : i.Primary           ? QStringLiteral(" primary not-unique")
                                 : i.Unique            ? QStringLiteral(" unique")
                                                       : QString();
            parts << QStringLiteral("index ") + i.Name + QLatin1Char('(') +
                         keys.join(QStringLiteral(", ")) + QLatin1Char(')') + kind;
        }
        lines << parts.join(QStringLiteral("; "));
    }
    for (const Relation &r : db.Relations()) {
        QString line = QStringLiteral("relation ") + r.Name + QLatin1Char(':');
        for (const Field &f : r.Fields)
            line += QLatin1Char(' ') + r.Table + QLatin1Char('.') + f.Name +
                    QStringLiteral(" -> ") + r.ForeignTable + QLatin1Char('.') + f.ForeignName;
        lines << line + flags(r.Attributes, {{dbRelationUpdateCascades, "cascade-update"},
                                             {dbRelationDeleteCascades, "cascade-delete"}});
    }
    return lines.join(QLatin1Char('\n'));
}

// A description written by hand, wrapped as it reads best, brought to the lines of SchemaText:
// each table and relation starts a line, and any other run of white space is one space.
inline QString SchemaLines(const QString &written)
{
    static const QRegularExpression entryStart(QStringLiteral(" (?=(table|relation) )"));
    return written.simplified().replace(entryStart, QStringLiteral("\n"));
}

} // namespace lx::test
