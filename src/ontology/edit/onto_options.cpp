#include "ontology/edit/onto_options.h"

#include "core/interaction.h"
#include "core/store/errors.h"
#include "core/store/types.h"
#include "ontology/store/concept_list.h"
#include "ontology/store/lookups.h"

#include <cmath>

namespace lx {

using namespace store;

namespace {

constexpr int TypeMismatch = 13;

// Show of each row of Languages from the tick at the same position; rows past the ticks stay.
// On a file open read-only, changed ticks are not written, and the user is told why.
void StoreWorkingLanguages(const QList<bool> &shown)
{
    ProcessState &p = Process();
    Recordset rs = p.OntoDB.OpenRecordset(QStringLiteral("SELECT * FROM Languages"), dbOpenDynaset);
    const bool readOnly = !p.OntoDB.Updatable();
    for (qsizetype i = 0; !rs.Eof() && i < shown.size(); rs.MoveNext(), ++i) {
        if (readOnly) {
            if (rs.Value(u"Show").toBool() != shown[i]) {
                UI().MsgBox(ReadOnlyFileError(p.OntoPath).description(), msg::Exclamation);
                break;
            }
            continue;
        }
        rs.Edit();
        rs.Collect(u"Show", shown[i]);
        rs.Update();
    }
    rs.Close();
}

} // namespace

std::optional<int> ShownMaxParents(const OntoMetaData &meta)
{
    if (meta.MaxParents >= 1 && meta.MaxParents <= 4)
        return meta.MaxParents;
    return std::nullopt;
}

int ListTopOption(quint8 listTop)
{
    return listTop == 1 || listTop == 2 ? listTop : 3;
}

quint8 TextAsByte(const QString &text)
{
    bool ok = false;
    const double value = text.trimmed().toDouble(&ok);
    if (!ok)
        throw StoreError(TypeMismatch, QStringLiteral("Type mismatch"));
    const double rounded = std::nearbyint(value);
    if (rounded < 0 || rounded > 255)
        throw StoreError::make(err::Overflow);
    return quint8(rounded);
}

int LeadingNumber(const QString &text)
{
    const QString trimmed = text.trimmed();
    qsizetype digits = 0;
    while (digits < trimmed.size() && trimmed[digits].isDigit() && digits < 9)
        ++digits;
    return digits == 0 ? 0 : trimmed.left(digits).toInt();
}

void StoreOntoOptions(const OntoOptionsResult &result)
{
    OntoMetaData &meta = Process().OntoMeta;
    if (const quint8 parents = TextAsByte(result.NoParents); parents != 0) {
        meta.MaxParents = parents;
        meta.ListTop = result.ListTop;
    }
    StoreWorkingLanguages(result.Shown);
    meta.DefLang = LanguageCodeOf(result.DefaultLanguage);
    meta.Naming = result.Naming;
}

void ApplyOntoOptions(const OntoOptionsResult &result, OntologyEditor &editor)
{
    StoreOntoOptions(result);
    InitRSListConcepts(editor);
    editor.UpdateStatusCounts();
}

} // namespace lx
