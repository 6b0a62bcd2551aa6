#include "core/text/collation.h"
#include "edit_fixture.h"
#include "ontology/edit/links.h"
#include "termbase/store/schema.h"

#include <QFile>

#include <sqlite3.h>

using namespace lx;

namespace {

// An ontology linked to two termbase files, each holding HOUSE and TREE.
class LinksTest : public EditTest {
protected:
    void SetUp() override
    {
        EditTest::SetUp();
        for (const QString &name : {QStringLiteral("a.ltb"), QStringLiteral("b.ltb")}) {
            const QString path = folder.path(name);
            store::Database tb =
                store::DBEngine::Workspaces(0).CreateDatabase(path, store::dbLangGeneral);
            BuildTermbaseTables(tb);
            for (const char *identifier : {"HOUSE", "TREE"}) {
                store::Recordset rs =
                    tb.OpenRecordset(QStringLiteral("CONCEPTS"), store::dbOpenTable);
                rs.AddNew();
                rs.Collect(u"Concept", QString::fromLatin1(identifier));
                rs.Update();
            }
            tb.Close();
            paths.append(path);
            addRow(QStringLiteral("TermBases"), {{u"DBName", path}});
        }
    }
    static QStringList concepts(const QString &path)
    {
        QStringList values;
        store::Database tb = store::DBEngine::OpenDatabase(path);
        store::Recordset rs = tb.OpenRecordset(
            QStringLiteral("SELECT * FROM CONCEPTS ORDER BY Concept"), store::dbOpenSnapshot);
        for (; !rs.Eof(); rs.MoveNext())
            values.append(rs.Value(u"Concept").toString());
        rs.Close();
        tb.Close();
        return values;
    }
    QStringList links() { return column(QStringLiteral("SELECT * FROM TermBases"), u"DBName"); }

    QStringList paths;
};

TEST_F(LinksTest, EachOperationReachesEveryLinkedFile)
{
    EXPECT_TRUE(PropagateConceptToTermBases(QStringLiteral("BIRD"), QString(), opAddConcept));
    EXPECT_TRUE(PropagateConceptToTermBases(QStringLiteral("BIRD"), QString(), opAddConcept));
    for (const QString &path : paths)
        EXPECT_EQ(concepts(path), (QStringList{QStringLiteral("BIRD"), QStringLiteral("HOUSE"),
                                               QStringLiteral("TREE")}));

    EXPECT_TRUE(PropagateConceptToTermBases(QStringLiteral("OAK"), QStringLiteral("TREE"),
                                            opRenameConcept));
    for (const QString &path : paths)
        EXPECT_EQ(concepts(path), (QStringList{QStringLiteral("BIRD"), QStringLiteral("HOUSE"),
                                               QStringLiteral("OAK")}));

    // Deleting looks up the second identifier, not the first.
    EXPECT_TRUE(PropagateConceptToTermBases(QStringLiteral("HOUSE"), QStringLiteral("BIRD"),
                                            opDeleteConcept));
    for (const QString &path : paths)
        EXPECT_EQ(concepts(path), (QStringList{QStringLiteral("HOUSE"), QStringLiteral("OAK")}));
    EXPECT_TRUE(user.calls().isEmpty());
}

TEST_F(LinksTest, WithoutLinksNothingHappens)
{
    store::Recordset rs = db.OpenRecordset(QStringLiteral("TermBases"), store::dbOpenTable);
    while (!rs.Eof()) {
        rs.Delete();
        rs.MoveNext();
    }
    rs.Close();
    EXPECT_FALSE(PropagateConceptToTermBases(QStringLiteral("BIRD"), QString(), opAddConcept));
    EXPECT_EQ(concepts(paths[0]), (QStringList{QStringLiteral("HOUSE"), QStringLiteral("TREE")}));
}

TEST_F(LinksTest, MovedFileIsFoundAgain)
{
    const QString moved = folder.path(QStringLiteral("moved.ltb"));
    ASSERT_TRUE(QFile::rename(paths[0], moved));
    user.answerMsgBox(msg::Yes).answerOpenFile(moved);
    EXPECT_TRUE(PropagateConceptToTermBases(QStringLiteral("BIRD"), QString(), opAddConcept));
    ASSERT_EQ(user.calls().size(), 2);
    EXPECT_EQ(user.calls()[0].text, QStringLiteral("TermBase ") + paths[0] +
                                        QStringLiteral(" can't be found. Do you want to find it?"));
    EXPECT_EQ(links(), (QStringList{moved, paths[1]}));
    EXPECT_EQ(concepts(moved).first(), QStringLiteral("BIRD"));
    EXPECT_EQ(concepts(paths[1]).first(), QStringLiteral("BIRD"));
}

TEST_F(LinksTest, MovedFileIsDroppedOnNo)
{
    ASSERT_TRUE(QFile::remove(paths[0]));
    user.answerMsgBox(msg::No).answerMsgBox(msg::OK);
    EXPECT_TRUE(PropagateConceptToTermBases(QStringLiteral("BIRD"), QString(), opAddConcept));
    ASSERT_EQ(user.calls().size(), 2);
    EXPECT_EQ(user.calls()[1].text,
              QStringLiteral("Link will be deleted. You can link databases from the "
                             "\"Options dialog box\""));
    EXPECT_EQ(links(), QStringList{paths[1]});
    EXPECT_EQ(concepts(paths[1]).first(), QStringLiteral("BIRD"));
}

} // namespace

