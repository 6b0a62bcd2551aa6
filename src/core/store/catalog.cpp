#include "catalog.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace lx::store {

namespace {

bool sameName(QStringView a, QStringView b)
{
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

QJsonObject fieldToJson(const Field &f)
{
    QJsonObject o{{QStringLiteral("name"), f.Name}};
    if (f.Type)
        o[QStringLiteral("type")] = f.Type;
    if (f.Size)
        o[QStringLiteral("size")] = f.Size;
    if (f.Attributes)
        o[QStringLiteral("attributes")] = f.Attributes;
    if (f.AllowZeroLength)
        o[QStringLiteral("allowZeroLength")] = true;
    if (!f.ForeignName.isEmpty())
        o[QStringLiteral("foreignName")] = f.ForeignName;
    return o;
}

Field fieldFromJson(const QJsonObject &o)
{
    Field f;
    f.Name = o.value(QStringLiteral("name")).toString();
    f.Type = o.value(QStringLiteral("type")).toInt();
    f.Size = o.value(QStringLiteral("size")).toInt();
    f.Attributes = o.value(QStringLiteral("attributes")).toInt();
    f.AllowZeroLength = o.value(QStringLiteral("allowZeroLength")).toBool();
    f.ForeignName = o.value(QStringLiteral("foreignName")).toString();
    return f;
}

QJsonArray fieldsToJson(const std::vector<Field> &fields)
{
    QJsonArray a;
    for (const Field &f : fields)
        a.append(fieldToJson(f));
    return a;
}

std::vector<Field> fieldsFromJson(const QJsonValue &v)
{
    std::vector<Field> fields;
    for (const QJsonValue &f : v.toArray())
        fields.push_back(fieldFromJson(f.toObject()));
    return fields;
}

} // namespace

Field TableDef::CreateField(const QString &name, int type, int size) const
{
    Field f;
    f.Name = name;
    f.Type = type;
    f.Size = type == dbText ? (size > 0 ? size : 255) : 0;
    return f;
}

int TableDef::fieldIndex(QStringView name) const
{
    for (size_t i = 0; i < Fields.size(); ++i)
        if (sameName(Fields[i].Name, name))
            return int(i);
    return -1;
}

const Index *TableDef::findIndex(QStringView name) const
{
    for (const Index &i : Indexes)
        if (sameName(i.Name, name))
            return &i;
    return nullptr;
}

const Index *TableDef::primaryIndex() const
{
    for (const Index &i : Indexes)
        if (i.Primary)
            return &i;
    return nullptr;
}

const TableDef *Catalog::findTable(QStringView name) const
{
    for (const TableDef &t : tables)
        if (sameName(t.Name, name))
            return &t;
    return nullptr;
}

const Relation *Catalog::findRelation(QStringView name) const
{
    for (const Relation &r : relations)
        if (sameName(r.Name, name))
            return &r;
    return nullptr;
}

QByteArray Catalog::toJson() const
{
    QJsonArray jsonTables;
    for (const TableDef &t : tables) {
        QJsonArray indexes;
        for (const Index &i : t.Indexes)
            indexes.append(QJsonObject{{QStringLiteral("name"), i.Name},
                                       {QStringLiteral("fields"), fieldsToJson(i.Fields)},
                                       {QStringLiteral("primary"), i.Primary},
                                       {QStringLiteral("unique"), i.Unique}});
        jsonTables.append(QJsonObject{{QStringLiteral("name"), t.Name},
                                      {QStringLiteral("fields"), fieldsToJson(t.Fields)},
                                      {QStringLiteral("indexes"), indexes}});
    }
    QJsonArray jsonRelations;
    for (const Relation &r : relations)
        jsonRelations.append(QJsonObject{{QStringLiteral("name"), r.Name},
                                         {QStringLiteral("table"), r.Table},
                                         {QStringLiteral("foreignTable"), r.ForeignTable},
                                         {QStringLiteral("attributes"), r.Attributes},
                                         {QStringLiteral("fields"), fieldsToJson(r.Fields)}});
    QJsonObject root{{QStringLiteral("tables"), jsonTables},
                     {QStringLiteral("relations"), jsonRelations}};
    return QJsonDocument(root).toJson(QJsonDocument::Compact);
}

Catalog Catalog::fromJson(const QByteArray &json, bool *ok)
{
    Catalog c;
    QJsonParseError error;
    const QJsonDocument doc = QJsonDocument::fromJson(json, &error);
    *ok = error.error == QJsonParseError::NoError && doc.isObject();
    if (!*ok)
        return c;
    const QJsonObject root = doc.object();
    for (const QJsonValue &tv : root.value(QStringLiteral("tables")).toArray()) {
        const QJsonObject to = tv.toObject();
        TableDef t;
        t.Name = to.value(QStringLiteral("name")).toString();
        t.Fields = fieldsFromJson(to.value(QStringLiteral("fields")));
        for (const QJsonValue &iv : to.value(QStringLiteral("indexes")).toArray()) {
            const QJsonObject io = iv.toObject();
            t.Indexes.push_back(Index{io.value(QStringLiteral("name")).toString(),
                                      fieldsFromJson(io.value(QStringLiteral("fields"))),
                                      io.value(QStringLiteral("primary")).toBool(),
                                      io.value(QStringLiteral("unique")).toBool()});
        }
        c.tables.push_back(std::move(t));
    }
    for (const QJsonValue &rv : root.value(QStringLiteral("relations")).toArray()) {
        const QJsonObject ro = rv.toObject();
        c.relations.push_back(Relation{ro.value(QStringLiteral("name")).toString(),
                                       ro.value(QStringLiteral("table")).toString(),
                                       ro.value(QStringLiteral("foreignTable")).toString(),
                                       ro.value(QStringLiteral("attributes")).toInt(),
                                       fieldsFromJson(ro.value(QStringLiteral("fields")))});
    }
    return c;
}

} // namespace lx::store
