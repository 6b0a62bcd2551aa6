#pragma once

#include "core/store/database.h"
#include "core/store/types.h"
#include "ontology/store/schema.h"

#include <QDateTime>
#include <QFile>
#include <QList>
#include <QVariant>

namespace lx::test {

// One CONCEPTS row of a sample ontology; a null definition stays Null in the file.
struct SampleConcept {
    QString id;
    int type = 1;
    QVariant definition = QStringLiteral("Undefined");
};

// The MetaData row of a sample ontology.
struct SampleMeta {
    QString name;
    quint8 listTop = 0;
    QDateTime created = QDateTime(QDate(2000, 5, 5), QTime(9, 30));
    QDateTime modified = QDateTime(QDate(2001, 1, 1), QTime(12, 0));
};

inline void AddRow(store::Database &db, const QString &table,
                   const QList<std::pair<QStringView, QVariant>> &fields)
{
    store::Recordset rs = db.OpenRecordset(table, store::dbOpenTable);
    rs.AddNew();
    for (const auto &[name, value] : fields)
        rs.Collect(name, value);
    rs.Update();
}

// An ontology file built here, without the seed: subset 1 "General", the concepts given, and
// one MetaData row.
inline void WriteOntologyFile(const QString &path, const SampleMeta &meta,
                              const QList<SampleConcept> &concepts)
{
    store::Database db = store::DBEngine::Workspaces(0).CreateDatabase(path, store::dbLangGeneral,
                                                                       store::dbVersion40);
    BuildOntologyTables(db);
    AddRow(db, QStringLiteral("Subsets"),
           {{u"Subset_ID", 1}, {u"Subset", QStringLiteral("General")}});
    for (const SampleConcept &c : concepts)
        AddRow(db, QStringLiteral("CONCEPTS"),
               {{u"Concept", c.id},
                {u"Definition", c.definition},
                {u"Type", c.type},
                {u"Subset_ID", 1}});
    AddRow(db, QStringLiteral("MetaData"),
           {{u"Name", meta.name},
            {u"Created", meta.created},
            {u"Modified", meta.modified},
            {u"Owner", QStringLiteral("Field station")},
            {u"Author", QString()},
            {u"Contact", QString()},
            {u"Description", QString()},
            {u"MaxParents", 2},
            {u"ListTop", meta.listTop},
            {u"DefLang", QStringLiteral("en")},
            {u"Naming", true},
            {u"AutoName", 0},
            {u"ActiveSet", 1}});
    db.Close();
}

// A field of the file's last MetaData row, read on a connection of its own.
inline QVariant MetaDataField(const QString &path, QStringView field)
{
    store::Database db = store::DBEngine::OpenDatabase(path);
    store::Recordset rs =
        db.OpenRecordset(QStringLiteral("SELECT * FROM MetaData"), store::dbOpenSnapshot);
    rs.MoveLast();
    const QVariant value = rs.Value(field);
    rs.Close();
    db.Close();
    return value;
}

// A file that isn't a store file at all.
inline void WriteTextFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(content);
}

} // namespace lx::test