namespace {

// --- Assigning and releasing ------------------------------------------------------------------

class AssignTest : public LinksTest {
protected:
    void SetUp() override
    {
        LinksTest::SetUp();
        Process().OntoPath = folder.path(QStringLiteral("t.ont"));
        addConcept(QStringLiteral("HOUSE"));
        addConcept(QStringLiteral("BIRD"));
        addConcept(QStringLiteral("OAK"));
        store::Database tb = store::DBEngine::OpenDatabase(paths[0]);
        store::Recordset meta = tb.OpenRecordset(QStringLiteral("MetaData"), store::dbOpenTable);
        meta.AddNew();
        meta.Collect(u"Name", QStringLiteral("a"));
        meta.Update();
        meta.Close();
        tb.Close();
        ReleaseTermbase(paths[0]);
    }
    QString ontologyOf(const QString &path)
    {
        store::Database tb = store::DBEngine::OpenDatabase(path);
        store::Recordset meta = tb.OpenRecordset(QStringLiteral("MetaData"), store::dbOpenTable);
        const QString ontology = meta.Value(u"Ontology").toString();
        meta.Close();
        tb.Close();
        return ontology;
    }
    // Each stage with the count it reached last, as "stage done/total".
    QStringList stages;
    AssignProgress status{[this](const QString &stage) { stages.append(stage); },
                          [this](qint64 done, qint64 total) {
                              stages.last() = stages.last().section(QLatin1Char(' '), 0, 1) +
                                              QStringLiteral(" %1/%2").arg(done).arg(total);
                          }};
};

TEST_F(AssignTest, RefusingTheDeletionLeavesBothFilesAndNoLink)
{
    user.answerMsgBox(msg::No);
    EXPECT_FALSE(AssignTermbase(paths[0], status));
    EXPECT_EQ(user.calls()[0].text,
              QStringLiteral("1 concepts used in ") + paths[0] +
                  QStringLiteral(" didn't match any concept in ") + Process().OntoPath +
                  QStringLiteral(". If you proceed these concepts will be deleted from your "
                                 "termbase."));
    EXPECT_EQ(concepts(paths[0]), (QStringList{QStringLiteral("HOUSE"), QStringLiteral("TREE")}));
    EXPECT_EQ(links(), QStringList{paths[1]});
    EXPECT_TRUE(ontologyOf(paths[0]).isEmpty());
}

TEST_F(AssignTest, AcceptingMakesTheTermbaseAgreeAndLinksIt)
{
    user.answerMsgBox(msg::Yes).answerMsgBox(msg::OK);
    EXPECT_TRUE(AssignTermbase(paths[0], status));
    EXPECT_EQ(concepts(paths[0]), (QStringList{QStringLiteral("BIRD"), QStringLiteral("HOUSE"),
                                               QStringLiteral("OAK")}));
    EXPECT_EQ(user.calls()[1].text, QStringLiteral("2 concepts were added to ") + paths[0] +
                                        QStringLiteral(" in order to make it consistent with ") +
                                        Process().OntoPath + QStringLiteral("."));
    EXPECT_EQ(stages, (QStringList{QStringLiteral("Checking consistency... 2/2"),
                                   QStringLiteral("Deleting unmatched... 1/1"),
                                   QStringLiteral("Adding concepts... 3/3")}));
    EXPECT_EQ(links(), (QStringList{paths[1], paths[0]}));
    EXPECT_EQ(ontologyOf(paths[0]), Process().OntoPath);
}

} // namespace

