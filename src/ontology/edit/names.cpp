#include "ontology/edit/names.h"

#include "core/interaction.h"
#include "core/process.h"
#include "core/store/types.h"
#include "ontology/store/lookups.h"

namespace lx {

using namespace store;

namespace {

Recordset OpenNamesAt(qint32 nameId)
{
    Recordset rs = Process().OntoDB.OpenRecordset(QStringLiteral("Names"), dbOpenTable);
    rs.SetIndex(QStringLiteral("Name_ID"));
    rs.Seek(u"=", nameId);
    return rs;
}

bool AcceptName(NamesTexts &texts)
{
    texts.Name = ReplaceDoubleQuotes(texts.Name);
    if (!texts.Name.isEmpty())
        return true;
    UI().MsgBox(QStringLiteral("Concept name cannot be the empty string!"));
    return false;
}

bool AcceptRename(NamesTexts &texts)
{
    texts.Concept = ReplaceDoubleQuotes(texts.Concept);
    if (Process().OntoMeta.Naming)
        texts.Concept = NormalizeIdentifier(texts.Concept);
    if (!texts.Concept.isEmpty())
        return true;
    UI().MsgBox(QStringLiteral("Concept Identifier cannot be the empty string!"));
    return false;
}

bool AcceptDefinition(NamesTexts &texts)
{
    texts.Def = ReplaceDoubleQuotes(texts.Def);
    if (!texts.Def.isEmpty())
        return true;
    if (UI().MsgBox(QStringLiteral("Do you want to remove this definition?"), msg::YesNo) ==
        msg::No)
        return false;
    texts.Def = QStringLiteral("Undefined");
    return true;
}

} // namespace

QList<LanguageItem> ReadLanguages()
{
    QList<LanguageItem> languages;
    Recordset rs =
        Process().OntoDB.OpenRecordset(QStringLiteral("SELECT * FROM Languages"), dbOpenDynaset);
    for (; !rs.Eof(); rs.MoveNext())
        languages.append({rs.Fields(u"Language").Text(), rs.Fields(u"Lang_ID").Text(),
                          rs.Value(u"Show").toBool()});
    rs.Close();
    return languages;
}

QList<LanguageItem> ReadWorkingLanguages()
{
    QList<LanguageItem> shown = ReadLanguages();
    shown.removeIf([](const LanguageItem &item) { return !item.Show; });
    return shown;
}

bool AcceptNamesTexts(const QString &mode, NamesTexts &texts)
{
    if (mode == QLatin1String("Name"))
        return AcceptName(texts);
    if (mode == QLatin1String("Rename"))
        return AcceptRename(texts);
    if (mode == QLatin1String("Definition"))
        return AcceptDefinition(texts);
    return true;
}

void AddName(const QString &identifier, const QString &langId, const QString &name)
{
    Recordset rs = Process().OntoDB.OpenRecordset(QStringLiteral("Names"), dbOpenTable);
    rs.AddNew();
    rs.Collect(u"Concept", identifier);
    rs.Collect(u"Lang_ID", langId);
    rs.Collect(u"Name", name);
    rs.Update();
    rs.Close();
}

void EditName(qint32 nameId, const QString &langId, const QString &name)
{
    Recordset rs = OpenNamesAt(nameId);
    if (!rs.NoMatch()) {
        rs.Edit();
        rs.Collect(u"Lang_ID", langId);
        rs.Collect(u"Name", name);
        rs.Update();
    }
    rs.Close();
}

void DeleteName(qint32 nameId)
{
    Recordset rs = OpenNamesAt(nameId);
    if (!rs.NoMatch()) {
        rs.Edit();
        rs.Delete();
    }
    rs.Close();
}

void AddDefaultName(const QString &identifier)
{
    const OntoMetaData &meta = Process().OntoMeta;
    AddName(identifier, meta.DefLang,
            meta.AutoName == 1 ? identifier : IdentifierToName(identifier));
}

} // namespace lx
