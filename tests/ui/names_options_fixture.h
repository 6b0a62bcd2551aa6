#pragma once

#include "open_ontology_fixture.h"

#include <QTreeWidget>

namespace lx::test {

// A language row of a sample ontology.
struct SampleLanguage {
    QString code;
    QString name;
    bool show = true;
};

// The sample ontology open in the editor, with languages, and helpers for the list views of
// the naming and options dialogs.
class NamesOptionsTest : public OpenOntologyTest {
protected:
    // English and German shown, French not, in that table order unless told otherwise.
    void openSample(const QList<SampleLanguage> &languages = {
                        {QStringLiteral("en"), QStringLiteral("English"), true},
                        {QStringLiteral("fr"), QStringLiteral("French"), false},
                        {QStringLiteral("de"), QStringLiteral("German"), true}})
    {
        const QString path = sample(QStringLiteral("Zoo"));
        store::Database db = store::DBEngine::OpenDatabase(path);
        for (const SampleLanguage &language : languages)
            AddRow(db, QStringLiteral("Languages"),
                   {{u"Lang_ID", language.code},
                    {u"Language", language.name},
                    {u"Show", language.show}});
        db.Close();
        openByDialog(path);
    }

    // A query's column on the open ontology, as text.
    static QStringList column(const QString &query, QStringView field)
    {
        QStringList values;
        store::Recordset rs = Process().OntoDB.OpenRecordset(query, store::dbOpenSnapshot);
        for (; !rs.Eof(); rs.MoveNext())
            values.append(rs.Value(field).toString());
        return values;
    }

    static QStringList texts(const QTreeWidget *list, int column = 0)
    {
        QStringList rows;
        for (int i = 0; i < list->topLevelItemCount(); ++i)
            rows.append(list->topLevelItem(i)->text(column));
        return rows;
    }
    static QStringList ticked(const QTreeWidget *list)
    {
        QStringList rows;
        for (int i = 0; i < list->topLevelItemCount(); ++i) {
            if (list->topLevelItem(i)->checkState(0) == Qt::Checked)
                rows.append(list->topLevelItem(i)->text(0));
        }
        return rows;
    }
    static QTreeWidgetItem *row(QTreeWidget *list, const QString &text)
    {
        const QList<QTreeWidgetItem *> found = list->findItems(text, Qt::MatchExactly);
        return found.isEmpty() ? nullptr : found.first();
    }
    static QString selected(const QTreeWidget *list)
    {
        return list->currentItem() ? list->currentItem()->text(0) : QString();
    }
};

} // namespace lx::test
