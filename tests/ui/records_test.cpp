#include "element_tree_fixture.h"
#include "publish/person_page.h"
#include "termbase/store/lifecycle.h"
#include "ui/frm_records.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>

#include <algorithm>

namespace lx::test {
namespace {

// Records made under the backmatter's containers, with the rows and files they leave.
class RecordsUi : public ElementTreeUi {
protected:
    // The elements a query selects, as "category=value" (the value from text_values or
    // ref_values), in the order of their numbers.
    QStringList rows(const QString &where)
    {
        QStringList out;
        store::Recordset rs =
            Process().TermDB.OpenRecordset(QStringLiteral("SELECT * FROM elements WHERE ") + where +
                                               QStringLiteral(" ORDER BY elemID"),
                                           store::dbOpenSnapshot);
        for (; !rs.Eof(); rs.MoveNext()) {
            const QString id = rs.Value(u"elemID").toString();
            QString value;
            for (const char *table : {"text_values", "ref_values"}) {
                store::Recordset v = Process().TermDB.OpenRecordset(
                    QStringLiteral("SELECT * FROM %1 WHERE elemID = %2")
                        .arg(QString::fromLatin1(table), id),
                    store::dbOpenSnapshot);
                if (!v.Eof())
                    value += v.Value(u"value").toString();
            }
            out << rs.Value(u"categoryID").toString() + QLatin1Char('=') + value;
        }
        return out;
    }
    QStringList under(qint32 parent)
    {
        return rows(QStringLiteral("parentID = ") + QString::number(parent));
    }
    qint32 container(const char *category)
    {
        store::Recordset rs = Process().TermDB.OpenRecordset(
            QStringLiteral("SELECT * FROM elements WHERE categoryID = \"%1\"")
                .arg(QString::fromLatin1(category)),
            store::dbOpenSnapshot);
        return rs.Eof() ? 0 : rs.Value(u"elemID").toInt();
    }
};

TEST_F(RecordsUi, TextRecordsAskForTheirValueAndCancelWritesNothing)
{
    const qint32 urls = container("x5");
    ASSERT_NE(urls, 0);
    editor->CurrentElemID = urls;
    user.answerInputBox(QString());
    editor->AddRecord(QStringLiteral("AddUrl"), QStringLiteral("x10.21.1"));
    EXPECT_EQ(user.calls().last().title, QStringLiteral("New URL"));
    EXPECT_TRUE(under(urls).isEmpty());
    editor->CurrentElemID = urls;
    user.answerInputBox(QStringLiteral("http://example.org"));
    editor->AddRecord(QStringLiteral("AddUrl"), QStringLiteral("x10.21.1"));
    editor->CurrentElemID = urls;
    user.answerInputBox(QStringLiteral("medicine"));
    editor->AddRecord(QStringLiteral("AddSubjectFieldSet"), QStringLiteral("xx4"));
    EXPECT_EQ(user.calls().last().text, QStringLiteral("Enter subject field set (e.g.: medicine)"));
    EXPECT_EQ(under(urls), (QStringList{QStringLiteral("x10.21.1=http://example.org"),
                                        QStringLiteral("xx4=medicine")}));
}

TEST_F(RecordsUi, APersonNeedsAnAliasAndGetsAPageAndAChildPerFilledField)
{
    const qint32 persons = container("x3");
    editor->CurrentElemID = persons;
    user.onModal([](QWidget *form) {
        auto *person = qobject_cast<ui::frmPerson *>(form);
        person->txtName->setText(QStringLiteral("Ann <Smith>"));
        person->cmdOK->click(); // no alias: told, and the dialog stays
        person->cmdCancel->click();
    });
    user.answerMsgBox(msg::OK);
    editor->AddRecord(QStringLiteral("AddPerson"), QStringLiteral("x10.2.2"));
    EXPECT_EQ(user.calls()[user.calls().size() - 1].text,
              QStringLiteral("The 'Alias' field is obligatory."));
    EXPECT_TRUE(under(persons).isEmpty());

    editor->CurrentElemID = persons;
    user.onModal([](QWidget *form) {
        auto *person = qobject_cast<ui::frmPerson *>(form);
        person->txtAlias->setText(QStringLiteral("ann"));
        person->txtRole->setText(QStringLiteral("editor"));
        person->cmdOK->click();
    });
    editor->AddRecord(QStringLiteral("AddPerson"), QStringLiteral("x10.2.2"));
    const QStringList records = under(persons);
    ASSERT_EQ(records, QStringList{QStringLiteral("x10.2.2=ann")});
    QFile page(PersonPagePath(QStringLiteral("ann")));
    ASSERT_TRUE(page.open(QIODevice::ReadOnly));
    const QByteArray bytes = page.readAll();
    EXPECT_TRUE(bytes.contains("<strong>Name: </strong>Ann &lt;Smith&gt;\r\n<br>")) << "escaped";
    EXPECT_TRUE(bytes.contains("<strong>Role: </strong>editor"));
    EXPECT_TRUE(
        rows(QStringLiteral("categoryID LIKE \"x10.2.2.*\"")) ==
        (QStringList{QStringLiteral("x10.2.2.2=Ann <Smith>"), QStringLiteral("x10.2.2.3=editor")}));

    // The page is there: declining to overwrite it cancels.
    user.onModal([](QWidget *form) {
        auto *person = qobject_cast<ui::frmPerson *>(form);
        person->txtAlias->setText(QStringLiteral("ann"));
        person->cmdOK->click();
        EXPECT_TRUE(person->txtAlias->text().isEmpty());
        person->cmdCancel->click();
    });
    user.answerMsgBox(msg::No);
    editor->CurrentElemID = persons;
    editor->AddRecord(QStringLiteral("AddPerson"), QStringLiteral("x10.2.2"));
    EXPECT_EQ(under(persons).size(), 1);

    // An alias that would lead the page out of its folder.
    user.onModal([](QWidget *form) {
        auto *person = qobject_cast<ui::frmPerson *>(form);
        person->txtAlias->setText(QStringLiteral("../ann"));
        person->cmdOK->click();
        person->cmdCancel->click();
    });
    user.answerMsgBox(msg::OK);
    editor->CurrentElemID = persons;
    editor->AddRecord(QStringLiteral("AddPerson"), QStringLiteral("x10.2.2"));
    EXPECT_EQ(under(persons).size(), 1);
}

TEST_F(RecordsUi, ASourceWritesItsFieldsInTheirOrder)
{
    editor->CurrentElemID = container("x7");
    user.onModal([](QWidget *form) {
        auto *source = qobject_cast<ui::frmBiblio *>(form);
        EXPECT_EQ(source->windowTitle(), QStringLiteral("Bibliographical Record"));
        source->txtDescriptor->setText(QStringLiteral("ISO 704"));
        source->txtPPlace->setText(QStringLiteral("Geneva"));
        source->txtPages->setText(QStringLiteral("65"));
        source->txtAuthor->setText(QStringLiteral("ISO"));
        source->cmdOK->click();
    });
    editor->AddRecord(QStringLiteral("AddBibliography"), QStringLiteral("x10.20"));
    EXPECT_EQ(rows(QStringLiteral("categoryID LIKE \"x10.20*\"")),
              (QStringList{QStringLiteral("x10.20=ISO 704"), QStringLiteral("x10.20.1=ISO"),
                           QStringLiteral("x10.20.8=65"), QStringLiteral("x10.20.6=Geneva")}));
}

// A file is copied whole into both folders; chosen twice it makes one record; a file that
// can't be read or whose name holds a double quote is refused with nothing copied.
TEST_F(RecordsUi, AFileRecordCopiesTheFileOnceAndRefusesWhatItCantKeep)
{
    QTemporaryDir outside;
    const QString picture = outside.filePath(QStringLiteral("heron.png"));
    QFile file(picture);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    const QByteArray bytes("\x89PNG\r\n\x1a\n\0\xff", 10);
    file.write(bytes);
    file.close();
    for (int i = 0; i < 2; ++i) {
        user.answerOpenFile(picture);
        editor->AddRecord(QStringLiteral("AddBinaryRecord"), QStringLiteral("x5.5"));
    }
    const auto dialog =
        std::find_if(user.calls().cbegin(), user.calls().cend(), [](const auto &call) {
            return call.kind == ScriptedInteraction::Kind::OpenFile &&
                   call.request.filter.startsWith(QStringLiteral("Graphics Files"));
        });
    ASSERT_NE(dialog, user.calls().cend());
    EXPECT_EQ(dialog->request.filterIndex, 1);
    EXPECT_EQ(rows(QStringLiteral("categoryID = \"x5.5\"")),
              QStringList{QStringLiteral("x5.5=heron.png")});
    EXPECT_EQ(under(container("x2")), QStringList{QStringLiteral("x5.5=heron.png")});
    for (const QString &folder : {editor->BackFolder(), editor->PublishFolder()}) {
        QFile copy(folder + QStringLiteral("heron.png"));
        ASSERT_TRUE(copy.open(QIODevice::ReadOnly)) << folder.toStdString();
        EXPECT_EQ(copy.readAll(), bytes);
    }

    const QString quoted = outside.filePath(QStringLiteral("a\"b.png"));
    QFile(picture).copy(quoted);
    user.answerOpenFile(quoted).answerMsgBox(msg::OK);
    editor->AddRecord(QStringLiteral("AddBinaryRecord"), QStringLiteral("x5.5"));
    user.answerOpenFile(outside.filePath(QStringLiteral("gone.png"))).answerMsgBox(msg::OK);
    editor->AddRecord(QStringLiteral("AddBinaryRecord"), QStringLiteral("x11.1"));
    EXPECT_FALSE(QFileInfo::exists(editor->BackFolder() + QStringLiteral("a\"b.png")));
    EXPECT_EQ(rows(QStringLiteral("categoryID IN (\"x5.5\", \"x11.1\")")).size(), 1);
}

} // namespace
} // namespace lx::test