namespace {

// A path stands between double quotes in the criteria of a release: a path holding one is
// never assigned, and a link with one made before is released on its own.
TEST_F(AssignTest, APathWithADoubleQuoteTouchesNoOtherLink)
{
    const QString quoted = folder.path(QStringLiteral("say \"cheese\".ltb"));
    ASSERT_TRUE(QFile::copy(paths[0], quoted));
    const QByteArray before = FileBytes(quoted);
    user.answerMsgBox(msg::OK);
    EXPECT_FALSE(AssignTermbase(quoted, status));
    ASSERT_EQ(user.calls().size(), 1);
    EXPECT_EQ(user.calls()[0].text,
              QStringLiteral("The file name must not contain a double quote (\"): ") + quoted);
    EXPECT_EQ(FileBytes(quoted), before);
    EXPECT_EQ(links(), QStringList{paths[1]});

    const QString crafted = QStringLiteral("x\" OR DBName <> \"");
    addRow(QStringLiteral("TermBases"), {{u"DBName", crafted}});
    addRow(QStringLiteral("TermBases"), {{u"DBName", quoted}});
    ReleaseTermbase(crafted);
    EXPECT_EQ(links(), (QStringList{paths[1], quoted}));
    ReleaseTermbase(quoted);
    EXPECT_EQ(links(), QStringList{paths[1]});
}

// A termbase concept that holds a double quote (from a file made elsewhere) matches no concept
// of the ontology, whatever criteria it would make.
TEST_F(AssignTest, ATermbaseConceptWithADoubleQuoteMatchesNothing)
{
    sqlite3 *raw = nullptr;
    sqlite3_open(paths[0].toUtf8().constData(), &raw);
    sqlite3_create_collation(raw, "LX", SQLITE_UTF8, nullptr,
                             [](void *, int lenA, const void *a, int lenB, const void *b) {
                                 return text::CompareText(
                                     std::string_view(static_cast<const char *>(a), size_t(lenA)),
                                     std::string_view(static_cast<const char *>(b), size_t(lenB)));
                             });
    ASSERT_EQ(sqlite3_exec(raw, "INSERT INTO CONCEPTS (Concept) VALUES ('X\" OR Concept <> \"')",
                           nullptr, nullptr, nullptr),
              SQLITE_OK);
    sqlite3_close(raw);
    user.answerMsgBox(msg::No);
    EXPECT_FALSE(AssignTermbase(paths[0], status));
    EXPECT_TRUE(user.calls()[0].text.startsWith(QStringLiteral("2 concepts used in ")));
}

// Both files are written, the ontology last: either one open read-only stops the assignment
// before anything is written, and says why.
TEST_F(AssignTest, AReadOnlyFileStopsAssignAndReleaseBeforeAnyWrite)
{
    const QByteArray termbase = FileBytes(paths[0]);
    user.answerMsgBox(msg::OK).answerMsgBox(msg::OK).answerMsgBox(msg::OK);
    {
        NoWriteAccess noAccess;
        EXPECT_FALSE(AssignTermbase(paths[0], status));
    }
    EXPECT_EQ(user.calls()[0].text,
              QStringLiteral("Cannot update. The file is read-only: ") + paths[0]);
    EXPECT_EQ(FileBytes(paths[0]), termbase);

    db.Close();
    Process().OntoDB = db = store::DBEngine::OpenDatabase(Process().OntoPath, false, true, {});
    EXPECT_FALSE(AssignTermbase(paths[0], status));
    ReleaseTermbase(paths[1]);
    ASSERT_EQ(user.calls().size(), 3);
    for (int i = 1; i < 3; ++i)
        EXPECT_EQ(user.calls()[i].text,
                  QStringLiteral("Cannot update. The file is read-only: ") + Process().OntoPath);
    EXPECT_EQ(FileBytes(paths[0]), termbase);
    EXPECT_EQ(links(), QStringList{paths[1]});
}

} // namespace
